#include <benchmark/benchmark.h>

#include <QString>
#include <array>
#include <iterator>

#include "estimation/model/RiskModel.h"

namespace kestrix::model {
namespace {

// As a form holds them: texts of their own, not the constants of the model.
struct Task {
  QString severity, exposure, occurrence, avoidance;
  int before_index;
  qint16 severity_score, exposure_score, occurrence_score, avoidance_score;
};

const std::array<Task, 6>& Tasks() {
  static const std::array<Task, 6> tasks{{
      {"None.", "N.A.", "N.A.", "N.A.", 0, 0, 0, 0, 0},
      {"S1, Slight", "F1, F2", "O1, Low", "N.A.", 4, 1, 2, 1, 1},
      {"S1, Slight", "F1, F2", "O3, High", "A2, Impossible", 2, 2, 3, 2, 3},
      {"S2, Serious", "F1, Seldom", "O2, Midium", "A1, Possible", 3, 3, 4, 3, 3},
      {"S2, Serious", "F2, Frequent", "O3, High", "A2, Impossible", 6, 4, 5, 5, 5},
      {"S2, Serious", "F2, Frequent", "O2, Midium", "A2, Impossible", 1, 3, 5, 4, 5},
  }};
  return tasks;
}

// One full evaluation: index, band, class, cell and verdict. Bound: 50 ns.
void FullEvaluation(benchmark::State& state) {
  const auto& tasks = Tasks();
  std::size_t turn = 0;
  for (auto _ : state) {  // NOLINT(clang-analyzer-deadcode.DeadStores)
    const Task& task = tasks[turn];
    turn = turn + 1 == tasks.size() ? 0 : turn + 1;
    const std::optional<int> index =
        RiskIndexOf(task.severity, task.exposure, task.occurrence, task.avoidance);
    std::optional<IndexBand> band = BandOfIndex(index.value_or(0));
    qint16 cl =
        ClassOf(task.exposure_score, task.occurrence_score, task.avoidance_score).value_or(0);
    MatrixResult cell = CellOf(task.severity_score, cl);
    QStringView verdict = Verdict(task.before_index, index.value_or(0));
    benchmark::DoNotOptimize(band);
    benchmark::DoNotOptimize(cl);
    benchmark::DoNotOptimize(cell);
    benchmark::DoNotOptimize(verdict);
  }
}
BENCHMARK(FullEvaluation);

}  // namespace
}  // namespace kestrix::model
