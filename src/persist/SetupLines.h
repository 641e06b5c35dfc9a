// The lines of a setup file in their order, told once: the writer, the reader and the page that documents the
// format walk this list. A line's place is its meaning; there is no version number, so the order never
// changes and what is new goes to the end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "model/Fields.h"

namespace vc {

enum class LineUse {
  Stored,            // in the record
  Connection,        // in the record where the load asks for connection values
  Description,       // in the record but while the program starts or begins a new setup
  Dropped,           // written for the programs that once had a use for it
  Protection,        // told by the header alone
  CoefficientBlocks  // no line of its own: here stand the blocks of learned coefficients, if there are any
};

// Where the number in the file and the one in the record differ.
struct LineLaw {
  std::int16_t (*written)(std::int16_t value);
  std::int16_t (*taken)(std::int16_t line);
  std::string_view words;
};

enum class LineType { Integer, Float, Text };

// Consecutive lines of one field, the last index running fastest, or of one constant.
struct SetupRun {
  std::string_view name;
  LineUse use;
  LineType type;
  const FieldRow* field = nullptr;  // null for a constant
  IndexRange i{};
  IndexRange j{};
  const LineLaw* law = nullptr;
  std::string_view constant{};  // as it stands in the line

  int Lines() const {
    if (use == LineUse::CoefficientBlocks) return 0;
    return (i.last - i.first + 1) * (j.last - j.first + 1);
  }
};

std::span<const SetupRun> SetupRuns();

// Shows every run to the visitor in the order of the file; false as soon as the visitor says so.
template <typename Visitor>
bool WalkSetup(Visitor&& visit) {
  for (const SetupRun& run : SetupRuns()) {
    if (!visit(run)) return false;
  }
  return true;
}

// The format as a Markdown page.
std::string SetupFilePage();

}  // namespace vc
