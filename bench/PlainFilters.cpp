#include "PlainFilters.h"

#include <algorithm>
#include <complex>

#include <fftw3.h>

namespace bench {

struct FreeFftw {
  void operator()(void* memory) const { fftwf_free(memory); }
};

struct OverlapSave::Plan {
  using Bins = std::unique_ptr<std::complex<float>[], FreeFftw>;

  explicit Plan(std::size_t points)
      : size(points),
        signal(fftwf_alloc_real(points)),
        result(fftwf_alloc_real(points)),
        bins(reinterpret_cast<std::complex<float>*>(fftwf_alloc_complex(points / 2 + 1))),
        filter(reinterpret_cast<std::complex<float>*>(fftwf_alloc_complex(points / 2 + 1))),
        forward(fftwf_plan_dft_r2c_1d(static_cast<int>(points), signal.get(), Raw(bins), FFTW_MEASURE)),
        inverse(fftwf_plan_dft_c2r_1d(static_cast<int>(points), Raw(bins), result.get(), FFTW_MEASURE)) {}
  ~Plan() {
    fftwf_destroy_plan(forward);
    fftwf_destroy_plan(inverse);
  }
  Plan(const Plan&) = delete;
  Plan& operator=(const Plan&) = delete;

  static fftwf_complex* Raw(const Bins& bins) { return reinterpret_cast<fftwf_complex*>(bins.get()); }

  std::size_t size;
  std::unique_ptr<float[], FreeFftw> signal, result;
  Bins bins, filter;
  fftwf_plan forward, inverse;
};

OverlapSave::OverlapSave(std::span<const float> taps, std::size_t points)
    : block(points - taps.size() + 1), plan(std::make_unique<Plan>(points)) {
  float* const signal = plan->signal.get();
  std::fill_n(signal, points, 0.0F);
  std::copy(taps.begin(), taps.end(), signal);
  fftwf_execute_dft_r2c(plan->forward, signal, Plan::Raw(plan->filter));
  for (std::size_t i = 0; i <= points / 2; ++i) plan->filter[i] /= static_cast<float>(points);
  std::fill_n(signal, points, 0.0F);
}

OverlapSave::OverlapSave(OverlapSave&&) noexcept = default;
OverlapSave& OverlapSave::operator=(OverlapSave&&) noexcept = default;
OverlapSave::~OverlapSave() = default;

void OverlapSave::Process(std::span<float> sound) {
  float* const signal = plan->signal.get();
  const std::size_t kept = plan->size - block;
  std::copy_n(sound.begin(), block, signal + kept);
  fftwf_execute(plan->forward);
  for (std::size_t i = 0; i <= plan->size / 2; ++i) plan->bins[i] *= plan->filter[i];
  fftwf_execute(plan->inverse);
  std::copy_n(plan->result.get() + kept, block, sound.begin());
  std::copy_n(signal + block, kept, signal);
}

FusedPredictor::FusedPredictor(std::size_t taps, std::size_t predictionSpan, float stepSize)
    : weights(taps),
      past(2 * (taps + predictionSpan + 1) + 8192),
      span(predictionSpan),
      end(taps + predictionSpan + 1),
      step(stepSize) {}

void FusedPredictor::Process(std::span<float> sound) {
  for (float& sample : sound) sample = Next(sample);
}

float FusedPredictor::Next(float sample) {
  const std::size_t taps = weights.size();
  const std::size_t reach = taps + span + 1;
  if (end == past.size()) {
    std::copy(past.end() - static_cast<std::ptrdiff_t>(reach), past.end(), past.begin());
    end = reach;
  }
  past[end++] = sample;
  const float* const window = &past[end - span - taps];
  const float* const last = window - 1;
  float* const weight = weights.data();
  const float change = pendingChange;
  float prediction = 0.0F;
  for (std::size_t i = 0; i < taps; ++i) {
    weight[i] += change * last[i];
    prediction += weight[i] * window[i];
  }
  const float error = sample - prediction;
  energy += window[taps - 1] * window[taps - 1] - last[0] * last[0];
  pendingChange = step * error / (energy + 1e-4F);
  return error;
}

}  // namespace bench
