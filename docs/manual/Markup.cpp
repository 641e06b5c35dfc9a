#include "manual/Markup.h"

#include <array>
#include <cctype>
#include <sstream>
#include <vector>

namespace manual {
namespace {

enum class Kind { Blank, Heading, Bullet, Number, Code, Text };

// How many letters stand before the text of a numbered line, 0 where it is none.
std::size_t NumberLength(std::string_view line) {
  std::size_t digits = 0;
  while (digits < line.size() && std::isdigit(static_cast<unsigned char>(line[digits]))) ++digits;
  return digits > 0 && line.substr(digits).starts_with(". ") ? digits + 2 : 0;
}

Kind KindOf(std::string_view line) {
  if (line.find_first_not_of(" \t\r") == std::string_view::npos) return Kind::Blank;
  if (line.starts_with("## ")) return Kind::Heading;
  if (line.starts_with("- ")) return Kind::Bullet;
  if (line.starts_with("    ")) return Kind::Code;
  return NumberLength(line) > 0 ? Kind::Number : Kind::Text;
}

// Lines that belong together, each item of a list by itself.
struct Block {
  Kind kind;
  std::vector<std::string> items;
};

std::vector<Block> SplitBlocks(const std::string& text) {
  std::vector<Block> blocks;
  bool apart = true;  // a blank line or a heading came before
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    const Kind kind = KindOf(line);
    const bool list = kind == Kind::Bullet || kind == Kind::Number;
    if (kind == Kind::Blank) {
      apart = true;
      continue;
    }
    const std::string content = kind == Kind::Heading  ? line.substr(3)
                                : kind == Kind::Bullet ? line.substr(2)
                                : kind == Kind::Number ? line.substr(NumberLength(line))
                                : kind == Kind::Code   ? line.substr(4)
                                                       : line.substr(line.find_first_not_of(' '));
    const bool same = !blocks.empty() && blocks.back().kind == kind;
    if (kind == Kind::Text && !apart) {
      blocks.back().items.back() += " " + content;  // goes on with a paragraph or an item
    } else if (same && list) {
      blocks.back().items.push_back(content);
    } else if (same && kind == Kind::Code && !apart) {
      blocks.back().items.back() += "\n" + content;
    } else {
      blocks.push_back({kind, {content}});
    }
    apart = kind == Kind::Heading;
  }
  return blocks;
}

std::string Element(const std::string& tag, const std::string& inside) {
  return "<" + tag + ">" + inside + "</" + tag + ">";
}

}  // namespace

std::string Escaped(std::string_view text) {
  std::string safe;
  for (const char letter : text) {
    switch (letter) {
      case '&':
        safe += "&amp;";
        break;
      case '<':
        safe += "&lt;";
        break;
      case '>':
        safe += "&gt;";
        break;
      case '"':
        safe += "&quot;";
        break;
      default:
        safe += letter;
    }
  }
  return safe;
}

std::string Markup::Link(const std::string& inside) const {
  const auto bar = inside.find('|');
  const std::string name = inside.substr(0, bar);
  const auto target = find(name);
  if (!target) {
    Complain("[[" + inside + "]] leads nowhere");
    return Escaped(inside);
  }
  const std::string words = bar == std::string::npos ? target->title : inside.substr(bar + 1);
  return "<a href=\"" + Escaped(target->address) + "\">" + Escaped(words) + "</a>";
}

std::string Markup::Caption(const std::string& inside) const {
  const auto dot = inside.find('.');
  const auto caption = captionOf(inside.substr(0, dot), inside.substr(dot + 1));
  if (!caption) Complain("there is no control [" + inside + "]");
  return "<b>" + Escaped(caption.value_or(inside)) + "</b>";
}

std::string Markup::Line(std::string_view text) const {
  struct Mark {
    std::string_view opens, closes;
    std::string (*made)(const Markup& markup, const std::string& inside);
  };
  static constexpr std::array<Mark, 4> marks{
      {{"`", "`", [](const Markup&, const std::string& inside) { return Element("code", Escaped(inside)); }},
       {"[[", "]]", [](const Markup& markup, const std::string& inside) { return markup.Link(inside); }},
       {"[", "]",
        [](const Markup& markup, const std::string& inside) {
          return inside.find('.') == std::string::npos ? Escaped("[" + inside + "]") : markup.Caption(inside);
        }},
       {"*", "*",
        [](const Markup& markup, const std::string& inside) { return Element("em", markup.Line(inside)); }}}};
  std::string html;
  while (!text.empty()) {
    bool taken = false;
    for (const Mark& mark : marks) {
      const auto end = text.find(mark.closes, mark.opens.size());
      const bool here = text.starts_with(mark.opens) && end != std::string_view::npos &&
                        end > mark.opens.size() && text[mark.opens.size()] != ' ';
      if (!here) continue;
      html += mark.made(*this, std::string(text.substr(mark.opens.size(), end - mark.opens.size())));
      text.remove_prefix(end + mark.closes.size());
      taken = true;
      break;
    }
    if (taken) continue;
    html += Escaped(text.substr(0, 1));
    text.remove_prefix(1);
  }
  return html;
}

std::string Markup::Blocks(const std::string& text) const {
  std::string html;
  for (const Block& block : SplitBlocks(text)) {
    std::string items;
    for (const std::string& item : block.items) items += "\n<li>" + Line(item) + "</li>";
    switch (block.kind) {
      case Kind::Heading:
        html += Element("h2", Line(block.items.front()));
        break;
      case Kind::Bullet:
        html += Element("ul", items + "\n");
        break;
      case Kind::Number:
        html += Element("ol", items + "\n");
        break;
      case Kind::Code:
        html += Element("pre", Escaped(block.items.front()));
        break;
      default:
        html += Element("p", Line(block.items.front()));
    }
    html += '\n';
  }
  return html;
}

}  // namespace manual
