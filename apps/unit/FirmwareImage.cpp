// Firmware images as the simulated unit understands them, and the two sections of its flash that hold them.
#include "unit/FirmwareImage.h"

#include <algorithm>
#include <span>
#include <string_view>

namespace unit {
namespace {

constexpr std::string_view Magic = "VLNIMAGE";
constexpr std::size_t KindAt = 8, LayoutAt = 9, VersionAt = 10, SizeAt = 12, HeadSize = 16, CheckSize = 4;
constexpr std::uint8_t Layout = 1;
constexpr std::size_t FilledUpTo = 128;
constexpr int LastVersion = 999;

// CRC-32 as in IEEE 802.3: reflected, polynomial 0x04C11DB7, all ones at the start and inverted at the end.
std::uint32_t Crc32(std::span<const std::uint8_t> bytes) {
  std::uint32_t crc = 0xFFFFFFFF;
  for (const std::uint8_t byte : bytes) {
    crc ^= byte;
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1U) ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0U);
  }
  return ~crc;
}

void AppendNumber(Bytes& bytes, std::uint32_t value, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> 8U * i));
}

std::uint32_t NumberAt(const Bytes& bytes, std::size_t place, std::size_t count) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < count; ++i) value |= std::uint32_t{bytes[place + i]} << 8U * i;
  return value;
}

std::uint8_t KindOf(Section section) { return section == Section::Main ? 'M' : 'D'; }

ImageFindings Flawed(std::string flaw) { return {.flaw = std::move(flaw)}; }

ImageFindings ExamineHead(Section section, const Bytes& content) {
  if (content.empty()) return Flawed("erased");
  if (content.size() < LeastImage || !std::equal(Magic.begin(), Magic.end(), content.begin()))
    return Flawed("no image");
  if (content[KindAt] != KindOf(section)) return Flawed("of another section");
  const std::uint32_t version = NumberAt(content, VersionAt, 2), size = NumberAt(content, SizeAt, 4);
  if (content[LayoutAt] != Layout || version > LastVersion || size < LeastImage) return Flawed("no image");
  if (size > content.size()) return Flawed("cut off");
  return {.complete = true, .versionHundredths = static_cast<int>(version), .flaw = {}};
}

}  // namespace

Bytes MakeImage(Section section, int versionHundredths, std::size_t size) {
  Bytes image = BytesOf(Magic);
  image.push_back(KindOf(section));
  image.push_back(Layout);
  AppendNumber(image, static_cast<std::uint32_t>(versionHundredths), SizeAt - VersionAt);
  AppendNumber(image, static_cast<std::uint32_t>(size), HeadSize - SizeAt);
  // A linear congruential generator modulo 2^32 (multiplier and increment of Numerical Recipes, "ranqd1").
  auto draw = static_cast<std::uint32_t>(versionHundredths) + NumberOf(section);
  while (image.size() + CheckSize < size) {
    draw = draw * 1664525U + 1013904223U;
    image.push_back(static_cast<std::uint8_t>(draw >> 24U));
  }
  AppendNumber(image, Crc32(image), CheckSize);
  return image;
}

ImageFindings Examine(Section section, const Bytes& content) {
  ImageFindings head = ExamineHead(section, content);
  if (!head.complete) return head;
  const std::size_t size = NumberAt(content, SizeAt, HeadSize - SizeAt);
  const auto image = std::span(content).first(size), behind = std::span(content).subspan(size);
  if (NumberAt(content, size - CheckSize, CheckSize) != Crc32(image.first(size - CheckSize)))
    return Flawed("damaged");
  const bool filled = std::all_of(behind.begin(), behind.end(), [](std::uint8_t byte) { return byte == 0; });
  return filled && behind.size() < FilledUpTo ? head : Flawed("followed by what is no part of it");
}

Images FactoryImages(int versionHundredths) {
  Images images;
  for (const Section section : Sections)
    images[NumberOf(section) - 1] = MakeImage(section, versionHundredths, FilledUpTo);
  return images;
}

std::string ImagesText(const Images& images) {
  std::string text;
  for (const Section section : Sections) {
    const Bytes& content = ImageOf(images, section);
    const ImageFindings findings = Examine(section, content);
    text += "image " + std::to_string(NumberOf(section)) + ' ';
    text +=
        findings.complete ? "complete, version " + VersionText(findings.versionHundredths) : findings.flaw;
    text += ", " + std::to_string(content.size()) + " bytes\n";
  }
  return text;
}

std::string VersionText(int hundredths) {
  const std::string digits = std::to_string(1000 + hundredths);
  return digits.substr(1, 1) + '.' + digits.substr(2);
}

}  // namespace unit
