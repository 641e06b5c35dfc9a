// Live sound: from and to the sound cards of this computer, at the unit's rate.
#include "unit/card/SoundCard.h"

#include <algorithm>
#include <utility>

namespace unit::sound {

class CardPlayback {};
class CardCapture {};

CardNames SoundCards() { return {}; }

CardOutput::CardOutput(std::unique_ptr<CardPlayback> opened) : playback(std::move(opened)) {}
CardOutput::~CardOutput() = default;
std::variant<std::unique_ptr<CardOutput>, std::string> CardOutput::Open(const std::string&, int) {
  return std::string("no sound device");
}
void CardOutput::SetRate(int) {}
std::size_t CardOutput::Room() const { return 0; }
void CardOutput::Write(std::span<const float>, std::span<const float>) {}
void CardOutput::Rest() {}
std::uint64_t CardOutput::DropOuts() const { return 0; }
std::string CardOutput::Trouble() const { return {}; }
double CardOutput::Latency() const { return 0; }

CardInput::CardInput(std::unique_ptr<CardCapture> opened) : capture(std::move(opened)) {}
CardInput::~CardInput() = default;
std::variant<std::unique_ptr<CardInput>, std::string> CardInput::Open(const std::string&, int) {
  return std::string("no sound device");
}
void CardInput::SetRate(int) {}
std::size_t CardInput::Ready() const { return 0; }
void CardInput::Read(std::span<float> left, std::span<float> right) {
  std::fill(left.begin(), left.end(), 0.0F);
  std::fill(right.begin(), right.end(), 0.0F);
}
void CardInput::Rest() {}
std::uint64_t CardInput::DropOuts() const { return 0; }
std::string CardInput::Trouble() const { return {}; }
double CardInput::Latency() const { return 0; }

}  // namespace unit::sound
