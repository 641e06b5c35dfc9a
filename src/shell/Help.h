// The manual beside the program: a front page, and in a folder a page for each form and for some topics.
#pragma once

#include <string>
#include <string_view>

namespace vc {

// Where its files lie, seen from the program's folder.
inline constexpr const char* HelpFrontPage = "Veltrana Help.html";
inline constexpr const char* HelpFolder = "manual";

// A topic that the program asks for by number; 0 is the front page.
inline constexpr int FastStartContext = 101;

// The page of a form, or a general page by its name: the file's name alone.
std::string HelpPageName(std::string_view page);
// The same with its folder.
std::string HelpPage(std::string_view page);
// The page of a topic; the front page where no page has this number.
std::string HelpPageOf(int context);

}  // namespace vc
