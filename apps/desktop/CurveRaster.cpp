#include "desktop/CurveRaster.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace desktop {
namespace {

constexpr double LeastWidth = 1.7, WidthPerRatio = 1.25, MostWidth = 8.0;  // pixels
constexpr int Slopes = 24, StepsPerPixel = 64;
constexpr int Reach = 8;  // pixels that the table goes to from the middle of a stroke
constexpr int RowLength = Reach * StepsPerPixel;
constexpr double Middle = 0.5;  // of a pixel
constexpr int FixedBits = 16, StepBits = 10;
constexpr std::int64_t One = 1 << FixedBits;
constexpr std::int64_t Half = One / 2;
constexpr double Short = 0.5;         // of a segment, in columns
constexpr unsigned WholeShare = 256;  // of a pixel

std::int64_t ToFixed(double number) { return static_cast<std::int64_t>(number * static_cast<double>(One)); }
unsigned ToShare(double part) { return static_cast<unsigned>(part * WholeShare + Middle); }

// The integral of max(v - slope r, 0) over r from -0.5 to 0.5.
double Above(double v, double slope) {
  const double half = slope / 2;
  if (v <= -half) return 0.0;
  if (v >= half) return v;
  return (v + half) * (v + half) / (2 * slope);
}

double HalfThickness(double width, double slope) { return width / 2 * std::sqrt(1.0 + slope * slope); }

// The part of a pixel's area that a band covers which crosses its slice with this slope and thickness, the
// pixel's middle being so far from the band's.
double Coverage(double distance, double slope, double halfThickness) {
  const double from = distance - Middle, to = distance + Middle;
  return Above(to + halfThickness, slope) - Above(from + halfThickness, slope) -
         Above(to - halfThickness, slope) + Above(from - halfThickness, slope);
}

std::vector<std::uint16_t> CoverageTable(double width) {
  std::vector<std::uint16_t> table;
  table.reserve((Slopes + 1) * RowLength);
  for (int i = 0; i <= Slopes; ++i) {
    const double slope = static_cast<double>(i) / Slopes;
    for (int j = 0; j < RowLength; ++j) {
      const double part = Coverage((j + Middle) / StepsPerPixel, slope, HalfThickness(width, slope));
      table.push_back(static_cast<std::uint16_t>(ToShare(std::clamp(part, 0.0, 1.0))));
    }
  }
  return table;
}

// So many 256ths of the ink over what is there.
inline std::uint32_t Blended(std::uint32_t ink, std::uint32_t below, unsigned share) {
  constexpr std::uint32_t redBlue = 0xFF00FF, green = 0xFF00, opaque = 0xFF000000;
  const unsigned rest = WholeShare - share;
  return opaque | (((ink & redBlue) * share + (below & redBlue) * rest) >> 8U & redBlue) |
         (((ink & green) * share + (below & green) * rest) >> 8U & green);
}

// Rounded down; no point lies further away than this.
int ColumnOf(double x) {
  constexpr int far = 1 << 24;
  return static_cast<int>(x + far) - far;
}

// Shares or channels of two pixels, four each.
using Lanes = CurveRaster::Lanes;
using Channels = std::uint8_t __attribute__((vector_size(8)));
constexpr int LanePixels = 2, GroupPixels = 8;
constexpr int PlaceBits = 4;  // of where within a pixel a group begins

inline void BlendLanes(std::uint32_t* pixels, const Lanes& shares, const Lanes& ink) {
  Channels channels;
  std::memcpy(&channels, pixels, sizeof channels);
  const auto below = __builtin_convertvector(channels, Lanes);
  const Lanes mixed = (ink * shares + below * (WholeShare - shares)) >> 8;
  channels = __builtin_convertvector(mixed, Channels);
  std::memcpy(pixels, &channels, sizeof channels);
}

// The shares of eight pixels side by side, the first of which is the first that the band may reach, by the
// band's slope and by where within a pixel its reach begins.
std::vector<Lanes> GroupTable(double width) {
  constexpr int places = 1 << PlaceBits;
  std::vector<Lanes> table;
  table.reserve((Slopes + 1) * places * GroupPixels / LanePixels);
  for (int i = 0; i <= Slopes; ++i) {
    const double slope = static_cast<double>(i) / Slopes, half = HalfThickness(width, slope);
    for (int place = 0; place < places; ++place) {
      // From the first pixel's middle to the band's.
      const double middle = half + slope / 2 + (place + Middle) / places - Middle;
      for (int pixel = 0; pixel < GroupPixels; pixel += LanePixels) {
        Lanes shares{};
        for (int lane = 0; lane < 4 * LanePixels; ++lane) {
          const int at = pixel + lane / 4;
          const double part = Coverage(at - middle, slope, half);
          shares[lane] = static_cast<std::uint16_t>(ToShare(std::clamp(part, 0.0, 1.0)));
        }
        table.push_back(shares);
      }
    }
  }
  return table;
}

}  // namespace

CurveRaster::CurveRaster(double pixelRatio)
    : ratio(pixelRatio),
      width(std::clamp(WidthPerRatio * pixelRatio, LeastWidth, MostWidth)),
      table(CoverageTable(width)),
      groups(GroupTable(width)) {
  for (int i = 0; i <= Slopes; ++i) {
    const double slope = static_cast<double>(i) / Slopes;
    const double reach = HalfThickness(width, slope) + Middle + slope / 2;
    profiles.push_back({table.data() + i * RowLength,
                        groups.data() + (i * GroupPixels / LanePixels << PlaceBits), ToFixed(reach),
                        static_cast<int>(2 * reach) + 1});
  }
}

bool CurveRaster::Clip(const Pixels& picture, const vc::Rectangle& clip) {
  const auto pixel = [this](int place) { return static_cast<int>(std::lround(place * ratio)); };
  left = std::clamp(pixel(clip.left), 0, picture.width);
  top = std::clamp(pixel(clip.top), 0, picture.height);
  columns = std::clamp(pixel(clip.Right()), left, picture.width) - left;
  rows = std::clamp(pixel(clip.Bottom()), top, picture.height) - top;
  stride = picture.stride;
  corner = picture.first + top * stride + left;
  return columns > 0 && rows > 0;
}

CurveRaster::Way CurveRaster::WayOf(const Spot& a, const Spot& b) {
  const double across = b.x - a.x, down = b.y - a.y;
  if (std::abs(across) < Short) return Way::Short;
  if (std::abs(down) > std::abs(across)) return down > 0 ? Way::Down : Way::Up;
  return across > 0 ? Way::Right : Way::Left;
}

void CurveRaster::Stroke(const Pixels& picture, std::span<const vc::Point> points, const vc::Rectangle& clip,
                         std::uint32_t colour) {
  if (points.size() < 2 || !Clip(picture, clip)) return;
  ink = colour;
  for (unsigned lane = 0; lane < 8; ++lane) {
    inkLanes[lane] = static_cast<std::uint16_t>((colour | 0xFF000000U) >> (lane % 4 * 8) & 0xFFU);
  }
  const auto spot = [&](std::size_t i) {
    return Spot{points[i].x * ratio - left, points[i].y * ratio - top};
  };
  Way before = Way::None, way = WayOf(spot(0), spot(1));
  for (std::size_t i = 0; i + 1 < points.size();) {
    const Way drawn = way;
    const std::size_t next = drawn == Way::Short ? FillColumns(points, i) : i + 1;
    way = next + 1 < points.size() ? WayOf(spot(next), spot(next + 1)) : Way::None;
    if (drawn != Way::Short) AddSegment(spot(i), spot(next), drawn, before != drawn, way != drawn);
    before = drawn;
    i = next;
  }
}

void CurveRaster::AddSegment(const Spot& a, const Spot& b, Way way, bool begins, bool ends) {
  const bool forth = way == Way::Right || way == Way::Down;
  const Spot &from = forth ? a : b, &to = forth ? b : a;
  if (!forth) std::swap(begins, ends);
  const double across = to.x - from.x, down = to.y - from.y;
  if (way == Way::Right || way == Way::Left) {
    AddBand({from.x, to.x, from.y, down / across, begins, ends, 1, stride, columns, rows});
  } else {
    AddBand({from.y, to.y, from.x, across / down, begins, ends, stride, 1, rows, columns});
  }
}

// A slice belongs to the segment that crosses its middle; the first and the last one of a stroke are covered
// in part.
void CurveRaster::AddBand(const Band& band) {
  const double from = std::max(band.from, 0.0), to = std::min(band.to, static_cast<double>(band.extent));
  if (from >= to) return;
  const Profile& profile = profiles[static_cast<std::size_t>(std::abs(band.slope) * Slopes + Middle)];
  const auto part = [&](int at, double begin, double end) {
    if (begin >= end || at >= band.extent) return;
    const double middle = band.across + ((begin + end) / 2 - band.from) * band.slope;
    AddSlices(band, profile, ToFixed(middle), at, at + 1, ToShare(end - begin));
  };
  const bool begins = band.begins && from == band.from, ends = band.ends && to == band.to;
  int first = static_cast<int>(from + Middle), last = static_cast<int>(to + Middle);
  if (begins) {
    first = static_cast<int>(from) + 1;
    part(first - 1, from, std::min(to, static_cast<double>(first)));
  }
  if (ends) {
    last = static_cast<int>(to);
    if (!begins || last >= first) part(last, std::max(from, static_cast<double>(last)), to);
  }
  const std::int64_t middle = ToFixed(band.across + (first + Middle - band.from) * band.slope);
  AddSlices(band, profile, middle, first, std::min(last, band.extent), WholeShare);
}

void CurveRaster::AddSlices(const Band& band, const Profile& profile, std::int64_t middle, int from, int to,
                            unsigned share) {
  const std::int64_t step = ToFixed(band.slope);
  const Lanes colour = inkLanes;  // what is written might be a member, as far as the compiler knows
  const bool grouped = band.side == 1 && profile.breadth <= GroupPixels;
  const int count = profile.breadth <= 2 * LanePixels ? 2 : GroupPixels / LanePixels;
  // The whole would not fit into a lane with what it is multiplied by.
  const auto part = static_cast<std::uint16_t>(std::min(share, WholeShare - 1));
  std::uint32_t* line = corner + from * band.step;
  for (int at = from; at < to; ++at, middle += step, line += band.step) {
    const std::int64_t start = middle - profile.reach + Half - 1;
    const std::int64_t first = start >> FixedBits;  // the first pixel whose middle is near enough
    if (!grouped || first < 0 || first + GroupPixels > band.breadth) {
      AddSingly(band, profile, line, first, middle, share);
      continue;
    }
    const auto place = static_cast<std::size_t>((start & (One - 1)) >> (FixedBits - PlaceBits));
    const Lanes* shares = profile.groups + place * GroupPixels / LanePixels;
    for (int lanes = 0; lanes < count; ++lanes) {
      BlendLanes(line + first + lanes * LanePixels,
                 share == WholeShare ? shares[lanes] : shares[lanes] * part >> 8, colour);
    }
  }
}

void CurveRaster::AddSingly(const Band& band, const Profile& profile, std::uint32_t* line,
                            std::int64_t nearest, std::int64_t middle, unsigned share) const {
  const std::int64_t first = std::max<std::int64_t>(nearest, 0);
  const std::int64_t end = std::min<std::int64_t>(nearest + profile.breadth, band.breadth);
  std::uint32_t* pixel = line + first * band.side;
  std::int64_t distance = first * One + Half - middle;
  for (std::int64_t i = first; i < end; ++i, pixel += band.side, distance += One) {
    *pixel = Blended(ink, *pixel, profile.coverage[std::abs(distance) >> StepBits] * share >> 8U);
  }
}

// Each column from the lowest to the highest that the line has in it.
std::size_t CurveRaster::FillColumns(std::span<const vc::Point> points, std::size_t from) {
  Spot before{points[from].x * ratio - left, points[from].y * ratio - top};
  int column = ColumnOf(before.x);
  double lowest = before.y, highest = before.y;
  std::size_t i = from + 1;
  for (; i < points.size(); ++i) {
    const Spot at{points[i].x * ratio - left, points[i].y * ratio - top};
    if (std::abs(at.x - before.x) >= Short) break;
    if (const int next = ColumnOf(at.x); next != column) {
      const double border = std::max(column, next);
      const double between = before.y + (border - before.x) / (at.x - before.x) * (at.y - before.y);
      FillColumn(column, std::min(lowest, between), std::max(highest, between));
      column = next;
      lowest = highest = between;
    }
    lowest = std::min(lowest, at.y);
    highest = std::max(highest, at.y);
    before = at;
  }
  FillColumn(column, lowest, highest);
  return i - 1;
}

void CurveRaster::FillColumn(int column, double lowest, double highest) {
  if (column < 0 || column >= columns) return;
  const double from = std::max(lowest - width / 2, 0.0);
  const double to = std::min(highest + width / 2, static_cast<double>(rows));
  if (from >= to) return;
  const int first = static_cast<int>(from), last = static_cast<int>(to);
  const auto add = [this, column](int row, double part) {
    if (row >= rows) return;
    std::uint32_t& pixel = corner[row * stride + column];
    pixel = Blended(ink, pixel, ToShare(part));
  };
  if (first == last) return add(first, to - from);
  add(first, first + 1 - from);
  std::uint32_t* cell = corner + (first + 1) * stride + column;
  for (int row = first + 1; row < last; ++row, cell += stride) *cell = ink | 0xFF000000U;
  add(last, to - last);
}

}  // namespace desktop
