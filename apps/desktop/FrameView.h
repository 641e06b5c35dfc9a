// A frame on the screen: its title, whether it is in the signal's way, and the way itself in a flow.
#pragma once

#include <QGroupBox>

#include "widgets/Form.h"

namespace desktop {

class FrameView : public QGroupBox {
 public:
  FrameView(const vc::Frame& shownFrame, QWidget* parent);

  const vc::Frame& Model() const { return frame; }
  // Without a title it has no line around it either: it only holds others together.
  bool Captioned() const { return !frame.core.Caption().empty(); }
  // The part within the line, without the title's height above it.
  QRect Inside() const;

  void ShowCaption();
  void ShowStanding();

  QSize sizeHint() const override { return WithTitle(QGroupBox::sizeHint()); }
  QSize minimumSizeHint() const override { return WithTitle(QGroupBox::minimumSizeHint()); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  QSize WithTitle(QSize size) const;
  void ShowProperty(const char* name, const QVariant& value);
  void DrawLamp(QPainter& painter) const;
  void RepaintPath();

  const vc::Frame& frame;
  QMargins margins;  // as the layout was made
};

}  // namespace desktop
