#include "unit/clean/Job.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <exception>
#include <limits>
#include <memory>
#include <optional>
#include <utility>
#include <variant>

#include "unit/PartFile.h"
#include "unit/clean/Levels.h"
#include "unit/clean/OutputFormat.h"
#include "unit/clean/Passage.h"
#include "unit/clean/Recording.h"
#include "unit/clean/ReportText.h"
#include "unit/clean/SampleCoder.h"
#include "unit/sound/EncodedFile.h"
#include "unit/sound/Samples.h"
#include "unit/sound/StageSettings.h"

namespace unit::clean {
namespace {

using sound::EncodedFile;

constexpr std::size_t ChunkFrames = 1024;
constexpr std::size_t SendEvery = 1U << 22U;  // samples

Outcome Failure(std::string why, bool flawed = false) {
  return {.error = std::move(why), .flawed = flawed, .report = {}};
}

// In frames of the recording.
struct Part {
  std::uint64_t begin = 0;  // of what is heard
  std::uint64_t from = 0, to = std::numeric_limits<std::uint64_t>::max();
};

std::string Seconds(double seconds) {
  const std::string text = std::to_string(seconds);
  return text.substr(0, text.find('.') + 4) + " s";
}

// Nothing where the wish has no part of the recording.
std::variant<Part, std::string> PartOf(const CleaningWish& wish, const Recording& recording) {
  const auto frames = [&](double seconds) {
    const double most = 1e15;
    return static_cast<std::uint64_t>(std::llround(std::min(seconds * recording.Rate(), most)));
  };
  if (!(wish.from >= 0)) return "the part can't begin before the recording";
  if (wish.to && !(*wish.to > wish.from))
    return "the part ends at " + Seconds(*wish.to) + ", before it has begun";
  Part part;
  part.from = frames(wish.from);
  part.begin = part.from - std::min(part.from, frames(SecondsBefore));
  if (wish.to) part.to = frames(*wish.to);
  const std::uint64_t there = recording.Frames();
  if (there > 0 && part.from > 0 && part.from >= there) {
    return wish.in + ": ends at " + Seconds(static_cast<double>(there) / recording.Rate()) +
           ", before the part begins";
  }
  return part;
}

void Furnish(sound::Engine& engine, const CleaningWish& wish) {
  Setting setting = wish.setting;
  if (wish.adaptive == Learning::Kept) sound::FreezeAdaptive(setting);
  engine.Apply(setting);
  if (wish.adaptive == Learning::Kept) engine.TakeLearned(setting);
}

class Job {
 public:
  Job(const CleaningWish& wanted, Recording opened, const Part& wantedPart, OutputFormat outputFormat,
      EncodedFile created, sound::Engine& chain)
      : wish(wanted),
        recording(std::move(opened)),
        part(wantedPart),
        format(std::move(outputFormat)),
        output(std::move(created)),
        engine(chain),
        channels(recording.Channels()),
        unconverted(recording.Rate() == engine.SampleRate()),
        coder(format.bits),
        before(channels, recording.Rate(), SampleCoder(BitsOf(recording.Format())).FullScale()),
        after(channels, recording.Rate(), coder.FullScale()),
        passage([this](std::span<float> samples) { Hear(samples); }, channels, recording.Rate(), engine),
        heardAt(part.begin),
        at(part.begin) {}

  Outcome Run(const std::atomic<bool>& cancelled, std::atomic<double>& done) {
    const auto begun = std::chrono::steady_clock::now();
    if (!recording.Skip(part.begin, cancelled)) return {};
    while (!cancelled && at < End()) {
      if (!Step()) return Failure(output.Failure());
      if (Outcome wrong = Trouble(); !wrong.error.empty()) return wrong;
      done = Progress();
    }
    if (Outcome wrong = Trouble(); !wrong.error.empty()) return wrong;
    if (cancelled) return {};
    if (recording.Ended() && part.from > 0 && part.from >= recording.Frames())
      return Failure(wish.in + ": ends before the part begins");
    if (!output.Close()) return Failure(output.Failure());
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begun;
    return {.error = {}, .report = ReportLines(wish, Done(taken.count()))};
  }

 private:
  std::uint64_t End() const { return recording.Ended() ? std::min(part.to, recording.Frames()) : part.to; }

  double Progress() const {
    const std::uint64_t end = std::min(part.to, std::max(recording.LikelyFrames(), at));
    const auto whole = static_cast<double>(std::max<std::uint64_t>(end - part.begin, 1));
    return std::min(static_cast<double>(at - part.begin) / whole, 1.0);
  }

  Outcome Trouble() const {
    if (!recording.Failure().empty()) return Failure(recording.Failure());
    if (!wish.lenient && recording.Flaws().Any()) return Failure(recording.Flaws().Text(), true);
    return {};
  }

  // What the passage hears. Where nothing is converted, the samples are kept as the file has them.
  void Hear(std::span<float> samples) {
    heard.resize(samples.size());
    const std::uint64_t first = heardAt;
    const std::uint64_t frames = recording.Read(heard);
    heardAt += samples.size() / channels;
    std::ranges::transform(heard, samples.begin(), [](double sample) { return static_cast<float>(sample); });
    if (unconverted) originals.Push(heard);
    const std::uint64_t from = std::clamp(part.from, first, first + frames);
    const std::uint64_t to = std::clamp(part.to, from, first + frames);
    before.Take(std::span<const double>(heard).subspan((from - first) * channels, (to - from) * channels));
  }

  // What lies before the part ends with a chunk, so that the part begins with one.
  bool Step() {
    const std::uint64_t border = at < part.from ? part.from : part.to;
    const std::size_t frames = std::min<std::uint64_t>(ChunkFrames, border - at);
    const std::span<float> cleaned = std::span(made).first(frames * channels);
    passage.Read(cleaned);
    const std::span<const double> were =
        unconverted ? originals.Take(cleaned.size()) : std::span<const double>();
    const std::uint64_t first = at;
    at += frames;
    if (first < part.from) return true;
    const std::size_t counted = std::min<std::uint64_t>(frames, std::max(End(), first) - first) * channels;
    for (std::size_t i = 0; i < counted; ++i) coded[i] = Coded(cleaned[i], unconverted ? &were[i] : nullptr);
    at = first + counted / channels;
    return Write(std::span<const double>(coded).first(counted));
  }

  // was: of the same moment in the file, as it is there; null where the sound has been converted.
  double Coded(float sample, const double* was) {
    const bool same = was != nullptr && sample == sound::Tame(static_cast<float>(*was));
    changed = changed || !same;
    return coder.Coded(same ? *was : double{sample});
  }

  bool Write(std::span<const double> samples) {
    after.Take(samples);
    unsent += samples.size();
    if (unsent > SendEvery) {
      output.SendToDisk();
      unsent = 0;
    }
    if (format.bits == 0) return output.Write(samples);
    std::ranges::transform(samples, codes.begin(), CodeOf);
    return output.Write(std::span<const int>(codes).first(samples.size()));
  }

  Deed Done(double seconds) const {
    bool adaptive = false;
    for (std::size_t position = 1; position <= PageCount; ++position) {
      adaptive = adaptive || !engine.Learned(position).empty();
    }
    return {.rate = recording.Rate(),
            .channels = channels,
            .from = part.from,
            .to = at,
            .format = format,
            .unitRate = engine.SampleRate(),
            .adaptive = adaptive,
            .changed = changed,
            .dithered = coder.Dithers(),
            .before = before.Report(),
            .after = after.Report(),
            .flaws = recording.Flaws().Text(),
            .seconds = seconds};
  }

  const CleaningWish& wish;
  Recording recording;
  Part part;
  OutputFormat format;
  EncodedFile output;
  sound::Engine& engine;
  std::size_t channels;
  bool unconverted;  // the unit's rate is the recording's
  SampleCoder coder;
  Levels before, after;
  Passage passage;
  std::uint64_t heardAt, at;  // the next frame that is heard, and that is written
  bool changed = false;
  std::size_t unsent = 0;  // samples
  std::vector<double> heard;
  Fifo<double> originals;
  std::array<float, 2 * ChunkFrames> made{};
  std::array<double, 2 * ChunkFrames> coded{};
  std::array<int, 2 * ChunkFrames> codes{};
};

Outcome CleanOpened(const CleaningWish& wish, Recording recording, const std::atomic<bool>& cancelled,
                    std::atomic<double>& done) {
  if (recording.Flaws().Any() && !wish.lenient) return Failure(recording.Flaws().Text(), true);
  const auto part = PartOf(wish, recording);
  if (const auto* const wrong = std::get_if<std::string>(&part)) return Failure(*wrong);
  const int rate = recording.Rate(), channels = static_cast<int>(recording.Channels());
  const auto format = OutputFormatFor(wish.out, recording.Format(), rate, channels);
  if (const auto* const wrong = std::get_if<std::string>(&format)) return Failure(*wrong);
  const auto& chosen = std::get<OutputFormat>(format);
  auto output = EncodedFile::Create(wish.out, {.rate = rate, .channels = channels, .format = chosen.format});
  if (const auto* const wrong = std::get_if<std::string>(&output)) return Failure(*wrong);
  const auto engine = std::make_unique<sound::Engine>();
  Furnish(*engine, wish);
  const auto job = std::make_unique<Job>(wish, std::move(recording), std::get<Part>(part), chosen,
                                         std::move(std::get<EncodedFile>(output)), *engine);
  return job->Run(cancelled, done);
}

}  // namespace

Outcome Clean(const CleaningWish& wish, const std::atomic<bool>& cancelled, std::atomic<double>& done) {
  const std::string written = WrittenOver(wish.out, wish.in);
  if (!written.empty()) return Failure(written + ": is the recording itself, so it is not written");
  try {
    auto recording = Recording::Open(wish.in);
    if (auto* const wrong = std::get_if<std::string>(&recording)) return Failure(std::move(*wrong));
    return CleanOpened(wish, std::move(std::get<Recording>(recording)), cancelled, done);
  } catch (const std::exception& fault) {
    return Failure(wish.in + ": can't be cleaned: " + fault.what());
  }
}

}  // namespace unit::clean
