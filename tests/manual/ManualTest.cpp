// The manual that is shipped, made of the words in the tree, held against the program.
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include <gmock/gmock.h>

#include "PanelOpening.h"
#include "manual/Manual.h"
#include "manual/OpenForms.h"
#include "shell/Help.h"

namespace manual {
namespace {

using testing::IsEmpty;

const Manual& Made() {
  static const Manual made = [] {
    const support::TempFolder folder;
    OpenForms forms(folder.Path());
    return MakeManual(MANUAL_SOURCE, FactsOfAll(forms));
  }();
  return made;
}

bool IsPage(const std::string& path) { return path.ends_with(".html"); }

// What stands behind each opening up to the quotation mark or tag that ends it.
std::vector<std::string> AllBehind(const std::string& opening, const std::string& text) {
  std::vector<std::string> found;
  for (auto at = text.find(opening); at != std::string::npos; at = text.find(opening, at)) {
    at += opening.size();
    found.push_back(text.substr(at, text.find_first_of("\"<", at) - at));
  }
  return found;
}

std::string WithSpaces(std::string link) {
  for (auto at = link.find("%20"); at != std::string::npos; at = link.find("%20")) link.replace(at, 3, " ");
  return link;
}

TEST(Manual, SaysSomethingOfEveryFormControlAndKeyAndNothingElse) {
  EXPECT_THAT(Made().wrong, IsEmpty());
  EXPECT_THAT(Made().missing, IsEmpty());
}

// Also of those that no table of the program has, since they are opened by a panel alone.
TEST(Manual, HasAPageForEveryFormInTheSources) {
  std::set<std::string> forms{"MasterControl"};
  for (const auto& entry : std::filesystem::recursive_directory_iterator(PROGRAM_SOURCES)) {
    std::ostringstream text;
    text << std::ifstream(entry.path()).rdbuf();
    for (const char* opening : {" form(\"", " form{\""}) {
      for (const std::string& name : AllBehind(opening, text.str())) forms.insert(name);
    }
  }
  for (const std::string& name : support::PanelNames()) forms.insert(name);
  for (const vc::WindowRow& row : vc::Windows::Rows()) forms.insert(std::string(row.name));
  EXPECT_TRUE(forms.contains("EDGEDrop") && forms.contains("CtlNoiseParms")) << "the sources are read";
  for (const std::string& form : forms) EXPECT_TRUE(Made().files.contains(vc::HelpPage(form))) << form;
  EXPECT_TRUE(Made().files.contains(vc::HelpPageOf(vc::FastStartContext)));
  EXPECT_TRUE(Made().files.contains(vc::HelpPageOf(0)));
}

TEST(Manual, HasNoDeadLink) {
  std::set<std::string> reached{vc::HelpFrontPage};
  for (const auto& [path, html] : Made().files) {
    if (!IsPage(path)) continue;
    auto links = AllBehind("href=\"", html);
    for (const std::string& picture : AllBehind("src=\"", html)) links.push_back(picture);
    for (const std::string& link : links) {
      const auto place =
          (std::filesystem::path(path).parent_path() / WithSpaces(link)).lexically_normal().string();
      EXPECT_TRUE(Made().files.contains(place)) << path << " links " << link;
      if (path == vc::HelpFrontPage) reached.insert(place);
    }
    const auto ids = AllBehind("id=\"", html);
    EXPECT_EQ(std::set(ids.begin(), ids.end()).size(), ids.size()) << path << " has an anchor twice";
  }
  for (const auto& [path, html] : Made().files) {
    EXPECT_TRUE(!IsPage(path) || reached.contains(path)) << "the front page does not lead to " << path;
  }
}

// The range of a control as its page has it; empty where it has none.
std::string RangeIn(const std::string& html, const std::string& control) {
  const auto begin = html.find("<dt id=\"" + control + "\"");
  if (begin == std::string::npos) return {};
  const auto ranges = AllBehind("class=\"range\">", html.substr(begin, html.find("</dd>", begin) - begin));
  return ranges.empty() ? std::string{} : ranges.front();
}

// Whether a page's range ends at what is shown; where it hangs on other settings, whether that lies within.
bool Agrees(const std::string& range, const std::string& shown, const std::string& unit) {
  const auto to = range.find(" to ");
  if (to == std::string::npos) return false;
  if (range.find(", as other settings") == std::string::npos) {
    return range.starts_with(shown + " to ") || range.substr(to).starts_with(" to " + shown + unit);
  }
  const double number = *vc::ParseNumber(shown);
  const std::string upper = range.substr(to + 4, range.find(' ', to + 4) - to - 4);
  return *vc::ParseNumber(range.substr(0, to)) <= number && number <= *vc::ParseNumber(upper);
}

// A slider that has one box beside it is moved to an end, if nothing holds it back.
int HoldAgainst(vc::Form& form, const std::string& html) {
  int held = 0;
  for (const vc::AnyControl& control : form.controls) {
    vc::Slider* slider = vc::SliderIn(control);
    if (slider == nullptr || !slider->core.Usable() || vc::TextsOf(*slider).size() != 1) continue;
    const vc::TextBox& box = *vc::TextsOf(*slider).front();
    const std::string range = RangeIn(html, slider->core.name), unit = box.unit.empty() ? "" : " " + box.unit;
    const double before = slider->Position();
    for (const double end : {slider->PositionMin(), slider->PositionMax()}) {
      slider->SetPosition(end);
      if (slider->Position() != end || !vc::ParseNumber(box.Text())) continue;
      EXPECT_TRUE(Agrees(range, box.Text(), unit)) << form.name << "." << slider->core.FullName() << " shows "
                                                   << box.Text() << unit << ", and the manual says " << range;
      ++held;
    }
    slider->SetPosition(before);
  }
  return held;
}

TEST(Manual, HasTheRangesOfTheProgram) {
  support::PanelRun run;
  int held = HoldAgainst(run.session.master.form, Made().files.at(vc::HelpPage("MasterControl")));
  support::ForEachPanel(
      run, [&] { held += HoldAgainst(run.Top(), Made().files.at(vc::HelpPage(run.Top().name))); });
  EXPECT_GT(held, 100) << "ends of ranges were compared";
}

}  // namespace
}  // namespace manual
