// Comparison at collation strength on real names in several languages and
// scripts (the shared list: Latin with accents, Greek, Cyrillic, and
// scripts that the order tables don't know), beside ICU's collator at the
// comparable strength on the same UTF-16 strings.
//
// One iteration is one comparison.  The pairs are every name against its
// neighbour in the list and against a name drawn with a fixed seed.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

#include <nxtm/nxtm.h>

#include "bench_support.h"

#ifdef NXTM_BENCH_HAVE_ICU
#include <unicode/ucol.h>
#endif

namespace {

using nxbench::Text;

void RunNx(benchmark::State& state, unsigned short cmpOp) {
  const auto& names = nxbench::NamesUtf16();
  const auto& pairs = nxbench::NamePairs();
  size_t k = 0;
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    const auto& p = pairs[k];
    benchmark::DoNotOptimize(NxStrCmp(NxCS_UNICODE, NxLANG_NEUTRAL, Text(names[p.first]),
                                      NxCS_UNICODE, NxLANG_NEUTRAL, Text(names[p.second]), cmpOp,
                                      -1, 1, nullptr));
    if (++k == pairs.size()) k = 0;
  }
}

void BM_NxStrCmp_Full(benchmark::State& state) {
  RunNx(state, NxCMP_NO_WILDCARDS);
}
void BM_NxStrCmp_Primary(benchmark::State& state) {
  RunNx(state, NxCMP_NO_WILDCARDS | NxCMP_IGNORE_CASE | NxCMP_IGNORE_ACCENTS);
}
BENCHMARK(BM_NxStrCmp_Full);
BENCHMARK(BM_NxStrCmp_Primary);

// Each pattern against every name, at full strength and with case and
// accents ignored.
void RunPattern(benchmark::State& state, const char* pattern, unsigned short cmpOp) {
  const auto& names = nxbench::NamesUtf16();
  const std::u16string p = nxtest::Utf16(pattern);
  size_t k = 0;
  int64_t matches = 0;
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    const int32_t r = NxStrCmp(NxCS_UNICODE, NxLANG_NEUTRAL, Text(names[k]), NxCS_UNICODE,
                               NxLANG_NEUTRAL, Text(p), cmpOp, -1, 1, nullptr);
    matches += r == 0;
    if (++k == names.size()) k = 0;
  }
  allocs.Stop();
  state.counters["matched"] =
      benchmark::Counter(static_cast<double>(matches) / static_cast<double>(state.iterations()));
}
BENCHMARK_CAPTURE(RunPattern, Mul_star_full, "Mül*", 0);
BENCHMARK_CAPTURE(RunPattern, star_son_full, "*son", 0);
BENCHMARK_CAPTURE(RunPattern, q_a_star_e_star_full, "?a*e*", 0);
BENCHMARK_CAPTURE(RunPattern, Mul_star_primary, "Mül*", NxCMP_IGNORE_CASE | NxCMP_IGNORE_ACCENTS);
BENCHMARK_CAPTURE(RunPattern, star_son_primary, "*son", NxCMP_IGNORE_CASE | NxCMP_IGNORE_ACCENTS);
BENCHMARK_CAPTURE(RunPattern, q_a_star_e_star_primary, "?a*e*",
                  NxCMP_IGNORE_CASE | NxCMP_IGNORE_ACCENTS);

#ifdef NXTM_BENCH_HAVE_ICU
void RunIcu(benchmark::State& state, UColAttributeValue strength) {
  UErrorCode status = U_ZERO_ERROR;
  UCollator* coll = ucol_open("", &status);
  if (U_FAILURE(status)) {
    state.SkipWithError("ucol_open failed");
    return;
  }
  ucol_setStrength(coll, strength);
  const auto& names = nxbench::NamesUtf16();
  const auto& pairs = nxbench::NamePairs();
  size_t k = 0;
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    const auto& p = pairs[k];
    const std::u16string& a = names[p.first];
    const std::u16string& b = names[p.second];
    benchmark::DoNotOptimize(ucol_strcoll(coll, a.c_str(), static_cast<int32_t>(a.size()),
                                          b.c_str(), static_cast<int32_t>(b.size())));
    if (++k == pairs.size()) k = 0;
  }
  ucol_close(coll);
}
void BM_Icu_Tertiary(benchmark::State& state) {
  RunIcu(state, UCOL_TERTIARY);
}
void BM_Icu_Primary(benchmark::State& state) {
  RunIcu(state, UCOL_PRIMARY);
}
BENCHMARK(BM_Icu_Tertiary);
BENCHMARK(BM_Icu_Primary);
#endif

}  // namespace
