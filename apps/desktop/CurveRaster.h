// Curves as smooth strokes in a picture of 32-bit pixels, each pixel shaded by how much of it a stroke
// covers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <vector>

#include "platform/Surface.h"

namespace desktop {

// Rows of 0xFFRRGGBB, the topmost first.
struct Pixels {
  std::uint32_t* first = nullptr;
  std::ptrdiff_t stride = 0;  // pixels from one row to the next
  int width = 0, height = 0;
};

// A line goes column by column, row by row where it is steep: of each of these slices it covers a band of its
// thickness, looked up by slope and by distance from its middle. Of points less than half a column apart each
// column is filled from the lowest to the highest, so a curve is as dear as it is long on the screen, however
// many points it has.
class CurveRaster {
 public:
  // Points of 1 are so many pixels of the pictures.
  explicit CurveRaster(double pixelRatio);

  double Width() const { return width; }  // of a stroke, in pixels

  // Draws a line through the points within the clip; the colour is 0xRRGGBB.
  void Stroke(const Pixels& picture, std::span<const vc::Point> points, const vc::Rectangle& clip,
              std::uint32_t colour);

  // The channels of two pixels, blue green red alpha, or what is covered of them, for the machine to work on
  // at once.
  using Lanes = std::uint16_t __attribute__((vector_size(16)));

 private:
  struct Spot {
    double x, y;
  };
  // Which way a segment goes; where the next one goes another way, the stroke ends and begins within a slice.
  enum class Way { None, Short, Right, Left, Down, Up };
  struct Band {
    double from, to;            // along
    double across, slope;       // where it begins, and how it goes on
    bool begins, ends;          // the stroke, at that side
    std::ptrdiff_t step, side;  // in the picture, along and across
    int extent, breadth;        // of the clip, along and across
  };

  // What a band of some slope covers by distance from its middle, 65536 a pixel, up to a reach; it lies on no
  // more pixels of a slice than its breadth.
  struct Profile {
    const std::uint16_t* coverage;
    const Lanes* groups;
    std::int64_t reach;
    int breadth;
  };

  bool Clip(const Pixels& picture, const vc::Rectangle& clip);
  static Way WayOf(const Spot& a, const Spot& b);
  void AddSegment(const Spot& a, const Spot& b, Way way, bool begins, bool ends);
  void AddBand(const Band& band);
  void AddSlices(const Band& band, const Profile& profile, std::int64_t middle, int from, int to,
                 unsigned share);
  void AddSingly(const Band& band, const Profile& profile, std::uint32_t* line, std::int64_t nearest,
                 std::int64_t middle, unsigned share) const;
  // Draws on from a point as long as the points are close, and returns the last of them.
  std::size_t FillColumns(std::span<const vc::Point> points, std::size_t from);
  void FillColumn(int column, double lowest, double highest);

  double ratio, width;
  std::vector<std::uint16_t>
      table;                      // 256ths of a pixel by slope and by distance from the middle of the stroke
  std::vector<Profile> profiles;  // by slope
  std::vector<Lanes> groups;      // the same of eight pixels side by side
  // The clip of the stroke that is being drawn, and its colour.
  std::uint32_t* corner = nullptr;
  std::ptrdiff_t stride = 0;
  int left = 0, top = 0, columns = 0, rows = 0;
  std::uint32_t ink = 0;
  Lanes inkLanes{};
};

// One for each scale, for all plots that are drawn one after the other: its tables are 50 kB.
class CurveRasters {
 public:
  // Stays where it is.
  CurveRaster& Of(double pixelRatio) { return rasters.try_emplace(pixelRatio, pixelRatio).first->second; }

 private:
  std::map<double, CurveRaster> rasters;
};

}  // namespace desktop
