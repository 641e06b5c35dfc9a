#include "persist/SetupText.h"

#include <algorithm>
#include <span>
#include <utility>

#include "model/Settings.h"
#include "persist/SetupLines.h"
#include "text/Convert.h"

namespace vc {
namespace {

// The elements of a run whose field is of type T, in stretches of memory; false as soon as visit says so.
template <typename T, typename Visit>
bool ForEachStretch(const SetupRun& run, SystemSettings& settings, Visit visit) {
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
bool ForEachElement(const SetupRun& run, SystemSettings& settings, Visit visit) {
  return std::visit([&]<typename T>(T*) { return ForEachStretch<T>(run, settings, visit); },
                    run.field->at(settings, run.i.first, run.j.first));
}

class Writer {
 public:
  Writer(SystemSettings& record, std::int16_t protectFlag, const LearnedStages& learnedStages)
      : settings(record), protect(protectFlag), learned(learnedStages) {
    constexpr std::size_t usualSize = 200000;
    lines.text.reserve(usualSize);
  }

  bool operator()(const SetupRun& run) {
    if (run.use == LineUse::CoefficientBlocks) {
      for (const auto& [stage, coefficients] : learned) WriteCoefficientBlock(lines, stage, coefficients);
    } else if (run.use == LineUse::Protection) {
      lines.Integer(protect);
    } else if (run.field == nullptr) {
      for (int line = 0; line < run.Lines(); ++line) lines.Line(run.constant);
    } else {
      ForEachElement(run, settings, [&](const auto& element) { return Write(element, run.law), true; });
    }
    return true;
  }

  std::string Text() { return std::move(lines.text); }

 private:
  void Write(std::int16_t value, const LineLaw* law) {
    lines.Integer(law == nullptr ? value : law->written(value));
  }
  void Write(float value, const LineLaw* /*law*/) { lines.Float(value); }
  void Write(const std::string& value, const LineLaw* /*law*/) { lines.Text(value); }
  template <typename Other>
  void Write(Other value, const LineLaw* /*law*/) {
    lines.Integer(value);
  }

  SystemSettings& settings;
  std::int16_t protect;
  const LearnedStages& learned;
  LineWriter lines;
};

class Reader {
 public:
  Reader(SystemSettings& record, std::string_view text, bool withConnection, LearnedStages& learnedStages)
      : settings(record), lines{text}, takeConnection(withConnection), learned(learnedStages) {}

  bool operator()(const SetupRun& run) {
    if (run.use == LineUse::CoefficientBlocks) return TakeBlocks();
    if (!Stores(run)) return Skip(run);
    return ForEachElement(run, settings,
                          [&](auto& element) { return lines.AtEnd() || Take(element, run.law); });
  }

 private:
  bool Stores(const SetupRun& run) const {
    return run.use == LineUse::Stored || (run.use == LineUse::Connection && takeConnection) ||
           (run.use == LineUse::Description && !settings.loadingSetup);
  }

  bool Skip(const SetupRun& run) {
    for (int line = 0; line < run.Lines(); ++line) {
      if (!lines.AtEnd() && !SkipLine(run.type)) return false;
    }
    return true;
  }

  bool SkipLine(LineType type) {
    std::int16_t integer = 0;
    float number = 0;
    std::string text;
    if (type == LineType::Float) return lines.Float(number);
    return type == LineType::Text ? lines.Text(text) : Take(integer, nullptr);
  }

  bool Take(std::int16_t& element, const LineLaw* law) {
    if (!lines.Integer(element)) return false;
    if (law != nullptr) element = law->taken(element);
    return true;
  }
  bool Take(float& element, const LineLaw* /*law*/) { return lines.Float(element); }
  bool Take(std::string& element, const LineLaw* /*law*/) { return lines.Text(element); }
  template <typename Other>
  bool Take(Other& element, const LineLaw* /*law*/) {
    std::int32_t value = 0;
    if (!lines.Integer(value)) return false;
    element = static_cast<Other>(value);
    return true;
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

  bool operator()(const SetupRun& run) {
    if (lines.AtEnd()) return false;
    good = Take(run);
    return good && run.use != LineUse::Protection;
  }

 private:
  bool Take(const SetupRun& run) {
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

bool ReadSetup(SystemSettings& settings, std::string_view text, bool takeConnection, LearnedStages& learned) {
  return WalkSetup(Reader(settings, text, takeConnection, learned));
}

bool ReadSetupHeader(std::string_view text, SetupHeader& header) {
  HeaderReader reader(text, header);
  WalkSetup(reader);
  return reader.good;
}

}  // namespace vc
