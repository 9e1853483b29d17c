// Hashing of text at collation strength, in GB/s of text, beside a plain
// 32-bit FNV-1a over the same bytes (no collation: a floor for any hash of
// the bytes) and beside ICU's route to a collation hash (sort key, then
// FNV-1a over the key).  Texts are real names and 4 KB of prose, in an
// 8-bit code set and in Unicode.  Also: the "NxString" row on text records
// and in memory form, and range evaluation on "long".
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <nxtm/nxtm.h>

#include "bench_support.h"

#ifdef NXTM_BENCH_HAVE_ICU
#include <unicode/ucol.h>
#endif

namespace {

const char* const kNames[] = {
    "Lefèvre",     "Lefebvre",    "Léger",    "Lemaître",  "Béatrice", "Benoît",     "Cécile",
    "Chloé",       "Clément",     "Côté",     "Dupré",     "Dupont",   "Élodie",     "Émile",
    "François",    "Gaëlle",      "Hélène",   "Jérôme",    "Noël",     "Océane",     "Sébastien",
    "Thérèse",     "Müller",      "Mueller",  "Möller",    "Schröder", "Schäfer",    "Jäger",
    "Groß",        "Weiß",        "Bäcker",   "Köhler",    "Hoffmann", "Krüger",     "Günther",
    "Jürgen",      "Núñez",       "Muñoz",    "Ibáñez",    "Peña",     "Cañizares",  "García",
    "Rodríguez",   "Martínez",    "Sánchez",  "Pérez",     "Gómez",    "López",      "Ångström",
    "Åberg",       "Öberg",       "Östlund",  "Lindqvist", "Sjöberg",  "Nørgaard",   "Søren",
    "Kierkegaard", "Jørgensen",   "Bjørn",    "Halvorsen", "O'Connor", "McAllister", "Van der Berg",
    "de la Cruz",  "Smith-Jones", "St. John",
};
constexpr size_t kNameCount = sizeof kNames / sizeof kNames[0];

const char kProse[] =
    "The harbour lay quiet in the grey morning, and the fishing boats rocked against the "
    "pier while the gulls argued over the night's catch. Madame Lefèvre opened the shutters "
    "of her café at seven, as she had done for thirty-one years, and set out the chairs on "
    "the terrace although nobody would sit there before noon. Down the street the baker, "
    "Herr Schröder, was already selling the last of the rye loaves to the crews of the "
    "Norwegian trawler that had come in before dawn. Their captain, a broad man called Bjørn, "
    "paid in coins from four countries and counted them twice. In the town hall the clerk "
    "sorted the week's letters: a complaint about the lighthouse, two requests for a permit, "
    "an invoice from the company that had repaired the quay, and a postcard from Señora "
    "Núñez, who wrote every summer from Cádiz to ask whether her old room was free. ";

// One text in the three forms the benchmarks read.
struct Text {
  std::string narrow;                 // Windows Latin-1, zero-terminated
  std::u16string wide;                // UTF-16, zero-terminated
  std::vector<unsigned char> record;  // text record of the 8-bit text, format 1
};

// The texts hold nothing beyond the BMP: a UTF-16 unit is a character.
Text MakeText(const std::u16string& units) {
  const NxCodeSet* set = NxLanguageContext::QueryCodeSet(NxCS_CP1252);
  Text t;
  t.wide = units;
  for (char16_t c : units) t.narrow += static_cast<char>(set->FromUnicode(c, 0));
  // length, code set, language, text, 0, 0xFF
  const size_t L = t.narrow.size() + 4;
  t.record = {static_cast<unsigned char>(L), static_cast<unsigned char>(L >> 8), NxCS_CP1252,
              NxLANG_NEUTRAL};
  t.record.insert(t.record.end(), t.narrow.begin(), t.narrow.end());
  t.record.push_back(0);
  t.record.push_back(0xFF);
  return t;
}

struct Corpus {
  std::vector<Text> names;
  std::vector<Text> prose;  // one 4 KB text
  size_t nameBytes = 0;     // 8-bit bytes of all names

  Corpus() {
    for (const char* name : kNames) {
      names.push_back(MakeText(nxtest::Utf16(name)));
      nameBytes += names.back().narrow.size();
    }
    const std::u16string once = nxtest::Utf16(kProse);
    std::u16string units;
    while (units.size() < 4096) units += once;
    units.resize(4096);
    prose.push_back(MakeText(units));
  }
};

const Corpus& TheCorpus() {
  static const Corpus corpus;
  return corpus;
}

const std::vector<Text>& Texts(int which) {
  return which == 0 ? TheCorpus().names : TheCorpus().prose;
}

// Bytes of text per round over all texts: characters, times 2 for UTF-16.
int64_t RoundBytes(int which, bool wide) {
  int64_t bytes = 0;
  for (const Text& t : Texts(which)) bytes += static_cast<int64_t>(t.narrow.size());
  return wide ? 2 * bytes : bytes;
}

uint32_t Fnv1a(const void* data, size_t bytes) {
  const unsigned char* p = static_cast<const unsigned char*>(data);
  uint32_t h = 2166136261u;
  for (size_t i = 0; i < bytes; ++i) h = (h ^ p[i]) * 16777619u;
  return h;
}

// The argument picks the texts: 0 the names, 1 the 4 KB prose.
void BM_HashString_8bit(benchmark::State& state) {
  const int which = static_cast<int>(state.range(0));
  const std::vector<Text>& texts = Texts(which);
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    for (const Text& t : texts)
      benchmark::DoNotOptimize(
          HashString(NxCS_CP1252, NxLANG_NEUTRAL, const_cast<char*>(t.narrow.c_str()), -1, 8));
  }
  state.SetBytesProcessed(state.iterations() * RoundBytes(which, false));
}

void BM_HashString_Unicode(benchmark::State& state) {
  const int which = static_cast<int>(state.range(0));
  const std::vector<Text>& texts = Texts(which);
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    for (const Text& t : texts)
      benchmark::DoNotOptimize(
          HashString(NxCS_UNICODE, NxLANG_NEUTRAL,
                     reinterpret_cast<char*>(const_cast<char16_t*>(t.wide.c_str())), -1, 8));
  }
  state.SetBytesProcessed(state.iterations() * RoundBytes(which, true));
}

void BM_Fnv1a_8bit(benchmark::State& state) {
  const int which = static_cast<int>(state.range(0));
  const std::vector<Text>& texts = Texts(which);
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    for (const Text& t : texts) benchmark::DoNotOptimize(Fnv1a(t.narrow.data(), t.narrow.size()));
  }
  state.SetBytesProcessed(state.iterations() * RoundBytes(which, false));
}

void BM_Fnv1a_Unicode(benchmark::State& state) {
  const int which = static_cast<int>(state.range(0));
  const std::vector<Text>& texts = Texts(which);
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    for (const Text& t : texts) benchmark::DoNotOptimize(Fnv1a(t.wide.data(), 2 * t.wide.size()));
  }
  state.SetBytesProcessed(state.iterations() * RoundBytes(which, true));
}

// The row on a text record in disk form, and on NxString objects.
void BM_Row_Record(benchmark::State& state) {
  const int which = static_cast<int>(state.range(0));
  const std::vector<Text>& texts = Texts(which);
  NxTypeMgr mgr;
  int status = 0;
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    for (const Text& t : texts)
      benchmark::DoNotOptimize(
          mgr.Hash(NxTYPE_NxString, 0, const_cast<unsigned char*>(t.record.data()), 1, 1, status));
  }
  state.SetBytesProcessed(state.iterations() * RoundBytes(which, false));
}

void BM_Row_Memory(benchmark::State& state) {
  const int which = static_cast<int>(state.range(0));
  const std::vector<Text>& texts = Texts(which);
  std::vector<NxString> strings;
  for (const Text& t : texts) {
    strings.emplace_back(NxCS_CP1252, NxLANG_NEUTRAL);
    strings.back() = t.narrow.c_str();
  }
  NxTypeMgr mgr;
  int status = 0;
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    for (NxString& s : strings)
      benchmark::DoNotOptimize(mgr.Hash(NxTYPE_NxString, 0, &s, 1, 8, status));
  }
  state.SetBytesProcessed(state.iterations() * RoundBytes(which, false));
}

BENCHMARK(BM_HashString_8bit)->Arg(0)->Arg(1);
BENCHMARK(BM_Fnv1a_8bit)->Arg(0)->Arg(1);
BENCHMARK(BM_HashString_Unicode)->Arg(0)->Arg(1);
BENCHMARK(BM_Fnv1a_Unicode)->Arg(0)->Arg(1);
BENCHMARK(BM_Row_Record)->Arg(0)->Arg(1);
BENCHMARK(BM_Row_Memory)->Arg(0)->Arg(1);

#ifdef NXTM_BENCH_HAVE_ICU
// ICU's collation hash: the sort key of the UTF-16 text, hashed.
void BM_Icu_SortKeyHash(benchmark::State& state) {
  const int which = static_cast<int>(state.range(0));
  const std::vector<Text>& texts = Texts(which);
  UErrorCode status = U_ZERO_ERROR;
  UCollator* coll = ucol_open("", &status);
  if (U_FAILURE(status)) {
    state.SkipWithError("ucol_open failed");
    return;
  }
  std::vector<uint8_t> key(64);
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    for (const Text& t : texts) {
      const int32_t n = static_cast<int32_t>(t.wide.size());
      int32_t size =
          ucol_getSortKey(coll, t.wide.c_str(), n, key.data(), static_cast<int32_t>(key.size()));
      if (size > static_cast<int32_t>(key.size())) {
        key.resize(static_cast<size_t>(size));
        size = ucol_getSortKey(coll, t.wide.c_str(), n, key.data(), size);
      }
      benchmark::DoNotOptimize(Fnv1a(key.data(), static_cast<size_t>(size)));
    }
  }
  ucol_close(coll);
  // Counted as the 8-bit text, to set beside the 8-bit hash.
  state.SetBytesProcessed(state.iterations() * RoundBytes(which, false));
}
BENCHMARK(BM_Icu_SortKeyHash)->Arg(0)->Arg(1);
#endif

// ---------------------------------------------------------------------------
// Range evaluation on "long": bounds 10 and 19, value 14, greater or equal.
// Without `narrowed` nothing is allocated; with it both keys it receives
// are freed again in the loop.

int32_t Disk(int32_t v) {
  int32_t d;
  LongStore(&d, &v, 1, 1);
  return d;
}

void BM_EvalAndBound_Long(benchmark::State& state) {
  NxTypeMgr mgr;
  int32_t low = Disk(10), high = Disk(19), value = Disk(14);
  NxIdxBounds bounds{&low, &high, 4, 4};
  unsigned short op = 5;
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    char id = NxTYPE_long;
    benchmark::DoNotOptimize(id);
    benchmark::DoNotOptimize(mgr.EvalAndBound(id, &bounds, op, &value, 1, 1, nullptr, nullptr));
  }
}
BENCHMARK(BM_EvalAndBound_Long);

void BM_EvalAndBound_Long_Narrowed(benchmark::State& state) {
  NxTypeMgr mgr;
  int32_t low = Disk(10), high = Disk(19), value = Disk(14);
  NxIdxBounds bounds{&low, &high, 4, 4};
  unsigned short op = 1;
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    NxIdxBounds narrowed{nullptr, nullptr, 0, 0};
    char id = NxTYPE_long;
    benchmark::DoNotOptimize(id);
    benchmark::DoNotOptimize(mgr.EvalAndBound(id, &bounds, op, &value, 1, 1, &narrowed, nullptr));
    std::free(narrowed.low);
    std::free(narrowed.high);
  }
}
BENCHMARK(BM_EvalAndBound_Long_Narrowed);

}  // namespace
