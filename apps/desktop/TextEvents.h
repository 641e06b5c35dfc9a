// The events of a text box from the toolkit's text widgets: focus comes, a key, focus goes.
#pragma once

#include <functional>

#include <QObject>

namespace desktop {

class TextEvents : public QObject {
 public:
  struct Hooks {
    std::function<void()> gotFocus, lostFocus;
    std::function<void(int code)> keyPressed;
  };
  // Watches the widget and belongs to it.
  TextEvents(QWidget* watched, Hooks told);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void TellKey(int key, const QString& typed) const;

  Hooks hooks;
  bool ownMenuOpen = false;  // the edit menu of the text takes the focus, but the operator has not left it
};

}  // namespace desktop
