#include "model/TransferCurve.h"

#include <algorithm>
#include <cmath>

namespace vc {
namespace {

std::optional<double> Ratio(double over, double under) {
  if (under == 0) return std::nullopt;
  const double tenths = std::nearbyint(TransferCurve::RatioSteps * over / under);
  return std::clamp(tenths / TransferCurve::RatioSteps, TransferCurve::LeastRatio, TransferCurve::MostRatio);
}

// From a place that may have come by way of pixels, a hair away from a whole number.
double Exact(double level) {
  constexpr double parts = 60;
  return std::nearbyint(level * parts) / parts;
}

TransferCurve CurveOf(double limit, double compression, float compressionRatio, float expansionRatio) {
  const auto ratio = [](float kept) {
    return std::clamp(static_cast<double>(kept), TransferCurve::LeastRatio, TransferCurve::MostRatio);
  };
  const double highest = std::clamp(limit, TransferCurve::LeastThreshold, 0.0);
  return {highest, std::clamp(compression, TransferCurve::LeastThreshold, highest), ratio(compressionRatio),
          ratio(expansionRatio)};
}

}  // namespace

CurvePoint TransferCurve::CompressionKnee() const {
  return {compression, ((compressionRatio - 1) * limit + compression) / compressionRatio};
}

double TransferCurve::OutputAt(double input) const {
  if (input >= limit) return limit;
  if (input >= compression) return limit + (input - limit) / compressionRatio;
  return CompressionKnee().output + (input - compression) * expansionRatio;
}

std::array<CurvePoint, 4> TransferCurve::Points() const {
  const CurvePoint knee = CompressionKnee();
  return {{{Lowest, knee.output + (Lowest - compression) * expansionRatio}, knee, LimitKnee(), {0, limit}}};
}

std::optional<double> TransferCurve::LimitAt(double input) const {
  if (input < LeastThreshold) return std::nullopt;
  return std::clamp(std::trunc(Exact(input)), compression, 0.0);
}

std::optional<double> TransferCurve::CompressionAt(double input) const {
  if (input < LeastThreshold) return std::nullopt;
  return std::clamp(std::nearbyint(input), LeastThreshold, limit);
}

std::optional<double> TransferCurve::CompressionRatioAt(const CurvePoint& point) const {
  if (point.input < LeastThreshold) return std::nullopt;
  return Ratio(point.input - limit, point.output - limit);
}

std::optional<double> TransferCurve::ExpansionRatioAt(const CurvePoint& point) const {
  const CurvePoint knee = CompressionKnee();
  return Ratio(point.output - knee.output, point.input - knee.input);
}

TransferCurve CurveOfFilter(const SystemSettings& settings, int stage) {
  return CurveOf(settings.lceLimitThresh[stage], settings.lceCompThresh[stage], settings.lceCompRatio[stage],
                 settings.lceExpRatio[stage]);
}

TransferCurve CurveOfEqualizer(const SystemSettings& settings, int equalizer) {
  constexpr int before = 8;  // the equalizers are stages 9 and 10
  const int entry = equalizer + before;
  return CurveOf(settings.eqLceLimitThresh[entry], settings.eqLceCompThresh[entry],
                 settings.eqLceCompRatio[entry], settings.eqLceExpRatio[entry]);
}

}  // namespace vc
