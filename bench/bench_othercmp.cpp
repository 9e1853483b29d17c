// The comparators of the class rows on one disk key each, against what a
// caller would do without them: Load both keys into memory elements and
// compare those with the class's own operators.  Arguments: the row (an
// index into kRows) and the format (1 or 2).
//
// Run interleaved and repeated, and compare each pair of figures as a ratio:
//   bench_othercmp --benchmark_repetitions=5 --benchmark_enable_random_interleaving=true
#include <nxtm/nxtm.h>

#include "bench_support.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <tuple>
#include <vector>

namespace {

// A row, two values that differ late in the key (so that the comparator
// reads most of it), and the order that the caller would compute after a
// Load.
struct Row {
  const char* name;
  char id;
  void (*make)(void* a, void* b);  // fills two constructed memory elements
  int (*native)(const void* a, const void* b);
};

template <typename T>
const T& As(const void* p) {
  return *static_cast<const T*>(p);
}

template <typename T>
T& Ref(void* p) {
  return *static_cast<T*>(p);
}

template <typename T>
int Order(const T& a, const T& b) {
  return a < b ? -1 : (b < a ? 1 : 0);
}

const Row kRows[] = {
    {"NxDate", NxTYPE_NxDate,
     [](void* a, void* b) {
       Ref<NxDate>(a) = NxDate(2004, 3, 15);
       Ref<NxDate>(b) = NxDate(2004, 3, 16);
     },
     [](const void* a, const void* b) { return As<NxDate>(a) != As<NxDate>(b); }},
    {"NxDateTime", NxTYPE_NxDateTime,
     [](void* a, void* b) {
       NxDateTime& x = Ref<NxDateTime>(a);
       NxDateTime& y = Ref<NxDateTime>(b);
       x.date = y.date = NxDate(2004, 3, 15);
       x.time = NxTime(3600);
       y.time = NxTime(3601);
     },
     [](const void* a, const void* b) { return As<NxDateTime>(a) != As<NxDateTime>(b); }},
    {"d_Timestamp", NxTYPE_d_Timestamp,
     [](void* a, void* b) {
       const d_Date day(NxDate(2004, 3, 15));
       Ref<d_Timestamp>(a) = d_Timestamp(day, d_Time(10, 0, 1.0f, 0, 0));
       Ref<d_Timestamp>(b) = d_Timestamp(day, d_Time(10, 0, 2.0f, 0, 0));
     },
     [](const void* a, const void* b) { return As<d_Timestamp>(a) != As<d_Timestamp>(b); }},
    {"NxInt64", NxTYPE_NxInt64,
     [](void* a, void* b) {
       const_cast<NxInt64&>(As<NxInt64>(a)) = NxInt64(0x123456789ll);
       const_cast<NxInt64&>(As<NxInt64>(b)) = NxInt64(0x12345678All);
     },
     [](const void* a, const void* b) { return Order(As<NxInt64>(a), As<NxInt64>(b)); }},
    {"NxBoolean", NxTYPE_NxBoolean,
     [](void* a, void* b) {
       Ref<NxBoolean>(a) = NxBoolean(0L);
       Ref<NxBoolean>(b) = NxBoolean(1L);
     },
     [](const void* a, const void* b) { return Order(As<NxBoolean>(a), As<NxBoolean>(b)); }},
    {"NxNull_long", NxTYPE_NxNull_long,
     [](void* a, void* b) {
       Ref<NxNull_long>(a) = NxNull_long(1000);
       Ref<NxNull_long>(b) = NxNull_long(1001);
     },
     [](const void* a, const void* b) {
       const NxNull_long& x = As<NxNull_long>(a);
       const NxNull_long& y = As<NxNull_long>(b);
       if (x.isNull || y.isNull) return Order(y.isNull != 0, x.isNull != 0);
       return Order(x.value, y.value);
     }},
    {"NxRef", NxTYPE_NxRef,
     [](void* a, void* b) {
       Ref<NxRef>(a) = NxRef(NxObjId(1, 2, 3), 4, NxClassId(5, 6));
       Ref<NxRef>(b) = NxRef(NxObjId(1, 3, 3), 4, NxClassId(5, 6));
     },
     [](const void* a, const void* b) {
       const NxRef& x = As<NxRef>(a);
       const NxRef& y = As<NxRef>(b);
       return Order(std::make_tuple(x.database, x.objId.high, x.objId.low),
                    std::make_tuple(y.database, y.objId.high, y.objId.low));
     }},
    {"NxBlob(16)", NxTYPE_NxBlob,
     [](void* a, void* b) {
       unsigned char bytes[16] = {};
       Ref<NxBlob>(a).SetTo(bytes, 16);
       bytes[15] = 1;
       Ref<NxBlob>(b).SetTo(bytes, 16);
     },
     [](const void* a, const void* b) { return As<NxBlob>(a) != As<NxBlob>(b); }},
};

// Two keys of the row in the format, and memory elements to load them into.
class Keys {
 public:
  Keys(const Row& row, unsigned char format) : mgr_(), row_(row) {
    a_ = mgr_.Create(row.id, 1);
    b_ = mgr_.Create(row.id, 1);
    row.make(a_, b_);
    diskA_.resize(mgr_.DiskLenGet(row.id, a_, format, 1, 8));
    diskB_.resize(mgr_.DiskLenGet(row.id, b_, format, 1, 8));
    mgr_.Store(row.id, diskA_.data(), a_, format, 1);
    mgr_.Store(row.id, diskB_.data(), b_, format, 1);
  }
  ~Keys() {
    mgr_.Delete(row_.id, a_, 1);
    mgr_.Delete(row_.id, b_, 1);
  }
  NxTypeMgr mgr_;
  const Row& row_;
  void* a_;
  void* b_;
  std::vector<unsigned char> diskA_, diskB_;
};

void BM_DiskCompare(benchmark::State& state) {
  const Row& row = kRows[state.range(0)];
  const unsigned char format = static_cast<unsigned char>(state.range(1));
  Keys keys(row, format);
  NxTypeCmpFunc compare = keys.mgr_.CmpFuncPtrGet(row.id);
  const uint32_t length1 = static_cast<uint32_t>(keys.diskA_.size());
  const uint32_t length2 = static_cast<uint32_t>(keys.diskB_.size());
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    int status = 0;
    benchmark::DoNotOptimize(
        compare(format, length1, keys.diskA_.data(), length2, keys.diskB_.data(), 0, 1, status));
    benchmark::ClobberMemory();
  }
  state.SetLabel(row.name);
}

void BM_LoadAndNative(benchmark::State& state) {
  const Row& row = kRows[state.range(0)];
  const unsigned char format = static_cast<unsigned char>(state.range(1));
  Keys keys(row, format);
  NxLoadFunc load = keys.mgr_.LoadPtrGet(row.id);
  void* x = keys.mgr_.Create(row.id, 1);
  void* y = keys.mgr_.Create(row.id, 1);
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    load(x, keys.diskA_.data(), format, 1);
    load(y, keys.diskB_.data(), format, 1);
    benchmark::DoNotOptimize(row.native(x, y));
    benchmark::ClobberMemory();
  }
  keys.mgr_.Delete(row.id, x, 1);
  keys.mgr_.Delete(row.id, y, 1);
  state.SetLabel(row.name);
}

void Rows(benchmark::internal::Benchmark* b) {
  for (int64_t row = 0; row < static_cast<int64_t>(sizeof kRows / sizeof kRows[0]); ++row)
    for (int64_t format : {1, 2}) b->Args({row, format});
}

BENCHMARK(BM_DiskCompare)->Apply(Rows);
BENCHMARK(BM_LoadAndNative)->Apply(Rows);

}  // namespace
