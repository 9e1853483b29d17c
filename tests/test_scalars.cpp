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

// One scalar row and three elements in memory form and, as hex, most
// significant byte first.
struct ScalarCase {
  const char* name;
  char id;
  size_t width;
  Bytes memory;
  const char* msbFirst;
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
      {"char", NxTYPE_char, 1, Memory<signed char>('A', -1, 0x7F), "41ff7f"},
      {"NxByte", NxTYPE_NxByte, 1, Memory<unsigned char>(0x80, 0x01, 0xFE), "8001fe"},
      {"short", NxTYPE_short, 2, Memory<int16_t>(258, -2, 0x7F00), "0102fffe7f00"},
      {"NxWord", NxTYPE_NxWord, 2, Memory<uint16_t>(0xFFFE, 1, 0x1234), "fffe00011234"},
      {"long", NxTYPE_long, 4, Memory<int32_t>(0x01020304, -2, INT32_MIN),
       "01020304fffffffe80000000"},
      {"NxDWord", NxTYPE_NxDWord, 4, Memory<uint32_t>(0xA1B2C3D4u, 1, 0x80000000u),
       "a1b2c3d40000000180000000"},
      {"BlockId", NxTYPE_BlockId, 4, Memory<uint32_t>(0xA1B2C3D4u, 1, 0x80000000u),
       "a1b2c3d40000000180000000"},
      {"int", NxTYPE_int, 4, Memory<int32_t>(0x01020304, -3, 0x7FFFFFFF),
       "01020304fffffffd7fffffff"},
      {"unsigned", NxTYPE_unsigned, 4, Memory<uint32_t>(0xF0E0D0C0u, 5, 0x00FF0000u),
       "f0e0d0c00000000500ff0000"},
      {"enum", NxTYPE_enum, 4, Memory<int32_t>(0x01020304, -3, 0x7FFFFFFF),
       "01020304fffffffd7fffffff"},
      {"float", NxTYPE_float, 4, Memory<float>(1.0f, -2.5f, 0.15625f), "3f800000c02000003e200000"},
      {"double", NxTYPE_double, 8, Memory<double>(1.0, -2.0, 0.5),
       "3ff0000000000000c0000000000000003fe0000000000000"},
  };
}

std::string MemHex(const ScalarCase& c) {
  return Hex(c.memory.data(), c.memory.size());
}

// The most-significant-first hex with each element turned around.
std::string LsbFirst(const ScalarCase& c) {
  std::string out(c.msbFirst);
  const size_t digits = 2 * c.width;
  for (size_t at = 0; at < out.size(); at += digits) {
    for (size_t i = 0; i < c.width; ++i)
      out.replace(at + 2 * i, 2, c.msbFirst + at + digits - 2 - 2 * i, 2);
  }
  return out;
}

Bytes FromHex(const std::string& hex) {
  Bytes out(hex.size() / 2);
  for (size_t i = 0; i < out.size(); ++i) {
    out[i] = static_cast<unsigned char>(std::stoul(hex.substr(2 * i, 2), nullptr, 16));
  }
  return out;
}

TEST(ScalarRows, SlotsSizesAndNullness) {
  NxTypeMgr mgr;
  for (const ScalarCase& c : Cases()) {
    SCOPED_TRACE(c.name);
    ASSERT_EQ(LsbFirst(c), MemHex(c)) << "this machine stores the least significant byte first";
    // Sizes follow the width; neither value nor file is looked at.
    for (unsigned char format : {0, 1, 2, 8, 0x82}) {
      EXPECT_EQ(mgr.DiskLenGet(c.id, nullptr, format, 5, 8), 5 * c.width);
      EXPECT_EQ(mgr.DiskLenGetFromMemFile(c.id, nullptr, format, 5), 5 * c.width);
    }
    EXPECT_EQ(mgr.RowGet(c.id)->NullSizeGet(5), 5 * c.width);
    Bytes ones(c.width, 0xFF);
    EXPECT_EQ(mgr.IsNullValue(c.id, ones.data()), 0);
    EXPECT_EQ(mgr.SupportsNullValue(c.id), 0);
  }
  // The interval is stored as a float.
  EXPECT_EQ(mgr.DiskLenGetFromMemFile(NxTYPE_d_Interval, nullptr, 0x81, 5), 20u);
  float value = 1.0f;
  unsigned char disk[4] = {};
  EXPECT_EQ(mgr.Translate(NxTYPE_d_Interval, disk, 2, 4, &value, 8, 4, 1), 4u);
  EXPECT_EQ(Hex(disk, 4), "3f800000");
}

TEST(ScalarRows, StoreAndLoadWriteEachElementInTheFormatsByteOrder) {
  NxTypeMgr mgr;
  for (const ScalarCase& c : Cases()) {
    const size_t size = c.memory.size();
    // Only the low four bits count; any low value but 2 and 8 is as 1.
    const struct {
      unsigned char format;
      std::string disk;
    } formats[] = {{1, LsbFirst(c)},   {2, c.msbFirst},   {8, MemHex(c)},     {0x82, c.msbFirst},
                   {0xE2, c.msbFirst}, {0x88, MemHex(c)}, {0x03, LsbFirst(c)}};
    for (const auto& f : formats) {
      SCOPED_TRACE(std::string(c.name) + " format " + std::to_string(f.format));
      Bytes disk(size + 4, 0xEE);
      EXPECT_EQ(mgr.Store(c.id, disk.data(), c.memory.data(), f.format, 3), size);
      EXPECT_EQ(Hex(disk.data(), size + 4), f.disk + "eeeeeeee");
      const Bytes source = FromHex(f.disk);
      Bytes memory(size + 4, 0xEE);
      EXPECT_EQ(mgr.Load(c.id, memory.data(), source.data(), f.format, 3), size);
      EXPECT_EQ(Hex(memory.data(), size + 4), MemHex(c) + "eeeeeeee");
    }
    // count 0 moves nothing.
    Bytes none(c.width, 0xEE);
    EXPECT_EQ(mgr.Store(c.id, none.data(), c.memory.data(), 2, 0), 0u) << c.name;
    EXPECT_EQ(mgr.Load(c.id, none.data(), c.memory.data(), 2, 0), 0u) << c.name;
    EXPECT_EQ(none, Bytes(c.width, 0xEE)) << c.name;
  }
}

TEST(ScalarRows, CreateConstructAssignAndCopy) {
  NxTypeMgr mgr;
  for (const ScalarCase& c : Cases()) {
    SCOPED_TRACE(c.name);
    const size_t w = c.width;
    // The block holds exactly three elements: ASan sees any write beyond.
    unsigned char* block = static_cast<unsigned char*>(mgr.Create(c.id, 3));
    ASSERT_NE(block, nullptr);
    std::memset(block, 0xAB, 3 * w);
    mgr.ConstructorPtrGet(c.id)(block, 2, 0);
    std::string rest;
    for (size_t i = 0; i < w; ++i) rest += "ab";
    EXPECT_EQ(Hex(block, 3 * w), std::string(4 * w, '0') + rest) << "two zeroed, one left";
    mgr.DestructorPtrGet(c.id)(block, 3, 0);
    EXPECT_EQ(mgr.Delete(c.id, block, 3), nullptr);

    for (int slot = 0; slot < 2; ++slot) {
      const NxAssignmentFunc move = slot == 0 ? mgr.AssignmentPtrGet(c.id) : mgr.CopyPtrGet(c.id);
      Bytes source(c.memory);
      Bytes target(4 * w, 0xEE);
      move(target.data(), source.data(), 3, 0);
      EXPECT_EQ(Hex(target.data(), 4 * w), MemHex(c) + std::string(2 * w, 'e')) << slot;
      // With the last argument set the first element is spread over count.
      target.assign(4 * w, 0xEE);
      move(target.data(), source.data(), 3, 1);
      const std::string first = MemHex(c).substr(0, 2 * w);
      EXPECT_EQ(Hex(target.data(), 4 * w), first + first + first + std::string(2 * w, 'e')) << slot;
      target.assign(4 * w, 0xEE);
      move(target.data(), source.data(), 0, 1);
      EXPECT_EQ(target, Bytes(4 * w, 0xEE)) << slot;
      EXPECT_EQ(source, c.memory) << "the source is only read";
    }
  }
  // Elements go from first to last: an overlapping move one up spreads the first.
  int32_t values[4] = {1, 2, 3, 4};
  mgr.AssignmentPtrGet(NxTYPE_long)(values + 1, values, 3, 0);
  EXPECT_EQ(Hex(values, 16), "01000000010000000100000001000000");
}

TEST(ScalarRows, TranslateBetweenMemoryAndDiskForms) {
  NxTypeMgr mgr;
  for (const ScalarCase& c : Cases()) {
    SCOPED_TRACE(c.name);
    const size_t size = c.memory.size();
    Bytes memory(c.memory);
    Bytes msbFirst = FromHex(c.msbFirst);
    // Memory to memory; bits above the low four do not change the form.
    Bytes target(size + 2, 0xEE);
    EXPECT_EQ(mgr.Translate(c.id, target.data(), 0x88, 0, memory.data(), 0x98, 0, 3), size);
    EXPECT_EQ(Hex(target.data(), size + 2), MemHex(c) + "eeee");
    // Disk from memory by the destination format, memory from disk by the source's.
    target.assign(size + 2, 0xEE);
    EXPECT_EQ(mgr.Translate(c.id, target.data(), 0xF2, 0, memory.data(), 8, 0, 3), size);
    EXPECT_EQ(Hex(target.data(), size + 2), std::string(c.msbFirst) + "eeee");
    target.assign(size + 2, 0xEE);
    EXPECT_EQ(mgr.Translate(c.id, target.data(), 1, 0, memory.data(), 0x88, 0, 3), size);
    EXPECT_EQ(Hex(target.data(), size), LsbFirst(c));
    target.assign(size + 2, 0xEE);
    EXPECT_EQ(mgr.Translate(c.id, target.data(), 8, 0, msbFirst.data(), 0x82, 0, 3), size);
    EXPECT_EQ(Hex(target.data(), size + 2), MemHex(c) + "eeee");
    EXPECT_EQ(msbFirst, FromHex(c.msbFirst)) << "the source is only read";
    EXPECT_EQ(mgr.Translate(c.id, target.data(), 8, 64, memory.data(), 8, 64, 0), 0u);

    // Between disk forms the bytes are copied as they stand: a longer
    // destination is zeroed first, a shorter one (an exact-size heap block)
    // takes what fits, and count is not looked at.
    unsigned char source[8] = {0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88};
    unsigned char wide[10];
    std::memset(wide, 0xEE, sizeof wide);
    EXPECT_EQ(mgr.Translate(c.id, wide, 1, 8, source, 2, 3, 5), 3u);
    EXPECT_EQ(Hex(wide, sizeof wide), "1122330000000000eeee");
    std::unique_ptr<unsigned char[]> narrow(new unsigned char[3]);
    EXPECT_EQ(mgr.Translate(c.id, narrow.get(), 2, 3, source, 1, 8, 0), 3u);
    EXPECT_EQ(Hex(narrow.get(), 3), "112233");
    unsigned char same[8] = {};
    EXPECT_EQ(mgr.Translate(c.id, same, 2, 8, source, 1, 8, 1), 8u);
    EXPECT_EQ(Hex(same, 8), Hex(source, 8));
  }
}

}  // namespace
