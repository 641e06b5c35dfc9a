// One function for each kind of control: it makes the widgets, places them, and joins them to the model.
#pragma once

#include "desktop/Binder.h"

namespace desktop {

// An empty label beside a field or above it, for the control's caption; null where the pane takes none.
QLabel* CaptionOf(Pane& pane, QWidget* field);

// The widgets of a text that shows a slider's number. Whoever shows the slider places them, and describes it
// anew when the text changes.
struct NumberStand {
  std::function<void(const Number& number)> place;
  std::function<void()> describe;
};
void BindNumber(Binder& binder, vc::TextBox& text, const NumberStand& stand);

void BindKind(Binder& binder, vc::Frame& frame);
void BindKind(Binder& binder, vc::Label& label);
void BindKind(Binder& binder, vc::TextBox& text);
void BindKind(Binder& binder, vc::Button& button);
void BindKind(Binder& binder, vc::GraphicButton& button);
void BindKind(Binder& binder, vc::Slider& slider);
void BindKind(Binder& binder, vc::UpDown& upDown);
void BindKind(Binder& binder, vc::ListBox& list);
void BindKind(Binder& binder, vc::Listing& listing);
void BindKind(Binder& binder, vc::OptionButton& option);
void BindKind(Binder& binder, vc::CheckBox& check);
void BindKind(Binder& binder, vc::LevelBar& bar);
void BindKind(Binder& binder, vc::ProgressBar& bar);
void BindKind(Binder& binder, vc::Plot& plot);
void BindKind(Binder& binder, vc::Waterfall& waterfall);
void BindKind(Binder& binder, vc::Picture& picture);
void BindKind(Binder& binder, vc::MenuEntry& entry);

}  // namespace desktop
