// Key operations of the class rows beside the plain row of the same width:
// hashing 4096 dates and object ids against 4096 "long" keys, seal keys
// compared by the row against memcmp, and the estimate of a wild date
// against that of a "long".
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <nxtm/nxtm.h>

#include "bench_support.h"

namespace {

constexpr uint32_t kCount = 4096;

// `kCount` values of a row stored in `format`.
template <typename T, typename Make>
std::vector<unsigned char> Stored(char id, unsigned char format, Make make) {
  NxTypeMgr mgr;
  std::vector<T> values;
  for (uint32_t i = 0; i < kCount; ++i) values.push_back(make(i));
  std::vector<unsigned char> disk(mgr.DiskLenGet(id, nullptr, format, kCount, 8));
  mgr.Store(id, disk.data(), values.data(), format, kCount);
  return disk;
}

void HashRun(benchmark::State& state, char id, std::vector<unsigned char>& disk,
             unsigned char format) {
  NxTypeMgr mgr;
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    int status;
    benchmark::DoNotOptimize(mgr.Hash(id, 0, disk.data(), kCount, format, status));
  }
  state.SetItemsProcessed(state.iterations() * kCount);
}

void BM_Hash_Long(benchmark::State& state) {
  auto disk = Stored<int32_t>(NxTYPE_long, 2, [](uint32_t i) { return int32_t(i * 2654435761u); });
  HashRun(state, NxTYPE_long, disk, 2);
}
BENCHMARK(BM_Hash_Long);

void BM_Hash_NxDate(benchmark::State& state) {
  auto disk = Stored<NxDate>(NxTYPE_NxDate, 2, [](uint32_t i) { return NxDate(int32_t(2440000 + i)); });
  HashRun(state, NxTYPE_NxDate, disk, 2);
}
BENCHMARK(BM_Hash_NxDate);

void BM_Hash_NxObjId(benchmark::State& state) {
  auto disk =
      Stored<NxObjId>(NxTYPE_NxObjId, 2, [](uint32_t i) { return NxObjId(uint16_t(i >> 3), i * 7, i); });
  HashRun(state, NxTYPE_NxObjId, disk, 2);
}
BENCHMARK(BM_Hash_NxObjId);

// Pairs of seal keys that differ in the last byte: the row walks all six.
void BM_Compare_Seal(benchmark::State& state) {
  NxTypeMgr mgr;
  unsigned char a[6] = {1, 2, 3, 4, 5, 6}, b[6] = {1, 2, 3, 4, 5, 7};
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    int status;
    char id = NxTYPE_NxSeal;
    benchmark::DoNotOptimize(id);
    benchmark::DoNotOptimize(mgr.Cmp(id, 0, a, 0, b, 0, 1, 1, status));
  }
}
BENCHMARK(BM_Compare_Seal);

void BM_Compare_Memcmp(benchmark::State& state) {
  unsigned char a[6] = {1, 2, 3, 4, 5, 6}, b[6] = {1, 2, 3, 4, 5, 7};
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    benchmark::DoNotOptimize(a);
    benchmark::DoNotOptimize(std::memcmp(a, b, 6));
  }
}
BENCHMARK(BM_Compare_Memcmp);

void BM_EvalAndBound_WildDate(benchmark::State& state) {
  NxTypeMgr mgr;
  unsigned char low[4], high[4], value[4];
  const NxDate l(2000, 1, 1), h(2000, 12, 31), v(2000, 6, -1);
  mgr.Store(NxTYPE_NxDate, low, &l, 1, 1);
  mgr.Store(NxTYPE_NxDate, high, &h, 1, 1);
  mgr.Store(NxTYPE_NxDate, value, &v, 1, 1);
  NxIdxBounds bounds{low, high, 4, 4};
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    unsigned short op = 1;
    char id = NxTYPE_NxDate;
    benchmark::DoNotOptimize(id);
    benchmark::DoNotOptimize(mgr.EvalAndBound(id, &bounds, op, value, 1, 1, nullptr, nullptr));
  }
}
BENCHMARK(BM_EvalAndBound_WildDate);

void BM_EvalAndBound_LongReference(benchmark::State& state) {
  NxTypeMgr mgr;
  int32_t low = 10, high = 19, value = 14;
  NxIdxBounds bounds{&low, &high, 4, 4};
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    unsigned short op = 1;
    char id = NxTYPE_long;
    benchmark::DoNotOptimize(id);
    benchmark::DoNotOptimize(mgr.EvalAndBound(id, &bounds, op, &value, 1, 1, nullptr, nullptr));
  }
}
BENCHMARK(BM_EvalAndBound_LongReference);

}  // namespace
