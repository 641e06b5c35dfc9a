// The cleaning of one recording by the simulated unit, as both faces see it: what has been changed in the
// record is sent first, then the unit does it with the settings that it has, and is asked how far it is.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "link/modDeviceComm.h"
#include "model/SystemSettings.h"
#include "platform/Platform.h"
#include "sound/CleanWish.h"
#include "sound/UnitProgram.h"
#include "text/Wire.h"

namespace vc {

enum class CleanPhase { None, Sending, Running, Done, Cancelled, Failed };

struct CleanRun {
  struct Around {
    Platform& platform;
    const SystemSettings& settings;
    const modDeviceComm& device;
    UnitProgram& unit;
    // What the record was set from, in words: the open setup file. Empty where there is none.
    Wire<std::string()> setupName;
  };
  explicit CleanRun(const Around& parts);
  CleanRun(const CleanRun&) = delete;
  CleanRun& operator=(const CleanRun&) = delete;

  // Begins with a wish. What makes it impossible from the first is a failure like any other. Nothing happens
  // while another one is under way.
  void Start(const CleanWish& wanted);
  // Ends it without a file. The phase follows when the unit has said so.
  void Cancel();
  // By what settings it is or would be done, and what is to be known of them.
  std::string SettingsText() const;
  bool Busy() const { return phase == CleanPhase::Sending || phase == CleanPhase::Running; }

  CleanPhase phase = CleanPhase::None;
  CleanWish wish;     // the last one
  double done = 0.0;  // 0..1
  std::optional<double> secondsLeft;
  std::string error;                // of a failure, in words
  std::vector<std::string> report;  // when it is done
  std::function<void()> changed;    // any of these is another one

 private:
  void Tick();
  // Why the record and the unit are not one; empty where they are.
  std::string WhyApart() const;
  void Begin();
  void AskState();
  void TakeState(const Said& answer);
  void Fail(const std::string& why);
  void End(CleanPhase outcome);

  Around around;
  std::unique_ptr<Timer> tmrClean;
  bool asking = false;
};

}  // namespace vc
