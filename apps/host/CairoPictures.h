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

}  // namespace host
