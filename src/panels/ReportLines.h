// What a panel says in a report of the whole setup: a description beside its controls, line by line of words
// and of what the controls show. The report reads it and knows no panel.
#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "widgets/Controls.h"
#include "widgets/GraphicButton.h"

namespace vc {

struct SliderText;
struct UpDownText;
struct SliderEntry;
struct OptionField;

// Words, or what a control shows when it is asked; the control outlives it. Of a text that is being typed
// what was taken last counts.
struct ReportPiece {
  ReportPiece(const char* words);           // NOLINT(google-explicit-constructor): a line is a row of them
  ReportPiece(const std::string& words);    // NOLINT(google-explicit-constructor)
  ReportPiece(const TextBox& shown);        // NOLINT(google-explicit-constructor)
  ReportPiece(const SliderEntry& shown);    // NOLINT(google-explicit-constructor)
  ReportPiece(const SliderText& shown);     // NOLINT(google-explicit-constructor)
  ReportPiece(const UpDownText& shown);     // NOLINT(google-explicit-constructor)
  ReportPiece(const ListBox& list);         // NOLINT(google-explicit-constructor): the chosen row
  ReportPiece(const OptionGroup& options);  // NOLINT(google-explicit-constructor): the chosen caption
  ReportPiece(const OptionField& options);  // NOLINT(google-explicit-constructor)
  ReportPiece(const Frame& frame);          // NOLINT(google-explicit-constructor): its caption
  ReportPiece(std::function<std::string()> text)  // NOLINT(google-explicit-constructor)
      : said(std::move(text)) {}
  // One of two words, by whether something is so, or a button down.
  static ReportPiece Whether(std::function<bool()> so, const char* yes, const char* no);
  static ReportPiece Whether(const GraphicButton& button, const char* down, const char* up);

  std::function<std::string()> said;
};

struct ReportLine {
  template <typename... Pieces>
  requires(std::convertible_to<const Pieces&, ReportPiece>&&...) explicit ReportLine(const Pieces&... row)
      : pieces{ReportPiece(row)...} {}

  // A line alone at the margin, which whoever prints the report draws something for; see ReportToken.
  static ReportLine Token(const char* token, const std::int16_t& stage);
  static ReportLine Empty() { return ReportLine().AtMargin(); }

  ReportLine Deeper() &&;
  ReportLine AtMargin() &&;
  ReportLine Where(std::function<bool()> condition) &&;  // said only while it is true

  std::vector<ReportPiece> pieces;
  int indent = 0;                // beyond that of what the lines belong to
  bool margin = false;           // without any indent
  std::function<bool()> listed;  // none where it is always said
};

// A line as it is said.
struct ReportText {
  std::string text;
  int indent = 0;
  bool margin = false;
  bool operator==(const ReportText&) const = default;
};
std::vector<ReportText> TextsOf(std::span<const ReportLine> lines);

}  // namespace vc
