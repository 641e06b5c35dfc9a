// The window of any form.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <QMainWindow>
#include <QTimer>

#include "desktop/Binder.h"
#include "widgets/Form.h"

class QScrollArea;

namespace desktop {

class FormWindow : public QMainWindow {
 public:
  // closedByOperator is told of the close button of the window's frame; the window itself stays.
  // dropped is told of files that were dropped on it, once the drop is over: whole paths.
  using Dropped = std::function<void(const std::vector<std::string>& paths)>;
  FormWindow(vc::Form& shownForm, std::function<void()> closedByOperator, Dropped filesDropped);
  ~FormWindow() override;

  // Shows it in front; at first in the size that its contents ask for, around the middle of a place.
  void Present(Qt::WindowModality modality, const QRect& over);
  // Hides the window and lets go of the form, which may be gone at any time from then on. The widgets stay
  // until the window goes, and hear nothing.
  void Release();

 protected:
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Join();
  void FallSilent();
  // Text boxes would take the names of dropped files as text.
  void CatchDrops();
  // True where it was one of files.
  bool TakeDrop(QEvent* event);
  void AddKeys();
  void AddKey(const std::string& combination);
  void OpenMenuBar();
  void FollowStale();
  void DressAsSplash();
  void PlaceFirst(const QRect& over);
  void AwaitPaint();
  void TellActivated();
  // What the contents and the menu bar need, no more than the screen has.
  QSize Wanted(const QSize& contents) const;
  void GrowToContents();
  void TakeSize(const QSize& size);
  // Brings the window and its frame onto the screen.
  void FitFrame();
  void KeepOnScreen();

  vc::Form* form;
  std::function<void()> closed;
  Dropped dropped;
  std::vector<std::string> paths;  // that were dropped last
  QTimer tmrDropped;
  QScrollArea* scroll;
  QWidget* contents;
  bool splash;
  std::unique_ptr<Binder> binder;
  QTimer activation, framed;
  int looks = 0;  // for the frame
  QSize taken;    // that the window has given itself
  bool resizedByOperator = false;
  bool stale = false;  // the form has changed while nobody saw the window
  bool presented = false;
};

}  // namespace desktop
