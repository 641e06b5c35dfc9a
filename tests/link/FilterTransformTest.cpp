// Filter taps from magnitudes, against sums that are made another way.
#include <cmath>
#include <complex>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "link/FilterTransform.h"

namespace vc {
namespace {

using Buffer = std::vector<float>;

void Transform(FilterTransform& transform, int size, Buffer& buffer) {
  transform.CalculateIFFT(static_cast<std::int16_t>(size), 1,
                          std::span<float, IfftCapacity>(buffer.data(), IfftCapacity));
}

Buffer RandomMagnitudes(int size) {
  std::mt19937 random(static_cast<unsigned>(size));
  Buffer buffer(IfftCapacity, std::numeric_limits<float>::quiet_NaN());  // what must not be read
  for (int k = 0; k <= size / 2; ++k) {
    buffer[static_cast<std::size_t>(k)] = static_cast<float>(random() % 1000) / 1000.0F;
  }
  return buffer;
}

// The inverse transform of the whole conjugate-symmetric spectrum with the delay of size/2 as its phase.
std::vector<double> DirectSum(const Buffer& magnitude, int size) {
  std::vector<double> taps;
  for (int n = 0; n < size; ++n) {
    std::complex<double> sum;
    for (int k = 0; k < size; ++k) {
      const int bin = k <= size / 2 ? k : size - k;
      const double turn = 2.0 * std::numbers::pi * k * (n - size / 2) / size;
      sum += static_cast<double>(magnitude[static_cast<std::size_t>(bin)]) * std::polar(1.0, turn);
    }
    taps.push_back(sum.real() / size);
  }
  return taps;
}

TEST(CalculateIFFT, AgreesWithADirectSum) {
  FilterTransform transform;  // one for all sizes, in any order
  for (const int size : {2, 4, 6, 8, 10, 12, 90, 246, 254, 256, 480, 976, 1024, 4096, 246}) {
    Buffer buffer = RandomMagnitudes(size);
    const auto expected = DirectSum(buffer, size);
    Transform(transform, size, buffer);
    for (int n = 0; n < size; ++n) {
      const auto i = static_cast<std::size_t>(n);
      ASSERT_NEAR(buffer[i], expected[i], 1e-6) << size << " " << n;
      if (n > 0) {
        ASSERT_EQ(buffer[i], buffer[static_cast<std::size_t>(size - n)]);  // linear phase
      }
    }
  }
}

TEST(CalculateIFFT, LeavesWhatItCannotTransform) {
  FilterTransform transform;
  for (const int size : {-2, 0, 1, 7, 4098}) {
    Buffer buffer(IfftCapacity, 0.5F);
    Transform(transform, size, buffer);
    EXPECT_EQ(buffer, Buffer(IfftCapacity, 0.5F)) << size;
  }
}

}  // namespace
}  // namespace vc
