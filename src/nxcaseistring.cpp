// NxCaseIString, the legacy string whose map folds case.
#include "nxkeyrows.h"
#include "nxlegacy.h"

namespace legacy {

namespace {

// The tables of NxCaseIString's map: those of NxIString with the lower-case
// letters mapped as the upper-case ones.
// clang-format off
constexpr unsigned char kLow[64] = {
    64,  84,  91,  94,  97,  105, 111, 113, 115, 121, 127, 129, 131, 133, 135, 144,
    151, 153, 155, 157, 159, 165, 171, 173, 175, 179, 183, 66,  67,  68,  69,  70,
    65,  84,  91,  94,  97,  105, 111, 113, 115, 121, 127, 129, 131, 133, 135, 144,
    151, 153, 155, 157, 159, 165, 171, 173, 175, 179, 183, 71,  72,  73,  74,  75};
constexpr unsigned char kMain[64] = {
    84,  84,  84,  84,  84,  189, 185, 94,  105, 105, 105, 105, 121, 121, 121, 121,
    99,  137, 144, 144, 144, 144, 144, 76,  187, 165, 165, 165, 165, 179, 191, 157,
    84,  84,  84,  84,  84,  189, 185, 94,  105, 105, 105, 105, 121, 121, 121, 121,
    99,  137, 144, 144, 144, 144, 144, 77,  187, 165, 165, 165, 165, 179, 191, 179};
constexpr unsigned char kSecond[64] = {
    3,   2,   4,   5,   1,   0,   0,   1,   3,   2,   4,   1,   3,   2,   4,   1,
    0,   0,   3,   2,   4,   5,   1,   0,   0,   3,   2,   4,   1,   2,   0,   157,
    3,   2,   4,   5,   1,   0,   0,   1,   3,   2,   4,   1,   3,   2,   4,   1,
    0,   0,   3,   2,   4,   5,   1,   0,   0,   3,   2,   4,   1,   2,   0,   1};
// clang-format on

// One byte of mapped text back, with the byte behind it: the byte, and
// whether that next byte was used too.  The first place in the tables
// counts, so letters come back in upper case.
unsigned char UnmapByte(unsigned char c, unsigned char next, bool& usedNext) {
  usedNext = false;
  for (unsigned i = 0; i < 64; ++i) {
    if (kMain[i] == c && kSecond[i] == next && next != c) {
      usedNext = true;
      return static_cast<unsigned char>(0xC0 + i);
    }
  }
  for (unsigned i = 0; i < 64; ++i)
    if (kLow[i] == c) return static_cast<unsigned char>(0x40 + i);
  if ((c == 0x90 && next == 0x69) || (c == 0xB3 && next == 1)) {
    usedNext = true;
    return c == 0x90 ? 0x8C : 0x9F;
  }
  if (c >= 0xE0) return static_cast<unsigned char>(c - 0x60);
  if (c >= 0xB0 && c <= 0xCF) return static_cast<unsigned char>(c - 0x10);
  return c;
}

}  // namespace

constexpr ByteMap kCaseIStringMap = BuildMap(kLow, kMain, kSecond, 0x90, 0x69);

}  // namespace legacy

int32_t LegacyCaseCompare(const char* s1, const char* s2, unsigned short limit, unsigned char form1,
                          unsigned char form2) {
  return legacy::Compare(legacy::kCaseIStringMap, true, s1, s2, limit, form1, form2);
}

// ---------------------------------------------------------------------------
// NxCaseIString.

#define NX_LEGACY_CLASS NxCaseIString
#define NX_LEGACY_COMPARE LegacyCaseCompare
#define NX_LEGACY_MAP legacy::kCaseIStringMap
#include "nxlegacyclass.inc"

uint32_t NxCaseIString::UnmapText(char* target, const char* source, uint32_t count) {
  const unsigned char* in = reinterpret_cast<const unsigned char*>(source);
  uint32_t used = 0;
  uint32_t written = 0;
  while (used < count) {
    const unsigned char c = in[used];
    if (c == 0) {
      target[written++] = 0;
      ++used;
      break;
    }
    bool usedNext = false;
    target[written++] =
        static_cast<char>(legacy::UnmapByte(c, used + 1 < count ? in[used + 1] : 0, usedNext));
    used += usedNext ? 2 : 1;
  }
  return used;
}

namespace nxrows {

NxTypeDesc caseIStringRow =
    WithHash(legacy::MakeRow<NxCaseIString>("NxCaseIString"), LegacyStringHash);

}  // namespace nxrows
