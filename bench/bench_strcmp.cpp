// Comparison at collation strength on real names, beside ICU's collator and
// the C library's locale collation on the same strings.
//
// Each benchmark iteration is one comparison, so the reported time is the
// time per comparison.  The pairs are every name against its neighbour in
// the list (related names, long common prefixes) and against a name drawn
// at random.
#include <benchmark/benchmark.h>

#include <clocale>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <string>
#include <vector>

#include <nxtm/nxtm.h>

#ifdef NXTM_BENCH_HAVE_ICU
#include <unicode/ucol.h>
#endif

namespace {

const char* const kNames[] = {
    // French
    "Lefèvre",
    "Lefebvre",
    "Lefevre",
    "Léger",
    "Leger",
    "Lemaître",
    "Lemaire",
    "Béatrice",
    "Beatrice",
    "Benoît",
    "Benoit",
    "Cécile",
    "Cecile",
    "Chloé",
    "Chloe",
    "Clément",
    "Clement",
    "Côté",
    "Cote",
    "Coté",
    "Côte",
    "Dupré",
    "Dupre",
    "Dupont",
    "Désirée",
    "Desiree",
    "Élodie",
    "Elodie",
    "Émile",
    "Emile",
    "François",
    "Francois",
    "Françoise",
    "Gaëlle",
    "Gaelle",
    "Hélène",
    "Helene",
    "Jérôme",
    "Jerome",
    "Joël",
    "Joel",
    "Mélanie",
    "Melanie",
    "Noël",
    "Noel",
    "Océane",
    "Oceane",
    "Rémi",
    "Remi",
    "Sébastien",
    "Sebastien",
    "Thérèse",
    "Therese",
    "Zoé",
    "Zoe",
    // German
    "Müller",
    "Mueller",
    "Muller",
    "Möller",
    "Moeller",
    "Moller",
    "Schröder",
    "Schroeder",
    "Schroder",
    "Schäfer",
    "Schaefer",
    "Schafer",
    "Jäger",
    "Jaeger",
    "Jager",
    "Groß",
    "Gross",
    "Größer",
    "Grosser",
    "Weiß",
    "Weiss",
    "Weis",
    "Bäcker",
    "Baecker",
    "Becker",
    "Köhler",
    "Koehler",
    "Kohler",
    "Hoffmann",
    "Hofmann",
    "Krüger",
    "Krueger",
    "Kruger",
    "Günther",
    "Guenther",
    "Gunther",
    "Jürgen",
    "Juergen",
    "Jurgen",
    "Lührs",
    "Luehrs",
    "Wöhler",
    "Woehler",
    "Fröhlich",
    "Froehlich",
    "Übel",
    "Uebel",
    "Özdemir",
    "Oezdemir",
    "Ärger",
    "Aerger",
    // Spanish
    "Muñoz",
    "Munoz",
    "Núñez",
    "Nunez",
    "Ibáñez",
    "Ibanez",
    "Peña",
    "Pena",
    "Piña",
    "Pina",
    "Gómez",
    "Gomez",
    "Jiménez",
    "Jimenez",
    "Martínez",
    "Martinez",
    "Rodríguez",
    "Rodriguez",
    "Hernández",
    "Hernandez",
    "López",
    "Lopez",
    "Sánchez",
    "Sanchez",
    "Pérez",
    "Perez",
    "Álvarez",
    "Alvarez",
    "Ramírez",
    "Ramirez",
    "Chávez",
    "Chavez",
    "Llorente",
    "Lorente",
    "Castañeda",
    "Castaneda",
    "Begoña",
    "Begona",
    "Inés",
    "Ines",
    "Raúl",
    "Raul",
    "Sofía",
    "Sofia",
    // Czech, Slovak, Polish
    "Dvořák",
    "Dvorak",
    "Novák",
    "Novak",
    "Čapek",
    "Capek",
    "Černý",
    "Cerny",
    "Šťastný",
    "Stastny",
    "Růžička",
    "Ruzicka",
    "Křížek",
    "Krizek",
    "Chalupa",
    "Hájek",
    "Hajek",
    "Horák",
    "Horak",
    "Procházka",
    "Prochazka",
    "Kučera",
    "Kucera",
    "Veselý",
    "Vesely",
    "Jelínek",
    "Jelinek",
    "Pokorný",
    "Pokorny",
    "Ševčík",
    "Sevcik",
    "Žák",
    "Zak",
    "Wałęsa",
    "Walesa",
    "Łukasz",
    "Lukasz",
    "Wójcik",
    "Wojcik",
    "Kowalczyk",
    "Zieliński",
    "Zielinski",
    "Szymański",
    "Szymanski",
    // Nordic and others
    "Åberg",
    "Aberg",
    "Ødegaard",
    "Odegaard",
    "Sørensen",
    "Sorensen",
    "Jørgensen",
    "Jorgensen",
    "Ångström",
    "Angstrom",
    "Bjørn",
    "Bjorn",
    "Ólafsson",
    "Olafsson",
    "Þórsdóttir",
    "Johansson",
    "Johnson",
    "Jonsson",
    "Andersson",
    "Anderson",
    "Nielsen",
    "Nilsson",
    "Gonçalves",
    "Goncalves",
    "João",
    "Joao",
    "Conceição",
    "Conceicao",
    "Ferreira",
    "Gündoğan",
    "Gundogan",
    "Yılmaz",
    "Yilmaz",
    "Şahin",
    "Sahin",
    "D'Angelo",
    "DAngelo",
    "O'Brien",
    "OBrien",
    "Saint-Exupéry",
    "Saint Exupery",
    "van der Berg",
    "Vanderberg",
    "de la Cruz",
    "Delacruz",
    "McDonald",
    "MacDonald",
    "Smith",
    "Smyth",
};
constexpr size_t kCount = sizeof kNames / sizeof kNames[0];

// UTF-8 to UTF-16 (the names hold no characters beyond the BMP).
std::u16string ToUtf16(const char* utf8) {
  std::u16string out;
  const unsigned char* p = reinterpret_cast<const unsigned char*>(utf8);
  while (*p != 0) {
    uint32_t cp = *p++;
    if (cp >= 0xE0) {
      cp = (cp & 0x0F) << 12;
      cp |= (*p++ & 0x3Fu) << 6;
      cp |= *p++ & 0x3Fu;
    } else if (cp >= 0xC0) {
      cp = (cp & 0x1F) << 6;
      cp |= *p++ & 0x3Fu;
    }
    out += static_cast<char16_t>(cp);
  }
  return out;
}

struct Corpus {
  std::vector<std::u16string> utf16;
  std::vector<std::wstring> wide;
  std::vector<std::pair<size_t, size_t>> pairs;

  Corpus() {
    for (const char* name : kNames) {
      utf16.push_back(ToUtf16(name));
      const std::u16string& u = utf16.back();
      wide.emplace_back(u.begin(), u.end());
    }
    uint32_t seed = 12345;
    for (size_t i = 0; i < kCount; ++i) {
      pairs.emplace_back(i, (i + 1) % kCount);
      seed = seed * 1103515245u + 12345u;
      pairs.emplace_back(i, (seed >> 8) % kCount);
    }
  }
  const char* Text(size_t i) const { return reinterpret_cast<const char*>(utf16[i].c_str()); }
};

const Corpus& TheCorpus() {
  static const Corpus corpus;
  return corpus;
}

void RunNx(benchmark::State& state, unsigned short cmpOp) {
  const Corpus& c = TheCorpus();
  size_t k = 0;
  for (auto _ : state) {
    const auto& p = c.pairs[k];
    benchmark::DoNotOptimize(NxStrCmp(NxCS_UNICODE, NxLANG_NEUTRAL, c.Text(p.first), NxCS_UNICODE,
                                      NxLANG_NEUTRAL, c.Text(p.second), cmpOp, -1, 1, nullptr));
    if (++k == c.pairs.size()) k = 0;
  }
}

void BM_NxStrCmp_Full(benchmark::State& state) {
  RunNx(state, NxCMP_NO_WILDCARDS);
}
void BM_NxStrCmp_NoCaseNoAccents(benchmark::State& state) {
  RunNx(state, NxCMP_NO_WILDCARDS | NxCMP_IGNORE_CASE | NxCMP_IGNORE_ACCENTS);
}
BENCHMARK(BM_NxStrCmp_Full);
BENCHMARK(BM_NxStrCmp_NoCaseNoAccents);

// Each pattern against every name, at full strength and with case and
// accents ignored.
void RunPattern(benchmark::State& state, const char* pattern, unsigned short cmpOp) {
  const Corpus& c = TheCorpus();
  const std::u16string p = ToUtf16(pattern);
  const char* pt = reinterpret_cast<const char*>(p.c_str());
  size_t k = 0;
  int64_t matches = 0;
  for (auto _ : state) {
    const int32_t r = NxStrCmp(NxCS_UNICODE, NxLANG_NEUTRAL, c.Text(k), NxCS_UNICODE,
                               NxLANG_NEUTRAL, pt, cmpOp, -1, 1, nullptr);
    matches += r == 0;
    if (++k == kCount) k = 0;
  }
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
  const Corpus& c = TheCorpus();
  size_t k = 0;
  for (auto _ : state) {
    const auto& p = c.pairs[k];
    const std::u16string& a = c.utf16[p.first];
    const std::u16string& b = c.utf16[p.second];
    benchmark::DoNotOptimize(ucol_strcoll(coll, a.c_str(), static_cast<int32_t>(a.size()),
                                          b.c_str(), static_cast<int32_t>(b.size())));
    if (++k == c.pairs.size()) k = 0;
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

// The C library in a UTF-8 locale: a language locale when one is
// installed, else C.UTF-8 (code point order, so not a like-for-like
// collation).
const char* Utf8Locale() {
  static const char* chosen = [] {
    const char* candidates[] = {"en_US.UTF-8", "de_DE.UTF-8", "fr_FR.UTF-8", "C.UTF-8"};
    for (const char* name : candidates) {
      if (std::setlocale(LC_COLLATE, name) != nullptr) return name;
    }
    return static_cast<const char*>(nullptr);
  }();
  return chosen;
}

void BM_Strcoll(benchmark::State& state) {
  const char* locale = Utf8Locale();
  if (locale == nullptr || std::setlocale(LC_COLLATE, locale) == nullptr) {
    state.SkipWithError("no UTF-8 locale");
    return;
  }
  state.SetLabel(locale);
  const Corpus& c = TheCorpus();
  size_t k = 0;
  for (auto _ : state) {
    const auto& p = c.pairs[k];
    benchmark::DoNotOptimize(std::strcoll(kNames[p.first], kNames[p.second]));
    if (++k == c.pairs.size()) k = 0;
  }
  std::setlocale(LC_COLLATE, "C");
}

void BM_Wcscoll(benchmark::State& state) {
  const char* locale = Utf8Locale();
  if (locale == nullptr || std::setlocale(LC_COLLATE, locale) == nullptr) {
    state.SkipWithError("no UTF-8 locale");
    return;
  }
  state.SetLabel(locale);
  const Corpus& c = TheCorpus();
  size_t k = 0;
  for (auto _ : state) {
    const auto& p = c.pairs[k];
    benchmark::DoNotOptimize(std::wcscoll(c.wide[p.first].c_str(), c.wide[p.second].c_str()));
    if (++k == c.pairs.size()) k = 0;
  }
  std::setlocale(LC_COLLATE, "C");
}
BENCHMARK(BM_Strcoll);
BENCHMARK(BM_Wcscoll);

}  // namespace
