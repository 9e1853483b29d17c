// Disk forms in bulk and in keys: Store and Load of 4096 elements through
// the manager against memcpy of the same bytes, and one-element Cmp of two
// keys in the byte-swapping format against loading both and comparing the
// native values.
#include <nxtm/nxtm.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "bench_support.h"

namespace {

constexpr uint32_t kElements = 4096;

// Source and target of each run lie in one block, half a page apart
// modulo the page, so that no run pays for the store-to-load aliasing of
// two buffers a whole number of pages apart.
struct TwoArrays {
  explicit TwoArrays(size_t bytes) : bytes(bytes), block(2 * bytes + 4096 + 64) {
    unsigned char* base = block.data();
    base += (64 - reinterpret_cast<uintptr_t>(base) % 64) % 64;
    first = base;
    second = base + bytes + 2048;
    uint32_t x = 12345;
    for (size_t i = 0; i < bytes; ++i) {
      x = x * 1103515245u + 12345u;
      first[i] = static_cast<unsigned char>(x >> 16);
    }
  }
  size_t bytes;
  std::vector<unsigned char> block;
  unsigned char* first;   // the source
  unsigned char* second;  // the target
};

size_t Width(char id) {
  return id == NxTYPE_short ? 2 : id == NxTYPE_long ? 4 : 8;
}

// Arguments: type id and format.
void BM_StoreArray(benchmark::State& state) {
  NxTypeMgr mgr;
  const char id = static_cast<char>(state.range(0));
  const unsigned char format = static_cast<unsigned char>(state.range(1));
  TwoArrays arrays(kElements * Width(id));
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    benchmark::DoNotOptimize(mgr.Store(id, arrays.second, arrays.first, format, kElements));
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * arrays.bytes));
}

void BM_LoadArray(benchmark::State& state) {
  NxTypeMgr mgr;
  const char id = static_cast<char>(state.range(0));
  const unsigned char format = static_cast<unsigned char>(state.range(1));
  TwoArrays arrays(kElements * Width(id));
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    benchmark::DoNotOptimize(mgr.Load(id, arrays.second, arrays.first, format, kElements));
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * arrays.bytes));
}

// Argument: the width of the elements.
void BM_MemcpyArray(benchmark::State& state) {
  TwoArrays arrays(kElements * static_cast<size_t>(state.range(0)));
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    std::memcpy(arrays.second, arrays.first, arrays.bytes);
    benchmark::DoNotOptimize(arrays.second);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * arrays.bytes));
}

BENCHMARK(BM_StoreArray)
    ->Args({NxTYPE_long, 1})
    ->Args({NxTYPE_short, 2})
    ->Args({NxTYPE_long, 2})
    ->Args({NxTYPE_double, 2});
BENCHMARK(BM_LoadArray)
    ->Args({NxTYPE_long, 1})
    ->Args({NxTYPE_short, 2})
    ->Args({NxTYPE_long, 2})
    ->Args({NxTYPE_double, 2});
BENCHMARK(BM_MemcpyArray)->Arg(2)->Arg(4)->Arg(8);

// ---------------------------------------------------------------------------
// 4096 NxNull_long elements, every eighth null, through the row's Store and
// Load (the argument is the format), against memcpy of the disk bytes.

std::vector<NxNull_long> NullElements() {
  std::vector<NxNull_long> elements(kElements);
  for (uint32_t i = 0; i < kElements; ++i)
    if (i % 8 != 0) elements[i] = NxNull_long(static_cast<int32_t>(i * 2654435761u));
  return elements;
}

void BM_NullStore(benchmark::State& state) {
  NxTypeMgr mgr;
  const unsigned char format = static_cast<unsigned char>(state.range(0));
  std::vector<NxNull_long> elements = NullElements();
  std::vector<unsigned char> disk(kElements * 5);
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        mgr.Store(NxTYPE_NxNull_long, disk.data(), elements.data(), format, kElements));
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * disk.size()));
}
BENCHMARK(BM_NullStore)->Arg(2);

void BM_NullLoad(benchmark::State& state) {
  NxTypeMgr mgr;
  const unsigned char format = static_cast<unsigned char>(state.range(0));
  std::vector<NxNull_long> elements = NullElements();
  std::vector<unsigned char> disk(kElements * 5);
  mgr.Store(NxTYPE_NxNull_long, disk.data(), elements.data(), format, kElements);
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        mgr.Load(NxTYPE_NxNull_long, elements.data(), disk.data(), format, kElements));
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * disk.size()));
}
BENCHMARK(BM_NullLoad)->Arg(2);

void BM_NullMemcpy(benchmark::State& state) {
  std::vector<unsigned char> from(kElements * 5, 1), to(kElements * 5);
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    std::memcpy(to.data(), from.data(), from.size());
    benchmark::DoNotOptimize(to.data());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * from.size()));
}
BENCHMARK(BM_NullMemcpy);

// ---------------------------------------------------------------------------
// One-element keys in format 2, as an index compares them: 64 pairs in
// turn, so that the result can't be predicted.  Cmp in its long form
// against two Loads and a compare of the native values.

template <typename T>
struct Keys {
  Keys() {
    NxTypeMgr mgr;
    uint32_t x = 777;
    for (auto& k : keys) {
      x = x * 1103515245u + 12345u;
      T v = static_cast<T>(static_cast<int32_t>(x) >> (x % 13));
      mgr.Store(Id(), k, &v, 2, 1);
    }
  }
  static char Id() { return sizeof(T) == 4 ? NxTYPE_long : NxTYPE_double; }
  unsigned char keys[65][sizeof(T)];
};

template <typename T>
void BM_KeyCmp(benchmark::State& state) {
  NxTypeMgr mgr;
  Keys<T> k;
  unsigned i = 0;
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    char id = Keys<T>::Id();
    benchmark::DoNotOptimize(id);
    int status = 0;
    benchmark::DoNotOptimize(mgr.Cmp(id, 0, k.keys[i], 0, k.keys[i + 1], 0, 1, 2, status));
    i = (i + 1) % 64;
  }
}

template <typename T>
void BM_KeyLoadCompare(benchmark::State& state) {
  NxTypeMgr mgr;
  Keys<T> k;
  unsigned i = 0;
  nxbench::AllocationCount allocs(state);
  for (auto _ : state) {
    char id = Keys<T>::Id();
    benchmark::DoNotOptimize(id);
    T a, b;
    mgr.Load(id, &a, k.keys[i], 2, 1);
    mgr.Load(id, &b, k.keys[i + 1], 2, 1);
    benchmark::DoNotOptimize(a < b ? -1 : a > b ? 1 : 0);
    i = (i + 1) % 64;
  }
}

BENCHMARK_TEMPLATE(BM_KeyCmp, int32_t);
BENCHMARK_TEMPLATE(BM_KeyLoadCompare, int32_t);
BENCHMARK_TEMPLATE(BM_KeyCmp, double);
BENCHMARK_TEMPLATE(BM_KeyLoadCompare, double);

}  // namespace
