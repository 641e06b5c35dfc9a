// A level bar with its caption, the numbers of its scale and its reading, drawn by the model's own rule.
#pragma once

#include <string_view>

#include <QPalette>
#include <QRect>
#include <QString>
#include <QWidget>

#include "widgets/LevelBar.h"

namespace desktop {

class LevelBarView : public QWidget {
 public:
  LevelBarView(const vc::LevelBar& levelBar, QWidget* parent);

  // Repaints what the change of a property has really moved; the empty name stands for all of them.
  void Follow(std::string_view property);

  const vc::LevelBar& Model() const { return model; }
  QRect BarArea() const { return bar; }
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  QSize SizeWithLines(int lines) const;
  int Along() const { return model.Horizontal() ? bar.width() : bar.height(); }
  int CaptionHeight() const;
  int ScaleWidth() const;
  int ReadingWidth() const;
  QPalette::ColorGroup Group() const;  // of the ink, by its use
  void Arrange();
  void ArrangeUpright();
  void ArrangeLying();
  void FollowValue();
  void FollowReading();
  // Where a tick of the scale stands, from the left or from the top of the view.
  int TickPlace(const vc::ScaleTick& tick) const;
  void DrawScale(QPainter& painter) const;
  void DrawTick(QPainter& painter, int place, const QString& text) const;

  const vc::LevelBar& model;
  QRect caption, bar, scale, reading;
  int shownPixels = 0;
  QString shownReading;
};

}  // namespace desktop
