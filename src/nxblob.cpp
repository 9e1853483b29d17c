// NxBlob and its row.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include "nxclassrows.h"
#include "nxinternal.h"
#include "nxkeyrows.h"
#include "nxrows.h"

namespace {

// A buffer of `bytes` from malloc, or null for 0 bytes.  A failed malloc
// goes to the memory handler; should the handler come back, one more try is
// made, and then the caller goes on without a buffer.
char* Allocate(size_t bytes) {
  if (bytes == 0) return nullptr;
  void* memory = std::malloc(bytes);
  if (memory == nullptr) {
    NxCallMemoryHandler(static_cast<uint32_t>(bytes));
    memory = std::malloc(bytes);
  }
  return static_cast<char*>(memory);
}

inline int32_t NotNegative(int32_t n) {
  return n < 0 ? 0 : n;
}

// A new record, or null when no memory is left for it.
template <typename... Args>
NxBlobData* NewData(Args&&... args) {
  return new (std::nothrow) NxBlobData(args...);
}

}  // namespace

// ---------------------------------------------------------------------------
// NxBlobData.

NxBlobData::NxBlobData(int32_t size) : data(nullptr), length(0) {
  data = Allocate(static_cast<size_t>(NotNegative(size)));
  if (data != nullptr) length = size;
}

NxBlobData::NxBlobData(const void* source, int32_t n) : data(nullptr), length(0) {
  SetData(source, n);
}

NxBlobData::NxBlobData(const NxBlob& blob) : data(nullptr), length(0) {
  if (blob.blobData != nullptr) SetData(blob.blobData->data, blob.blobData->length);
}

NxBlobData::~NxBlobData() {
  std::free(data);
  data = nullptr;
  length = 0;
}

void NxBlobData::SetData(const void* source, int32_t n) {
  n = NotNegative(n);
  if (data != nullptr && length >= n && static_cast<int64_t>(length) <= int64_t{n} + 128) {
    if (n != 0) std::memmove(data, source, static_cast<size_t>(n));
    length = n;
    return;
  }
  // The new buffer is filled before the old one goes, as `source` may lie
  // in it.
  char* fresh = Allocate(static_cast<size_t>(n));
  if (fresh != nullptr) std::memcpy(fresh, source, static_cast<size_t>(n));
  std::free(data);
  data = fresh;
  length = fresh != nullptr ? n : 0;
}

void NxBlobData::Resize(uint32_t n) {
  if (n == 0) {
    std::free(data);
    data = nullptr;
    length = 0;
    return;
  }
  if (n > static_cast<uint32_t>(NotNegative(length))) {
    char* fresh = Allocate(n);
    if (fresh == nullptr) return;
    if (length > 0) std::memcpy(fresh, data, static_cast<size_t>(length));
    std::free(data);
    data = fresh;
  }
  length = static_cast<int32_t>(n);
}

// ---------------------------------------------------------------------------
// NxBlob.

NxBlob::NxBlob() : blobData(NewData()) {}

NxBlob::NxBlob(int32_t size) : blobData(NewData(size)) {}

NxBlob::NxBlob(const void* bytes, int32_t size) : blobData(NewData(bytes, size)) {}

NxBlob::NxBlob(const NxBlob& other)
    : blobData(other.blobData != nullptr ? NewData(other) : nullptr) {}

NxBlob::~NxBlob() {
  delete blobData;
  blobData = nullptr;
}

NxBlob& NxBlob::operator=(const NxBlob& other) {
  if (this == &other || (blobData == nullptr && other.blobData == nullptr)) return *this;
  if (other.blobData == nullptr) {
    SetNullValue();
  } else if (blobData == nullptr) {
    blobData = NewData(other);
  } else {
    blobData->SetData(other.blobData->data, other.blobData->length);
  }
  return *this;
}

int NxBlob::operator==(const NxBlob& other) const {
  if (blobData == nullptr || other.blobData == nullptr)
    return blobData == nullptr && other.blobData == nullptr ? 1 : 0;
  const int32_t n = blobData->length;
  if (n != other.blobData->length) return 0;
  return n <= 0 || std::memcmp(blobData->data, other.blobData->data, static_cast<size_t>(n)) == 0
             ? 1
             : 0;
}

int NxBlob::operator!=(const NxBlob& other) const {
  if (blobData == nullptr || other.blobData == nullptr) {
    if (blobData == other.blobData) return 0;
    return blobData == nullptr ? -2 : 2;
  }
  const int32_t n1 = NotNegative(blobData->length);
  const int32_t n2 = NotNegative(other.blobData->length);
  const int32_t common = n1 < n2 ? n1 : n2;
  if (common > 0) {
    const int order =
        std::memcmp(blobData->data, other.blobData->data, static_cast<size_t>(common));
    if (order != 0) return order < 0 ? -1 : 1;
  }
  return n1 < n2 ? -1 : (n1 > n2 ? 1 : 0);
}

NxBlob& NxBlob::operator+=(const NxBlob& other) {
  if (other.blobData == nullptr) return *this;
  return Append(other.blobData->data, other.blobData->length);
}

int32_t NxBlob::Length() const {
  return blobData != nullptr ? blobData->length : 0;
}

NxBlob& NxBlob::Expand(int32_t size) {
  size = NotNegative(size);
  if (blobData == nullptr) {
    blobData = NewData(size);
    return *this;
  }
  NxBlobData* fresh = NewData();
  if (fresh == nullptr) return *this;
  fresh->data = Allocate(static_cast<size_t>(size));
  if (fresh->data != nullptr || size == 0) {
    fresh->length = size;
    const int32_t kept = size < blobData->length ? size : blobData->length;
    if (kept > 0) std::memcpy(fresh->data, blobData->data, static_cast<size_t>(kept));
  }
  delete blobData;
  blobData = fresh;
  return *this;
}

void NxBlob::Resize(uint32_t size) {
  if (static_cast<int32_t>(size) < 0) size = 0;
  if (blobData == nullptr) {
    blobData = NewData(static_cast<int32_t>(size));
    return;
  }
  blobData->Resize(size);
}

NxBlob& NxBlob::Append(const void* bytes, int32_t size) {
  if (size < 1) return *this;
  if (blobData == nullptr) {
    blobData = NewData(bytes, size);
    return *this;
  }
  const int64_t total = int64_t{NotNegative(blobData->length)} + size;
  if (total > INT32_MAX) return *this;  // beyond what a length can say
  NxBlobData* fresh = NewData(static_cast<int32_t>(total));
  if (fresh == nullptr || fresh->data == nullptr) {
    delete fresh;
    return *this;
  }
  const size_t old = static_cast<size_t>(NotNegative(blobData->length));
  if (old != 0) std::memcpy(fresh->data, blobData->data, old);
  std::memcpy(fresh->data + old, bytes, static_cast<size_t>(size));
  delete blobData;
  blobData = fresh;
  return *this;
}

NxBlob& NxBlob::Append(const NxBlob& other) {
  return *this += other;
}

char* NxBlob::Seek(int32_t position, int32_t size) {
  if (blobData == nullptr || position > blobData->length || size == 0 ||
      int64_t{position} + size > blobData->length)
    return nullptr;
  return blobData->data + position;
}

NxBlob NxBlob::CopyFrom(int32_t position, int32_t size) const {
  if (blobData == nullptr || position > blobData->length || size == 0) return NxBlob();
  if (int64_t{position} + size > blobData->length) size = blobData->length - position;
  if (position == 0 && size == blobData->length) return *this;
  return NxBlob(blobData->data + position, size);
}

NxBlob& NxBlob::CopyTo(const NxBlob& source, int32_t position, int32_t size) {
  if (blobData == nullptr) return *this;
  if (int64_t{position} + size > blobData->length) size = blobData->length - position;
  if (size > source.Length()) size = source.Length();
  if (size < 1) return *this;
  std::memmove(blobData->data + position, source.blobData->data, static_cast<size_t>(size));
  return *this;
}

NxBlob& NxBlob::SetTo(const void* bytes, int32_t size) {
  if (blobData == nullptr)
    blobData = NewData(bytes, size);
  else
    blobData->SetData(bytes, size);
  return *this;
}

NxBlob& NxBlob::Cut(int32_t position, int32_t size) {
  if (blobData == nullptr || position > blobData->length || size < 1) return *this;
  const int32_t length = blobData->length;
  if (int64_t{position} + size > length) size = length - position;
  NxBlobData* fresh;
  if (size == length) {
    fresh = NewData();
  } else {
    fresh = NewData(length - size);
    if (fresh != nullptr && fresh->data != nullptr) {
      std::memcpy(fresh->data, blobData->data, static_cast<size_t>(position));
      std::memcpy(fresh->data + position, blobData->data + position + size,
                  static_cast<size_t>(length - position - size));
    }
  }
  if (fresh == nullptr) return *this;
  delete blobData;
  blobData = fresh;
  return *this;
}

int32_t NxBlob::Search(const NxBlob& pattern) const {
  const int32_t kNotFound = 65535;
  if (blobData == nullptr) return kNotFound;
  const int32_t n = pattern.Length();
  if (n == 0) return 0;
  const int32_t length = blobData->length;
  if (n > length) return kNotFound;
  const char* bytes = blobData->data;
  const char* wanted = pattern.blobData->data;
  for (int32_t at = 0; at <= length - n; ++at) {
    if (bytes[at] == wanted[0] && std::memcmp(bytes + at, wanted, static_cast<size_t>(n)) == 0)
      return at;
  }
  return kNotFound;
}

void NxBlob::Destroy(NxBlob& source) {
  if (&source == this) return;
  delete blobData;
  blobData = source.blobData;
  if (source.blobData != nullptr) source.blobData = NewData(0);
}

int NxBlob::SetNullValue() {
  delete blobData;
  blobData = nullptr;
  return 0;
}

NxBlobData* NxBlob::AllocData(int32_t n) {
  return NewData(static_cast<int32_t>(int64_t{NotNegative(n)} + 1 > INT32_MAX ? INT32_MAX : n + 1));
}

NxBlob::NxBlob(const char* text) : blobData(nullptr) {
  const size_t n = std::strlen(text);
  if (n >= static_cast<size_t>(INT32_MAX)) return;
  blobData = AllocData(static_cast<int32_t>(n));
  if (blobData != nullptr && blobData->data != nullptr) std::memcpy(blobData->data, text, n + 1);
}

NxBlob::NxBlob(const NxString& text) : blobData(nullptr) {
  if (text.IsNullValue()) return;
  blobData = NewData(text.StrGet(), static_cast<int32_t>(text.size));
}

NxBlob& NxBlob::operator=(const char* record) {
  SetNullValue();
  int32_t n;
  std::memcpy(&n, record, 4);
  if (n >= 0) blobData = NewData(record + 4, n);
  return *this;
}

namespace {

// The bytes as a terminated text: copied with a terminator, as a blob's
// bytes need not end in one.
template <typename T, typename Read>
T NumberOfBytes(const NxBlobData* data, Read read) {
  if (data == nullptr) return T(0);
  const size_t n = static_cast<size_t>(NotNegative(data->length));
  char small[64];
  char* text = n < sizeof small ? small : static_cast<char*>(std::malloc(n + 1));
  if (text == nullptr) return T(0);
  if (n != 0) std::memcpy(text, data->data, n);
  text[n] = '\0';
  const T value = read(text);
  if (text != small) std::free(text);
  return value;
}

using nxrows::Atol32;

}  // namespace

NxBlob::operator int() const {
  return NumberOfBytes<int>(blobData, Atol32);
}

NxBlob::operator short() const {
  return NumberOfBytes<short>(blobData,
                              [](const char* t) { return static_cast<short>(Atol32(t)); });
}

NxBlob::operator double() const {
  return NumberOfBytes<double>(blobData, [](const char* t) { return std::atof(t); });
}

// ---------------------------------------------------------------------------
// The row.

namespace nxrows {

namespace {

constexpr size_t kHeader = alignof(NxBlob) > 4 ? alignof(NxBlob) : 4;
constexpr uint32_t kWord = 4;

inline NxBlob* Blobs(void* value) {
  return static_cast<NxBlob*>(value);
}

void* BlobCreate(uint32_t count) {
  return ObjectArrayCreate<NxBlob, kHeader>(count);
}

// One word in the format's byte order.
inline void PutWord(unsigned char* disk, int32_t word, unsigned char format) {
  LongStore(disk, &word, format, 1);
}
inline int32_t GetWord(const unsigned char* disk, unsigned char format) {
  int32_t word;
  LongStore(&word, disk, format, 1);
  return word;
}

uint32_t BlobStore(void* disk, const void* memory, unsigned char format, uint32_t count) {
  format &= 0x0F;
  unsigned char* d = static_cast<unsigned char*>(disk);
  const NxBlob* blobs = static_cast<const NxBlob*>(memory);
  uint32_t at = kWord;
  for (uint32_t i = 0; i < count; ++i) {
    NxBlob& blob = const_cast<NxBlob&>(blobs[i]);
    const int32_t length = blob.Length();
    PutWord(d + at, blob.IsNullValue() ? -1 : length, format);
    at += kWord;
    if (length > 0) {
      std::memcpy(d + at, blob.Seek(0, length), static_cast<size_t>(length));
      at += static_cast<uint32_t>(length);
    }
  }
  PutWord(d, static_cast<int32_t>(at - kWord), format);
  return at;
}

// A length word of -1 makes a null blob.  A record whose total word is -1
// holds no length words: its blobs are all null.
uint32_t BlobLoad(void* memory, const void* disk, unsigned char format, uint32_t count) {
  format &= 0x0F;
  const unsigned char* s = static_cast<const unsigned char*>(disk);
  NxBlob* blobs = Blobs(memory);
  const int32_t total = GetWord(s, format);
  if (total == -1) {
    for (uint32_t i = 0; i < count; ++i) blobs[i].SetNullValue();
    return kWord;
  }
  size_t at = kWord;
  for (uint32_t i = 0; i < count; ++i) {
    const int32_t length = GetWord(s + at, format);
    at += kWord;
    if (length == -1) {
      blobs[i].SetNullValue();
    } else {
      blobs[i].SetTo(s + at, NotNegative(length));
      at += static_cast<size_t>(NotNegative(length));
    }
  }
  return kWord + static_cast<uint32_t>(total);
}

uint32_t BlobNullSizeGet(uint32_t) {
  return kWord;
}

// 4 plus the total word; 4 alone when the word is -1.
inline uint32_t RecordSize(int32_t total) {
  return total == -1 ? kWord : kWord + static_cast<uint32_t>(total);
}

uint32_t BlobSizeGet(const void* value, unsigned char valueFormat, unsigned char diskFormat,
                     uint32_t count) {
  if (value == nullptr) return kWord;
  if (valueFormat != 8)
    return RecordSize(GetWord(static_cast<const unsigned char*>(value),
                              static_cast<unsigned char>(diskFormat & 0x0F)));
  const NxBlob* blobs = static_cast<const NxBlob*>(value);
  uint32_t size = kWord;
  for (uint32_t i = 0; i < count; ++i)
    size += kWord + (blobs[i].IsNullValue() ? 0 : static_cast<uint32_t>(blobs[i].Length()));
  return size;
}

uint32_t BlobSizeGetFromMemFile(MemFile* file, unsigned char format, uint32_t) {
  uint32_t wanted = kWord;
  const unsigned char* at = file->Seek(0, MemFile::FromCurrent, &wanted, 0);
  if (at == nullptr || wanted < kWord) return kWord;
  return RecordSize(GetWord(at, static_cast<unsigned char>(format & 0x0F)));
}

int BlobIsNull(void* value) {
  return Blobs(value)->IsNullValue();
}

int BlobSetNull(void* value) {
  return Blobs(value)->SetNullValue();
}

// The bytes do not travel as text: a null blob gives the null string, any
// other an empty one.
NxTypeConvertData* BlobConvertTo(void* value, uint32_t count) {
  return ToStrings(stringRow.Create, stringRow.Delete, count, [value](NxString& text, uint32_t i) {
    if (Blobs(value)[i].IsNullValue()) text.SetNullValue();
  });
}

// An empty blob from any string; the null blob from a missing or null one.
void* BlobConvertFrom(NxTypeConvertData* data, uint32_t count) {
  return FromStrings<NxBlob>(BlobCreate(count), data, count, [](NxBlob& blob, NxString* s) {
    if (s == nullptr) blob.SetNullValue();
  });
}

void* BlobDefault(uint32_t count, int null) {
  return NullOrEmptyDefault<NxBlob>(BlobCreate, BlobConvertFrom, count, null,
                                    [](NxBlob& blob) { blob.SetNullValue(); });
}

// The content is never printed.  "%L" is the length, "%%" a "%", and "%"
// before any other character that character.  Appends to `result`; a null
// blob assigns the null print string.
NxString& BlobPrint(NxString& result, void* value, const char* format, uint32_t) {
  const NxBlob& blob = *Blobs(value);
  if (blob.IsNullValue()) {
    result = detail::nullPrintString;
    return result;
  }
  if (format == nullptr) format = blobRow.Format;
  std::string text;
  for (const char* p = format; *p != '\0'; ++p) {
    if (*p != '%') {
      text += *p;
      continue;
    }
    if (p[1] == '\0') break;
    ++p;
    if (*p == 'L') {
      char number[16];
      std::snprintf(number, sizeof number, "%ld", static_cast<long>(blob.Length()));
      text += number;
    } else {
      text += *p;
    }
  }
  if (!text.empty()) result += text.c_str();
  return result;
}

// A blob cannot be read from text: only the null print string at the front
// of the text does anything, and makes the blob null.
void* BlobScan(void* value, NxString& text, const char*, uint32_t) {
  if (value == nullptr) return nullptr;
  if (StartsWithNullPrintString(EightBitText(text).c_str())) Blobs(value)->SetNullValue();
  return value;
}

constexpr NxTypeDesc BlobRow() {
  NxTypeDesc row = IllegalLike("NxBlob", kBlobMemLen, 0, "[BLOB,len=%L]");
  row.Create = BlobCreate;
  row.Delete = ObjectArrayDelete<NxBlob, kHeader>;
  row.Store = BlobStore;
  row.Load = BlobLoad;
  row.NullSizeGet = BlobNullSizeGet;
  row.SizeGet = BlobSizeGet;
  row.SizeGetFromMemFile = BlobSizeGetFromMemFile;
  row.Compare = BlobCompare;
  row.EvalAndBound = BlobEvalAndBound;
  row.Hash = BlobHash;
  row.ConvertTo = BlobConvertTo;
  row.ConvertFrom = BlobConvertFrom;
  row.Constructor = ElementConstructor<NxBlob>;
  row.Destructor = ElementDestructor<NxBlob>;
  row.Assignment = ElementAssignment<NxBlob>;
  row.Copy = ElementCopy<NxBlob>;
  row.Translate =
      RecordTranslate<BlobLoad, BlobStore, AssignEach<ElementAssignment<NxBlob>, kBlobMemLen>>;
  row.IsNull = BlobIsNull;
  row.SetNull = BlobSetNull;
  row.PrintToString = BlobPrint;
  row.ScanFromString = BlobScan;
  row.DefaultValue = BlobDefault;
  return row;
}

}  // namespace

NxTypeDesc blobRow = BlobRow();

}  // namespace nxrows
