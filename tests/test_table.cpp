// The whole table at once: every row but `illegal` compares, estimates and
// hashes with functions of its own, and a value compares equal to itself and
// hashes alike in memory form and in disk form, wherever the rows promise it.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using Bytes = std::vector<unsigned char>;

// Rows whose memory and disk hashes differ by design: the standard times
// hash their zone-adjusted memory form but their stored bytes on disk, the
// identifiers hash disk words as they stand (so only format 1 agrees), and a
// seal hashes its most-significant-first bytes as they stand (so only format
// 2 agrees).
bool HashesAgree(char id, unsigned char format) {
  switch (id) {
    case NxTYPE_d_Time:
    case NxTYPE_d_Timestamp:
      return false;
    case NxTYPE_NxObjId:
    case NxTYPE_NxClassId:
    case NxTYPE_NxRef:
      return format == 1;
    case NxTYPE_NxSeal:
      return format == 2;
    default:
      return true;
  }
}

const float kNumber = 1.5f;
const double kWideNumber = 1.5;

// A memory element of row `id` made from random bytes: fixed rows read the
// bytes as a disk image through their own Load (so every value is one the row
// can hold), variable rows get a value of their class.
void RandomValue(NxTypeMgr& mgr, char id, void* element, std::mt19937& random) {
  std::uniform_int_distribution<int> byte(0, 255);
  switch (id) {
    case NxTYPE_NxString:
    case NxTYPE_NxIString:
    case NxTYPE_NxCaseIString: {
      std::string text;
      const int length = byte(random) % 12;
      for (int i = 0; i < length; ++i) text += static_cast<char>('a' + byte(random) % 26);
      NxString s(text.c_str());
      if (id == NxTYPE_NxString) {
        *static_cast<NxString*>(element) = s;
      } else {
        // The legacy strings come from a text record through their Translate.
        unsigned char record[64];
        const uint32_t n = mgr.Store(NxTYPE_NxString, record, &s, 1, 1);
        mgr.Translate(id, element, 8, 0, record, 1, n, 1);
      }
      return;
    }
    case NxTYPE_NxBlob: {
      Bytes bytes(static_cast<size_t>(byte(random) % 9));
      for (unsigned char& b : bytes) b = static_cast<unsigned char>(byte(random));
      *static_cast<NxBlob*>(element) = NxBlob(bytes.data(), static_cast<int32_t>(bytes.size()));
      return;
    }
    default: {
      Bytes disk(mgr.DiskLenGet(id, nullptr, 1, 1, 8));
      for (unsigned char& b : disk) b = static_cast<unsigned char>(byte(random));
      mgr.Load(id, element, disk.data(), 1, 1);
      // A NaN orders before everything, itself included: the float rows
      // take a number instead.
      if (id == NxTYPE_float || id == NxTYPE_d_Interval || id == NxTYPE_NxNull_float) {
        float f;
        std::memcpy(&f, element, sizeof f);
        if (std::isnan(f)) std::memcpy(element, &kNumber, sizeof kNumber);
      } else if (id == NxTYPE_double || id == NxTYPE_NxNull_double) {
        double d;
        std::memcpy(&d, element, sizeof d);
        if (std::isnan(d)) std::memcpy(element, &kWideNumber, sizeof kWideNumber);
      }
    }
  }
}

TEST(WholeTable, EveryRowComparesEstimatesAndHashesWithItsOwnFunctions) {
  NxTypeMgr mgr;
  const NxTypeDesc* illegal = NxTypeMgr::IllegalRowGet();
  for (char id = 0; id < NxTYPE_illegal; ++id) {
    const NxTypeDesc* row = mgr.RowGet(id);
    EXPECT_NE(illegal->Compare, row->Compare) << row->name;
    EXPECT_NE(illegal->EvalAndBound, row->EvalAndBound) << row->name;
    EXPECT_NE(illegal->Hash, row->Hash) << row->name;
  }
  NxTypeMgr old(0);
  const NxTypeDesc* oldString = old.RowGet(NxTYPE_NxString);
  EXPECT_NE(mgr.RowGet(NxTYPE_NxString), oldString);
  EXPECT_NE(illegal->Compare, oldString->Compare);
  EXPECT_NE(illegal->EvalAndBound, oldString->EvalAndBound);
  EXPECT_NE(illegal->Hash, oldString->Hash);
}

TEST(WholeTable, AValueEqualsItselfInEveryFormAndHashesAlikeWhereRowsPromise) {
  NxTypeMgr mgr;
  std::mt19937 random(20261124);
  for (char id = 0; id < NxTYPE_illegal; ++id) {
    const char* name = mgr.NameGet(id, nullptr);
    for (int round = 0; round < 200; ++round) {
      const uint32_t count = 1 + static_cast<uint32_t>(round % 3);
      void* values = mgr.Create(id, count);
      ASSERT_NE(nullptr, values) << name;
      for (uint32_t i = 0; i < count; ++i)
        RandomValue(mgr, id, mgr.GetArrayElement(id, values, i, count), random);
      int status = -1;
      EXPECT_EQ(0, mgr.Cmp(id, 0, values, 0, values, NxCMP_NO_WILDCARDS, count, 8, status))
          << name;
      EXPECT_EQ(0, status) << name;
      const uint32_t memoryHash = mgr.Hash(id, 0, values, count, 8, status);
      for (unsigned char format : {1, 2}) {
        const uint32_t size = mgr.DiskLenGet(id, values, format, count, 8);
        Bytes disk(size + 8, 0);
        const uint32_t written = mgr.Store(id, disk.data(), values, format, count);
        EXPECT_EQ(size, written) << name;
        EXPECT_EQ(0, mgr.Cmp(id, written, disk.data(), written, disk.data(), NxCMP_NO_WILDCARDS,
                             count, format, status))
            << name << " format " << int(format);
        EXPECT_EQ(0, status) << name;
        if (HashesAgree(id, format)) {
          EXPECT_EQ(memoryHash, mgr.Hash(id, 0, disk.data(), count, format, status))
              << name << " format " << int(format) << " round " << round;
        }
      }
      mgr.Delete(id, values, count);
    }
  }
}

}  // namespace
