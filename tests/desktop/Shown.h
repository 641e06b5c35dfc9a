// A form in its real window, ready for the operator.
#pragma once

#include <string>

#include <QAccessible>
#include <QListWidget>
#include <QPaintEvent>
#include <QScreen>
#include <QTest>
#include <QWheelEvent>

#include "SampleForm.h"
#include "Unheard.h"
#include "desktop/FormWindows.h"
#include "desktop/QtText.h"

namespace desktop {

inline void ClickRow(QListWidget& list, int row, bool twice = false) {
  const QPoint place = list.visualItemRect(list.item(row)).center();
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place);
  if (twice) QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
}

// What a screen reader hears of a value.
inline std::string HeardOf(QWidget& widget) {
  return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Description).toStdString();
}

inline void TurnWheel(QWidget& widget, int eighthsOfDegree) {
  const QPointF place = widget.rect().center();
  QWheelEvent event(place, widget.mapToGlobal(place), {}, {0, eighthsOfDegree}, Qt::NoButton, {},
                    Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(&widget, &event);
}

// What a widget paints, and how often.
struct PaintWatch : QObject {
  QRegion painted;
  int paints = 0;
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() != QEvent::Paint) return false;
    painted |= static_cast<QPaintEvent*>(event)->region();
    ++paints;
    return false;
  }
};

struct Shown {
  support::SampleForm sample;
  vc::Forms forms{support::DeadEnd{}};
  FormWindows windows{forms};

  Shown() {
    forms.Show(sample.form);
    EXPECT_TRUE(QTest::qWaitForWindowActive(&Window()));
    QCoreApplication::processEvents();
    sample.events.clear();
  }
  FormWindow& Window() { return *windows.WindowOf(sample.form); }

  // The widget of a control by its name.
  template <typename T = QWidget>
  T& At(const char* name) {
    T* found = Window().findChild<T*>(QLatin1String(name));
    if (found == nullptr) throw std::runtime_error(std::string("no widget is named ") + name);
    return *found;
  }
  // At its left, where a check box or an option has its mark.
  void Click(const char* name) {
    QWidget& widget = At(name);
    QTest::mouseClick(&widget, Qt::LeftButton, {}, {LineHeight(widget) / 2, widget.height() / 2});
  }
  void Focus(const char* name) {
    At(name).setFocus(Qt::TabFocusReason);
    QCoreApplication::processEvents();
  }
  std::string Says(const char* name) { return HeardOf(At(name)); }
};

}  // namespace desktop
