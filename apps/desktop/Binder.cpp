#include "desktop/Binder.h"

#include <algorithm>
#include <utility>
#include <variant>

#include <QAbstractButton>
#include <QAction>
#include <QBoxLayout>
#include <QButtonGroup>

#include "desktop/Application.h"
#include "desktop/Kinds.h"
#include "desktop/QtText.h"
#include "text/Convert.h"
#include "widgets/Controls.h"

namespace desktop {
namespace {

// What a screen reader says; a control without any words is part of its window.
QString SpokenName(const vc::ControlCore& core) {
  const std::string own = core.AccessibleName();
  return ToQt(own.empty() ? core.form.Caption() : own);
}

}  // namespace

Binder::Binder(vc::Form& shownForm, QWidget* container, std::function<QMenuBar*()> bar)
    : form(&shownForm), menuBar(std::move(bar)) {
  Build(container);
  OrderTabs();
  FollowAll();
  for (auto& [frame, pane] : panes) pane.Align();
}

void Binder::Build(QWidget* container) {
  panes.emplace(nullptr, Pane(container, nullptr, form->look == vc::FormLook::Dense));
  for (const vc::AnyControl& one : form->controls) {
    std::visit([this](auto* control) { BindKind(*this, *control); }, one);
  }
  // What lies inside is finished before what lies around it.
  for (std::size_t left = form->controls.size(); left > 0; --left) {
    auto* const* frame = std::get_if<vc::Frame*>(&form->controls[left - 1]);
    if (frame == nullptr) continue;
    panes.at(*frame).Finish();
    panes.at((*frame)->core.frame).Settle(panes.at(*frame));
  }
  panes.at(nullptr).Finish();
}

void Binder::OrderTabs() {
  QWidget* previous = nullptr;
  for (QWidget* widget : inOrder) {
    if ((widget->focusPolicy() & Qt::TabFocus) == 0) continue;
    if (previous != nullptr) QWidget::setTabOrder(previous, widget);
    previous = widget;
  }
}

Pane& Binder::PaneOf(const vc::ControlCore& core) { return panes.at(core.frame); }

Binder::OptionColumn& Binder::ColumnOf(vc::OptionGroup& group, Pane& pane) {
  const auto found = optionColumns.find(&group);
  if (found != optionColumns.end()) return found->second;
  auto* column = new QWidget(pane.Container());
  const auto direction = pane.Columns() ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom;
  auto* layout = new QBoxLayout(direction, column);
  layout->setContentsMargins(0, 0, 0, 0);
  const int line = LineHeight(*column);
  layout->setSpacing(pane.Dense() ? 0 : pane.Columns() ? line * 2 / 3 : line / 3);
  pane.AddWide(column);
  return optionColumns.emplace(&group, OptionColumn{column, new QButtonGroup(column)}).first->second;
}

void Binder::Bind(const vc::ControlCore& core, Bound bound) {
  if (bound.widget != nullptr) {
    bound.widget->setObjectName(ToQt(core.FullName()));
    if (!core.tip.empty()) bound.widget->setToolTip(ToQt(core.tip).toHtmlEscaped());
    inOrder.push_back(bound.widget);
  }
  bounds.emplace(&core, std::move(bound));
}

std::string Binder::WithUnit(const std::string& value, const std::string& unit) {
  return unit.empty() || !vc::ParseNumber(value) ? value : value + " " + unit;
}

void Binder::Speak(QWidget* widget, const std::string& value, const std::string& unit) {
  widget->setAccessibleDescription(ToQt(WithUnit(value, unit)));
}

void Binder::Follow(const vc::ControlCore& core, std::string_view property) {
  const auto found = bounds.find(&core);
  if (found == bounds.end()) return;
  const Bound& bound = found->second;
  const bool every = property == EveryProperty;
  if (every || property == "Caption") ShowCaption(core, bound);
  if (every || property == "Enabled" || property == "Visible" || property == "Caption") {
    ShowUse(core, bound);
  }
  if (bound.showValue && property != "Caption" && property != "Visible") bound.showValue(property);
}

void Binder::ShowCaption(const vc::ControlCore& core, const Bound& bound) const {
  if (bound.caption != nullptr) bound.caption->setText(ToQt(core.Caption()));
  if (bound.showCaption) bound.showCaption();
  if (bound.widget != nullptr) bound.widget->setAccessibleName(SpokenName(core));
}

void Binder::NameWithin(const vc::Frame& frame) {
  for (const vc::AnyControl& control : form->controls) {
    const vc::ControlCore& core = vc::CoreOf(control);
    const auto found = bounds.find(&core);
    if (core.frame == &frame && found != bounds.end())
      found->second.widget->setAccessibleName(SpokenName(core));
  }
}

void Binder::ShowUse(const vc::ControlCore& core, const Bound& bound) const {
  if (bound.showUse) return bound.showUse(core.Enabled(), core.Visible());
  for (QWidget* part :
       {bound.widget, static_cast<QWidget*>(bound.caption), static_cast<QWidget*>(bound.unit)}) {
    if (part == nullptr) continue;
    const bool wordless = part == bound.caption && core.Caption().empty();
    part->setEnabled(core.Enabled());
    part->setVisible(core.Visible() && !wordless);
  }
}

void Binder::FollowAll() {
  for (const vc::AnyControl& control : form->controls) Follow(vc::CoreOf(control), EveryProperty);
}

void Binder::Focus(const vc::ControlCore& core) const {
  const auto found = bounds.find(&core);
  if (found != bounds.end()) found->second.widget->setFocus(Qt::OtherFocusReason);
}

void Binder::FocusFirst() const {
  const auto first = std::ranges::find_if(inOrder, [](const QWidget* widget) {
    return (widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isEnabled() && !widget->isHidden();
  });
  if (first == inOrder.end()) return;
  QWidget* target = *first;
  const auto* option = qobject_cast<QAbstractButton*>(target);
  const QButtonGroup* group = option == nullptr ? nullptr : option->group();
  if (group != nullptr && group->checkedButton() != nullptr) target = group->checkedButton();
  target->setFocus(Qt::OtherFocusReason);
}

void Binder::Operate(const vc::ControlCore& core, const std::function<void()>& action) {
  if (form == nullptr) return;
  Application::Guard(action);
  // The action may have taken the form away, and with it the control.
  if (form != nullptr) Follow(core, EveryProperty);
}

}  // namespace desktop
