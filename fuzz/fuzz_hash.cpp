// Feeds arbitrary texts to the string hash as text records, key records and
// old records, whole and cut at an arbitrary length in a buffer that ends
// there: no crash, no sanitizer report, no read behind the stated length,
// and whole records hash as the same strings in memory form do.
//
// Input: code set, language (each an index into the lists below), a flag
// byte (bit 0 byte order, bit 1 old record, bit 2 key form, bits 4-5 one
// less than the number of strings), the cut length (2 bytes), then the
// bytes of the strings, split at 0xFF.
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

const unsigned char kCodeSets[] = {0, 1, 2, 3, 4, 5, 6, 225, 253, 254};
const unsigned char kLanguages[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 254, 0x83};

void Put16(std::vector<unsigned char>& out, unsigned v, unsigned char format) {
  if ((format & 0x0F) == 2) {
    out.push_back(static_cast<unsigned char>(v >> 8));
    out.push_back(static_cast<unsigned char>(v));
  } else {
    out.push_back(static_cast<unsigned char>(v));
    out.push_back(static_cast<unsigned char>(v >> 8));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const bool ready = [] {
    ___NxTypemgrContext(1);
    NxSetAssertHandler(Silent);
    return true;
  }();
  (void)ready;
  if (size < 5) return 0;
  const unsigned char codeSet = kCodeSets[data[0] % sizeof kCodeSets];
  const unsigned char language = kLanguages[data[1] % sizeof kLanguages];
  const unsigned char flags = data[2];
  const unsigned char format =
      static_cast<unsigned char>(((flags & 1) ? 2 : 1) | (flags & 4 ? 0x80 : 0));
  const bool old = (flags & 2) != 0 && (flags & 4) == 0;
  const uint32_t count = 1 + ((flags >> 4) & 3);
  const uint32_t cut = data[3] | data[4] << 8;
  const size_t width = codeSet > 224 ? 2 : 1;

  // The strings: split at 0xFF, 16-bit text by whole units, no inner zero.
  std::vector<std::vector<unsigned char>> texts(count);
  size_t at = 5;
  for (uint32_t i = 0; i < count; ++i) {
    for (; at < size && data[at] != 0xFF; ++at) texts[i].push_back(data[at]);
    ++at;
    std::vector<unsigned char>& t = texts[i];
    t.resize(t.size() - t.size() % width);
    // Old records hold 8-bit text whatever the code set says.
    const size_t step = old ? 1 : width;
    for (size_t k = 0; k < t.size(); k += step)
      if (t[k] == 0 && (step == 1 || t[k + 1] == 0)) t[k] = 1;
  }

  std::vector<unsigned char> disk;
  std::vector<NxString> strings(count);
  if (old) {
    // 8-bit text without code set, one record for the array.
    std::vector<unsigned char> body;
    for (uint32_t i = 0; i < count; ++i) {
      body.insert(body.end(), texts[i].begin(), texts[i].end());
      body.push_back(0);
      texts[i].push_back(0);
      strings[i] = reinterpret_cast<const char*>(texts[i].data());
      strings[i].codeSet = 0;
      strings[i].language = 0;
    }
    Put16(disk, static_cast<unsigned>(body.size()), format);
    disk.insert(disk.end(), body.begin(), body.end());
  } else {
    for (uint32_t i = 0; i < count; ++i) {
      const std::vector<unsigned char>& t = texts[i];
      Put16(disk, static_cast<unsigned>(t.size() + 4), format);
      disk.push_back(codeSet);
      disk.push_back(language);
      for (size_t k = 0; k < t.size(); k += width) {
        if (width == 2)
          Put16(disk, static_cast<unsigned>(t[k] | t[k + 1] << 8), format);
        else
          disk.push_back(t[k]);
      }
      disk.push_back(0);
      disk.push_back(0xFF);
      std::vector<unsigned char> terminated = t;
      terminated.insert(terminated.end(), width, 0);
      if (width == 2) {
        strings[i] = reinterpret_cast<const unsigned short*>(terminated.data());
      } else {
        strings[i] = reinterpret_cast<const char*>(terminated.data());
      }
      strings[i].codeSet = codeSet;
      strings[i].language = language;
    }
  }

  for (const NxTypeMgr& mgr : {NxTypeMgr(5), NxTypeMgr(0)}) {
    int status = 0;
    const uint32_t whole = mgr.Hash(NxTYPE_NxString, 0, disk.data(), count, format, status);
    // Null strings hash apart in the two forms, and only a key record
    // drops the mark of an early end from its state byte.
    const bool null = language == 254 || (codeSet == 254 && language == 0);
    const bool marked = codeSet == 254 && (language & 0x80) != 0;
    const bool alike = old || (!null && !marked);
    if (alike && status == 0)
      Check(whole == mgr.Hash(NxTYPE_NxString, 0, strings.data(), count, 8, status));
    // Cut: a buffer that ends at the stated length.
    const size_t length = cut % (disk.size() + 1);
    if (length == 0) continue;
    std::vector<unsigned char> part(disk.begin(), disk.begin() + static_cast<long>(length));
    part.shrink_to_fit();
    if (part.size() < 4) continue;  // a record's header is always there
    mgr.Hash(NxTYPE_NxString, static_cast<uint32_t>(length), part.data(), count, format, status);
  }
  return 0;
}
