// Samples that were made and are not used yet.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

namespace unit::clean {

template <typename Sample>
class Fifo {
 public:
  std::size_t Size() const { return samples.size() - first; }
  void Push(std::span<const Sample> more) {
    if (first > samples.size() / 2) Drop();
    samples.insert(samples.end(), more.begin(), more.end());
  }
  // The oldest; at most Size() of them, until the next Push.
  std::span<const Sample> Take(std::size_t count) {
    first += count;
    return std::span(samples).subspan(first - count, count);
  }

 private:
  void Drop() {
    samples.erase(samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(first));
    first = 0;
  }

  std::vector<Sample> samples;
  std::size_t first = 0;
};

}  // namespace unit::clean
