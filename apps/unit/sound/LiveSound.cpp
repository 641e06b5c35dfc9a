// Sound that goes on in time: from what is heard, through the engine, to where it is to go.
#include "unit/sound/LiveSound.h"

#include <algorithm>
#include <array>
#include <utility>

#include "unit/Commands.h"

namespace unit::sound {
namespace {

constexpr std::uint8_t StageReset = 89, BroadbandReset = 113, AnalyzerRun = 150;
constexpr double LongestDelay = 500'000;  // microseconds
constexpr const char* Leniency = " (--lenient takes it as it is)";

bool ChangesNothing(const Frame& frame) {
  if (frame.kind == Frame::Kind::Packet) return true;
  const Command* const command = FindCommand(frame.number);
  return command == nullptr || command->answer != Answer::Acknowledge;
}

}  // namespace

std::variant<std::unique_ptr<LiveSound>, std::string> LiveSound::Open(const SoundOptions& options) {
  const SourceWish wish{.kind = options.in.empty() ? SourceKind::Scene : SourceKind::File,
                        .name = options.in,
                        .looped = options.looped,
                        .seed = options.seed};
  auto opened = SoundSource::Open(wish, Engine().SampleRate());
  if (auto* const wrong = std::get_if<std::string>(&opened)) return std::move(*wrong);
  auto& source = std::get<SoundSource>(opened);
  const SoundReader* const file = source.File();
  if (file != nullptr && file->Flawed() && !options.lenient) return file->Flaw() + Leniency;
  std::unique_ptr<LiveSound> sound(new LiveSound(std::move(source), options));
  if (options.out.empty()) return sound;
  std::string wrong = sound->SetSink(SinkKind::File, options.out);
  if (!wrong.empty()) return wrong;
  return sound;
}

LiveSound::LiveSound(SoundSource heard, SoundOptions wanted)
    : source(std::move(heard)), options(std::move(wanted)), rate(engine.SampleRate()) {}

std::string LiveSound::WhyNotHeard(const std::string& path) const {
  const auto* const series = std::get_if<FileSeries>(&sink);
  return series != nullptr && series->Writes(path) ? path + ": is being written" : "";
}

std::string LiveSound::SetAfter(const std::string& path, double begins) {
  if (source.File() == nullptr) return "only a recording that is heard can have become a file";
  std::string wrong = WhyNotHeard(path);
  if (!wrong.empty()) return wrong;
  auto opened = CleanedSound::Open(path, begins, rate);
  if (auto* const why = std::get_if<std::string>(&opened)) return std::move(*why);
  after.emplace(std::get<CleanedSound>(std::move(opened)));
  return {};
}

std::string LiveSound::SetSource(const SourceWish& wish) {
  if (wish.kind == SourceKind::File) {
    std::string wrong = WhyNotHeard(wish.name);
    if (!wrong.empty()) return wrong;
  }
  if (wish.kind == SourceKind::Card || source.Card() != nullptr) RestCards();
  auto opened = SoundSource::Open(wish, rate);
  if (auto* const wrong = std::get_if<std::string>(&opened)) return std::move(*wrong);
  source = std::get<SoundSource>(std::move(opened));
  after.reset();
  flawCounts = cardLost = false;
  const bool file = wish.kind == SourceKind::File;
  if (file) source.SetPlaying(false);
  peaks = file ? std::make_unique<Peaks>(wish.name) : nullptr;
  return {};
}

// The new one is there before the old one goes.
std::string LiveSound::SetSink(SinkKind kind, const std::string& name) {
  SoundSink next;
  if (kind == SinkKind::File) {
    auto begun = FileSeries::Begin(name, rate, HeardFile());
    if (auto* const wrong = std::get_if<std::string>(&begun)) return std::move(*wrong);
    next = std::get<FileSeries>(std::move(begun));
  } else if (kind == SinkKind::Card) {
    if (PlayedCard() != nullptr && cardName == name) return {};
    RestCards();
    auto opened = CardOutput::Open(name, rate);
    if (auto* const wrong = std::get_if<std::string>(&opened)) return std::move(*wrong);
    next = std::get<0>(std::move(opened));
  }
  if (PlayedCard() != nullptr) RestCards();
  EndSink();
  sink = std::move(next);
  cardName = kind == SinkKind::Card ? name : "";
  return {};
}

void LiveSound::Attach(Unit& unit) {
  attached = &unit;
  changed = true;
  if (source.File() != nullptr && source.File()->What().seekable)
    peaks = std::make_unique<Peaks>(source.Name());
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

// A block takes its time, too: the line gets its turn after so many at the latest.
void LiveSound::RunUntil(std::int64_t now) {
  constexpr int mostBlocks = 8;
  reached = now;
  const auto until = static_cast<double>(now);
  if (until - done > LongestDelay) done = until - LongestDelay;
  CheckCards();
  if (!OnCards()) {
    while (done + BlockTime() <= until) RunBlock();
    return;
  }
  for (int blocks = 0; blocks < mostBlocks && FramesDue() >= BlockFrames; ++blocks) RunBlock();
  done = until;
}

std::size_t LiveSound::FramesDue() const {
  const CardOutput* const card = PlayedCard();
  return card != nullptr ? card->Room() : HeardCard()->Ready();
}

std::int64_t LiveSound::NextBlock() const {
  if (!OnCards()) return static_cast<std::int64_t>(done + BlockTime());
  // A card moves in steps of its own, which come when they come.
  constexpr double shortest = 1000;  // microseconds
  const std::size_t frames = FramesDue();
  if (frames >= BlockFrames) return reached;
  const double missing = 1e6 * static_cast<double>(BlockFrames - frames) / rate;
  return reached + static_cast<std::int64_t>(std::max(missing, shortest));
}

void LiveSound::RunBlock() {
  Settle();
  FollowRate();
  std::array<float, BlockFrames> left, right, outLeft, outRight;
  const SoundReader* const file = source.File();
  const auto second = file != nullptr && source.Playing() ? std::optional(file->Position()) : std::nullopt;
  source.Read(left, right);
  TellFlaw(false);
  engine.Process(left, right, outLeft, outRight);
  Put({left, right}, {outLeft, outRight}, second);
  done += BlockTime();
  seconds += static_cast<double>(BlockFrames) / rate;
}

void LiveSound::Put(const Comparison::Input& heard, const Comparison::Stereo& processed,
                    std::optional<double> second) {
  if (auto* const series = std::get_if<FileSeries>(&sink)) {
    const std::string failure = series->Write(processed[0], processed[1]);
    if (!failure.empty()) Fail(failure);
  }
  CardOutput* const card = PlayedCard();
  if (card == nullptr) return;
  const bool inStep = after && second;
  if (inStep) after->Read(*second, processed[0], processed[1]);
  comparison.Process(heard, processed, inStep ? std::array<std::size_t, 2>{} : engine.Latency());
  card->Write(processed[0], processed[1]);
}

// Of what a lenient one takes it is told at the end.
void LiveSound::TellFlaw(bool atEnd) {
  const SoundReader* const file = source.File();
  if (!flawCounts || file == nullptr || !file->Flawed() || (options.lenient && !atEnd)) return;
  flawCounts = false;
  whole = whole && options.lenient;
  failed(file->Flaw() + (options.lenient ? "" : Leniency));
}

void LiveSound::FollowRate() {
  if (rate == engine.SampleRate()) return;
  rate = engine.SampleRate();
  source.SetRate(rate);
  if (after) after->SetRate(rate);
  comparison.SetRate(rate);
  if (CardOutput* const card = PlayedCard()) card->SetRate(rate);
  if (auto* const series = std::get_if<FileSeries>(&sink)) {
    const std::string failure = series->SetRate(rate, HeardFile());
    if (!failure.empty()) Fail(failure);
  }
}

CardOutput* LiveSound::PlayedCard() const {
  const auto* const card = std::get_if<std::unique_ptr<CardOutput>>(&sink);
  return card != nullptr ? card->get() : nullptr;
}

CardInput* LiveSound::HeardCard() const { return cardLost ? nullptr : source.Card(); }

std::string LiveSound::HeardFile() const { return source.File() != nullptr ? source.Name() : ""; }

// A card that has gone gives no beat any more.
void LiveSound::CheckCards() {
  if (const CardOutput* const card = PlayedCard(); card != nullptr && !card->Trouble().empty()) {
    const std::string trouble = card->Trouble();
    sink = std::monostate();
    cardName.clear();
    LoseCard(trouble);
  }
  const CardInput* const card = HeardCard();
  if (card == nullptr || card->Trouble().empty()) return;
  cardLost = true;
  LoseCard(card->Trouble());
}

// While a card is opened or closed nothing is processed.
void LiveSound::RestCards() {
  if (CardOutput* const card = PlayedCard()) card->Rest();
  if (CardInput* const card = HeardCard()) card->Rest();
}

void LiveSound::LoseCard(const std::string& trouble) {
  source.SetPlaying(false);
  failed(trouble);
}

std::uint64_t LiveSound::DropOuts() const {
  const CardOutput* const played = PlayedCard();
  const CardInput* const heard = HeardCard();
  return (played != nullptr ? played->DropOuts() : 0) + (heard != nullptr ? heard->DropOuts() : 0);
}

double LiveSound::Latency() const {
  const CardOutput* const played = PlayedCard();
  const CardInput* const heard = HeardCard();
  const std::array<std::size_t, 2> chain = engine.Latency();
  return (played != nullptr ? played->Latency() : 0) + (heard != nullptr ? heard->Latency() : 0) +
         static_cast<double>(std::max(chain[0], chain[1])) / rate;
}

void LiveSound::Fail(const std::string& what) {
  whole = false;
  sink = std::monostate();
  failed(what);
}

bool LiveSound::InputEnded() const { return source.File() != nullptr && source.File()->Ended(); }

void LiveSound::EndSink() {
  auto* const series = std::get_if<FileSeries>(&sink);
  const std::string failure = series != nullptr ? series->Close() : "";
  sink = std::monostate();
  if (!failure.empty()) Fail(failure);
}

void LiveSound::Close() {
  EndSink();
  TellFlaw(true);
}

}  // namespace unit::sound
