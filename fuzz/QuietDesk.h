// An operator of whom nothing is seen: boxes are answered, the rest is let go by.
#pragma once

#include <string>
#include <utility>

#include "platform/Desk.h"

namespace fuzz {

class QuietDesk : public vc::Desk {
 public:
  explicit QuietDesk(std::string folder) : folders(std::move(folder)) {}

  bool agrees = false;  // says Ok or Yes to all that is asked; else what changes nothing

  vc::Answer Box(int code, const std::string& /*title*/, const std::string& /*text*/) override {
    const vc::box::Buttons buttons = vc::box::ButtonsOf(code);
    if (!agrees) return vc::SafeAnswer(buttons);
    const bool yesOrNo = buttons == vc::box::Buttons::YesNo || buttons == vc::box::Buttons::YesNoCancel;
    return yesOrNo ? vc::Answer::Yes : vc::Answer::Ok;
  }
  void Beep() override {}
  void SetHourglass(bool /*shown*/) override {}
  void ShowProgress(std::string_view /*what*/, int /*done*/, int /*total*/) override {}
  void ShowWaiting(int /*tenths*/) override {}
  bool Open(const std::string& /*target*/) override { return false; }
  void SetTheme(vc::Theme /*theme*/) override {}
  std::string InstallFolder() const override { return folders; }
  std::string DocumentFolder() const override { return folders; }
  std::string ProgramFolder() const override { return folders; }
  std::string ExecutableFolder() const override { return folders; }
  bool ProgramFolderReadOnly() const override { return false; }

 private:
  std::string folders;
};

}  // namespace fuzz
