// Loads hostile bytes as a setup file, in all the ways that a load can be asked for, and holds the result
// against what every load promises: a record in its ranges, that can be saved and comes back the same.
#include <array>
#include <cmath>

#include "MemoryFiles.h"
#include "Promise.h"
#include "QuietDesk.h"
#include "RecordPromises.h"
#include "Unheard.h"
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
  QuietDesk desk{InstallFolder};
  vc::modSettings setups{settings, files, desk, support::Unheard<vc::SetupHooks>()};

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
  vc::modDeviceConfig(settings, support::Unheard<vc::FitHooks>()).ConfigureStages(true);
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
