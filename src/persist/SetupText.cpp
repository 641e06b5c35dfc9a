#include "persist/SetupText.h"

#include <algorithm>
#include <utility>

#include "model/Settings.h"
#include "persist/SetupLines.h"
#include "text/Convert.h"

namespace vc {
namespace {

class Writer {
 public:
  Writer(SystemSettings& record, std::int16_t protectFlag, const LearnedStages& learnedStages)
      : settings(record), protect(protectFlag), learned(learnedStages) {
    constexpr std::size_t usualSize = 200000;
    lines.text.reserve(usualSize);
  }

  bool operator()(const LineRun& run) {
    if (run.use == LineUse::CoefficientBlocks) {
      for (const auto& [stage, coefficients] : learned) WriteCoefficientBlock(lines, stage, coefficients);
    } else if (run.use == LineUse::Protection) {
      lines.Integer(protect);
    } else {
      WriteRun(lines, run, settings);
    }
    return true;
  }

  std::string Text() { return std::move(lines.text); }

 private:
  SystemSettings& settings;
  std::int16_t protect;
  const LearnedStages& learned;
  LineWriter lines;
};

class Reader {
 public:
  Reader(SystemSettings& record, std::string_view text, bool withConnection, LearnedStages& learnedStages)
      : settings(record), lines{text}, takeConnection(withConnection), learned(learnedStages) {}

  bool operator()(const LineRun& run) {
    if (run.use == LineUse::CoefficientBlocks) return TakeBlocks();
    return Stores(run) ? TakeRun(lines, run, settings, Ending::Early) : SkipRun(lines, run, Ending::Early);
  }

  std::string_view Rest() const {
    return lines.AtEnd() ? std::string_view{} : lines.text.substr(lines.place);
  }

 private:
  bool Stores(const LineRun& run) const {
    return run.use == LineUse::Stored || (run.use == LineUse::Connection && takeConnection) ||
           (run.use == LineUse::Description && !settings.loadingSetup);
  }

  bool TakeBlocks() {
    if (!lines.NextIs(CoefficientLine)) return true;
    ValidateSettings(settings);  // which stages have blocks hangs on what has just been read
    return std::ranges::all_of(StagesWithBlocks(settings), [this](int stage) {
      return !lines.NextIs(CoefficientLine) || ReadCoefficientBlock(lines, stage, learned[stage]);
    });
  }

  SystemSettings& settings;
  LineReader lines;
  bool takeConnection;
  LearnedStages& learned;
};

// The lines up to the protection flag.
class HeaderReader {
 public:
  HeaderReader(std::string_view text, SetupHeader& target) : lines{text}, header(target) {}
  bool good = true;

  bool operator()(const LineRun& run) {
    if (lines.AtEnd()) return false;
    good = Take(run);
    return good && run.use != LineUse::Protection;
  }

 private:
  bool Take(const LineRun& run) {
    if (run.use != LineUse::Protection) {
      return lines.Text(run.use == LineUse::Description ? header.description : header.identifier);
    }
    if (!lines.Integer(header.protect)) return false;
    header.protect &= 1;
    return true;
  }

  LineReader lines;
  SetupHeader& header;
};

}  // namespace

std::string WriteSetup(SystemSettings& settings, std::int16_t protect, const LearnedStages& learned) {
  const OperatorsTurn turn(settings);
  Writer writer(settings, protect, learned);
  WalkSetup(writer);
  return writer.Text();
}

bool ReadSetup(SystemSettings& settings, std::string_view text, bool takeConnection, LearnedStages& learned,
               std::string_view* behind) {
  Reader reader(settings, text, takeConnection, learned);
  const bool good = WalkSetup(reader);
  if (behind != nullptr) *behind = reader.Rest();
  return good;
}

bool ReadSetupHeader(std::string_view text, SetupHeader& header) {
  HeaderReader reader(text, header);
  WalkSetup(reader);
  return reader.good;
}

}  // namespace vc
