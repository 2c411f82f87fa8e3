// Growth of the library's array against std::vector on the same element type, one million
// elements each, in one run. Compare the two timings as a ratio.
#include <benchmark/benchmark.h>

#include <vector>

#include "UtilityGeometry.h"

namespace {
constexpr int kCount = 1000000;

void BM_KvBtArray_Add(benchmark::State& state) {
  for (auto _ : state) {
    KvBtDynArray<KvGeVector2> a;
    for (int i = 0; i < kCount; ++i) a.Add(KvGeVector2(i, -i));
    benchmark::DoNotOptimize(a.GetData());
  }
  state.SetItemsProcessed(state.iterations() * kCount);
}
BENCHMARK(BM_KvBtArray_Add)->Unit(benchmark::kMillisecond);

void BM_StdVector_PushBack(benchmark::State& state) {
  for (auto _ : state) {
    std::vector<KvGeVector2> a;
    for (int i = 0; i < kCount; ++i) a.push_back(KvGeVector2(i, -i));
    benchmark::DoNotOptimize(a.data());
  }
  state.SetItemsProcessed(state.iterations() * kCount);
}
BENCHMARK(BM_StdVector_PushBack)->Unit(benchmark::kMillisecond);
}  // namespace

BENCHMARK_MAIN();
