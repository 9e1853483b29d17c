// Multi-byte text: UTF-8 in the six-byte scheme to and from 16-bit
// characters, one character, an array, or a whole string at a time.
#include <cstring>
#include <new>

#include <nxtm/nxtm.h>

namespace {

// One row per sequence length, and a closing row of zeros.
struct EncodingRow {
  unsigned bytes;
  uint32_t firstMask;
  uint32_t firstValue;
  unsigned shift;
  uint32_t largest;
  uint32_t smallest;
};

constexpr EncodingRow kRows[] = {
    {1, 0x80, 0x00, 0, 0x7F, 0},
    {2, 0xE0, 0xC0, 6, 0x7FF, 0x80},
    {3, 0xF0, 0xE0, 12, 0xFFFF, 0x800},
    {4, 0xF8, 0xF0, 18, 0x1FFFFF, 0x10000},
    {5, 0xFC, 0xF8, 24, 0x3FFFFFF, 0x200000},
    {6, 0xFE, 0xFC, 30, 0x7FFFFFFF, 0x4000000},
    {0, 0, 0, 0, 0, 0},
};

constexpr int32_t kStringByteLimit = 32768;
constexpr unsigned kChunk = 256;
constexpr int32_t kLocalBuffer = 2048;

// The row that encodes `c`; every 16-bit value has one.
const EncodingRow& RowFor(unsigned short c) {
  const EncodingRow* row = kRows;
  while (row->bytes != 0 && row->largest < c) ++row;
  return *row;
}

int EncodedLength(unsigned short c) {
  return static_cast<int>(RowFor(c).bytes);
}

// An empty string of code set 253 and language 0 holding `units` (which end
// in a zero unit).
NxString UnicodeText(const unsigned short* units) {
  NxString text(units);
  text.SetCodeSetCode(NxCS_UNICODE);
  text.language = 0;
  return text;
}

// Reads the characters of a text as the Unicode values that recoding it into
// code set 253 gives, without making the recoded copy.  0 at the end.
class UnicodeReader {
 public:
  explicit UnicodeReader(const NxString& text)
      : position_(text.StrGet()),
        codeSet_(text.codeSet),
        wide_(text.codeSet > 224),
        unicode_(NxLanguageContext::QueryCodeSet(NxCS_UNICODE)) {}

  unsigned short Next() {
    unsigned short value;
    if (wide_) {
      std::memcpy(&value, position_, 2);
    } else {
      value = static_cast<unsigned char>(*position_);
    }
    if (value == 0) return 0;
    position_ += wide_ ? 2 : 1;
    return codeSet_ == NxCS_UNICODE ? value : unicode_->MapFrom(value, codeSet_);
  }

 private:
  const char* position_;
  unsigned char codeSet_;
  bool wide_;
  const NxCodeSet* unicode_;
};

// A buffer from new[]; a failed allocation goes to the memory handler.
char* NewBuffer(int32_t bytes) {
  for (;;) {
    char* buffer = new (std::nothrow) char[static_cast<size_t>(bytes)];
    if (buffer != nullptr) return buffer;
    NxCallMemoryHandler(static_cast<uint32_t>(bytes));
  }
}

// Code sets below 6 hold ASCII as it stands, so pure ASCII text needs no
// encoding.
bool AsciiCompatible(unsigned char codeSet) {
  return codeSet < 6;
}

}  // namespace

int NxMultiByte2WChar(unsigned short* result, char* text, unsigned int length) {
  if (text == nullptr) return 0;
  if (length == 0) return -1;
  const unsigned char* bytes = reinterpret_cast<const unsigned char*>(text);
  const uint32_t first = bytes[0];
  // Unsigned arithmetic: the bits that a six-byte sequence pushes out at the
  // top are cut by the row's largest value anyway.
  uint32_t value = first;
  unsigned taken = 1;
  for (const EncodingRow* row = kRows; row->bytes != 0; ++row) {
    if ((first & row->firstMask) == row->firstValue) {
      value &= row->largest;
      if (value < row->smallest) return -1;  // overlong
      if (result != nullptr) *result = static_cast<unsigned short>(value);
      return static_cast<int>(taken);
    }
    if (taken >= length) return -1;  // cut short
    const uint32_t next = bytes[taken] ^ 0x80u;
    if (next > 63) return -1;  // not a continuation byte
    value = (value << 6) | next;
    ++taken;
  }
  return -1;
}

int NxWChar2MultiByte(char* text, unsigned short c) {
  if (text == nullptr) return 0;
  const EncodingRow& row = RowFor(c);
  unsigned shift = row.shift;
  unsigned char* out = reinterpret_cast<unsigned char*>(text);
  *out++ = static_cast<unsigned char>((c >> shift) | row.firstValue);
  while (shift > 0) {
    shift -= 6;
    *out++ = static_cast<unsigned char>(((c >> shift) & 63u) | 0x80u);
  }
  return static_cast<int>(row.bytes);
}

int NxMultiByteStr2WCharStr(unsigned short* result, int resultLength, char* text, int length) {
  // A null text decodes to nothing: the one-character decoder answers 0 for
  // it, which would make no progress.
  if (text == nullptr) return 0;
  int characters = 0;
  for (int used = 0; used < length;) {
    unsigned short c = 0;
    const int n = NxMultiByte2WChar(&c, text + used, static_cast<unsigned>(length - used));
    if (n < 0) return -1;
    if (result != nullptr && characters < resultLength) result[characters] = c;
    ++characters;
    used += n;
  }
  return characters;
}

int32_t NxMBS2NxString(const char* text, NxString& result, int32_t length) {
  const unsigned char language = result.language;
  result.Destroy();
  result.language = language;
  result.codeSet = NxCS_UNICODE;
  if (length <= 0) return 0;

  unsigned short chunk[kChunk + 1];
  unsigned filled = 0;
  auto flush = [&]() {
    chunk[filled] = 0;
    result += UnicodeText(chunk);
    filled = 0;
  };
  int32_t sum = 0;
  int32_t status = 0;
  for (;;) {
    unsigned short c = 0;
    const int n =
        NxMultiByte2WChar(&c, const_cast<char*>(text) + sum, static_cast<unsigned>(length - sum));
    if (n <= 0) {
      status = -1;
      break;
    }
    chunk[filled++] = c;
    if (filled == kChunk) flush();
    if (c == 0) break;  // the terminating byte doesn't count
    sum += n;
    if (sum >= kStringByteLimit) {
      status = -2;
      break;
    }
    if (sum >= length) break;
  }
  // Also after an error: the text up to the fault stays.
  if (filled != 0) flush();
  return status != 0 ? status : sum;
}

int32_t NxMultiByteString2NxString(const char* text, NxString& result, int32_t length) {
  return NxMBS2NxString(text, result, length);
}

int32_t NxMultiByteString2NxString(const NxString& text, NxString& result) {
  if (&text == &result) {
    const NxString copy(text);
    return NxMBS2NxString(copy.StrGet(), result, copy.Len());
  }
  return NxMBS2NxString(text.StrGet(), result, text.Len());
}

int32_t NxString2NxMBS(const NxString& text, char* result, int32_t length) {
  if (length < 0) length = 0;
  if (AsciiCompatible(text.codeSet)) {
    const char* source = text.StrGet();
    int32_t i = 0;
    for (;; ++i) {
      if (i == length) return length;
      const unsigned char b = static_cast<unsigned char>(source[i]);
      if (b >= 0x80) break;  // not pure ASCII: encode it
      if (b == 0) {
        std::memset(result + i, 0, static_cast<size_t>(length - i));
        return i;
      }
      result[i] = static_cast<char>(b);
    }
  }
  UnicodeReader units(text);
  int32_t written = 0;
  char encoded[3];
  for (unsigned short c = units.Next(); c != 0; c = units.Next()) {
    const int n = NxWChar2MultiByte(encoded, c);
    if (n > length - written) return -written;
    std::memcpy(result + written, encoded, static_cast<size_t>(n));
    written += n;
  }
  if (written < length) result[written] = '\0';
  return written;
}

int32_t NxString2MultiByteString(const NxString& text, char*& result, int32_t& length) {
  const bool callersBuffer = length > 0 && result != nullptr;
  char local[kLocalBuffer];
  char* buffer = result;
  int32_t room = length;
  if (!callersBuffer) {
    result = nullptr;
    length = 0;
    std::memset(local, 0, sizeof local);
    buffer = local;
    room = kLocalBuffer;
  }
  // A positive answer is taken as the whole text.  Pure ASCII of the 8-bit
  // code sets below 6 answers the buffer's size when it fills the buffer,
  // so such a text comes back cut to the buffer: 2048 bytes in the working
  // buffer, and without a terminator in a caller's buffer of its size.
  const int32_t n = NxString2NxMBS(text, buffer, room);
  if (n > 0) {
    if (callersBuffer) return n;
    result = NewBuffer(n + 1);
    length = n + 1;
    std::memcpy(result, buffer, static_cast<size_t>(n));
    result[n] = '\0';
    return n;
  }

  // The long way: the text's characters in code set 253, one after the
  // other.  Every 16-bit character has an encoding.
  int32_t total = 0;
  {
    UnicodeReader units(text);
    for (unsigned short c = units.Next(); c != 0; c = units.Next()) total += EncodedLength(c);
  }
  if (!callersBuffer) {
    result = NewBuffer(total + 1);
    length = total + 1;
  }
  if (length <= total) {
    length = total;  // the caller can see the size needed, less the terminator
    return -1;
  }
  char* out = result;
  UnicodeReader units(text);
  for (unsigned short c = units.Next(); c != 0; c = units.Next()) out += NxWChar2MultiByte(out, c);
  *out = '\0';
  return total;
}

int32_t NxMBSLength(const NxString& text, unsigned short count) {
  if (count == 0) return 0;
  if (AsciiCompatible(text.codeSet)) {
    const char* source = text.StrGet();
    int32_t i = 0;
    while (source[i] != '\0' && static_cast<unsigned char>(source[i]) < 0x80) ++i;
    if (source[i] == '\0') return i;
  }
  UnicodeReader units(text);
  int32_t bytes = 0;
  for (unsigned i = 0; i < count; ++i) {
    const unsigned short c = units.Next();
    if (c == 0) break;
    bytes += EncodedLength(c);
  }
  return bytes;
}
