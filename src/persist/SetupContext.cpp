#include "persist/SetupContext.h"

#include <filesystem>

#include "persist/FileNames.h"

namespace vc {
namespace {

// Puts back what a work has changed around it, also where it ends in a Fault.
struct WorkScope {
  explicit WorkScope(SetupContext& around) : context(around), timerWasOn(around.switchMainTimer(false)) {
    context.working = true;
    context.desk.SetHourglass(true);
  }
  ~WorkScope() {
    context.working = false;
    context.desk.SetHourglass(false);
    context.switchMainTimer(timerWasOn);
  }
  WorkScope(const WorkScope&) = delete;
  WorkScope& operator=(const WorkScope&) = delete;

  SetupContext& context;
  const bool timerWasOn;
};

// A folder, or another one where it is not there.
std::string ThereOr(const std::string& folder, const std::string& otherwise) {
  std::error_code ignored;
  const bool there = std::filesystem::is_directory(folder, ignored);
  return std::filesystem::absolute(there ? folder : otherwise, ignored).string();
}

}  // namespace

std::string SetupContext::StartFolder() const {
  std::error_code ignored;
  return std::filesystem::is_directory(lastFolder, ignored) ? lastFolder : WorkingFolder();
}

std::string SetupContext::WorkingFolder() const {
  return ThereOr(settings.workingFolder, desk.DocumentFolder());
}

std::string SetupContext::CopyFolder() const { return ThereOr(settings.workingFolder, desk.InstallFolder()); }

std::string SetupContext::FaultOf(const std::string& path) const {
  const FileKind kind = files.KindOf(path);
  if (kind == FileKind::Nothing) return "There is no setup file of this name.";
  if (kind == FileKind::Folder) return "This is a folder.";
  std::string none;
  return files.ReadStart(path, 0, none) ? "This is not a valid setup file." : "This file cannot be read.";
}

void SetupContext::Remember(const std::string& path) {
  lastFolder = FolderOf(path);
  lastName = LastPart(path);
}

Answer SetupContext::Warn(int code, const std::string& title, const std::string& text) const {
  desk.Beep();
  return desk.Box(code, title, text);
}

bool SetupContext::Work(const std::function<bool()>& work) {
  const WorkScope scope(*this);
  return work();
}

void SetupContext::Attempt(Form& form, const std::function<bool()>& attempt) const {
  if (form.muted > 0) return;
  bool done = false;
  {
    const Mute mute(form);
    done = attempt();
  }
  if (done) forms.Unload(form);
}

void SetupContext::BindCancel(Form& form, Button& cancel) const {
  cancel.clicked = [this, &form] { forms.Unload(form); };
  form.cancelButton = &cancel;
}

}  // namespace vc
