#include "desktop/Accessibility.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <utility>

#include <QAccessibleWidget>

#include "desktop/FrameView.h"
#include "desktop/HandleView.h"
#include "desktop/LevelBarView.h"
#include "desktop/PictureView.h"
#include "desktop/PlotView.h"
#include "desktop/ProgressBarView.h"
#include "desktop/QtText.h"
#include "desktop/SliderView.h"
#include "desktop/TableView.h"
#include "desktop/UpDownView.h"
#include "desktop/WaterfallView.h"
#include "text/Convert.h"

namespace desktop {
namespace {

// The range of a number that is shown.
struct Range {
  double lowest, highest;
};

// A widget with a number. Once its window has gone its model may be gone too, and is not asked.
class NumberInterface : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  NumberInterface(QWidget* view, QAccessible::Role role) : QAccessibleWidget(view, role) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }
  QString text(QAccessible::Text what) const override {
    return QAccessibleWidget::text(what == QAccessible::Value ? QAccessible::Description : what);
  }
  QVariant currentValue() const override {
    return Asked([this] { return Number(); });
  }
  QVariant minimumValue() const override {
    return Asked([this] { return NumberRange().lowest; });
  }
  QVariant maximumValue() const override {
    return Asked([this] { return NumberRange().highest; });
  }
  void setCurrentValue(const QVariant& /*value*/) override {}
  QVariant minimumStepSize() const override { return {}; }

 protected:
  virtual double Number() const = 0;
  virtual Range NumberRange() const = 0;
  template <typename Question>
  QVariant Asked(Question question) const {
    return widget()->isVisible() ? QVariant(question()) : QVariant();
  }
};

// What a slider moves, by whichever widget: a slider, an up-down control, or a handle of a plot, which has
// the numbers of one of the sliders that it moves and says where it stands.
class SliderInterface : public NumberInterface {
 public:
  template <typename View>
  SliderInterface(View* view, QAccessible::Role role)
      : NumberInterface(view, role),
        moved([view]() -> vc::Slider& { return view->Moved(); }),
        carry([view](const auto& action) { view->Carry(action); }) {}

  void setCurrentValue(const QVariant& value) override {
    if (!widget()->isVisible() || !widget()->isEnabled()) return;
    carry([this, &value] { moved().SetShown(value.toDouble()); });
  }
  QVariant minimumStepSize() const override {
    return Asked([this] {
      const vc::Slider& slider = moved();
      const double next = slider.PositionMin() + slider.KeyArrowStepSize;
      return std::abs(slider.Shown(next) - slider.Shown(slider.PositionMin()));
    });
  }

 protected:
  double Number() const override { return moved().Shown(moved().Position()); }
  Range NumberRange() const override {
    return {moved().Shown(moved().PositionMin()), moved().Shown(moved().PositionMax())};
  }

 private:
  std::function<vc::Slider&()> moved;
  std::function<void(const std::function<void()>& action)> carry;
};

// Its numbers are those of its scale; where it has none, its own steps.
class LevelInterface : public NumberInterface {
 public:
  explicit LevelInterface(LevelBarView* bar)
      : NumberInterface(bar, QAccessible::ProgressBar), model(bar->Model()) {}

  // Levels change many times a second: they are told when they are asked for.
  QString text(QAccessible::Text what) const override {
    const bool words = what == QAccessible::Description || what == QAccessible::Value;
    if (!words) return NumberInterface::text(what);
    return widget()->isVisible() ? ToQt(model.Reading()) : QString();
  }

 protected:
  double Number() const override {
    if (model.Scale().empty()) return model.Value();
    return NumberIn(model.Reading()).value_or(ScaleRange().lowest);
  }
  // A reading may lie beyond the last number of the scale.
  Range NumberRange() const override {
    if (model.Scale().empty()) return {0, static_cast<double>(model.Steps())};
    const auto [lowest, highest] = ScaleRange();
    return {std::min(lowest, Number()), std::max(highest, Number())};
  }

 private:
  // Of "-12.3 dB" or "+90".
  static std::optional<double> NumberIn(const std::string& words) {
    return vc::ParseNumber(words.substr(0, words.find(' ')));
  }
  Range ScaleRange() const {
    const auto number = [](const vc::ScaleTick& tick) { return NumberIn(tick.text).value_or(0); };
    const auto [lowest, highest] = std::ranges::minmax(model.Scale(), {}, number);
    return {number(lowest), number(highest)};
  }

  const vc::LevelBar& model;
};

class ProgressInterface : public NumberInterface {
 public:
  explicit ProgressInterface(ProgressBarView* bar)
      : NumberInterface(bar, QAccessible::ProgressBar), model(bar->Model()) {}

 protected:
  double Number() const override { return model.Value(); }
  Range NumberRange() const override { return {0, static_cast<double>(model.Steps())}; }

 private:
  const vc::ProgressBar& model;
};

// A plot, or a waterfall. What it shows may change many times a second: it is told when it is asked for.
template <typename View>
class PlotInterface : public QAccessibleWidget {
 public:
  explicit PlotInterface(View* shown) : QAccessibleWidget(shown, QAccessible::Graphic), view(shown) {}

  QString text(QAccessible::Text what) const override {
    if (what != QAccessible::Description) return QAccessibleWidget::text(what);
    return view->isVisible() ? ToQt(view->Model().Reading()) : QString();
  }

 private:
  View* view;
};

// A block that is not there shows its title at most: what lies in it is not drawn, and not told.
class FrameInterface : public QAccessibleWidget {
 public:
  explicit FrameInterface(FrameView* shown) : QAccessibleWidget(shown, QAccessible::Grouping), frame(shown) {}

  int childCount() const override { return Absent() ? 0 : QAccessibleWidget::childCount(); }
  QAccessibleInterface* child(int index) const override {
    return Absent() ? nullptr : QAccessibleWidget::child(index);
  }

 private:
  bool Absent() const { return frame->Covered(); }

  const FrameView* frame;
};

QAccessibleInterface* InterfaceOf(const QString& /*className*/, QObject* object) {
  if (auto* slider = dynamic_cast<SliderView*>(object)) {
    return new SliderInterface(slider, QAccessible::Slider);
  }
  if (auto* upDown = dynamic_cast<UpDownView*>(object)) {
    return new SliderInterface(upDown, QAccessible::SpinBox);
  }
  if (auto* handle = dynamic_cast<HandleView*>(object)) {
    return new SliderInterface(handle, QAccessible::Slider);
  }
  if (auto* level = dynamic_cast<LevelBarView*>(object)) return new LevelInterface(level);
  if (auto* progress = dynamic_cast<ProgressBarView*>(object)) return new ProgressInterface(progress);
  if (auto* frame = dynamic_cast<FrameView*>(object)) return new FrameInterface(frame);
  if (auto* row = dynamic_cast<TableRow*>(object)) return new QAccessibleWidget(row, QAccessible::Grouping);
  if (auto* plot = dynamic_cast<PlotView*>(object)) return new PlotInterface(plot);
  if (auto* waterfall = dynamic_cast<WaterfallView*>(object)) return new PlotInterface(waterfall);
  auto* picture = dynamic_cast<PictureView*>(object);
  return picture == nullptr ? nullptr : new QAccessibleWidget(picture, QAccessible::Graphic);
}

}  // namespace

void InstallAccessibility() { QAccessible::installFactory(InterfaceOf); }

}  // namespace desktop
