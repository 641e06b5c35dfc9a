// The inner loops themselves. Kernels.cpp includes this once for each kind of machine, in a namespace of its
// own and with Width, the lanes of that machine's vectors.

using Lanes = float __attribute__((vector_size(Width * sizeof(float))));
// The same anywhere in an array of samples.
struct __attribute__((packed, may_alias)) LoadedLanes {
  Lanes lanes;
};

// In halves, so that few additions wait for each other.
float SumOf(const Lanes& lanes) {
  std::array<float, Width> parts;
  std::memcpy(parts.data(), &lanes, sizeof lanes);
  for (std::size_t half = Width / 2; half > 0; half /= 2) {
    for (std::size_t j = 0; j < half; ++j) parts[j] += parts[j + half];
  }
  return parts[0];
}

// Sums of floats must not be reordered by the compiler, hence the lanes by hand.
float Dot(std::span<const float> a, std::span<const float> b) {
  Lanes sums[4] = {};
  const std::size_t size = a.size();
  std::size_t i = 0;
  for (; i + 4 * Width <= size; i += 4 * Width) {
    for (std::size_t j = 0; j < 4; ++j) {
      sums[j] += reinterpret_cast<const LoadedLanes*>(&a[i + j * Width])->lanes *
                 reinterpret_cast<const LoadedLanes*>(&b[i + j * Width])->lanes;
    }
  }
  const Lanes sum = (sums[0] + sums[1]) + (sums[2] + sums[3]);
  float result = 0.0F;
  for (; i < size; ++i) result += a[i] * b[i];
  return result + SumOf(sum);
}

void AddScaled(std::span<float> y, float k, std::span<const float> x) {
  for (std::size_t i = 0; i < y.size(); ++i) y[i] += k * x[i];
}

// Outputs side by side in the lanes: each tap is spread once over 64 of them, and no sum crosses lanes.
void Correlate(std::span<const float> h, std::span<const float> x, std::span<float> y) {
  constexpr std::size_t Rows = 8;
  std::size_t i = 0;
  for (; i + Rows * Width <= y.size(); i += Rows * Width) {
    Lanes sums[Rows] = {};
    for (std::size_t k = 0; k < h.size(); ++k) {
      const float tap = h[k];
      for (std::size_t j = 0; j < Rows; ++j) {
        sums[j] += tap * reinterpret_cast<const LoadedLanes*>(&x[i + j * Width + k])->lanes;
      }
    }
    std::memcpy(&y[i], sums, sizeof sums);
  }
  for (; i + Width <= y.size(); i += Width) {
    Lanes sum = {};
    for (std::size_t k = 0; k < h.size(); ++k) {
      sum += h[k] * reinterpret_cast<const LoadedLanes*>(&x[i + k])->lanes;
    }
    std::memcpy(&y[i], &sum, sizeof sum);
  }
  for (; i < y.size(); ++i) {
    float sum = 0.0F;
    for (std::size_t k = 0; k < h.size(); ++k) sum += h[k] * x[i + k];
    y[i] = sum;
  }
}

void AddProduct(std::span<float> re, std::span<float> im, const Spectrum& a, const Spectrum& b) {
  const std::size_t size = re.size();
  float* __restrict sumRe = re.data();
  float* __restrict sumIm = im.data();
  const float* aRe = a.re.data();
  const float* aIm = a.im.data();
  const float* bRe = b.re.data();
  const float* bIm = b.im.data();
  for (std::size_t i = 0; i < size; ++i) {
    sumRe[i] += aRe[i] * bRe[i] - aIm[i] * bIm[i];
    sumIm[i] += aRe[i] * bIm[i] + aIm[i] * bRe[i];
  }
}

void AddUncertainty(const Uncertainty& uncertainty, const Spectrum& taps, const Spectrum& sound,
                    std::span<float> power) {
  const std::size_t size = power.size();
  float* __restrict variance = uncertainty.variance.data();
  float* __restrict sum = power.data();
  const float *const tapsRe = taps.re.data(), *const tapsIm = taps.im.data();
  const float *const re = sound.re.data(), *const im = sound.im.data();
  const float* const rate = uncertainty.rate.data();
  const float floor = uncertainty.floor, most = uncertainty.most;
  for (std::size_t i = 0; i < size; ++i) {
    const float path = tapsRe[i] * tapsRe[i] + tapsIm[i] * tapsIm[i];
    const float grown = variance[i] + rate[i] * (path > floor ? path : floor);
    variance[i] = grown < most ? grown : most;
    sum[i] += variance[i] * (re[i] * re[i] + im[i] * im[i]);
  }
}

void FindStep(const Spectrum& sound, const Spectrum& error, std::span<const float> scale, float certainty,
              std::span<float> variance, std::span<float> stepRe, std::span<float> stepIm) {
  const std::size_t size = variance.size();
  float* __restrict uncertain = variance.data();
  float* const __restrict outRe = stepRe.data(), * const __restrict outIm = stepIm.data();
  const float *const re = sound.re.data(), *const im = sound.im.data();
  const float *const wrongRe = error.re.data(), *const wrongIm = error.im.data();
  const float* const scales = scale.data();
  for (std::size_t i = 0; i < size; ++i) {
    const float k = uncertain[i] * scales[i];
    outRe[i] = k * (re[i] * wrongIm[i] - im[i] * wrongRe[i]);
    outIm[i] = -k * (re[i] * wrongRe[i] + im[i] * wrongIm[i]);
    const float left = 1 - certainty * k * (re[i] * re[i] + im[i] * im[i]);
    uncertain[i] *= left > 0 ? left : 0;
  }
}
