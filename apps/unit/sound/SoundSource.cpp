#include "unit/sound/SoundSource.h"

#include <algorithm>
#include <utility>

namespace unit::sound {
namespace {

constexpr const char* NoFile = "only a file has places to go to";

template <typename Opened>
std::string* WrongOf(Opened& opened) {
  return std::get_if<std::string>(&opened);
}

}  // namespace

std::variant<SoundSource, std::string> SoundSource::Open(const SourceWish& wish, int rate) {
  switch (wish.kind) {
    case SourceKind::Scene:
      return SoundSource(Scene(rate, wish.seed, {}), {});
    case SourceKind::File: {
      auto opened = SoundReader::Open(wish.name, rate, wish.looped);
      if (std::string* const wrong = WrongOf(opened)) return std::move(*wrong);
      return SoundSource(std::get<SoundReader>(std::move(opened)), wish.name);
    }
    case SourceKind::Card: {
      auto opened = CardInput::Open(wish.name, rate);
      if (std::string* const wrong = WrongOf(opened)) return std::move(*wrong);
      return SoundSource(std::get<0>(std::move(opened)), wish.name);
    }
  }
  return "no such source";
}

CardInput* SoundSource::Card() const {
  const auto* const card = std::get_if<std::unique_ptr<CardInput>>(&sound);
  return card != nullptr ? card->get() : nullptr;
}

void SoundSource::SetRate(int rate) {
  if (CardInput* const card = Card()) return card->SetRate(rate);
  if (SoundReader* const file = File()) return file->SetRate(rate);
  std::get<Scene>(sound).SetRate(rate);
}

// A card goes on while it is not heard, so it is read in any case.
void SoundSource::Read(std::span<float> left, std::span<float> right) {
  CardInput* const card = Card();
  if (card != nullptr) card->Read(left, right);
  if (!playing) {
    std::ranges::fill(left, 0.0F);
    std::ranges::fill(right, 0.0F);
    return;
  }
  if (card != nullptr) return;
  SoundReader* const file = File();
  if (file == nullptr) return std::get<Scene>(sound).Process(left, right);
  file->Read(left, right);
  playing = !file->Ended();
}

std::string SoundSource::SetPlaying(bool plays) {
  SoundReader* const file = File();
  if (plays && file != nullptr && file->Ended() && !file->Seek(0)) {
    return name + ": is at its end and can't be played again, as it is no file on a disk";
  }
  const CardInput* const card = Card();
  if (plays && card != nullptr && !card->Trouble().empty()) return card->Trouble();
  playing = plays;
  return {};
}

std::string SoundSource::Seek(double second) {
  SoundReader* const file = File();
  if (file == nullptr) return NoFile;
  return file->Seek(second) ? "" : name + ": can't go to another place of it";
}

std::string SoundSource::SetLoop(const std::optional<SoundReader::Loop>& loop) {
  SoundReader* const file = File();
  if (file == nullptr) return NoFile;
  if (file->SetLoop(loop)) return {};
  return file->What().seekable ? "a loop takes 0.05 seconds of the file at least"
                               : name + ": can't go to another place of it";
}

}  // namespace unit::sound
