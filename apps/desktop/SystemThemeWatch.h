// Follows the system from the light to the dark look and back, while that is wanted.
#pragma once

#include <QObject>
#include <QTimer>

namespace desktop {

class SystemThemeWatch : public QObject {
 public:
  SystemThemeWatch();
  void SetOn(bool wanted) { on = wanted; }

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QTimer dress;  // once, however many windows are told
  bool on = true;
};

}  // namespace desktop
