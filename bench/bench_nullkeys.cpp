// Hashing and range evaluation of the null-capable rows beside their plain
// twins: "NxNull_long" against "long", in disk form (format 1), one key and
// arrays of 64 elements with every fourth one null.  The null-capable rows
// read the elements through their Load slot (on disk a block at a time) and
// hash each number with the base row, which is what the difference measures.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include <nxtm/nxtm.h>

#include "bench_support.h"

namespace {

struct Keys {
  std::vector<unsigned char> plain, nullable;
};

// `count` numbers 0, 7, 14, ... in disk form, plain and null-capable.
Keys MakeKeys(uint32_t count) {
  std::vector<int32_t> numbers(count);
  std::vector<NxNull_long> elements(count);
  for (uint32_t i = 0; i < count; ++i) {
    numbers[i] = static_cast<int32_t>(7 * i);
    if (i % 4 != 3) elements[i] = NxNull_long(numbers[i]);
  }
  NxTypeMgr mgr;
  Keys keys{std::vector<unsigned char>(4 * count), std::vector<unsigned char>(5 * count)};
  mgr.Store(NxTYPE_long, keys.plain.data(), numbers.data(), 1, count);
  mgr.Store(NxTYPE_NxNull_long, keys.nullable.data(), elements.data(), 1, count);
  return keys;
}

void Hash(benchmark::State& state, char id, bool nullable) {
  const uint32_t count = static_cast<uint32_t>(state.range(0));
  Keys keys = MakeKeys(count);
  unsigned char* value = nullable ? keys.nullable.data() : keys.plain.data();
  NxTypeMgr mgr;
  int status = 0;
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    benchmark::DoNotOptimize(id);
    benchmark::DoNotOptimize(mgr.Hash(id, 0, value, count, 1, status));
  }
  state.SetItemsProcessed(state.iterations() * count);
}

void BM_Hash_Long(benchmark::State& state) {
  Hash(state, NxTYPE_long, false);
}
void BM_Hash_NullLong(benchmark::State& state) {
  Hash(state, NxTYPE_NxNull_long, true);
}
BENCHMARK(BM_Hash_Long)->Arg(1)->Arg(64);
BENCHMARK(BM_Hash_NullLong)->Arg(1)->Arg(64);

// Bounds 7 and 140, value 70, greater or equal; no narrowed range.
void Estimate(benchmark::State& state, char id, bool nullable) {
  Keys keys = MakeKeys(21);
  const size_t width = nullable ? 5 : 4;
  unsigned char* base = nullable ? keys.nullable.data() : keys.plain.data();
  NxIdxBounds bounds{base + width, base + 20 * width, static_cast<unsigned char>(width),
                     static_cast<unsigned char>(width)};
  NxTypeMgr mgr;
  unsigned short op = 5;
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    benchmark::DoNotOptimize(id);
    benchmark::DoNotOptimize(
        mgr.EvalAndBound(id, &bounds, op, base + 10 * width, 1, 1, nullptr, nullptr));
  }
}

void BM_EvalAndBound_Long(benchmark::State& state) {
  Estimate(state, NxTYPE_long, false);
}
void BM_EvalAndBound_NullLong(benchmark::State& state) {
  Estimate(state, NxTYPE_NxNull_long, true);
}
BENCHMARK(BM_EvalAndBound_Long);
BENCHMARK(BM_EvalAndBound_NullLong);

}  // namespace
