// A started session with a watched unit, worked as the operator does: controls by name on the form that is on
// top.
#pragma once

#include <string>

#include "DownloadFixture.h"
#include "widgets/ControlText.h"

namespace support {

struct PanelRun : DownloadRun {
  explicit PanelRun(std::int16_t configMode = 0) {
    if (configMode != 0) Edit("configMode", std::to_string(configMode));
    Settle();
  }

  vc::Form& Top() const { return *session.forms.Top(); }
  const vc::AnyControl& Find(const std::string& name) const {
    const vc::AnyControl* control = vc::FindControl(Top(), name);
    if (control == nullptr) throw vc::Fault{Top().name + " has no " + name};
    return *control;
  }
  std::string Get(const std::string& name) const { return vc::ValueOf(Find(name)); }
  // Each of these returns what is wrong, or nothing.
  std::string Set(const std::string& name, const std::string& value) const {
    return vc::SetControl(Find(name), value);
  }
  std::string Type(const std::string& name, const std::string& text, bool enter = false) const {
    return vc::TypeInto(Find(name), text, enter);
  }
  std::string Click(const std::string& name) const { return vc::ClickControl(Find(name)); }
  void Press(const std::string& keys) const { EXPECT_EQ(Top().Press(keys), ""); }

  // Opens the panel of a stage, with the stage made this kind before.
  void OpenFilter(int stage, std::int16_t kind) {
    record.filterType[stage] = kind;
    session.master.ConfigMasterControl();
    session.panels.OpenFilter(stage);
  }
  void CloseTop() { session.forms.Close(Top()); }
};

}  // namespace support
