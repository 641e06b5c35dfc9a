// What setup files cost: loading one against a bare pass over its values, and saving one durably against a
// plain write of its bytes. Each round does both one after the other, so that what else the machine does hits
// both.
#include <algorithm>
#include <charconv>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <vector>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include "RandomRecord.h"
#include "TestSession.h"
#include "Unheard.h"
#include "persist/SafeFile.h"
#include "persist/SetupLines.h"
#include "persist/modSettings.h"

namespace {

template <typename Work>
double Seconds(Work work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::ranges::nth_element(values, middle);
  return *middle;
}

// The time shown is the program's own; bare_us is that of the bare work, times how many of it the program
// takes.
template <typename Ours, typename Bare>
void Compare(benchmark::State& state, Ours ours, Bare bare) {
  std::vector<double> oursTook, bareTook, times;
  for (auto _ : state) {
    oursTook.push_back(Seconds(ours));
    bareTook.push_back(Seconds(bare));
    times.push_back(oursTook.back() / bareTook.back());
    state.SetIterationTime(oursTook.back());
  }
  state.counters["median_us"] = Median(oursTook) * 1e6;
  state.counters["bare_us"] = Median(bareTook) * 1e6;
  state.counters["times"] = Median(times);
}

// The defaults, or a setup at random.
struct Setup {
  std::string folder = BENCH_FOLDER, path = folder + "/One.nrv", barePath = folder + "/Bare.nrv";
  host::PosixFiles files;
  support::TestDesk desk{folder};
  vc::SystemSettings settings;
  vc::modSettings setups{settings, files, desk, support::Unheard<vc::SetupHooks>()};
  std::string text;

  explicit Setup(bool random) {
    std::filesystem::create_directories(folder);
    std::mt19937 source{1};
    vc::InitSettings(settings);
    if (random) fuzz::RandomizeRecord(settings, source);
    text = vc::WriteSetup(settings, 0, {});
    setups.SaveSetupFile(path, 0);
  }
};

std::vector<vc::LineType> TypesOfLines() {
  std::vector<vc::LineType> types;
  vc::WalkSetup([&types](const vc::LineRun& run) {
    types.insert(types.end(), static_cast<std::size_t>(run.Lines()), run.type);
    return true;
  });
  return types;
}

std::string ReadAll(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string text(std::filesystem::file_size(path), '\0');
  file.read(text.data(), static_cast<std::streamsize>(text.size()));
  return text;
}

// The sum of the numbers, so that none can be left out.
double BarePass(const std::string& path, const std::vector<vc::LineType>& types) {
  const std::string text = ReadAll(path);
  double sum = 0;
  std::size_t place = 0;
  for (const vc::LineType type : types) {
    const std::size_t end = std::min(text.find('\n', place), text.size());
    int integer = 0;
    float number = 0;
    if (type == vc::LineType::Integer) std::from_chars(text.data() + place, text.data() + end, integer);
    if (type == vc::LineType::Float) std::from_chars(text.data() + place, text.data() + end, number);
    sum += static_cast<double>(integer) + static_cast<double>(number);
    place = end + 1;
  }
  return sum;
}

void Load(benchmark::State& state) {
  Setup setup(state.range(0) != 0);
  const std::vector<vc::LineType> types = TypesOfLines();
  std::int16_t flag = vc::TakeConnection;
  bool good = true;
  double sum = 0;
  Compare(
      state, [&] { good = setup.setups.LoadSetupFile(setup.path, flag) && good; },
      [&] { sum += BarePass(setup.path, types); });
  benchmark::DoNotOptimize(sum);
  if (!good) state.SkipWithError("the setup does not load");
}
BENCHMARK(Load)
    ->ArgName("random")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMicrosecond)
    ->UseManualTime()
    ->MinTime(2);

bool PlainWrite(const std::string& path, const std::string& text, bool durable) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  const bool written = write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  const bool flushed = !durable || fsync(file) == 0;
  return close(file) == 0 && written && flushed;
}

// What the operator waits for: the record as text, and the text on the disk.
void Save(benchmark::State& state) {
  Setup setup(state.range(0) != 0);
  bool good = true;
  Compare(
      state, [&] { good = setup.setups.SaveSetupFile(setup.path, 0) && good; },
      [&] { good = PlainWrite(setup.barePath, setup.text, state.range(1) != 0) && good; });
  if (!good) state.SkipWithError("the setup cannot be saved");
}
BENCHMARK(Save)
    ->ArgNames({"random", "durable"})
    ->ArgsProduct({{0, 1}, {1, 0}})
    ->Unit(benchmark::kMicrosecond)
    ->UseManualTime()
    ->MinTime(2);

// The text alone.
void PutInPlace(benchmark::State& state) {
  Setup setup(state.range(0) != 0);
  bool good = true;
  Compare(
      state, [&] { good = vc::WriteWholeFile(setup.files, setup.path, setup.text) && good; },
      [&] { good = PlainWrite(setup.barePath, setup.text, true) && good; });
  if (!good) state.SkipWithError("the file cannot be written");
}
BENCHMARK(PutInPlace)
    ->ArgName("random")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMicrosecond)
    ->UseManualTime()
    ->MinTime(2);

}  // namespace
