// Tests of NxSeal: the 48 bits taken from object numbers and 64-bit numbers,
// the disk form that sorts as bytes, and the text form.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

#include <cstring>
#include <random>

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
  return nxtest::Hex(bytes, NxTypeMgr().Store(NxTYPE_NxSeal, bytes, seals, format, count));
}

TEST(Seal, TakesFortyEightBitsAndWritesThemMostSignificantFirst) {
  NxSeal s;
  s.ConvertFrom(NxObjId(0x0102, 0x03040506, 0xDEADBEEF));  // the block is dropped
  EXPECT_EQ(Number(s), 0x010203040506u);
  for (unsigned char format : {0, 1, 2, 0x12, 0x81}) EXPECT_EQ(Disk(&s, 1, format), "010203040506");
  NxObjId highest;
  highest.SetHighestValue();
  EXPECT_EQ(Number(s.ConvertFrom(highest)), 281474976710655u);
  // Numbers keep their low 48 bits and read back never negative.
  EXPECT_EQ(Number(FromNumber(-1)), 0xFFFFFFFFFFFFu);
  EXPECT_EQ(Number(FromNumber(INT64_MIN)), 0u);
  EXPECT_EQ(Number(FromNumber((int64_t{0x7FFF} << 48) + 5)), 5u);

  const NxSeal two[2] = {FromNumber(0x0A0B0C0D0E0F), FromNumber(0x8000)};
  EXPECT_EQ(Disk(two, 2, 1), "0a0b0c0d0e0f000000008000");
  const unsigned char bytes[] = {0x80, 0, 0, 0, 0, 1, 0, 1, 0, 0, 0, 0};
  NxSeal loaded[2];
  EXPECT_EQ(NxTypeMgr().Load(NxTYPE_NxSeal, loaded, bytes, 2, 2), 12u);
  EXPECT_EQ(Number(loaded[0]), 0x800000000001u);
  EXPECT_EQ(Number(loaded[1]), 0x000100000000u);
}

TEST(Seal, KeysSortAsBytesInEveryForm) {
  // Numbers of every size, some differing in the last word only: the disk
  // bytes order as the numbers do, and the row agrees in both forms.
  std::mt19937_64 random(48);
  NxTypeMgr mgr;
  const auto sign = [](long v) { return v < 0 ? -1 : v > 0 ? 1 : 0; };
  for (int i = 0; i < 3000; ++i) {
    NxSeal pair[2] = {FromNumber(static_cast<int64_t>(random() >> (16 + random() % 48))),
                      FromNumber(static_cast<int64_t>(random() >> (16 + random() % 48)))};
    if (i % 7 == 0) {
      pair[1] = pair[0];
      pair[1].word2 = static_cast<uint16_t>(pair[0].word2 ^ (1u << (i % 16)));
    }
    const uint64_t a = Number(pair[0]), b = Number(pair[1]);
    const int expected = a < b ? -1 : a > b ? 1 : 0;
    unsigned char disk[2][6];
    mgr.Store(NxTYPE_NxSeal, disk[0], &pair[0], 2, 1);
    mgr.Store(NxTYPE_NxSeal, disk[1], &pair[1], 1, 1);
    int status = 7;
    EXPECT_EQ(sign(std::memcmp(disk[0], disk[1], 6)), expected);
    EXPECT_EQ(sign(mgr.Cmp(NxTYPE_NxSeal, 0, disk[0], 0, disk[1], 0, 1, 1, status)), expected);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(sign(mgr.Cmp(NxTYPE_NxSeal, 0, &pair[0], 0, &pair[1], 0, 1, 8, status)), expected);
    EXPECT_EQ(pair[0] == pair[1], expected == 0 ? 1 : 0);
  }
  // Arrays compare on to the first element that differs.
  NxSeal x[2] = {FromNumber(9), FromNumber(1)}, y[2] = {FromNumber(9), FromNumber(256)};
  EXPECT_LT(mgr.Cmp(NxTYPE_NxSeal, x, y, 0, 2, 8), 0);
  EXPECT_EQ(mgr.Cmp(NxTYPE_NxSeal, x, y, 0, 1, 8), 0);
}

TEST(Seal, PrintsAndScansDecimalText) {
  NxString s("s=");
  FromNumber(5).PrintToNxString(s);
  EXPECT_STREQ(s.StrGet(), "s=5");
  const struct {
    const char* text;
    uint64_t number;
  } scans[] = {{"", 0},      {"5", 5},  {"0x10", 16}, {"010", 8}, {"abc", 0xFFFFFFFFFFFFu},
               {"-1", 0xFFFFFFFFFFFFu}, {"281474976710656", 0}};
  for (const auto& c : scans) {
    NxSeal seal = FromNumber(77);
    EXPECT_EQ(Number(seal.ScanFromNxString(NxString(c.text))), c.number) << c.text;
  }
  // The row's conversion: a null string gives 0.
  NxTypeMgr mgr;
  NxSeal pair[2] = {FromNumber(4096), FromNumber(1)};
  NxTypeConvertData* carrier = mgr.ConvertTo(NxTYPE_NxSeal, pair, 2);
  ASSERT_NE(carrier, nullptr);
  EXPECT_STREQ(carrier->GetString(0)->StrGet(), "4096");
  carrier->GetString(0)->SetNullValue();
  auto* back = static_cast<NxSeal*>(mgr.ConvertFrom(NxTYPE_NxSeal, carrier, 2));
  EXPECT_EQ(Number(back[0]), 0u);
  mgr.Delete(NxTYPE_NxSeal, back, 2);
  delete carrier;
}

}  // namespace
