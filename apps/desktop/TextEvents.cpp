#include "desktop/TextEvents.h"

#include <utility>

#include <QFocusEvent>
#include <QKeyEvent>
#include <QWidget>

#include "widgets/Controls.h"

namespace desktop {

TextEvents::TextEvents(QWidget* watched, Hooks told) : QObject(watched), hooks(std::move(told)) {
  watched->installEventFilter(this);
}

bool TextEvents::eventFilter(QObject* /*watched*/, QEvent* event) {
  switch (event->type()) {
    case QEvent::ContextMenu:
      ownMenuOpen = true;
      break;
    case QEvent::FocusIn:
      if (!std::exchange(ownMenuOpen, false)) hooks.gotFocus();
      break;
    case QEvent::FocusOut:
      if (!ownMenuOpen) hooks.lostFocus();
      break;
    case QEvent::ShortcutOverride:
      if (!LeavesToWindow(*static_cast<QKeyEvent*>(event))) break;
      event->ignore();
      return true;
    case QEvent::KeyPress: {
      const auto* key = static_cast<QKeyEvent*>(event);
      TellKey(key->key(), key->text());
      break;
    }
    default:
      break;
  }
  return false;  // nothing is swallowed
}

bool TextEvents::LeavesToWindow(const QKeyEvent& key) const {
  return (key.matches(QKeySequence::Undo) && !hooks.canUndo()) ||
         (key.matches(QKeySequence::Redo) && !hooks.canRedo());
}

void TextEvents::TellKey(int key, const QString& typed) const {
  if (key == Qt::Key_Return || key == Qt::Key_Enter) {
    hooks.keyPressed(vc::EnterKey);
  } else if (!typed.isEmpty()) {
    hooks.keyPressed(typed.front().unicode());
  }
}

}  // namespace desktop
