// One function for each kind of control: it makes the widgets, places them, and joins them to the model.
#pragma once

#include "desktop/Binder.h"

namespace desktop {

// An empty label beside a field or above it, for the control's caption; null where the pane takes none.
QLabel* CaptionOf(Pane& pane, QWidget* field);

// A text that shows a slider's number, beside the slider's view; the slider is described anew when it
// changes.
void BindNumber(Binder& binder, vc::TextBox& text, QWidget* slider, const std::function<void()>& describe);

void BindKind(Binder& binder, vc::Frame& frame);
void BindKind(Binder& binder, vc::Label& label);
void BindKind(Binder& binder, vc::TextBox& text);
void BindKind(Binder& binder, vc::Button& button);
void BindKind(Binder& binder, vc::GraphicButton& button);
void BindKind(Binder& binder, vc::Slider& slider);
void BindKind(Binder& binder, vc::ListBox& list);
void BindKind(Binder& binder, vc::OptionButton& option);
void BindKind(Binder& binder, vc::CheckBox& check);
void BindKind(Binder& binder, vc::LevelBar& bar);
void BindKind(Binder& binder, vc::ProgressBar& bar);
void BindKind(Binder& binder, vc::Plot& plot);
void BindKind(Binder& binder, vc::Picture& picture);
void BindKind(Binder& binder, vc::MenuEntry& entry);

}  // namespace desktop
