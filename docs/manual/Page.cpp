#include "manual/Page.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "shell/Help.h"
#include "text/ProgramInfo.h"

namespace manual {
namespace {

std::string Spaced(std::string_view address) {
  std::string safe;
  for (const char letter : address) safe += letter == ' ' ? "%20" : std::string(1, letter);
  return safe;
}

// What all pages have around them; up leads to the folder of the front page.
std::string Whole(const std::string& title, const std::string& up, const std::string& inside) {
  const std::string folder = up.empty() ? std::string(vc::HelpFolder) + "/" : "";
  const std::string home = "<header><a href=\"" + up + Spaced(vc::HelpFrontPage) + "\">" +
                           Escaped(vc::ApplicationTitle) + " Help</a></header>\n";
  return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
         "<meta name=\"color-scheme\" content=\"light dark\">\n<title>" +
         Escaped(title) + " - " + Escaped(vc::ApplicationTitle) +
         "</title>\n<link rel=\"stylesheet\" href=\"" + folder + "manual.css\">\n</head>\n<body>\n" +
         (up.empty() ? "" : home) + "<main>\n<h1>" + Escaped(title) + "</h1>\n" + inside +
         "</main>\n</body>\n</html>\n";
}

std::string Figure(const std::string& picture, const std::string& of) {
  if (picture.empty()) return {};
  return "<figure><img src=\"" + Spaced(picture) + "\" alt=\"The window " + Escaped(of) + "\"></figure>\n";
}

std::string Fact(const char* kind, const char* says, const std::string& value) {
  if (value.empty()) return {};
  return std::string("<li>") + says + " <span class=\"" + kind + "\">" + Escaped(value) + "</span></li>";
}

// What the operator calls the kinds of control.
std::string KindShown(const Facts& facts) {
  constexpr auto shown =
      std::to_array<std::pair<std::string_view, const char*>>({{"latch", "switch"},
                                                               {"updown", "number with arrows"},
                                                               {"entry", "menu entry"},
                                                               {"level", "level bar"},
                                                               {"text", "text box"},
                                                               {"options", "choice"},
                                                               {"check", "check box"},
                                                               {"progress", "progress bar"}});
  const auto* found = std::ranges::find(shown, facts.kind, &std::pair<std::string_view, const char*>::first);
  const std::string kind = found == shown.end() ? facts.kind : found->second;
  return facts.count > 1 ? kind + ", " + std::to_string(facts.count) + " of them" : kind;
}

std::string Choices(const Facts& facts) {
  std::string all;
  for (const std::string& choice : facts.choices) all += (all.empty() ? "" : " | ") + choice;
  return all;
}

std::string FactList(const Facts& facts) {
  const std::string list = Fact("range", "Range:", facts.range) +
                           Fact("choices", "Choices:", Choices(facts)) +
                           Fact("factory", "In a new setup:", facts.factory) + Fact("key", "Key:", facts.key);
  return list.empty() ? list : "<ul class=\"facts\">" + list + "</ul>";
}

}  // namespace

std::string FormPage::Section(const char* heading, const std::string& text) const {
  if (text.empty()) return {};
  return std::string("<h2>") + heading + "</h2>\n" + markup.Blocks(text);
}

const std::string* FormPage::WordsOf(const FormFacts::Row& row) const {
  for (const Words* source : {&words, common}) {
    for (const std::string& name : row.names) {
      const std::string* text = source == nullptr ? nullptr : source->Of(name);
      if (text != nullptr) return text;
    }
  }
  return nullptr;
}

// Of several with one caption each says which it is by its frame.
std::string FormPage::HeadingOf(const FormFacts::Row& row) const {
  const auto same = std::ranges::count_if(
      form.rows, [&row](const FormFacts::Row& other) { return other.facts.caption == row.facts.caption; });
  const bool told = row.facts.around.empty() || row.facts.around == row.facts.caption;
  return same < 2 || told ? row.facts.caption : row.facts.around + ": " + row.facts.caption;
}

std::string FormPage::Controls(Errata* missing) const {
  std::string list;
  for (const FormFacts::Row& row : form.rows) {
    const std::string* text = WordsOf(row);
    if (text == nullptr && missing != nullptr)
      missing->push_back(form.name + "." + row.names.front() + " has no words");
    list += "<dt id=\"" + row.names.front() + "\">" + Escaped(HeadingOf(row)) + " <span class=\"kind\">" +
            KindShown(row.facts) + "</span></dt>\n<dd>" +
            (text == nullptr ? std::string{} : "<p>" + markup.Line(*text) + "</p>") + FactList(row.facts) +
            "</dd>\n";
  }
  return list.empty() ? list : "<h2>Its controls</h2>\n<dl>\n" + list + "</dl>\n";
}

const std::string* KeyWords(const Words* keys, const std::string& form, const std::string& combination) {
  if (keys == nullptr) return nullptr;
  const std::string* own = keys->OfKey(form + "." + combination);
  return own != nullptr ? own : keys->OfKey(combination);
}

std::string FormPage::Keys(Errata* missing) const {
  std::string list;
  for (const std::string& combination : form.keys) {
    const std::string* text = KeyWords(keys, form.name, combination);
    if (text == nullptr && missing != nullptr) {
      missing->push_back(form.name + ": the key " + combination + " has no words");
    }
    list += "<tr><th scope=\"row\"><kbd>" + Escaped(combination) + "</kbd></th><td>" +
            (text == nullptr ? std::string{} : markup.Line(*text)) + "</td></tr>\n";
  }
  return list.empty() ? list : "<h2>Keys of the window</h2>\n<table>\n" + list + "</table>\n";
}

std::string KeyTable(const std::vector<FormFacts>& forms, const Words& keys, const Markup& markup) {
  constexpr std::size_t fewest = 4;  // windows that are not named one by one
  std::map<std::pair<std::string, std::string>, std::vector<std::string>> where;
  for (const FormFacts& form : forms) {
    for (const std::string& combination : form.keys) {
      const std::string* text = KeyWords(&keys, form.name, combination);
      if (text != nullptr)
        where[{combination, markup.Line(*text)}].push_back(markup.Line("[[" + form.name + "]]"));
    }
    for (const FormFacts::Row& row : form.rows) {
      const Facts& facts = row.facts;
      if (!facts.key.empty())
        where[{facts.key, Escaped(facts.caption)}].push_back(markup.Line("[[" + form.name + "]]"));
    }
  }
  std::string list;
  for (const auto& [key, pages] : where) {
    std::string names;
    for (const std::string& page : pages) names += (names.empty() ? "" : ", ") + page;
    if (pages.size() >= fewest) names = std::to_string(pages.size()) + " windows";
    list += "<tr><th scope=\"row\"><kbd>" + Escaped(key.first) + "</kbd></th><td>" + key.second +
            "</td><td>" + names + "</td></tr>\n";
  }
  return "<table>\n<thead><tr><th>Key</th><th>What it does</th><th>Where</th></tr></thead>\n<tbody>\n" +
         list + "</tbody>\n</table>\n";
}

std::string FormPage::Html(Errata* missing) const {
  return Whole(title, "../",
               Figure(picture, title) + Section("What it is for", words.purpose) +
                   Section("When to take it", words.when) + Section("What one hears", words.hear) +
                   Controls(missing) + Keys(missing) + Section("Good to know", words.notes));
}

std::string GeneralPage(const Words& words, const std::string& picture, const std::string& made,
                        const Markup& markup) {
  return Whole(words.title, "../", Figure(picture, words.title) + markup.Blocks(words.text) + made);
}

std::string FrontPage(const std::vector<FrontGroup>& groups) {
  std::string list;
  for (const FrontGroup& group : groups) {
    if (group.entries.empty()) continue;
    list += "<section><h2>" + Escaped(group.heading) + "</h2>\n<ul>\n";
    for (const Target& entry : group.entries) {
      list += "<li><a href=\"" + Spaced(entry.address) + "\">" + Escaped(entry.title) + "</a></li>\n";
    }
    list += "</ul></section>\n";
  }
  return Whole(vc::ApplicationTitle + " Help", "", "<nav class=\"contents\">\n" + list + "</nav>\n");
}

}  // namespace manual
