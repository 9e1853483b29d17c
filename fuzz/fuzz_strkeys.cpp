// Compares arbitrary bytes as string keys through the comparators of the
// four string rows (NxString, the old string row, NxIString, NxCaseIString),
// each operand with its stated size, in a heap block of exactly that size.
// No crash, no sanitizer report, no read past the stated bytes; the status is
// one of 0, 2101 and -2999, and -2999 comes with the result -1.  The legacy
// rows also compare objects made from the bytes in memory form.  Two whole
// key records compared alone give the sign NxStrCmp gives their orders: the
// row's quick path for whole keys must agree with the general comparison.
//
// Input: a selector byte (row, byte order, key form bit), two bytes of the
// comparison word, a count byte, a split byte (the share of the bytes that
// goes to the first operand), then the bytes of both operands.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include <nxtm/nxtm.h>

#include "fuzz_support.h"

namespace {

using fuzz::Silent;
using fuzz::Check;
using fuzz::Exact;

const NxTypeCmpFunc kRows[] = {StringCompare, OldStringCompare, NxIStringCompare,
                               NxCaseIStringCompare};

int Sign(int32_t v) {
  return (v > 0) - (v < 0);
}

// The orders of a whole key record of order text, closed by a zero order,
// and its state byte; false for anything else.
bool WholeKey(const Exact& e, unsigned char form, std::string& orders, unsigned char& state) {
  if (e.size < 6) return false;
  const uint32_t L = form == 2 ? uint32_t{e.data[0]} << 8 | e.data[1]
                               : uint32_t{e.data[0]} | uint32_t{e.data[1]} << 8;
  if (L < 4 || L % 2 != 0 || e.size < L + 2) return false;
  if (e.data[L + 1] == 0 || e.data[2] != NxCS_ORDERS || e.data[3] == 0 || (e.data[3] & 0x80) != 0)
    return false;
  orders.assign(reinterpret_cast<const char*>(e.data) + 4, L - 4);
  orders.append(2, '\0');
  state = e.data[3];
  return true;
}

void CheckOutcome(int32_t result, int status) {
  Check(status == 0 || status == NxSTATUS_PARTIAL || status == NxSTATUS_NO_ANSWER);
  if (status == NxSTATUS_NO_ANSWER) Check(result == -1);
}

// Legacy objects in memory form: the text up to the first zero byte, and a
// form byte of the input's choosing.
template <class X>
void CompareObjects(NxTypeCmpFunc compare, const Exact& one, const Exact& two,
                    unsigned short cmpOp, unsigned char forms) {
  const std::string a(reinterpret_cast<const char*>(one.data), one.size);
  const std::string b(reinterpret_cast<const char*>(two.data), two.size);
  X x[2] = {X(a.c_str()), X(b.c_str())};
  X y[2] = {X(b.c_str()), X(a.c_str())};
  x[0].form = forms & 0xC0;
  y[0].form = static_cast<unsigned char>(forms << 2) & 0xC0;
  int status = 77;
  CheckOutcome(compare(8, 0, x, 0, y, cmpOp, 1 + (forms & 1), status), status);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const bool quiet = (NxSetAssertHandler(Silent), true);
  (void)quiet;
  if (size < 7 || size > 4096) return 0;
  const unsigned char selector = data[0];
  const unsigned short cmpOp = static_cast<unsigned short>(data[1] | data[2] << 8);
  const uint32_t count = 1 + data[3] % 4;
  const size_t rest = size - 5;
  const size_t split = rest * data[4] / 255;
  if (split == 0 || split == rest) return 0;  // a stated size of 0 means "whole"
  const Exact one(data + 5, split);
  const Exact two(data + 5 + split, rest - split);

  const NxTypeCmpFunc compare = kRows[selector & 3];
  unsigned char format = (selector & 4) != 0 ? 2 : 1;
  if ((selector & 8) != 0) format |= 0x80;
  int status = 77;
  const int32_t result = compare(format, static_cast<uint32_t>(one.size), one.data,
                                 static_cast<uint32_t>(two.size), two.data, cmpOp, count, status);
  CheckOutcome(result, status);
  std::string orders1, orders2;
  unsigned char state1 = 0, state2 = 0;
  if ((selector & 3) < 2 && count == 1 && WholeKey(one, format & 0x0F, orders1, state1) &&
      WholeKey(two, format & 0x0F, orders2, state2)) {
    Check(status == 0);
    Check(Sign(result) == Sign(NxStrCmp(NxCS_ORDERS, state1, orders1.data(), NxCS_ORDERS, state2,
                                        orders2.data(), cmpOp, -1, format & 0x0F, nullptr)));
  }
  if ((selector & 3) == 2) CompareObjects<NxIString>(compare, one, two, cmpOp, selector);
  if ((selector & 3) == 3) CompareObjects<NxCaseIString>(compare, one, two, cmpOp, selector);
  return 0;
}
