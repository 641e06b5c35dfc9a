// How well a colour stands out from another.
#pragma once

#include <algorithm>
#include <cmath>

#include <QColor>

namespace desktop {

// Relative luminance, 0..1, and contrast ratio, 1..21, of the Web Content Accessibility Guidelines 2.1.
inline double Luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}
inline double Contrast(const QColor& one, const QColor& other) {
  const double first = Luminance(one) + 0.05, second = Luminance(other) + 0.05;
  return std::max(first, second) / std::min(first, second);
}

}  // namespace desktop
