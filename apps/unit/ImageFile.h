// The file in which the firmware images outlive the program.
#pragma once

#include <optional>
#include <string>

#include "unit/FirmwareImage.h"

namespace unit {

// "section 1 BYTES" and the bytes in hexadecimal, 128 a line, the same for section 2, and the checksum.
std::string ImageFileText(const Images& images);

struct LoadedImages {
  std::optional<Images> images;  // nothing where there is no file: the unit is as it was delivered
  std::string trouble;           // one line that says what was wrong with the file, empty where nothing was
  bool writable = true;          // false where a bad file still stands there, which nothing may overwrite
};

// Of a file that can't be read, or is not just as ImageFileText makes it, both sections come out erased, and
// it is renamed to PATH.damaged.
LoadedImages LoadImages(const std::string& path);

}  // namespace unit
