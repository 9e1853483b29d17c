// NxInt64 arithmetic against native int64_t on the same random operands.
#include <nxtm/nxtm.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include "bench_support.h"

namespace {

constexpr size_t kPairs = 1024;

// Operands of every bit length and both signs; divisors are neither 0 nor
// -1, the two that native division does not define for every dividend.
struct Operands {
  Operands() {
    std::mt19937_64 random(1234);
    auto draw = [&random]() {
      const uint64_t bits = random() >> (random() % 63);
      return (random() & 1) ? static_cast<int64_t>(0 - bits) : static_cast<int64_t>(bits);
    };
    for (size_t i = 0; i < kPairs; ++i) {
      int64_t b = draw();
      while (b == 0 || b == -1) b = draw();
      a.push_back(draw());
      this->b.push_back(b);
      x.push_back(NxInt64(a.back()));
      y.push_back(NxInt64(b));
    }
  }
  std::vector<int64_t> a, b;
  std::vector<NxInt64> x, y;
};

const Operands& Data() {
  static const Operands data;
  return data;
}

// Native operations that wrap instead of overflowing.
struct Add {
  static int64_t Native(int64_t a, int64_t b) {
    return static_cast<int64_t>(static_cast<uint64_t>(a) + static_cast<uint64_t>(b));
  }
  static NxInt64 Class(const NxInt64& a, const NxInt64& b) { return a + b; }
};
struct Subtract {
  static int64_t Native(int64_t a, int64_t b) {
    return static_cast<int64_t>(static_cast<uint64_t>(a) - static_cast<uint64_t>(b));
  }
  static NxInt64 Class(const NxInt64& a, const NxInt64& b) { return a - b; }
};
struct Multiply {
  static int64_t Native(int64_t a, int64_t b) {
    return static_cast<int64_t>(static_cast<uint64_t>(a) * static_cast<uint64_t>(b));
  }
  static NxInt64 Class(const NxInt64& a, const NxInt64& b) { return a * b; }
};
struct Divide {
  static int64_t Native(int64_t a, int64_t b) { return a / b; }
  static NxInt64 Class(const NxInt64& a, const NxInt64& b) { return a / b; }
};
struct Remainder {
  static int64_t Native(int64_t a, int64_t b) { return a % b; }
  static NxInt64 Class(const NxInt64& a, const NxInt64& b) { return a % b; }
};

template <typename Op>
void BM_Native(benchmark::State& state) {
  const Operands& d = Data();
  std::vector<int64_t> out(kPairs);
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    for (size_t i = 0; i < kPairs; ++i) out[i] = Op::Native(d.a[i], d.b[i]);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kPairs));
}

template <typename Op>
void BM_NxInt64(benchmark::State& state) {
  const Operands& d = Data();
  std::vector<NxInt64> out(kPairs);
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    for (size_t i = 0; i < kPairs; ++i) out[i] = Op::Class(d.x[i], d.y[i]);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kPairs));
}

BENCHMARK_TEMPLATE(BM_Native, Add);
BENCHMARK_TEMPLATE(BM_NxInt64, Add);
BENCHMARK_TEMPLATE(BM_Native, Subtract);
BENCHMARK_TEMPLATE(BM_NxInt64, Subtract);
BENCHMARK_TEMPLATE(BM_Native, Multiply);
BENCHMARK_TEMPLATE(BM_NxInt64, Multiply);
BENCHMARK_TEMPLATE(BM_Native, Divide);
BENCHMARK_TEMPLATE(BM_NxInt64, Divide);
BENCHMARK_TEMPLATE(BM_Native, Remainder);
BENCHMARK_TEMPLATE(BM_NxInt64, Remainder);

}  // namespace
