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
  const Words* common;  // null where there is none
  std::string picture;  // its address, empty where there is none
  Markup markup;

  // Controls without words are told where there is a list for that.
  std::string Html(Errata* missing) const;

 private:
  std::string Section(const char* heading, const std::string& text) const;
  std::string Controls(Errata* missing) const;
  std::string HeadingOf(const FormFacts::Row& row) const;
  const std::string* WordsOf(const FormFacts::Row& row) const;
};

std::string GeneralPage(const Words& words, const std::string& picture, const Markup& markup);

struct FrontGroup {
  std::string heading;
  std::vector<Target> entries;
};
std::string FrontPage(const std::vector<FrontGroup>& groups);

}  // namespace manual
