#include "persist/LineRuns.h"

#include <span>
#include <string>
#include <variant>

namespace vc {
namespace {

// The elements of a run whose field is of type T, in stretches of memory; false as soon as visit says so.
template <typename T, typename Visit>
bool ForEachStretch(const LineRun& run, SystemSettings& settings, Visit visit) {
  const auto count = static_cast<std::size_t>(run.j.last - run.j.first) + 1;
  for (int i = run.i.first; i <= run.i.last; ++i) {
    T* first = std::get<T*>(run.field->at(settings, i, run.j.first));
    for (T& element : std::span<T>(first, count)) {
      if (!visit(element)) return false;
    }
  }
  return true;
}

// The same whatever the type of the field.
template <typename Visit>
bool ForEachElement(const LineRun& run, SystemSettings& settings, Visit visit) {
  return std::visit([&]<typename T>(T*) { return ForEachStretch<T>(run, settings, visit); },
                    run.field->at(settings, run.i.first, run.j.first));
}

LineType TypeOf(const FieldRow& row) {
  SystemSettings any;
  const FieldRef element = row.at(any, row.extent[0].first, row.extent[1].first);
  if (std::holds_alternative<float*>(element)) return LineType::Float;
  return std::holds_alternative<std::string*>(element) ? LineType::Text : LineType::Integer;
}

void Write(LineWriter& lines, std::int16_t value, const LineLaw* law) {
  lines.Integer(law == nullptr ? value : law->written(value));
}
void Write(LineWriter& lines, float value, const LineLaw* /*law*/) { lines.Float(value); }
void Write(LineWriter& lines, const std::string& value, const LineLaw* /*law*/) { lines.Text(value); }
template <typename Other>
void Write(LineWriter& lines, Other value, const LineLaw* /*law*/) {
  lines.Integer(value);
}

bool Take(LineReader& lines, std::int16_t& element, const LineLaw* law) {
  if (!lines.Integer(element)) return false;
  if (law != nullptr) element = law->taken(element);
  return true;
}
bool Take(LineReader& lines, float& element, const LineLaw* /*law*/) { return lines.Float(element); }
bool Take(LineReader& lines, std::string& element, const LineLaw* /*law*/) { return lines.Text(element); }
template <typename Other>
bool Take(LineReader& lines, Other& element, const LineLaw* /*law*/) {
  std::int32_t value = 0;
  if (!lines.Integer(value)) return false;
  element = static_cast<Other>(value);
  return true;
}

bool SkipLine(LineReader& lines, LineType type) {
  std::int16_t integer = 0;
  float number = 0;
  std::string text;
  if (type == LineType::Float) return lines.Float(number);
  return type == LineType::Text ? lines.Text(text) : lines.Integer(integer);
}

bool BreaksOff(const LineReader& lines, Ending ending) { return ending == Ending::Early && lines.AtEnd(); }

std::string LinesText(int first, int count) {
  const std::string from = std::to_string(first);
  return count == 1 ? from : from + "–" + std::to_string(first + count - 1);
}

std::string IndexText(const IndexRange& range) {
  const std::string first = std::to_string(range.first);
  return "[" + (range.first == range.last ? first : first + ".." + std::to_string(range.last)) + "]";
}

std::string WhatText(const LineRun& run, std::string_view index) {
  if (run.field == nullptr) {
    const std::string written =
        run.use == LineUse::Protection ? "0 or 1" : "`" + std::string(run.constant) + "`";
    return std::string(run.name) + ": " + written;
  }
  std::string text = "`" + std::string(run.name);
  if (run.field->dimensions > 0) text += index.empty() ? IndexText(run.i) : "[" + std::string(index) + "]";
  if (run.field->dimensions > 1) text += IndexText(run.j);
  text += "`";
  if (run.law != nullptr) text.append(", ").append(run.law->words);
  return text;
}

std::string_view TypeText(LineType type) {
  if (type == LineType::Integer) return "integer";
  return type == LineType::Float ? "float" : "text";
}

}  // namespace

LineRun RunOf(std::string_view field, IndexRange i, IndexRange j) {
  const FieldRow* row = FindField(field);
  return {field, LineUse::Stored, TypeOf(*row), row, i, j};
}

void WriteRun(LineWriter& lines, const LineRun& run, SystemSettings& settings) {
  if (run.field == nullptr) {
    for (int line = 0; line < run.Lines(); ++line) lines.Line(run.constant);
    return;
  }
  ForEachElement(run, settings, [&](const auto& element) { return Write(lines, element, run.law), true; });
}

bool TakeRun(LineReader& lines, const LineRun& run, SystemSettings& settings, Ending ending) {
  if (run.field == nullptr) return SkipRun(lines, run, ending);
  return ForEachElement(run, settings, [&](auto& element) {
    return BreaksOff(lines, ending) || Take(lines, element, run.law);
  });
}

bool SkipRun(LineReader& lines, const LineRun& run, Ending ending) {
  for (int line = 0; line < run.Lines(); ++line) {
    if (!BreaksOff(lines, ending) && !SkipLine(lines, run.type)) return false;
  }
  return true;
}

std::string RunRow(const LineRun& run, int line, std::string_view index) {
  std::string row = "| " + LinesText(line, run.Lines()) + " | ";
  return row.append(TypeText(run.type)).append(" | ").append(WhatText(run, index)).append(" |");
}

}  // namespace vc
