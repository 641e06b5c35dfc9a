#include "desktop/FormWindow.h"

#include <algorithm>
#include <ranges>
#include <utility>
#include <variant>

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDragEnterEvent>
#include <QFile>
#include <QLayout>
#include <QMenuBar>
#include <QMimeData>
#include <QResizeEvent>
#include <QScreen>
#include <QScrollArea>
#include <QShortcut>
#include <QUrl>
#include <QWindow>

#include "desktop/Application.h"
#include "desktop/PictureView.h"
#include "desktop/QtText.h"
#include "widgets/Controls.h"

namespace desktop {
namespace {

constexpr int LookMilliseconds = 30;  // between two looks for the window system's frame

bool InMenus(const vc::Form& form, const std::string& combination) {
  return std::ranges::any_of(form.controls, [&combination](const vc::AnyControl& control) {
    auto* const* entry = std::get_if<vc::MenuEntry*>(&control);
    return entry != nullptr && QKeySequence(ToQt((*entry)->shortcut)) == QKeySequence(ToQt(combination));
  });
}

// Of a window that has not been seen, what is around a widget is not told that the widget needs another size
// than when it was put there.
void MeasureAnew(const QWidget& around) {
  const QList<QWidget*> parts = around.findChildren<QWidget*>();  // each behind the one that it lies in
  std::for_each(parts.rbegin(), parts.rend(), [](QWidget* part) { part->updateGeometry(); });
}

}  // namespace

FormWindow::FormWindow(vc::Form& shownForm, std::function<void()> closedByOperator, Dropped filesDropped)
    : form(&shownForm),
      closed(std::move(closedByOperator)),
      dropped(std::move(filesDropped)),
      scroll(new QScrollArea(this)),
      contents(new QWidget(scroll)),
      splash(shownForm.look == vc::FormLook::Splash) {
  setObjectName(ToQt(form->name));
  binder = std::make_unique<Binder>(*form, contents, [this] { return menuBar(); });
  if (splash) DressAsSplash();
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setWidgetResizable(true);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setWidget(contents);
  setCentralWidget(scroll);
  contents->installEventFilter(this);
  activation.setSingleShot(true);
  connect(&activation, &QTimer::timeout, this, [this] { TellActivated(); });
  framed.setInterval(LookMilliseconds);
  connect(&framed, &QTimer::timeout, this, [this] { FitFrame(); });
  AddKeys();
  CatchDrops();
  Join();
}

// Told later: the program that the files come from waits until the drop is over.
void FormWindow::CatchDrops() {
  setAcceptDrops(true);
  tmrDropped.setSingleShot(true);
  connect(&tmrDropped, &QTimer::timeout, this,
          [this] { Application::Guard([tell = dropped, all = paths] { tell(all); }); });
  for (QWidget* widget : contents->findChildren<QWidget*>()) {
    if (widget->acceptDrops()) widget->installEventFilter(this);
  }
}

bool FormWindow::TakeDrop(QEvent* event) {
  const QEvent::Type type = event->type();
  if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop) return false;
  auto* drop = static_cast<QDropEvent*>(event);
  if (!drop->mimeData()->hasUrls()) return false;
  if (type == QEvent::Drop) {
    paths.clear();
    for (const QUrl& url : drop->mimeData()->urls()) {
      paths.push_back(url.isLocalFile() ? QFile::encodeName(url.toLocalFile()).toStdString()
                                        : url.toString().toStdString());
    }
    tmrDropped.start(0);
  }
  drop->setDropAction(Qt::CopyAction);
  drop->accept();
  return true;
}

void FormWindow::dragEnterEvent(QDragEnterEvent* event) { TakeDrop(event); }

void FormWindow::dropEvent(QDropEvent* event) { TakeDrop(event); }

// The widgets go while the binder that they speak to is still there, and this filter with them: what a widget
// says on its way out is not heard.
FormWindow::~FormWindow() {
  Release();
  delete centralWidget();
}

void FormWindow::Join() {
  setWindowTitle(ToQt(form->Caption()));
  form->captionChanged = [this] { setWindowTitle(ToQt(form->Caption())); };
  form->focusWanted = [this](const vc::ControlCore& core) { binder->Focus(core); };
  form->controlChanged = [this](const vc::ControlCore& core, std::string_view property) {
    if (isVisible()) {
      binder->Follow(core, property);
    } else {
      stale = true;
    }
  };
}

void FormWindow::AddKeys() {
  if (layout()->menuBar() != nullptr) {
    connect(new QShortcut(Qt::Key_F10, this), &QShortcut::activated, this, [this] { OpenMenuBar(); });
  }
  for (const auto& [combination, pressed] : form->keys) {
    if (!InMenus(*form, combination)) AddKey(combination);  // with two of them neither would work
  }
  AddKey("Escape");
  AddKey(vc::HelpKey);
}

void FormWindow::AddKey(const std::string& combination) {
  auto* shortcut = new QShortcut(QKeySequence(ToQt(combination)), this);
  shortcut->setAutoRepeat(!form->unrepeated.contains(combination));
  connect(shortcut, &QShortcut::activated, this, [this, combination] {
    Application::Guard([this, &combination] {
      if (form != nullptr) form->Press(combination);
    });
  });
}

void FormWindow::OpenMenuBar() {
  menuBar()->setFocus(Qt::MenuBarFocusReason);
  menuBar()->setActiveAction(menuBar()->actions().front());
}

void FormWindow::DressAsSplash() {
  setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint);
  contents->setAutoFillBackground(true);
  contents->setBackgroundRole(QPalette::Highlight);
  scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);  // nobody could use them
  scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  const int line = LineHeight(*this);
  contents->layout()->setContentsMargins(5 * line, 4 * line, 5 * line, 4 * line);
  for (QLabel* label : contents->findChildren<QLabel*>()) {
    label->setWordWrap(false);
    label->setAlignment(Qt::AlignCenter);
    label->setForegroundRole(QPalette::HighlightedText);
  }
  for (auto* picture : contents->findChildren<PictureView*>()) {
    contents->layout()->setAlignment(picture, Qt::AlignHCenter);
  }
}

void FormWindow::Release() {
  if (form == nullptr) return;
  form->controlChanged = nullptr;
  form->captionChanged = nullptr;
  form->focusWanted = nullptr;
  form = nullptr;
  binder->Release();
  FallSilent();
}

// The controls may be gone from here on, but not the widgets: one of them may be in the midst of the event
// that has led here. Whatever else comes to them, a change of theme, the loss of the focus, their own end, no
// view asks its control any more and no filter of a text box is told. A filter set later is asked first.
void FormWindow::FallSilent() {
  hide();
  scroll->installEventFilter(this);
  for (QWidget* widget : scroll->findChildren<QWidget*>()) widget->installEventFilter(this);
}

void FormWindow::FollowStale() {
  if (std::exchange(stale, false) && form != nullptr) binder->FollowAll();
}

QSize FormWindow::Wanted(const QSize& content) const {
  const int menuHeight = layout()->menuBar() == nullptr ? 0 : layout()->menuBar()->sizeHint().height();
  const QSize told = frameGeometry().size() - size();
  const QSize guess(0, splash ? 0 : LineHeight(*this) * 2);  // until the window system has told its frame
  const QSize room = screen()->availableSize() - (told.isNull() ? guess : told);
  return (content + QSize(0, menuHeight)).expandedTo(minimumSizeHint()).boundedTo(room);
}

void FormWindow::Present(Qt::WindowModality modality, const QRect& over) {
  if (form == nullptr) return;
  FollowStale();
  if (!isVisible()) setWindowModality(modality);
  if (!std::exchange(presented, true)) PlaceFirst(over);
  show();
  raise();
  activateWindow();
  if (splash) AwaitPaint();
}

void FormWindow::PlaceFirst(const QRect& over) {
  MeasureAnew(*contents);
  TakeSize(Wanted(contents->sizeHint()));
  framed.start();
  const QRect room = screen()->availableGeometry();
  QPoint corner = over.center() - QPoint(width() / 2, height() / 2);
  if (form->opensAside) corner.setX(over.right() + 1);
  move(std::clamp(corner.x(), room.left(), std::max(room.left(), room.right() - width())),
       std::clamp(corner.y(), room.top(), std::max(room.top(), room.bottom() - height())));
  if (form->initialFocus == nullptr) return binder->FocusFirst();
  binder->Focus(*form->initialFocus);
}

void FormWindow::TakeSize(const QSize& size) {
  taken = size;
  resize(size);
}

// The window system tells how thick its frame is only once the window is there.
void FormWindow::FitFrame() {
  constexpr int mostLooks = 20;
  const QRect frame = frameGeometry();
  const bool known = frame.size() != size();
  if (known || ++looks >= mostLooks) framed.stop();
  if (!known || isMaximized() || isFullScreen()) return;
  if (!resizedByOperator) TakeSize(size().boundedTo(screen()->availableSize() - (frame.size() - size())));
  KeepOnScreen();
}

void FormWindow::KeepOnScreen() {
  const QRect room = screen()->availableGeometry(), frame = frameGeometry();
  const QSize whole = size() + (frame.size() - geometry().size());
  const QPoint corner(
      std::clamp(frame.left(), room.left(), std::max(room.left(), room.right() + 1 - whole.width())),
      std::clamp(frame.top(), room.top(), std::max(room.top(), room.bottom() + 1 - whole.height())));
  if (corner != frame.topLeft()) move(corner);
}

// Whoever shows a splash is about to work without letting events run.
void FormWindow::AwaitPaint() {
  constexpr int longestMilliseconds = 250;
  QDeadlineTimer deadline(longestMilliseconds);
  while (!windowHandle()->isExposed() && !deadline.hasExpired()) {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, 10);
  }
  repaint();
}

bool FormWindow::event(QEvent* event) {
  // Told later, so that no handler runs inside the one that brought the window forward.
  if (event->type() == QEvent::WindowActivate) activation.start();
  return QMainWindow::event(event);
}

void FormWindow::TellActivated() {
  if (form != nullptr && isActiveWindow() && form->activated) form->activated();
}

// Against the size that the operator has given it no window grows: what has no room is then scrolled to.
void FormWindow::GrowToContents() {
  const QSize wanted = Wanted(contents->minimumSizeHint()).expandedTo(size());
  if (!presented || resizedByOperator || wanted == size()) return;
  TakeSize(wanted);
  KeepOnScreen();
}

void FormWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  if (presented && event->size() != taken) resizedByOperator = true;
}

bool FormWindow::eventFilter(QObject* watched, QEvent* event) {
  if (form == nullptr) return event->type() != QEvent::DeferredDelete;
  if (watched != contents && TakeDrop(event)) return true;
  if (watched == contents && event->type() == QEvent::LayoutRequest) GrowToContents();
  return QMainWindow::eventFilter(watched, event);
}

void FormWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  if (form != nullptr) closed();
}

void FormWindow::showEvent(QShowEvent* event) {
  FollowStale();
  QMainWindow::showEvent(event);
}

}  // namespace desktop
