// Strings on disk.  Key building: Translate to the key form on real names,
// beside ICU's sort keys (ucol_getSortKey, tertiary strength) on the same
// names; one iteration is one key.  The text record: StringStore and
// StringLoad of a long 8-bit text, beside memcpy of the same bytes.
//
// Interleave the runs for figures that can be compared:
//   bench_strdisk --benchmark_repetitions=10 --benchmark_enable_random_interleaving=true
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <nxtm/nxtm.h>

#include "support/bench_support.h"

#ifdef NXTM_BENCH_HAVE_ICU
#include <unicode/ucol.h>
#endif


namespace {

using nxtest::kNames;
constexpr size_t kCount = nxtest::kNameCount;

struct Corpus {
  std::vector<std::u16string> unicode;
  std::vector<std::u16string> latin1AsUnicode;  // the cp1252 names, back in UTF-16
  std::vector<NxString> wide;                   // code set 253
  std::vector<NxString> narrow;                 // code set 1

  Corpus() {
    const NxCodeSet* cp1252 = NxLanguageContext::QueryCodeSet(1);
    for (const char* name : kNames) {
      unicode.push_back(nxtest::Utf16(name));
      const std::u16string& u = unicode.back();
      NxString w(reinterpret_cast<const unsigned short*>(u.c_str()));
      w.language = NxLANG_NEUTRAL;
      wide.push_back(w);
      std::string bytes;
      std::u16string back;
      for (char16_t c : u) {
        const unsigned short b = cp1252->MapFrom(c, NxCS_UNICODE);
        bytes += static_cast<char>(b);
        back += static_cast<char16_t>(cp1252->ToUnicode(b));
      }
      NxString n(bytes.c_str());
      n.language = NxLANG_NEUTRAL;
      narrow.push_back(n);
      latin1AsUnicode.push_back(back);
    }
  }
};

const Corpus& TheCorpus() {
  static const Corpus corpus;
  return corpus;
}

void Report(benchmark::State& state, uint64_t bytes, uint64_t allocations) {
  const double n = static_cast<double>(state.iterations());
  state.counters["key bytes"] = benchmark::Counter(static_cast<double>(bytes) / n);
  state.counters["allocs/key"] = benchmark::Counter(static_cast<double>(allocations) / n);
}

// A key of at most NxINDEX_MAX_KEYLEN bytes, as the index layer asks for it.
void RunNxKey(benchmark::State& state, const std::vector<NxString>& strings) {
  NxTypeMgr mgr;
  unsigned char key[NxINDEX_MAX_KEYLEN];
  size_t k = 0;
  uint64_t bytes = 0;
  const uint64_t before = nxbench::Allocations();
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    bytes += mgr.Translate(NxTYPE_NxString, key, 0x81, sizeof key,
                           const_cast<NxString*>(&strings[k]), 8, 0, 1);
    benchmark::DoNotOptimize(key);
    if (++k == kCount) k = 0;
  }
  Report(state, bytes, nxbench::Allocations() - before);
}

void BM_Key_Nx_Unicode(benchmark::State& state) {
  RunNxKey(state, TheCorpus().wide);
}
void BM_Key_Nx_Latin1(benchmark::State& state) {
  RunNxKey(state, TheCorpus().narrow);
}
BENCHMARK(BM_Key_Nx_Unicode);
BENCHMARK(BM_Key_Nx_Latin1);

#ifdef NXTM_BENCH_HAVE_ICU
void RunIcuKey(benchmark::State& state, const std::vector<std::u16string>& texts) {
  UErrorCode status = U_ZERO_ERROR;
  UCollator* coll = ucol_open("", &status);
  if (U_FAILURE(status)) {
    state.SkipWithError("ucol_open failed");
    return;
  }
  ucol_setStrength(coll, UCOL_TERTIARY);
  uint8_t key[NxINDEX_MAX_KEYLEN];
  size_t k = 0;
  uint64_t bytes = 0;
  const uint64_t before = nxbench::Allocations();
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    const std::u16string& t = texts[k];
    bytes += static_cast<uint64_t>(
        ucol_getSortKey(coll, t.c_str(), static_cast<int32_t>(t.size()), key, sizeof key));
    benchmark::DoNotOptimize(key);
    if (++k == kCount) k = 0;
  }
  Report(state, bytes, nxbench::Allocations() - before);
  ucol_close(coll);
}
void BM_Key_Icu_Unicode(benchmark::State& state) {
  RunIcuKey(state, TheCorpus().unicode);
}
void BM_Key_Icu_Latin1(benchmark::State& state) {
  RunIcuKey(state, TheCorpus().latin1AsUnicode);
}
BENCHMARK(BM_Key_Icu_Unicode);
BENCHMARK(BM_Key_Icu_Latin1);
#endif

// ---------------------------------------------------------------------------
// The text record of a long 8-bit text (60000 characters of the names).

struct LongText {
  NxString text;
  std::vector<unsigned char> record;
  LongText() {
    std::string bytes;
    for (size_t k = 0; bytes.size() < 60000; k = (k + 1) % kCount)
      bytes += TheCorpus().narrow[k].StrGet();
    bytes.resize(60000);
    text = bytes.c_str();
    record.resize(StringSizeGet(&text, 8, 1, 1));
    StringStore(record.data(), &text, 1, 1);
  }
};

const LongText& TheLongText() {
  static const LongText text;
  return text;
}

void BM_Record_Store(benchmark::State& state) {
  const LongText& t = TheLongText();
  std::vector<unsigned char> out(t.record.size());
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    benchmark::DoNotOptimize(StringStore(out.data(), &t.text, 1, 1));
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * 60000);
}

void BM_Record_Load(benchmark::State& state) {
  const LongText& t = TheLongText();
  NxString s;
  const uint64_t before = nxbench::Allocations();
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    benchmark::DoNotOptimize(StringLoad(&s, t.record.data(), 1, 1));
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * 60000);
  state.counters["allocs/load"] = benchmark::Counter(static_cast<double>(nxbench::Allocations() - before) /
                                                     static_cast<double>(state.iterations()));
}

void BM_Record_Memcpy(benchmark::State& state) {
  const LongText& t = TheLongText();
  std::vector<unsigned char> out(t.record.size());
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    std::memcpy(out.data(), t.text.StrGet(), 60000);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * 60000);
}

BENCHMARK(BM_Record_Store);
BENCHMARK(BM_Record_Load);
BENCHMARK(BM_Record_Memcpy);

}  // namespace
