// The file in which the firmware images outlive the program.
#include "unit/ImageFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <span>
#include <string_view>
#include <utility>
#include <variant>

#include "unit/KeptFile.h"
#include "unit/WholeFile.h"
#include "unit/Words.h"

namespace unit {
namespace {

constexpr std::size_t BytesPerLine = 128;

std::string SectionText(Section section, const Bytes& content) {
  std::string text =
      "section " + std::to_string(NumberOf(section)) + ' ' + std::to_string(content.size()) + '\n';
  for (auto rest = std::span(content); !rest.empty();) {
    const auto line = rest.first(std::min(BytesPerLine, rest.size()));
    text += HexText(line) + '\n';
    rest = rest.subspan(line.size());
  }
  return text;
}

void AppendBytes(std::string_view line, Bytes& content) {
  Words words(line);
  while (!words.Rest().empty() && content.size() < SectionCapacity)
    content.push_back(words.Number<std::uint8_t>(0, 255, 16).value_or(0));
}

Images ImagesOf(std::string_view text) {
  Images images;
  Bytes* content = images.data();
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    Words words(line);
    if (words.Next() == "section") {
      content = &images[words.Number(1U, 2U).value_or(1) - 1];
    } else if (!line.starts_with("checksum")) {
      AppendBytes(line, *content);
    }
    text.remove_prefix(std::min(line.size() + 1, text.size()));
  }
  return images;
}

LoadedImages RefusedImages(const std::string& path, const std::string& wrong) {
  PutAside aside = PutFileAside(path, wrong, "both sections are erased");
  return {Images{}, std::move(aside.trouble), aside.writable};
}

}  // namespace

std::string ImageFileText(const Images& images) {
  std::string text;
  for (const Section section : Sections) text += SectionText(section, ImageOf(images, section));
  return WithChecksum(text);
}

LoadedImages LoadImages(const std::string& path) {
  const auto read = ReadWhole(path);
  if (const int* const error = std::get_if<int>(&read)) {
    if (*error == ENOENT) return {};
    return RefusedImages(path, std::string("can't be read: ") + std::strerror(*error));
  }
  const auto& text = std::get<std::string>(read);
  Images images = ImagesOf(text);
  if (ImageFileText(images) != text) return RefusedImages(path, "is damaged");
  return {std::move(images), {}};
}

}  // namespace unit
