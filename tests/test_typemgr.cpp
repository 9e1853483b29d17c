// Tests of the type table, the dispatch class NxTypeMgr, the library context and identification.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

#include <cstring>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace {

// Row properties in id order; nullable rows have a SetNull slot.
struct RowProperties {
  const char* name;
  unsigned short memLen, isFixed;
  const char* format;
  bool nullable;
};

// clang-format off
const RowProperties kCurrentRows[] = {
    {"char", 1, 1, "%c", 0}, {"short", 2, 1, "%hd", 0}, {"long", 4, 1, "%ld", 0}, {"double", 8, 1, "%lf", 0},
    {"float", 4, 1, "%f", 0}, {"NxWord", 2, 1, "%hu", 0}, {"NxDWord", 4, 1, "%lu", 0}, {"int", 4, 1, "%d", 0},
    {"unsigned", 4, 1, "%u", 0}, {"enum", 4, 1, "%d", 0}, {"NxByte", 1, 1, "%c", 0},
    {"NxString", sizeof(NxString), 0, "%s", 1}, {"NxDate", 4, 1, "%a %e.%b %Y", 1},
    {"NxTime", 3, 1, "%I:%M:%S %p", 1}, {"BlockId", 4, 1, "#%lu", 0}, {"NxObjId", 12, 1, "(%H-%L#%B)", 1},
    {"NxClassId", 4, 1, "(%Cv%V)", 1}, {"NxRef", 20, 1, "(%D:%H-%L#%B, %C)", 1},
    {"NxBlob", sizeof(void*), 0, "[BLOB,len=%L]", 1}, {"NxDateTime", 8, 1, "%a %e.%b %Y %I:%M:%S %p", 1},
    {"NxIString", 2 * sizeof(void*), 0, "%s", 0}, {"NxCaseIString", 2 * sizeof(void*), 0, "%s", 0},
    {"d_Date", 4, 1, "%a %b %e", 0}, {"d_Time", 6, 1, "%I:%M:%S %p", 0},
    {"d_Timestamp", 10, 1, "%a %b %e %I:%M:%S %p", 0},
    {"d_Interval", 4, 1, "%e days, %I hours, %M minutes, %S seconds", 0}, {"NxInt64", 8, 1, "%S", 0},
    {"NxBoolean", 1, 1, "noop", 1}, {"NxNull_char", 2, 1, "%c", 1}, {"NxNull_uchar", 2, 1, "%c", 1},
    {"NxNull_short", 4, 1, "%hd", 1}, {"NxNull_ushort", 4, 1, "%hu", 1}, {"NxNull_int", 8, 1, "%d", 1},
    {"NxNull_unsigned", 8, 1, "%u", 1}, {"NxNull_long", 8, 1, "%ld", 1}, {"NxNull_ulong", 8, 1, "%lu", 1},
    {"NxNull_float", 8, 1, "%f", 1}, {"NxNull_double", 16, 1, "%lf", 1}, {"NxNull_NxInt64", 12, 1, "%S", 1},
    {"NxSeal", 6, 1, "noop", 0}, {"illegal", 0, 1, "illegal", 0}};
// clang-format on

// Restores a process-wide row record when the test ends.
struct RowGuard {
  explicit RowGuard(NxTypeDesc* r) : row(r), saved(*r) {}
  ~RowGuard() { *row = saved; }
  NxTypeDesc* row;
  NxTypeDesc saved;
};

TEST(TypeTable, RowsCarryTheirPropertiesTheOldTableEndsAt28AndUnknownIdsReachIllegal) {
  NxTypeMgr mgr, old(0);
  const auto notFound = [](NxTypeMgr& m, const char* name) {
    char id = -5;
    EXPECT_EQ(m.Name2NxTypeId(name, id), 1) << name;
    return +id;
  };
  for (char id = 0, found = -5; id < 41; ++id) {
    const RowProperties& p = kCurrentRows[+id];
    SCOPED_TRACE(p.name);
    EXPECT_STREQ(mgr.NameGet(id, nullptr), p.name);
    EXPECT_EQ(mgr.MemLenGet(id, 1), p.memLen);
    EXPECT_EQ(mgr.IsFixed(id), p.isFixed);
    EXPECT_STREQ(mgr.ExchangeFormat(id, nullptr), p.format);
    EXPECT_TRUE(p.nullable || (!mgr.SetNullPtrGet(id) && !mgr.SupportsNullValue(id)));
    EXPECT_EQ(mgr.Name2NxTypeId(p.name, found), 0);
    EXPECT_EQ(found, id);
  }
  char buffer[20];
  std::memset(buffer, 'x', sizeof buffer);
  EXPECT_EQ(mgr.NameGet(NxTYPE_NxNull_unsigned, buffer), buffer);
  EXPECT_STREQ(buffer, "NxNull_unsigned");  // the longest name, 15 characters
  EXPECT_EQ(buffer[16], 'x') << "nothing written behind the zero";
  EXPECT_EQ(mgr.table[40], NxTypeMgr::IllegalRowGet());
  EXPECT_EQ(mgr.table[41], nullptr) << "the current table is closed by a null pointer";
  // Case counts, and so does every byte up to the zero.
  for (const char* unknown : {"nxword", "NXWORD", "NxWor", "NxWord ", "", "Illegal"}) {
    EXPECT_EQ(notFound(mgr, unknown), 41) << unknown;
  }
  // The old table shares the rows but has its own string row, and ends at 28.
  for (int id = 0; id < 28; ++id) EXPECT_EQ(old.table[id] == mgr.table[id], id != 11) << id;
  EXPECT_EQ(old.table[28], nullptr);
  ASSERT_NE(old.table[11], nullptr);
  EXPECT_STREQ(old.table[11]->name, "NxString");
  EXPECT_EQ(old.table[11]->SetNull, nullptr);
  char id = -5;
  EXPECT_EQ(old.Name2NxTypeId("NxBoolean", id), 0);
  EXPECT_EQ(id, 27);
  // Rows the old table lacks, "illegal" among them, end at its null entry.
  for (const char* missing : {"NxNull_char", "NxSeal", "illegal", "nothing"}) {
    EXPECT_EQ(notFound(old, missing), 28) << missing;
  }
  // Ids without a row reach the illegal row.
  NxTypeDesc* illegal = NxTypeMgr::IllegalRowGet();
  for (char id : {40, 41, 99, 100, 127, -1, -128}) {
    SCOPED_TRACE(+id);
    EXPECT_STREQ(mgr.NameGet(id, nullptr), "illegal");
    EXPECT_EQ(mgr.MemLenGet(id, 7), 0);
    EXPECT_EQ(mgr.CmpFuncPtrGet(id), illegal->Compare);
    EXPECT_EQ(mgr.ComparePtrGet(id), nullptr);
  }
  // Every id byte: the table's row, or the illegal row.
  for (int u = 0; u < 256; ++u) {
    const char id = static_cast<char>(u);
    EXPECT_EQ(mgr.RowGet(id), u < 41 ? mgr.table[u] : illegal) << u;
    EXPECT_EQ(old.RowGet(id), u < 28 ? old.table[u] : illegal) << u;
  }
  EXPECT_EQ(old.RowGet(char{27}), mgr.RowGet(char{27}));
  // IsValidType answers without the table.
  for (int raw : {0, 39, 40, 100, 101, 127, -1, -128, 41, 70, 99}) {
    EXPECT_EQ(NxTypeMgr::IsValidType(static_cast<char>(raw)), raw < 41 || raw > 99) << raw;
  }
}

// Factories 0-3 and 11 pick the old table (stored as 0-3); others the current one (stored as 4-10).
TEST(RowLookup, FactoryNumberChoosesTheTableStoresItMappedAndBoundsArrays) {
  const NxTypeMgr currentRef(5), oldRef(0), old(1);
  const std::pair<uint32_t, uint16_t> cases[] = {
      {0, 0}, {3, 3}, {4, 4}, {10, 10}, {11, 3}, {12, 4}, {255, 4}, {65538, 4}, {0xFFFFFFFFu, 4}};
  NxTypeMgr mgr;
  EXPECT_EQ(mgr.table, currentRef.table);
  EXPECT_EQ(mgr.factory, 5);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.first);
    mgr.SetFactory(c.first);
    NxTypeMgr constructed(c.first);
    EXPECT_EQ(mgr.table, c.second < 4 ? oldRef.table : currentRef.table);
    EXPECT_EQ(constructed.table, mgr.table);
    EXPECT_EQ(mgr.factory, c.second);
    EXPECT_EQ(constructed.factory, c.second);
  }
  // Lengths cut to 16 bits; array elements stride within the count.
  EXPECT_EQ(mgr.MemLenGet(NxTYPE_NxRef, 4000), 14464);  // 80000 mod 65536
  EXPECT_EQ(mgr.MemLenGet(NxTYPE_NxRef, 3277), 4);
  EXPECT_EQ(mgr.MemLenGet(NxTYPE_long, 3), 12);
  EXPECT_EQ(mgr.MemLenGet(NxTYPE_long), 4);
  double base[8] = {};
  char* bytes = reinterpret_cast<char*>(base);
  EXPECT_EQ(mgr.GetArrayElement(NxTYPE_long, base, 3, 0), bytes + 12) << "count 0: no bound";
  EXPECT_EQ(mgr.GetArrayElement(NxTYPE_long, base, 3, 4), bytes + 12);
  EXPECT_EQ(mgr.GetArrayElement(NxTYPE_long, base, 3, 3), nullptr);
  EXPECT_EQ(mgr.GetArrayElement(NxTYPE_NxRef, base, 2, 0), bytes + 40);
  // The old table has a null entry at 28 and nothing behind it.
  EXPECT_EQ(old.GetArrayElement(char{28}, base, 0, 0), nullptr);
  EXPECT_EQ(old.GetArrayElement(char{35}, base, 1, 4), nullptr);
  EXPECT_EQ(old.GetArrayElement(NxTYPE_short, base, 1, 4), bytes + 2);
}

// Probes in a row's slots record what reaches them; operands are ints holding 1 or 2.
std::string seen;
template <typename... T>
void Record(const T&... values) {
  std::ostringstream out;
  ((out << ' ' << values), ...);
  seen = out.str().substr(1);
}
uint32_t ProbeSizeGet(const void* value, unsigned char valueFormat, unsigned char diskFormat,
                      uint32_t count) {
  Record(*static_cast<const int*>(value), +valueFormat, +diskFormat, count);
  return 4321;
}
int32_t ProbeCompare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                     void* value2, unsigned short cmpOp, uint32_t count, int& status) {
  Record(+format, length1, *static_cast<int*>(value1), length2, *static_cast<int*>(value2), cmpOp,
         count, status);
  status = 2101;
  return -7;
}
uint32_t ProbeHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                   int& status) {
  Record(+format, length, *static_cast<int*>(value), count);
  status = 2102;
  return 99;
}

// Forwarders reorder their arguments as the slots take them; exchanges reach every manager.
TEST(Dispatch, ForwardersReorderArgumentsAndExchangesReachEveryManager) {
  NxTypeMgr first, second(6), old(0);
  RowGuard sealGuard(first.RowGet(NxTYPE_NxSeal)), longGuard(first.RowGet(NxTYPE_long)),
      stringGuard(first.RowGet(NxTYPE_NxString)), shortGuard(first.RowGet(NxTYPE_short));
  NxTypeDesc* row = first.RowGet(NxTYPE_NxSeal);
  row->SizeGet = ProbeSizeGet;
  row->Compare = ProbeCompare;
  row->Hash = ProbeHash;
  int a = 1, b = 2, status = 55;
  EXPECT_EQ(first.DiskLenGet(NxTYPE_NxSeal, &a, 2, 3, 8), 4321u);
  EXPECT_EQ(seen, "1 8 2 3") << "the value format moves from last to second place";
  EXPECT_EQ(first.Cmp(NxTYPE_NxSeal, 6, &a, 9, &b, 0x30, 3, 0x82, status), -7);
  EXPECT_EQ(seen, "130 6 1 9 2 48 3 55") << "the format moves to first place";
  EXPECT_EQ(status, 2101);
  // The short Cmp passes lengths 0 and a status of its own that starts at 0.
  EXPECT_EQ(first.Cmp(NxTYPE_NxSeal, &a, &b, 0x20, 4, 1), -7);
  EXPECT_EQ(seen, "1 0 1 0 2 32 4 0");
  EXPECT_EQ(status, 2101);
  EXPECT_EQ(first.Hash(NxTYPE_NxSeal, 12, &a, 5, 2, status), 99u);
  EXPECT_EQ(seen, "2 12 1 5");
  EXPECT_EQ(status, 2102);
  // The short Cmp runs through whole arrays: the last element decides.
  int32_t x[3] = {5, 6, 7}, y[3] = {5, 6, 8};
  EXPECT_EQ(first.Cmp(NxTYPE_long, x, y, 0, 3, 8), -1);
  EXPECT_EQ(first.Cmp(NxTYPE_long, y, x, 0, 3, 8), 1);
  EXPECT_EQ(first.Cmp(NxTYPE_long, x, y, 0, 2, 8), 0);

  // Formats: the pointer is kept, a null one only asks.
  static const char kNewFormat[] = "<%ld>";
  EXPECT_STREQ(first.ExchangeFormat(NxTYPE_long, kNewFormat), "%ld");
  EXPECT_EQ(second.ExchangeFormat(NxTYPE_long, nullptr), kNewFormat);
  EXPECT_EQ(old.RowGet(NxTYPE_long)->Format, kNewFormat);
  const NxTypeCmpFunc original = first.ExchangeNxTypeCmpFunc(NxTYPE_long, nullptr);
  EXPECT_EQ(original, &LongCompare);
  EXPECT_EQ(first.ExchangeNxTypeCmpFunc(NxTYPE_long, ProbeCompare), original);
  EXPECT_EQ(second.Cmp(NxTYPE_long, &b, &a, 0, 1, 8), -7);
  EXPECT_EQ(old.Cmp(NxTYPE_long, &b, &a, 0, 1, 8), -7) << "the old table holds the same row";
  EXPECT_EQ(second.ExchangeNxTypeCmpFunc(NxTYPE_long, original), &ProbeCompare);
  EXPECT_EQ(first.Cmp(NxTYPE_long, &b, &a, 0, 1, 8), 1);
  // The old string row is a record of its own and keeps its comparator.
  const NxTypeCmpFunc oldStringCompare = old.CmpFuncPtrGet(NxTYPE_NxString);
  first.ExchangeNxTypeCmpFunc(NxTYPE_NxString, ProbeCompare);
  EXPECT_EQ(second.CmpFuncPtrGet(NxTYPE_NxString), &ProbeCompare);
  EXPECT_EQ(old.CmpFuncPtrGet(NxTYPE_NxString), oldStringCompare);
  // Print slots: only the one row changes.
  NxPrintToNxStringFunc probe = [](NxString& r, void*, const char*, uint32_t) -> NxString& {
    return r;
  };
  const NxPrintToNxStringFunc print = first.ExchangePrintToNxStringFunc(NxTYPE_short, probe);
  EXPECT_NE(print, nullptr);
  EXPECT_EQ(second.RowGet(NxTYPE_short)->PrintToString, probe);
  EXPECT_EQ(second.RowGet(NxTYPE_NxWord)->PrintToString, print);
  EXPECT_EQ(second.ExchangePrintToNxStringFunc(NxTYPE_short, print), probe);
}

TEST(IllegalRow, DoesNothingAndWritesNoArgument) {
  const NxTypeDesc* row = NxTypeMgr::IllegalRowGet();
  unsigned char a[16], b[16];
  std::memset(a, 0xA5, sizeof a);
  std::memset(b, 0x5A, sizeof b);
  EXPECT_TRUE(!row->Create(4) && !row->Delete(a, 4) && !row->DefaultValue(4, 1) && !row->IsNull(a));
  EXPECT_EQ(row->Store(a, b, 1, 4) + row->Load(a, b, 2, 4) + row->SizeGet(a, 8, 1, 4) +
                row->Translate(a, 1, 16, b, 8, 16, 4),
            0u);
  row->Constructor(a, 4, 0);
  row->Assignment(a, b, 4, 0);
  row->Copy(a, b, 4, 1);
  int status = 1234;
  EXPECT_EQ(row->Compare(8, 0, a, 0, b, 0, 4, status) + row->Hash(8, 0, a, 4, status), 0u);
  EXPECT_EQ(status, 1234) << "status keeps what it held";
  NxIdxBounds bounds{a, b, 3, 4}, narrowed{b, a, 5, 6};
  unsigned short op = 0x1234;
  EXPECT_EQ(row->EvalAndBound(&bounds, op, a, 8, 4, &narrowed), 0.0f);
  EXPECT_EQ(op, 0x1234);
  EXPECT_EQ(bounds.lowLength + narrowed.highLength, 9);
  EXPECT_EQ(narrowed.low, static_cast<void*>(b));
  EXPECT_EQ(std::string(reinterpret_cast<char*>(a), 16), std::string(16, '\xA5'));
  EXPECT_EQ(std::string(reinterpret_cast<char*>(b), 16), std::string(16, '\x5A'));
}

// Leaves no default manager behind; a leak or double free shows under ASan.
TEST(LibraryContext, OpenMakesADefaultManagerAndCloseFreesTheCurrentOne) {
  ASSERT_EQ(DefaultTypeMgr(nullptr), nullptr) << "no default manager before the first open";
  EXPECT_EQ(___NxTypeMgrOptions(), 0);
  ___NxTypemgrContext(1);
  NxTypeMgr* made = DefaultTypeMgr(nullptr);
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->factory, 5);
  EXPECT_EQ(made->table, NxTypeMgr().table);
  // Each open makes a new manager and simply overwrites the last one.
  ___NxTypemgrContext(1);
  NxTypeMgr* second = DefaultTypeMgr(nullptr);
  EXPECT_NE(second, made);
  delete made;
  // A replacement hands the previous manager back, unfreed.
  NxTypeMgr* mine = new NxTypeMgr(2);
  EXPECT_EQ(DefaultTypeMgr(mine), second);
  EXPECT_EQ(DefaultTypeMgr(nullptr), mine);
  delete second;
  ___NxTypemgrContext(0);
  EXPECT_EQ(DefaultTypeMgr(nullptr), nullptr);
  ___NxTypemgrContext(0);  // nothing left to free
}

TEST(Identification, VersionCheckDescriptionAndInfoText) {
  EXPECT_EQ(NxCheckDll(0), 0) << "the library sets the caller bits itself";
  EXPECT_EQ(NxCheckDll(NxVERSION_FLAG_BUILD), 0) << "the build number 16 matches too";
  uint32_t v[7] = {77, 77, 77, 77, 77, 77, 77};
  const char *name = nullptr, *stamp = nullptr, *unknown = nullptr, *tool = nullptr,
             *empty = nullptr, *infoTool = nullptr, *date = nullptr, *info = nullptr;
  EXPECT_STREQ(NxDescribeDll(&v[0], &v[1], &v[2], &v[3], &v[4], &name, &stamp, &unknown, &v[5],
                             &tool, &empty),
               "Zentrolith Typemanager");
  EXPECT_EQ(std::vector<uint32_t>(v, v + 5), (std::vector<uint32_t>{9, 5, 16, 182, 0}));
  ASSERT_TRUE(name && unknown && empty && tool);
  EXPECT_EQ(std::string(name) + "," + unknown + "," + empty, "nxtms,unknown,");
  EXPECT_STRNE(tool, "");
  GetNxTypeMgrInfo(&infoTool, &v[6], &info, &date, nullptr);
  EXPECT_STREQ(infoTool, tool);
  EXPECT_EQ(v[6], v[5]);
  ASSERT_TRUE(date && stamp && info);
  const std::string month =
      "(Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) [ 0-3][0-9] [0-9]{4}";
  EXPECT_TRUE(std::regex_match(date, std::regex(month))) << date;
  EXPECT_TRUE(std::regex_match(stamp, std::regex(month + " [0-2][0-9]:[0-5][0-9]:[0-5][0-9]")));
  EXPECT_EQ(std::string(stamp).substr(0, std::strlen(date) + 1), std::string(date) + " ");
  // One static buffer: all pointers null composes nothing; asking again rewrites it in place.
  EXPECT_STREQ(info, "Zentrolith Typemanager 9.5.16.182.0 ");
  const_cast<char*>(info)[0] = '#';
  GetNxTypeMgrInfo(nullptr, nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(info[0], '#');
  const char* again = nullptr;
  GetNxTypeMgrInfo(nullptr, nullptr, &again, nullptr, nullptr);
  EXPECT_EQ(again, info);
  EXPECT_STREQ(again, "Zentrolith Typemanager 9.5.16.182.0 ");
}

}  // namespace
