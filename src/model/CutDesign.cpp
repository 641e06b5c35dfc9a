#include "model/CutDesign.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "link/FilterTransform.h"
#include "model/modNumerical.h"

namespace vc {
namespace {

using Numbers = std::vector<double>;
using Triangle = std::vector<Numbers>;  // row i has the elements 0..i

const auto Steep = static_cast<float>(AmplitudeRatio(6));

// Whether all lines within 12 but 3, itself among these, stand 6 dB above it.
bool InNarrowNotch(std::span<const float> gains, std::size_t line) {
  constexpr std::size_t reach = 12;
  constexpr int widest = 3;
  const std::size_t from = line - std::min(line, reach), end = std::min(line + reach + 1, gains.size());
  const auto isLow = [&](float one) { return one <= gains[line] * Steep; };
  return std::ranges::count_if(gains.subspan(from, end - from), isLow) <= widest;
}

// The sums over all bins of slack^2 cos(pi k i / half) cos(pi l i / half) for each two of the taps k and l
// beyond reach, from those with a single cosine.
Triangle SlackProducts(const Numbers& slackSums, std::size_t reach) {
  const std::size_t half = slackSums.size() - 1;
  const auto at = [&](std::size_t k) { return slackSums[k > half ? 2 * half - k : k]; };
  Triangle products(half - reach);
  for (std::size_t row = 0; row < products.size(); ++row) {
    for (std::size_t column = 0; column <= row; ++column) {
      const std::size_t sum = 2 * (reach + 1) + row + column;
      products[row].push_back(0.5 * (at(row - column) + at(sum)));
    }
  }
  return products;
}

// Cholesky's decomposition, in place. No slack is 0, so that the matrix is positive definite.
void Decompose(Triangle& matrix) {
  for (std::size_t row = 0; row < matrix.size(); ++row) {
    for (std::size_t column = 0; column <= row; ++column) {
      double rest = matrix[row][column];
      for (std::size_t k = 0; k < column; ++k) rest -= matrix[row][k] * matrix[column][k];
      matrix[row][column] = row == column ? std::sqrt(rest) : rest / matrix[column][column];
    }
  }
}

// Of the matrix that was decomposed; values become the solution.
void Solve(const Triangle& decomposed, Numbers& values) {
  for (std::size_t row = 0; row < values.size(); ++row) {
    for (std::size_t k = 0; k < row; ++k) values[row] -= decomposed[row][k] * values[k];
    values[row] /= decomposed[row][row];
  }
  for (std::size_t row = values.size(); row-- > 0;) {
    for (std::size_t k = row + 1; k < values.size(); ++k) values[row] -= decomposed[k][row] * values[k];
    values[row] /= decomposed[row][row];
  }
}

// cos(pi k / half) for k of 0..2 half - 1.
Numbers Cosines(std::size_t half) {
  Numbers cosines;
  cosines.reserve(2 * half);
  for (std::size_t k = 0; k < 2 * half; ++k) {
    cosines.push_back(std::cos(std::numbers::pi * static_cast<double>(k) / static_cast<double>(half)));
  }
  return cosines;
}

}  // namespace

std::vector<float> CurveSlack(std::span<const float> gains) {
  constexpr std::size_t window = 6;
  constexpr float lowest = 0.001F, notch = 0.1F;
  std::vector<float> slack(gains.begin(), gains.end());
  for (std::size_t from = 0; from + window <= gains.size(); ++from) {
    const auto [least, greatest] = std::ranges::minmax(gains.subspan(from, window));
    if (greatest < least * Steep) continue;
    for (float& one : std::span(slack).subspan(from, window)) one = std::max(one, greatest);
  }
  const float highest = std::ranges::max(slack);
  for (std::size_t line = 0; line < gains.size(); ++line) {
    if (InNarrowNotch(gains, line)) slack[line] *= notch;
  }
  for (float& one : slack) one = highest > 0 ? std::max(one / highest, lowest) : 1.0F;
  return slack;
}

void FitToReach(std::span<float> magnitudes, std::span<const float> slack, std::size_t reach) {
  const std::size_t half = magnitudes.size() - 1;
  std::vector<float> squares(slack.begin(), slack.end());
  for (float& one : squares) one *= one;
  CosineTransform transform(half);
  Numbers sums;
  transform.Run(squares, sums);
  Triangle products = SlackProducts(sums, reach);
  transform.Run(magnitudes, sums);
  Numbers shares(sums.begin() + static_cast<std::ptrdiff_t>(reach) + 1, sums.end());
  Decompose(products);
  Solve(products, shares);
  const Numbers cosines = Cosines(half);
  for (std::size_t bin = 0; bin <= half; ++bin) {
    double sum = 0;
    for (std::size_t k = 0; k < shares.size(); ++k) {
      sum += shares[k] * cosines[(reach + 1 + k) * bin % cosines.size()];
    }
    magnitudes[bin] -= static_cast<float>(static_cast<double>(squares[bin]) * sum);
  }
}

}  // namespace vc
