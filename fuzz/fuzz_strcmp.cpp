// Feeds arbitrary texts, patterns, code sets, languages, comparison words and
// limits to the comparison, the hashes, the wildcard search, and the search
// and edit operations of NxString built from the same texts: no crash, no
// sanitizer report, no read behind a terminator, bounded memory, and the
// same result for the same text whichever road the comparison takes (the
// fast readers of the compact entries or the general reader).
//
// Input: code set 1, language 1, code set 2, language 2 (each an index into
// the lists below), the comparison word (2 bytes), maxLength (2 bytes), a
// split byte, then the bytes of both texts.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include <nxtm/nxtm.h>

#include "fuzz_support.h"

namespace {

using fuzz::Silent;
using fuzz::Terminated;

const unsigned char kCodeSets[] = {0, 1, 2, 3, 4, 5, 6, 225, 253, 254};
const unsigned char kLanguages[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 254};

// An NxString with the text as it stands, relabelled to the code set.
NxString StringOf(const std::vector<char>& text, unsigned char codeSet, unsigned char language) {
  NxString s;
  if (codeSet > 224) {
    std::vector<unsigned short> units(text.size() / 2);
    std::memcpy(units.data(), text.data(), units.size() * 2);
    s = units.data();
  } else {
    s = text.data();
  }
  s.SetCodeSetCode(codeSet);
  s.language = language;
  return s;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  NxSetAssertHandler(Silent);
  ___NxTypemgrContext(1);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 9 || size > 4096) return 0;
  const unsigned char codeSet1 = kCodeSets[data[0] % sizeof kCodeSets];
  const unsigned char language1 = kLanguages[data[1] % sizeof kLanguages];
  const unsigned char codeSet2 = kCodeSets[data[2] % sizeof kCodeSets];
  const unsigned char language2 = kLanguages[data[3] % sizeof kLanguages];
  const unsigned short cmpOp = static_cast<unsigned short>(data[4] | data[5] << 8);
  const short maxLength = static_cast<short>(data[6] | data[7] << 8);
  const size_t rest = size - 9;
  const size_t split = rest == 0 ? 0 : data[8] % (rest + 1);
  std::vector<char> text1 = Terminated(data + 9, split, codeSet1);
  std::vector<char> text2 = Terminated(data + 9 + split, rest - split, codeSet2);

  int prefix = 0;
  NxStrCmp(codeSet1, language1, text1.data(), codeSet2, language2, text2.data(), cmpOp, maxLength,
           1, &prefix);
  NxStrCmp(codeSet2, language2, text2.data(), codeSet1, language1, text1.data(), cmpOp, maxLength,
           8, &prefix);
  NxStrCmp(codeSet1, language1, text1.data(), codeSet2, language2, text2.data(), cmpOp & 0xFFEF, -1,
           1, nullptr);

  // The readers of the compact entries and the general reader: with spaces
  // ignored, a prefix result asks for the general compare, and without it
  // the fast one runs where it can.  Both must agree, with wildcards off
  // and on.
  if ((cmpOp & NxCMP_EXACT) == 0) {
    for (unsigned short op : {static_cast<unsigned short>(cmpOp | 0x90),
                              static_cast<unsigned short>((cmpOp & 0xFFEF) | 0x80)}) {
      int general = 0;
      const int32_t fast = NxStrCmp(codeSet1, language1, text1.data(), codeSet2, language2,
                                    text2.data(), op, maxLength, 1, nullptr);
      if (fast != NxStrCmp(codeSet1, language1, text1.data(), codeSet2, language2, text2.data(), op,
                           maxLength, 1, &general))
        __builtin_trap();
    }
  }

  // The same units as Unicode and as the legacy 16-bit code set, which is
  // ordered through Unicode by the general reader: the results must agree.
  {
    const std::vector<char> wide1 = Terminated(data + 9, split, 253);
    const std::vector<char> wide2 = Terminated(data + 9 + split, rest - split, 253);
    const int32_t unicode = NxStrCmp(253, language1, wide1.data(), 253, language2, wide2.data(),
                                     cmpOp, maxLength, 1, nullptr);
    const int32_t legacy = NxStrCmp(225, language1, wide1.data(), 225, language2, wide2.data(),
                                    cmpOp, maxLength, 1, nullptr);
    if (unicode != legacy) __builtin_trap();
  }

  HashString(codeSet1, language1, text1.data(), -1, 1);
  HashString(codeSet2, language2, text2.data(), maxLength, 1);
  unsigned short offset = 0;
  FindWildcard(codeSet2, language2, text2.data(), cmpOp & 1, 65535, &offset, 1);
  NxStringIterator position(text1.data(), codeSet1, language1, 1);
  PositionValue(position, static_cast<unsigned short>(maxLength));

  // The string operations that search by comparison.
  NxString a = StringOf(text1, codeSet1, language1);
  const NxString b = StringOf(text2, codeSet2, language2);
  HashNxString(a);
  HashNxString7(b);
  const unsigned short start = static_cast<unsigned short>(data[8] % 8);
  a.Find(b, start, cmpOp);
  const unsigned short saved = NxString::GetDefaultCmpOp();
  NxString::SetDefaultCmpOp(cmpOp);
  (void)(a == b);
  (void)(a < b);
  a.EqualsIgnoreLanguage(b);
  if (a.Len() < 256 && b.Len() < 64) {
    NxString edited(a);
    edited.Insert(b, start);
    edited.Cut(start, static_cast<short>(data[6] % 5));
    // A buffer with a zero inside (order text recoded gives zeros) is
    // searched by its size, and a null pattern matches a null string
    // everywhere: both would make ReplaceAll grow the text up to the size
    // limit, slowly.  Leave those out.
    const unsigned width = edited.codeSet > 224 ? 2u : 1u;
    if (edited.size == (edited.Len() + 1u) * width && !edited.IsNullValue() && !b.IsNullValue())
      edited.ReplaceAll(b, NxString("xy"), 0);
    edited.ToUpper();
  }
  NxString::SetDefaultCmpOp(saved);
  return 0;
}
