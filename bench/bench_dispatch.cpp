// Cost of dispatch: every forwarder of NxTypeMgr against calling the row's
// function directly, on one "long".
//
// Both sides start each call from a value the compiler can't see through:
// the manager from the type id, as the layers that keep an id in their
// records do; the direct side from the function pointer, as a caller that
// took a slot with a *PtrGet operation holds it.  The difference is what
// the manager adds: the row lookup.
#include <nxtm/nxtm.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>

#include "bench_support.h"

namespace {

constexpr char kId = NxTYPE_long;

char Id() {
  char id = kId;
  benchmark::DoNotOptimize(id);
  return id;
}

// The function in a slot of the "long" row, opaque to the compiler.
template <typename F>
F Opaque(F f) {
  benchmark::DoNotOptimize(f);
  return f;
}

// The operands of all calls.
struct Operands {
  const NxTypeDesc* row = NxTypeMgr().RowGet(kId);
  int32_t value = 0x01020304;
  int32_t other = 0x01020305;
  unsigned char disk[8] = {1, 2, 3, 4, 0, 0, 0, 0};
  int32_t low = 10, high = 19, key = 14;
  NxIdxBounds bounds{&low, &high, 4, 4};
  MemFile file{disk, 8};
};

template <typename Call>
void Run(benchmark::State& state, Call call) {
  Operands o;
  NxTypeMgr mgr;
  nxbench::AllocationCount allocs(state);
  // Four calls per round, so that the loop around them weighs less.
  for (auto _ : state) {
    call(mgr, o);
    benchmark::ClobberMemory();
    call(mgr, o);
    benchmark::ClobberMemory();
    call(mgr, o);
    benchmark::ClobberMemory();
    call(mgr, o);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * 4);
}

#define NXBENCH_SLOT(slot, viaManager, direct)      \
  void BM_Manager_##slot(benchmark::State& state) { \
    Run(state, [](NxTypeMgr& mgr, Operands& o) {    \
      (void)o;                                      \
      viaManager;                                   \
    });                                             \
  }                                                 \
  void BM_Direct_##slot(benchmark::State& state) {  \
    Run(state, [](NxTypeMgr&, Operands& o) {        \
      (void)o;                                      \
      direct;                                       \
    });                                             \
  }                                                 \
  BENCHMARK(BM_Manager_##slot);                     \
  BENCHMARK(BM_Direct_##slot)

// Create and Delete go together, as do DefaultValue and Delete.
NXBENCH_SLOT(CreateDelete, mgr.Delete(Id(), mgr.Create(Id(), 1), 1),
             Opaque(o.row->Delete)(Opaque(o.row->Create)(1), 1));
NXBENCH_SLOT(DefaultValueDelete, mgr.Delete(Id(), mgr.DefaultValue(Id(), 1, 0), 1),
             Opaque(o.row->Delete)(Opaque(o.row->DefaultValue)(1, 0), 1));
NXBENCH_SLOT(Store, benchmark::DoNotOptimize(mgr.Store(Id(), o.disk, &o.value, 2, 1)),
             benchmark::DoNotOptimize(Opaque(o.row->Store)(o.disk, &o.value, 2, 1)));
NXBENCH_SLOT(Load, benchmark::DoNotOptimize(mgr.Load(Id(), &o.value, o.disk, 2, 1)),
             benchmark::DoNotOptimize(Opaque(o.row->Load)(&o.value, o.disk, 2, 1)));
NXBENCH_SLOT(DiskLenGet, benchmark::DoNotOptimize(mgr.DiskLenGet(Id(), &o.value, 2, 1, 8)),
             benchmark::DoNotOptimize(Opaque(o.row->SizeGet)(&o.value, 8, 2, 1)));
NXBENCH_SLOT(DiskLenGetFromMemFile,
             benchmark::DoNotOptimize(mgr.DiskLenGetFromMemFile(Id(), &o.file, 2, 1)),
             benchmark::DoNotOptimize(Opaque(o.row->SizeGetFromMemFile)(&o.file, 2, 1)));
NXBENCH_SLOT(Cmp, int status = 0;
             benchmark::DoNotOptimize(mgr.Cmp(Id(), 0, &o.value, 0, &o.other, 0, 1, 8, status)),
             int status = 0;
             benchmark::DoNotOptimize(Opaque(o.row->Compare)(8, 0, &o.value, 0, &o.other, 0, 1,
                                                             status)));
NXBENCH_SLOT(CmpShort, benchmark::DoNotOptimize(mgr.Cmp(Id(), &o.value, &o.other, 0, 1, 8)),
             int status = 0;
             benchmark::DoNotOptimize(Opaque(o.row->Compare)(8, 0, &o.value, 0, &o.other, 0, 1,
                                                             status)));
NXBENCH_SLOT(
    EvalAndBound, unsigned short op = 5;
    benchmark::DoNotOptimize(mgr.EvalAndBound(Id(), &o.bounds, op, &o.key, 1, 1, nullptr, nullptr)),
    unsigned short op = 5;
    benchmark::DoNotOptimize(Opaque(o.row->EvalAndBound)(&o.bounds, op, &o.key, 1, 1, nullptr)));
NXBENCH_SLOT(Hash, int status = 0;
             benchmark::DoNotOptimize(mgr.Hash(Id(), 0, &o.value, 1, 8, status)), int status = 0;
             benchmark::DoNotOptimize(Opaque(o.row->Hash)(8, 0, &o.value, 1, status)));
NXBENCH_SLOT(Translate,
             benchmark::DoNotOptimize(mgr.Translate(Id(), o.disk, 2, 4, &o.value, 8, 4, 1)),
             benchmark::DoNotOptimize(Opaque(o.row->Translate)(o.disk, 2, 4, &o.value, 8, 4, 1)));
NXBENCH_SLOT(IsNullValue, benchmark::DoNotOptimize(mgr.IsNullValue(Id(), &o.value)),
             benchmark::DoNotOptimize(Opaque(o.row->IsNull)(&o.value)));

#undef NXBENCH_SLOT

}  // namespace
