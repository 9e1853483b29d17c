// A counting front for the C heap, linked into every benchmark program.
//
// The program defines malloc and its relatives itself, so every allocation
// of the process goes through here: the library's `malloc` and `new` (the
// C++ runtime's operator new calls malloc), ICU's, and the benchmark's own.
// Each call adds one to a process-wide count and hands over to the C
// library's own allocator; frees are not counted.  Benchmarks read the count
// before and after their loop (bench_support.h).
#include "bench_support.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>

extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
void __libc_free(void* block);
}

namespace {

// Benchmarks run on one thread; relaxed load and store (no locked add)
// keep the count from costing more than the call it counts.
std::atomic<uint64_t> allocations{0};

inline void Count() {
  allocations.store(allocations.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
}

}  // namespace

uint64_t nxbench::Allocations() {
  return allocations.load(std::memory_order_relaxed);
}

extern "C" {

void* malloc(size_t size) {
  Count();
  return __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
  Count();
  return __libc_calloc(count, size);
}

void* realloc(void* block, size_t size) {
  Count();
  return __libc_realloc(block, size);
}

void* memalign(size_t alignment, size_t size) {
  Count();
  return __libc_memalign(alignment, size);
}

void* aligned_alloc(size_t alignment, size_t size) {
  Count();
  return __libc_memalign(alignment, size);
}

int posix_memalign(void** block, size_t alignment, size_t size) {
  if (alignment % sizeof(void*) != 0 || (alignment & (alignment - 1)) != 0) return EINVAL;
  Count();
  void* p = __libc_memalign(alignment, size);
  if (p == nullptr) return ENOMEM;
  *block = p;
  return 0;
}

void free(void* block) {
  __libc_free(block);
}

}  // extern "C"
