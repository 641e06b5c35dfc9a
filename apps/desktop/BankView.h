// A bank: upright sliders side by side, equally wide, over a common scale.
#pragma once

#include <unordered_map>
#include <vector>

#include <QWidget>

#include "desktop/Pane.h"

namespace desktop {

class BankView : public QWidget {
 public:
  BankView(const vc::Frame& shownFrame, QWidget* parent);

  void AddBand(const Field& field);
  void AddNumber(QWidget* slider, const Number& number);
  // The unit of the numbers stands beside them once.
  bool HasUnit() const { return unitShown; }
  // All bands become as wide as the widest.
  void AlignColumns();

  QSize sizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  // From band to band.
  void keyPressEvent(QKeyEvent* event) override;
  // The scale, and its lines behind the sliders.
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Band {
    QWidget* slider;
    int numbers = 0;
  };

  int ScaleWidth() const;
  int ScaleGap() const;
  double LevelOf(double position) const;
  void PutBeside(QLabel* words, int row);

  const std::vector<vc::BankTick> scale;
  QGridLayout* grid;
  std::vector<Band> bands;
  bool unitShown = false;
};

}  // namespace desktop
