// The events of a text box from the toolkit's text widgets: focus comes, a key, focus goes.
#pragma once

#include <functional>

#include <QObject>

class QKeyEvent;

namespace desktop {

class TextEvents : public QObject {
 public:
  struct Hooks {
    std::function<void()> gotFocus, lostFocus;
    std::function<void(int code)> keyPressed;
    // Whether the text itself has something to undo, or to redo; else the window may have.
    std::function<bool()> canUndo, canRedo;
  };
  // Watches the widget and belongs to it.
  TextEvents(QWidget* watched, Hooks told);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool LeavesToWindow(const QKeyEvent& key) const;
  void TellKey(int key, const QString& typed) const;

  Hooks hooks;
  bool ownMenuOpen = false;  // the edit menu of the text takes the focus, but the operator has not left it
};

}  // namespace desktop
