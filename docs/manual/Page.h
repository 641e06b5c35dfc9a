// One page of the manual as HTML.
#pragma once

#include <string>
#include <vector>

#include "manual/FormFacts.h"
#include "manual/Markup.h"
#include "manual/Words.h"

namespace manual {

// The file of words for controls that many forms have.
inline constexpr const char* Common = "common";

struct FormPage {
  std::string title;
  const FormFacts& form;
  const Words& words;
  const Words *common, *keys;  // null where there is none
  std::string picture;         // its address, empty where there is none
  Markup markup;

  // Controls without words are told where there is a list for that.
  std::string Html(Errata* missing) const;

 private:
  std::string Section(const char* heading, const std::string& text) const;
  std::string Controls(Errata* missing) const;
  std::string Keys(Errata* missing) const;
  std::string HeadingOf(const FormFacts::Row& row) const;
  const std::string* WordsOf(const FormFacts::Row& row) const;
};

// What a key does in a form; null where nothing is said of it.
const std::string* KeyWords(const Words* keys, const std::string& form, const std::string& combination);
// All keys of all forms and menus, one table.
std::string KeyTable(const std::vector<FormFacts>& forms, const Words& keys, const Markup& markup);

// Behind the text comes what is made of tables.
std::string GeneralPage(const Words& words, const std::string& picture, const std::string& made,
                        const Markup& markup);

struct FrontGroup {
  std::string heading;
  std::vector<Target> entries;
};
std::string FrontPage(const std::vector<FrontGroup>& groups);

}  // namespace manual
