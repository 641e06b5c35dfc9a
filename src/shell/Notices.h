// The small windows of the session: the splash of the start, and the object log.
#pragma once

#include <string>

#include "shell/Logos.h"
#include "text/ProgramInfo.h"
#include "text/modDebug.h"
#include "widgets/Controls.h"
#include "widgets/Forms.h"

namespace vc {

struct FrmSplash {
  FrmSplash() {
    lblTitle.heading = true;
    imgMark.lines = {6, 6};
  }
  Form form{"FrmSplash", ApplicationTitle, FormLook::Splash};
  Picture imgMark{form, "imgMark", ApplicationTitle, 1, DrawLogo};
  Label lblTitle{form, "lblTitle", ApplicationTitle + " Master Control Program"};
  Label lblVersion{form, "lblVersion", "Version " + VersionText()};
  Label lblWaiting{form, "lblWaiting", "Reading the last settings"};
};

// Shows the dump of the object log until it is closed.
struct FrmDebug {
  FrmDebug(modDebug& objectLog, Forms& openForms) : log(objectLog) {
    txtInfo.readOnly = true;
    txtInfo.multiLine = true;
    btnOK.clicked = [this, &openForms] { openForms.Unload(form); };
    form.okButton = &btnOK;
  }
  Form form{"FrmDebug", "Object Log"};
  TextBox txtInfo{form, "txtInfo", "Objects"};
  Button btnOK{form, "btnOK", "OK"};

  void Fill() {
    std::string text;
    log.DumpObjects(text);
    txtInfo.SetText(text);
  }

 private:
  modDebug& log;
};

}  // namespace vc
