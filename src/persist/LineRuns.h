// Runs of lines, of which the list that describes a file consists: what each is of, how it is written and how
// it is read.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "model/Fields.h"
#include "persist/LineText.h"

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
struct LineRun {
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

// The lines of a field's elements, by the field's name.
LineRun RunOf(std::string_view field, IndexRange i, IndexRange j);

// Whether a text may break off before a line without being wrong for that.
enum class Ending { Early, Never };

void WriteRun(LineWriter& lines, const LineRun& run, SystemSettings& settings);
// False at a line that is no value of its type, and at the end of a text that may not break off there; what
// stood before it is in the record.
bool TakeRun(LineReader& lines, const LineRun& run, SystemSettings& settings, Ending ending);
// The same without storing anything.
bool SkipRun(LineReader& lines, const LineRun& run, Ending ending);

// A row of a page's table: the lines that the run has when the first one is `line`, its type, and what it is
// of, with the first index in those words where they are not empty.
std::string RunRow(const LineRun& run, int line, std::string_view index = {});

}  // namespace vc
