#include "shell/Look.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <string_view>

#include "persist/SafeFile.h"
#include "text/modFile.h"

namespace vc {
namespace {

constexpr std::array<std::string_view, 3> Themes{"system", "light", "dark"};  // by Theme
constexpr std::array<std::string_view, 2> Axes{"linear", "logarithmic"};      // by AxisLaw

// What a word stands for; what was, where it is none of them.
template <typename Choice, std::size_t Count>
void Take(Choice& choice, const std::array<std::string_view, Count>& names, const std::string& word) {
  const auto* found = std::ranges::find(names, word);
  if (found != names.end()) choice = static_cast<Choice>(found - names.begin());
}

}  // namespace

std::string Look::Path() const { return JoinPath(platform.desk.InstallFolder(), "veltrana.look"); }

void Look::Load() {
  std::ifstream file(Path());
  for (std::string word; file >> word;) {
    Take(theme, Themes, word);
    Take(frequencies, Axes, word);
  }
  TakeOnTheme();
  master.LayOutFrequencies(frequencies);
}

void Look::Choose(Theme chosen) {
  theme = chosen;
  TakeOnTheme();
  Keep();
}

void Look::Choose(AxisLaw chosen) {
  frequencies = chosen;
  master.LayOutFrequencies(frequencies);
  Keep();
}

void Look::Keep() const {
  const auto words = std::string(Themes.at(static_cast<std::size_t>(theme))) + "\n" +
                     std::string(Axes.at(static_cast<std::size_t>(frequencies))) + "\n";
  WriteWholeFile(platform.files, Path(), words);
}

void Look::TakeOnTheme() {
  platform.desk.SetTheme(theme);
  master.actions.CheckTheme(theme);
}

}  // namespace vc
