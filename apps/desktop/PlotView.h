// A plot on the screen. What changes seldom is kept as a picture, under the curves.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <QImage>
#include <QPointer>
#include <QWidget>

#include "desktop/CurveRaster.h"
#include "desktop/DrawnAreas.h"
#include "widgets/PlotLayout.h"

namespace desktop {

class HandleView;

class PlotView : public QWidget {
 public:
  // Carries an action of the operator on a control to the model.
  using Operate = std::function<void(const vc::ControlCore& core, const std::function<void()>& action)>;
  // The rasters, which other plots of its window share, must outlive it.
  PlotView(vc::Plot& plot, QWidget* parent, CurveRasters& windowRasters, Operate carry);

  // Repaints what a change of the model has really changed.
  void Follow();
  int GridsDrawn() const { return gridsDrawn; }  // how often so far
  // Called now and then: gives up the pictures if nothing was painted since the last call. They are drawn
  // anew when they are needed.
  void Rest();

  vc::Plot& Model() const { return model; }
  const std::vector<HandleView*>& Handles() const { return handles; }
  // As what is shown is laid out.
  const vc::PlotLayout& Layout() const { return layout; }
  // As it will be laid out.
  const vc::PlotLayout& LayoutNow();
  // Tells whoever shall be in line with the plot, for as long as it is there, of each new layout.
  void OnLayout(QObject* listener, std::function<void()> laidOut);
  void Carry(const vc::ControlCore& core, const std::function<void()>& action) const {
    operate(core, action);
  }
  // A line at a pixel across the view, or none.
  void PointAt(std::optional<double> column);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  QSize SizeOf(int digits, int lines) const;
  // What the picture depends on, under what lies over its curves.
  struct Ground {
    unsigned grid = 0, curves = 0;
    std::string caption;
    bool operator==(const Ground&) const = default;
  };
  Ground GroundNow() const;
  // What lies over the curves.
  std::vector<DrawnThing> MarksNow() const;
  void FollowMarks();
  // Lays the plot out and draws its grid anew where something that they depend on has changed.
  void KeepUp();
  void DrawGrid(const QSize& pixels);
  Pixels PixelsBehind(const QPainter& painter) const;
  struct Lines {
    bool curves = false, rubber = false;
  };
  // What of them lies in a part of the view.
  void Stroke(QPainter& painter, const Pixels& pixels, const QRect& part, Lines lines);
  QImage Stroked(const QImage& ground, Lines lines);
  // True where the curves are those of the last painting; then they are kept.
  bool KeepCurves();
  void PlaceHandles();
  void Tell(vc::PointerAction action, const QPointF& at);
  bool MoveCursor(const std::string& combination);

  vc::Plot& model;
  Operate operate;
  const bool small;
  std::vector<HandleView*> handles;
  QImage grid;  // none while it has to be drawn anew
  QImage kept;  // the same with the curves; none while they change, or nobody looks closer
  std::optional<unsigned> curvesPainted;  // which of them, over this grid
  CurveRasters& rasters;
  CurveRaster* raster = nullptr;  // for pictures of the grid's scale
  vc::PlotLayout layout;
  std::vector<std::pair<QPointer<QObject>, std::function<void()>>> inLine;
  Ground drawn;                   // that the grid shows
  Ground followed;                // for which everything is painted, or will be
  std::vector<DrawnThing> marks;  // of which the same holds
  int gridsDrawn = 0;
  bool painted = false;  // since the last Rest
};

}  // namespace desktop
