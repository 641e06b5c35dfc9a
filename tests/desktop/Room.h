// That everything in a window has its room.
#pragma once

#include <vector>

#include <gtest/gtest.h>

#include <QScrollArea>

#include "desktop/FormWindow.h"
#include "desktop/HandleView.h"

namespace desktop {

inline void ExpectRoom(const QWidget& widget) {
  const QSize least = widget.minimumSizeHint().expandedTo(widget.minimumSize());
  EXPECT_GE(widget.width(), least.width());
  EXPECT_GE(widget.height(), least.height());
  EXPECT_TRUE(widget.parentWidget()->rect().contains(widget.geometry()));
}

// Nothing is cut, nothing lies on another, the window need not be scrolled, and a small screen has room for
// it.
inline void ExpectAllFits(const FormWindow& window) {
  const auto* scroll = qobject_cast<QScrollArea*>(window.centralWidget());
  EXPECT_EQ(scroll->widget()->size(), scroll->viewport()->size());
  constexpr QSize smallScreen(1280, 720);
  const QSize least = scroll->widget()->minimumSizeHint();
  EXPECT_TRUE(least.boundedTo(smallScreen) == least) << least.width() << " x " << least.height();
  std::vector<const QWidget*> seen;
  for (const QWidget* widget : scroll->widget()->findChildren<QWidget*>()) {
    const bool own = !widget->objectName().isEmpty() && !widget->objectName().startsWith("qt_");
    const bool overPlot = dynamic_cast<const HandleView*>(widget) != nullptr;  // wherever it stands
    if (!own || overPlot || !widget->isVisible()) continue;
    SCOPED_TRACE(widget->objectName().toStdString());
    ExpectRoom(*widget);
    for (const QWidget* other : seen) {
      const bool siblings = other->parentWidget() == widget->parentWidget();
      EXPECT_FALSE(siblings && other->geometry().intersects(widget->geometry()))
          << other->objectName().toStdString();
    }
    seen.push_back(widget);
  }
  EXPECT_FALSE(seen.empty());
}

}  // namespace desktop
