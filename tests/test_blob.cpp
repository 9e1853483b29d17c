// Tests of NxBlob: the null and the empty blob, the editing members and
// their edges, the buffer reuse of SetTo, the row's disk form written out by
// hand in both byte orders, and BlobCompare on memory and disk forms,
// whole and cut, against std::vector's lexicographic order.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using nxtest::Hex;
using Bytes = std::vector<unsigned char>;

Bytes Of(const NxBlob& blob) {
  NxBlob& b = const_cast<NxBlob&>(blob);
  const int32_t n = b.Length();
  if (n == 0) return {};
  const unsigned char* p = reinterpret_cast<const unsigned char*>(b.Seek(0, n));
  return Bytes(p, p + n);
}

NxBlob Make(const Bytes& bytes) {
  return NxBlob(bytes.data(), static_cast<int32_t>(bytes.size()));
}

NxBlob Null() {
  NxBlob b;
  b.SetNullValue();
  return b;
}

// ---------------------------------------------------------------------------
// The class.

TEST(NxBlob, NullAndEmptyDifferOnlyInIsNullValue) {
  NxBlob empty;
  const NxBlob null = Null();
  EXPECT_FALSE(empty.IsNullValue());
  EXPECT_TRUE(null.IsNullValue());
  EXPECT_EQ(0, null.Length());
  EXPECT_EQ(0, empty == null);
  EXPECT_EQ(1, null == Null());
  EXPECT_EQ(-2, null != empty);
  EXPECT_EQ(2, empty != null);
  EXPECT_TRUE(NxBlob(null).IsNullValue());
  // Copies own their bytes; assignment moves between null and not null.
  NxBlob a = Make({1, 2, 3}), c = Null();
  c = a;
  *c.Seek(0, 1) = 9;
  EXPECT_EQ((Bytes{1, 2, 3}), Of(a));
  c = null;
  EXPECT_TRUE(c.IsNullValue());
}

TEST(NxBlob, SetToReusesABufferUpTo128BytesTooLong) {
  NxBlob hundred(Bytes(100, 1).data(), 100);
  const char* before = hundred.Seek(0, 1);
  const Bytes ten(10, 5);
  hundred.SetTo(ten.data(), 10);
  EXPECT_EQ(before, hundred.Seek(0, 1));
  EXPECT_EQ(ten, Of(hundred));
  NxBlob twoHundred(Bytes(200, 1).data(), 200);
  before = twoHundred.Seek(0, 1);
  twoHundred.SetTo(ten.data(), 10);
  EXPECT_NE(before, twoHundred.Seek(0, 1));
  // Bytes from the blob itself, which a new buffer must not lose.
  NxBlob self = Make({1, 2, 3, 4});
  self.SetTo(self.Seek(1, 3), 3);
  EXPECT_EQ((Bytes{2, 3, 4}), Of(self));
  NxBlob big(Bytes(200, 3).data(), 200);
  big.SetTo(big.Seek(1, 10), 10);  // more than 128 too long: a new buffer
  EXPECT_EQ((Bytes(10, 3)), Of(big));
}

TEST(NxBlob, ResizeExpandAndAppendKeepTheFront) {
  NxBlob b = Make({1, 2, 3, 4, 5});
  b.Resize(2);
  EXPECT_EQ((Bytes{1, 2}), Of(b));
  b.Resize(0);
  EXPECT_FALSE(b.IsNullValue());
  EXPECT_EQ(0, b.Length());
  NxBlob null = Null();
  null.Resize(0xFFFFFFFFu);  // negative as a 32-bit number: 0
  EXPECT_FALSE(null.IsNullValue());
  EXPECT_EQ(0, null.Length());

  NxBlob e = Make({1, 2, 3});
  e.Expand(5);
  e.Expand(2);
  EXPECT_EQ((Bytes{1, 2}), Of(e));

  NxBlob a = Null();
  a.Append(nullptr, 0);
  EXPECT_TRUE(a.IsNullValue());
  a.Append(Bytes{7, 8, 9}.data(), 3);
  EXPECT_EQ((Bytes{7, 8, 9}), Of(a));
  a += a;
  EXPECT_EQ((Bytes{7, 8, 9, 7, 8, 9}), Of(a));
  NxBlob target = Null();
  target += NxBlob();  // a source of length 0 leaves null alone
  EXPECT_TRUE(target.IsNullValue());
}

TEST(NxBlob, PositionsBeyondTheEndDoNothing) {
  NxBlob b = Make({1, 2, 3, 4, 5});
  EXPECT_EQ(nullptr, b.Seek(5, 0));
  EXPECT_EQ(nullptr, b.Seek(5, 1));
  ASSERT_NE(nullptr, b.Seek(4, 1));
  EXPECT_EQ(5, *b.Seek(4, 1));

  NxBlob cut = b;
  cut.Cut(6, 1).Cut(5, 1);
  EXPECT_EQ(Of(b), Of(cut));
  cut.Cut(1, 2);
  EXPECT_EQ((Bytes{1, 4, 5}), Of(cut));
  cut.Cut(2, 100);
  EXPECT_EQ((Bytes{1, 4}), Of(cut));
  cut.Cut(0, 100);
  EXPECT_FALSE(cut.IsNullValue());
  EXPECT_EQ(0, cut.Length());

  EXPECT_EQ((Bytes{3, 4, 5}), Of(b.CopyFrom(2, 100)));
  EXPECT_FALSE(b.CopyFrom(6, 1).IsNullValue());  // nothing to copy: empty
  EXPECT_EQ(0, b.CopyFrom(6, 1).Length());

  NxBlob into = b;
  into.CopyTo(Make({9, 9, 9}), 3, 3);  // cut at the end: two bytes
  EXPECT_EQ((Bytes{1, 2, 3, 9, 9}), Of(into));
  into.CopyTo(Make({8}), 0, 4);  // cut at the source's end
  EXPECT_EQ((Bytes{8, 2, 3, 9, 9}), Of(into));
}

TEST(NxBlob, SearchAndDestroy) {
  const NxBlob b = Make({1, 2, 2});
  EXPECT_EQ(1, b.Search(Make({2, 2})));
  EXPECT_EQ(65535, b.Search(Make({3})));
  EXPECT_EQ(65535, b.Search(Make({1, 2, 2, 1})));
  EXPECT_EQ(0, b.Search(NxBlob()));

  NxBlob source = Make({4, 5, 6});
  const char* bytes = source.Seek(0, 3);
  NxBlob target = Make({1});
  target.Destroy(source);
  EXPECT_EQ(bytes, target.Seek(0, 3));  // taken over, not copied
  EXPECT_FALSE(source.IsNullValue());
  EXPECT_EQ(0, source.Length());
  NxBlob null = Null();
  target.Destroy(null);
  EXPECT_TRUE(target.IsNullValue());
  EXPECT_TRUE(null.IsNullValue());
}

// ---------------------------------------------------------------------------
// The row.

class BlobRow : public ::testing::Test {
 protected:
  NxTypeMgr mgr;
  NxBlob* Blobs(uint32_t count) { return static_cast<NxBlob*>(mgr.Create(NxTYPE_NxBlob, count)); }
};

TEST_F(BlobRow, StoreWritesOneTotalWordAndALengthWordPerBlob) {
  NxBlob* two = Blobs(2);
  two[0] = Make({0xAA, 0xBB});
  two[1].SetNullValue();
  EXPECT_EQ(14u, mgr.DiskLenGet(NxTYPE_NxBlob, two, 1, 2, 8));
  unsigned char disk[14];
  EXPECT_EQ(14u, mgr.Store(NxTYPE_NxBlob, disk, two, 1, 2));
  EXPECT_EQ("0a00000002000000aabbffffffff", Hex(disk, 14));
  EXPECT_EQ(14u, mgr.Store(NxTYPE_NxBlob, disk, two, 2, 2));
  EXPECT_EQ("0000000a00000002aabbffffffff", Hex(disk, 14));
  EXPECT_EQ(14u, mgr.DiskLenGet(NxTYPE_NxBlob, disk, 2, 2, 2));

  NxBlob* back = Blobs(2);
  EXPECT_EQ(14u, mgr.Load(NxTYPE_NxBlob, back, disk, 2, 2));
  EXPECT_EQ((Bytes{0xAA, 0xBB}), Of(back[0]));
  EXPECT_TRUE(back[1].IsNullValue());
  mgr.Delete(NxTYPE_NxBlob, two, 2);
  mgr.Delete(NxTYPE_NxBlob, back, 2);

  // One empty blob: a length of 0, and an empty blob again on the way back.
  NxBlob* one = Blobs(1);
  EXPECT_EQ(8u, mgr.Store(NxTYPE_NxBlob, disk, one, 1, 1));
  EXPECT_EQ("0400000000000000", Hex(disk, 8));
  one->SetNullValue();
  EXPECT_EQ(8u, mgr.Load(NxTYPE_NxBlob, one, disk, 1, 1));
  EXPECT_FALSE(one->IsNullValue());
  mgr.Delete(NxTYPE_NxBlob, one, 1);
  EXPECT_EQ(4u, mgr.RowGet(NxTYPE_NxBlob)->NullSizeGet(3));
}

TEST_F(BlobRow, DiskSizesComeFromTheTotalWord) {
  const unsigned char record[] = {0x00, 0x00, 0x00, 0x06, 0, 0, 0, 2, 1, 2};
  EXPECT_EQ(10u, mgr.DiskLenGet(NxTYPE_NxBlob, record, 2, 1, 2));
  MemFile file(record, sizeof record);
  EXPECT_EQ(10u, mgr.DiskLenGetFromMemFile(NxTYPE_NxBlob, &file, 2, 1));
  EXPECT_EQ(0, file.position);
  // A total word of -1: a record of one word, whose blobs load as null.
  const unsigned char nulls[] = {0xFF, 0xFF, 0xFF, 0xFF};
  EXPECT_EQ(4u, mgr.DiskLenGet(NxTYPE_NxBlob, nulls, 1, 1, 1));
  MemFile oneWord(nulls, 4);
  EXPECT_EQ(4u, mgr.DiskLenGetFromMemFile(NxTYPE_NxBlob, &oneWord, 1, 1));
  NxBlob* two = Blobs(2);
  EXPECT_EQ(4u, mgr.Load(NxTYPE_NxBlob, two, nulls, 1, 2));
  EXPECT_TRUE(two[0].IsNullValue() && two[1].IsNullValue());
  mgr.Delete(NxTYPE_NxBlob, two, 2);
}

TEST_F(BlobRow, PrintShowsTheLengthScanKnowsOnlyNull) {
  NxBlob b = Make({1, 2, 3});
  NxString text;
  mgr.PrintToNxString(NxTYPE_NxBlob, text, &b, nullptr, 1);
  EXPECT_STREQ("[BLOB,len=3]", text.StrGet());
  NxBlob null = Null();
  NxString nullText("old");
  mgr.PrintToNxString(NxTYPE_NxBlob, nullText, &null, nullptr, 1);
  EXPECT_STREQ(NxTypeMgr::GetNullPrintString().StrGet(), nullText.StrGet());

  NxString nullish("{NULL} and more");
  mgr.ScanFromNxString(NxTYPE_NxBlob, &b, nullish, nullptr, 1);
  EXPECT_TRUE(b.IsNullValue());
}

TEST_F(BlobRow, BytesDoNotTravelAsText) {
  NxBlob values[2] = {Make({1, 2}), Null()};
  NxTypeConvertData* data = mgr.ConvertTo(NxTYPE_NxBlob, values, 2);
  ASSERT_NE(nullptr, data);
  EXPECT_EQ(0, data->GetString(0)->Len());
  EXPECT_TRUE(data->GetString(1)->IsNullValue());
  NxBlob* back = static_cast<NxBlob*>(mgr.ConvertFrom(NxTYPE_NxBlob, data, 3));
  EXPECT_FALSE(back[0].IsNullValue());                          // an empty blob
  EXPECT_TRUE(back[1].IsNullValue() && back[2].IsNullValue());  // null, missing
  mgr.Delete(NxTYPE_NxBlob, back, 3);
  delete data;
}

// ---------------------------------------------------------------------------
// BlobCompare.

// A disk record of blobs (a null pointer stands for a null blob), written
// out here: total word, then length word and bytes for each.
Bytes Record(const std::vector<const Bytes*>& blobs, unsigned char format) {
  auto word = [format](Bytes& out, uint32_t v) {
    for (int i = 0; i < 4; ++i) {
      const int shift = format == 2 ? 24 - 8 * i : 8 * i;
      out.push_back(static_cast<unsigned char>(v >> shift));
    }
  };
  Bytes body;
  for (const Bytes* b : blobs) {
    word(body, b == nullptr ? 0xFFFFFFFFu : static_cast<uint32_t>(b->size()));
    if (b != nullptr) body.insert(body.end(), b->begin(), b->end());
  }
  Bytes out;
  word(out, static_cast<uint32_t>(body.size()));
  out.insert(out.end(), body.begin(), body.end());
  return out;
}

struct Outcome {
  int32_t value;
  int status;
};

// The comparison of the first `length` bytes of each record (0: whole),
// each in a heap buffer of exactly that size, so that a read past the
// stated bytes shows under the address sanitizer.
Outcome CompareRecords(const Bytes& r1, const Bytes& r2, unsigned char format, uint32_t count,
                       uint32_t length1 = 0, uint32_t length2 = 0) {
  std::vector<unsigned char> a(r1.begin(), r1.begin() + (length1 ? length1 : r1.size()));
  std::vector<unsigned char> b(r2.begin(), r2.begin() + (length2 ? length2 : r2.size()));
  Outcome o{0, -1};
  o.value = BlobCompare(format, length1, a.data(), length2, b.data(), 0, count, o.status);
  return o;
}

TEST_F(BlobRow, HashesHoldLengthsAndEstimatesTheWholeRange) {
  // Memory and both disk forms agree; content does not enter, lengths do.
  NxBlob* blobs = Blobs(3);
  blobs[0] = Make({1, 2, 3});
  blobs[1] = Make({9, 9, 9, 9, 9});
  blobs[2].SetNullValue();
  int status = 7;
  const uint32_t memory = mgr.Hash(NxTYPE_NxBlob, 0, blobs, 3, 8, status);
  EXPECT_EQ(0, status);
  EXPECT_EQ((3u ^ 5u) * 1103515245u, memory);
  for (unsigned char format : {1, 2}) {
    unsigned char disk[64];
    const uint32_t written = mgr.Store(NxTYPE_NxBlob, disk, blobs, format, 3);
    EXPECT_EQ(memory, mgr.Hash(NxTYPE_NxBlob, 0, disk, 3, format, status)) << int(format);
    // A stated length that cuts the second blob's bytes: it counts what is left.
    EXPECT_EQ((3u ^ 2u) * 1103515245u, mgr.Hash(NxTYPE_NxBlob, 4 + 7 + 4 + 2, disk, 3, format, status));
    // ... and one that ends inside its length word stops the walk.
    EXPECT_EQ(3u * 1103515245u, mgr.Hash(NxTYPE_NxBlob, 4 + 7 + 2, disk, 3, format, status));
    EXPECT_LT(4u + 7u + 2u, written);
  }
  blobs[1] = Make({1, 1, 1, 1, 1});
  EXPECT_EQ(memory, mgr.Hash(NxTYPE_NxBlob, 0, blobs, 3, 8, status));
  EXPECT_EQ(0u, mgr.Hash(NxTYPE_NxBlob, 0, blobs, 0, 8, status));
  mgr.Delete(NxTYPE_NxBlob, blobs, 3);

  // No position on a number line: every estimate is the whole range, with
  // no argument read and nothing narrowed.
  unsigned short op = 1;
  NxIdxBounds narrowed{nullptr, nullptr, 0, 0};
  EXPECT_EQ(1.0f, mgr.EvalAndBound(NxTYPE_NxBlob, nullptr, op, nullptr, 2, 1, &narrowed, nullptr));
  EXPECT_EQ(nullptr, narrowed.low);
  EXPECT_EQ(nullptr, narrowed.high);
  EXPECT_EQ(1, op);
}

TEST(BlobCompare, ARecordOfTotalMinusOneReadsAsNullBlobs) {
  const Bytes nulls{0xFF, 0xFF, 0xFF, 0xFF}, empty;
  for (unsigned char format : {1, 2}) {
    EXPECT_EQ(-2, CompareRecords(nulls, Record({&empty}, format), format, 1).value);
    EXPECT_EQ(0, CompareRecords(nulls, Record({nullptr, nullptr}, format), format, 2).value);
  }
}

TEST(BlobCompare, CutKeysLetTheLengthWordsDecideAndNeverReadPastThem) {
  Bytes ten(10, 7), twelve(12, 7);
  const Bytes r10 = Record({&ten}, 1), r12 = Record({&twelve}, 1);
  // Cut to the first three bytes of each blob: the same bytes, so the
  // lengths decide; no cut is reported.
  Outcome o = CompareRecords(r10, r12, 1, 1, 11, 11);
  EXPECT_EQ(-1, o.value);
  EXPECT_EQ(0, o.status);
  // A cut behind a difference still sees it.
  twelve[1] = 6;
  EXPECT_EQ(1, CompareRecords(r10, Record({&twelve}, 1), 1, 1, 11, 11).value);
  // Cut inside the second length word, in the total word, or behind it.
  const Bytes a{1, 2}, b{1, 2};
  const Bytes two1 = Record({&a, &ten}, 1), two2 = Record({&b, &twelve}, 1);
  for (uint32_t cut : {4u, 9u, 10u, 11u, 12u, 13u, 15u}) {
    o = CompareRecords(two1, two2, 1, 2, cut, cut);
    EXPECT_EQ(0, o.status);
    EXPECT_LE(o.value, 0) << cut;
  }
  EXPECT_EQ(1, CompareRecords(two1, two2, 1, 2, 0, 16).value);
}

TEST(BlobCompare, LargeBlobsCompareToTheLastByte) {
  Bytes large(1 << 20, 0x5A), larger = large;
  larger.back() = 0x5B;
  EXPECT_EQ(-1, CompareRecords(Record({&large}, 2), Record({&larger}, 2), 2, 1).value);
}

// Random arrays of blobs of 0 to 3 bytes, some null: memory form, both disk
// forms and the vectors' own order agree (null first with -2 and 2).
TEST(BlobCompare, MemoryAndDiskFormsAgreeWithVectorOrder) {
  std::mt19937 rng(42);
  auto randomBlob = [&rng]() -> std::pair<bool, Bytes> {
    const bool null = rng() % 6 == 0;
    Bytes b(rng() % 4);
    for (auto& c : b) c = static_cast<unsigned char>(rng() % 3 == 0 ? 0x80 : rng() % 2);
    return {null, b};
  };
  for (int trial = 0; trial < 500; ++trial) {
    const uint32_t count = 1 + rng() % 3;
    std::vector<std::pair<bool, Bytes>> x, y;
    for (uint32_t i = 0; i < count; ++i) {
      x.push_back(randomBlob());
      y.push_back(trial % 3 == 0 && i + 1 < count ? x.back() : randomBlob());
    }
    int expected = 0;
    for (uint32_t i = 0; i < count && expected == 0; ++i) {
      if (x[i].first || y[i].first)
        expected = x[i].first == y[i].first ? 0 : (x[i].first ? -2 : 2);
      else if (x[i].second != y[i].second)
        expected = x[i].second < y[i].second ? -1 : 1;
    }
    std::vector<NxBlob> mx, my;
    std::vector<const Bytes*> px, py;
    for (uint32_t i = 0; i < count; ++i) {
      mx.push_back(x[i].first ? Null() : Make(x[i].second));
      my.push_back(y[i].first ? Null() : Make(y[i].second));
      px.push_back(x[i].first ? nullptr : &x[i].second);
      py.push_back(y[i].first ? nullptr : &y[i].second);
    }
    int status = -1;
    EXPECT_EQ(expected, BlobCompare(8, 0, mx.data(), 0, my.data(), 0, count, status));
    for (unsigned char format : {1, 2})
      EXPECT_EQ(expected,
                CompareRecords(Record(px, format), Record(py, format), format, count).value);
  }
}

}  // namespace
