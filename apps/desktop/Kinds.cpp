#include "desktop/Kinds.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QLayout>
#include <QPushButton>
#include <QRadioButton>

#include "desktop/ElidedLabel.h"
#include "desktop/FrameView.h"
#include "desktop/GraphicButtonView.h"
#include "desktop/LevelBarView.h"
#include "desktop/PainterSurface.h"
#include "desktop/PictureView.h"
#include "desktop/QtText.h"
#include "desktop/SegmentButton.h"
#include "desktop/SliderView.h"
#include "desktop/TableView.h"
#include "desktop/UpDownView.h"
#include "desktop/WrappedLabel.h"
#include "text/Convert.h"
#include "widgets/Controls.h"
#include "widgets/GraphicButton.h"
#include "widgets/LevelBar.h"

namespace desktop {
namespace {

// How short a slider may become, in lines.
constexpr int ShortestSlider = 10, ShortestDenseSlider = 5;

// "440 Hz", "Lower: 0.5 dB/Octave, Upper: 0.6 dB/Octave"; of a slider without any number, its position.
void Describe(QWidget* view, const vc::Slider& slider, const std::vector<vc::TextBox*>& texts) {
  std::string words;
  for (const vc::TextBox* text : texts) {
    if (!text->core.Shown()) continue;
    words += words.empty() ? "" : ", ";
    const std::string& caption = text->core.Caption();
    if (caption != slider.core.Caption()) words += vc::WithoutAccessKey(caption) + " ";
    words += Binder::WithUnit(text->Text(), text->unit);
  }
  Binder::Speak(view, words.empty() ? vc::ShortestText(slider.Position()) : words, {});
}

}  // namespace

QLabel* CaptionOf(Pane& pane, QWidget* field) {
  if (!pane.TakesCaption()) return nullptr;
  auto* caption = new QLabel(pane.Container());
  caption->setBuddy(field);  // its access key leads there
  return caption;
}

void BindTableRow(Binder& binder, vc::Frame& frame, TableView& table) {
  TableRow* row = table.AddRow();
  binder.AddPane(frame, Pane(row, frame, binder.PaneOf(frame.core).Dense()));
  binder.Bind(frame.core, {.widget = row, .showCaption = [row, &frame, &binder] {
                             row->ShowCaption(ToQt(frame.core.Caption()));
                             binder.NameWithin(frame);
                           }});
}

void BindKind(Binder& binder, vc::Frame& frame) {
  Pane& pane = binder.PaneOf(frame.core);
  if (pane.Table() != nullptr) return BindTableRow(binder, frame, *pane.Table());
  auto* box = new FrameView(frame, pane.Container());
  pane.AddFrame(box);
  binder.AddPane(frame, Pane(box, &frame, pane.Dense()));
  binder.Bind(frame.core, {.widget = box,
                           .showCaption =
                               [box, &frame, &binder] {
                                 box->ShowCaption();
                                 binder.NameWithin(frame);
                               },
                           .showValue = [box](std::string_view) { box->ShowStanding(); },
                           .showUse =
                               [box, &frame](bool enabled, bool visible) {
                                 box->setEnabled(enabled);
                                 box->setVisible(visible && (enabled || !frame.collapses));
                               }});
}

void BindElided(Binder& binder, vc::Label& label) {
  Pane& pane = binder.PaneOf(label.core);
  auto* view = new ElidedLabel(pane.Container());
  pane.AddWords(view);
  binder.Bind(label.core, {.widget = view,
                           .showCaption = [view, &label] { view->ShowWords(ToQt(label.core.Caption())); }});
}

void BindKind(Binder& binder, vc::Label& label) {
  if (label.elided) return BindElided(binder, label);
  Pane& pane = binder.PaneOf(label.core);
  auto* view = new WrappedLabel(pane.Container());
  pane.AddWords(view);
  if (pane.Is(vc::FrameLook::Card)) view->Yield();
  if (label.heading) view->MakeHeading();
  QSizePolicy policy = view->sizePolicy();
  policy.setRetainSizeWhenHidden(label.keepsRoom);
  view->setSizePolicy(policy);
  if (label.OwnColour()) view->StandAlone();
  binder.Bind(
      label.core,
      {.widget = view,
       .showCaption = [view, &label] { view->SetWords(ToQt(vc::WithoutAccessKey(label.core.Caption()))); },
       .showValue =
           [view, &label](std::string_view) {
             if (label.OwnColour()) view->ShowColour(ColourOf(*label.OwnColour(), view->palette()));
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
  auto* view = new GraphicButtonView(button, pane.Container(), [&binder, &button](const auto& action) {
    binder.Operate(button.core, action);
  });
  if (button.inTitle) {
    pane.AddToTitle(view);
  } else {
    pane.AddButton(view, false);
  }
  binder.Bind(button.core, {.widget = view,
                            .showCaption =
                                [view, &button] {
                                  view->setText(ToQt(button.core.Caption()));
                                  if (button.inTitle) view->setToolTip(view->text());
                                },
                            .showValue =
                                [view, &button](std::string_view property) {
                                  view->Follow(property);
                                  if (button.style == vc::GraphicButton::Style::Push) return;
                                  Binder::Speak(view, button.Value() == 1 ? "on" : "off", {});
                                }});
}

void BindKind(Binder& binder, vc::Slider& slider) {
  Pane& pane = binder.PaneOf(slider.core);
  const Qt::Orientation direction = pane.Upright() ? Qt::Vertical : Qt::Horizontal;
  auto* view = new SliderView(slider, direction, pane.Container(), [&binder, &slider](const auto& action) {
    binder.Operate(slider.core, action);
  });
  const int length = (pane.Dense() ? ShortestDenseSlider : ShortestSlider) * LineHeight(*view);
  if (direction == Qt::Vertical) {
    view->setMinimumHeight(length);
  } else {
    view->setMinimumWidth(length);
  }
  QLabel* caption = CaptionOf(pane, view);
  const std::vector<vc::TextBox*> texts = vc::TextsOf(slider);
  const auto describe = [view, &slider, texts] { Describe(view, slider, texts); };
  pane.AddField({.caption = caption, .field = view, .numbers = static_cast<int>(texts.size())});
  binder.Bind(slider.core,
              {.widget = view, .caption = caption, .showValue = [view, describe](std::string_view) {
                 view->ShowModel();
                 describe();
               }});
  const auto place = [&pane, view](const Number& number) { pane.AddNumber(view, number); };
  for (vc::TextBox* text : texts) BindNumber(binder, *text, {place, describe});
}

void BindKind(Binder& binder, vc::UpDown& upDown) {
  Pane& pane = binder.PaneOf(upDown.core);
  auto* view = new UpDownView(upDown, pane.Container(), [&binder, &upDown](const auto& action) {
    binder.Operate(upDown.core, action);
  });
  QLabel* caption = CaptionOf(pane, view);
  view->SetCaption(caption);
  const std::vector<vc::TextBox*> texts = vc::TextsOf(upDown.slider);
  const auto describe = [view, &upDown, texts] { Describe(view, upDown.slider, texts); };
  pane.AddField({.caption = caption, .field = view});
  binder.Bind(upDown.core,
              {.widget = view, .caption = caption, .showValue = [view, describe](std::string_view) {
                 view->update();
                 describe();
               }});
  for (vc::TextBox* text : texts) {
    const auto take = [&binder, text] {
      if (text->Typed()) binder.Operate(text->core, [text] { text->LostFocus(); });
    };
    const auto place = [view, take](const Number& number) { view->AddNumber(number, take); };
    BindNumber(binder, *text, {place, describe});
  }
}

void BindKind(Binder& binder, vc::OptionButton& option) {
  auto& [column, buttons] = binder.ColumnOf(option.group, binder.PaneOf(option.core));
  const bool dense = binder.PaneOf(option.core).Dense();
  auto* view = dense ? new SegmentButton(column, column->layout()->count() == 0) : new QRadioButton(column);
  column->layout()->addWidget(view);
  buttons->addButton(view);
  QObject::connect(view, &QRadioButton::clicked, view, [&binder, &option] {
    binder.Operate(option.core, [&option] { option.group.Select(option.choice); });
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
                               view->setToolTip(ToQt(bar.MarkerText()));
                             }});
}

void BindKind(Binder& binder, vc::Picture& picture) {
  Pane& pane = binder.PaneOf(picture.core);
  auto* view = new PictureView(picture, pane.Container(), [&binder, &picture](const auto& action) {
    binder.Operate(picture.core, action);
  });
  pane.AddWide(view);
  binder.Bind(picture.core, {.widget = view, .showValue = [view](std::string_view) { view->update(); }});
}

}  // namespace desktop
