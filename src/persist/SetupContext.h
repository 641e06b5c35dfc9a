// What the windows for files share: the session around them, and working without being disturbed.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "model/Download.h"
#include "model/RecordEdits.h"
#include "persist/OpenSetup.h"
#include "persist/modSettings.h"
#include "platform/Desk.h"
#include "platform/Files.h"
#include "widgets/Controls.h"
#include "widgets/Forms.h"

namespace vc {

struct SetupContext {
  SystemSettings& settings;
  modSettings& setups;
  Files& files;
  Desk& desk;
  Forms& forms;
  RecordEdits& edits;

  // Switches the master panel's main timer and returns what it was before.
  Wire<bool(bool on)> switchMainTimer;
  // A setup has been written, or is in the record; told with the file's name while the main timer is off.
  Wire<void(const std::string& name)> stored;
  Wire<void(const std::string& name)> recalled;
  // Another setup is to take the place of the one that stands ("Tape 2.nrv is recalled"): goes on once the
  // operator has settled what becomes of unsaved changes, and not at all where that is to keep them.
  Wire<void(const std::string& what, const std::function<void()>& go)> before;
  // A setup file has been stored or recalled, whole with its folder.
  Wire<void(const std::string& path)> used;
  // Gives the adaptive filter of a stage in the unit what it is to have learned.
  Wire<Transmission(int stage, std::span<const std::int32_t> coefficients)> sendLearned;
  OpenSetup open;

  // Of the file stored or recalled last in this run. Empty before, and once another working folder has been
  // chosen.
  std::string lastFolder{}, lastName{};
  bool working = false;  // a store or a recall is under way, and may change the record back

  // The folder of the last file, else the working folder.
  std::string StartFolder() const;
  // The record's. Where it has none, the operator's documents are looked for where the desk says.
  std::string WorkingFolder() const;
  // The record's, or the program's own: for the copies that a recall leaves.
  std::string CopyFolder() const;
  // What is wrong with a file whose header is not that of a setup.
  std::string FaultOf(const std::string& path) const;
  // A file has been stored or recalled.
  void Remember(const std::string& path);
  // A beep and a box.
  Answer Warn(int code, const std::string& title, const std::string& text) const;
  // Runs the work under the hourglass, with the main timer off, and returns what it returns.
  bool Work(const std::function<bool()>& work);
  // Runs an attempt with the form's handlers mute, so that nothing the operator does meanwhile disturbs it,
  // and takes the form away where the attempt returns true.
  void Attempt(Form& form, const std::function<bool()>& attempt) const;
  // Cancel, Escape and the window's own close button take the form away, unless its handlers are mute.
  void BindCancel(Form& form, Button& cancel) const;
};

}  // namespace vc
