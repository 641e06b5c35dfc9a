#include "persist/OpenSetup.h"

#include "model/FieldChanges.h"

namespace vc {

void OpenSetup::Take(const std::string& file) { Take(file, settings); }

void OpenSetup::Take(const std::string& file, const SystemSettings& judge) {
  held.path = file;
  held.taken = judge;
  tellExchanged();
}

void OpenSetup::Forget() {
  held.path.clear();
  tellExchanged();
}

bool OpenSetup::Changed() const { return SetupDiffers(held.taken, settings); }

void OpenSetup::Swap(SetupOfFile& other) {
  std::swap(held, other);
  tellExchanged();
}

}  // namespace vc
