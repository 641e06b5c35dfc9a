// What the sound thread and the unit share, and all that the sound thread does.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

#include "unit/card/Fader.h"
#include "unit/card/Ring.h"

namespace unit::sound {

// A card's samples lie in a row, frame by frame. Play and Hear are the sound thread's: they take no lock,
// allocate nothing and call nothing of the system. It holds no pointers and may lie in memory that two
// processes share.
struct CardShare {
  Ring ring;                               // at the card's rate
  std::atomic<std::uint64_t> beats{0};     // calls of the sound thread
  std::atomic<std::uint64_t> dropOuts{0};  // that the sound thread has seen
  std::atomic<std::uint32_t> period{0};    // frames that the card takes or gives at a time, at most
  std::atomic<std::uint32_t> enough{0};    // frames in the ring with which playing begins
  std::atomic<bool> resting{true};         // nothing is written or read, by intention
  std::atomic<bool> ended{false};          // no call will come any more

  // Fills a buffer of the card. disturbed: the card says that samples were lost. What is missing is silence,
  // and what comes after it waits until there is enough.
  void Play(std::span<float> buffer, std::size_t channels, bool disturbed);
  // Takes a buffer of the card: one channel is both, of several the first is left and the second right. What
  // finds no room in the ring is lost.
  void Hear(std::span<const float> buffer, std::size_t channels, bool disturbed);

 private:
  void Beat(std::size_t frames);

  // The sound thread's own.
  bool playing = false;
  Fader fader;
};

}  // namespace unit::sound
