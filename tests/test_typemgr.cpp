// Tests of the type table and the dispatch class NxTypeMgr, and of the
// library's context and identification.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

#include <cstring>
#include <regex>
#include <string>

namespace {

// The memory record of the rows whose record holds a pointer and a form byte
// (NxIString, NxCaseIString).
struct PointerAndFormRecord {
  char* data;
  unsigned char form;
};

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
    {20, "NxIString", sizeof(PointerAndFormRecord), 0, "%s", false},
    {21, "NxCaseIString", sizeof(PointerAndFormRecord), 0, "%s", false},
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
    {40, "illegal", 0, 1, "illegal", false},
};

char Id(int id) {
  return static_cast<char>(id);
}

// Puts a row record back as it was when the guard was made, whatever the
// test did to it in between.  Rows are process-wide.
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

// ---------------------------------------------------------------------------
// The two tables.

TEST(TypeTable, EveryCurrentRowCarriesItsNameLengthFixedFlagAndFormat) {
  NxTypeMgr mgr;
  for (const RowProperties& p : kCurrentRows) {
    SCOPED_TRACE(p.name);
    const char id = Id(p.id);
    EXPECT_STREQ(mgr.NameGet(id, nullptr), p.name);
    EXPECT_EQ(mgr.MemLenGet(id, 1), p.memLen);
    EXPECT_EQ(mgr.IsFixed(id), p.isFixed);
    EXPECT_STREQ(mgr.ExchangeFormat(id, nullptr), p.format);
    // Types without a null value have no SetNull slot.  (The slot of the
    // others arrives with their families.)
    if (!p.nullable) {
      EXPECT_EQ(mgr.SetNullPtrGet(id), nullptr);
      EXPECT_EQ(mgr.SupportsNullValue(id), 0);
    }
  }
  EXPECT_EQ(mgr.table[40], NxTypeMgr::IllegalRowGet());
  EXPECT_EQ(mgr.table[41], nullptr) << "the current table is closed by a null pointer";
}

TEST(TypeTable, OldTableSharesTheRowsButHasItsOwnStringRowAndEndsAt28) {
  NxTypeMgr current(5);
  NxTypeMgr old(0);
  ASSERT_NE(old.table, current.table);
  for (int id = 0; id < 28; ++id) {
    SCOPED_TRACE(id);
    if (id == 11) continue;
    EXPECT_EQ(old.table[id], current.table[id]) << "one record per type in the process";
  }
  EXPECT_EQ(old.table[28], nullptr);

  const NxTypeDesc* oldString = old.table[11];
  const NxTypeDesc* newString = current.table[11];
  ASSERT_NE(oldString, nullptr);
  EXPECT_NE(oldString, newString);
  EXPECT_STREQ(oldString->name, "NxString");
  EXPECT_EQ(oldString->MemLen, newString->MemLen);
  EXPECT_EQ(oldString->IsFixed, newString->IsFixed);
  EXPECT_STREQ(oldString->Format, newString->Format);
  EXPECT_EQ(oldString->SetNull, nullptr);
}

// ---------------------------------------------------------------------------
// Row lookup and the identifiers.

TEST(RowLookup, IdsWithoutARowReachIllegal) {
  NxTypeMgr mgr;
  NxTypeDesc* illegal = NxTypeMgr::IllegalRowGet();
  ASSERT_STREQ(illegal->name, "illegal");
  for (int raw : {40, 41, 50, 99, 100, 101, 127, -1, -60, -128}) {
    SCOPED_TRACE(raw);
    const char id = Id(raw);
    EXPECT_EQ(mgr.RowGet(id), illegal);
    EXPECT_STREQ(mgr.NameGet(id, nullptr), "illegal");
    EXPECT_EQ(mgr.MemLenGet(id, 7), 0);
    EXPECT_EQ(mgr.StorePtrGet(id), illegal->Store);
    EXPECT_EQ(mgr.CmpFuncPtrGet(id), illegal->Compare);
  }

  // On the old table every id from 28 on has no row of its own.
  NxTypeMgr old(2);
  for (int raw = 28; raw <= 40; ++raw) {
    SCOPED_TRACE(raw);
    EXPECT_EQ(old.RowGet(Id(raw)), illegal);
  }
  EXPECT_EQ(old.RowGet(Id(100)), illegal);
  EXPECT_EQ(old.RowGet(Id(27)), mgr.RowGet(Id(27)));
}

TEST(RowLookup, IsValidTypeAnswersWithoutTheTable) {
  for (int raw : {0, 11, 39, 40, 100, 101, 127, -1, -128}) {
    EXPECT_EQ(NxTypeMgr::IsValidType(Id(raw)), 1) << raw;
  }
  for (int raw : {41, 42, 70, 99}) {
    EXPECT_EQ(NxTypeMgr::IsValidType(Id(raw)), 0) << raw;
  }
}

TEST(RowLookup, FactoryNumberChoosesTheTableAndIsStoredMapped) {
  const NxTypeMgr currentRef(5);
  const NxTypeMgr oldRef(0);
  ASSERT_NE(currentRef.table[28], nullptr);
  ASSERT_EQ(oldRef.table[28], nullptr);

  struct Case {
    uint32_t factory;
    bool old;
    uint16_t stored;
  };
  const Case cases[] = {{0, true, 0},          {1, true, 1},           {2, true, 2},
                        {3, true, 3},          {4, false, 4},          {5, false, 5},
                        {9, false, 9},         {10, false, 10},        {11, true, 3},
                        {12, false, 4},        {13, false, 4},         {255, false, 4},
                        {65536 + 2, false, 4}, {0xFFFFFFFFu, false, 4}};
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

// ---------------------------------------------------------------------------
// Names.

TEST(Names, NameGetGivesTheRowsPointerOrCopiesWithTheZero) {
  NxTypeMgr mgr;
  EXPECT_EQ(mgr.NameGet(NxTYPE_long, nullptr), mgr.RowGet(NxTYPE_long)->name);

  char buffer[20];
  std::memset(buffer, 'x', sizeof buffer);
  EXPECT_EQ(mgr.NameGet(NxTYPE_NxNull_unsigned, buffer), buffer);
  EXPECT_STREQ(buffer, "NxNull_unsigned");  // the longest name, 15 characters
  EXPECT_EQ(buffer[16], 'x') << "nothing written behind the zero";

  std::memset(buffer, 'x', sizeof buffer);
  mgr.NameGet(Id(120), buffer);
  EXPECT_STREQ(buffer, "illegal");
}

TEST(Names, Name2NxTypeIdFindsEveryRowOfTheCurrentTable) {
  NxTypeMgr mgr;
  for (const RowProperties& p : kCurrentRows) {
    char id = -5;
    EXPECT_EQ(mgr.Name2NxTypeId(p.name, id), 0) << p.name;
    EXPECT_EQ(id, p.id) << p.name;
  }
  char id = -5;
  EXPECT_EQ(mgr.Name2NxTypeId("NxWord", id), 0);
  EXPECT_EQ(id, 5);
  // Case counts, and so does every byte up to the zero.
  for (const char* unknown : {"nxword", "NXWORD", "NxWor", "NxWord ", "", "Illegal"}) {
    id = -5;
    EXPECT_EQ(mgr.Name2NxTypeId(unknown, id), 1) << unknown;
    EXPECT_EQ(id, 41) << unknown;
  }
}

TEST(Names, Name2NxTypeIdOnTheOldTableStopsAtItsEnd) {
  NxTypeMgr old(11);
  char id = -5;
  EXPECT_EQ(old.Name2NxTypeId("NxString", id), 0);
  EXPECT_EQ(id, 11);
  EXPECT_EQ(old.table[11], old.RowGet(id));
  EXPECT_EQ(old.Name2NxTypeId("NxBoolean", id), 0);
  EXPECT_EQ(id, 27);
  // Rows that the old table does not have, "illegal" among them.
  for (const char* missing : {"NxNull_char", "NxSeal", "illegal", "nothing"}) {
    id = -5;
    EXPECT_EQ(old.Name2NxTypeId(missing, id), 1) << missing;
    EXPECT_EQ(id, 28) << missing;
  }
}

// ---------------------------------------------------------------------------
// Memory lengths and array elements.

TEST(MemoryLayout, MemLenGetMultipliesAndCutsTo16Bits) {
  NxTypeMgr mgr;
  EXPECT_EQ(mgr.MemLenGet(NxTYPE_NxRef, 4000), 14464);  // 80000 mod 65536
  EXPECT_EQ(mgr.MemLenGet(NxTYPE_NxRef, 3276), 65520);
  EXPECT_EQ(mgr.MemLenGet(NxTYPE_NxRef, 3277), 4);
  EXPECT_EQ(mgr.MemLenGet(NxTYPE_long, 3), 12);
  EXPECT_EQ(mgr.MemLenGet(NxTYPE_double, 0), 0);
  EXPECT_EQ(mgr.MemLenGet(NxTYPE_long), 4);
}

TEST(MemoryLayout, GetArrayElementStridesByMemLenWithinTheCount) {
  NxTypeMgr mgr;
  double values[8] = {};
  void* base = values;
  char* bytes = static_cast<char*>(base);
  EXPECT_EQ(mgr.GetArrayElement(NxTYPE_long, base, 3, 0), bytes + 12) << "count 0: no bound";
  EXPECT_EQ(mgr.GetArrayElement(NxTYPE_long, base, 3, 4), bytes + 12);
  EXPECT_EQ(mgr.GetArrayElement(NxTYPE_long, base, 3, 3), nullptr);
  EXPECT_EQ(mgr.GetArrayElement(NxTYPE_long, base, 0, 1), base);
  EXPECT_EQ(mgr.GetArrayElement(NxTYPE_double, base, 5, 8), bytes + 40);
  EXPECT_EQ(mgr.GetArrayElement(NxTYPE_NxRef, base, 2, 0), bytes + 40);

  // The old table has a null entry at 28 and no entries behind it.
  NxTypeMgr old(1);
  EXPECT_EQ(old.GetArrayElement(Id(28), base, 0, 0), nullptr);
  EXPECT_EQ(old.GetArrayElement(Id(35), base, 1, 4), nullptr);
  EXPECT_EQ(old.GetArrayElement(NxTYPE_short, base, 1, 4), bytes + 2);
}

// ---------------------------------------------------------------------------
// Forwarders that move arguments around.  Probe functions take the place of
// a row's slots and record what reaches them.

struct Seen {
  int calls = 0;
  unsigned char format = 0;
  unsigned char otherFormat = 0;
  uint32_t length1 = 0;
  uint32_t length2 = 0;
  const void* value1 = nullptr;
  const void* value2 = nullptr;
  unsigned short cmpOp = 0;
  uint32_t count = 0;
  int* status = nullptr;
  int statusOnEntry = 0;
};
Seen seen;

uint32_t ProbeSizeGet(const void* value, unsigned char valueFormat, unsigned char diskFormat,
                      uint32_t count) {
  ++seen.calls;
  seen.value1 = value;
  seen.otherFormat = valueFormat;
  seen.format = diskFormat;
  seen.count = count;
  return 4321;
}

int32_t ProbeCompare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                     void* value2, unsigned short cmpOp, uint32_t count, int& status) {
  ++seen.calls;
  seen.format = format;
  seen.length1 = length1;
  seen.value1 = value1;
  seen.length2 = length2;
  seen.value2 = value2;
  seen.cmpOp = cmpOp;
  seen.count = count;
  seen.status = &status;
  seen.statusOnEntry = status;
  status = 2101;
  return -7;
}

uint32_t ProbeHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                   int& status) {
  ++seen.calls;
  seen.format = format;
  seen.length1 = length;
  seen.value1 = value;
  seen.count = count;
  seen.status = &status;
  return 99;
}

TEST(Forwarders, ReorderTheirArgumentsAsTheSlotsTakeThem) {
  NxTypeMgr mgr;
  NxTypeDesc* row = mgr.RowGet(NxTYPE_NxSeal);
  RowGuard guard(row);
  row->SizeGet = ProbeSizeGet;
  row->Compare = ProbeCompare;
  row->Hash = ProbeHash;
  int a = 0;
  int b = 0;

  // DiskLenGet: the value format moves from last to second place.
  seen = Seen();
  EXPECT_EQ(mgr.DiskLenGet(NxTYPE_NxSeal, &a, 2, 3, 8), 4321u);
  EXPECT_EQ(seen.value1, &a);
  EXPECT_EQ(seen.otherFormat, 8);
  EXPECT_EQ(seen.format, 2);
  EXPECT_EQ(seen.count, 3u);

  // Cmp, long form: the format moves to first place; status is the caller's.
  seen = Seen();
  int status = 55;
  EXPECT_EQ(mgr.Cmp(NxTYPE_NxSeal, 6, &a, 9, &b, 0x30, 3, 0x82, status), -7);
  EXPECT_EQ(seen.format, 0x82);
  EXPECT_EQ(seen.length1, 6u);
  EXPECT_EQ(seen.value1, &a);
  EXPECT_EQ(seen.length2, 9u);
  EXPECT_EQ(seen.value2, &b);
  EXPECT_EQ(seen.cmpOp, 0x30);
  EXPECT_EQ(seen.count, 3u);
  EXPECT_EQ(seen.status, &status);
  EXPECT_EQ(status, 2101);

  // Cmp, short form: both lengths 0 and a status of its own that starts at 0.
  seen = Seen();
  seen.statusOnEntry = -1;
  status = 55;
  EXPECT_EQ(mgr.Cmp(NxTYPE_NxSeal, &a, &b, 0x20, 4, 1), -7);
  EXPECT_EQ(seen.calls, 1);
  EXPECT_EQ(seen.format, 1);
  EXPECT_EQ(seen.length1, 0u);
  EXPECT_EQ(seen.length2, 0u);
  EXPECT_EQ(seen.value1, &a);
  EXPECT_EQ(seen.value2, &b);
  EXPECT_EQ(seen.cmpOp, 0x20);
  EXPECT_EQ(seen.count, 4u);
  EXPECT_EQ(seen.statusOnEntry, 0);
  EXPECT_EQ(status, 55);

  // Hash: the format moves to first place.
  seen = Seen();
  EXPECT_EQ(mgr.Hash(NxTYPE_NxSeal, 12, &a, 5, 2, status), 99u);
  EXPECT_EQ(seen.format, 2);
  EXPECT_EQ(seen.length1, 12u);
  EXPECT_EQ(seen.value1, &a);
  EXPECT_EQ(seen.count, 5u);
  EXPECT_EQ(seen.status, &status);
}

TEST(Forwarders, ShortCmpComparesWholeArrays) {
  // With both lengths 0 the long row runs through all elements: the
  // difference in the last one decides.
  NxTypeMgr mgr;
  int32_t a[3] = {5, 6, 7};
  int32_t b[3] = {5, 6, 8};
  EXPECT_EQ(mgr.Cmp(NxTYPE_long, a, b, 0, 3, 8), -1);
  EXPECT_EQ(mgr.Cmp(NxTYPE_long, b, a, 0, 3, 8), 1);
  EXPECT_EQ(mgr.Cmp(NxTYPE_long, a, b, 0, 2, 8), 0);
}

// ---------------------------------------------------------------------------
// Slot access and exchange.

int32_t AlwaysLess(unsigned char, uint32_t, void*, uint32_t, void*, unsigned short, uint32_t,
                   int& status) {
  status = 0;
  return -1;
}

NxString& PrintProbe(NxString& result, void*, const char*, uint32_t) {
  return result;
}
void* ScanProbe(void* value, NxString&, const char*, uint32_t) {
  return value;
}

TEST(SlotAccess, ComparePtrGetIsNullForEveryId) {
  NxTypeMgr mgr;
  for (int raw : {0, 2, 11, 25, 39, 40, 100, -1}) {
    EXPECT_EQ(mgr.ComparePtrGet(Id(raw)), nullptr) << raw;
  }
  EXPECT_NE(mgr.CmpFuncPtrGet(NxTYPE_long), nullptr);
}

TEST(Exchange, FormatChangeIsSeenThroughEveryManagerOnTheRow) {
  NxTypeMgr first;
  NxTypeMgr second(7);
  NxTypeMgr old(3);
  RowGuard guard(first.RowGet(NxTYPE_long));
  static const char kNewFormat[] = "<%ld>";

  EXPECT_STREQ(first.ExchangeFormat(NxTYPE_long, nullptr), "%ld");
  EXPECT_STREQ(first.ExchangeFormat(NxTYPE_long, nullptr), "%ld") << "a query changes nothing";

  const char* previous = first.ExchangeFormat(NxTYPE_long, kNewFormat);
  EXPECT_STREQ(previous, "%ld");
  EXPECT_EQ(second.ExchangeFormat(NxTYPE_long, nullptr), kNewFormat) << "the pointer is kept";
  EXPECT_EQ(old.RowGet(NxTYPE_long)->Format, kNewFormat);

  EXPECT_EQ(second.ExchangeFormat(NxTYPE_long, previous), kNewFormat);
  EXPECT_EQ(first.ExchangeFormat(NxTYPE_long, nullptr), previous);
}

TEST(Exchange, ComparatorChangeReachesEveryManagerOnTheRow) {
  NxTypeMgr first;
  NxTypeMgr second(6);
  NxTypeMgr old(0);
  RowGuard longGuard(first.RowGet(NxTYPE_long));
  RowGuard stringGuard(first.RowGet(NxTYPE_NxString));
  int32_t a = 9;
  int32_t b = 1;

  const NxTypeCmpFunc original = first.ExchangeNxTypeCmpFunc(NxTYPE_long, nullptr);
  EXPECT_EQ(original, &LongCompare);
  EXPECT_EQ(second.Cmp(NxTYPE_long, &a, &b, 0, 1, 8), 1);

  EXPECT_EQ(first.ExchangeNxTypeCmpFunc(NxTYPE_long, AlwaysLess), original);
  EXPECT_EQ(second.CmpFuncPtrGet(NxTYPE_long), &AlwaysLess);
  EXPECT_EQ(second.Cmp(NxTYPE_long, &a, &b, 0, 1, 8), -1);
  EXPECT_EQ(old.Cmp(NxTYPE_long, &a, &b, 0, 1, 8), -1) << "the old table holds the same row";
  EXPECT_EQ(second.ExchangeNxTypeCmpFunc(NxTYPE_long, nullptr), &AlwaysLess);

  // The old string row is a record of its own: an exchange on the current
  // table's string row leaves it alone.
  const NxTypeCmpFunc oldStringCompare = old.CmpFuncPtrGet(NxTYPE_NxString);
  first.ExchangeNxTypeCmpFunc(NxTYPE_NxString, AlwaysLess);
  EXPECT_EQ(second.CmpFuncPtrGet(NxTYPE_NxString), &AlwaysLess);
  EXPECT_EQ(old.CmpFuncPtrGet(NxTYPE_NxString), oldStringCompare);

  EXPECT_EQ(second.ExchangeNxTypeCmpFunc(NxTYPE_long, original), &AlwaysLess);
  EXPECT_EQ(first.Cmp(NxTYPE_long, &a, &b, 0, 1, 8), 1);
}

TEST(Exchange, PrintAndScanSlotsAreSwappedAndQueried) {
  NxTypeMgr first;
  NxTypeMgr second(10);
  RowGuard guard(first.RowGet(NxTYPE_short));

  const NxPrintToNxStringFunc print = first.ExchangePrintToNxStringFunc(NxTYPE_short, nullptr);
  const NxScanFromNxStringFunc scan = first.ExchangeScanFromNxStringFunc(NxTYPE_short, nullptr);
  EXPECT_NE(print, nullptr);
  EXPECT_NE(scan, nullptr);
  EXPECT_EQ(first.ExchangePrintToNxStringFunc(NxTYPE_short, nullptr), print);

  EXPECT_EQ(first.ExchangePrintToNxStringFunc(NxTYPE_short, PrintProbe), print);
  EXPECT_EQ(first.ExchangeScanFromNxStringFunc(NxTYPE_short, ScanProbe), scan);
  EXPECT_EQ(second.RowGet(NxTYPE_short)->PrintToString, &PrintProbe);
  EXPECT_EQ(second.RowGet(NxTYPE_NxWord)->PrintToString, print) << "only the one row changes";
  EXPECT_EQ(second.ExchangePrintToNxStringFunc(NxTYPE_short, print), &PrintProbe);
  EXPECT_EQ(second.ExchangeScanFromNxStringFunc(NxTYPE_short, scan), &ScanProbe);
  EXPECT_EQ(first.RowGet(NxTYPE_short)->PrintToString, print);
  EXPECT_EQ(first.RowGet(NxTYPE_short)->ScanFromString, scan);
}

// ---------------------------------------------------------------------------
// The row `illegal`.

TEST(IllegalRow, DoesNothingAndWritesNoArgument) {
  const NxTypeDesc* row = NxTypeMgr::IllegalRowGet();
  unsigned char a[16];
  unsigned char b[16];
  std::memset(a, 0xA5, sizeof a);
  std::memset(b, 0x5A, sizeof b);
  const std::string aBefore(reinterpret_cast<char*>(a), sizeof a);
  const std::string bBefore(reinterpret_cast<char*>(b), sizeof b);

  EXPECT_EQ(row->Create(4), nullptr);
  EXPECT_EQ(row->Delete(a, 4), nullptr);
  EXPECT_EQ(row->DefaultValue(4, 1), nullptr);
  EXPECT_EQ(row->ConvertTo(a, 4), nullptr);
  EXPECT_EQ(row->ConvertFrom(nullptr, 4), nullptr);
  EXPECT_EQ(row->Store(a, b, 1, 4), 0u);
  EXPECT_EQ(row->Load(a, b, 2, 4), 0u);
  EXPECT_EQ(row->NullSizeGet(4), 0u);
  EXPECT_EQ(row->SizeGet(a, 8, 1, 4), 0u);
  EXPECT_EQ(row->SizeGetFromMemFile(nullptr, 1, 4), 0u);
  EXPECT_EQ(row->Translate(a, 1, 16, b, 8, 16, 4), 0u);
  EXPECT_EQ(row->IsNull(a), 0);
  row->Constructor(a, 4, 0);
  row->Destructor(a, 4, 0);
  row->Assignment(a, b, 4, 0);
  row->Copy(a, b, 4, 1);

  int status = 1234;
  EXPECT_EQ(row->Compare(8, 0, a, 0, b, 0, 4, status), 0);
  EXPECT_EQ(status, 1234) << "status keeps what it held";
  EXPECT_EQ(row->Hash(8, 0, a, 4, status), 0u);
  EXPECT_EQ(status, 1234);

  NxIdxBounds bounds{a, b, 3, 4};
  NxIdxBounds narrowed{b, a, 5, 6};
  unsigned short op = 0x1234;
  EXPECT_EQ(row->EvalAndBound(&bounds, op, a, 8, 4, &narrowed), 0.0f);
  EXPECT_EQ(op, 0x1234);
  EXPECT_EQ(bounds.low, static_cast<void*>(a));
  EXPECT_EQ(bounds.lowLength, 3);
  EXPECT_EQ(narrowed.low, static_cast<void*>(b));
  EXPECT_EQ(narrowed.highLength, 6);

  EXPECT_EQ(std::string(reinterpret_cast<char*>(a), sizeof a), aBefore);
  EXPECT_EQ(std::string(reinterpret_cast<char*>(b), sizeof b), bBefore);
}

// ---------------------------------------------------------------------------
// Library context.  These tests leave no default manager behind.

TEST(LibraryContext, OpenMakesADefaultManagerOnTheCurrentTable) {
  ASSERT_EQ(DefaultTypeMgr(nullptr), nullptr) << "no default manager before the first open";
  ___NxTypemgrContext(1);
  NxTypeMgr* made = DefaultTypeMgr(nullptr);
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->factory, 5);
  EXPECT_EQ(made->table, NxTypeMgr().table);
  EXPECT_EQ(DefaultTypeMgr(nullptr), made) << "a null replacement only asks";

  // Each open makes a new manager; the last one is simply overwritten.
  ___NxTypemgrContext(1);
  NxTypeMgr* second = DefaultTypeMgr(nullptr);
  EXPECT_NE(second, made);
  delete made;

  ___NxTypemgrContext(0);
  EXPECT_EQ(DefaultTypeMgr(nullptr), nullptr);
}

TEST(LibraryContext, ReplacementIsReturnedToTheCallerAndFreedAtClose) {
  ___NxTypemgrContext(1);
  NxTypeMgr* opened = DefaultTypeMgr(nullptr);
  NxTypeMgr* mine = new NxTypeMgr(2);
  EXPECT_EQ(DefaultTypeMgr(mine), opened) << "the replaced manager goes back, unfreed";
  EXPECT_EQ(DefaultTypeMgr(nullptr), mine);
  delete opened;
  // Closing frees whatever is the default: a leak or double free shows
  // under the address sanitizer.
  ___NxTypemgrContext(0);
  EXPECT_EQ(DefaultTypeMgr(nullptr), nullptr);

  // Closing with no default manager frees nothing.
  ___NxTypemgrContext(0);
  EXPECT_EQ(DefaultTypeMgr(nullptr), nullptr);
}

TEST(LibraryContext, OptionsWordIsOneVariable) {
  int32_t& options = ___NxTypeMgrOptions();
  EXPECT_EQ(&___NxTypeMgrOptions(), &options);
  EXPECT_EQ(options, 0);
  options = 1;
  EXPECT_EQ(___NxTypeMgrOptions(), 1);
  ___NxTypeMgrOptions() = 0x40000001;
  EXPECT_EQ(options, 0x40000001);
  options = 0;
}

// ---------------------------------------------------------------------------
// Identification.

TEST(Identification, VersionCheckPassesWithAnyCallerFlags) {
  // The library sets the caller bits itself.
  EXPECT_EQ(NxCheckDll(0), 0);
  EXPECT_EQ(NxCheckDll(3), 0);
  EXPECT_EQ(NxCheckDll(NxVERSION_FLAG_BUILD), 0) << "the build number 16 matches too";
}

TEST(Identification, DescribeDllWritesEveryField) {
  uint32_t major = 77, minor = 77, build = 77, patch = 77, extra = 77, toolVersion = 77;
  const char* name = nullptr;
  const char* timestamp = nullptr;
  const char* unknown = nullptr;
  const char* tool = nullptr;
  const char* empty = nullptr;
  const char* product = NxDescribeDll(&major, &minor, &build, &patch, &extra, &name, &timestamp,
                                      &unknown, &toolVersion, &tool, &empty);
  EXPECT_STREQ(product, "Zentrolith Typemanager");
  EXPECT_EQ(major, 9u);
  EXPECT_EQ(minor, 5u);
  EXPECT_EQ(build, 16u);
  EXPECT_EQ(patch, 182u);
  EXPECT_EQ(extra, 0u);
  EXPECT_STREQ(name, "nxtms");
  EXPECT_STREQ(unknown, "unknown");
  ASSERT_NE(empty, nullptr);
  EXPECT_STREQ(empty, "");
  ASSERT_NE(tool, nullptr);
  EXPECT_STRNE(tool, "");
  ASSERT_NE(timestamp, nullptr);
  EXPECT_TRUE(std::regex_match(
      timestamp, std::regex("(Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) [ 0-3][0-9] "
                            "[0-9]{4} [0-2][0-9]:[0-5][0-9]:[0-5][0-9]")))
      << timestamp;

  // The same build facts through the other call.
  const char* infoTool = nullptr;
  uint32_t infoVersion = 0;
  const char* date = nullptr;
  GetNxTypeMgrInfo(&infoTool, &infoVersion, nullptr, &date, nullptr);
  EXPECT_STREQ(infoTool, tool);
  EXPECT_EQ(infoVersion, toolVersion);
  ASSERT_NE(date, nullptr);
  EXPECT_EQ(std::string(timestamp).substr(0, std::strlen(date) + 1), std::string(date) + " ")
      << "the timestamp is the date, a blank and the time";
}

TEST(Identification, InfoTextIsComposedInOneStaticBuffer) {
  const char* tool = nullptr;
  uint32_t version = 0;
  const char* info = nullptr;
  const char* date = nullptr;
  const char* name = nullptr;
  GetNxTypeMgrInfo(&tool, &version, &info, &date, &name);
  ASSERT_NE(info, nullptr);
  EXPECT_STREQ(info, "Zentrolith Typemanager 9.5.16.182.0 ");
  EXPECT_STREQ(name, "nxtms");
  ASSERT_NE(date, nullptr);
  EXPECT_TRUE(std::regex_match(
      date, std::regex("(Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) [ 0-3][0-9] [0-9]{4}")))
      << date;

  // All pointers null: nothing is written and nothing composed.  The buffer
  // is marked to see that.
  char* buffer = const_cast<char*>(info);
  buffer[0] = '#';
  GetNxTypeMgrInfo(nullptr, nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(buffer[0], '#');

  // Asking again composes the text anew in the same place.
  const char* again = nullptr;
  GetNxTypeMgrInfo(nullptr, nullptr, &again, nullptr, nullptr);
  EXPECT_EQ(again, info);
  EXPECT_STREQ(again, "Zentrolith Typemanager 9.5.16.182.0 ");
}

}  // namespace
