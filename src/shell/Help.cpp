#include "shell/Help.h"

#include <filesystem>
#include <system_error>

#include "text/modFile.h"

namespace vc {
namespace {

std::string PlaceOf(const Desk& desk, const std::string& page) {
  return JoinPath(desk.ProgramFolder(), page);
}

}  // namespace

std::string HelpPageName(std::string_view page) { return std::string(page) + ".html"; }

std::string HelpPage(std::string_view page) { return JoinPath(HelpFolder, HelpPageName(page)); }

std::string HelpPageOf(int context) {
  return context == FastStartContext ? HelpPage("first-steps") : std::string(HelpFrontPage);
}

void OpenHelp(Desk& desk, const std::string& page, const std::string& topic) {
  const std::string file = PlaceOf(desk, page);
  std::error_code ignored;
  const bool there = std::filesystem::exists(file, ignored);
  if (there && desk.Open(file)) return;
  desk.Box(box::Information, "Help",
           there ? "There is no browser that could open " + file + "."
                 : "The help file with " + topic + " is not installed beside the program.");
}

void OpenHelpOf(Desk& desk, const Form& form) {
  OpenHelp(desk, HelpPage(form.name), "the page of this window");
}

}  // namespace vc
