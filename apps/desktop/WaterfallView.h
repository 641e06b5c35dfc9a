// A waterfall on the screen: a picture with a row of pixels or more a line, of which a new line writes its
// own; in line with the plot above.
#pragma once

#include <vector>

#include <QImage>
#include <QWidget>

#include "desktop/PlotView.h"
#include "widgets/Waterfall.h"

namespace desktop {

class WaterfallView : public QWidget {
 public:
  WaterfallView(const vc::Waterfall& waterfall, PlotView& plotAbove, QWidget* parent);

  const vc::Waterfall& Model() const { return model; }
  // Repaints what a change of the model has really changed.
  void Follow();
  // The picture's place in the view, its columns those of the plot's frame.
  QRect Frame() const { return frame; }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void moveEvent(QMoveEvent* event) override;

 private:
  QFont LetterFont() const;
  // Lays out anew where the plot's frame or this view is another one, and brings the picture up to the model.
  void KeepUp();
  QRect PlacedFrame() const;
  void Arrange();
  // Writes the lines that began since the last time, and the newest one; all where they are others.
  void WriteLines();
  void WriteLine(int line);
  void DrawGround();
  void DrawRamp(QPainter& painter) const;
  void DrawAges(QPainter& painter) const;

  const vc::Waterfall& model;
  PlotView& plot;
  vc::PlotLayout followed;  // of the plot
  QRect frame;              // with its border
  QImage ground;            // all but the lines; none while it has to be drawn anew
  QImage ring;              // the lines, from the newest one down and then from the top
  int rowHeight = 1;        // of a line, in pixels of the screen
  int head = 0;             // of the ring's lines: the newest
  // Of the model, when the ring was written.
  std::uint64_t begun = 0, added = 0;
  unsigned revision = 0;
  std::vector<vc::LevelReach> reaches;
  std::vector<vc::AgeLabel> ages;
};

}  // namespace desktop
