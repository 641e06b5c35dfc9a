// The unit's filters against plain ones that do the same: both run by turns over the same sound, six of them
// a channel, so that what else the machine does falls on both. The counter `ratio` is the speed of the unit's
// filters over that of the plain ones, a median.
#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>
#include <numeric>
#include <vector>

#include <benchmark/benchmark.h>

#include "PlainFilters.h"
#include "SoundSettings.h"
#include "unit/sound/AdaptiveFilter.h"
#include "unit/sound/Convolver.h"
#include "unit/sound/Scene.h"

namespace {

using namespace unit::sound;
using Channel = std::vector<float>;

constexpr double Rate = 36000;
constexpr std::size_t Taps = 1024;
constexpr std::size_t Filters = 12;                // six of the left channel, six of the right
constexpr std::size_t Length = 141 * BlockFrames;  // about a second
constexpr std::size_t Longest = 32768;             // of the transforms that are tried

std::array<Channel, 2> Sound() {
  std::array<Channel, 2> sound{Channel(Length), Channel(Length)};
  Scene(Rate, 1, {}).Process(sound[0], sound[1]);
  return sound;
}

double ProcessorSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

double Median(std::vector<double> numbers) {
  const auto middle = numbers.begin() + static_cast<std::ptrdiff_t>(numbers.size() / 2);
  std::nth_element(numbers.begin(), middle, numbers.end());
  return *middle;
}

// Runs each filter over its channel in pieces of a length; the processor time of a sample of one filter.
template <typename Filter>
double SecondsPerSample(std::vector<Filter>& filters, std::size_t piece, auto process) {
  std::array<Channel, 2> sound = Sound();
  const std::size_t pieces = Length / piece;
  const double start = ProcessorSeconds();
  for (std::size_t at = 0; at < pieces * piece; at += piece) {
    for (std::size_t i = 0; i < filters.size(); ++i) {
      process(filters[i], std::span(sound[i % sound.size()]).subspan(at, piece));
    }
  }
  const double taken = ProcessorSeconds() - start;
  benchmark::DoNotOptimize(sound);
  return taken / static_cast<double>(pieces * piece * filters.size());
}

// A table whose gain is nowhere above 1, so that nothing is bounded.
Channel TableOfTaps() {
  const unit::Stage stage = bench::TableStage(Taps);
  Channel taps(stage.coefficients.begin(), stage.coefficients.end());
  const float sum = std::accumulate(taps.begin(), taps.end(), 0.0F,
                                    [](float all, float tap) { return all + std::fabs(tap); });
  for (float& tap : taps) tap /= sum;
  return taps;
}

Convolver TableConvolver(const Channel& taps) {
  Convolver convolver(taps.size());
  convolver.SetTaps(taps);
  convolver.Reset();
  return convolver;
}

void RunTable(Convolver& table, std::span<float> sound) { table.Process(sound, sound); }

void RunPredictor(AdaptiveFilter& filter, std::span<float> sound) { filter.Process(sound, sound, sound, {}); }

// The largest difference of what the two make of a channel.
double Difference(const Channel& taps) {
  Channel a = Sound()[0], b = a;
  Convolver table = TableConvolver(taps);
  bench::OverlapSave plain(taps, 4 * taps.size());
  for (std::size_t at = 0; at < Length; at += BlockFrames)
    RunTable(table, std::span(a).subspan(at, BlockFrames));
  double most = 0;
  for (std::size_t at = 0; at + plain.Block() <= Length; at += plain.Block()) {
    plain.Process(std::span(b).subspan(at, plain.Block()));
    for (std::size_t i = at; i < at + plain.Block(); ++i)
      most = std::max<double>(most, std::fabs(a[i] - b[i]));
  }
  return most;
}

void TablesToOverlapSave(benchmark::State& state) {
  const Channel taps = TableOfTaps();
  if (Difference(taps) > 1e-5) return state.SkipWithError("the two do not do the same");
  std::vector<Convolver> tables;
  for (std::size_t i = 0; i < Filters; ++i) tables.push_back(TableConvolver(taps));
  struct Size {
    std::size_t points;
    std::vector<bench::OverlapSave> filters;
    std::vector<double> seconds;
  };
  std::vector<Size> sizes;
  for (std::size_t points = 2 * Taps; points <= Longest; points *= 2) {
    Size& size = sizes.emplace_back(Size{points, {}, {}});
    for (std::size_t i = 0; i < Filters; ++i) size.filters.emplace_back(taps, points);
  }
  std::vector<double> own;
  for (auto unused : state) {
    own.push_back(SecondsPerSample(tables, BlockFrames, RunTable));
    for (Size& size : sizes) {
      size.seconds.push_back(SecondsPerSample(size.filters, size.filters[0].Block(),
                                              [](auto& filter, auto sound) { filter.Process(sound); }));
    }
  }
  const auto best =
      std::ranges::min_element(sizes, {}, [](const Size& size) { return Median(size.seconds); });
  state.counters["ns_a_sample"] = 1e9 * Median(own);
  state.counters["best_points"] = static_cast<double>(best->points);
  state.counters["ratio"] = Median(best->seconds) / Median(own);
}
BENCHMARK(TablesToOverlapSave)->Unit(benchmark::kMillisecond)->Iterations(40);

double Energy(std::span<const float> sound) {
  return std::inner_product(sound.begin(), sound.end(), sound.begin(), 0.0);
}

// What is left of a tone in noise, as a part of it.
template <typename Filter>
double LeftBy(Filter filter, auto process) {
  Channel sound = Sound()[0];
  const double before = Energy(sound);
  process(filter, std::span(sound));
  return Energy(sound) / before;
}

void AdaptivesToFusedLoop(benchmark::State& state) {
  constexpr std::uint16_t span = 20, rate = 40;
  constexpr float step = 40.0F / (40.0F + 1024.0F);
  AdaptiveFilter filter;
  filter.Configure({.taps = Taps, .span = span, .rate = rate, .normalize = true, .sampleRate = Rate});
  const bench::FusedPredictor loop(Taps, span + 1, step);
  const auto runLoop = [](bench::FusedPredictor& plain, std::span<float> sound) { plain.Process(sound); };
  const double parts = LeftBy(filter, RunPredictor) / LeftBy(loop, runLoop);
  // It learns by the block, so that within the first second more is left.
  if (parts > 1.5) return state.SkipWithError("the filter leaves more than the loop");
  std::vector<AdaptiveFilter> filters(Filters, filter);
  std::vector<bench::FusedPredictor> loops(Filters, loop);
  std::vector<double> own, plain;
  for (auto unused : state) {
    own.push_back(SecondsPerSample(filters, BlockFrames, RunPredictor));
    plain.push_back(SecondsPerSample(loops, BlockFrames, runLoop));
  }
  state.counters["ns_a_sample"] = 1e9 * Median(own);
  state.counters["ratio"] = Median(plain) / Median(own);
}
BENCHMARK(AdaptivesToFusedLoop)->Unit(benchmark::kMillisecond)->Iterations(15);

}  // namespace
