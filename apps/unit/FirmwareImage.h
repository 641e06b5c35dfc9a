// Firmware images as the simulated unit understands them, and the two sections of its flash that hold them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "unit/Bytes.h"

namespace unit {

enum class Section { Main, Daughter };
inline constexpr std::array Sections{Section::Main, Section::Daughter};

// 1 or 2.
inline constexpr unsigned NumberOf(Section section) { return section == Section::Main ? 1 : 2; }

inline constexpr std::size_t LeastImage = 20;            // bytes: nothing between head and check
inline constexpr std::size_t SectionCapacity = 1 << 20;  // bytes

// An image that is whole: "VLNIMAGE", "M" or "D" for the section, 1 for this layout, version (0..999, in
// hundredths, low byte first), its size in bytes (four bytes, low byte first), content, and the CRC-32 of all
// before it (four bytes, low byte first). The content is the same for the same section, version and size;
// `size` is at least LeastImage.
Bytes MakeImage(Section section, int versionHundredths, std::size_t size);

// What stands in a section.
struct ImageFindings {
  bool complete = false;
  int versionHundredths = 0;  // of a complete one
  std::string flaw;           // why it is not complete: "erased", "cut off", ...
};

// Behind an image its last packet may be filled up with zeros.
ImageFindings Examine(Section section, const Bytes& content);

// Main section first.
using Images = std::array<Bytes, Sections.size()>;

inline const Bytes& ImageOf(const Images& images, Section section) { return images[NumberOf(section) - 1]; }

// The images that a unit comes with: both complete, of the same version, a packet each.
Images FactoryImages(int versionHundredths);

// "image 1 complete, version 4.02, 128 bytes", "image 2 cut off, 1280 bytes": a line for each section.
std::string ImagesText(const Images& images);

// "4.02" for 402.
std::string VersionText(int hundredths);

}  // namespace unit
