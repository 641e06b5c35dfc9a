// Pictures that need no toolkit and no screen, PNG and SVG. There is no clipboard here.
#pragma once

#include <string>

#include "platform/Pictures.h"

namespace host {

class CairoPictures : public vc::Pictures {
 public:
  std::string Draw(vc::PictureFormat format, const vc::Size& size, const vc::Drawing& drawing) override;
  bool Copy(const vc::Size& size, const vc::Drawing& drawing) override;
};

// A PNG file of just these pixels, transparent where nothing is drawn; empty where it cannot be drawn.
std::string DrawIcon(const vc::Size& size, const vc::Drawing& drawing);

}  // namespace host
