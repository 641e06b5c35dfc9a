#include "shell/Look.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <string_view>

#include "persist/SafeFile.h"
#include "text/modFile.h"

namespace vc {
namespace {

constexpr std::array<std::string_view, 3> Names{"system", "light", "dark"};  // by Theme

}  // namespace

std::string Look::Path() const { return JoinPath(platform.desk.InstallFolder(), "veltrana.look"); }

void Look::Load() {
  std::ifstream file(Path());
  std::string name;
  file >> name;
  const auto* found = std::ranges::find(Names, name);
  if (found != Names.end()) TakeOn(static_cast<Theme>(found - Names.begin()));
}

void Look::Choose(Theme theme) {
  TakeOn(theme);
  WriteWholeFile(platform.files, Path(), std::string(Names.at(static_cast<std::size_t>(theme))) + "\n");
}

void Look::TakeOn(Theme theme) {
  platform.desk.SetTheme(theme);
  master.actions.CheckTheme(theme);
}

}  // namespace vc
