#include "persist/IndivFileType.h"

#include <array>

#include "text/Convert.h"

namespace vc {
namespace {

constexpr IndivLine SpectralEqualizerLines[]{{"edgeCurve", {0, 114}}};
constexpr IndivLine BandEqualizerLines[]{{"eqBandGain", {0, 19}}};
constexpr IndivLine SpectralInverseLines[]{{"sifModeSelect"},      {"filterAtten"},          {"sifROSSelect"},
                                           {"sifLoAttack"},        {"sifHiAttack"},          {"filterGain"},
                                           {"sifCurve", {0, 512}}, {"customCurve", {0, 460}}};
constexpr IndivLine HiResLines[]{{"hiResCurve", {0, 459}}};
constexpr IndivLine BandLines[]{{"bandGain", {0, 19}}};
constexpr IndivLine CustomCurveLines[]{{"customCurve", {0, 460}}};
constexpr IndivLine NoiseEqLines[]{{"noiseEqVals", {0, 19}}};
constexpr IndivLine RefCancellerLines[]{
    {"ch2Taps"}, {"ch2Mu"}, {"ch2Delay"}, {"ch2AutoNormalize"}, {"ch2ProcessOutput"}, {"ch2DelayChan"}};
constexpr IndivLine OneChAdaptiveLines[]{
    {"ch1Taps"}, {"ch1Mu"}, {"ch1PredSpan"}, {"ch1AutoNormalize"}, {"ch1ProcessOutput"}, {}};

using enum IndivFamily;

constexpr std::array<IndivFileRow, 9> Rows{{
    {".edf", "Spectral Graphic Equalizer", Equalizer, SpectralEqualizerLines},
    {".tbg", "20-Band Graphic Equalizer", Equalizer, BandEqualizerLines, false, true},
    {".sif", "Spectral Inverse Filter", FilterStage, SpectralInverseLines},
    {".hrf", "Hi-Res Graphic Equalizer", FilterStage, HiResLines},
    {".tbg", "20-Band Graphic Filter", FilterStage, BandLines},
    {".scc", "Custom Curve for Spectral Inverse Filter", FilterStage, CustomCurveLines},
    {".neq", "20-Band NoiseEQ Filter", BroadbandStage, NoiseEqLines},
    {".cof", "Reference Canceller Filter", FilterStage, RefCancellerLines, true},
    {".cof", "1-Channel Adaptive Filter", FilterStage, OneChAdaptiveLines, true},
}};

// What the page calls the first index of a field whose entries begin there.
std::string IndexWords(IndivFamily family, int first) {
  const std::string name = family == Equalizer ? "e" : family == FilterStage ? "s" : "b";
  return first == 1 ? name : name + " + " + std::to_string(first - 1);
}

std::string FormatText(const IndivFileRow& row) {
  std::string text = "\n## " + std::string(row.title) + ", `" + std::string(row.extension) +
                     "`\n\n| lines | type | what |\n|---|---|---|\n";
  int line = 1;
  for (const LineRun& run : IndivRuns(row, 1)) {
    text += RunRow(run, line, IndexWords(row.family, run.i.first)) + "\n";
    line += run.Lines();
  }
  if (row.learned) text += "| " + std::to_string(line) + "– | | the coefficient block |\n";
  if (row.linksSides) text += "\nWhile the channels are linked, a recall sets both sides.\n";
  return text;
}

constexpr std::string_view Introduction = R"(
# The files of one filter

Each holds the table of one filter, equalizer or broadband stage, stored and recalled from its panel. The text is that
of a setup: one value a line. There is no header; the extension tells the kind, and `.tbg` and `.cof` serve two: a table
stored from an equalizer is one for a filter as well.

- Below, `e` is an equalizer and `b` a broadband stage, 1 or 2, and `s` a filter stage, 1 to 6. Which one it is does not
  stand in the file: a table is recalled into the stage whose panel asks for it. The stage that a coefficient block
  names is that from which it was stored.
- A file is read as a whole or not at all: one that ends early or has a line that is no value changes nothing. Lines
  behind the last one are not read.
- What the lines do not reach of a table is 0 after the recall. Values are within their ranges as they are written, and
  are moved into them when they are read.
- A coefficient block is a line `"Coefficients"`, the stage, the count (1 to 8192, moved into that), and one integer a
  line, within 24 bits, the latest sample's first. A recall sends as many of them to the unit as the filter has taps.

Before a recall the table as it stood is stored as `Previous Filter Settings` with the extension of its kind, in the
working folder, or where the program keeps its files if there is none or it cannot be written.
)";

}  // namespace

std::span<const IndivFileRow> IndivFileRows() { return Rows; }

const IndivFileRow& IndivFile(std::int16_t type, const char* unknown) {
  if (type < 0 || static_cast<std::size_t>(type) >= Rows.size()) throw Fault{unknown};
  return Rows[static_cast<std::size_t>(type)];
}

std::vector<LineRun> IndivRuns(const IndivFileRow& row, int stage) {
  std::vector<LineRun> runs;
  for (const IndivLine& line : row.lines) {
    if (line.field.empty()) {
      runs.push_back({"reserved", LineUse::Dropped, LineType::Integer, nullptr, {}, {}, nullptr, "0"});
      continue;
    }
    const int entry = FindField(line.field)->extent[0].first + stage - 1;
    runs.push_back(RunOf(line.field, {entry, entry}, line.inner));
  }
  return runs;
}

std::string_view GetIndivSettingsFileExt(std::int16_t type) {
  return IndivFile(type, "GetIndivSettingsFileExt: Unknown memory mode type").extension;
}

int GetIndivStage(const SystemSettings& settings, std::int16_t type) {
  switch (IndivFile(type, "Unknown Individual Filter settings type.").family) {
    case Equalizer:
      return settings.curEq;
    case BroadbandStage:
      return settings.curBroadband;
    case FilterStage:
      break;
  }
  return settings.curFilter;
}

std::int16_t AdaptiveFileType(std::int16_t filterType) {
  return filterType == FilterKind::RefCanceller ? IndivFileType::RefCanceller : IndivFileType::OneChAdaptive;
}

std::string IndivFilesPage() {
  std::string page(Introduction);
  for (const IndivFileRow& row : Rows) page += FormatText(row);
  return page;
}

}  // namespace vc
