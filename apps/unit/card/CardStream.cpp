// A card that is open, in the process that attends to it.
#include "unit/card/CardStream.h"

#include <cmath>
#include <cstdlib>
#include <new>
#include <utility>

#include <sys/mman.h>

namespace unit::sound {
namespace {

constexpr std::chrono::milliseconds Patience(2000);  // with a sound system that does not answer
constexpr std::chrono::milliseconds FirstSilence(2000), LongestSilence(500);

}  // namespace

bool Pulse::Stopped(std::uint64_t count, Clock::time_point now) {
  if (count != last) since = now;
  last = count;
  return now - since > (count == 0 ? FirstSilence : LongestSilence);
}

void CardStream::Unmap::operator()(CardShare* shared) const {
  shared->~CardShare();
  munmap(shared, sizeof *shared);
}

// Locked where the system lets it be, so that the sound thread finds it in memory.
CardStream::Shared CardStream::Map() {
  void* const memory =
      mmap(nullptr, sizeof(CardShare), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) return nullptr;
  mlock(memory, sizeof(CardShare));
  return Shared(new (memory) CardShare);
}

std::variant<std::unique_ptr<CardStream>, std::string> CardStream::Open(const std::string& name,
                                                                        Direction direction) {
  Shared share = Map();
  if (!share) return name + ": there is no memory for a sound card";
  auto attendant =
      Attendant::Begin([&](const Employer& employer) { ServeCard(employer, name, direction, *share); });
  if (!attendant) return name + ": there is no process for a sound card";
  const auto answer = attendant->Hear(Patience);
  if (!answer) return name + ": the sound system does not answer";
  if (answer->size() != 3) return answer->back();
  std::unique_ptr<CardStream> stream(new CardStream(name, std::move(share), std::move(*attendant)));
  stream->rate = static_cast<int>(std::lround(std::strtod((*answer)[1].c_str(), nullptr)));
  stream->delay = std::strtod((*answer)[2].c_str(), nullptr);
  return stream;
}

std::string CardStream::Trouble() {
  if (!trouble.empty()) return trouble;
  if (share->ended.load(std::memory_order_acquire) || !attendant.Alive()) {
    trouble = name + ": the sound card is gone";
  } else if (pulse.Stopped(share->beats.load(std::memory_order_acquire), Pulse::Clock::now())) {
    trouble = name + ": the sound card has stopped";
  }
  return trouble;
}

}  // namespace unit::sound
