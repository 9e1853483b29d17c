// Feeds arbitrary texts, code sets, languages and strengths to the sort
// keys: the memcmp order of two keys must be the sign of NxStrCmp on the
// texts, a key asked for in a short buffer must be the start of the whole
// key, and nothing may be written behind the buffer.
//
// Input: code set 1, code set 2, language, strength (indexes into the lists
// below), a split byte, then the bytes of both texts.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <nxtm/nxtm.h>

#include "fuzz_support.h"

namespace {

using fuzz::Silent;
using fuzz::Terminated;

const unsigned char kCodeSets[] = {1, 2, 3, 4, 5, 6, 225, 253};
const unsigned short kStrengths[] = {0x00,  0x20,  0x40,  0x60,  0x80,  0xE0,
                                     0x200, 0x260, 0x280, 0x2E0, 0x100};

std::vector<unsigned char> KeyOf(const std::vector<char>& text, unsigned char codeSet,
                                 unsigned char language, unsigned short op) {
  const uint32_t n = NxStrSortKey(codeSet, language, text.data(), op, 1, nullptr, 0);
  std::vector<unsigned char> key(n + 8, 0xA5);
  if (NxStrSortKey(codeSet, language, text.data(), op, 1, key.data(), n) != n) std::abort();
  for (size_t i = n; i < key.size(); ++i)
    if (key[i] != 0xA5) std::abort();
  // Cut at half its length: the start of the same key, nothing behind.
  std::vector<unsigned char> cut(n + 8, 0x5A);
  NxStrSortKey(codeSet, language, text.data(), op, 1, cut.data(), n / 2);
  if (std::memcmp(cut.data(), key.data(), n / 2) != 0) std::abort();
  for (size_t i = n / 2; i < cut.size(); ++i)
    if (cut[i] != 0x5A) std::abort();
  key.resize(n);
  return key;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  NxSetAssertHandler(Silent);
  ___NxTypemgrContext(1);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 5 || size > 2048) return 0;
  const unsigned char cs1 = kCodeSets[data[0] % sizeof kCodeSets];
  const unsigned char cs2 = kCodeSets[data[1] % sizeof kCodeSets];
  const unsigned char language = static_cast<unsigned char>(1 + data[2] % 8);
  const unsigned short op = kStrengths[data[3] % (sizeof kStrengths / sizeof kStrengths[0])];
  const size_t split = 5 + data[4] % (size - 4);
  const std::vector<char> a = Terminated(data + 5, split - 5, cs1);
  const std::vector<char> b = Terminated(data + split, size - split, cs2);

  const std::vector<unsigned char> ka = KeyOf(a, cs1, language, op);
  const std::vector<unsigned char> kb = KeyOf(b, cs2, language, op);
  const size_t common = ka.size() < kb.size() ? ka.size() : kb.size();
  int keys = common == 0 ? 0 : std::memcmp(ka.data(), kb.data(), common);
  if (keys == 0) keys = ka.size() < kb.size() ? -1 : ka.size() > kb.size() ? 1 : 0;
  const int32_t r = NxStrCmp(cs1, language, a.data(), cs2, language, b.data(),
                             static_cast<unsigned short>(op | NxCMP_NO_WILDCARDS), -1, 1, nullptr);
  if ((keys > 0) != (r > 0) || (keys < 0) != (r < 0)) std::abort();
  return 0;
}
