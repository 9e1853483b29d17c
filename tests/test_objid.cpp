// Tests of the identifier classes and of the rows of NxObjId, NxClassId and
// NxRef: disk bytes, arrays, null and default values, object number
// arithmetic and order, validity of references, and the text forms.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using nxtest::Hex;

std::string Text(const NxString& s) {
  return s.StrGet();
}

// The 48-bit object number as one integer: the reference for the arithmetic
// and the order of object ids.
uint64_t Number(const NxObjId& id) {
  return (uint64_t{id.high} << 32) | id.low;
}
NxObjId FromNumber(uint64_t n, uint32_t block = 0) {
  return NxObjId(static_cast<uint16_t>(n >> 32), static_cast<uint32_t>(n), block);
}
// Every field of a reference, for comparisons that must see them all.
std::string Fields(const NxRef& r) {
  return std::to_string(r.database) + ":" + std::to_string(r.objId.high) + "-" +
         std::to_string(r.objId.low) + "#" + std::to_string(r.objId.block) + "," +
         std::to_string(r.classId.classNumber) + "v" + std::to_string(r.classId.version);
}

// ---------------------------------------------------------------------------
// Disk form: bytes written out by hand from the field layout, in both byte
// orders, through the manager.

struct DiskCase {
  const char* name;
  char id;
  const void* value;  // two memory elements
  const char* lsb;    // two elements, least significant byte first
  const char* msb;
};

TEST(IdentifierDisk, BytesInBothOrdersAndBack) {
  const NxObjId objIds[2] = {NxObjId(0x090A, 0x05060708, 0x01020304), NxObjId(1, 2, 3)};
  const NxClassId classIds[2] = {NxClassId(0x0102, 0x0304), NxClassId(0xFFFF, 0)};
  const NxRef refs[2] = {NxRef(objIds[0], 0x0B0C, NxClassId(0x0D0E, 0)),
                         NxRef(objIds[1], 0xFFFF, NxClassId(7, 0))};
  const DiskCase cases[] = {
      {"NxObjId", NxTYPE_NxObjId, objIds,
       "04030201080706050a09"
       "03000000020000000100",
       "0102030405060708090a"
       "00000003000000020001"},
      {"NxClassId", NxTYPE_NxClassId, classIds,
       "02010403"
       "ffff0000",
       "01020304"
       "ffff0000"},
      {"NxRef", NxTYPE_NxRef, refs,
       "04030201080706050a09"
       "0c0b"
       "0e0d"
       "03000000020000000100"
       "ffff"
       "0700",
       "0102030405060708090a"
       "0b0c"
       "0d0e"
       "00000003000000020001"
       "ffff"
       "0007"},
  };
  NxTypeMgr mgr;
  for (const DiskCase& c : cases) {
    SCOPED_TRACE(c.name);
    const uint32_t length = static_cast<uint32_t>(std::strlen(c.lsb) / 2);
    EXPECT_EQ(mgr.DiskLenGet(c.id, nullptr, 2, 2, 8), length);
    EXPECT_EQ(mgr.RowGet(c.id)->NullSizeGet(2), length);
    // Formats 0, 1, 8 and 10 write the least significant byte first, 2 and
    // 0x12 the most significant first: only the low four bits count.
    const struct {
      unsigned char format;
      const char* hex;
    } orders[] = {{0, c.lsb}, {1, c.lsb}, {8, c.lsb}, {0x0A, c.lsb}, {2, c.msb}, {0x12, c.msb}};
    for (const auto& o : orders) {
      std::vector<unsigned char> disk(length + 4, 0xEE);
      EXPECT_EQ(mgr.Store(c.id, disk.data(), c.value, o.format, 2), length);
      EXPECT_EQ(Hex(disk.data(), length), o.hex) << "format " << int(o.format);
      EXPECT_EQ(Hex(disk.data() + length, 4), "eeeeeeee") << "written past the elements";
      // Loaded and stored again most significant byte first: every field
      // came back.
      alignas(4) unsigned char back[2 * 20] = {};
      EXPECT_EQ(mgr.Load(c.id, back, disk.data(), o.format, 2), length);
      std::vector<unsigned char> again(length);
      mgr.Store(c.id, again.data(), back, 2, 2);
      EXPECT_EQ(Hex(again.data(), length), c.msb);
    }
  }
}

TEST(IdentifierDisk, Translate) {
  NxTypeMgr mgr;
  NxRef ref(NxObjId(1, 2, 3), 4, NxClassId(5, 7));
  NxRef copy;
  // Memory to memory keeps the version.
  EXPECT_EQ(mgr.Translate(NxTYPE_NxRef, &copy, 8, 0, &ref, 8, 0, 1), 20u);
  EXPECT_EQ(copy.classId.version, 7);
  EXPECT_EQ(copy.database, 4);
  // Memory to disk drops the high bits of the format: 0x82 is 2.
  unsigned char disk[14];
  EXPECT_EQ(mgr.Translate(NxTYPE_NxRef, disk, 0x82, 14, &ref, 8, 0, 1), 14u);
  EXPECT_EQ(Hex(disk, 14), "0000000300000002000100040005");
  // Disk to memory reads with the source format; the version is not on disk.
  NxRef loaded;
  loaded.classId.version = 9;
  EXPECT_EQ(mgr.Translate(NxTYPE_NxRef, &loaded, 8, 0, disk, 2, 14, 1), 14u);
  EXPECT_TRUE(loaded == ref);
  EXPECT_EQ(loaded.classId.version, 0);
  // Disk to disk moves bytes unturned, by the sizes.
  unsigned char wide[14];
  std::memset(wide, 0xEE, sizeof wide);
  EXPECT_EQ(mgr.Translate(NxTYPE_NxObjId, wide, 1, 14, disk, 2, 10, 1), 10u);
  EXPECT_EQ(Hex(wide, 14), "0000000300000002000100000000");
  unsigned char narrow[10];
  EXPECT_EQ(mgr.Translate(NxTYPE_NxRef, narrow, 1, 10, disk, 1, 14, 1), 10u);
  EXPECT_EQ(Hex(narrow, 10), "00000003000000020001");
}

// ---------------------------------------------------------------------------
// Arrays, null and default values.

TEST(IdentifierRows, CreateDeleteAndArrays) {
  NxTypeMgr mgr;
  for (char id : {NxTYPE_NxObjId, NxTYPE_NxClassId, NxTYPE_NxRef}) {
    SCOPED_TRACE(int(id));
    EXPECT_EQ(mgr.Delete(id, nullptr, 5), nullptr);
    for (uint32_t count : {0u, 1u, 3u}) {
      void* p = mgr.Create(id, count);
      ASSERT_NE(p, nullptr);
      const size_t bytes = size_t(mgr.MemLenGet(id)) * (count == 0 ? 1 : count);
      std::vector<unsigned char> zero(bytes, 0);
      EXPECT_EQ(std::memcmp(p, zero.data(), bytes), 0) << "count " << count;
      // Counted arrays keep their element count in front of element 0.
      if (id != NxTYPE_NxClassId && count >= 2) {
        uint32_t stored;
        std::memcpy(&stored, static_cast<unsigned char*>(p) - 4, 4);
        EXPECT_EQ(stored, count);
      }
      EXPECT_EQ(mgr.Delete(id, p, count), nullptr);
    }
  }
  // Assignment and Copy broadcast the single source element.
  NxRef source(NxObjId(1, 2, 3), 4, NxClassId(5, 6));
  NxRef targets[3];
  NxRef::Assignment(targets, &source, 3, 1);
  NxRef::Copy(targets, &source, 3, 1);
  for (const NxRef& t : targets) EXPECT_EQ(Fields(t), "4:1-2#3,5v6");
}

TEST(IdentifierRows, NullAndDefaultValues) {
  NxTypeMgr mgr;
  NxRef ref(NxObjId(1, 2, 3), 4, NxClassId(5, 6));
  EXPECT_EQ(mgr.IsNullValue(NxTYPE_NxRef, &ref), 0);
  EXPECT_EQ(mgr.SetNullValue(NxTYPE_NxRef, &ref), 0);
  EXPECT_NE(mgr.IsNullValue(NxTYPE_NxRef, &ref), 0);
  EXPECT_EQ(ref.objId.block, 0u);
  EXPECT_EQ(ref.database, 4);  // the rest of a reference stays
  EXPECT_EQ(ref.classId.version, 6);
  // An object id is null by its object number alone.
  NxObjId blockOnly(0, 0, 9);
  EXPECT_NE(mgr.IsNullValue(NxTYPE_NxObjId, &blockOnly), 0);
  NxObjId highOnly(1, 0, 0);
  EXPECT_EQ(mgr.IsNullValue(NxTYPE_NxObjId, &highOnly), 0);
  // A class id is null with both fields 0xFFFF only.
  NxClassId half(0xFFFF, 0), full(0xFFFF, 0xFFFF), zero;
  EXPECT_EQ(mgr.IsNullValue(NxTYPE_NxClassId, &half), 0);
  EXPECT_EQ(mgr.IsNullValue(NxTYPE_NxClassId, &zero), 0);
  EXPECT_NE(mgr.IsNullValue(NxTYPE_NxClassId, &full), 0);
  EXPECT_EQ(mgr.SupportsNullValue(NxTYPE_NxClassId), 1);

  auto* defaults = static_cast<NxClassId*>(mgr.DefaultValue(NxTYPE_NxClassId, 2, 0));
  EXPECT_EQ(defaults[1].classNumber, 0);
  EXPECT_EQ(defaults[1].version, 0);
  mgr.Delete(NxTYPE_NxClassId, defaults, 2);
  auto* nulls = static_cast<NxClassId*>(mgr.DefaultValue(NxTYPE_NxClassId, 2, 1));
  EXPECT_EQ(nulls[0].classNumber, 0xFFFF);
  EXPECT_EQ(nulls[1].version, 0xFFFF);
  mgr.Delete(NxTYPE_NxClassId, nulls, 2);
  auto* refs = static_cast<NxRef*>(mgr.DefaultValue(NxTYPE_NxRef, 3, 0));
  EXPECT_NE(mgr.IsNullValue(NxTYPE_NxRef, &refs[2]), 0);
  mgr.Delete(NxTYPE_NxRef, refs, 3);
}

TEST(IdentifierRows, ConversionsThroughText) {
  NxTypeMgr mgr;
  NxRef refs[2] = {NxRef(NxObjId(0, 7, 9), 5, NxClassId(11, 2)), NxRef()};
  refs[1].database = 3;  // null all the same
  NxTypeConvertData* data = mgr.ConvertTo(NxTYPE_NxRef, refs, 2);
  ASSERT_NE(data, nullptr);
  EXPECT_EQ(Text(*data->GetString(0)), "(5:0-7#9, 11)");
  EXPECT_NE(data->GetString(1)->IsNullValue(), 0);
  // Back: the version is not in the row's text; a third, missing string
  // gives a null reference.
  auto* back = static_cast<NxRef*>(mgr.ConvertFrom(NxTYPE_NxRef, data, 3));
  EXPECT_TRUE(back[0] == refs[0]);
  EXPECT_EQ(back[0].classId.classNumber, 11);
  EXPECT_EQ(back[0].classId.version, 0);
  EXPECT_NE(mgr.IsNullValue(NxTYPE_NxRef, &back[1]), 0);
  EXPECT_NE(mgr.IsNullValue(NxTYPE_NxRef, &back[2]), 0);
  mgr.Delete(NxTYPE_NxRef, back, 3);
  // A class id from a missing string is the null class id.
  auto* classes = static_cast<NxClassId*>(mgr.ConvertFrom(NxTYPE_NxClassId, data, 3));
  EXPECT_EQ(classes[2].classNumber, 0xFFFF);
  EXPECT_EQ(classes[2].version, 0xFFFF);
  mgr.Delete(NxTYPE_NxClassId, classes, 3);
  delete data;
}

// ---------------------------------------------------------------------------
// Object number arithmetic and order, against the 48-bit number.

TEST(IdentifierOrder, ArithmeticWrapsAt48Bits) {
  const uint64_t kMask = (uint64_t{1} << 48) - 1;
  const uint64_t starts[] = {0, 1, 0xFFFFFFFFu, 0x100000000u, 0x3FFFFFFFFu, kMask, kMask - 5};
  const short steps[] = {0, 1, -1, 7, -7, 32767, -32768};
  for (uint64_t start : starts) {
    for (short step : steps) {
      NxObjId id = FromNumber(start, 77);
      id += step;
      EXPECT_EQ(Number(id), (start + static_cast<uint64_t>(int64_t{step})) & kMask)
          << start << " += " << step;
      EXPECT_EQ(id.block, 77u);
    }
    NxObjId up = FromNumber(start, 5), down = FromNumber(start, 5);
    ++up;
    --down;
    EXPECT_EQ(Number(up), (start + 1) & kMask);
    EXPECT_EQ(Number(down), (start - 1) & kMask);
    EXPECT_EQ(up.block, 5u);
  }
  NxObjId highest(1, 2, 3);
  highest.SetHighestValue();
  EXPECT_EQ(Number(highest), kMask);
  EXPECT_EQ(highest.block, 0u);
  ++highest;
  EXPECT_EQ(Number(highest), 0u);
}

TEST(IdentifierOrder, ObjectIdsOrderByNumberAndIgnoreBlock) {
  const uint64_t numbers[] = {
      0, 1, 0xFFFFFFFFu, 0x100000000u, 0x1FFFFFFFFu, (uint64_t{1} << 48) - 1};
  for (uint64_t a : numbers) {
    for (uint64_t b : numbers) {
      const NxObjId x = FromNumber(a, 1), y = FromNumber(b, 2);
      const int want = a < b ? -1 : (a > b ? 1 : 0);
      EXPECT_EQ(x != y, want) << a << " vs " << b;
      EXPECT_EQ(x == y, a == b ? 1 : 0);
      // Against an NxDBOId the database is ignored; the other way round a
      // named database makes the NxDBOId the greater.
      const NxDBOId d(y, 2);
      EXPECT_EQ(x != d, want);
      EXPECT_EQ(d != x, 1);
      EXPECT_EQ(NxDBOId(y, 0) != x, -want);
      // In a reference the database is the least significant key.
      const NxRef r1(x, 9, NxClassId(1, 0)), r2(y, 3, NxClassId(2, 0));
      EXPECT_EQ(r1 != r2, a == b ? 1 : want);
      EXPECT_EQ(NxLocalRef(x, NxClassId()) != r2, a == b ? -1 : want);
    }
  }
  // In an NxDBOId the database is the most significant key.
  EXPECT_EQ(NxDBOId(NxObjId(9, 9), 1) != NxDBOId(NxObjId(0, 1), 2), -1);
  EXPECT_EQ(NxDBOId(NxObjId(1, 1), 0) == NxObjId(1, 1), 1);
  EXPECT_EQ(NxDBOId(NxObjId(1, 1), 3) == NxObjId(1, 1), 0);
  EXPECT_EQ(NxLocalRef(NxObjId(0, 4), NxClassId()) == NxRef(NxObjId(0, 4), 0, NxClassId(8, 8)), 1);
  EXPECT_EQ(NxLocalRef(NxObjId(0, 4), NxClassId()) == NxRef(NxObjId(0, 4), 1, NxClassId()), 0);
}

TEST(IdentifierOrder, ClassIdsWithNullBelowAll) {
  const NxClassId null(0xFFFF, 0xFFFF);
  const struct {
    NxClassId a, b;
    int order;
  } cases[] = {
      {null, NxClassId(0, 0), -1},
      {NxClassId(0, 0), null, 1},
      {null, null, 0},
      {NxClassId(0xFFFF, 5), NxClassId(0xFFFE, 9), 1},
      {NxClassId(0xFFFF, 0xFFFE), null, 1},
      {NxClassId(3, 1), NxClassId(3, 2), -1},
      {NxClassId(3, 65535), NxClassId(4, 0), -1},
      {NxClassId(3, 2), NxClassId(3, 2), 0},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.a != c.b, c.order) << c.a.classNumber << "v" << c.a.version;
    EXPECT_EQ(c.a > c.b, c.order > 0 ? 1 : 0);
    EXPECT_EQ(c.a == c.b, c.order == 0 ? 1 : 0);
  }
}

TEST(IdentifierOrder, ReferenceValidity) {
  const NxObjId none, some(0, 1), highOnly(1, 0);
  const struct {
    NxObjId objId;
    uint16_t database;
    uint16_t classNumber;
    uint16_t valid, validOrigin;
  } cases[] = {
      {none, 0, 7, 0, 0},      {none, 0xFFFF, 7, 0, 0}, {some, 0, 0, 0, 0},
      {some, 0xFFFF, 0, 0, 1}, {some, 0xFFFF, 7, 0, 1}, {some, 5, 7, 1, 1},
      {highOnly, 0, 7, 1, 1},  {some, 0xFFFE, 0, 0, 0},
  };
  for (const auto& c : cases) {
    // The version never counts.
    for (uint16_t version : {0, 9}) {
      const NxRef r(c.objId, c.database, NxClassId(c.classNumber, version));
      SCOPED_TRACE(std::to_string(Number(c.objId)) + "/" + std::to_string(c.database) + "/" +
                   std::to_string(c.classNumber));
      EXPECT_EQ(r.IsValid(), c.valid);
      EXPECT_EQ(r.IsInvalid(), 1 - c.valid);
      EXPECT_EQ(r.IsValidOriginId(), c.validOrigin);
      EXPECT_EQ(r.IsInvalidOriginId(), 1 - c.validOrigin);
    }
  }
}

TEST(IdentifierOrder, AssignmentsBetweenClasses) {
  NxRef ref(NxObjId(1, 2, 3), 4, NxClassId(5, 6));
  ref = NxDBOId(NxObjId(7, 8, 9), 10);
  EXPECT_EQ(Fields(ref), "10:7-8#9,5v6");  // the class id stays
  ref = static_cast<unsigned short>(11);
  EXPECT_EQ(Fields(ref), "11:7-8#9,5v6");
  ref = NxLocalRef(NxObjId(0, 1, 2), NxClassId(3, 4));
  EXPECT_EQ(Fields(ref), "0:0-1#2,3v4");
  NxLocalRef local;
  local = NxRef(NxObjId(0, 5, 6), 7, NxClassId(8, 9));
  EXPECT_EQ(Fields(NxRef(local.objId, 0, local.classId)), "0:0-5#6,8v9");
  NxDBOId dbo(NxObjId(1, 1, 1), 5);
  dbo = NxObjId(2, 2, 2);
  EXPECT_TRUE(dbo.database == 0 && dbo.block == 2u);
}

// ---------------------------------------------------------------------------
// Text forms.

std::string PrintRef(const NxRef& r, const char* format) {
  NxString s("old");
  NxRef::PrintToString(s, const_cast<NxRef*>(&r), format, 1);
  return Text(s);
}
NxRef ScanRef(const char* text, const char* format, NxRef start = NxRef()) {
  NxString input(text);
  NxRef::ScanFromString(&start, input, format, 1);
  return start;
}

TEST(IdentifierText, DefaultForms) {
  NxString s;
  EXPECT_EQ(Text(NxObjId(1, 2, 3).PrintToNxString(s)), "(1-2#3)");
  EXPECT_EQ(Text(NxClassId(12, 0).PrintToNxString(s)), "(12v0)");
  const NxRef ref(NxObjId(0, 7, 9), 5, NxClassId(11, 2));
  EXPECT_EQ(Text(ref.PrintToNxString(s)), "(5:0-7#9, 11)");
  EXPECT_EQ(PrintRef(ref, nullptr), "(5:0-7#9,11v2)");
  EXPECT_EQ(Text(NxDBOId(NxObjId(1, 2, 3), 4).PrintToNxString(s)), "(1-2#3)");
  EXPECT_EQ(Text(NxLocalRef(NxObjId(1, 2, 3), NxClassId(4, 5)).PrintToNxString(s)), "(1-2#3,4)");
  EXPECT_EQ(Text(NxLocalRef(NxObjId(1, 2, 3), NxClassId(4, 5)).PrintToNxString(s, "%D")), "0");
  NxTypeMgr mgr;
  NxObjId ids[2] = {NxObjId(1, 2, 3), NxObjId(0, 5, 0)};
  NxString all;
  EXPECT_EQ(Text(mgr.PrintToNxString(NxTYPE_NxObjId, all, ids, nullptr, 2)), "(1-2#3),(0-5#0)");
  // The largest values of every field.
  NxObjId highest;
  highest.SetHighestValue();
  highest.block = 0xFFFFFFFFu;
  EXPECT_EQ(Text(highest.PrintToNxString(s)), "(65535-4294967295#4294967295)");
}

TEST(IdentifierText, EveryItemInEveryClass) {
  const NxRef ref(NxObjId(1, 2, 3), 4, NxClassId(5, 6));
  const char* all = "%H|%L|%B|%D|%C|%V|%%|%x|%";
  EXPECT_EQ(PrintRef(ref, all), "1|2|3|4|5|6|%|x|");
  NxString s;
  EXPECT_EQ(Text(ref.objId.PrintToNxString(s, all)), "1|2|3|D|C|V|%|x|");
  EXPECT_EQ(Text(ref.classId.PrintToNxString(s, all)), "H|L|B|D|5|6|%|x|");
  // Positional items take their field by place; a wrong letter or a place
  // beyond the class's fields prints 0 and still counts.
  EXPECT_EQ(PrintRef(ref, "%hu %hu %lu %lu %hu %hu"), "4 1 2 3 5 0");
  EXPECT_EQ(PrintRef(ref, "%lu %H %hu"), "0 1 1");
  EXPECT_EQ(Text(ref.objId.PrintToNxString(s, "%hu-%lu#%lu")), "1-2#3");
  EXPECT_EQ(Text(ref.objId.PrintToNxString(s, "%hX%lY%lZ%lu")), "1230");
  EXPECT_EQ(Text(ref.classId.PrintToNxString(s, "%hu/%hu/%lu")), "5/6/lu");
  // A format that ends inside an item, an empty format, and null values.
  EXPECT_EQ(Text(ref.objId.PrintToNxString(s, "a%h")), "a1");
  EXPECT_EQ(Text(ref.objId.PrintToNxString(s, "")), "");
  EXPECT_EQ(Text(NxRef(NxObjId(), 5, NxClassId(6, 7)).PrintToNxString(s, "%D")), "{NULL}");
  EXPECT_EQ(Text(NxClassId(0xFFFF, 0xFFFF).PrintToNxString(s)), "{NULL}");
  NxTypeMgr::SetNullPrintString(NxString("<none>"));
  EXPECT_EQ(Text(NxObjId().PrintToNxString(s)), "<none>");
  NxObjId scanned(1, 1, 1);
  scanned.ScanFromNxString(NxString("<none>x"));
  EXPECT_EQ(Number(scanned), 0u);
  NxTypeMgr::SetNullPrintString(NxString("{NULL}"));
}

TEST(IdentifierText, OutputStopsAt511Characters) {
  std::string format;
  for (int i = 0; i < 100; ++i) format += "%L,";
  NxString s;
  NxObjId(0, 4000000000u).PrintToNxString(s, format.c_str());
  EXPECT_EQ(s.Len(), 511);
  EXPECT_EQ(Text(s).substr(0, 22), "4000000000,4000000000,");
}

TEST(IdentifierText, ScanRules) {
  const struct {
    const char* text;
    const char* format;
    const char* fields;
  } cases[] = {
      {"(5:0-7#9, 11)", "(%D:%H-%L#%B, %C)", "5:0-7#9,11v0"},
      {"(5:0-7#9,11v2)", nullptr, "5:0-7#9,11v2"},
      {"x12y34z5w", "(%H-%L#%B)", "0:12-34#5,0v0"},  // literals are not compared
      {"(1-2", "(%H-%L#%B)", "0:1-2#0,0v0"},         // the input ends first
      {"(1-2#3) rest", "(%H-%L)", "0:1-2#0,0v0"},    // the format ends first
      // Blanks and a sign are read past by the number but not passed over.
      {"3 4", "%H%L%B", "0:3-4#4,0v0"},
      {" +7-8", "%H%L", "0:7-7#0,0v0"},
      {"-1,-1", "%H,%L", "0:65535-1#0,0v0"},
      // Numbers as a 32-bit unsigned long reads them; "%hu" keeps 16 bits.
      {"-1", "%L", "0:0-4294967295#0,0v0"},
      {"4294967296", "%H", "0:65535-0#0,0v0"},
      {"70000,99999999999", "%H,%L", "0:4464-4294967295#0,0v0"},
      {"4 1 2 3 5", "%hu %hu %lu %lu %hu", "4:1-2#3,5v0"},
      {"9 8 7", "%lu %hu %lu", "0:8-7#0,0v0"},  // a wrong letter: read and dropped
      {"%1x2", "%%%H%x%L", "0:1-2#0,0v0"},
      {"abc", "%H%L", "0:0-0#0,0v0"},
      {"", "%H", "0:0-0#0,0v0"},
      {"5", "%", "0:0-0#0,0v0"},
      {"5", "%h", "5:0-0#0,0v0"},  // a positional item cut short still takes its place
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Fields(ScanRef(c.text, c.format, NxRef(NxObjId(9, 9, 9), 9, NxClassId(9, 9)))),
              c.fields)
        << c.text << " / " << (c.format ? c.format : "null");
  }
  // Null text touches only the object id of a reference; a class id becomes
  // the null class id.
  EXPECT_EQ(Fields(ScanRef("{NULL} and more", "%D", NxRef(NxObjId(1, 2, 3), 4, NxClassId(5, 6)))),
            "4:0-0#0,5v6");
  NxClassId cls(1, 2);
  cls.ScanFromNxString(NxString("{NULL}"));
  EXPECT_EQ(cls.classNumber, 0xFFFF);
  EXPECT_EQ(cls.version, 0xFFFF);
  cls.ScanFromNxString(NxString("{NUL"));
  EXPECT_EQ(cls.classNumber, 0);
  NxString input("1");
  EXPECT_EQ(NxObjId::ScanFromString(nullptr, input, "%H", 1), nullptr);
}

TEST(IdentifierText, RoundTripsAndTheWrappers) {
  const NxObjId ids[] = {NxObjId(0, 1, 0), NxObjId(0xFFFF, 0xFFFFFFFFu, 0xFFFFFFFFu),
                         NxObjId(3, 0, 17)};
  for (const NxObjId& id : ids) {
    for (const char* format : {static_cast<const char*>(nullptr), "%hu-%lu#%lu", "%B.%L.%H"}) {
      NxString s;
      id.PrintToNxString(s, format);
      NxObjId back;
      back.ScanFromNxString(s, format);
      EXPECT_EQ(back == id, 1) << Text(s);
      EXPECT_EQ(back.block, id.block) << Text(s);
    }
  }
  NxDBOId dbo(NxObjId(1, 1, 1), 7);
  dbo.ScanFromNxString(NxString("(2-3#4)"));
  EXPECT_EQ(dbo.database, 0);
  EXPECT_EQ(dbo.low, 3u);
  NxLocalRef local;
  local.ScanFromNxString(NxString("(9:1-2#3, 4)"), "(%D:%H-%L#%B, %C)");
  NxString s;
  EXPECT_EQ(Text(local.PrintToNxString(s, "(%D:%H-%L#%B, %C)")), "(0:1-2#3, 4)");
  // 16-bit input is read through an 8-bit copy.
  const unsigned short wide[] = {'(', '1', '-', '2', '#', '3', ')', 0};
  NxObjId fromWide;
  fromWide.ScanFromNxString(NxString(wide));
  EXPECT_EQ(Number(fromWide), (uint64_t{1} << 32) | 2);
  EXPECT_EQ(fromWide.block, 3u);
}

// Formats and texts in buffers of their exact size, so that the sanitizers
// see any read past their end.
TEST(IdentifierText, NeverReadsPastTheTextOrTheFormat) {
  const char* formats[] = {"%", "%h", "%l", "(%H-%L#%B)", "%hu%lu%lu%lu%hu%hu%hu", "%V%"};
  const char* texts[] = {"", "1", "12345678901234567890", "{NULL", "(1-2#3", " -", "9"};
  for (const char* f : formats) {
    std::unique_ptr<char[]> format(new char[std::strlen(f) + 1]);
    std::memcpy(format.get(), f, std::strlen(f) + 1);
    for (const char* t : texts) {
      NxString text(t);
      NxRef ref;
      NxRef::ScanFromString(&ref, text, format.get(), 1);
      NxClassId cls;
      NxClassId::ScanFromString(&cls, text, format.get(), 1);
      NxString out;
      NxRef::PrintToString(out, &ref, format.get(), 1);
      NxClassId::PrintToString(out, &cls, format.get(), 1);
    }
  }
}

}  // namespace
