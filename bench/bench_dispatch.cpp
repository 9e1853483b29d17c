// Cost of dispatch through NxTypeMgr against calling a row's function
// directly, and throughput of array Store and Load against memcpy.
#include <nxtm/nxtm.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <vector>

namespace {

// The id comes from a variable the compiler cannot see through, as it does
// for the layers that hold a type id in their records.
char OpaqueLongId() {
  char id = NxTYPE_long;
  benchmark::DoNotOptimize(id);
  return id;
}

// ---------------------------------------------------------------------------
// One `long` through the manager, through the row's slot, and through the
// base library or the comparator by name.  The argument is the format.

void BM_Store_Manager(benchmark::State& state) {
  NxTypeMgr mgr;
  const unsigned char format = static_cast<unsigned char>(state.range(0));
  int32_t value = 0x01020304;
  unsigned char disk[4];
  for (auto _ : state) {
    char id = OpaqueLongId();
    benchmark::DoNotOptimize(mgr.Store(id, disk, &value, format, 1));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_Store_Manager)->Arg(1)->Arg(2);

void BM_Store_Slot(benchmark::State& state) {
  NxTypeMgr mgr;
  const unsigned char format = static_cast<unsigned char>(state.range(0));
  NxStoreFunc store = mgr.StorePtrGet(NxTYPE_long);
  benchmark::DoNotOptimize(store);
  int32_t value = 0x01020304;
  unsigned char disk[4];
  for (auto _ : state) {
    benchmark::DoNotOptimize(store(disk, &value, format, 1));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_Store_Slot)->Arg(1)->Arg(2);

void BM_Store_LongStore(benchmark::State& state) {
  const unsigned char format = static_cast<unsigned char>(state.range(0));
  int32_t value = 0x01020304;
  unsigned char disk[4];
  for (auto _ : state) {
    benchmark::DoNotOptimize(LongStore(disk, &value, format, 1));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_Store_LongStore)->Arg(1)->Arg(2);

void BM_Load_Manager(benchmark::State& state) {
  NxTypeMgr mgr;
  const unsigned char format = static_cast<unsigned char>(state.range(0));
  unsigned char disk[4] = {1, 2, 3, 4};
  int32_t value = 0;
  for (auto _ : state) {
    char id = OpaqueLongId();
    benchmark::DoNotOptimize(mgr.Load(id, &value, disk, format, 1));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_Load_Manager)->Arg(1)->Arg(2);

void BM_Load_Slot(benchmark::State& state) {
  NxTypeMgr mgr;
  const unsigned char format = static_cast<unsigned char>(state.range(0));
  NxLoadFunc load = mgr.LoadPtrGet(NxTYPE_long);
  benchmark::DoNotOptimize(load);
  unsigned char disk[4] = {1, 2, 3, 4};
  int32_t value = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(load(&value, disk, format, 1));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_Load_Slot)->Arg(1)->Arg(2);

void BM_Load_LongStore(benchmark::State& state) {
  const unsigned char format = static_cast<unsigned char>(state.range(0));
  unsigned char disk[4] = {1, 2, 3, 4};
  int32_t value = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(LongStore(&value, disk, format, 1));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_Load_LongStore)->Arg(1)->Arg(2);

// Cmp in its short form; the operands differ so that the whole element is
// looked at.  Format 8 reads directly, format 2 decodes both elements.
void BM_Cmp_Manager(benchmark::State& state) {
  NxTypeMgr mgr;
  const unsigned char format = static_cast<unsigned char>(state.range(0));
  int32_t a = 0x01020304;
  int32_t b = 0x01020305;
  for (auto _ : state) {
    char id = OpaqueLongId();
    benchmark::DoNotOptimize(mgr.Cmp(id, &a, &b, 0, 1, format));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_Cmp_Manager)->Arg(8)->Arg(2);

void BM_Cmp_Slot(benchmark::State& state) {
  NxTypeMgr mgr;
  const unsigned char format = static_cast<unsigned char>(state.range(0));
  NxTypeCmpFunc compare = mgr.CmpFuncPtrGet(NxTYPE_long);
  benchmark::DoNotOptimize(compare);
  int32_t a = 0x01020304;
  int32_t b = 0x01020305;
  for (auto _ : state) {
    int status = 0;
    benchmark::DoNotOptimize(compare(format, 0, &a, 0, &b, 0, 1, status));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_Cmp_Slot)->Arg(8)->Arg(2);

void BM_Cmp_LongCompare(benchmark::State& state) {
  const unsigned char format = static_cast<unsigned char>(state.range(0));
  int32_t a = 0x01020304;
  int32_t b = 0x01020305;
  for (auto _ : state) {
    int status = 0;
    benchmark::DoNotOptimize(LongCompare(format, 0, &a, 0, &b, 0, 1, status));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_Cmp_LongCompare)->Arg(8)->Arg(2);

// ---------------------------------------------------------------------------
// 4096 `long` values at once, in bytes per second.

constexpr uint32_t kValues = 4096;
constexpr size_t kBytes = kValues * sizeof(int32_t);

// The two arrays of each run lie in one block, half a page apart modulo
// the page, so that no run pays for the store-to-load aliasing of two
// buffers that happen to sit a whole number of pages apart.
struct TwoArrays {
  TwoArrays() : block(2 * kBytes + 4096 + 64) {
    unsigned char* base = block.data();
    base += (64 - reinterpret_cast<uintptr_t>(base) % 64) % 64;
    first = base;
    second = base + kBytes + 2048;
    for (uint32_t i = 0; i < kValues; ++i) {
      const int32_t v = static_cast<int32_t>(i * 2654435761u);
      std::memcpy(first + 4 * i, &v, 4);
    }
  }
  std::vector<unsigned char> block;
  unsigned char* first;   // the source: kValues values
  unsigned char* second;  // the target
};

void BM_StoreArray(benchmark::State& state) {
  NxTypeMgr mgr;
  const unsigned char format = static_cast<unsigned char>(state.range(0));
  TwoArrays arrays;
  for (auto _ : state) {
    benchmark::DoNotOptimize(mgr.Store(NxTYPE_long, arrays.second, arrays.first, format, kValues));
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kBytes);
}
BENCHMARK(BM_StoreArray)->Arg(1)->Arg(2);

void BM_LoadArray(benchmark::State& state) {
  NxTypeMgr mgr;
  const unsigned char format = static_cast<unsigned char>(state.range(0));
  TwoArrays arrays;
  for (auto _ : state) {
    benchmark::DoNotOptimize(mgr.Load(NxTYPE_long, arrays.second, arrays.first, format, kValues));
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kBytes);
}
BENCHMARK(BM_LoadArray)->Arg(1)->Arg(2);

void BM_MemcpyArray(benchmark::State& state) {
  TwoArrays arrays;
  for (auto _ : state) {
    std::memcpy(arrays.second, arrays.first, kBytes);
    benchmark::DoNotOptimize(arrays.second);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kBytes);
}
BENCHMARK(BM_MemcpyArray);

}  // namespace
