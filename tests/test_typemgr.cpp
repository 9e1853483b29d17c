// Tests of the type table and the dispatch class NxTypeMgr, and of the
// library's context and identification.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

#include <cstring>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct RowProperties {
  int id;
  const char* name;
  unsigned short memLen;
  unsigned short isFixed;
  const char* format;
  bool nullable;  // the type has a null value: its row has a SetNull slot
};

const RowProperties kCurrentRows[] = {
    {0, "char", 1, 1, "%c", false},
    {1, "short", 2, 1, "%hd", false},
    {2, "long", 4, 1, "%ld", false},
    {3, "double", 8, 1, "%lf", false},
    {4, "float", 4, 1, "%f", false},
    {5, "NxWord", 2, 1, "%hu", false},
    {6, "NxDWord", 4, 1, "%lu", false},
    {7, "int", 4, 1, "%d", false},
    {8, "unsigned", 4, 1, "%u", false},
    {9, "enum", 4, 1, "%d", false},
    {10, "NxByte", 1, 1, "%c", false},
    {11, "NxString", sizeof(NxString), 0, "%s", true},
    {12, "NxDate", 4, 1, "%a %e.%b %Y", true},
    {13, "NxTime", 3, 1, "%I:%M:%S %p", true},
    {14, "BlockId", 4, 1, "#%lu", false},
    {15, "NxObjId", 12, 1, "(%H-%L#%B)", true},
    {16, "NxClassId", 4, 1, "(%Cv%V)", true},
    {17, "NxRef", 20, 1, "(%D:%H-%L#%B, %C)", true},
    {18, "NxBlob", sizeof(void*), 0, "[BLOB,len=%L]", true},
    {19, "NxDateTime", 8, 1, "%a %e.%b %Y %I:%M:%S %p", true},
    {20, "NxIString", 2 * sizeof(void*), 0, "%s", false},
    {21, "NxCaseIString", 2 * sizeof(void*), 0, "%s", false},
    {22, "d_Date", 4, 1, "%a %b %e", false},
    {23, "d_Time", 6, 1, "%I:%M:%S %p", false},
    {24, "d_Timestamp", 10, 1, "%a %b %e %I:%M:%S %p", false},
    {25, "d_Interval", 4, 1, "%e days, %I hours, %M minutes, %S seconds", false},
    {26, "NxInt64", 8, 1, "%S", false},
    {27, "NxBoolean", 1, 1, "noop", true},
    {28, "NxNull_char", 2, 1, "%c", true},
    {29, "NxNull_uchar", 2, 1, "%c", true},
    {30, "NxNull_short", 4, 1, "%hd", true},
    {31, "NxNull_ushort", 4, 1, "%hu", true},
    {32, "NxNull_int", 8, 1, "%d", true},
    {33, "NxNull_unsigned", 8, 1, "%u", true},
    {34, "NxNull_long", 8, 1, "%ld", true},
    {35, "NxNull_ulong", 8, 1, "%lu", true},
    {36, "NxNull_float", 8, 1, "%f", true},
    {37, "NxNull_double", 16, 1, "%lf", true},
    {38, "NxNull_NxInt64", 12, 1, "%S", true},
    {39, "NxSeal", 6, 1, "noop", false},
    {40, "illegal", 0, 1, "illegal", false}};

char Id(int id) {
  return static_cast<char>(id);
}

// Restores a process-wide row record when the test ends.
class RowGuard {
 public:
  explicit RowGuard(NxTypeDesc* row) : row_(row), saved_(*row) {}
  ~RowGuard() { *row_ = saved_; }
  RowGuard(const RowGuard&) = delete;
  RowGuard& operator=(const RowGuard&) = delete;

 private:
  NxTypeDesc* row_;
  NxTypeDesc saved_;
};

TEST(TypeTable, EveryCurrentRowCarriesItsPropertiesAndIsFoundByName) {
  NxTypeMgr mgr;
  for (const RowProperties& p : kCurrentRows) {
    SCOPED_TRACE(p.name);
    const char id = Id(p.id);
    EXPECT_STREQ(mgr.NameGet(id, nullptr), p.name);
    EXPECT_EQ(mgr.MemLenGet(id, 1), p.memLen);
    EXPECT_EQ(mgr.IsFixed(id), p.isFixed);
    EXPECT_STREQ(mgr.ExchangeFormat(id, nullptr), p.format);
    if (!p.nullable) {
      EXPECT_EQ(mgr.SetNullPtrGet(id), nullptr);
      EXPECT_EQ(mgr.SupportsNullValue(id), 0);
    }
    char found = -5;
    EXPECT_EQ(mgr.Name2NxTypeId(p.name, found), 0);
    EXPECT_EQ(found, p.id);
  }
  char buffer[20];
  std::memset(buffer, 'x', sizeof buffer);
  EXPECT_EQ(mgr.NameGet(NxTYPE_NxNull_unsigned, buffer), buffer);
  EXPECT_STREQ(buffer, "NxNull_unsigned");  // the longest name, 15 characters
  EXPECT_EQ(buffer[16], 'x') << "nothing written behind the zero";
  EXPECT_EQ(mgr.NameGet(NxTYPE_long, nullptr), mgr.RowGet(NxTYPE_long)->name);
  EXPECT_EQ(mgr.table[40], NxTypeMgr::IllegalRowGet());
  EXPECT_EQ(mgr.table[41], nullptr) << "the current table is closed by a null pointer";
  // Case counts, and so does every byte up to the zero.
  for (const char* unknown : {"nxword", "NXWORD", "NxWor", "NxWord ", "", "Illegal"}) {
    char id = -5;
    EXPECT_EQ(mgr.Name2NxTypeId(unknown, id), 1) << unknown;
    EXPECT_EQ(id, 41) << unknown;
  }
}

TEST(TypeTable, OldTableSharesTheRowsButHasItsOwnStringRowAndEndsAt28) {
  NxTypeMgr current(5);
  NxTypeMgr old(0);
  ASSERT_NE(old.table, current.table);
  for (int id = 0; id < 28; ++id) {
    EXPECT_EQ(old.table[id] == current.table[id], id != 11) << id;
  }
  EXPECT_EQ(old.table[28], nullptr);
  const NxTypeDesc* oldString = old.table[11];
  ASSERT_NE(oldString, nullptr);
  EXPECT_STREQ(oldString->name, "NxString");
  EXPECT_EQ(oldString->SetNull, nullptr);

  char id = -5;
  EXPECT_EQ(old.Name2NxTypeId("NxBoolean", id), 0);
  EXPECT_EQ(id, 27);
  // Rows the old table lacks, "illegal" among them, end at its null entry.
  for (const char* missing : {"NxNull_char", "NxSeal", "illegal", "nothing"}) {
    id = -5;
    EXPECT_EQ(old.Name2NxTypeId(missing, id), 1) << missing;
    EXPECT_EQ(id, 28) << missing;
  }
}

TEST(RowLookup, IdsWithoutARowReachIllegal) {
  NxTypeMgr mgr;
  NxTypeMgr old(2);
  NxTypeDesc* illegal = NxTypeMgr::IllegalRowGet();
  for (int raw : {40, 41, 99, 100, 127, -1, -128}) {
    SCOPED_TRACE(raw);
    const char id = Id(raw);
    EXPECT_EQ(mgr.RowGet(id), illegal);
    EXPECT_STREQ(mgr.NameGet(id, nullptr), "illegal");
    EXPECT_EQ(mgr.MemLenGet(id, 7), 0);
    EXPECT_EQ(mgr.CmpFuncPtrGet(id), illegal->Compare);
    EXPECT_EQ(mgr.ComparePtrGet(id), nullptr);
  }
  for (int raw = 28; raw <= 40; ++raw) EXPECT_EQ(old.RowGet(Id(raw)), illegal) << raw;
  EXPECT_EQ(old.RowGet(Id(27)), mgr.RowGet(Id(27)));

  // IsValidType answers without the table.
  for (int raw : {0, 39, 40, 100, 101, 127, -1, -128}) {
    EXPECT_EQ(NxTypeMgr::IsValidType(Id(raw)), 1) << raw;
  }
  for (int raw : {41, 70, 99}) EXPECT_EQ(NxTypeMgr::IsValidType(Id(raw)), 0) << raw;
}

TEST(RowLookup, FactoryNumberChoosesTheTableAndIsStoredMapped) {
  const NxTypeMgr currentRef(5);
  const NxTypeMgr oldRef(0);
  struct Case {
    uint32_t factory;
    bool old;
    uint16_t stored;
  };
  const Case cases[] = {{0, true, 0},    {3, true, 3},      {4, false, 4},
                        {10, false, 10}, {11, true, 3},     {12, false, 4},
                        {255, false, 4}, {65538, false, 4}, {0xFFFFFFFFu, false, 4}};
  NxTypeMgr mgr;
  EXPECT_EQ(mgr.table, currentRef.table);
  EXPECT_EQ(mgr.factory, 5);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.factory);
    mgr.SetFactory(c.factory);
    EXPECT_EQ(mgr.table, c.old ? oldRef.table : currentRef.table);
    EXPECT_EQ(mgr.factory, c.stored);
    NxTypeMgr constructed(c.factory);
    EXPECT_EQ(constructed.table, mgr.table);
    EXPECT_EQ(constructed.factory, c.stored);
  }
}

TEST(MemoryLayout, MemLenCutsTo16BitsAndArrayElementsStrideWithinTheCount) {
  NxTypeMgr mgr;
  EXPECT_EQ(mgr.MemLenGet(NxTYPE_NxRef, 4000), 14464);  // 80000 mod 65536
  EXPECT_EQ(mgr.MemLenGet(NxTYPE_NxRef, 3277), 4);
  EXPECT_EQ(mgr.MemLenGet(NxTYPE_long, 3), 12);
  EXPECT_EQ(mgr.MemLenGet(NxTYPE_long), 4);

  double values[8] = {};
  void* base = values;
  char* bytes = static_cast<char*>(base);
  EXPECT_EQ(mgr.GetArrayElement(NxTYPE_long, base, 3, 0), bytes + 12) << "count 0: no bound";
  EXPECT_EQ(mgr.GetArrayElement(NxTYPE_long, base, 3, 4), bytes + 12);
  EXPECT_EQ(mgr.GetArrayElement(NxTYPE_long, base, 3, 3), nullptr);
  EXPECT_EQ(mgr.GetArrayElement(NxTYPE_NxRef, base, 2, 0), bytes + 40);
  // The old table has a null entry at 28 and nothing behind it.
  NxTypeMgr old(1);
  EXPECT_EQ(old.GetArrayElement(Id(28), base, 0, 0), nullptr);
  EXPECT_EQ(old.GetArrayElement(Id(35), base, 1, 4), nullptr);
  EXPECT_EQ(old.GetArrayElement(NxTYPE_short, base, 1, 4), bytes + 2);
}

// Probes in a row's slots record what reaches them; operands show as a or b.
std::string seen;
const void* operandA = nullptr;
const int* seenStatus = nullptr;
std::string Operand(const void* p) {
  return p == operandA ? "a" : (p ? "b" : "0");
}
template <typename... T>
void Record(const T&... values) {
  std::ostringstream out;
  ((out << ' ' << values), ...);
  seen = out.str().substr(1);
}
uint32_t ProbeSizeGet(const void* value, unsigned char valueFormat, unsigned char diskFormat,
                      uint32_t count) {
  Record(Operand(value), +valueFormat, +diskFormat, count);
  return 4321;
}
int32_t ProbeCompare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                     void* value2, unsigned short cmpOp, uint32_t count, int& status) {
  Record(+format, length1, Operand(value1), length2, Operand(value2), cmpOp, count, status);
  seenStatus = &status;
  status = 2101;
  return -7;
}
uint32_t ProbeHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                   int& status) {
  Record(+format, length, Operand(value), count);
  seenStatus = &status;
  return 99;
}

TEST(Forwarders, ReorderTheirArgumentsAsTheSlotsTakeThem) {
  NxTypeMgr mgr;
  NxTypeDesc* row = mgr.RowGet(NxTYPE_NxSeal);
  RowGuard guard(row);
  row->SizeGet = ProbeSizeGet;
  row->Compare = ProbeCompare;
  row->Hash = ProbeHash;
  int a = 0, b = 0, status = 55;
  operandA = &a;

  EXPECT_EQ(mgr.DiskLenGet(NxTYPE_NxSeal, &a, 2, 3, 8), 4321u);
  EXPECT_EQ(seen, "a 8 2 3") << "the value format moves from last to second place";
  EXPECT_EQ(mgr.Cmp(NxTYPE_NxSeal, 6, &a, 9, &b, 0x30, 3, 0x82, status), -7);
  EXPECT_EQ(seen, "130 6 a 9 b 48 3 55") << "the format moves to first place";
  EXPECT_EQ(seenStatus, &status);
  EXPECT_EQ(status, 2101);
  // The short Cmp passes lengths 0 and a status of its own that starts at 0.
  status = 55;
  EXPECT_EQ(mgr.Cmp(NxTYPE_NxSeal, &a, &b, 0x20, 4, 1), -7);
  EXPECT_EQ(seen, "1 0 a 0 b 32 4 0");
  EXPECT_EQ(status, 55);
  EXPECT_EQ(mgr.Hash(NxTYPE_NxSeal, 12, &a, 5, 2, status), 99u);
  EXPECT_EQ(seen, "2 12 a 5");
  EXPECT_EQ(seenStatus, &status);

  // The short Cmp runs through whole arrays: the last element decides.
  int32_t x[3] = {5, 6, 7};
  int32_t y[3] = {5, 6, 8};
  EXPECT_EQ(mgr.Cmp(NxTYPE_long, x, y, 0, 3, 8), -1);
  EXPECT_EQ(mgr.Cmp(NxTYPE_long, y, x, 0, 3, 8), 1);
  EXPECT_EQ(mgr.Cmp(NxTYPE_long, x, y, 0, 2, 8), 0);
}

int32_t AlwaysLess(unsigned char, uint32_t, void*, uint32_t, void*, unsigned short, uint32_t,
                   int& status) {
  status = 0;
  return -1;
}
NxString& PrintProbe(NxString& result, void*, const char*, uint32_t) {
  return result;
}

TEST(Exchange, ChangesReachEveryManagerOnTheRow) {
  NxTypeMgr first;
  NxTypeMgr second(6);
  NxTypeMgr old(0);
  RowGuard longGuard(first.RowGet(NxTYPE_long));
  RowGuard stringGuard(first.RowGet(NxTYPE_NxString));
  RowGuard shortGuard(first.RowGet(NxTYPE_short));

  // Formats: the pointer is kept, a null one only asks.
  static const char kNewFormat[] = "<%ld>";
  EXPECT_STREQ(first.ExchangeFormat(NxTYPE_long, kNewFormat), "%ld");
  EXPECT_EQ(second.ExchangeFormat(NxTYPE_long, nullptr), kNewFormat);
  EXPECT_EQ(old.RowGet(NxTYPE_long)->Format, kNewFormat);

  int32_t a = 9;
  int32_t b = 1;
  const NxTypeCmpFunc original = first.ExchangeNxTypeCmpFunc(NxTYPE_long, nullptr);
  EXPECT_EQ(original, &LongCompare);
  EXPECT_EQ(first.ExchangeNxTypeCmpFunc(NxTYPE_long, AlwaysLess), original);
  EXPECT_EQ(second.Cmp(NxTYPE_long, &a, &b, 0, 1, 8), -1);
  EXPECT_EQ(old.Cmp(NxTYPE_long, &a, &b, 0, 1, 8), -1) << "the old table holds the same row";
  EXPECT_EQ(second.ExchangeNxTypeCmpFunc(NxTYPE_long, original), &AlwaysLess);
  EXPECT_EQ(first.Cmp(NxTYPE_long, &a, &b, 0, 1, 8), 1);

  // The old string row is a record of its own and keeps its comparator.
  const NxTypeCmpFunc oldStringCompare = old.CmpFuncPtrGet(NxTYPE_NxString);
  first.ExchangeNxTypeCmpFunc(NxTYPE_NxString, AlwaysLess);
  EXPECT_EQ(second.CmpFuncPtrGet(NxTYPE_NxString), &AlwaysLess);
  EXPECT_EQ(old.CmpFuncPtrGet(NxTYPE_NxString), oldStringCompare);

  // Print slots: only the one row changes.
  const NxPrintToNxStringFunc print = first.ExchangePrintToNxStringFunc(NxTYPE_short, PrintProbe);
  EXPECT_NE(print, nullptr);
  EXPECT_EQ(second.RowGet(NxTYPE_short)->PrintToString, &PrintProbe);
  EXPECT_EQ(second.RowGet(NxTYPE_NxWord)->PrintToString, print);
  EXPECT_EQ(second.ExchangePrintToNxStringFunc(NxTYPE_short, print), &PrintProbe);
}

TEST(IllegalRow, DoesNothingAndWritesNoArgument) {
  const NxTypeDesc* row = NxTypeMgr::IllegalRowGet();
  unsigned char a[16];
  unsigned char b[16];
  std::memset(a, 0xA5, sizeof a);
  std::memset(b, 0x5A, sizeof b);
  EXPECT_EQ(row->Create(4), nullptr);
  EXPECT_EQ(row->Delete(a, 4), nullptr);
  EXPECT_EQ(row->DefaultValue(4, 1), nullptr);
  EXPECT_EQ(row->Store(a, b, 1, 4) + row->Load(a, b, 2, 4) + row->SizeGet(a, 8, 1, 4), 0u);
  EXPECT_EQ(row->Translate(a, 1, 16, b, 8, 16, 4), 0u);
  EXPECT_EQ(row->IsNull(a), 0);
  row->Constructor(a, 4, 0);
  row->Assignment(a, b, 4, 0);
  row->Copy(a, b, 4, 1);
  int status = 1234;
  EXPECT_EQ(row->Compare(8, 0, a, 0, b, 0, 4, status), 0);
  EXPECT_EQ(row->Hash(8, 0, a, 4, status), 0u);
  EXPECT_EQ(status, 1234) << "status keeps what it held";
  NxIdxBounds bounds{a, b, 3, 4};
  NxIdxBounds narrowed{b, a, 5, 6};
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

  uint32_t v[6] = {77, 77, 77, 77, 77, 77};
  const char *name = nullptr, *stamp = nullptr, *unknown = nullptr, *tool = nullptr,
             *empty = nullptr;
  EXPECT_STREQ(NxDescribeDll(&v[0], &v[1], &v[2], &v[3], &v[4], &name, &stamp, &unknown, &v[5],
                             &tool, &empty),
               "Zentrolith Typemanager");
  EXPECT_EQ(std::vector<uint32_t>(v, v + 5), (std::vector<uint32_t>{9, 5, 16, 182, 0}));
  EXPECT_STREQ(name, "nxtms");
  EXPECT_STREQ(unknown, "unknown");
  EXPECT_STREQ(empty, "");
  ASSERT_NE(tool, nullptr);
  EXPECT_STRNE(tool, "");
  const char* infoTool = nullptr;
  uint32_t infoVersion = 0;
  const char* date = nullptr;
  const char* info = nullptr;
  GetNxTypeMgrInfo(&infoTool, &infoVersion, &info, &date, nullptr);
  EXPECT_STREQ(infoTool, tool);
  EXPECT_EQ(infoVersion, v[5]);
  ASSERT_TRUE(date && stamp && info);
  const std::string month =
      "(Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) [ 0-3][0-9] [0-9]{4}";
  EXPECT_TRUE(std::regex_match(date, std::regex(month))) << date;
  EXPECT_TRUE(std::regex_match(stamp, std::regex(month + " [0-2][0-9]:[0-5][0-9]:[0-5][0-9]")));
  EXPECT_EQ(std::string(stamp).substr(0, std::strlen(date) + 1), std::string(date) + " ");

  // The info text lives in one static buffer: all pointers null composes
  // nothing; asking again composes it anew in the same place.
  EXPECT_STREQ(info, "Zentrolith Typemanager 9.5.16.182.0 ");
  char* buffer = const_cast<char*>(info);
  buffer[0] = '#';
  GetNxTypeMgrInfo(nullptr, nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(buffer[0], '#');
  const char* again = nullptr;
  GetNxTypeMgrInfo(nullptr, nullptr, &again, nullptr, nullptr);
  EXPECT_EQ(again, info);
  EXPECT_STREQ(again, "Zentrolith Typemanager 9.5.16.182.0 ");
}

}  // namespace
