// The simulated unit's sound for hours: any setting and any input, changed all the time. What leaves must
// stay in range, what is reported must make sense, the memory must not grow, and back in its senses the unit
// must sound as one that has just been switched on. Usage: soak_sound SECONDS [SEED].
#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>

#include <unistd.h>

#include "HostileInput.h"
#include "RandomSetting.h"
#include "SoundSettings.h"
#include "unit/sound/Engine.h"
#include "unit/sound/Scene.h"

namespace {

using namespace unit::sound;
using Side = std::array<float, BlockFrames>;
using Sound = std::array<Side, 2>;

constexpr int Checks = 10;  // of memory and of the unit's senses, in a run

std::size_t ResidentBytes() {
  std::size_t total = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> total >> resident;
  return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

// What is wrong with a report, or nothing.
std::string FaultOf(const unit::Status& status, const unit::Setting& setting) {
  constexpr unsigned highestWord = 32767, everyFilterAndTrace = 0xC0FC;
  if (status.unitStatus != 0) return "a status that is not the sound's";
  if ((status.unitMode & ~everyFilterAndTrace) != 0) return "a stage adapts that can't";
  if (std::ranges::any_of(status.levels, [](unsigned word) { return word > highestWord; })) return "a level";
  if (std::ranges::any_of(status.stageNibble, [](unsigned nibble) { return nibble > 1; })) return "a nibble";
  for (std::size_t i = 0; i < status.stageStatus.size(); ++i) {
    const bool compressor = setting.programs.stages[i].stageClass == bench::stage_class::Compressor;
    if (!compressor && status.stageStatus[i] > highestWord) return "the status of a stage";
  }
  return {};
}

// Of both sides, RMS.
double LevelOf(const Sound& sound) {
  double sum = 0;
  for (const Side& side : sound) {
    for (const float sample : side) sum += double{sample} * sample;
  }
  return std::sqrt(sum / (2 * BlockFrames));
}

class Soak {
 public:
  Soak(double seconds, std::uint64_t startSeed)
      : wanted(seconds),
        seed(startSeed),
        settings(startSeed),
        random(startSeed + 1),
        input(soaked.SampleRate(), startSeed) {}

  // True if nothing was wrong.
  bool Run() {
    int checks = 0;
    while (fault.empty() && secondsDone < wanted) {
      if (secondsDone >= nextChange) Command();
      Block();
      if (secondsDone < wanted * (checks + 1) / Checks) continue;
      ++checks;
      CheckSenses();
      CheckMemory();
    }
    if (!fault.empty()) Say();
    Conclude();
    return fault.empty();
  }

 private:
  void Complain(const std::string& what) {
    if (fault.empty()) fault = what;
  }

  void Process(Engine& engine, Sound& sound) {
    constexpr std::uint64_t fnvPrime = 0x100000001B3;
    const auto run = [&](std::size_t from, std::size_t size) {
      const std::span left = std::span(sound[0]).subspan(from, size);
      const std::span right = std::span(sound[1]).subspan(from, size);
      engine.Process(left, right, left, right);
    };
    run(0, cut);
    run(cut, BlockFrames - cut);
    for (const Side& side : sound) {
      for (const float sample : side) {
        if (!(std::abs(sample) <= 1.0F)) Complain("a sample of " + std::to_string(sample) + " left");
        peak = std::max(peak, std::abs(sample));
        hash = (hash ^ std::bit_cast<std::uint32_t>(sample)) * fnvPrime;
      }
    }
  }

  void Block() {
    constexpr int readEvery = 8;
    Sound sound;
    input.Next(sound);
    Process(soaked, sound);
    secondsDone += static_cast<double>(BlockFrames) / soaked.SampleRate();
    if (++blocksDone % readEvery != 0) return;
    const unit::Status status = soaked.Readings();
    if (const std::string wrong = FaultOf(status, settings.Now()); !wrong.empty()) Complain(wrong);
    if ((status.unitMode & 0xFCU) != 0) ++adapted;
  }

  void Command() {
    nextChange = secondsDone + random.Uniform(0.1, 1.9);
    settings.Change();
    cut = settings.Below(8) == 0 ? settings.Below(BlockFrames) : 0;
    switch (settings.Below(12)) {
      case 0:
        soaked.Recall(settings.Now());
        break;
      case 1:
        soaked.ResetStages(settings.Below(2) == 0 ? 255 : settings.Word());
        break;
      case 2:
        soaked.ResetBroadband(settings.Word());
        break;
      case 3:
        soaked.ClearTraces(settings.Word());
        break;
      case 4:
        soaked.Learn(1 + settings.Below(6), settings.Table(settings.TableSize()));
        break;
      default:
        break;
    }
    soaked.Apply(settings.Now());
    input.SetRate(soaked.SampleRate());
    for (std::size_t position = 1; position <= 6; ++position) CheckLearned(soaked.Learned(position));
    for (const std::size_t trace : {0U, 1U}) lines += soaked.Lines(trace)[100];
  }

  void CheckLearned(const Coefficients& learned) {
    constexpr std::int32_t unity = 1 << 23U;
    if (learned.size() > AdaptiveTaps) Complain("a filter has too many taps");
    if (std::ranges::any_of(learned, [](std::int32_t tap) { return tap < -unity || tap >= unity; })) {
      Complain("a coefficient");
    }
  }

  // With a setting that makes sense, the scene sounds as it does in a unit that has just been switched on:
  // after a while when the unit goes on at its rate, and at once, to the last bit, when the rate changes,
  // which empties everything.
  void CheckSenses() {
    constexpr double settled = 8, within = 1.12;  // seconds; 1 dB
    const auto same = rateCodes[settings.Below(rateCodes.size())];
    soaked.Apply(bench::StereoChain(same));
    for (int i = 0; i < 20; ++i) Block();
    const unit::Setting chain = bench::FullChain(same);
    soaked.Recall(chain);
    soaked.ResetBroadband(3);
    const auto [mine, fresh] = Compare(chain, settled, false);
    if (!(mine < fresh * within && mine > fresh / within)) {
      Complain("a level of " + std::to_string(mine) + " for " + std::to_string(fresh));
    }
    soaked.Apply(bench::StereoChain(bench::RateCode::Hz7200));
    const unit::Setting last = bench::FullChain(bench::RateCode::Hz36000);
    soaked.Recall(last);
    Compare(last, 1, true);
    soaked.Apply(settings.Now());
    input.SetRate(soaked.SampleRate());
  }

  // The levels of the last half of so many seconds, here and in a fresh unit.
  std::pair<double, double> Compare(const unit::Setting& setting, double seconds, bool exactly) {
    auto fresh = std::make_unique<Engine>();
    fresh->Apply(setting);
    Scene scene(fresh->SampleRate(), seed, {});
    double mine = 0, theirs = 0;
    const auto blocks = static_cast<int>(seconds * fresh->SampleRate() / BlockFrames);
    for (int i = 0; i < blocks && fault.empty(); ++i) {
      Sound sound;
      scene.Process(sound[0], sound[1]);
      Sound other = sound;
      Process(soaked, sound);
      Process(*fresh, other);
      if (exactly && sound != other) Complain("not the sound of a fresh unit");
      if (2 * i < blocks) continue;
      mine += LevelOf(sound);
      theirs += LevelOf(other);
    }
    return {mine, theirs};
  }

  void CheckMemory() {
    constexpr std::size_t allowed = MEMORY_ALLOWANCE * (2U << 20U);
    memory = ResidentBytes();
    if (firstMemory == 0) firstMemory = memory;
    Say();
    if (memory > firstMemory + allowed) Complain("the memory grows");
  }

  void Say() const {
    constexpr double megabyte = 1 << 20U;
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - begin;
    std::printf(
        "%.0f s of sound in %.1f s, %.1f times real time: peak %.3f, hash %016llx, resident %.2f MB\n",
        secondsDone, wall.count(), secondsDone / wall.count(), double{peak},
        static_cast<unsigned long long>(hash), static_cast<double>(memory) / megabyte);
    std::fflush(stdout);
  }

  void Conclude() {
    if (fault.empty() && (peak < 0.1F || adapted == 0 || lines == 0)) fault = "nothing was heard";
    std::printf("seed %llu, memory %+.2f MB since the first tenth: %s\n",
                static_cast<unsigned long long>(seed),
                (static_cast<double>(memory) - static_cast<double>(firstMemory)) / (1 << 20U),
                fault.empty() ? "good" : fault.c_str());
  }

  static constexpr std::array rateCodes{bench::RateCode::Hz7200, bench::RateCode::Hz12000,
                                        bench::RateCode::Hz18000, bench::RateCode::Hz36000};

  std::chrono::steady_clock::time_point begin = std::chrono::steady_clock::now();
  double wanted;
  std::uint64_t seed;
  bench::RandomSetting settings;
  RandomSource random;
  Engine soaked;
  bench::HostileInput input;
  double secondsDone = 0, nextChange = 0;
  int blocksDone = 0;
  std::size_t cut = 0;  // where a block is cut in two
  std::string fault;
  float peak = 0;
  std::uint64_t hash = 0xCBF29CE484222325;  // of all that left: the same for the same seed on one machine
  std::uint64_t adapted = 0, lines = 0;
  std::size_t firstMemory = 0, memory = 0;
};

}  // namespace

int main(int count, char** arguments) {
  constexpr double most = 1e9;
  const double seconds = count > 1 ? std::strtod(arguments[1], nullptr) : 0;
  if (!(seconds > 0 && seconds <= most) || count > 3) {
    std::fprintf(stderr, "usage: soak_sound SECONDS [SEED]\n");
    return 2;
  }
  const std::uint64_t seed = count > 2 ? std::strtoull(arguments[2], nullptr, 10) : 1;
  return Soak(seconds, seed).Run() ? 0 : 1;
}
