// Values as lines of text: numbers in plain digits, texts in double quotes. Setup files and the files of
// single filters are made of these.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vc {

// Puts lines together, each ended by CR and LF.
struct LineWriter {
  std::string text;

  void Integer(std::int64_t value);
  // The shortest digits that read back to the same value. What is no number is written as 0, an infinity as
  // the largest number: the reader takes neither.
  void Float(float value);
  // In double quotes; a quote inside is doubled, line ends stay as they are.
  void Text(std::string_view value);
  // A line as it stands.
  void Line(std::string_view line);
};

// Takes values off lines that end with LF, or CR and LF. Each call is false, and the place unchanged, where
// the next line holds no such value.
struct LineReader {
  std::string_view text;
  std::size_t place = 0;

  bool AtEnd() const { return place >= text.size(); }
  // Within the numbers of its type. A fraction is rounded to nearest.
  bool Integer(std::int16_t& value);
  bool Integer(std::int32_t& value);
  // Finite.
  bool Float(float& value);
  // From the opening quote to the closing one, over line ends; a line without quotes counts as it stands.
  bool Text(std::string& value);
  // Whether the next line is this one, and the same with taking it.
  bool NextIs(std::string_view line) const;
  bool Is(std::string_view line);

 private:
  std::string_view Line() const;
  // Past the end of the line that holds nothing more behind `from`.
  bool Past(std::size_t from);
  template <typename Plain>
  bool Number(Plain& value);
  template <typename Plain>
  bool OtherNumber(Plain& value);
  bool QuotedText(std::string& value);
};

}  // namespace vc
