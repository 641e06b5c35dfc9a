// What is done with PortAudio, each in a process of its own.
#include "unit/card/PortAudioSide.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include <pa_jack.h>
#include <portaudio.h>

namespace unit::sound {
namespace {

constexpr double WishedDelay = 0.01;  // seconds, of the card's own buffer
constexpr std::chrono::milliseconds Look(20);

struct Card {
  PaDeviceIndex index;
  std::string name;
};

int ChannelsOf(const PaDeviceInfo& card, Direction direction) {
  return direction == Direction::In ? card.maxInputChannels : card.maxOutputChannels;
}

std::size_t Alike(const std::vector<Card>& cards, const std::string& name) {
  return static_cast<std::size_t>(
      std::count_if(cards.begin(), cards.end(), [&](const Card& card) { return card.name == name; }));
}

std::vector<Card> CardsOf(Direction direction) {
  std::vector<Card> cards;
  for (PaDeviceIndex i = 0; i < Pa_GetDeviceCount(); ++i) {
    const PaDeviceInfo& card = *Pa_GetDeviceInfo(i);
    if (ChannelsOf(card, direction) > 0) cards.push_back({i, card.name});
  }
  const std::vector<Card> plain = cards;
  for (Card& card : cards) {
    const PaHostApiInfo& kind = *Pa_GetHostApiInfo(Pa_GetDeviceInfo(card.index)->hostApi);
    if (Alike(plain, card.name) > 1) card.name += std::string(" (") + kind.name + ')';
  }
  const std::vector<Card> ofKinds = cards;
  for (std::size_t i = 0; i < cards.size(); ++i) {
    const std::vector<Card> before(ofKinds.begin(), ofKinds.begin() + static_cast<std::ptrdiff_t>(i));
    const std::size_t like = Alike(before, cards[i].name);
    if (like > 0) cards[i].name += " #" + std::to_string(like + 1);
  }
  return cards;
}

struct Opened {
  CardShare& share;
  std::size_t channels;
};

// The sound thread.
int Move(const void* in, void* out, unsigned long frames, const PaStreamCallbackTimeInfo* /*times*/,
         PaStreamCallbackFlags flags, void* user) {
  const auto& [share, channels] = *static_cast<Opened*>(user);
  if (out != nullptr) {
    share.Play({static_cast<float*>(out), frames * channels}, channels, (flags & paOutputUnderflow) != 0);
  } else if (in != nullptr) {
    share.Hear({static_cast<const float*>(in), frames * channels}, channels, (flags & paInputOverflow) != 0);
  }
  return paContinue;
}

std::string Why(PaError error) {
  if (error == paUnanticipatedHostError) {
    const PaHostErrorInfo* const host = Pa_GetLastHostErrorInfo();
    if (host != nullptr && host->errorText != nullptr && *host->errorText != '\0') return host->errorText;
  }
  return Pa_GetErrorText(error);
}

// Of what the system says of a card's delay the most that can be true: JACK says 0 of what is not connected
// yet, and 2^33 samples of other programs.
double DelayOf(PaStream* stream, const PaDeviceInfo& card, Direction direction) {
  constexpr double longest = 2;
  const PaStreamInfo& info = *Pa_GetStreamInfo(stream);
  const bool in = direction == Direction::In;
  double delay = 0;
  for (const double said : {in ? info.inputLatency : info.outputLatency,
                            in ? card.defaultLowInputLatency : card.defaultLowOutputLatency})
    if (said < longest) delay = std::max(delay, said);
  return delay;
}

void Attend(const Employer& employer, const Card& card, Direction direction, CardShare& share) {
  const PaDeviceInfo& device = *Pa_GetDeviceInfo(card.index);
  const int channels = std::min(ChannelsOf(device, direction), 2);
  Opened opened{share, static_cast<std::size_t>(channels)};
  const PaStreamParameters parameters{card.index, channels, paFloat32, WishedDelay, nullptr};
  PaStream* stream = nullptr;
  PaError error = Pa_OpenStream(&stream, direction == Direction::In ? &parameters : nullptr,
                                direction == Direction::Out ? &parameters : nullptr, device.defaultSampleRate,
                                paFramesPerBufferUnspecified, paNoFlag, Move, &opened);
  if (error == paNoError) error = Pa_StartStream(stream);
  if (error != paNoError) return employer.Tell({"wrong", card.name + ": can't be opened: " + Why(error)});
  employer.Tell({"rate", std::to_string(Pa_GetStreamInfo(stream)->sampleRate),
                 std::to_string(DelayOf(stream, device, direction))});
  while (Pa_IsStreamActive(stream) == 1 && employer.Stays(Look)) continue;
  if (Pa_IsStreamActive(stream) != 1) {
    // What is broken is not tidied up: that may never end.
    share.ended.store(true, std::memory_order_release);
    return;
  }
  Pa_AbortStream(stream);
  Pa_CloseStream(stream);
  Pa_Terminate();
}

bool Initialize() {
  PaJack_SetClientName("veltrana-unit");
  return Pa_Initialize() == paNoError;
}

}  // namespace

void ListCards(const Employer& employer) {
  Records names;
  if (Initialize()) {
    for (const Card& card : CardsOf(Direction::In)) names.push_back('i' + card.name);
    for (const Card& card : CardsOf(Direction::Out)) names.push_back('o' + card.name);
  }
  employer.Tell(names);
  Pa_Terminate();
}

void ServeCard(const Employer& employer, const std::string& name, Direction direction, CardShare& share) {
  const std::vector<Card> cards = Initialize() ? CardsOf(direction) : std::vector<Card>();
  const auto card =
      std::find_if(cards.begin(), cards.end(), [&](const Card& each) { return each.name == name; });
  if (cards.empty()) return employer.Tell({"wrong", "no sound device"});
  if (card == cards.end()) {
    const char* const use = direction == Direction::In ? "input" : "output";
    return employer.Tell({"wrong", name + ": there is no such sound card for " + use});
  }
  Attend(employer, *card, direction, share);
}

}  // namespace unit::sound
