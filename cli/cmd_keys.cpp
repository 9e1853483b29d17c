// nxtm estimate | hash: what the query layer asks of a type about index keys,
// the share of a key range that a predicate keeps with the narrowed range,
// and the hash of values in memory and disk form.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <nxtm/nxtm.h>

#include "cli.h"
#include "values.h"

namespace cli {
// The estimate of NxString, on the index keys of texts (cmd_text.cpp).
int EstimateStrings(const Args& args, unsigned short op, unsigned char format);
}  // namespace cli

namespace {

using cli::Args;

// The values of `texts` in disk form: read into memory elements and stored
// by the row.  False with a message in `error`.
bool DiskBytes(NxTypeMgr& mgr, char id, const std::string& typeName, const Args& texts,
               unsigned char format, std::vector<unsigned char>& disk, std::string& error) {
  cli::Values values(mgr, id);
  if (!cli::ReadValues(mgr, id, typeName, texts, values, error)) return false;
  const uint32_t length = mgr.DiskLenGet(id, values.data(), format, values.count(), 8);
  disk.assign(length + 1, 0);
  disk.resize(mgr.Store(id, disk.data(), values.data(), format, values.count()));
  return true;
}

// An operator by sign ("=", "<", ">", "<=", ">=", "!=") or as the number of
// the word (decimal, or hex with 0x).
bool ParseOperator(const std::string& text, unsigned short& op) {
  static const struct {
    const char* sign;
    unsigned short op;
  } kSigns[] = {{"=", 1}, {"<", 2}, {">", 4}, {"<=", 3}, {">=", 5}, {"!=", 6}, {"<>", 6}};
  for (const auto& s : kSigns) {
    if (text == s.sign) {
      op = s.op;
      return true;
    }
  }
  if (text.empty()) return false;
  char* end = nullptr;
  const unsigned long v = std::strtoul(text.c_str(), &end, 0);
  if (*end != '\0' || text[0] == '-' || v > 0xFFFF) return false;
  op = static_cast<unsigned short>(v);
  return true;
}

// The shortest decimal form that reads back as the same float.
std::string Shortest(float value) {
  char text[32];
  for (int digits = 6; digits < 9; ++digits) {
    std::snprintf(text, sizeof text, "%.*g", digits, static_cast<double>(value));
    if (std::strtof(text, nullptr) == value) return text;
  }
  std::snprintf(text, sizeof text, "%.9g", static_cast<double>(value));
  return text;
}

// A narrowed key: its bytes, and behind them the value they hold when they
// make one whole element of a fixed-length row.
std::string Bound(NxTypeMgr& mgr, char id, unsigned char format, const void* key,
                  unsigned char length) {
  if (key == nullptr) return "open";
  std::string shown = cli::Hex(static_cast<const unsigned char*>(key), length);
  cli::Values element(mgr, id);
  if (mgr.IsFixed(id) != 0 && mgr.DiskLenGet(id, nullptr, format, 1, 0) == length &&
      element.Make(1)) {
    mgr.Load(id, element.data(), const_cast<void*>(key), format, 1);
    shown += " (" + cli::ShowValue(mgr, id, element.data()) + ")";
  }
  return shown;
}

int RunEstimate(const Args& input) {
  Args args = input;
  bool missing = false;
  const std::string formatText = cli::TakeOption(args, "--format", "1", missing);
  if (missing) return cli::Fail("estimate: --format needs a value (1 or 2)");
  unsigned char format = 1;
  if (!cli::ParseFormat(formatText, false, format))
    return cli::Fail("estimate: bad format '" + formatText + "' (1 or 2)");
  if (args.size() >= 4 && args[0] == "NxString") {
    unsigned short op = 0;
    if (!ParseOperator(args[3], op))
      return cli::Fail("estimate: bad operator '" + args[3] + "' (=, <, >, <=, >=, != or a number)");
    return cli::EstimateStrings(args, op, format);
  }
  if (args.size() != 5)
    return cli::Fail("estimate: usage: nxtm estimate TYPE LOW HIGH OP VALUE [--format 1|2]");
  NxTypeMgr mgr;
  char id = 0;
  if (!cli::FindType(mgr, args[0], id))
    return cli::Fail("estimate: unknown type '" + args[0] + "'");
  if (!cli::Stands(mgr, id, &NxTypeDesc::EvalAndBound) || !cli::Stands(mgr, id, &NxTypeDesc::Store))
    return cli::Fail("estimate: '" + args[0] + "' has no range estimate in this build yet");
  unsigned short op = 0;
  if (!ParseOperator(args[3], op))
    return cli::Fail("estimate: bad operator '" + args[3] + "' (=, <, >, <=, >=, != or a number)");
  std::vector<unsigned char> low, high, value;
  std::string error;
  if (!DiskBytes(mgr, id, args[0], {args[1]}, format, low, error) ||
      !DiskBytes(mgr, id, args[0], {args[2]}, format, high, error) ||
      !DiskBytes(mgr, id, args[0], {args[4]}, format, value, error))
    return cli::Fail("estimate: " + error);
  NxIdxBounds bounds{low.data(), high.data(), static_cast<unsigned char>(low.size()),
                     static_cast<unsigned char>(high.size())};
  NxIdxBounds narrowed{nullptr, nullptr, 0, 0};
  const unsigned short given = op;
  const float share =
      mgr.EvalAndBound(id, &bounds, op, value.data(), format, 1, &narrowed, nullptr);
  std::printf("fraction %s\n", Shortest(share).c_str());
  std::printf("low      %s\n", Bound(mgr, id, format, narrowed.low, narrowed.lowLength).c_str());
  std::printf("high     %s\n", Bound(mgr, id, format, narrowed.high, narrowed.highLength).c_str());
  // The row may mask the operator word, and sets bit 3 for a wild value.
  if (op != given) std::printf("op       0x%04x (was 0x%04x)\n", op, given);
  std::free(narrowed.low);
  std::free(narrowed.high);
  return 0;
}

int RunHash(const Args& input) {
  Args args = input;
  const bool disk = cli::TakeFlag(args, "--disk");
  bool missing = false;
  const std::string formatText = cli::TakeOption(args, "--format", disk ? "1" : "8", missing);
  if (missing) return cli::Fail("hash: --format needs a value (1, 2 or 8)");
  unsigned char format = 8;
  if (!cli::ParseFormat(formatText, true, format))
    return cli::Fail("hash: bad format '" + formatText + "' (1, 2 or 8)");
  if (disk && format == 8) return cli::Fail("hash: --disk needs a disk format (1 or 2)");
  const std::string lengthText = cli::TakeOption(args, "--length", "0", missing);
  long length = 0;
  if (missing || !cli::ParseNumber(lengthText, 0, 0x7FFFFFFF, length))
    return cli::Fail("hash: --length needs a number of bytes");
  if (args.size() < 2)
    return cli::Fail("hash: usage: nxtm hash TYPE VALUE... [--format 1|2|8] [--disk] [--length N]");
  NxTypeMgr mgr;
  char id = 0;
  if (!cli::FindType(mgr, args[0], id)) return cli::Fail("hash: unknown type '" + args[0] + "'");
  if (!cli::Stands(mgr, id, &NxTypeDesc::Hash))
    return cli::Fail("hash: '" + args[0] + "' has no hash in this build yet");
  const Args texts(args.begin() + 1, args.end());
  cli::Values values(mgr, id);
  std::string error;
  if (!cli::ReadValues(mgr, id, args[0], texts, values, error)) return cli::Fail("hash: " + error);
  const uint32_t count = values.count();
  const uint32_t stated = static_cast<uint32_t>(length);
  int status = 0;
  if (format == 8) {
    const uint32_t h = mgr.Hash(id, stated, values.data(), count, 8, status);
    std::printf("hash   %08x\nstatus %d\n", h, status);
    return 0;
  }
  if (!cli::Stands(mgr, id, &NxTypeDesc::Store))
    return cli::Fail("hash: '" + args[0] + "' has no disk form in this build yet");
  std::vector<unsigned char> bytes(mgr.DiskLenGet(id, values.data(), format, count, 8) + 1, 0);
  bytes.resize(mgr.Store(id, bytes.data(), values.data(), format, count));
  const uint32_t h = mgr.Hash(id, stated, bytes.data(), count, format, status);
  std::printf("disk   %s\n", cli::Hex(bytes.data(), bytes.size()).c_str());
  std::printf("hash   %08x\nstatus %d\n", h, status);
  if (disk) {
    int memoryStatus = 0;
    const uint32_t m = mgr.Hash(id, 0, values.data(), count, 8, memoryStatus);
    std::printf("memory %08x\nforms  %s\n", m, m == h ? "agree" : "differ");
  }
  return 0;
}

const cli::Registrar kEstimate({"estimate",
                                "estimate TYPE LOW HIGH OP VALUE [--format 1|2]; NxString also "
                                "[options of compare] [--no-wildcards]",
                                "the share of the key range LOW..HIGH that OP VALUE keeps, and "
                                "the narrowed bounds (of NxString: keys, as orders)",
                                RunEstimate, 50});
const cli::Registrar kHash({"hash", "hash TYPE VALUE... [--format 1|2|8] [--disk] [--length N]",
                            "the 32-bit hash of values, in memory or disk form", RunHash, 51});

}  // namespace
