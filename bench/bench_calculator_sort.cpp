// The calculator's sort on 100,000 records, once with parameters that run up and then down (the
// crossings of a line through a spiral, on which a middle pivot splits off a few records per
// partition) and once with the same records shuffled. Compare the two timings as a ratio.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <vector>

#include "UtilityGeometry.h"

namespace {
constexpr int kCount = 100000;

// Distinct parameters 0.01 apart (more than the 0.001 band), so the records are a strict order.
std::vector<double> UpThenDown() {
  std::vector<double> t;
  for (int i = 0; i < kCount; ++i) t.push_back(i < kCount / 2 ? 0.01 * i : 0.01 * (kCount - i) + 0.005);
  return t;
}

void SortRecords(benchmark::State& state, const std::vector<double>& params) {
  KvGeIntrCalculator2d calc;
  for (double t : params) calc.Add(KvGeIntrPoint2d(KvGePoint2d(t, 0), 1, 1, 1, t, t, 0, 0, 0));
  for (auto _ : state) {
    calc.SortIntrPoints0();
    benchmark::DoNotOptimize(calc.Perm0().GetData());
  }
  state.SetItemsProcessed(state.iterations() * kCount);
}

void BM_Sort_UpThenDown(benchmark::State& state) { SortRecords(state, UpThenDown()); }
BENCHMARK(BM_Sort_UpThenDown)->Unit(benchmark::kMillisecond);

void BM_Sort_Shuffled(benchmark::State& state) {
  std::vector<double> t = UpThenDown();
  std::shuffle(t.begin(), t.end(), std::mt19937(11));
  SortRecords(state, t);
}
BENCHMARK(BM_Sort_Shuffled)->Unit(benchmark::kMillisecond);
}  // namespace

BENCHMARK_MAIN();
