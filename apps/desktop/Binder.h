// Widgets for the controls of any form, and the two ways between them: what the operator does goes to the
// model, what changes in the model goes to the one widget concerned.
#pragma once

#include <functional>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include <QWidget>

#include "desktop/CurveRaster.h"
#include "desktop/Pane.h"
#include "widgets/Form.h"

class QButtonGroup;
class QMenuBar;

namespace vc {
struct OptionGroup;
}

namespace desktop {

// All properties at once.
inline constexpr std::string_view EveryProperty{};

// The widgets of one control and how they follow it.
struct Bound {
  QWidget* widget = nullptr;  // bears the control's name; none for a menu entry
  QLabel* caption = nullptr;  // beside it
  QLabel* unit = nullptr;
  std::function<void()> showCaption{};                         // where the widget shows it itself
  std::function<void(std::string_view property)> showValue{};  // any property but the common ones
  std::function<void(bool enabled, bool visible)> showUse{};   // in place of the widget's own
};

class Binder {
 public:
  // The buttons of one group of options, and the widget in which they stand as a column; in a row where their
  // frame has columns.
  struct OptionColumn {
    QWidget* column;
    QButtonGroup* buttons;
  };

  // Builds into the container; a menu bar is asked for only where the form has menus.
  Binder(vc::Form& shownForm, QWidget* container, std::function<QMenuBar*()> bar);

  // Shows one property of one control. What is shown already costs nothing.
  void Follow(const vc::ControlCore& core, std::string_view property);
  void FollowAll();
  // Lets go of the model: from now on the widgets do nothing.
  void Release() { form = nullptr; }

  // Takes the keyboard to a control's widget.
  void Focus(const vc::ControlCore& core) const;
  // To the first one that can be operated; of options, to the chosen one.
  void FocusFirst() const;
  // Carries an action of the operator to the model and shows what became of it.
  void Operate(const vc::ControlCore& core, const std::function<void()>& action);

  // For the kinds of control, while the form is built.
  Pane& PaneOf(const vc::ControlCore& core);
  QWidget* WidgetOf(const vc::ControlCore& core) const { return bounds.at(&core).widget; }
  QMenuBar* MenuBar() const { return menuBar(); }
  CurveRasters& Rasters() { return rasters; }
  void AddPane(const vc::Frame& frame, Pane pane) { panes.emplace(&frame, std::move(pane)); }
  OptionColumn& ColumnOf(vc::OptionGroup& group, Pane& pane);
  // Names the widget, makes it accessible, and has it follow its control.
  void Bind(const vc::ControlCore& core, Bound bound);
  // A widget that belongs to the control that was bound last has its turn behind it.
  void TakeInOrder(QWidget* widget) { inOrder.push_back(widget); }
  // A frame's caption is spoken before those of what lies in it.
  void NameWithin(const vc::Frame& frame);
  // "440 Hz"; words that stand in a number's place, such as "Out", have no unit.
  static std::string WithUnit(const std::string& value, const std::string& unit);
  // Speaks a value with the widget that has the focus.
  static void Speak(QWidget* widget, const std::string& value, const std::string& unit);

 private:
  void Build(QWidget* container);
  void OrderTabs();
  void ShowUse(const vc::ControlCore& core, const Bound& bound) const;
  void ShowCaption(const vc::ControlCore& core, const Bound& bound) const;

  vc::Form* form;
  std::function<QMenuBar*()> menuBar;
  CurveRasters rasters;
  std::unordered_map<const vc::Frame*, Pane> panes;  // null stands for the form itself
  std::unordered_map<const vc::ControlCore*, Bound> bounds;
  std::unordered_map<const vc::OptionGroup*, OptionColumn> optionColumns;
  std::vector<QWidget*> inOrder;  // of reading
};

}  // namespace desktop
