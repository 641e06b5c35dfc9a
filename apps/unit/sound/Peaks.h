// The waveform of a whole file, found beside everything else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace unit::sound {

// A thread of its own reads the file once, from the start; so the file is also in the system's memory before
// it is played. It ends with this object, which does not wait for it.
class Peaks {
 public:
  // Nothing is found in a file that can't be read or has no known length.
  explicit Peaks(const std::string& path);
  ~Peaks();
  Peaks(const Peaks&) = delete;
  Peaks& operator=(const Peaks&) = delete;

  // How much of the file was read, 0..1; 1 once nothing more will come.
  double Loaded() const;

  struct Extents {
    std::vector<std::int32_t> low, high;  // hundred-thousandths of full scale, of all channels together
  };
  static constexpr std::size_t MostParts = 4096;
  // Of the file in that many even parts, 1..MostParts, as far as they were read: fewer than `parts` until it
  // is loaded, and of a file that is shorter than it says.
  Extents In(std::size_t parts) const;

 private:
  struct Shared;
  std::shared_ptr<Shared> shared;  // with the thread, which may outlive this
};

}  // namespace unit::sound
