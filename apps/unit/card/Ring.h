// Frames from one thread to another, neither of which waits for the other.
#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

namespace unit::sound {

using StereoFrame = std::array<float, 2>;  // left, right

// For one thread that pushes and one that pops. It holds no pointers, so that it can lie in memory that two
// processes share.
class Ring {
 public:
  static constexpr std::size_t Capacity = 32768;  // 0.17 s at 192 kHz

  std::size_t Fill() const {
    const std::uint64_t before = popped.load(std::memory_order_acquire);
    return pushed.load(std::memory_order_acquire) - before;
  }

  // How many of the frames found room; the others are lost.
  std::size_t Push(std::span<const StereoFrame> frames) {
    const std::uint64_t end = pushed.load(std::memory_order_relaxed);
    const std::size_t room = Capacity - (end - popped.load(std::memory_order_acquire));
    const std::size_t count = std::min(frames.size(), room);
    for (std::size_t i = 0; i < count; ++i) held[(end + i) % Capacity] = frames[i];
    pushed.store(end + count, std::memory_order_release);
    return count;
  }

  // How many there were; the others are as before.
  std::size_t Pop(std::span<StereoFrame> frames) {
    const std::uint64_t begin = popped.load(std::memory_order_relaxed);
    const std::size_t count = std::min(frames.size(), Waiting(begin));
    for (std::size_t i = 0; i < count; ++i) frames[i] = held[(begin + i) % Capacity];
    popped.store(begin + count, std::memory_order_release);
    return count;
  }

  // Pops frames, or all that there are, unheard.
  void Skip(std::size_t frames) {
    const std::uint64_t begin = popped.load(std::memory_order_relaxed);
    popped.store(begin + std::min(frames, Waiting(begin)), std::memory_order_release);
  }

 private:
  static_assert(std::atomic<std::uint64_t>::is_always_lock_free);
  static constexpr std::size_t CacheLine = 64;

  std::size_t Waiting(std::uint64_t begin) const { return pushed.load(std::memory_order_acquire) - begin; }

  alignas(CacheLine) std::atomic<std::uint64_t> pushed{0};  // ever
  alignas(CacheLine) std::atomic<std::uint64_t> popped{0};
  alignas(CacheLine) std::array<StereoFrame, Capacity> held{};
};

}  // namespace unit::sound
