// Writes a firmware image for demonstrations, of the simulated unit's own kind.
#include <charconv>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>

#include "unit/FirmwareImage.h"
#include "unit/WholeFile.h"

namespace {

std::optional<unsigned> Number(std::string_view text, unsigned low, unsigned high) {
  unsigned value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool good = error == std::errc() && end == text.data() + text.size() && value >= low && value <= high;
  return good ? std::optional(value) : std::nullopt;
}

}  // namespace

int main(int count, char** words) {
  constexpr unsigned lastVersion = 999;
  const bool whole = count == 5;
  const auto section = Number(whole ? words[2] : "", 1, 2);
  const auto version = Number(whole ? words[3] : "", 0, lastVersion);
  const auto size = Number(whole ? words[4] : "", unit::LeastImage, unit::SectionCapacity);
  if (!section || !version || !size) {
    std::cerr << "usage: make_image FILE SECTION VERSION SIZE (section 1 or 2, version in hundredths, size "
                 "in bytes)\n";
    return 2;
  }
  const unit::Bytes image = unit::MakeImage(unit::Sections[*section - 1], static_cast<int>(*version), *size);
  const std::string failure = unit::WriteWhole(words[1], {image.begin(), image.end()});
  if (failure.empty()) return 0;
  std::cerr << failure << '\n';
  return 1;
}
