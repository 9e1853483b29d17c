// Feeds arbitrary bytes as string records and keys to the string rows: Load,
// SizeGet and the size from a file, and Translate with the stated source
// size into destinations of every size, for the current and the old string
// row and the two legacy strings.  No crash, no sanitizer report, no read
// past the input and no write past a destination: every buffer is a heap
// block of exactly its size.  Records that lie whole inside the input load
// with StringLoad, whose result and StringSizeGet's must then agree with the
// records' own lengths, and a string stored and loaded again must come back
// the same.
//
// Input: a selector byte (operation, byte order, key form and code set
// bits), a count byte, a destination size byte, then the record bytes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <nxtm/nxtm.h>

#include "fuzz_support.h"

namespace {

using fuzz::Silent;
using fuzz::Check;
using fuzz::Exact;

uint32_t Get16(const unsigned char* at, unsigned char format) {
  return (format & 0x0F) == 2 ? (uint32_t{at[0]} << 8) | at[1] : at[0] | (uint32_t{at[1]} << 8);
}

// The bytes that StringLoad reads for `count` elements, or 0 when they don't
// lie inside the input: an old record (the last byte of the first record 0),
// or `count` records one behind the other, each long enough for its code set
// and language.
size_t Frame(const Exact& in, unsigned char format, uint32_t count, bool& old) {
  if (in.size < 2) return 0;
  const size_t first = Get16(in.data, format);
  if (first + 2 > in.size) return 0;
  old = in.data[first + 1] == 0;
  if (old) return first + 2;
  size_t at = 0;
  for (uint32_t i = 0; i < count; ++i) {
    if (at + 2 > in.size) return 0;
    const size_t length = Get16(in.data + at, format);
    if (length < 2) return 0;
    at += length + 2;
    if (at > in.size) return 0;
  }
  return at;
}

void Strings(const Exact& in, unsigned char selector, uint32_t count, uint32_t room) {
  NxTypeMgr current(5);
  NxTypeMgr older(0);
  const unsigned char format = (selector & 1) != 0 ? 2 : 1;
  const unsigned char key = (selector & 2) != 0 ? 0x80 : 0;
  const unsigned char codeSetBits = static_cast<unsigned char>(selector & 0x60);
  const uint32_t size = static_cast<uint32_t>(in.size);
  NxTypeMgr& mgr = (selector & 0x10) != 0 ? older : current;

  // Disk to memory, the stated size bounding every read.
  NxString* strings = static_cast<NxString*>(mgr.Create(NxTYPE_NxString, count));
  mgr.Translate(NxTYPE_NxString, strings, 8, 0, in.data, static_cast<unsigned char>(format | key),
                size, count);

  // Disk to disk: key records, copies, narrowed Unicode records, old and
  // text records into each other.
  Exact out(room);
  mgr.Translate(NxTYPE_NxString, out.data, static_cast<unsigned char>(format | key | codeSetBits),
                room, in.data, static_cast<unsigned char>(format | (key ? 0 : codeSetBits)), size,
                count);

  // The strings just loaded, as keys and as records of either row.
  mgr.Translate(NxTYPE_NxString, out.data, static_cast<unsigned char>(format | 0x80 | codeSetBits),
                room, strings, 8, 0, count);
  older.Translate(NxTYPE_NxString, out.data, format, room, strings, 8, 0, count);

  // A string stored and loaded again comes back the same.
  for (uint32_t i = 0; i < count; ++i) {
    const NxString& s = strings[i];
    Exact record(StringSizeGet(&s, 8, format, 1));
    StringStore(record.data, &s, format, 1);
    NxString back;
    StringLoad(&back, record.data, format, 1);
    Check(back.codeSet == s.codeSet && back.language == s.language);
    const uint32_t width = s.codeSet > 224 ? 2 : 1;
    if (s.size > width) Check(back.size == s.size && std::memcmp(back.data, s.data, s.size) == 0);
  }
  mgr.Delete(NxTYPE_NxString, strings, count);

  // Records whole inside the input: StringLoad and StringSizeGet read
  // exactly them.
  bool old = false;
  const size_t frame = Frame(in, format, count, old);
  if (frame != 0) {
    NxString* loaded = static_cast<NxString*>(current.Create(NxTYPE_NxString, count));
    Check(StringLoad(loaded, in.data, format, count) == (old || count != 0 ? frame & 0xFFFF : 0));
    // (SizeGet looks at the last byte of every record, Load at the first.)
    if (count == 1 || (old && count != 0))
      Check(StringSizeGet(in.data, format, format, count) == frame);
    if (!old)
      StringSizeGet(in.data, format, static_cast<unsigned char>(format | 0x80 | codeSetBits),
                    count);
    current.Delete(NxTYPE_NxString, loaded, count);
  }

  // The size from a file over the input.
  MemFile file(in.data, static_cast<int32_t>(in.size));
  mgr.DiskLenGetFromMemFile(NxTYPE_NxString, &file,
                            static_cast<unsigned char>(format | key | codeSetBits), count);
}

template <class X>
void Legacy(char id, const Exact& in, unsigned char selector, uint32_t count, uint32_t room) {
  NxTypeMgr mgr;
  const unsigned char format = (selector & 1) != 0 ? 2 : 1;
  const unsigned char key = (selector & 2) != 0 ? 0x80 : 0;
  const uint32_t size = static_cast<uint32_t>(in.size);
  X* objects = static_cast<X*>(mgr.Create(id, count));
  mgr.Translate(id, objects, 8, 0, in.data, static_cast<unsigned char>(format | key), size, count);
  Exact out(room);
  mgr.Translate(id, out.data, static_cast<unsigned char>(format | 0x80), room, in.data, format,
                size, count);
  mgr.Translate(id, out.data, static_cast<unsigned char>(format | 0x80), room, objects, 8, 0,
                count);
  mgr.Translate(id, out.data, format, room, objects, 8, 0, count);
  // Texts from the input, compared and mapped.
  if (count >= 2) {
    Check((objects[0] == objects[1]) == !(objects[0] != objects[1]));
    LegacyCaseCompare(objects[0].data, objects[1].data, static_cast<unsigned short>(room),
                      static_cast<unsigned char>(selector), 0);
  }
  mgr.Delete(id, objects, count);
  MemFile file(in.data, static_cast<int32_t>(in.size));
  mgr.DiskLenGetFromMemFile(id, &file, static_cast<unsigned char>(format | key), count);
}

// Well-formed text records made from the input, so that the records of
// real text reach key building and the cut paths: each record is a code set
// (one of a list), a language, a text length and the text, in the byte order
// of the selector.  The image is then cut to the length in `cut`, unless
// that is 0.
std::vector<uint8_t> Records(const uint8_t* data, size_t size, unsigned char format, size_t cut) {
  static const unsigned char codeSets[] = {0, 1, 2, 3, 4, 5, 6, 225, 253, 254, 255};
  std::vector<uint8_t> image;
  for (size_t at = 0; at + 3 <= size;) {
    const unsigned char codeSet = codeSets[data[at] % sizeof codeSets];
    const unsigned char language = data[at + 1] % 10 == 9 ? 254 : data[at + 1] % 10;
    size_t length = size_t{data[at + 2]} * (1 + (data[at] >> 6));  // up to 1020 bytes
    at += 3;
    if (length > size - at) length = size - at;
    if (codeSet > 224) length -= length % 2;
    const uint32_t l = static_cast<uint32_t>(length) + 4;
    image.push_back(static_cast<uint8_t>(format == 2 ? l >> 8 : l));
    image.push_back(static_cast<uint8_t>(format == 2 ? l : l >> 8));
    image.push_back(codeSet);
    image.push_back(language);
    image.insert(image.end(), data + at, data + at + length);
    image.push_back(0);
    image.push_back(0xFF);
    at += length;
  }
  if (cut != 0 && cut < image.size()) image.resize(cut);
  return image;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const bool quiet = (NxSetAssertHandler(Silent), true);
  (void)quiet;
  if (size < 3 || size > 4096) return 0;
  const unsigned char selector = data[0];
  const uint32_t count = data[1] % 5;
  const uint32_t room = data[2] < 250 ? data[2] : 250 + (data[2] - 250) * 1000u;
  const Exact in(data + 3, size - 3);
  switch (selector >> 7) {
    case 0:
      if ((selector & 4) != 0) {
        const std::vector<uint8_t> image =
            Records(data + 3, size - 3, (selector & 1) != 0 ? 2 : 1, data[2] & 0x3F);
        const Exact records(image.data(), image.size());
        Strings(records, selector, count, room);
      } else {
        Strings(in, selector, count, room);
      }
      break;
    default:
      if ((selector & 4) != 0)
        Legacy<NxCaseIString>(NxTYPE_NxCaseIString, in, selector, count, room);
      else
        Legacy<NxIString>(NxTYPE_NxIString, in, selector, count, room);
      break;
  }
  return 0;
}
