#include "panels/ReportLines.h"

#include "panels/SliderText.h"

namespace vc {

ReportPiece::ReportPiece(const char* words) : ReportPiece(std::string(words)) {}
ReportPiece::ReportPiece(const std::string& words) : said([words] { return words; }) {}
ReportPiece::ReportPiece(const TextBox& shown) : said([&shown] { return shown.Taken(); }) {}
ReportPiece::ReportPiece(const SliderEntry& shown) : ReportPiece(shown.text) {}
ReportPiece::ReportPiece(const SliderText& shown) : ReportPiece(shown.entry) {}
ReportPiece::ReportPiece(const UpDownText& shown) : ReportPiece(shown.entry) {}
ReportPiece::ReportPiece(const ListBox& list) : said([&list] { return list.Text(); }) {}
ReportPiece::ReportPiece(const OptionGroup& options)
    : said([&options] { return options.SelectedCaption(); }) {}
ReportPiece::ReportPiece(const OptionField& options) : ReportPiece(options.options) {}
ReportPiece::ReportPiece(const Frame& frame) : said([&frame] { return frame.core.Caption(); }) {}

ReportPiece ReportPiece::Whether(std::function<bool()> so, const char* yes, const char* no) {
  return {[so = std::move(so), yes, no]() -> std::string { return so() ? yes : no; }};
}

ReportPiece ReportPiece::Whether(const GraphicButton& button, const char* down, const char* up) {
  return Whether([&button] { return button.Value() == 1; }, down, up);
}

ReportLine ReportLine::Token(const char* token, const std::int16_t& stage) {
  return ReportLine(token, ReportPiece([&stage] { return std::to_string(stage); })).AtMargin();
}

ReportLine ReportLine::Deeper() && {
  constexpr int step = 5;
  indent += step;
  return std::move(*this);
}

ReportLine ReportLine::AtMargin() && {
  margin = true;
  return std::move(*this);
}

ReportLine ReportLine::Where(std::function<bool()> condition) && {
  listed = std::move(condition);
  return std::move(*this);
}

std::vector<ReportText> TextsOf(std::span<const ReportLine> lines) {
  std::vector<ReportText> texts;
  for (const ReportLine& line : lines) {
    if (line.listed && !line.listed()) continue;
    ReportText& said = texts.emplace_back(ReportText{"", line.indent, line.margin});
    for (const ReportPiece& piece : line.pieces) said.text += piece.said();
  }
  return texts;
}

}  // namespace vc
