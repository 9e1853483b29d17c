// Feeds arbitrary bytes with stated sizes to the Compare slot of every row:
// no crash, no sanitizer report, no read behind the stated bytes, a known
// status, and for the fixed-width rows the same answer whether a whole
// operand is stated as 0 or as its full length.
//
// Input: the row (an index into the current table, or the old string row),
// the form, the element count, how much of each operand is stated, the
// comparison word (2 bytes), a split byte, then the bytes of both operands.
// Each operand lies in a heap buffer of exactly its stated size, so that the
// address sanitizer sees any read past it.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include <nxtm/nxtm.h>

#include "fuzz_support.h"

namespace {

using fuzz::Silent;

// Memory form is 8 alone: some rows take 0x88 as memory form, others as a
// disk form, and the element width follows.
const unsigned char kFormats[] = {1, 2, 0x81, 0x82, 8, 0xE1, 0x42};

// Rows whose memory elements hold pointers: their memory form can't come
// from arbitrary bytes.
bool HoldsPointers(char id) {
  return id == NxTYPE_NxString || id == NxTYPE_NxBlob || id == NxTYPE_NxIString ||
         id == NxTYPE_NxCaseIString;
}

// `size` bytes of `data` from `at` (cycled when too few), in a buffer of
// exactly that size.
std::vector<unsigned char> Operand(const uint8_t* data, size_t available, size_t size) {
  std::vector<unsigned char> bytes(size);
  for (size_t i = 0; i < size && available != 0; ++i) bytes[i] = data[i % available];
  return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  NxSetAssertHandler(Silent);
  ___NxTypemgrContext(1);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 8 || size > 8192) return 0;
  const bool old = data[0] % 42 == 41;
  const char id = static_cast<char>(old ? NxTYPE_NxString : data[0] % 42);
  NxTypeMgr mgr(old ? 0 : 5);
  unsigned char format = kFormats[data[1] % sizeof kFormats];
  const uint32_t count = 1 + data[2] % 4;
  const unsigned short cmpOp = static_cast<unsigned short>(data[5] | data[6] << 8);
  const bool memory = (format & 0x0F) == 8;
  if (memory && HoldsPointers(id)) format = 1;
  const uint8_t* rest = data + 8;
  const size_t restSize = size - 8;
  const size_t split = restSize == 0 ? 0 : data[7] % (restSize + 1);

  const NxTypeDesc* row = mgr.RowGet(id);
  if (row->Compare == NxTypeMgr::IllegalRowGet()->Compare) return 0;  // no comparator yet
  int status = 12345;
  if (row->IsFixed) {
    // Whole elements: k of `count` stated, or 0 for all of them.
    const uint32_t width = (format & 0x0F) == 8 ? row->MemLen : row->SizeGet(nullptr, 8, format, 1);
    if (width == 0) return 0;
    const uint32_t k1 = data[3] % (count + 1);
    const uint32_t k2 = data[4] % (count + 1);
    const uint32_t length1 = k1 * width;
    const uint32_t length2 = k2 * width;
    // Memory operands are whole arrays (the identifier rows don't read the
    // lengths there), and so are a seal's keys, whose comparison never reads
    // the stated lengths; other disk operands end where they are stated to.
    const bool whole = (format & 0x0F) == 8 || id == NxTYPE_NxSeal;
    std::vector<unsigned char> a =
        Operand(rest, split, length1 && !whole ? length1 : count * width);
    std::vector<unsigned char> b =
        Operand(rest + split, restSize - split, length2 && !whole ? length2 : count * width);
    const int32_t r =
        row->Compare(format, length1, a.data(), length2, b.data(), cmpOp, count, status);
    if (status != 0 && status != NxSTATUS_PARTIAL) __builtin_trap();
    // 0 and the full length both state a whole operand.
    if ((length1 == 0 || length1 == count * width) && (length2 == 0 || length2 == count * width)) {
      int full = 12345;
      const int32_t again = row->Compare(format, count * width, a.data(), count * width, b.data(),
                                         cmpOp, count, full);
      if (again != r || full != 0 || status != 0) __builtin_trap();
    }
    return 0;
  }
  // Variable-length records: any stated sizes, never 0 (which would trust
  // the record's own lengths).
  const size_t length1 = 1 + data[3] % (split + 1);
  const size_t length2 = 1 + data[4] % (restSize - split + 1);
  std::vector<unsigned char> a = Operand(rest, split, length1);
  std::vector<unsigned char> b = Operand(rest + split, restSize - split, length2);
  row->Compare(format, static_cast<uint32_t>(length1), a.data(), static_cast<uint32_t>(length2),
               b.data(), cmpOp, count, status);
  if (status != 0 && status != NxSTATUS_PARTIAL && status != NxSTATUS_NO_ANSWER) __builtin_trap();
  return 0;
}
