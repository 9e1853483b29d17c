// Collation walk: NxStringIterator::GetNextOrder over a whole text, and
// beside it ICU's collation element iterator over the same text.  The texts:
// European prose in Latin-1 and in UTF-16, and the shared name list (Latin,
// Greek, Cyrillic and scripts that the order tables don't know) in UTF-16.
// One iteration is one walk of the text; the counters give the orders.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include <nxtm/nxtm.h>

#include "bench_support.h"

#ifdef NXTM_BENCH_HAVE_ICU
#include <unicode/ucol.h>
#include <unicode/ucoleitr.h>
#endif

namespace {

// Mixed European text with accents, umlauts, a sharp s and a ligature.
const char16_t kSample[] =
    u"Le cœur a ses raisons que la raison ne connaît point. Müller, Bäcker und Strauß "
    u"wohnen in der Großen Straße 12. El señor Núñez llegó a Cádiz después del mediodía. "
    u"Ærø, Øresund og Ålborg ligger i Danmark; Göteborg, Malmö och Västerås i Sverige. "
    u"Příliš žluťoučký kůň úpěl ďábelské ódy. Çà et là, l'été, Noël & Zoë écrivent 45 lettres. ";

// The sample in Latin-1 (the characters above that cp1252 holds; the others
// become "?"), and in UTF-16, each about 16 KB of characters.
std::vector<unsigned short> UnicodeText() {
  std::vector<unsigned short> text;
  while (text.size() < 16000)
    for (const char16_t* p = kSample; *p != 0; ++p) text.push_back(*p);
  text.push_back(0);
  return text;
}

// The names, one after the other, separated by spaces.
std::vector<unsigned short> NamesText() {
  std::vector<unsigned short> text;
  for (const std::u16string& name : nxbench::NamesUtf16()) {
    text.insert(text.end(), name.begin(), name.end());
    text.push_back(' ');
  }
  text.push_back(0);
  return text;
}

std::string Latin1Text() {
  const NxCodeSet* cp1252 = NxLanguageContext::QueryCodeSet(1);
  std::string text;
  for (unsigned short u : UnicodeText()) {
    if (u == 0) break;
    text += static_cast<char>(cp1252->MapFrom(u, 253));
  }
  return text;
}

// The Latin-1 text as UTF-16, for ICU.
std::vector<unsigned short> Latin1AsUnicode(const std::string& latin1) {
  std::vector<unsigned short> out;
  for (unsigned char c : latin1) out.push_back(NxLanguageContext::QueryCodeSet(1)->ToUnicode(c));
  out.push_back(0);
  return out;
}

void Report(benchmark::State& state, int64_t orders) {
  state.counters["orders/s"] =
      benchmark::Counter(static_cast<double>(orders), benchmark::Counter::kIsRate);
  state.counters["orders/text"] =
      benchmark::Counter(static_cast<double>(orders) / static_cast<double>(state.iterations()));
}

void BM_GetNextOrder_Latin1(benchmark::State& state) {
  const std::string text = Latin1Text();
  int64_t orders = 0;
  {
    nxbench::AllocationCount allocs(state);
    for (auto _ : state) {
      NxStringIterator it(text.c_str(), 1, 1, 1);
      while (unsigned short order = it.GetNextOrder(1)) {
        benchmark::DoNotOptimize(order);
        ++orders;
      }
    }
  }
  Report(state, orders);
}
BENCHMARK(BM_GetNextOrder_Latin1);

void WalkUnicode(benchmark::State& state, std::vector<unsigned short> text) {
  int64_t orders = 0;
  {
    nxbench::AllocationCount allocs(state);
    for (auto _ : state) {
      NxStringIterator it(text.data(), 253, 1, 1);
      while (unsigned short order = it.GetNextOrder(1)) {
        benchmark::DoNotOptimize(order);
        ++orders;
      }
    }
  }
  Report(state, orders);
}

void BM_GetNextOrder_Unicode(benchmark::State& state) {
  WalkUnicode(state, UnicodeText());
}
BENCHMARK(BM_GetNextOrder_Unicode);

void BM_GetNextOrder_Names(benchmark::State& state) {
  WalkUnicode(state, NamesText());
}
BENCHMARK(BM_GetNextOrder_Names);

#ifdef NXTM_BENCH_HAVE_ICU
void IcuElements(benchmark::State& state, const std::vector<unsigned short>& text) {
  UErrorCode status = U_ZERO_ERROR;
  UCollator* collator = ucol_open("", &status);
  UCollationElements* elements =
      ucol_openElements(collator, reinterpret_cast<const UChar*>(text.data()),
                        static_cast<int32_t>(text.size() - 1), &status);
  if (U_FAILURE(status)) {
    state.SkipWithError(u_errorName(status));
    return;
  }
  int64_t orders = 0;
  {
    nxbench::AllocationCount allocs(state);
    for (auto _ : state) {
      ucol_reset(elements);
      for (;;) {
        const int32_t order = ucol_next(elements, &status);
        if (order == UCOL_NULLORDER) break;
        benchmark::DoNotOptimize(order);
        ++orders;
      }
    }
  }
  ucol_closeElements(elements);
  ucol_close(collator);
  Report(state, orders);
}

void BM_IcuNext_Latin1(benchmark::State& state) {
  IcuElements(state, Latin1AsUnicode(Latin1Text()));
}
BENCHMARK(BM_IcuNext_Latin1);

void BM_IcuNext_Unicode(benchmark::State& state) {
  IcuElements(state, UnicodeText());
}
BENCHMARK(BM_IcuNext_Unicode);

void BM_IcuNext_Names(benchmark::State& state) {
  IcuElements(state, NamesText());
}
BENCHMARK(BM_IcuNext_Names);
#endif

}  // namespace
