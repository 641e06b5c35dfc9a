#include "manual/Manual.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <sstream>

#include "manual/Page.h"
#include "shell/Help.h"

namespace manual {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view KeysPage = "keys";  // has the words of all keys, and their table
constexpr const char* StyleSheet = "manual.css";

// The general pages in the order in which they are read.
constexpr auto GeneralPages = std::to_array<std::string_view>(
    {"first-steps", "chain", "whole-chain", "setups", "two-setups", "files", "memories", "reports",
     "firmware", "remote-unit", "line-trace", "trouble", "not-kept", "keys"});

struct Group {
  std::string_view name, heading;
};
constexpr std::array<Group, 4> Groups{{{"panels", "Panels of the filters and processors"},
                                       {"displays", "Displays"},
                                       {"setups", "Setups, files and memories"},
                                       {"windows", "Other windows"}}};

std::string Content(const fs::path& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

const Words* Find(const std::vector<Words>& all, std::string_view name) {
  const auto found = std::ranges::find(all, name, &Words::name);
  return found == all.end() ? nullptr : &*found;
}

class Maker {
 public:
  Maker(const fs::path& from, const std::vector<FormFacts>& allForms)
      : source(from),
        forms(allForms),
        formWords(ReadWords(from / "words", made.wrong)),
        pageWords(ReadWords(from / "words" / "pages", made.wrong)) {
    for (const FormFacts& form : forms) {
      if (Find(formWords, form.name) == nullptr) made.missing.push_back(form.name + " has no words");
    }
  }

  Manual Make() {
    TakePictures();
    for (std::size_t i = 0; i < GeneralPages.size(); ++i) MakeGeneral(std::string(GeneralPages[i]));
    for (const FormFacts& form : forms) MakeFormPage(form);
    ComplainOfStrangers();
    made.files[vc::HelpFrontPage] = FrontPage(FrontGroups());
    made.files[Within(StyleSheet)] = Content(source / StyleSheet);
    return std::move(made);
  }

 private:
  static std::string Within(const std::string& file) { return std::string(vc::HelpFolder) + "/" + file; }

  // Of a form the words' own title, or the caption of its window.
  std::optional<std::string> TitleOf(std::string_view page) const {
    const Words* general = Find(pageWords, page);
    if (general != nullptr) return general->title;
    const Words* words = Find(formWords, page);
    if (words != nullptr && !words->title.empty() && words->name != Common) return words->title;
    const auto form = std::ranges::find(forms, page, &FormFacts::name);
    return form == forms.end() ? std::nullopt : std::optional(form->caption);
  }

  Markup MarkupOf(const std::string& page) {
    return {.find = [this](const std::string& name) -> std::optional<Target> {
              const auto title = TitleOf(name);
              if (!title) return {};
              return Target{vc::HelpPageName(name), *title};
            },
            .captionOf = [this](const std::string& form,
                                const std::string& control) -> std::optional<std::string> {
              const auto found = std::ranges::find(forms, form, &FormFacts::name);
              if (found == forms.end()) return {};
              const auto caption = found->captions.find(control);
              return caption == found->captions.end() ? std::nullopt : std::optional(caption->second);
            },
            .errata = made.wrong,
            .page = page};
  }

  void TakePictures() {
    std::error_code error;
    fs::directory_iterator entry(source / "pictures", error);
    for (; !error && entry != fs::directory_iterator{}; entry.increment(error)) {
      const std::string file = "pictures/" + entry->path().filename().string();
      made.files[Within(file)] = Content(entry->path());
    }
  }

  // The picture of a page, empty where there is none.
  std::string PictureOf(const std::string& page, const Words* words) {
    const bool own = words == nullptr || words->picture.empty();
    const std::string file = "pictures/" + (own ? page : words->picture) + ".png";
    if (made.files.contains(Within(file))) return file;
    if (!own) made.wrong.push_back(page + ": there is no picture " + words->picture);
    return {};
  }

  void MakeGeneral(const std::string& name) {
    const Words* words = Find(pageWords, name);
    if (words == nullptr) {
      made.missing.push_back("pages/" + name + " has no words");
      return;
    }
    made.files[Within(vc::HelpPageName(name))] =
        GeneralPage(*words, PictureOf(name, words),
                    name == KeysPage ? KeyTable(forms, *words, MarkupOf(name)) : "", MarkupOf(name));
  }

  void MakeFormPage(const FormFacts& form) {
    const Words* words = Find(formWords, form.name);
    const Words none{.name = form.name};
    const std::string picture = PictureOf(form.name, words);
    if (picture.empty()) made.missing.push_back(form.name + " has no picture");
    const FormPage page{.title = TitleOf(form.name).value_or(form.name),
                        .form = form,
                        .words = words == nullptr ? none : *words,
                        .common = Find(formWords, Common),
                        .keys = Find(pageWords, KeysPage),
                        .picture = picture,
                        .markup = MarkupOf(form.name)};
    made.files[Within(vc::HelpPageName(form.name))] = page.Html(words == nullptr ? nullptr : &made.missing);
  }

  // Words of nothing that the program has.
  void ComplainOfStrangers() {
    for (const Words& words : formWords) {
      const auto form = std::ranges::find(forms, words.name, &FormFacts::name);
      if (words.name == Common) continue;
      if (form == forms.end()) {
        made.wrong.push_back(words.name + ".txt: there is no such form");
        continue;
      }
      if (std::ranges::find(Groups, words.group, &Group::name) == Groups.end()) {
        made.wrong.push_back(words.name + ".txt: \"" + words.group + "\" is no group");
      }
      for (const ControlWords& control : words.controls) {
        if (!form->captions.contains(control.name)) {
          made.wrong.push_back(words.name + ".txt: the form has no " + control.name);
        }
      }
    }
    for (const Words& words : pageWords) {
      if (std::ranges::find(GeneralPages, words.name) == GeneralPages.end()) {
        made.wrong.push_back("pages/" + words.name + ".txt: no list of pages has it");
      }
      for (const ControlWords& key : words.keys) {
        if (!HasKey(key.name))
          made.wrong.push_back("pages/" + words.name + ".txt: no window has the key " + key.name);
      }
    }
  }

  bool HasKey(const std::string& name) const {
    return std::ranges::any_of(forms, [&name](const FormFacts& form) {
      return std::ranges::any_of(form.keys, [&](const std::string& combination) {
        return name == combination || name == form.name + "." + combination;
      });
    });
  }

  std::vector<FrontGroup> FrontGroups() const {
    std::vector<FrontGroup> groups{{"To read first", {}}};
    for (const std::string_view page : GeneralPages) {
      const auto title = TitleOf(page);
      if (title) groups.back().entries.push_back({Within(vc::HelpPageName(page)), *title});
    }
    for (const Group& group : Groups) {
      groups.push_back({std::string(group.heading), {}});
      for (const FormFacts& form : forms) {
        const Words* words = Find(formWords, form.name);
        const bool here = words == nullptr ? &group == &Groups.back() : words->group == group.name;
        if (!here) continue;
        groups.back().entries.push_back(
            {Within(vc::HelpPageName(form.name)), TitleOf(form.name).value_or(form.name)});
      }
    }
    return groups;
  }

  const fs::path source;
  const std::vector<FormFacts>& forms;
  Manual made;
  const std::vector<Words> formWords, pageWords;
};

}  // namespace

Manual MakeManual(const fs::path& source, const std::vector<FormFacts>& forms) {
  return Maker(source, forms).Make();
}

}  // namespace manual
