#include "desktop/PlotView.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QPaintEngine>
#include <QPaintEvent>
#include <QPainter>

#include "desktop/HandleView.h"
#include "desktop/PainterSurface.h"
#include "desktop/QtText.h"
#include "desktop/VectorRegisters.h"
#include "widgets/PlotHandle.h"

namespace desktop {

PlotView::PlotView(vc::Plot& plot, QWidget* parent, CurveRasters& windowRasters, Operate carry)
    : QWidget(parent), model(plot), operate(std::move(carry)), small(plot.small), rasters(windowRasters) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  if (small) return;
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  for (vc::PlotHandle* handle : model.handles) handles.push_back(new HandleView(*handle, *this));
}

QSize PlotView::SizeOf(int digits, int lines) const {
  return {DigitsWide(*this, digits), lines * LineHeight(*this)};
}
QSize PlotView::sizeHint() const {
  constexpr int side = 40;
  if (model.square && !small) return {side * LineHeight(*this), side * LineHeight(*this)};
  const vc::PlotRoom room = vc::DesignRoom(model);
  return SizeOf(room.digits, room.lines);
}
QSize PlotView::minimumSizeHint() const {
  if (model.low) return SizeOf(34, 5);
  return small ? SizeOf(8, 2) : SizeOf(34, 12);
}

PlotView::Ground PlotView::GroundNow() const {
  return {model.Revision(), model.CurveRevision(), model.core.Caption()};
}

// The handles go to their places once all that belongs to a change is known.
void PlotView::Follow() {
  if (!handles.empty()) QCoreApplication::postEvent(this, new QEvent(QEvent::LayoutRequest));
  if (Ground now = GroundNow(); grid.isNull() || now != followed) {
    followed = std::move(now);
    update();
  } else if (!small) {
    FollowMarks();
  }
}

std::vector<DrawnThing> PlotView::MarksNow() const {
  DrawnAreas areas(font());
  model.DrawRubber(areas, layout);
  model.DrawMarks(areas, layout);
  return areas.Things();
}

// Pixels of the view that are no whole ones of the screen cannot be painted one without the other.
void PlotView::FollowMarks() {
  const std::vector<DrawnThing> before = std::exchange(marks, MarksNow());
  const QRegion changed = Differing(before, marks);
  const bool whole = devicePixelRatioF() == std::floor(devicePixelRatioF());
  if (!changed.isEmpty()) update(whole ? changed : QRegion(rect()));
}

// Once its window has gone the model may be gone too, and is not asked.
bool PlotView::event(QEvent* event) {
  if (event->type() == QEvent::LayoutRequest && isVisible()) PlaceHandles();
  return QWidget::event(event);
}

void PlotView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  grid = {};
  if (event->type() == QEvent::FontChange) updateGeometry();
  Follow();
}

void PlotView::resizeEvent(QResizeEvent* /*event*/) { Follow(); }

void PlotView::showEvent(QShowEvent* /*event*/) { Follow(); }

void PlotView::KeepUp() {
  const QSize wanted = (QSizeF(size()) * devicePixelRatioF()).toSize();
  const bool stands = drawn.grid == model.Revision() && drawn.caption == model.core.Caption();
  if (grid.size() != wanted || !stands) DrawGrid(wanted);
}

void PlotView::DrawGrid(const QSize& pixels) {
  drawn = GroundNow();
  curvesPainted.reset();
  if (grid.size() != pixels) {
    raster = &rasters.Of(devicePixelRatioF());
    grid = QImage(pixels, QImage::Format_RGB32);
    grid.setDevicePixelRatio(devicePixelRatioF());
  }
  {
    QPainter painter(&grid);
    painter.setFont(font());
    PainterSurface surface(painter, palette(), rect());
    layout = vc::LayOut(model, surface, {0, 0, width(), height()});
    model.DrawGrid(surface, layout);
  }
  ++gridsDrawn;
  for (const auto& [listener, laidOut] : inLine) {
    if (listener != nullptr) laidOut();
  }
}

const vc::PlotLayout& PlotView::LayoutNow() {
  KeepUp();
  return layout;
}

void PlotView::OnLayout(QObject* listener, std::function<void()> laidOut) {
  inLine.emplace_back(listener, std::move(laidOut));
}

// The pixels behind a painter that draws into a picture in memory, one to one: there curves go straight to
// their place. Empty where it is another one.
Pixels PlotView::PixelsBehind(const QPainter& painter) const {
  QPaintDevice* device = painter.paintEngine()->paintDevice();
  if (device == nullptr || device->devType() != QInternal::Image) return {};
  auto& image = *static_cast<QImage*>(device);
  const QTransform& transform = painter.deviceTransform();
  const QPointF corner = transform.map(QPointF());
  const bool whole = corner.x() == std::floor(corner.x()) && corner.y() == std::floor(corner.y());
  const bool even = transform.type() <= QTransform::TxScale && transform.m11() == devicePixelRatioF() &&
                    transform.m22() == devicePixelRatioF();
  const QRect room(corner.toPoint(), grid.size());
  const bool known =
      image.format() == QImage::Format_RGB32 || image.format() == QImage::Format_ARGB32_Premultiplied;
  if (!whole || !even || !known || !image.rect().contains(room)) return {};
  return {
      reinterpret_cast<std::uint32_t*>(image.bits()) + room.top() * image.bytesPerLine() / 4 + room.left(),
      image.bytesPerLine() / 4, room.width(), room.height()};
}

void PlotView::Stroke(QPainter& painter, const Pixels& pixels, const QRect& part, Lines lines) {
  ReleaseUpperHalves();
  PainterSurface surface(painter, palette(), rect());
  surface.StrokeBy(*raster, pixels);
  if (lines.curves) model.DrawBars(surface, layout);
  vc::PlotLayout visible = layout;
  const QRect frame =
      QRect(layout.frame.left, layout.frame.top, layout.frame.width, layout.frame.height) & part;
  visible.frame = {frame.left(), frame.top(), frame.width(), frame.height()};
  if (lines.curves) model.DrawTraces(surface, visible);
  if (lines.rubber && !small) model.DrawRubber(surface, visible);
}

QImage PlotView::Stroked(const QImage& ground, Lines lines) {
  QImage picture = ground.copy();
  QPainter painter(&picture);
  Stroke(painter, PixelsOf(picture), rect(), lines);
  return picture;
}

// Where curves stand while a pen moves over them, they are kept with the grid; a picture of curves that are
// others every time would cost more than it saves, and one that is painted once needs none.
bool PlotView::KeepCurves() {
  const bool stand = curvesPainted == model.CurveRevision() && (underMouse() || hasFocus());
  curvesPainted = model.CurveRevision();
  if (!stand) kept = {};
  if (stand && kept.isNull()) kept = Stroked(grid, {.curves = true});
  return stand;
}

void PlotView::Rest() {
  if (std::exchange(painted, false)) return;
  grid = kept = {};
}

void PlotView::paintEvent(QPaintEvent* event) {
  painted = true;
  KeepUp();
  const bool stand = KeepCurves();
  const QImage& ground = stand ? kept : grid;
  const Lines lines{.curves = !stand, .rubber = true};
  QPainter painter(this);
  painter.setClipRegion(event->region());
  if (const Pixels pixels = PixelsBehind(painter); pixels.first != nullptr) {
    painter.drawImage(0, 0, ground);
    for (const QRect& part : event->region()) Stroke(painter, pixels, part, lines);
  } else {
    painter.drawImage(0, 0, Stroked(ground, lines));
  }
  if (small) return;
  if (hasFocus()) {  // a cursor at the edge lies over it
    const vc::Rectangle& frame = layout.frame;
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(frame.left, frame.top, frame.width - 1, frame.height - 1);
  }
  PainterSurface surface(painter, palette(), rect());
  model.DrawMarks(surface, layout);
  marks = MarksNow();
}

void PlotView::PlaceHandles() {
  KeepUp();
  for (HandleView* handle : handles) handle->Place();
}

void PlotView::PointAt(std::optional<double> column) {
  if (model.cursorPlaced) return;
  if (column) column = layout.x.ValueAt(*column);
  if (column.has_value() == model.Cursor().has_value() && (!column || *column == *model.Cursor())) return;
  operate(model.core, [this, &column] { model.SetCursor(column); });
}

// The pointer stands for the middle of its pixel, as the axes begin and end in the middle of one.
void PlotView::Tell(vc::PointerAction action, const QPointF& at) {
  if (!model.pointer) return;
  const QPointF middle = at + QPointF(0.5, 0.5) / devicePixelRatioF();
  operate(model.core, [&] {
    model.pointer({action, layout.x.ValueAt(middle.x()), layout.y.ValueAt(middle.y())});
  });
}

void PlotView::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) Tell(vc::PointerAction::Press, event->position());
}

void PlotView::mouseMoveEvent(QMouseEvent* event) {
  if (small) return QWidget::mouseMoveEvent(event);
  const vc::Rectangle& frame = layout.frame;
  const bool inside = QRectF(frame.left, frame.top, frame.width, frame.height).contains(event->position());
  PointAt(inside ? std::optional(event->position().x()) : std::nullopt);
  Tell(vc::PointerAction::Move, event->position());
}

void PlotView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) Tell(vc::PointerAction::Release, event->position());
}

void PlotView::leaveEvent(QEvent* /*event*/) {
  PointAt(std::nullopt);
  Tell(vc::PointerAction::Leave, mapFromGlobal(QCursor::pos()));
}

void PlotView::keyPressEvent(QKeyEvent* event) {
  const bool enters = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  const std::string combination = enters ? "Enter" : CombinationOf(*event);
  bool known = false;
  if (model.keyPressed) operate(model.core, [&] { known = model.keyPressed(combination); });
  if (!known && !MoveCursor(combination)) QWidget::keyPressEvent(event);
}

// By pixels, with Shift by ten and with Ctrl by a hundred of them, as an arrow moves a slider.
bool PlotView::MoveCursor(const std::string& combination) {
  if (model.cursorPlaced) return false;
  struct Stroke {
    const char* keys;
    int pixels;
  };
  constexpr std::array<Stroke, 8> strokes{{{"Left", -1},
                                           {"Right", 1},
                                           {"Shift+Left", -10},
                                           {"Shift+Right", 10},
                                           {"Ctrl+Left", -100},
                                           {"Ctrl+Right", 100},
                                           {"Home", -100000},
                                           {"End", 100000}}};
  const auto* stroke = std::ranges::find(strokes, combination, &Stroke::keys);
  if (stroke == strokes.end()) return false;
  const double now = layout.x.PixelOf(model.Cursor().value_or(model.XAxis().from));
  PointAt(now + stroke->pixels);
  return true;
}

void PlotView::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  const bool byKey = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
  if (byKey) PointAt(layout.frame.left + layout.frame.width / 2.0);
}

void PlotView::focusOutEvent(QFocusEvent* event) {
  QWidget::focusOutEvent(event);
  PointAt(std::nullopt);
}

void PlotView::contextMenuEvent(QContextMenuEvent* event) {
  if (model.choices.empty()) return QWidget::contextMenuEvent(event);
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  for (const vc::Plot::Choice& choice : model.choices) {
    QAction* entry = menu->addAction(ToQt(choice.caption));
    entry->setCheckable(true);
    entry->setChecked(choice.checked());
    connect(entry, &QAction::triggered, this, [this, &choice] { operate(model.core, choice.chosen); });
  }
  menu->popup(event->globalPos());
}

}  // namespace desktop
