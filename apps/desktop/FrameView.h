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
  bool Captioned() const { return !caption.isEmpty(); }
  // A card that is not there: an empty place with its title, whatever it holds.
  bool Covered() const;
  // A card of the signal's way.
  bool IsCard() const { return look == vc::FrameLook::Card && inFlow; }
  vc::Standing Standing() const { return standing; }
  // The part within the line, without the title's height above it.
  QRect Inside() const;
  // Puts a widget at the right of the title.
  void SetHead(QWidget* widget);

  void ShowCaption();
  void ShowStanding();

  QSize sizeHint() const override { return WithTitle(QGroupBox::sizeHint()); }
  QSize minimumSizeHint() const override { return WithTitle(QGroupBox::minimumSizeHint()); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  bool Lined() const { return look == vc::FrameLook::Line; }
  QSize WithTitle(QSize size) const;
  QFont TitleFont() const;
  QRect TitleArea() const;
  // How high the title stands above what the frame holds, in a look that draws its own.
  int TitleHeight() const;
  void ShowMargins();
  void FollowEnabled();
  void DrawSheet(QPainter& painter) const;
  void DrawTitle(QPainter& painter) const;
  void PlaceHead();
  void RepaintPath();

  const vc::Frame& frame;
  // As first and last shown: the model may be gone before its window.
  const vc::FrameLook look;
  const bool inPanel;
  const bool drawsPath, inFlow;
  QString caption;
  vc::Standing standing = vc::Standing::Plain;
  QMargins margins;  // as the layout was made
  QWidget* head = nullptr;
  QWidget* cover = nullptr;  // lies on everything in a card that is not there
};

// Whether a widget lies in a frame of which the signal passes by, and is dimmed with it.
bool IsOut(const QWidget& widget);
bool IsOnCard(const QWidget& widget);
// Of the texts on it: dimmed where it is out or cannot be used.
QColor TextInk(const QWidget& widget);

}  // namespace desktop
