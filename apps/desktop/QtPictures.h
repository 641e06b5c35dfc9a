// Pictures as the toolkit draws them, and the desktop's clipboard.
#pragma once

#include <string>

#include "platform/Pictures.h"

namespace desktop {

class QtPictures : public vc::Pictures {
 public:
  std::string Draw(vc::PictureFormat format, const vc::Size& size, const vc::Drawing& drawing) override;
  bool Copy(const vc::Size& size, const vc::Drawing& drawing) override;
};

}  // namespace desktop
