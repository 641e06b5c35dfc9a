// Pictures of what the program draws: as files, and for the clipboard.
#pragma once

#include <functional>
#include <string>

#include "platform/Surface.h"

namespace vc {

// Png has two pixels of the file across and down for each of the surface.
enum class PictureFormat { Png, Svg };

// Draws onto a surface of the size that was asked for. Whatever the theme of the windows, the system's
// colours are those of the light one there, as on paper.
using Drawing = std::function<void(Surface& surface)>;

class Pictures {
 public:
  virtual ~Pictures() = default;
  // All bytes of a file; empty where it cannot be drawn.
  virtual std::string Draw(PictureFormat format, const Size& size, const Drawing& drawing) = 0;
  // Into the clipboard; false where there is none, or it cannot be drawn.
  virtual bool Copy(const Size& size, const Drawing& drawing) = 0;
};

}  // namespace vc
