// Linear-phase filters of fewer taps than the transform that designs them has: cutting its outermost taps off
// is an error of the same size on quiet lines as on loud ones; here the rest is fitted to the wanted
// magnitudes.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace vc {

// How far a line may be off, next to the others, for a curve of so many lines: as far as it is high, and
// where the curve changes by 6 dB or more within 5 lines as far as the highest of them is. So a steep edge
// gives way as much as what it stands on, and what is drawn gently stays right however low it lies. A notch
// of three lines at most, far from others, has a tenth of that, which costs its surroundings hardly anything.
// gains: amplitudes, at least 0. Slack is 0.001..1.0, 1.0 at the highest line.
std::vector<float> CurveSlack(std::span<const float> gains);

// Changes the magnitudes of bins 0..half so that the taps further than `reach` (0..half - 1) from the middle
// come out as 0, with the least sum of squares of change / slack, in which the first and the last bin count
// half. slack: above 0, one a bin. Where it is the same everywhere, it is as if the taps were just cut off.
// The solution of least norm, by the normal equations of the second kind, which have a row for each pair of
// taps to be got rid of: Bjoerck, "Numerical Methods for Least Squares Problems", 1996.
void FitToReach(std::span<float> magnitudes, std::span<const float> slack, std::size_t reach);

}  // namespace vc
