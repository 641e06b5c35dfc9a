// The markup of the manual's words as HTML.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "manual/Words.h"

namespace manual {

std::string Escaped(std::string_view text);

struct Target {
  std::string address;  // from the page that has the link
  std::string title;
};

struct Markup {
  // Where a page is and what it is called; nothing where there is none of that name.
  std::function<std::optional<Target>(const std::string& page)> find;
  // What "[Form.control]" has for a caption; nothing where there is no such control.
  std::function<std::optional<std::string>(const std::string& form, const std::string& control)> captionOf;
  Errata& errata;
  std::string page{};  // in whose words it stands, for the errata

  // `code`, *emphasis*, [[Page]], [[Page|words]], [Form.control].
  std::string Line(std::string_view text) const;
  // Paragraphs with a blank line between, "## " headings, "- " and "1. " lists, lines that begin with four
  // blanks as they stand.
  std::string Blocks(const std::string& text) const;

 private:
  std::string Link(const std::string& inside) const;
  std::string Caption(const std::string& inside) const;
  void Complain(const std::string& what) const { errata.push_back(page + ": " + what); }
};

}  // namespace manual
