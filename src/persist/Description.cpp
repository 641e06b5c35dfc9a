#include "persist/Description.h"

#include "model/FieldAccess.h"

namespace vc {
namespace {

std::string WithoutReturns(std::string text) {
  std::erase(text, '\r');
  return text;
}

}  // namespace

Description::Description(SetupContext& setupContext) : context(setupContext) {
  txtDescription.multiLine = true;
  txtDescription.lines = 8;
  form.initialFocus = &txtDescription.core;
  btnOK.clicked = [this] {
    const std::string text = Edited(context.settings.setupDescription, txtDescription.Text());
    context.edits.Apply({{&RowOf<&SystemSettings::setupDescription>(), 0, 0, text}}, {"File Description"});
    context.forms.Unload(form);
  };
  context.BindCancel(form, btnCancel);
}

void Description::Fill() { txtDescription.SetText(context.settings.setupDescription); }

std::string Edited(const std::string& before, const std::string& typed) {
  return WithoutReturns(before) == WithoutReturns(typed) ? before : typed;
}

}  // namespace vc
