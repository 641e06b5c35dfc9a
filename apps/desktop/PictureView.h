// A picture of which the model draws one image of several.
#pragma once

#include <functional>

#include <QWidget>

#include "widgets/Controls.h"

namespace desktop {

class PictureView : public QWidget {
 public:
  using Operate = std::function<void(const std::function<void()>& action)>;
  // A click on it is carried to the model by what is given.
  PictureView(const vc::Picture& picture, QWidget* parent, Operate operate);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  const vc::Picture& model;
  Operate carry;
};

}  // namespace desktop
