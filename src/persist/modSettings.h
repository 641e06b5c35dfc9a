// Setup files: the whole of the settings record as text, one value a line, with what the unit has learned.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "link/veltrana.h"
#include "model/SystemSettings.h"
#include "persist/SetupText.h"
#include "platform/Desk.h"
#include "platform/Files.h"
#include "text/Wire.h"

namespace vc {

inline constexpr const char* SetupExtension = ".nrv";
inline constexpr const char* LastStateFile = "veltrana.set";
inline constexpr const char* FactoryFile = "Factory Defaults.nrv";

// Whether a load takes comPort, baudIndex and workingFolder from the file, or leaves them alone.
inline constexpr std::int16_t TakeConnection = 1;
inline constexpr std::int16_t KeepConnection = 0;

struct SetupHooks {
  Wire<bool()> portOpen;
  // Learned coefficients of a stage, read back from the unit; false where that failed.
  Wire<bool(int stage, std::span<std::int32_t, CoefCapacity> coefficients)> readCoefficients;
  // How many blocks of how many have been read back.
  Wire<void(int done, int total)> progress;
};

struct modSettings {
  modSettings(SystemSettings& record, Files& hostFiles, const Desk& operatorDesk, SetupHooks wires)
      : hooks(std::move(wires)), settings(record), files(hostFiles), desk(operatorDesk) {}

  SetupHooks hooks;

  // Defaults, then the file's values, then the ranges. False where the file cannot be opened, and then
  // nothing has changed; false too where it breaks off at a line that is none, and then what stood before
  // that line is in the record. A file that merely ends early is good. Learned coefficients go into files of
  // their own, "Previous Filter 1 Settings.cof"; one that cannot be written does not make the setup a bad one
  // (see CompanionFault). behind gets what the file has beyond the setup, where that is asked for.
  bool LoadSetupFile(const std::string& path, std::int16_t& flag, std::string* behind = nullptr);
  // A load that leaves the record as it was where it fails.
  bool RecallSetupFile(const std::string& path, std::int16_t flag);
  // What a file holds, in a record of the caller's own. False where it cannot be read whole.
  bool PeekSetupFile(const std::string& path, SystemSettings& other);
  // Writes the record with what the unit has learned; without, where the port is closed. False where anything
  // failed, and then the old file stands as it was. behind is put beyond the setup, as it is.
  bool SaveSetupFile(const std::string& path, std::int16_t protect, std::string_view behind = {});
  // The same without asking the unit.
  bool SaveWithoutCoefficients(const std::string& path, std::int16_t protect, std::string_view behind = {});
  // False where the file cannot be read or one of its first three lines is no such line.
  bool ReadFileHeader(const std::string& path, SetupHeader& header);

  // "Previous Filter 1 Settings.cof could not be written." of the last good load, empty where all were.
  std::string CompanionFault() const;
  // Tries those again.
  void WriteCompanions();

  // Where a file of that name lies: a name without a folder is looked for in the current folder, then where
  // the program keeps its files, then beside the executable. A name that is nowhere comes back as it is.
  std::string Locate(const std::string& name) const;

  // Reads back what the unit has learned in these stages; false where any of it cannot be had.
  bool ReadLearned(std::span<const int> stages, LearnedStages& learned);
  // Told of every block that the reading of coefficients has brought.
  void CountBlock() { hooks.progress(++blocksRead, blocksToRead); }

 private:
  std::map<std::string, std::string> Companions(const LearnedStages& learned) const;

  SystemSettings& settings;
  Files& files;
  const Desk& desk;
  std::map<std::string, std::string> unwritten;  // companions of the last good load, their texts by name
  int blocksRead = 0, blocksToRead = 0;          // by the reading that is under way
};

// True for the identifiers of this program and of those whose files it can read.
bool CheckModelId(const std::string& identifier);

}  // namespace vc
