// Loads hostile bytes as a setup file, in all the ways that a load can be asked for, and holds the result
// against what every load promises: a record in its ranges, that can be saved and comes back the same.
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <type_traits>

#include "MemoryFiles.h"
#include "model/Fields.h"
#include "model/RegisterImage.h"
#include "model/Settings.h"
#include "model/modDeviceConfig.h"
#include "persist/modSettings.h"
#include "text/modFile.h"

namespace fuzz {
namespace {

using vc::SystemSettings;

const std::string SetupPath = "/setups/Hostile.nrv";
const std::string InstallFolder = "/program";
const std::string SavedPath = InstallFolder + "/Saved.nrv";

// Saving and loading again costs ten times the load: one input in so many is held to it.
constexpr std::size_t CostlyShare = 8;

void Require(bool held, std::string_view promise, std::string_view where = {}) {
  if (held) return;
  std::fprintf(stderr, "Broken promise: %.*s %.*s\n", static_cast<int>(promise.size()), promise.data(),
               static_cast<int>(where.size()), where.data());
  std::abort();
}

class NoDesk : public vc::Desk {
 public:
  vc::Answer Box(int code, const std::string& /*title*/, const std::string& /*text*/) override {
    return vc::SafeAnswer(vc::box::ButtonsOf(code));
  }
  void Beep() override {}
  void SetHourglass(bool /*shown*/) override {}
  void ShowProgress(std::string_view /*what*/, int /*done*/, int /*total*/) override {}
  bool Open(const std::string& /*target*/) override { return false; }
  void SetTheme(vc::Theme /*theme*/) override {}
  std::string InstallFolder() const override { return fuzz::InstallFolder; }
  std::string ProgramFolder() const override { return fuzz::InstallFolder; }
};

// How the file is loaded, from the low bits of the input's first byte; the file begins behind it.
struct Way {
  bool takeConnection, loadingSetup, workingFolderGone, linked;

  explicit Way(unsigned bits)
      : takeConnection((bits & 1U) != 0),
        loadingSetup((bits & 2U) != 0),
        workingFolderGone((bits & 4U) != 0),
        linked((bits & 8U) != 0) {}
};

SystemSettings Defaults() {
  SystemSettings settings;
  vc::InitSettings(settings);
  settings.workingFolder = "/setups";
  return settings;
}

// A program that has just started, and its files.
struct Program {
  MemoryFiles files;
  SystemSettings settings;
  NoDesk desk;
  vc::modSettings setups{settings, files, desk};

  explicit Program(const Way& way) {
    if (way.workingFolderGone) files.onlyFolder = InstallFolder;
    static const SystemSettings defaults = Defaults();
    settings = defaults;
    settings.loadingSetup = way.loadingSetup;
    settings.linkReady = way.linked;
    setups.hooks.portOpen = [way] { return way.linked; };
    setups.hooks.readCoefficients = [](int stage, std::span<std::int32_t, vc::CoefCapacity> coefficients) {
      std::ranges::fill(coefficients, -stage);
      return true;
    };
  }
};

// Whether the rule lets a number stand outside the range of its edits.
template <typename T>
bool StandsAnyway(const vc::Rule& rule, T value) {
  if (std::holds_alternative<vc::rules::WhenEdited>(rule)) return true;
  const auto* within = std::get_if<vc::rules::WithinOr>(&rule);
  return within != nullptr && static_cast<double>(value) == within->other;
}

template <typename T>
void RequireRange(SystemSettings& settings, const vc::FieldRow& row) {
  const bool varies = std::holds_alternative<vc::rules::FollowsField>(row.rule) ||
                      std::holds_alternative<vc::rules::FollowsLimits>(row.rule);
  vc::ForEachStretch<T>(settings, row, [&](int i, std::span<T> elements) {
    int j = row.extent[1].first;
    auto range = vc::FieldRange(settings, row, i, j);
    for (const T element : elements) {
      if (varies) range = vc::FieldRange(settings, row, i, j++);
      const bool inside = element >= static_cast<T>(range->lower) && element <= static_cast<T>(range->upper);
      Require(inside || StandsAnyway(row.rule, element), "in its range:", row.name);
    }
  });
}

// Limits that follow from the fit bind once the fit has run.
void RequireRanges(SystemSettings& settings, bool fitted) {
  for (const vc::FieldRow& row : vc::Fields()) {
    if (vc::IsDerived(row) || (!fitted && std::holds_alternative<vc::rules::FollowsLimits>(row.rule)))
      continue;
    std::visit(
        [&]<typename T>(T*) {
          if constexpr (std::is_arithmetic_v<T>) RequireRange<T>(settings, row);
        },
        row.at(settings, row.extent[0].first, row.extent[1].first));
  }
}

// In all that a file can carry.
void RequireSame(const SystemSettings& one, const SystemSettings& other, std::string_view promise) {
  if (one == other) return;
  for (const vc::FieldRow& row : vc::Fields()) {
    if (vc::IsDerived(row)) continue;
    vc::ForEachElement(row, [&](int i, int j) {
      Require(row.value(one, i, j) == row.value(other, i, j), promise, row.name);
    });
  }
}

bool IsCompanion(std::string_view name) {
  const auto isOne = [name](std::string_view side, int stages) {
    for (int number = 1; number <= stages; ++number) {
      if (name == "Previous " + std::string(side) + "Filter " + std::to_string(number) + " Settings.cof")
        return true;
    }
    return false;
  };
  return isOne("", vc::FilterStages) || isOne("Left ", vc::PairStages) || isOne("Right ", vc::PairStages);
}

// The six settings and one block.
bool IsWholeFilterFile(std::string_view text) {
  vc::LineReader lines{text};
  std::int16_t number = 0;
  for (int line = 0; line < 6; ++line) {
    if (!lines.Integer(number)) return false;
  }
  vc::LineReader block = lines;
  std::vector<std::int32_t> coefficients;
  if (!block.Is(vc::CoefficientLine) || !block.Integer(number) || number < 1 || number > vc::FilterStages)
    return false;
  return vc::ReadCoefficientBlock(lines, number, coefficients) && lines.AtEnd();
}

void RequireOnlyCompanions(const Program& program) {
  for (const auto& [path, text] : program.files.content) {
    if (path == SetupPath || path == SavedPath) continue;
    const std::size_t end = path.rfind("Previous ");
    Require(end != std::string::npos && IsCompanion(path.substr(end)), "only filters are written:", path);
    const std::string name = path.substr(end);
    Require(path == vc::JoinPath(program.settings.workingFolder, name) ||
                path == vc::JoinPath(InstallFolder, name),
            "only to the folders given:", path);
    Require(IsWholeFilterFile(text), "a filter file is whole:", path);
  }
}

// What a record is written as, it comes back from.
void RequireRoundTrip(Program& program) {
  program.settings.levelControlsShown &= 1;  // a file carries no more of it
  Require(program.setups.SaveSetupFile(SavedPath, 0), "can be saved");
  const std::string& saved = program.files.content[SavedPath];
  Program next(Way(0));
  next.files.content[SavedPath] = saved;
  std::int16_t flag = vc::TakeConnection;
  Require(next.setups.LoadSetupFile(SavedPath, flag), "what was saved loads");
  RequireOnlyCompanions(next);
  next.setups.hooks = program.setups.hooks;
  RequireSame(next.settings, program.settings, "comes back as it was saved:");
  Require(next.setups.SaveSetupFile(SavedPath, 0), "can be saved again");
  Require(next.files.content[SavedPath] == saved, "is written the same again");
}

void RequireHeader(Program& program, const Way& way) {
  vc::SetupHeader header;
  if (!program.setups.ReadFileHeader(SetupPath, header)) return;
  Require(header.protect == 0 || header.protect == 1, "the protection flag is one");
  Require(way.loadingSetup || header.description == program.settings.setupDescription,
          "header and load read the same description");
}

// A recall that fails leaves the record; one that succeeds is a load.
void RequireRecall(const std::string& setup, const Way& way, bool loaded, const SystemSettings& expected) {
  Program program(way);
  program.files.content[SetupPath] = setup;
  const SystemSettings before = program.settings;
  const bool recalled = program.setups.RecallSetupFile(SetupPath, way.takeConnection ? 1 : 0);
  Require(recalled == loaded, "a recall is a load");
  Require(program.settings == (recalled ? expected : before), "a recall loads all or nothing");
}

// What the panels and the unit are given of the record.
void UseRecord(SystemSettings& settings) {
  vc::modDeviceConfig(settings).ConfigureStages(true);
  RequireRanges(settings, true);
  vc::RegisterImage image;
  vc::ForgetImage(image);
  vc::RefreshImage(image, settings);
}

void TrySetup(const Way& way, const std::string& setup) {
  Program program(way);
  program.files.content[SetupPath] = setup;
  std::int16_t flag = way.takeConnection ? vc::TakeConnection : vc::KeepConnection;
  const bool loaded = program.setups.LoadSetupFile(SetupPath, flag);
  RequireOnlyCompanions(program);
  RequireHeader(program, way);
  RequireRanges(program.settings, false);
  if (std::hash<std::string>()(setup) % CostlyShare != 0) return;
  SystemSettings again = program.settings;
  vc::ValidateSettings(again);
  RequireSame(again, program.settings, "validated once is valid:");
  RequireRecall(setup, way, loaded, program.settings);
  RequireRoundTrip(program);
  UseRecord(program.settings);
  RequireRoundTrip(program);
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  fuzz::TrySetup(fuzz::Way(data[0]), std::string(data + 1, data + size));
  return 0;
}
