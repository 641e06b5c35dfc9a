// A progress bar, drawn by the model's own rule.
#pragma once

#include <QWidget>

#include "widgets/ProgressBar.h"

namespace desktop {

class ProgressBarView : public QWidget {
 public:
  ProgressBarView(const vc::ProgressBar& bar, QWidget* parent);

  const vc::ProgressBar& Model() const { return model; }
  QSize sizeHint() const override { return SizeOf(24); }
  QSize minimumSizeHint() const override { return SizeOf(8); }
  // Lies or stands as the model says.
  void Arrange();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QSize SizeOf(int lines) const;

  const vc::ProgressBar& model;
};

}  // namespace desktop
