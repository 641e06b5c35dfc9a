// A picture of which the model draws one image of several.
#pragma once

#include <QWidget>

#include "widgets/Controls.h"

namespace desktop {

class PictureView : public QWidget {
 public:
  PictureView(const vc::Picture& picture, QWidget* parent);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const vc::Picture& model;
};

}  // namespace desktop
