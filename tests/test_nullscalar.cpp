// The eleven null-capable rows: layout in every format, null through every
// slot, and the text forms of each value type.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

#include "test_support.h"

namespace {

using nxtest::Hex;

// One row: its value width, a sample value as memory bytes, and that value
// on disk in both byte orders.
struct NullCase {
  char id;
  size_t width;
  size_t memLen;
  std::vector<unsigned char> value;
  const char* msbFirst;
  const char* lsbFirst;
};

template <typename T>
std::vector<unsigned char> Bytes(T v) {
  std::vector<unsigned char> b(sizeof v);
  std::memcpy(b.data(), &v, sizeof v);
  return b;
}

std::vector<NullCase> Cases() {
  // clang-format off
  return {
      {NxTYPE_NxNull_char, 1, 2, Bytes<signed char>(-2), "fe", "fe"},
      {NxTYPE_NxNull_uchar, 1, 2, Bytes<unsigned char>(200), "c8", "c8"},
      {NxTYPE_NxNull_short, 2, 4, Bytes<int16_t>(258), "0102", "0201"},
      {NxTYPE_NxNull_ushort, 2, 4, Bytes<uint16_t>(0xFFFE), "fffe", "feff"},
      {NxTYPE_NxNull_int, 4, 8, Bytes<int32_t>(0x01020304), "01020304", "04030201"},
      {NxTYPE_NxNull_unsigned, 4, 8, Bytes<uint32_t>(0xF0000001u), "f0000001", "010000f0"},
      {NxTYPE_NxNull_long, 4, 8, Bytes<int32_t>(-2), "fffffffe", "feffffff"},
      {NxTYPE_NxNull_ulong, 4, 8, Bytes<uint32_t>(0xA1B2C3D4u), "a1b2c3d4", "d4c3b2a1"},
      {NxTYPE_NxNull_float, 4, 8, Bytes<float>(1.5f), "3fc00000", "0000c03f"},
      {NxTYPE_NxNull_double, 8, 16, Bytes<double>(-2.0), "c000000000000000", "00000000000000c0"},
      // The NxInt64 value keeps its low word first in both orders.
      {NxTYPE_NxNull_NxInt64, 8, 12, Bytes<int64_t>(0x0102030405060708ll), "0506070801020304",
       "0807060504030201"}};
  // clang-format on
}

class NullRows : public ::testing::Test {
 protected:
  // Two elements: the sample value, then a null.
  std::vector<unsigned char> Pair(const NullCase& c) {
    std::vector<unsigned char> memory(2 * c.memLen, 0xAA);
    mgr.RowGet(c.id)->Constructor(memory.data(), 2, 0);
    std::memcpy(memory.data(), c.value.data(), c.width);
    memory[c.width] = 0;  // the flag stands behind the value
    return memory;
  }
  NxTypeMgr mgr;
};

TEST_F(NullRows, LayoutInEveryFormat) {
  for (const NullCase& c : Cases()) {
    SCOPED_TRACE(mgr.RowGet(c.id)->name);
    EXPECT_EQ(mgr.MemLenGet(c.id), c.memLen);
    const uint32_t size = static_cast<uint32_t>(2 * (c.width + 1));
    EXPECT_EQ(mgr.RowGet(c.id)->NullSizeGet(2), size);
    EXPECT_EQ(mgr.DiskLenGet(c.id, nullptr, 2, 2, 8), size);
    EXPECT_EQ(mgr.DiskLenGetFromMemFile(c.id, nullptr, 1, 2), size);

    std::vector<unsigned char> memory = Pair(c);
    const std::string zeros(2 * c.width, '0');
    const struct {
      unsigned char format;
      std::string hex;
    } forms[] = {{2, "00" + std::string(c.msbFirst) + "01" + zeros},
                 {0x41, "00" + std::string(c.lsbFirst) + "01" + zeros},
                 {8, Hex(c.value.data(), c.width) + "00" + zeros + "01"}};  // flag behind
    for (const auto& form : forms) {
      std::vector<unsigned char> bytes(size + 1, 0xEE);
      ASSERT_EQ(mgr.Store(c.id, bytes.data(), memory.data(), form.format, 2), size);
      EXPECT_EQ(Hex(bytes.data(), size + 1), form.hex + "ee") << int(form.format);
      std::vector<unsigned char> back(2 * c.memLen, 0x55);
      ASSERT_EQ(mgr.Load(c.id, back.data(), bytes.data(), form.format, 2), size);
      EXPECT_EQ(Hex(back.data(), c.width + 1), Hex(memory.data(), c.width + 1));
      EXPECT_NE(mgr.IsNullValue(c.id, back.data() + c.memLen), 0);
      EXPECT_EQ(Hex(back.data() + c.memLen, c.width), zeros);
      if (form.format == 8) continue;  // Translate: memory to memory is a copy
      std::vector<unsigned char> translated(size);
      ASSERT_EQ(mgr.Translate(c.id, translated.data(), form.format, 64, memory.data(), 8, 0, 2),
                size);
      EXPECT_EQ(Hex(translated.data(), size), form.hex);
    }
    std::vector<unsigned char> copy(2 * c.memLen);
    EXPECT_EQ(mgr.Translate(c.id, copy.data(), 8, 0, memory.data(), 8, 0, 2), 2 * c.memLen);
  }
}

// Long arrays: the same bytes as their elements stored one at a time, and
// back again, in both byte orders and the packed form.
TEST_F(NullRows, LongArraysAreTheirElementsInARow) {
  for (const NullCase& c : Cases()) {
    SCOPED_TRACE(mgr.RowGet(c.id)->name);
    const uint32_t count = 300;
    const size_t disk = c.width + 1;
    std::vector<unsigned char> memory(count * c.memLen);
    mgr.RowGet(c.id)->Constructor(memory.data(), count, 0);
    for (uint32_t i = 0; i < count; ++i) {
      if (i % 7 == 3) continue;  // stays null
      unsigned char* element = memory.data() + i * c.memLen;
      for (size_t b = 0; b < c.width; ++b) element[b] = static_cast<unsigned char>(i * 31 + b);
      element[c.width] = 0;
    }
    for (unsigned char format : {1, 2, 8}) {
      std::vector<unsigned char> whole(count * disk), single(count * disk);
      ASSERT_EQ(mgr.Store(c.id, whole.data(), memory.data(), format, count), count * disk);
      for (uint32_t i = 0; i < count; ++i)
        mgr.Store(c.id, single.data() + i * disk, memory.data() + i * c.memLen, format, 1);
      ASSERT_EQ(Hex(whole.data(), whole.size()), Hex(single.data(), single.size()));
      std::vector<unsigned char> back(count * c.memLen, 0x77);
      ASSERT_EQ(mgr.Load(c.id, back.data(), whole.data(), format, count), count * disk);
      for (uint32_t i = 0; i < count; ++i)
        ASSERT_EQ(Hex(back.data() + i * c.memLen, disk), Hex(memory.data() + i * c.memLen, disk))
            << i;
    }
  }
}

TEST_F(NullRows, NullFromDiskNewAndDefault) {
  for (const NullCase& c : Cases()) {
    SCOPED_TRACE(mgr.RowGet(c.id)->name);
    // Only the flag byte 1 loads as null, and then the value is 0.
    std::vector<unsigned char> disk(c.width + 1, 7), element(c.memLen, 0);
    disk[0] = 1;
    mgr.Load(c.id, element.data(), disk.data(), 2, 1);
    EXPECT_NE(mgr.IsNullValue(c.id, element.data()), 0);
    EXPECT_EQ(Hex(element.data(), c.width), std::string(2 * c.width, '0'));
    disk[0] = 2;
    mgr.Load(c.id, element.data(), disk.data(), 2, 1);
    EXPECT_EQ(mgr.IsNullValue(c.id, element.data()), 0);
    EXPECT_EQ(Hex(element.data(), c.width), Hex(disk.data() + 1, c.width));
    EXPECT_EQ(mgr.SetNullValue(c.id, element.data()), 0);
    EXPECT_EQ(Hex(element.data(), c.width + 1), std::string(2 * c.width, '0') + "01");

    unsigned char* three = static_cast<unsigned char*>(mgr.Create(c.id, 3));
    uint32_t hidden;
    std::memcpy(&hidden, three - 4, 4);
    EXPECT_EQ(hidden, 3u);
    EXPECT_NE(mgr.IsNullValue(c.id, three + 2 * c.memLen), 0);
    mgr.Delete(c.id, three, 3);
    unsigned char* defaults = static_cast<unsigned char*>(mgr.DefaultValue(c.id, 2, 0));
    EXPECT_NE(mgr.IsNullValue(c.id, defaults + c.memLen), 0);
    mgr.Delete(c.id, defaults, 2);

    // Print and scan of null, and the carrier: a null element gives the null
    // string, and a null or missing string a null element.
    std::vector<unsigned char> memory = Pair(c);
    NxString shown("old");
    mgr.PrintToNxString(c.id, shown, memory.data() + c.memLen, "%x and more", 1);
    EXPECT_STREQ(shown.StrGet(), "{NULL}");
    for (const char* text : {"", "{NULL}", "{NULL}5"}) {
      std::vector<unsigned char> value = Pair(c);
      NxString input(text);
      EXPECT_EQ(mgr.ScanFromNxString(c.id, value.data(), input, nullptr, 1), value.data());
      EXPECT_NE(mgr.IsNullValue(c.id, value.data()), 0) << '"' << text << '"';
    }
    NxTypeConvertData* carrier = mgr.ConvertTo(c.id, memory.data(), 2);
    EXPECT_FALSE(carrier->GetString(0)->IsNullValue());
    EXPECT_TRUE(carrier->GetString(1)->IsNullValue());
    unsigned char* back = static_cast<unsigned char*>(mgr.ConvertFrom(c.id, carrier, 3));
    EXPECT_EQ(mgr.IsNullValue(c.id, back), 0);
    EXPECT_NE(mgr.IsNullValue(c.id, back + c.memLen), 0);
    EXPECT_NE(mgr.IsNullValue(c.id, back + 2 * c.memLen), 0);
    mgr.Delete(c.id, back, 3);
    delete carrier;
  }
  NxTypeMgr::SetNullPrintString(NxString("-"));
  NxNull_long value(5);
  NxString minus("-5");
  mgr.ScanFromNxString(NxTYPE_NxNull_long, &value, minus, nullptr, 1);
  EXPECT_NE(value.isNull, 0);
  NxString shown;
  mgr.PrintToNxString(NxTYPE_NxNull_long, shown, &value, nullptr, 1);
  EXPECT_STREQ(shown.StrGet(), "-");
  NxTypeMgr::SetNullPrintString(NxString("{NULL}"));
}

// ---------------------------------------------------------------------------
// Values through the text forms of each value type.

class NullText : public NullRows {
 protected:
  template <typename T>
  std::string Show(char id, NxNull<T> v, const char* format = nullptr, const char* start = "") {
    NxString result(start);
    mgr.PrintToNxString(id, result, &v, format, 1);
    return result.StrGet();
  }
  template <typename T>
  NxNull<T> Read(char id, const NxString& text, const char* format = nullptr) {
    NxNull<T> v;
    NxString input(text);
    mgr.ScanFromNxString(id, &v, input, format, 1);
    return v;
  }
  // To text and back through the carrier: "text -> value read back".
  template <typename T>
  std::string Carry(char id, T value) {
    NxNull<T> v(value);
    NxTypeConvertData* carrier = mgr.ConvertTo(id, &v, 1);
    std::string shown = carrier->GetString(0)->StrGet();
    NxNull<T>* back = static_cast<NxNull<T>*>(mgr.ConvertFrom(id, carrier, 1));
    shown += " -> " + Number(back->value);
    mgr.Delete(id, back, 1);
    delete carrier;
    return shown;
  }
  template <typename T>
  static std::string Number(const T& v) {
    if constexpr (std::is_same<T, NxInt64>::value) {
      return std::to_string(v.ToInt64());
    } else if constexpr (std::is_floating_point<T>::value) {
      char text[32];
      std::snprintf(text, sizeof text, "%.9g", static_cast<double>(v));
      return text;
    } else {
      return std::to_string(static_cast<long long>(v));
    }
  }
};

TEST_F(NullText, PrintAndScanFollowTheValueType) {
  EXPECT_EQ(Show<signed char>(NxTYPE_NxNull_char, 1), "\x01");  // no hexadecimal form
  EXPECT_EQ(Show<signed char>(NxTYPE_NxNull_char, -2, "%d"), "-2");
  EXPECT_EQ(Show<unsigned char>(NxTYPE_NxNull_uchar, 200, "%d"), "200");
  EXPECT_EQ(Show<uint16_t>(NxTYPE_NxNull_ushort, 40000, "%d"), "40000");
  EXPECT_EQ(Show<uint32_t>(NxTYPE_NxNull_ulong, 4000000000u), "4000000000");
  EXPECT_EQ(Show<float>(NxTYPE_NxNull_float, 1.5f), "1.500000");
  EXPECT_EQ(Show<double>(NxTYPE_NxNull_double, 8.0, "ldexp(%.17g,%d)"), "ldexp(0.5,4)");
  // NxInt64 appends to the result; a null replaces it.
  EXPECT_EQ(Show<NxInt64>(NxTYPE_NxNull_NxInt64, NxInt64(-255), "%x", "n="), "n=-0xff");
  EXPECT_EQ(Show<NxInt64>(NxTYPE_NxNull_NxInt64, NxNull<NxInt64>(), "%x", "n="), "{NULL}");

  EXPECT_EQ(Read<signed char>(NxTYPE_NxNull_char, "A").value, 65);
  EXPECT_EQ(Read<unsigned char>(NxTYPE_NxNull_uchar, "0xC8").value, 200);
  EXPECT_EQ(Read<uint32_t>(NxTYPE_NxNull_ulong, "4000000000").value, 4000000000u);
  EXPECT_EQ(Read<double>(NxTYPE_NxNull_double, "ldexp(0.5,4)", "ldexp(%lf,%d)").value, 8.0);
  EXPECT_EQ(Read<NxInt64>(NxTYPE_NxNull_NxInt64, "077", "%d").value.ToInt64(), -1);
  const unsigned short wide[] = {'4', '2', 0};
  EXPECT_EQ(Read<int32_t>(NxTYPE_NxNull_long, NxString(wide)).value, 42);
  // Text that holds no number still makes the element not null.
  EXPECT_EQ(Read<int16_t>(NxTYPE_NxNull_short, "abc").isNull, 0);
}

TEST_F(NullText, CarrierTextFollowsTheValueType) {
  // char and unsigned short go out as a character and come back as a number.
  EXPECT_EQ(Carry<signed char>(NxTYPE_NxNull_char, 65), "A -> 0");
  EXPECT_EQ(Carry<uint16_t>(NxTYPE_NxNull_ushort, 66), "B -> 0");
  EXPECT_EQ(Carry<unsigned char>(NxTYPE_NxNull_uchar, 200), "200 -> 200");
  EXPECT_EQ(Carry<int16_t>(NxTYPE_NxNull_short, -300), "-300 -> -300");
  EXPECT_EQ(Carry<uint32_t>(NxTYPE_NxNull_unsigned, 4000000000u), "-294967296 -> 4000000000");
  // unsigned long goes out unsigned and comes back through a 32-bit signed
  // reading, which saturates.
  EXPECT_EQ(Carry<uint32_t>(NxTYPE_NxNull_ulong, 4000000000u), "4000000000 -> 2147483647");
  EXPECT_EQ(Carry<int32_t>(NxTYPE_NxNull_long, -7), "-7 -> -7");
  EXPECT_EQ(Carry<float>(NxTYPE_NxNull_float, 1.5f), "1.5 -> 1.5");
  EXPECT_EQ(Carry<double>(NxTYPE_NxNull_double, 0.1), "0.1 -> 0.1");
  EXPECT_EQ(Carry<NxInt64>(NxTYPE_NxNull_NxInt64, NxInt64(INT64_MIN)),
            "-9223372036854775808 -> -9223372036854775808");
}

}  // namespace
