// Sound that goes on in time: from a file or the built-in scene, through the engine, into a file.
#include "unit/sound/LiveSound.h"

#include <algorithm>
#include <array>
#include <utility>

#include "unit/Commands.h"
#include "unit/PartFile.h"

namespace unit::sound {
namespace {

constexpr std::uint8_t StageReset = 89, BroadbandReset = 113, AnalyzerRun = 150;
constexpr double LongestDelay = 500'000;  // microseconds
constexpr const char* Leniency = " (--lenient takes it as it is)";

// "clean.wav", then "clean-2.wav": a file has one rate.
std::string NameOf(const std::string& path, int number) {
  if (number == 1) return path;
  const std::size_t slash = path.find_last_of('/');
  const std::size_t name = slash == std::string::npos ? 0 : slash + 1;
  const std::size_t dot = path.find_last_of('.');
  const std::size_t end = dot == std::string::npos || dot <= name ? path.size() : dot;
  return path.substr(0, end) + '-' + std::to_string(number) + path.substr(end);
}

bool ChangesNothing(const Frame& frame) {
  if (frame.kind == Frame::Kind::Packet) return true;
  const Command* const command = FindCommand(frame.number);
  return command == nullptr || command->answer != Answer::Acknowledge;
}

}  // namespace

std::variant<std::unique_ptr<LiveSound>, std::string> LiveSound::Open(const SoundOptions& options) {
  const int rate = Engine().SampleRate();
  Source source = Scene(rate, options.seed, {});
  if (!options.in.empty()) {
    auto opened = SoundReader::Open(options.in, rate, options.looped);
    if (auto* const wrong = std::get_if<std::string>(&opened)) return std::move(*wrong);
    auto& reader = std::get<SoundReader>(opened);
    if (reader.Flawed() && !options.lenient) return reader.Flaw() + Leniency;
    source = std::move(reader);
  }
  std::unique_ptr<LiveSound> sound(new LiveSound(std::move(source), options));
  std::string trouble;
  sound->failed = [&trouble](const std::string& what) { trouble = what; };
  if (!options.out.empty()) sound->BeginFile();
  if (!trouble.empty()) return trouble;
  sound->failed = [](const std::string&) {};
  return sound;
}

LiveSound::LiveSound(Source heard, SoundOptions wanted)
    : source(std::move(heard)), options(std::move(wanted)), rate(engine.SampleRate()) {}

void LiveSound::Attach(Unit& unit) {
  attached = &unit;
  changed = true;
  unit.sound.runUntil = [this](std::int64_t now) { RunUntil(now); };
  unit.sound.taken = [this](const Frame& frame) { Follow(frame); };
  unit.sound.recalled = [this] {
    engine.Recall(attached->Held());
    changed = false;
  };
  unit.sound.status = [this] { return engine.Readings(); };
  unit.sound.spectrum = [this](unsigned trace) { return engine.Lines(trace); };
  unit.sound.learn = [this](unsigned position, std::span<const std::int32_t> coefficients) {
    Settle();
    engine.Learn(position, coefficients);
  };
  unit.sound.learned = [this](unsigned position) {
    Settle();
    return engine.Learned(position);
  };
  unit.sound.designed = [this](unsigned position) {
    Settle();
    return engine.Designed(position);
  };
}

void LiveSound::Follow(const Frame& frame) {
  if (ChangesNothing(frame)) return;
  changed = true;
  if (frame.number == StageReset) engine.ResetStages(frame.argument);
  if (frame.number == BroadbandReset) engine.ResetBroadband(frame.argument);
  if (frame.number == AnalyzerRun) engine.ClearTraces(frame.argument);
  if (frame.number == SynthesizeCode) TakeTables(SynthesisOf(frame.argument));
}

// What the host sends to an adaptive filter is what it is to have learned.
void LiveSound::TakeTables(const Synthesis& synthesis) {
  Settle();
  const Stages& stages = attached->HeldStages();
  for (unsigned each = 0; each < stages.TablesOf(synthesis); ++each) {
    const unsigned position = synthesis.position + each;
    engine.Learn(position, stages.At(position).coefficients);
  }
}

void LiveSound::Settle() {
  if (attached == nullptr || !std::exchange(changed, false)) return;
  engine.Apply(attached->Held());
}

void LiveSound::RunUntil(std::int64_t now) {
  const auto until = static_cast<double>(now);
  if (until - done > LongestDelay) done = until - LongestDelay;
  while (done + BlockTime() <= until) RunBlock();
}

void LiveSound::RunBlock() {
  Settle();
  FollowRate();
  std::array<float, BlockFrames> left, right;
  Listen(left, right);
  engine.Process(left, right, left, right);
  if (writer) {
    const std::string failure = writer->Write(left, right);
    if (!failure.empty()) Fail(failure);
  }
  done += BlockTime();
  seconds += static_cast<double>(BlockFrames) / rate;
}

std::string LiveSound::SetSource(const std::string& path) {
  if (path.empty()) {
    source = Scene(rate, options.seed, {});
  } else {
    auto opened = SoundReader::Open(path, rate, false);
    if (auto* const wrong = std::get_if<std::string>(&opened)) return *wrong;
    source = std::move(std::get<SoundReader>(opened));
  }
  options.in = path;
  flawTold = false;
  playing = path.empty();
  return {};
}

std::string LiveSound::SetPlaying(bool plays) {
  playing = plays;
  return {};
}

void LiveSound::Listen(std::span<float> left, std::span<float> right) {
  if (!playing) {
    std::ranges::fill(left, 0.0F);
    std::ranges::fill(right, 0.0F);
    return;
  }
  if (auto* const scene = std::get_if<Scene>(&source)) return scene->Process(left, right);
  auto& reader = std::get<SoundReader>(source);
  reader.Read(left, right);
  if (reader.Flawed() && !options.lenient) TellFlaw(reader);
}

void LiveSound::TellFlaw(const SoundReader& reader) {
  if (std::exchange(flawTold, true)) return;
  whole = options.lenient;
  failed(reader.Flaw() + (options.lenient ? "" : Leniency));
}

// A file that holds some sound already is complete.
void LiveSound::FollowRate() {
  if (rate == engine.SampleRate()) return;
  rate = engine.SampleRate();
  std::visit([this](auto& each) { each.SetRate(rate); }, source);
  if (!writer) return;
  if (seconds == 0) {
    writer.reset();
    files = 0;
  }
  EndFile();
  BeginFile();
}

// The recording may bear the name of a later file as well.
void LiveSound::BeginFile() {
  const std::string name = NameOf(options.out, ++files);
  for (const std::string& written : {name, PartFile::PartOf(name)}) {
    if (IsSameFile(options.in, written))
      return Fail(written + ": is the file that is heard, so it is not written");
  }
  auto created = SoundWriter::Create(name, rate);
  if (const auto* const wrong = std::get_if<std::string>(&created)) return Fail(*wrong);
  writer.emplace(std::move(std::get<SoundWriter>(created)));
}

void LiveSound::Fail(const std::string& what) {
  whole = false;
  writer.reset();
  failed(what);
}

bool LiveSound::InputEnded() const {
  const auto* const file = std::get_if<SoundReader>(&source);
  return file != nullptr && file->Ended();
}

void LiveSound::EndFile() {
  if (!writer) return;
  const std::string failure = writer->Close();
  writer.reset();
  if (!failure.empty()) Fail(failure);
}

void LiveSound::Close() {
  EndFile();
  const auto* const reader = std::get_if<SoundReader>(&source);
  if (reader != nullptr && reader->Flawed()) TellFlaw(*reader);
}

}  // namespace unit::sound
