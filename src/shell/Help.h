// The manual beside the program: a front page, and in a folder a page for each form and for some topics.
#pragma once

#include <string>
#include <string_view>

#include "platform/Desk.h"
#include "widgets/Form.h"

namespace vc {

// Where its files lie, seen from the program's folder.
inline constexpr const char* HelpFrontPage = "Veltrana Help.html";
inline constexpr const char* HelpFolder = "manual";

// A topic that the program asks for by number. Each number has a page of its own: what opens a file for the
// operator may lose a place within it.
inline constexpr int FastStartContext = 101;

// The page of a form by its name, or a general page: the file's name alone, and with its folder.
std::string HelpPageName(std::string_view page);
std::string HelpPage(std::string_view page);
// The page of a topic; the front page where no page has this number.
std::string HelpPageOf(int context);

// Has the system show a page in its browser. Where that cannot be the operator is told, of the file by its
// topic.
void OpenHelp(Desk& desk, const std::string& page, const std::string& topic);
// The page of a form.
void OpenHelpOf(Desk& desk, const Form& form);

}  // namespace vc
