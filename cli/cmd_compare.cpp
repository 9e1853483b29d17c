// nxtm compare --type TYPE: two values of any row, read as the program reads
// values, put in the chosen form and ordered by the row's comparator.
#include <cstdio>
#include <string>
#include <vector>

#include <nxtm/nxtm.h>

#include "cli.h"
#include "values.h"

namespace cli {

namespace {

const char kUsage[] =
    "usage: nxtm compare --type TYPE A B [--format 1|2|8] [--count N] [--length1 N] "
    "[--length2 N] [--wildcards]";

// One operand: memory elements, and in a disk form the bytes that Store
// wrote for them.
struct Operand {
  explicit Operand(NxTypeMgr& mgr, char id) : values(mgr, id) {}
  Values values;
  std::vector<unsigned char> disk;
  void* data() { return disk.empty() ? values.data() : disk.data(); }
  size_t size(NxTypeMgr& mgr, char id) const {
    return disk.empty() ? static_cast<size_t>(values.count()) * mgr.MemLenGet(id, 1) : disk.size();
  }
};

bool TakeLength(Args& args, const char* option, uint32_t& length, std::string& error) {
  bool missing = false;
  const std::string text = TakeOption(args, option, "0", missing);
  long value = 0;
  if (missing || !ParseNumber(text, 0, 0xFFFFFFFFL, value)) {
    error = std::string(option) + " needs a byte count";
    return false;
  }
  length = static_cast<uint32_t>(value);
  return true;
}

}  // namespace

int RunTypedCompare(const Args& given) {
  Args args = given;
  bool missing = false;
  const std::string typeName = TakeOption(args, "--type", "", missing);
  if (missing || typeName.empty()) return Fail(kUsage);
  const std::string formatText = TakeOption(args, "--format", "8", missing);
  unsigned char format = 8;
  if (missing || !ParseFormat(formatText, true, format))
    return Fail("compare: bad format '" + formatText + "' (1, 2 or 8)");
  const std::string countText = TakeOption(args, "--count", "1", missing);
  long count = 1;
  if (missing || !ParseNumber(countText, 1, 1000, count))
    return Fail("compare: --count needs a number from 1 to 1000");
  uint32_t length1 = 0;
  uint32_t length2 = 0;
  std::string error;
  if (!TakeLength(args, "--length1", length1, error) ||
      !TakeLength(args, "--length2", length2, error))
    return Fail("compare: " + error);
  const unsigned short cmpOp = TakeFlag(args, "--wildcards") ? 0 : NxCMP_NO_WILDCARDS;
  for (const std::string& a : args)
    if (a.size() > 2 && a.compare(0, 2, "--") == 0) return Fail("compare: unknown option " + a);
  if (args.size() != 2 * static_cast<size_t>(count)) return Fail(kUsage);

  NxTypeMgr mgr;
  char id = 0;
  if (!FindType(mgr, typeName, id)) return Fail("compare: unknown type '" + typeName + "'");
  if (!Stands(mgr, id, &NxTypeDesc::Compare))
    return Fail("compare: '" + typeName + "' has no comparator in this build yet");
  if (format != 8 && !Stands(mgr, id, &NxTypeDesc::Store))
    return Fail("compare: '" + typeName + "' has no disk form in this build yet");
  Operand first(mgr, id), second(mgr, id);
  const auto middle = args.begin() + count;
  if (!ReadValues(mgr, id, typeName, Args(args.begin(), middle), first.values, error) ||
      !ReadValues(mgr, id, typeName, Args(middle, args.end()), second.values, error))
    return Fail("compare: " + error);
  for (Operand* o : {&first, &second}) {
    if (format == 8) continue;
    const uint32_t n = o->values.count();
    o->disk.resize(mgr.DiskLenGet(id, o->values.data(), format, n, 8));
    o->disk.resize(mgr.Store(id, o->disk.data(), o->values.data(), format, n));
  }
  // A stated length may cut an operand, never reach past it.
  const size_t size1 = first.size(mgr, id);
  const size_t size2 = second.size(mgr, id);
  if (length1 > size1)
    return Fail("compare: --length1 " + std::to_string(length1) + " is longer than the " +
                std::to_string(size1) + " bytes of the first operand");
  if (length2 > size2)
    return Fail("compare: --length2 " + std::to_string(length2) + " is longer than the " +
                std::to_string(size2) + " bytes of the second operand");

  int status = 0;
  const int32_t r = mgr.Cmp(id, length1, first.data(), length2, second.data(), cmpOp,
                            static_cast<uint32_t>(count), format, status);
  std::printf("sign   %d\n", r < 0 ? -1 : (r > 0 ? 1 : 0));
  std::printf("value  %ld\n", static_cast<long>(r));
  std::printf("status %d\n", status);
  return 0;
}

}  // namespace cli
