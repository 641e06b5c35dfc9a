#include "shell/Help.h"

#include "text/modFile.h"

namespace vc {

std::string HelpPageName(std::string_view page) { return std::string(page) + ".html"; }

std::string HelpPage(std::string_view page) { return JoinPath(HelpFolder, HelpPageName(page)); }

std::string HelpPageOf(int context) {
  return context == FastStartContext ? HelpPage("first-steps") : std::string(HelpFrontPage);
}

}  // namespace vc
