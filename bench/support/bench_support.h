// Helpers shared by the benchmark programs: the allocation count, and the
// name list of several languages and scripts in the forms the benchmarks
// read.
#ifndef NXTM_BENCH_SUPPORT_H
#define NXTM_BENCH_SUPPORT_H

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "../../tests/support/names.h"

namespace nxbench {

// Calls of malloc, calloc, realloc and the aligned allocators so far in
// this process (operator new included: it calls malloc).
uint64_t Allocations();

// Put beside a benchmark's loop: reports the allocations per iteration as
// the counter "allocs", which the comparison runner shows.  Counting ends
// at Stop(), or when the object goes; call Stop() before anything after
// the loop that may allocate (setting counters does).
class AllocationCount {
 public:
  explicit AllocationCount(benchmark::State& state) : state_(state), start_(Allocations()) {}
  ~AllocationCount() { Stop(); }
  AllocationCount(const AllocationCount&) = delete;
  AllocationCount& operator=(const AllocationCount&) = delete;

  void Stop() {
    if (stopped_) return;
    stopped_ = true;
    const uint64_t n = Allocations() - start_;
    const double per = state_.iterations() == 0
                           ? 0.0
                           : static_cast<double>(n) / static_cast<double>(state_.iterations());
    state_.counters["allocs"] = benchmark::Counter(per);
  }

 private:
  benchmark::State& state_;
  uint64_t start_;
  bool stopped_ = false;
};

// The shared name list as UTF-16, one string per name.
inline const std::vector<std::u16string>& NamesUtf16() {
  static const std::vector<std::u16string> names = [] {
    std::vector<std::u16string> v;
    for (const char* name : nxtest::kNames) v.push_back(nxtest::Utf16(name));
    return v;
  }();
  return names;
}

inline const char* Text(const std::u16string& s) {
  return reinterpret_cast<const char*>(s.c_str());
}

// Pairs of names to compare: every name against its neighbour in the list
// (related names, long common starts, differences in accents and case)
// and against a name drawn with a fixed seed (differences in the first
// letters, across scripts).
inline const std::vector<std::pair<size_t, size_t>>& NamePairs() {
  static const std::vector<std::pair<size_t, size_t>> pairs = [] {
    std::vector<std::pair<size_t, size_t>> v;
    const size_t n = nxtest::kNameCount;
    uint32_t seed = 12345;
    for (size_t i = 0; i < n; ++i) {
      v.emplace_back(i, (i + 1) % n);
      seed = seed * 1103515245u + 12345u;
      v.emplace_back(i, (seed >> 8) % n);
    }
    return v;
  }();
  return pairs;
}

}  // namespace nxbench

#endif
