// What a fuzzer was given, taken from its front as numbers and texts. Behind its end all is 0 and empty, so
// that every input means something.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace fuzz {

class Input {
 public:
  explicit Input(std::span<const std::uint8_t> bytes) : rest(bytes) {}

  bool AtEnd() const { return rest.empty(); }
  std::uint8_t Byte() {
    if (AtEnd()) return 0;
    const std::uint8_t byte = rest.front();
    rest = rest.subspan(1);
    return byte;
  }
  // Low byte first, 0..65535.
  int Word() {
    const int low = Byte();
    return low | Byte() << 8;
  }
  // 0..limit - 1, with a limit of at most 65536.
  std::size_t Below(std::size_t limit) {
    return static_cast<std::size_t>(limit <= 256 ? Byte() : Word()) % limit;
  }
  std::span<const std::uint8_t> Bytes(std::size_t count) {
    const auto front = rest.first(std::min(count, rest.size()));
    rest = rest.subspan(front.size());
    return front;
  }
  std::string Text(std::size_t count) {
    const auto bytes = Bytes(count);
    return {bytes.begin(), bytes.end()};
  }
  // A part of its own, as long as the word before it says.
  Input Part() { return Input(Bytes(static_cast<std::size_t>(Word()))); }

 private:
  std::span<const std::uint8_t> rest;
};

}  // namespace fuzz
