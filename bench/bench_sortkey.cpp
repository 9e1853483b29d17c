// Sort keys of real names: the time to build one key, beside one NxStrCmp
// on the same names and beside ICU's sort keys, and sorting a list of names
// by keys against sorting it by NxStrCmp.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include <nxtm/nxtm.h>

#include "bench_support.h"

#ifdef NXTM_BENCH_HAVE_ICU
#include <unicode/ucol.h>
#endif

namespace {

using nxbench::Text;

// One key per iteration, into a buffer on the stack.
void BM_SortKey(benchmark::State& state, unsigned short cmpOp) {
  const auto& names = nxbench::NamesUtf16();
  size_t k = 0;
  size_t bytes = 0;
  unsigned char key[512];
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    const uint32_t n =
        NxStrSortKey(NxCS_UNICODE, NxLANG_NEUTRAL, Text(names[k]), cmpOp, 8, key, sizeof key);
    benchmark::DoNotOptimize(key);
    bytes += n;
    if (++k == names.size()) k = 0;
  }
  allocs.Stop();
  state.counters["key_bytes"] =
      benchmark::Counter(static_cast<double>(bytes) / static_cast<double>(state.iterations()));
}
BENCHMARK_CAPTURE(BM_SortKey, full, 0);
BENCHMARK_CAPTURE(BM_SortKey, ci_ai, NxCMP_IGNORE_CASE | NxCMP_IGNORE_ACCENTS);
BENCHMARK_CAPTURE(BM_SortKey, exact, NxCMP_EXACT);

// One comparison per iteration: each name against its neighbour.
void BM_StrCmp(benchmark::State& state, unsigned short cmpOp) {
  const auto& names = nxbench::NamesUtf16();
  size_t k = 0;
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    const size_t j = k + 1 == names.size() ? 0 : k + 1;
    benchmark::DoNotOptimize(NxStrCmp(
        NxCS_UNICODE, NxLANG_NEUTRAL, Text(names[k]), NxCS_UNICODE, NxLANG_NEUTRAL, Text(names[j]),
        static_cast<unsigned short>(cmpOp | NxCMP_NO_WILDCARDS), -1, 8, nullptr));
    k = j;
  }
}
BENCHMARK_CAPTURE(BM_StrCmp, full, 0);
BENCHMARK_CAPTURE(BM_StrCmp, ci_ai, NxCMP_IGNORE_CASE | NxCMP_IGNORE_ACCENTS);

// Sorting all names: by keys made once (key time included) against sorting
// by NxStrCmp.
void BM_SortByKeys(benchmark::State& state) {
  const auto& names = nxbench::NamesUtf16();
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    std::vector<std::string> keys;
    keys.reserve(names.size());
    for (const auto& s : names) {
      unsigned char key[512];
      const uint32_t n = NxStrSortKey(NxCS_UNICODE, NxLANG_NEUTRAL, Text(s), 0, 8, key, sizeof key);
      keys.emplace_back(reinterpret_cast<const char*>(key), n);
    }
    std::sort(keys.begin(), keys.end());
    benchmark::DoNotOptimize(keys.data());
  }
}
BENCHMARK(BM_SortByKeys);

void BM_SortByStrCmp(benchmark::State& state) {
  const auto& names = nxbench::NamesUtf16();
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    std::vector<const std::u16string*> v;
    for (const auto& s : names) v.push_back(&s);
    std::sort(v.begin(), v.end(), [](const std::u16string* a, const std::u16string* b) {
      return NxStrCmp(NxCS_UNICODE, NxLANG_NEUTRAL, Text(*a), NxCS_UNICODE, NxLANG_NEUTRAL,
                      Text(*b), NxCMP_NO_WILDCARDS, -1, 8, nullptr) < 0;
    });
    benchmark::DoNotOptimize(v.data());
  }
}
BENCHMARK(BM_SortByStrCmp);

#ifdef NXTM_BENCH_HAVE_ICU
void BM_IcuSortKey(benchmark::State& state, UColAttributeValue strength) {
  UErrorCode status = U_ZERO_ERROR;
  UCollator* coll = ucol_open("", &status);
  if (U_FAILURE(status)) {
    state.SkipWithError("ucol_open failed");
    return;
  }
  ucol_setStrength(coll, strength);
  const auto& names = nxbench::NamesUtf16();
  size_t k = 0;
  size_t bytes = 0;
  uint8_t key[512];
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    const auto& s = names[k];
    bytes += static_cast<size_t>(
        ucol_getSortKey(coll, s.c_str(), static_cast<int32_t>(s.size()), key, sizeof key));
    benchmark::DoNotOptimize(key);
    if (++k == names.size()) k = 0;
  }
  allocs.Stop();
  state.counters["key_bytes"] =
      benchmark::Counter(static_cast<double>(bytes) / static_cast<double>(state.iterations()));
  ucol_close(coll);
}
BENCHMARK_CAPTURE(BM_IcuSortKey, tertiary, UCOL_TERTIARY);
BENCHMARK_CAPTURE(BM_IcuSortKey, primary, UCOL_PRIMARY);
#endif

}  // namespace
