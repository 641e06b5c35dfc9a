// As what a cleaned recording is written: the kind by its name, the depth by the recording's.
#pragma once

#include <string>
#include <string_view>
#include <variant>

namespace unit::clean {

struct OutputFormat {
  int format = 0;              // the library's container and coding
  unsigned bits = 0;           // of whole numbers; 0 where the file holds fractions
  std::string_view container;  // "WAV"
  std::string_view depth;      // "16 bits"
  std::string remark;          // why the depth is another than the recording's; empty where it is not
};

// What a file of that name can hold of a recording in the library's format, rate and number of channels: its
// depth or, where the kind has none such, the next better one, else its best. Or a line that says what is
// wrong, with the path first.
std::variant<OutputFormat, std::string> OutputFormatFor(const std::string& path, int recorded, int rate,
                                                        int channels);

// Of the whole numbers that a recording in the library's format holds or is decoded to; 0 for fractions.
unsigned BitsOf(int recorded);

}  // namespace unit::clean
