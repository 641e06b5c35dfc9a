// The part of the walk that draws a curve by the mouse.
#include <cmath>

#include <QMouseEvent>
#include <QTest>

#include "desktop/PlotView.h"
#include "desktop/tour/Hand.h"
#include "desktop/tour/Tour.h"

namespace tour {
namespace {

// A part of the picture's width, and dB.
struct Spot {
  double across, level;
};
// A voice's range, with its formants; and what is drawn of a region of it.
constexpr Spot Voice[]{{0.0, -42}, {0.06, -30}, {0.1, -6},  {0.2, 0},   {0.31, -9},
                       {0.42, -3}, {0.55, -15}, {0.68, -8}, {0.8, -26}, {1.0, -60}};
constexpr Spot Region[]{{0.3, 0}, {0.72, 0}, {0.38, -28}, {0.46, -33}};
constexpr Spot Pointed{0.6, -12};

QPoint PlaceOf(const desktop::PlotView& display, const Spot& spot) {
  const vc::PlotLayout& layout = display.Layout();
  const double column = layout.frame.left + spot.across * layout.frame.width;
  return {static_cast<int>(std::lround(column)), static_cast<int>(layout.y.PixelOf(spot.level))};
}

void Click(desktop::PlotView& display, std::span<const Spot> spots) {
  for (const Spot& spot : spots) QTest::mouseClick(&display, Qt::LeftButton, {}, PlaceOf(display, spot));
}

// To the view itself: where the mouse is on this screen is not the walk's.
void Move(desktop::PlotView& display, const Spot& spot) {
  const QPointF place = PlaceOf(display, spot);
  QMouseEvent event(QEvent::MouseMove, place, display.mapToGlobal(place), Qt::NoButton, Qt::NoButton,
                    Qt::NoModifier);
  QCoreApplication::sendEvent(&display, &event);
}

}  // namespace

void Tour::DrawCurve(desktop::FormWindow& window, const std::string& form) {
  auto& display = static_cast<desktop::PlotView&>(*window.findChild<QWidget*>("FilterDisplay"));
  const auto points = [&display] { return display.Model().Traces().front().values; };
  const auto before = points();
  const auto place = [&display, &window] {
    QCoreApplication::processEvents();
    return QRect(display.mapTo(&window, QPoint()), display.size());
  };
  const QRect first = place();
  Press(window, "btnNew");
  Expect(place() == first && display.hasFocus(), form + " keeps its picture where it is, with the keyboard");
  Click(display, Voice);
  Expect(!window.findChild<QWidget*>("btnAbort")->isEnabled() && points() != before,
         form + " has the curve that was drawn");
  Move(display, Voice[3]);
  Photograph(&window, form);
  const auto drawn = points();
  Press(window, "btnEdit");
  desktop::FormWindow* question = OpenedByName("EDGEDrop");
  if (question == nullptr) return;
  Press(*question, "optDropSelect(2)");
  Press(*question, "btnProceed");
  Click(display, Region);
  Move(display, Pointed);
  Photograph(&window, form + "-editing");
  Press(window, "btnAbort");
  Expect(points() == drawn, form + " has the curve again that stood when it was left");
}

}  // namespace tour
