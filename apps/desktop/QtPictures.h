// Pictures as the host draws them, and the desktop's clipboard.
#pragma once

#include <string>

#include "host/CairoPictures.h"

namespace desktop {

class QtPictures : public host::CairoPictures {
 public:
  bool Copy(const vc::Size& size, const vc::Drawing& drawing) override;
};

}  // namespace desktop
