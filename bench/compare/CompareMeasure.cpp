// How good a tool's output is: compare_measure CLEAN.wav NOISY.wav OUT.wav FROM
//
// Prints "GAIN STOI DELAY" over all behind the first FROM seconds: scale-invariant signal-to-distortion ratio
// of the output less that of the noisy sound in dB (where the noisy sound is the clean one: of the output),
// intelligibility of the output, and by how many samples it is late. The delay is the one at which output and
// clean sound are most alike, so no tool loses by its own.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numeric>

#include "Intelligibility.h"
#include "Waves.h"

namespace {

using measure::Signal;
using Part = std::span<const float>;

constexpr int MostDelay = 3000;  // samples, either way

// Of the output, shifted by a delay against the clean sound, with silence where it has ended.
Signal Shifted(const Signal& out, int delay, std::size_t from, std::size_t size) {
  Signal shifted(size);
  for (std::size_t i = 0; i < size; ++i) {
    const auto at = static_cast<std::ptrdiff_t>(from + i) + delay;
    if (at >= 0 && at < static_cast<std::ptrdiff_t>(out.size()))
      shifted[i] = out[static_cast<std::size_t>(at)];
  }
  return shifted;
}

// In every fourth sample of the speech's beginning it is seen as well.
double Likeness(Part clean, const Signal& out, int delay, std::size_t from) {
  constexpr std::size_t longest = 120000, step = 4;
  double alike = 0;
  for (std::size_t i = 0; i < std::min(clean.size(), longest); i += step) {
    const auto at = static_cast<std::ptrdiff_t>(from + i) + delay;
    if (at >= 0 && at < static_cast<std::ptrdiff_t>(out.size()))
      alike += static_cast<double>(clean[i]) * out[static_cast<std::size_t>(at)];
  }
  return alike;
}

int DelayOf(Part clean, const Signal& out, std::size_t from) {
  int best = 0;
  double most = 0;
  for (int delay = -MostDelay; delay <= MostDelay; ++delay) {
    const double alike = Likeness(clean, out, delay, from);
    if (alike <= most) continue;
    most = alike;
    best = delay;
  }
  return best;
}

void Measure(const std::string& cleanPath, const std::string& noisyPath, const std::string& outPath,
             double seconds) {
  const compare::Wave clean = compare::ReadWave(cleanPath), noisy = compare::ReadWave(noisyPath),
                      out = compare::ReadWave(outPath);
  if (clean.rate != out.rate) throw std::runtime_error(outPath + " has another rate");
  const auto from = static_cast<std::size_t>(seconds * clean.rate);
  const Part wanted = Part(clean.channels[0]).subspan(from), before = Part(noisy.channels[0]).subspan(from);
  const int delay = DelayOf(wanted, out.channels[0], from);
  const Signal after = Shifted(out.channels[0], delay, from, wanted.size());
  const double reached = measure::ScaleInvariantRatio(wanted, after);
  const bool untouched = measure::GreatestDifference(wanted, before) == 0;
  const double gain = untouched ? reached : reached - measure::ScaleInvariantRatio(wanted, before);
  std::printf("%.2f %.3f %d\n", gain, measure::Intelligibility(wanted, after, clean.rate), delay);
}

}  // namespace

int main(int count, char** words) {
  try {
    if (count != 5) throw std::runtime_error("compare_measure CLEAN.wav NOISY.wav OUT.wav FROM");
    Measure(words[1], words[2], words[3], std::stod(words[4]));
    return 0;
  } catch (const std::exception& trouble) {
    std::fprintf(stderr, "%s\n", trouble.what());
    return 1;
  }
}
