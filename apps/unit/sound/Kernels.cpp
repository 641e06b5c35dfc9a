#include "unit/sound/Kernels.h"

#include <array>
#include <cstring>

// One body for each kind of machine, of which the best one is picked when the program starts. Clang, which
// only analyses and fuzzes, knows these kinds by other names and has the plain one.
namespace unit::sound {
namespace plain {
constexpr std::size_t Width = 4;
#include "unit/sound/KernelBodies.h"
#include "unit/sound/TransformBody.h"
}  // namespace plain

#ifdef __clang__
#define UNIT_KERNEL(result, name, parameters, arguments) \
  result name parameters { return plain::name arguments; }
#else
#pragma GCC push_options
#pragma GCC target("arch=x86-64-v3")
namespace v3 {
constexpr std::size_t Width = 8;
#include "unit/sound/KernelBodies.h"
#include "unit/sound/TransformBody.h"
}  // namespace v3
#pragma GCC pop_options

#pragma GCC push_options
#pragma GCC target("arch=x86-64-v4")
namespace v4 {
constexpr std::size_t Width = 16;
#include "unit/sound/KernelBodies.h"
#include "unit/sound/TransformBody.h"
}  // namespace v4
#pragma GCC pop_options

namespace {

enum class Machine { Plain, V3, V4 };

Machine ThisMachine() {
  if (__builtin_cpu_supports("x86-64-v4") != 0) return Machine::V4;
  return __builtin_cpu_supports("x86-64-v3") != 0 ? Machine::V3 : Machine::Plain;
}

const Machine machine = ThisMachine();

}  // namespace

#define UNIT_KERNEL(result, name, parameters, arguments) \
  result name parameters {                               \
    switch (machine) {                                   \
      case Machine::V4:                                  \
        return v4::name arguments;                       \
      case Machine::V3:                                  \
        return v3::name arguments;                       \
      default:                                           \
        return plain::name arguments;                    \
    }                                                    \
  }
#endif

UNIT_KERNEL(float, Dot, (std::span<const float> a, std::span<const float> b), (a, b))
UNIT_KERNEL(void, AddScaled, (std::span<float> y, float k, std::span<const float> x), (y, k, x))
UNIT_KERNEL(void, Correlate, (std::span<const float> h, std::span<const float> x, std::span<float> y),
            (h, x, y))
UNIT_KERNEL(void, AddProduct,
            (std::span<float> re, std::span<float> im, const Spectrum& a, const Spectrum& b), (re, im, a, b))

UNIT_KERNEL(void, AddUncertainty,
            (const Uncertainty& uncertainty, const Spectrum& taps, const Spectrum& sound,
             std::span<float> power),
            (uncertainty, taps, sound, power))
UNIT_KERNEL(void, FindStep,
            (const Spectrum& sound, const Spectrum& error, std::span<const float> scale, float certainty,
             std::span<float> variance, std::span<float> stepRe, std::span<float> stepIm),
            (sound, error, scale, certainty, variance, stepRe, stepIm))

UNIT_KERNEL(void, Transform, (const Turns& turns, Points& re, Points& im), (turns, re, im))
UNIT_KERNEL(void, Wind, (const float* a, const float* b, const Turns& turns, Points& re, Points& im),
            (a, b, turns, re, im))
UNIT_KERNEL(void, Unwind, (const Points& re, const Points& im, const Turns& turns, float scale, float* out),
            (re, im, turns, scale, out))

}  // namespace unit::sound
