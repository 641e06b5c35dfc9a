// Keeps two clocks together that are not the same.
#pragma once

#include <algorithm>

namespace unit::sound {

// What comes by one clock and is taken by another lies in a ring meanwhile. It is taken a little faster while
// there is too much of it and slower while there is too little: so slowly that no ear follows.
class Steering {
 public:
  // surplus: seconds of sound more than there should be, as it is now; elapsed: seconds since the last call.
  // Gives how much faster it is to be taken: 1 +- Most.
  double Speed(double surplus, double elapsed) {
    mean += (surplus - mean) * std::min(elapsed / MeanSeconds, 1.0);
    return 1 + std::clamp(mean / PullSeconds, -Most, Most);
  }
  void Reset() { mean = 0; }

  static constexpr double Most = 0.003;  // 5 cents

 private:
  static constexpr double MeanSeconds = 1;   // over which the coming and going of blocks is levelled
  static constexpr double PullSeconds = 10;  // in which most of a surplus goes; 100 ppm apart, 1 ms stays
  double mean = 0;
};

}  // namespace unit::sound
