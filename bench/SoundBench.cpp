// How much faster than its time the unit's sound is processed: seconds of stereo sound per second of one
// core, of the filters alone and of the whole chain.
#include <array>
#include <vector>

#include <benchmark/benchmark.h>

#include "SoundSettings.h"
#include "unit/sound/AdaptiveFilter.h"
#include "unit/sound/CoefficientStage.h"
#include "unit/sound/Engine.h"
#include "unit/sound/Scene.h"

namespace {

using namespace unit::sound;
using Block = std::array<float, BlockFrames>;

constexpr double FilterRate = 36000;
constexpr std::size_t TableTaps = 1024;

// The scene over and over, a block at a time.
class Input {
 public:
  explicit Input(double rate) : leftBlocks(Blocks), rightBlocks(Blocks) {
    Scene scene(rate, 1, {});
    for (std::size_t i = 0; i < Blocks; ++i) scene.Process(leftBlocks[i], rightBlocks[i]);
  }
  void Next(Block& left, Block& right) {
    left = leftBlocks[at];
    right = rightBlocks[at];
    at = (at + 1) % Blocks;
  }

 private:
  static constexpr std::size_t Blocks = 1024;
  std::vector<Block> leftBlocks, rightBlocks;
  std::size_t at = 0;
};

// Processes the input by blocks.
template <typename Work>
void Measure(benchmark::State& state, double rate, Work work) {
  Input input(rate);
  Block left, right;
  const auto run = [&] {
    input.Next(left, right);
    work(left, right);
    benchmark::DoNotOptimize(left.data());
    benchmark::DoNotOptimize(right.data());
  };
  for (int i = 0; i < 200; ++i) run();  // until noise is known and filters are in
  for (auto unused : state) run();
  const double seconds = static_cast<double>(state.iterations()) * BlockFrames / rate;
  state.counters["times_real_time"] = benchmark::Counter(seconds, benchmark::Counter::kIsRate);
}

struct Table {
  CoefficientStage stage{TableTaps};
  Table() {
    stage.Configure(bench::TableStage(TableTaps).coefficients, {.attenuation = 20000});
    stage.Reset();
  }
  void Run(Block& sound) { stage.Process(sound, sound); }
};

template <std::size_t Taps>
struct Learner {
  AdaptiveFilter filter;
  Learner() {
    filter.Configure({.taps = Taps, .span = 20, .rate = 40, .normalize = true, .sampleRate = FilterRate});
  }
  void Run(Block& sound) { filter.Process(sound, sound, sound, {}); }
};

constexpr std::size_t UnitFilters = 12;  // six a channel, as a unit without linked channels has

// In turn on the left and on the right.
void RunAll(auto& stages, Block& left, Block& right) {
  for (std::size_t i = 0; i < stages.size(); ++i) stages[i].Run(i % 2 == 0 ? left : right);
}

void Tables(benchmark::State& state) {
  std::vector<Table> tables(UnitFilters);
  Measure(state, FilterRate, [&](Block& left, Block& right) { RunAll(tables, left, right); });
}
BENCHMARK(Tables)->Unit(benchmark::kMicrosecond);

void LongAdaptiveAndTables(benchmark::State& state) {
  std::vector<Learner<AdaptiveTaps>> longest(2);
  std::vector<Table> tables(UnitFilters - longest.size());
  Measure(state, FilterRate, [&](Block& left, Block& right) {
    RunAll(longest, left, right);
    RunAll(tables, left, right);
  });
}
BENCHMARK(LongAdaptiveAndTables)->Unit(benchmark::kMicrosecond);

void Adaptives(benchmark::State& state) {
  std::vector<Learner<TableTaps>> learners(UnitFilters);
  Measure(state, FilterRate, [&](Block& left, Block& right) { RunAll(learners, left, right); });
}
BENCHMARK(Adaptives)->Unit(benchmark::kMicrosecond);

// Everything that the unit does to sound and measures in it.
void WholeEngine(benchmark::State& state, bench::RateCode code) {
  Engine engine;
  engine.Apply(bench::FullChain(code));
  Measure(state, engine.SampleRate(),
          [&](Block& left, Block& right) { engine.Process(left, right, left, right); });
  const unit::Status status = engine.Readings();
  if (status.levels[unit::OutLeft] == 0 || (status.unitMode & 0xC0U) != 0xC0U) {
    state.SkipWithError("the chain does not work");
  }
}
BENCHMARK_CAPTURE(WholeEngine, hz36000, bench::RateCode::Hz36000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(WholeEngine, hz12000, bench::RateCode::Hz12000)->Unit(benchmark::kMicrosecond);

}  // namespace
