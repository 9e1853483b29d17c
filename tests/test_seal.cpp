// Tests of NxSeal: the 48 bits taken from object numbers and 64-bit numbers,
// the disk form that sorts as bytes, the row's order and estimate, and the
// text form.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>

#include "test_support.h"

namespace {

NxSeal FromNumber(int64_t n) {
  NxSeal s;
  return s.ConvertFrom(NxInt64(static_cast<long long>(n)));
}

uint64_t Number(const NxSeal& s) {
  NxInt64 n;
  s.ConvertTo(n);
  return static_cast<uint64_t>(static_cast<uint32_t>(n.high)) << 32 | n.low;
}

std::string Disk(const NxSeal* seals, uint32_t count, unsigned char format) {
  unsigned char bytes[64];
  const uint32_t written = NxTypeMgr().Store(NxTYPE_NxSeal, bytes, seals, format, count);
  return nxtest::Hex(bytes, written);
}

std::string Text(const NxString& s) {
  return s.StrGet() != nullptr ? s.StrGet() : "";
}

TEST(Seal, TakesFortyEightBitsFromObjectNumbersAndNumbers) {
  NxSeal s;
  s.ConvertFrom(NxObjId(0x0102, 0x03040506, 0xDEADBEEF));  // the block is dropped
  EXPECT_EQ(Number(s), 0x010203040506u);
  // The same six bytes, most significant first, in every format.
  for (unsigned char format : {0, 1, 2, 8, 0x12, 0x81}) EXPECT_EQ(Disk(&s, 1, format), "010203040506");

  NxObjId highest;
  highest.SetHighestValue();
  s.ConvertFrom(highest);
  EXPECT_EQ(Number(s), 281474976710655u);
  EXPECT_EQ(Disk(&s, 1, 1), "ffffffffffff");

  // Negative and too large numbers keep their low 48 bits, and read back
  // never negative.
  EXPECT_EQ(Number(FromNumber(-1)), 0xFFFFFFFFFFFFu);
  EXPECT_EQ(Number(FromNumber(-2)), 0xFFFFFFFFFFFEu);
  EXPECT_EQ(Number(FromNumber(INT64_MIN)), 0u);
  EXPECT_EQ(Number(FromNumber(int64_t{1} << 48)), 0u);
  EXPECT_EQ(Number(FromNumber((int64_t{0x7FFF} << 48) + 5)), 5u);
  NxInt64 back;
  FromNumber(-1).ConvertTo(back);
  EXPECT_GT(back, NxInt64(0));
}

TEST(Seal, KeysSortAsBytesInEveryForm) {
  // Numbers of every size, some sharing high words: the disk bytes order as
  // the numbers do, and the row agrees with them in memory and disk form.
  std::mt19937_64 random(48);
  NxTypeMgr mgr;
  for (int i = 0; i < 3000; ++i) {
    const int shiftA = static_cast<int>(random() % 48), shiftB = static_cast<int>(random() % 48);
    NxSeal pair[2] = {FromNumber(static_cast<int64_t>(random() >> (16 + shiftA))),
                      FromNumber(static_cast<int64_t>(random() >> (16 + shiftB)))};
    if (i % 7 == 0) {  // differing in the last word only
      pair[1] = pair[0];
      pair[1].word2 = static_cast<uint16_t>(pair[0].word2 ^ (1u << (i % 16)));
    }
    const uint64_t a = Number(pair[0]), b = Number(pair[1]);
    const int expected = a < b ? -1 : a > b ? 1 : 0;
    unsigned char disk[2][6];
    mgr.Store(NxTYPE_NxSeal, disk[0], &pair[0], 2, 1);
    mgr.Store(NxTYPE_NxSeal, disk[1], &pair[1], 1, 1);
    const auto sign = [](long v) { return v < 0 ? -1 : v > 0 ? 1 : 0; };
    int status = 7;
    EXPECT_EQ(sign(std::memcmp(disk[0], disk[1], 6)), expected);
    EXPECT_EQ(sign(mgr.Cmp(NxTYPE_NxSeal, 0, disk[0], 0, disk[1], 0, 1, 1, status)), expected);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(sign(mgr.Cmp(NxTYPE_NxSeal, 0, &pair[0], 0, &pair[1], 0, 1, 8, status)), expected);
    EXPECT_EQ(sign(pair[0] != pair[1]), expected);
    EXPECT_EQ(pair[0] == pair[1], expected == 0 ? 1 : 0);
  }
  // Arrays compare on to the first element that differs.
  const NxSeal x[2] = {FromNumber(9), FromNumber(1)}, y[2] = {FromNumber(9), FromNumber(256)};
  int status = 0;
  EXPECT_LT(mgr.Cmp(NxTYPE_NxSeal, 0, const_cast<NxSeal*>(x), 0, const_cast<NxSeal*>(y), 0, 2, 8,
                    status),
            0);
  EXPECT_EQ(mgr.Cmp(NxTYPE_NxSeal, 0, const_cast<NxSeal*>(x), 0, const_cast<NxSeal*>(y), 0, 1, 8,
                    status),
            0);
}

TEST(Seal, RowStoresLoadsTranslatesAndMakesZeroes) {
  NxTypeMgr mgr;
  const NxSeal two[2] = {FromNumber(0x0A0B0C0D0E0F), FromNumber(0x8000)};
  EXPECT_EQ(Disk(two, 2, 1), "0a0b0c0d0e0f000000008000");
  const unsigned char bytes[] = {0x80, 0, 0, 0, 0, 1, 0, 1, 0, 0, 0, 0};
  auto* loaded = static_cast<NxSeal*>(mgr.Create(NxTYPE_NxSeal, 2));
  EXPECT_EQ(mgr.Load(NxTYPE_NxSeal, loaded, bytes, 1, 2), 12u);
  EXPECT_EQ(Number(loaded[0]), 0x800000000001u);
  EXPECT_EQ(Number(loaded[1]), 0x000100000000u);
  unsigned char disk[12];
  EXPECT_EQ(mgr.Translate(NxTYPE_NxSeal, disk, 2, 12, loaded, 8, 12, 2), 12u);
  EXPECT_EQ(std::memcmp(disk, bytes, 12), 0);
  EXPECT_EQ(mgr.DiskLenGet(NxTYPE_NxSeal, nullptr, 2, 5, 8), 30u);
  mgr.Delete(NxTYPE_NxSeal, loaded, 2);
  auto* fresh = static_cast<NxSeal*>(mgr.DefaultValue(NxTYPE_NxSeal, 3, 1));
  for (int i = 0; i < 3; ++i) EXPECT_EQ(Number(fresh[i]), 0u);
  EXPECT_FALSE(mgr.SupportsNullValue(NxTYPE_NxSeal));
  mgr.Delete(NxTYPE_NxSeal, fresh, 3);
}

TEST(Seal, PrintsAndScansDecimalText) {
  NxString s("s=");
  FromNumber(5).PrintToNxString(s);
  EXPECT_EQ(Text(s), "s=5");
  const struct {
    const char* text;
    uint64_t number;
  } scans[] = {{"", 0},           {"5", 5},
               {"0x10", 16},      {"010", 8},
               {"abc", 0xFFFFFFFFFFFFu},  // no number: every bit
               {"-1", 0xFFFFFFFFFFFFu},   {"281474976710656", 0},
               {"281474976710655", 0xFFFFFFFFFFFFu}};
  for (const auto& c : scans) {
    NxSeal seal = FromNumber(77);
    EXPECT_EQ(Number(seal.ScanFromNxString(NxString(c.text))), c.number) << c.text;
  }
  // 16-bit text, and the row's print and scan through the manager.
  NxTypeMgr mgr;
  NxString wide(static_cast<unsigned char>(253), static_cast<unsigned char>(0));
  wide += NxString("4096");
  NxSeal seal;
  mgr.ScanFromNxString(NxTYPE_NxSeal, &seal, wide, nullptr, 1);
  EXPECT_EQ(Number(seal), 4096u);
  const NxSeal pair[2] = {FromNumber(281474976710655), FromNumber(0)};
  NxString printed;
  mgr.PrintToNxString(NxTYPE_NxSeal, printed, const_cast<NxSeal*>(pair), nullptr, 2);
  EXPECT_NE(Text(printed).find("281474976710655"), std::string::npos);
  // Conversion: a null string gives 0.
  NxTypeConvertData* carrier = mgr.ConvertTo(NxTYPE_NxSeal, const_cast<NxSeal*>(pair), 2);
  ASSERT_NE(carrier, nullptr);
  EXPECT_EQ(Text(*carrier->GetString(0)), "281474976710655");
  carrier->GetString(0)->SetNullValue();
  auto* back = static_cast<NxSeal*>(mgr.ConvertFrom(NxTYPE_NxSeal, carrier, 2));
  EXPECT_EQ(Number(back[0]), 0u);
  mgr.Delete(NxTYPE_NxSeal, back, 2);
  delete carrier;
}

}  // namespace
