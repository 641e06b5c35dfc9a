// Live sound: from and to the sound cards of this computer, at the unit's rate.
#include "unit/card/SoundCard.h"

#include <utility>

#include "unit/card/Attendant.h"
#include "unit/card/Capture.h"
#include "unit/card/CardStream.h"
#include "unit/card/Playback.h"
#include "unit/card/PortAudioSide.h"
#include "unit/card/Urgency.h"

namespace unit::sound {

using Stream = std::unique_ptr<CardStream>;

struct OpenOutput {
  OpenOutput(Stream opened, int rate)
      : stream(std::move(opened)), playback(stream->Share(), stream->Rate(), stream->Delay(), rate) {}
  Stream stream;
  Playback playback;
  Urgency urgency;
};

struct OpenInput {
  OpenInput(Stream opened, int rate)
      : stream(std::move(opened)), capture(stream->Share(), stream->Rate(), stream->Delay(), rate) {}
  Stream stream;
  Capture capture;
  Urgency urgency;
};

CardNames SoundCards() {
  constexpr std::chrono::milliseconds patience(2000);
  CardNames names;
  auto attendant = Attendant::Begin(ListCards);
  if (!attendant) return names;
  const auto told = attendant->Hear(patience);
  for (const std::string& each : told.value_or(Records()))
    (each.front() == 'i' ? names.inputs : names.outputs).push_back(each.substr(1));
  return names;
}

CardOutput::CardOutput(std::unique_ptr<OpenOutput> opened) : open(std::move(opened)) {}
CardOutput::~CardOutput() = default;

std::variant<std::unique_ptr<CardOutput>, std::string> CardOutput::Open(const std::string& name, int rate) {
  auto stream = CardStream::Open(name, Direction::Out);
  if (auto* const wrong = std::get_if<std::string>(&stream)) return std::move(*wrong);
  return std::unique_ptr<CardOutput>(
      new CardOutput(std::make_unique<OpenOutput>(std::move(std::get<Stream>(stream)), rate)));
}

void CardOutput::SetRate(int rate) { open->playback.SetRate(rate); }
std::size_t CardOutput::Room() const { return open->playback.Room(); }
void CardOutput::Write(std::span<const float> left, std::span<const float> right) {
  open->playback.Write(left, right);
}
void CardOutput::Rest() { open->playback.Rest(); }
std::uint64_t CardOutput::DropOuts() const { return open->playback.DropOuts(); }
std::string CardOutput::Trouble() const { return open->stream->Trouble(); }
double CardOutput::Latency() const { return open->playback.Latency(); }

CardInput::CardInput(std::unique_ptr<OpenInput> opened) : open(std::move(opened)) {}
CardInput::~CardInput() = default;

std::variant<std::unique_ptr<CardInput>, std::string> CardInput::Open(const std::string& name, int rate) {
  auto stream = CardStream::Open(name, Direction::In);
  if (auto* const wrong = std::get_if<std::string>(&stream)) return std::move(*wrong);
  return std::unique_ptr<CardInput>(
      new CardInput(std::make_unique<OpenInput>(std::move(std::get<Stream>(stream)), rate)));
}

void CardInput::SetRate(int rate) { open->capture.SetRate(rate); }
std::size_t CardInput::Ready() const { return open->capture.Ready(); }
void CardInput::Read(std::span<float> left, std::span<float> right) { open->capture.Read(left, right); }
void CardInput::Rest() { open->capture.Rest(); }
std::uint64_t CardInput::DropOuts() const { return open->capture.DropOuts(); }
std::string CardInput::Trouble() const { return open->stream->Trouble(); }
double CardInput::Latency() const { return open->capture.Latency(); }

}  // namespace unit::sound
