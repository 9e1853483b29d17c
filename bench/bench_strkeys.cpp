// String keys of real names: comparing two key records through the row's
// comparator, beside the two references an index could take instead (ICU's
// sort keys compared with strcmp, and NxStrCmp on the texts), and narrowing
// the bounds of a pattern.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <nxtm/nxtm.h>

#include "bench_support.h"

#include "../tests/support/names.h"

#ifdef NXTM_BENCH_HAVE_ICU
#include <unicode/ucol.h>
#endif

namespace {

struct Name {
  NxString text;
  std::vector<unsigned char> key;
};

const std::vector<Name>& Names() {
  static const std::vector<Name> names = [] {
    std::vector<Name> v;
    NxTypeMgr mgr;
    for (const char* n : nxtest::kNames) {
      const std::u16string u = nxtest::Utf16(n);
      Name name;
      name.text = NxString(reinterpret_cast<const unsigned short*>(u.c_str()));
      name.text.SetCodeSetCode(NxCS_UNICODE);
      name.text.language = NxLANG_NEUTRAL;
      name.key.resize(NxINDEX_MAX_KEYLEN);
      name.key.resize(mgr.Translate(NxTYPE_NxString, name.key.data(), 0x81, NxINDEX_MAX_KEYLEN,
                                    &name.text, 8, 0, 1));
      v.push_back(std::move(name));
    }
    return v;
  }();
  return names;
}

// One comparison per iteration: each name against its neighbour.
void BM_KeyRecordsThroughTheRow(benchmark::State& state) {
  const auto& names = Names();
  size_t k = 0;
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    const size_t j = k + 1 == names.size() ? 0 : k + 1;
    int status = 0;
    auto& a = const_cast<Name&>(names[k]);
    auto& b = const_cast<Name&>(names[j]);
    benchmark::DoNotOptimize(StringCompare(1, static_cast<uint32_t>(a.key.size()), a.key.data(),
                                           static_cast<uint32_t>(b.key.size()), b.key.data(),
                                           NxCMP_NO_WILDCARDS, 1, status));
    k = j;
  }
}
BENCHMARK(BM_KeyRecordsThroughTheRow);

void BM_NxStrCmpOnTheTexts(benchmark::State& state) {
  const auto& names = Names();
  size_t k = 0;
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    const size_t j = k + 1 == names.size() ? 0 : k + 1;
    benchmark::DoNotOptimize(NxStrCmp(NxCS_UNICODE, NxLANG_NEUTRAL, names[k].text.StrGet(),
                                      NxCS_UNICODE, NxLANG_NEUTRAL, names[j].text.StrGet(),
                                      NxCMP_NO_WILDCARDS, -1, 8, nullptr));
    k = j;
  }
}
BENCHMARK(BM_NxStrCmpOnTheTexts);

#ifdef NXTM_BENCH_HAVE_ICU
// The sort-key route: keys made once, each comparison one strcmp.
void BM_IcuSortKeysStrcmp(benchmark::State& state) {
  UErrorCode status = U_ZERO_ERROR;
  UCollator* coll = ucol_open("", &status);
  if (U_FAILURE(status)) {
    state.SkipWithError("ucol_open failed");
    return;
  }
  std::vector<std::string> keys;
  for (const char* n : nxtest::kNames) {
    const std::u16string u = nxtest::Utf16(n);
    uint8_t key[512];
    const int32_t length =
        ucol_getSortKey(coll, u.c_str(), static_cast<int32_t>(u.size()), key, sizeof key);
    keys.emplace_back(reinterpret_cast<const char*>(key), static_cast<size_t>(length));
  }
  ucol_close(coll);
  size_t k = 0;
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    const size_t j = k + 1 == keys.size() ? 0 : k + 1;
    benchmark::DoNotOptimize(std::strcmp(keys[k].c_str(), keys[j].c_str()));
    k = j;
  }
}
BENCHMARK(BM_IcuSortKeysStrcmp);
#endif

// The estimate of a prefix pattern with its two narrowed keys (made with
// malloc and freed again here, as the caller would).
void BM_NarrowPattern(benchmark::State& state, const char* pattern, unsigned short options) {
  NxTypeMgr mgr;
  const auto key = [&mgr](const char* utf8) {
    const std::u16string u = nxtest::Utf16(utf8);
    NxString s(reinterpret_cast<const unsigned short*>(u.c_str()));
    s.SetCodeSetCode(NxCS_UNICODE);
    s.language = NxLANG_NEUTRAL;
    std::vector<unsigned char> k(NxINDEX_MAX_KEYLEN);
    k.resize(mgr.Translate(NxTYPE_NxString, k.data(), 0x81, NxINDEX_MAX_KEYLEN, &s, 8, 0, 1));
    return k;
  };
  std::vector<unsigned char> low = key("Mahler"), high = key("Muster"), value = key(pattern);
  NxIdxBounds bounds{low.data(), high.data(), static_cast<unsigned char>(low.size()),
                     static_cast<unsigned char>(high.size())};
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    NxIdxBounds narrowed{nullptr, nullptr, 0, 0};
    unsigned short op = static_cast<unsigned short>(1 | options);
    benchmark::DoNotOptimize(
        mgr.EvalAndBound(NxTYPE_NxString, &bounds, op, value.data(), 1, 1, &narrowed, nullptr));
    std::free(narrowed.low);
    std::free(narrowed.high);
  }
}
BENCHMARK_CAPTURE(BM_NarrowPattern, prefix, "Mül*", 0);
BENCHMARK_CAPTURE(BM_NarrowPattern, prefix_ci_ai, "Mül*", NxCMP_IGNORE_CASE | NxCMP_IGNORE_ACCENTS);

}  // namespace
