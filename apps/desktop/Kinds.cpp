#include "desktop/Kinds.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGroupBox>
#include <QLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>

#include "desktop/LevelBarView.h"
#include "desktop/PictureView.h"
#include "desktop/QtText.h"
#include "desktop/SliderView.h"
#include "desktop/WrappedLabel.h"
#include "text/Convert.h"
#include "widgets/Controls.h"
#include "widgets/GraphicButton.h"
#include "widgets/LevelBar.h"

namespace desktop {
namespace {

// Without a caption there is no line around it either, and what lies in it keeps its own margins.
void ShowFrame(QGroupBox& box, const vc::Frame& frame) {
  const bool captioned = !frame.core.Caption().empty();
  box.setTitle(ToQt(frame.core.Caption()));
  box.setProperty("captioned", captioned);
  box.style()->unpolish(&box);  // the style sheet asks for the property
  box.style()->polish(&box);
  const int line = captioned ? LineHeight(box) : 0;
  box.layout()->setContentsMargins(line, line * 2 / 3, line, line * 3 / 4);
}

}  // namespace

QLabel* CaptionOf(Pane& pane, QWidget* field) {
  auto* caption = new QLabel(pane.Container());
  caption->setBuddy(field);  // its access key leads there
  return caption;
}

void BindKind(Binder& binder, vc::Frame& frame) {
  Pane& pane = binder.PaneOf(frame.core);
  auto* box = new QGroupBox(pane.Container());
  pane.AddWide(box);
  binder.AddPane(frame, box);
  binder.Bind(frame.core, {.widget = box, .showCaption = [box, &frame, &binder] {
                             ShowFrame(*box, frame);
                             binder.NameWithin(frame);
                           }});
}

void BindKind(Binder& binder, vc::Label& label) {
  Pane& pane = binder.PaneOf(label.core);
  auto* view = new WrappedLabel(pane.Container());
  pane.AddWide(view);
  binder.Bind(label.core, {.widget = view, .showCaption = [view, &label] {
                             view->setText(ToQt(vc::WithoutAccessKey(label.core.Caption())));
                           }});
}

void BindKind(Binder& binder, vc::Button& button) {
  Pane& pane = binder.PaneOf(button.core);
  auto* view = new QPushButton(pane.Container());
  view->setAutoDefault(true);
  pane.AddButton(view, true);
  QObject::connect(view, &QPushButton::clicked, view,
                   [&binder, &button] { binder.Operate(button.core, [&button] { button.Click(); }); });
  binder.Bind(button.core, {.widget = view,
                            .showCaption = [view, &button] { view->setText(ToQt(button.core.Caption())); }});
}

void BindKind(Binder& binder, vc::GraphicButton& button) {
  Pane& pane = binder.PaneOf(button.core);
  auto* view = new QPushButton(pane.Container());
  const bool latching = button.style == vc::GraphicButton::Style::Latching;
  view->setCheckable(latching);
  pane.AddButton(view, false);
  QObject::connect(view, &QPushButton::clicked, view,
                   [&binder, &button] { binder.Operate(button.core, [&button] { button.Click(); }); });
  binder.Bind(button.core, {.widget = view,
                            .showCaption = [view, &button] { view->setText(ToQt(button.core.Caption())); },
                            .showValue =
                                [view, &button, latching](std::string_view) {
                                  if (!latching) return;
                                  view->setChecked(button.Value() == 1);
                                  Binder::Speak(view, button.Value() == 1 ? "on" : "off", {});
                                }});
}

void BindKind(Binder& binder, vc::Slider& slider) {
  Pane& pane = binder.PaneOf(slider.core);
  const Qt::Orientation direction = pane.Columns() ? Qt::Vertical : Qt::Horizontal;
  auto* view = new SliderView(slider, direction, pane.Container(), [&binder, &slider](double position) {
    binder.Operate(slider.core, [&slider, position] { slider.SetPosition(position); });
  });
  constexpr int shortest = 10;
  const int length = shortest * LineHeight(*view);
  if (direction == Qt::Vertical) {
    view->setMinimumHeight(length);
  } else {
    view->setMinimumWidth(length);
  }
  QLabel* caption = CaptionOf(pane, view);
  const bool textFollows = binder.TextFollows();
  if (textFollows) {
    binder.openRow = {caption, view};
  } else {
    pane.AddField({caption, view});
  }
  binder.Bind(
      slider.core,
      {.widget = view, .caption = caption, .showValue = [view, &slider, textFollows](std::string_view) {
         view->ShowModel();
         // Where a text stands beside it, that one is spoken.
         if (!textFollows) Binder::Speak(view, vc::ShortestText(slider.Position()), {});
       }});
}

void BindKind(Binder& binder, vc::OptionButton& option) {
  auto& [column, buttons] = binder.ColumnOf(option.group, binder.PaneOf(option.core));
  auto* view = new QRadioButton(column);
  column->layout()->addWidget(view);
  buttons->addButton(view);
  QObject::connect(view, &QRadioButton::clicked, view, [&binder, &option] {
    binder.Operate(option.core, [&option] { option.group.Select(option.core.index); });
  });
  binder.Bind(option.core, {.widget = view,
                            .showCaption = [view, &option] { view->setText(ToQt(option.core.Caption())); },
                            .showValue =
                                [view, group = buttons, &option](std::string_view) {
                                  group->setExclusive(false);  // at first none of them may stand
                                  view->setChecked(option.Value());
                                  group->setExclusive(true);
                                  Binder::Speak(view, option.Value() ? "chosen" : "not chosen", {});
                                }});
}

void BindKind(Binder& binder, vc::CheckBox& check) {
  Pane& pane = binder.PaneOf(check.core);
  auto* view = new QCheckBox(pane.Container());
  pane.AddWide(view);
  QObject::connect(view, &QCheckBox::clicked, view, [&binder, &check](bool on) {
    binder.Operate(check.core, [&check, on] { check.SetValue(on); });
  });
  binder.Bind(check.core, {.widget = view,
                           .showCaption = [view, &check] { view->setText(ToQt(check.core.Caption())); },
                           .showValue =
                               [view, &check](std::string_view) {
                                 view->setChecked(check.Value());
                                 Binder::Speak(view, check.Value() ? "on" : "off", {});
                               }});
}

void BindKind(Binder& binder, vc::LevelBar& bar) {
  Pane& pane = binder.PaneOf(bar.core);
  auto* view = new LevelBarView(bar, pane.Container());
  pane.AddWide(view);
  binder.Bind(bar.core, {.widget = view,
                         .showCaption = [view] { view->Follow("Caption"); },
                         .showValue =
                             [view, &bar](std::string_view property) {
                               view->Follow(property);
                               if (property == "Reading" || property == EveryProperty) {
                                 Binder::Speak(view, bar.Reading(), {});
                               }
                             }});
}

void BindKind(Binder& binder, vc::Picture& picture) {
  Pane& pane = binder.PaneOf(picture.core);
  auto* view = new PictureView(picture, pane.Container());
  pane.AddWide(view);
  binder.Bind(picture.core, {.widget = view, .showValue = [view](std::string_view) { view->update(); }});
}

}  // namespace desktop
