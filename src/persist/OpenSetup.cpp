#include "persist/OpenSetup.h"

#include "model/FieldChanges.h"

namespace vc {

void OpenSetup::Take(const std::string& file) {
  path = file;
  taken = settings;
  tellExchanged();
}

void OpenSetup::Forget() {
  path.clear();
  tellExchanged();
}

bool OpenSetup::Changed() const { return SetupDiffers(taken, settings); }

}  // namespace vc
