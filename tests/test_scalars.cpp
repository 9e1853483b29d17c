// Tests of the twelve plain scalar rows and of the float slots that
// d_Interval borrows, all reached through NxTypeMgr.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using nxtest::Hex;
using Bytes = std::vector<unsigned char>;

// One scalar row: its id, memory width, the base library functions that
// stand in its slots, and three element values with their bytes written
// most significant byte first.
struct ScalarCase {
  const char* name;
  char id;
  size_t width;
  NxStoreFunc store;
  NxLoadFunc load;
  NxNullSizeGetFunc nullSizeGet;
  NxSizeGetFunc sizeGet;
  Bytes memory;                      // three elements in memory form
  const char* mostSignificantFirst;  // the same three elements, hex
};

template <typename T>
Bytes Memory(T a, T b, T c) {
  const T values[3] = {a, b, c};
  Bytes bytes(sizeof values);
  std::memcpy(bytes.data(), values, sizeof values);
  return bytes;
}

std::vector<ScalarCase> Cases() {
  return {
      {"char", NxTYPE_char, 1, CharStore, CharStore, CharNullSizeGet, CharSizeGet,
       Memory<signed char>('A', -1, 0x7F), "41ff7f"},
      {"NxByte", NxTYPE_NxByte, 1, CharStore, CharStore, CharNullSizeGet, CharSizeGet,
       Memory<unsigned char>(0x80, 0x01, 0xFE), "8001fe"},
      {"short", NxTYPE_short, 2, ShortStore, ShortStore, ShortNullSizeGet, ShortSizeGet,
       Memory<int16_t>(258, -2, 0x7F00), "0102fffe7f00"},
      {"NxWord", NxTYPE_NxWord, 2, ShortStore, ShortStore, ShortNullSizeGet, ShortSizeGet,
       Memory<uint16_t>(0xFFFE, 1, 0x1234), "fffe00011234"},
      {"long", NxTYPE_long, 4, LongStore, LongStore, LongNullSizeGet, LongSizeGet,
       Memory<int32_t>(0x01020304, -2, INT32_MIN), "01020304fffffffe80000000"},
      {"NxDWord", NxTYPE_NxDWord, 4, LongStore, LongStore, LongNullSizeGet, LongSizeGet,
       Memory<uint32_t>(0xA1B2C3D4u, 1, 0x80000000u), "a1b2c3d40000000180000000"},
      {"BlockId", NxTYPE_BlockId, 4, LongStore, LongStore, LongNullSizeGet, LongSizeGet,
       Memory<uint32_t>(0xA1B2C3D4u, 1, 0x80000000u), "a1b2c3d40000000180000000"},
      {"int", NxTYPE_int, 4, IntStore, IntLoad, IntNullSizeGet, IntSizeGet,
       Memory<int32_t>(0x01020304, -3, 0x7FFFFFFF), "01020304fffffffd7fffffff"},
      {"unsigned", NxTYPE_unsigned, 4, UnsignedStore, UnsignedLoad, IntNullSizeGet, IntSizeGet,
       Memory<uint32_t>(0xF0E0D0C0u, 5, 0x00FF0000u), "f0e0d0c00000000500ff0000"},
      {"enum", NxTYPE_enum, 4, IntStore, IntLoad, IntNullSizeGet, IntSizeGet,
       Memory<int32_t>(0x01020304, -3, 0x7FFFFFFF), "01020304fffffffd7fffffff"},
      {"float", NxTYPE_float, 4, FloatStore, FloatStore, FloatNullSizeGet, FloatSizeGet,
       Memory<float>(1.0f, -2.5f, 0.15625f), "3f800000c02000003e200000"},
      {"double", NxTYPE_double, 8, DoubleStore, DoubleStore, DoubleNullSizeGet, DoubleSizeGet,
       Memory<double>(1.0, -2.0, 0.5), "3ff0000000000000c0000000000000003fe0000000000000"},
  };
}

bool IntFamily(char id) {
  return id == NxTYPE_int || id == NxTYPE_unsigned || id == NxTYPE_enum;
}

// Disk bytes of `count` elements in `format`, as the base library sizes them.
uint32_t DiskWidth(const ScalarCase& c, unsigned char format, uint32_t count) {
  if (IntFamily(c.id)) return IntSizeGet(nullptr, 8, format, count);
  return static_cast<uint32_t>(c.width * count);
}

Bytes FromHex(const std::string& hex) {
  Bytes out(hex.size() / 2);
  for (size_t i = 0; i < out.size(); ++i) {
    out[i] = static_cast<unsigned char>(std::stoul(hex.substr(2 * i, 2), nullptr, 16));
  }
  return out;
}

// The most-significant-first bytes with each element turned around.
Bytes LeastSignificantFirst(const Bytes& msbFirst, size_t width) {
  Bytes out(msbFirst);
  for (size_t at = 0; at < out.size(); at += width) {
    for (size_t i = 0; i < width; ++i) out[at + i] = msbFirst[at + width - 1 - i];
  }
  return out;
}

// ---------------------------------------------------------------------------
// The slots that the base library fills.

TEST(ScalarRows, BaseLibraryFunctionsStandInTheirSlots) {
  NxTypeMgr mgr;
  for (const ScalarCase& c : Cases()) {
    SCOPED_TRACE(c.name);
    const NxTypeDesc* row = mgr.RowGet(c.id);
    EXPECT_EQ(mgr.StorePtrGet(c.id), c.store);
    EXPECT_EQ(mgr.LoadPtrGet(c.id), c.load);
    EXPECT_EQ(row->NullSizeGet, c.nullSizeGet);
    EXPECT_EQ(row->SizeGet, c.sizeGet);
    EXPECT_EQ(mgr.IsFixed(c.id), 1);
    EXPECT_EQ(mgr.MemLenGet(c.id, 1), c.width);
  }
}

TEST(ScalarRows, RowsShareFunctionSetsWhereOnlySignednessOrFormatDiffers) {
  NxTypeMgr mgr;
  // Every slot but Compare, EvalAndBound and Hash, where signedness lives;
  // with `moves` false also leaving out Store, Load and Translate.
  auto sameSet = [&](char a, char b, bool moves) {
    const NxTypeDesc* x = mgr.RowGet(a);
    const NxTypeDesc* y = mgr.RowGet(b);
    const bool sameMoves =
        x->Store == y->Store && x->Load == y->Load && x->Translate == y->Translate;
    return (!moves || sameMoves) && x->Create == y->Create && x->Delete == y->Delete &&
           x->NullSizeGet == y->NullSizeGet && x->SizeGet == y->SizeGet &&
           x->SizeGetFromMemFile == y->SizeGetFromMemFile && x->ConvertTo == y->ConvertTo &&
           x->ConvertFrom == y->ConvertFrom && x->Constructor == y->Constructor &&
           x->Destructor == y->Destructor && x->Assignment == y->Assignment && x->Copy == y->Copy &&
           x->IsNull == y->IsNull && x->SetNull == y->SetNull &&
           x->PrintToString == y->PrintToString && x->ScanFromString == y->ScanFromString &&
           x->DefaultValue == y->DefaultValue;
  };
  EXPECT_TRUE(sameSet(NxTYPE_char, NxTYPE_NxByte, true));
  EXPECT_TRUE(sameSet(NxTYPE_short, NxTYPE_NxWord, true));
  EXPECT_TRUE(sameSet(NxTYPE_long, NxTYPE_NxDWord, true));
  EXPECT_TRUE(sameSet(NxTYPE_NxDWord, NxTYPE_BlockId, true));
  EXPECT_TRUE(sameSet(NxTYPE_int, NxTYPE_enum, true));
  EXPECT_EQ(mgr.CmpFuncPtrGet(NxTYPE_int), mgr.CmpFuncPtrGet(NxTYPE_enum));
  EXPECT_EQ(mgr.CmpFuncPtrGet(NxTYPE_NxDWord), mgr.CmpFuncPtrGet(NxTYPE_BlockId));

  // unsigned has its own Store, Load and Translate beside those of int, and
  // shares the rest.
  EXPECT_TRUE(sameSet(NxTYPE_int, NxTYPE_unsigned, false));
  EXPECT_NE(mgr.RowGet(NxTYPE_int)->Translate, mgr.RowGet(NxTYPE_unsigned)->Translate);
}

TEST(ScalarRows, IntervalBorrowsTheFloatSlots) {
  NxTypeMgr mgr;
  const NxTypeDesc* f = mgr.RowGet(NxTYPE_float);
  const NxTypeDesc* d = mgr.RowGet(NxTYPE_d_Interval);
  EXPECT_EQ(d->NullSizeGet, f->NullSizeGet);
  EXPECT_EQ(d->SizeGet, f->SizeGet);
  EXPECT_EQ(d->SizeGetFromMemFile, f->SizeGetFromMemFile);
  EXPECT_EQ(d->Compare, f->Compare);
  EXPECT_EQ(d->EvalAndBound, f->EvalAndBound);
  EXPECT_EQ(d->Hash, f->Hash);
  EXPECT_EQ(d->Translate, f->Translate);

  EXPECT_EQ(mgr.DiskLenGet(NxTYPE_d_Interval, nullptr, 2, 3, 8), 12u);
  EXPECT_EQ(mgr.DiskLenGetFromMemFile(NxTYPE_d_Interval, nullptr, 0x81, 5), 20u);
  // The float Translate turns the bytes around on the way to format 2.
  const float value = 1.0f;
  unsigned char disk[4] = {};
  EXPECT_EQ(mgr.Translate(NxTYPE_d_Interval, disk, 2, 4, const_cast<float*>(&value), 8, 4, 1), 4u);
  EXPECT_EQ(Hex(disk, 4), "3f800000");
}

// ---------------------------------------------------------------------------
// Byte orders.

TEST(ScalarRows, StoreAndLoadWriteEachElementInTheFormatsByteOrder) {
  NxTypeMgr mgr;
  const uint32_t count = 3;
  for (const ScalarCase& c : Cases()) {
    ASSERT_EQ(DiskWidth(c, 2, 1), c.width) << c.name << ": expectations assume this width";
    const Bytes msbFirst = FromHex(c.mostSignificantFirst);
    const Bytes lsbFirst = LeastSignificantFirst(msbFirst, c.width);
    ASSERT_EQ(Hex(lsbFirst.data(), lsbFirst.size()), Hex(c.memory.data(), c.memory.size()))
        << "this machine stores the least significant byte first";

    struct FormatCase {
      unsigned char format;
      const Bytes& disk;
    };
    // Only the low four bits count; any low value but 2 and 8 is as 1.
    const FormatCase formats[] = {{1, lsbFirst},    {2, msbFirst},    {8, c.memory},
                                  {0x81, lsbFirst}, {0x82, msbFirst}, {0xE2, msbFirst},
                                  {0x88, c.memory}, {0x00, lsbFirst}, {0x03, lsbFirst}};
    for (const FormatCase& f : formats) {
      SCOPED_TRACE(std::string(c.name) + " format " + std::to_string(f.format));
      Bytes disk(f.disk.size() + 4, 0xEE);
      EXPECT_EQ(mgr.Store(c.id, disk.data(), c.memory.data(), f.format, count),
                DiskWidth(c, f.format, count));
      EXPECT_EQ(Hex(disk.data(), f.disk.size()), Hex(f.disk.data(), f.disk.size()));
      EXPECT_EQ(Hex(disk.data() + f.disk.size(), 4), "eeeeeeee") << "nothing behind the elements";

      Bytes memory(c.memory.size() + 4, 0xEE);
      EXPECT_EQ(mgr.Load(c.id, memory.data(), f.disk.data(), f.format, count),
                DiskWidth(c, f.format, count));
      EXPECT_EQ(Hex(memory.data(), c.memory.size()), Hex(c.memory.data(), c.memory.size()));
      EXPECT_EQ(Hex(memory.data() + c.memory.size(), 4), "eeeeeeee");
    }

    // count 1 moves one element only; count 0 moves nothing.
    Bytes one(2 * c.width, 0xEE);
    EXPECT_EQ(mgr.Store(c.id, one.data(), c.memory.data(), 2, 1), DiskWidth(c, 2, 1)) << c.name;
    EXPECT_EQ(Hex(one.data(), c.width), Hex(msbFirst.data(), c.width)) << c.name;
    EXPECT_EQ(one[c.width], 0xEE) << c.name;
    Bytes none(c.width, 0xEE);
    EXPECT_EQ(mgr.Store(c.id, none.data(), c.memory.data(), 2, 0), 0u) << c.name;
    EXPECT_EQ(mgr.Load(c.id, none.data(), msbFirst.data(), 2, 0), 0u) << c.name;
    EXPECT_EQ(none, Bytes(c.width, 0xEE)) << c.name;
  }
}

TEST(ScalarRows, KnownDiskBytesLoadAsNumbers) {
  NxTypeMgr mgr;
  const unsigned char bytes[8] = {0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08};
  int16_t s = 0;
  mgr.Load(NxTYPE_short, &s, bytes, 2, 1);
  EXPECT_EQ(s, 258);
  mgr.Load(NxTYPE_short, &s, bytes, 1, 1);
  EXPECT_EQ(s, 513);
  uint32_t u = 0;
  mgr.Load(NxTYPE_unsigned, &u, bytes, 2, 1);
  EXPECT_EQ(u, 0x01020304u);
  int32_t l = 0;
  mgr.Load(NxTYPE_long, &l, bytes + 4, 0x41, 1);
  EXPECT_EQ(l, 0x08070605);
  double d = 0;
  const unsigned char two[8] = {0x40, 0, 0, 0, 0, 0, 0, 0};
  mgr.Load(NxTYPE_double, &d, two, 2, 1);
  EXPECT_EQ(d, 2.0);
}

// ---------------------------------------------------------------------------
// Sizes.

TEST(ScalarRows, SizesFollowTheWidthWithoutLookingAtValueOrFile) {
  NxTypeMgr mgr;
  for (const ScalarCase& c : Cases()) {
    SCOPED_TRACE(c.name);
    for (unsigned char format : {1, 2, 8, 0x82}) {
      EXPECT_EQ(mgr.DiskLenGet(c.id, nullptr, format, 5, 8), DiskWidth(c, format, 5));
      EXPECT_EQ(mgr.DiskLenGet(c.id, nullptr, 0, 5, 0), DiskWidth(c, 0, 5));
      // The file is not touched: a null file is fine.
      EXPECT_EQ(mgr.DiskLenGetFromMemFile(c.id, nullptr, format, 5), DiskWidth(c, format, 5));
    }
    EXPECT_EQ(mgr.RowGet(c.id)->NullSizeGet(5), DiskWidth(c, 8, 5));
    EXPECT_EQ(mgr.DiskLenGetFromMemFile(c.id, nullptr, 1, 0), 0u);
  }
  EXPECT_EQ(mgr.DiskLenGetFromMemFile(NxTYPE_short, nullptr, 1, 5), 10u);
}

// ---------------------------------------------------------------------------
// Life of elements.

TEST(ScalarRows, CreateConstructDestructAndDelete) {
  NxTypeMgr mgr;
  for (const ScalarCase& c : Cases()) {
    SCOPED_TRACE(c.name);
    // The block holds exactly count elements: writing all of them is fine
    // under the address sanitizer.
    unsigned char* block = static_cast<unsigned char*>(mgr.Create(c.id, 3));
    ASSERT_NE(block, nullptr);
    if (c.width == 1) {
      EXPECT_EQ(Hex(block, 3), "000000") << "the byte set zeroes its memory";
    }
    std::memset(block, 0xAB, 3 * c.width);

    // Constructor zeroes count elements and nothing beyond.
    mgr.ConstructorPtrGet(c.id)(block, 2, 0);
    EXPECT_EQ(Hex(block, 2 * c.width), std::string(4 * c.width, '0'));
    EXPECT_EQ(block[2 * c.width], 0xAB);
    // Destructor leaves the bytes alone.
    std::memcpy(block, c.memory.data(), 3 * c.width);
    mgr.DestructorPtrGet(c.id)(block, 3, 0);
    EXPECT_EQ(Hex(block, 3 * c.width), Hex(c.memory.data(), 3 * c.width));

    EXPECT_EQ(mgr.Delete(c.id, block, 3), nullptr);
    EXPECT_EQ(mgr.Delete(c.id, nullptr, 1), nullptr);

    void* single = mgr.Create(c.id, 1);
    ASSERT_NE(single, nullptr);
    std::memset(single, 0, c.width);
    EXPECT_EQ(mgr.Delete(c.id, single, 1), nullptr);
  }
}

TEST(ScalarRows, AssignmentAndCopyMoveElementsOrBroadcastTheFirst) {
  NxTypeMgr mgr;
  for (const ScalarCase& c : Cases()) {
    for (int slot = 0; slot < 2; ++slot) {
      SCOPED_TRACE(std::string(c.name) + (slot == 0 ? " Assignment" : " Copy"));
      const NxAssignmentFunc move = slot == 0 ? mgr.AssignmentPtrGet(c.id) : mgr.CopyPtrGet(c.id);
      Bytes source(c.memory);

      Bytes target(4 * c.width, 0xEE);
      move(target.data(), source.data(), 3, 0);
      EXPECT_EQ(Hex(target.data(), 3 * c.width), Hex(c.memory.data(), 3 * c.width));
      EXPECT_EQ(target[3 * c.width], 0xEE);

      target.assign(4 * c.width, 0xEE);
      move(target.data(), source.data(), 3, 1);
      for (size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(Hex(target.data() + i * c.width, c.width), Hex(c.memory.data(), c.width)) << i;
      }
      EXPECT_EQ(target[3 * c.width], 0xEE);

      target.assign(4 * c.width, 0xEE);
      move(target.data(), source.data(), 0, 0);
      move(target.data(), source.data(), 0, 1);
      EXPECT_EQ(target, Bytes(4 * c.width, 0xEE));
      EXPECT_EQ(source, c.memory) << "the source is only read";
    }
  }
  // Elements go from the first to the last: an overlapping move one element
  // up spreads the first element.
  int32_t values[4] = {1, 2, 3, 4};
  mgr.AssignmentPtrGet(NxTYPE_long)(values + 1, values, 3, 0);
  EXPECT_EQ(values[1], 1);
  EXPECT_EQ(values[2], 1);
  EXPECT_EQ(values[3], 1);
}

TEST(ScalarRows, IsNullAlwaysAnswersNo) {
  NxTypeMgr mgr;
  for (const ScalarCase& c : Cases()) {
    SCOPED_TRACE(c.name);
    Bytes zeros(c.width, 0);
    Bytes ones(c.width, 0xFF);
    EXPECT_EQ(mgr.IsNullValue(c.id, zeros.data()), 0);
    EXPECT_EQ(mgr.IsNullValue(c.id, ones.data()), 0);
    EXPECT_EQ(mgr.SupportsNullValue(c.id), 0);
    EXPECT_EQ(mgr.SetNullPtrGet(c.id), nullptr);
  }
}

// ---------------------------------------------------------------------------
// Translate in its four form combinations.

TEST(ScalarRows, TranslateBetweenMemoryForms) {
  NxTypeMgr mgr;
  for (const ScalarCase& c : Cases()) {
    SCOPED_TRACE(c.name);
    Bytes source(c.memory);
    Bytes target(4 * c.width, 0xEE);
    EXPECT_EQ(mgr.Translate(c.id, target.data(), 8, 0, source.data(), 8, 0, 3), 3 * c.width);
    EXPECT_EQ(Hex(target.data(), 3 * c.width), Hex(c.memory.data(), 3 * c.width));
    EXPECT_EQ(target[3 * c.width], 0xEE);

    // Bits above the low four do not change the form.
    target.assign(4 * c.width, 0xEE);
    EXPECT_EQ(mgr.Translate(c.id, target.data(), 0x88, 0, source.data(), 0x98, 0, 1), c.width);
    EXPECT_EQ(Hex(target.data(), c.width), Hex(c.memory.data(), c.width));
    EXPECT_EQ(target[c.width], 0xEE);

    target.assign(4 * c.width, 0xEE);
    EXPECT_EQ(mgr.Translate(c.id, target.data(), 8, 64, source.data(), 8, 64, 0), 0u);
    EXPECT_EQ(target, Bytes(4 * c.width, 0xEE)) << "count 0 writes nothing";
  }
}

TEST(ScalarRows, TranslateBetweenMemoryAndDiskUsesTheRowsByteOrder) {
  NxTypeMgr mgr;
  for (const ScalarCase& c : Cases()) {
    SCOPED_TRACE(c.name);
    const Bytes msbFirst = FromHex(c.mostSignificantFirst);
    const Bytes lsbFirst = LeastSignificantFirst(msbFirst, c.width);
    Bytes memory(c.memory);

    // Disk from memory: the destination format, reduced to its low bits.
    for (unsigned char format : {2, 0xF2}) {
      Bytes disk(msbFirst.size() + 2, 0xEE);
      EXPECT_EQ(mgr.Translate(c.id, disk.data(), format, 0, memory.data(), 8, 0, 3),
                DiskWidth(c, 2, 3));
      EXPECT_EQ(Hex(disk.data(), msbFirst.size()), c.mostSignificantFirst);
      EXPECT_EQ(disk[msbFirst.size()], 0xEE);
    }
    Bytes disk(lsbFirst.size(), 0xEE);
    EXPECT_EQ(mgr.Translate(c.id, disk.data(), 1, 0, memory.data(), 0x88, 0, 3),
              DiskWidth(c, 1, 3));
    EXPECT_EQ(disk, lsbFirst);

    // Memory from disk: the source format.
    for (unsigned char format : {2, 0x82}) {
      Bytes back(c.memory.size() + 2, 0xEE);
      Bytes source(msbFirst);
      EXPECT_EQ(mgr.Translate(c.id, back.data(), 8, 0, source.data(), format, 0, 3),
                DiskWidth(c, 2, 3));
      EXPECT_EQ(Hex(back.data(), c.memory.size()), Hex(c.memory.data(), c.memory.size()));
      EXPECT_EQ(back[c.memory.size()], 0xEE);
      EXPECT_EQ(source, msbFirst) << "the source is only read";
    }
  }
}

TEST(ScalarRows, TranslateBetweenDiskFormsCopiesBytesAsTheyStand) {
  NxTypeMgr mgr;
  for (const ScalarCase& c : Cases()) {
    SCOPED_TRACE(c.name);
    unsigned char source[8] = {0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88};

    // A longer destination is zeroed first, then the source bytes follow.
    unsigned char wide[10];
    std::memset(wide, 0xEE, sizeof wide);
    EXPECT_EQ(mgr.Translate(c.id, wide, 1, 8, source, 2, 3, 5), 3u);
    EXPECT_EQ(Hex(wide, sizeof wide), "1122330000000000eeee");

    // A shorter destination takes what fits; count is not looked at.  An
    // exact-size heap block lets the sanitizer see any write beyond it.
    std::unique_ptr<unsigned char[]> narrow(new unsigned char[3]);
    EXPECT_EQ(mgr.Translate(c.id, narrow.get(), 2, 3, source, 1, 8, 0), 3u);
    EXPECT_EQ(Hex(narrow.get(), 3), "112233");

    // From one byte order to the other: no turning around.
    unsigned char same[8] = {};
    EXPECT_EQ(mgr.Translate(c.id, same, 2, 8, source, 1, 8, 1), 8u);
    EXPECT_EQ(Hex(same, 8), Hex(source, 8));
  }
}

}  // namespace
