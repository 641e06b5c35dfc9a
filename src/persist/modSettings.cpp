#include "persist/modSettings.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <utility>
#include <vector>

#include "model/BuiltRows.h"
#include "model/CoefReader.h"
#include "model/Kinds.h"
#include "model/Settings.h"
#include "persist/IndivFiles.h"
#include "persist/SafeFile.h"
#include "text/modFile.h"

namespace vc {
namespace {

constexpr int BlockSize = CoefBlockSize;

bool HasFolder(const std::string& path) { return std::filesystem::path(path).has_parent_path(); }

// A right-hand stage has the number that its panel shows.
std::string CompanionName(const SystemSettings& settings, int stage) {
  const bool right = stage > PairStages;
  const bool independent = settings.configMode == ConfigMode::StereoIndependent;
  const std::string side = !independent ? "" : right ? "Right " : "Left ";
  const int number = independent && right ? stage - PairStages : stage;
  return "Previous " + side + "Filter " + std::to_string(number) + " Settings.cof";
}

}  // namespace

std::string modSettings::Locate(const std::string& name) const {
  if (HasFolder(name)) return name;
  for (const std::string& path :
       {name, JoinPath(desk.InstallFolder(), name), JoinPath(desk.ProgramFolder(), name)}) {
    if (files.KindOf(path) == FileKind::File) return path;
  }
  return name;
}

bool modSettings::LoadSetupFile(const std::string& path, std::int16_t& flag, std::string* behind) {
  std::string text;
  if (!ReadWholeFile(files, Locate(path), text)) return false;
  const bool takeConnection = flag == TakeConnection;
  const std::int16_t comPort = settings.comPort;
  const std::int16_t baudIndex = settings.baudIndex;
  const bool linked = settings.linkReady && hooks.portOpen();
  const OperatorsTurn turn(settings);

  InitSettings(settings);
  settings.linkReady = linked;
  if (!takeConnection) {
    settings.comPort = comPort;
    settings.baudIndex = baudIndex;
  }
  LearnedStages learned;
  std::string_view rest;
  const bool read = ReadSetup(settings, text, takeConnection, learned, &rest);
  if (behind != nullptr) *behind = rest;
  ValidateSettings(settings);
  for (int stage = 1; stage <= FilterStages; ++stage) BuildRows(settings, stage);
  if (!read) return false;
  unwritten = Companions(learned);
  WriteCompanions();
  return true;
}

bool modSettings::RecallSetupFile(const std::string& path, std::int16_t flag) {
  const SystemSettings before = settings;
  if (LoadSetupFile(path, flag)) return true;
  settings = before;
  return false;
}

bool modSettings::PeekSetupFile(const std::string& path, SystemSettings& other) {
  std::string text;
  if (!ReadWholeFile(files, Locate(path), text)) return false;
  InitSettings(other);
  LearnedStages unused;
  if (!ReadSetup(other, text, false, unused)) return false;
  ValidateSettings(other);
  for (int stage = 1; stage <= FilterStages; ++stage) BuildRows(other, stage);
  return true;
}

std::map<std::string, std::string> modSettings::Companions(const LearnedStages& learned) const {
  std::map<std::string, std::string> companions;
  for (const auto& [stage, coefficients] : learned) {
    LineWriter lines;
    StoreIndivSettings(AdaptiveFileType(settings.filterType[stage]), lines, stage, settings, coefficients);
    companions[CompanionName(settings, stage)] = std::move(lines.text);
  }
  return companions;
}

void modSettings::WriteCompanions() {
  std::erase_if(unwritten, [this](const auto& companion) {
    const auto& [name, text] = companion;
    // A working folder on a medium that is not in must not cost the operator what was learned.
    return (!settings.workingFolder.empty() &&
            WriteWholeFile(files, JoinPath(settings.workingFolder, name), text)) ||
           WriteWholeFile(files, JoinPath(desk.InstallFolder(), name), text);
  });
}

std::string modSettings::CompanionFault() const {
  std::string names;
  for (const auto& [name, text] : unwritten) names += (names.empty() ? "" : " and ") + name;
  return names.empty() ? names : names + " could not be written.";
}

bool modSettings::SaveSetupFile(const std::string& path, std::int16_t protect, std::string_view behind) {
  LearnedStages learned;
  if (hooks.portOpen() && !ReadLearned(StagesWithBlocks(settings), learned)) return false;
  return WriteWholeFile(files, path, WriteSetup(settings, protect, learned).append(behind));
}

bool modSettings::ReadLearned(std::span<const int> stages, LearnedStages& learned) {
  blocksRead = blocksToRead = 0;
  for (const int stage : stages) {
    blocksToRead += (CoefficientCount(settings, stage) + BlockSize - 1) / BlockSize;
  }
  hooks.progress(0, blocksToRead);
  std::vector<std::int32_t> buffer(CoefCapacity);
  for (const int stage : stages) {
    if (!hooks.readCoefficients(stage, std::span<std::int32_t, CoefCapacity>(buffer))) return false;
    learned[stage].assign(buffer.begin(), buffer.begin() + CoefficientCount(settings, stage));
  }
  hooks.progress(blocksToRead, blocksToRead);
  return true;
}

bool modSettings::SaveWithoutCoefficients(const std::string& path, std::int16_t protect,
                                          std::string_view behind) {
  return WriteWholeFile(files, path, WriteSetup(settings, protect, {}).append(behind));
}

bool modSettings::ReadFileHeader(const std::string& path, SetupHeader& header) {
  std::string text;
  return ReadWholeFile(files, path, text) && ReadSetupHeader(text, header);
}

bool CheckModelId(const std::string& identifier) {
  constexpr std::array<std::string_view, 4> accepted{"ZORQ", "KYVN", "VELT", "VELTRA"};
  return std::ranges::find(accepted, identifier) != accepted.end();
}

}  // namespace vc
