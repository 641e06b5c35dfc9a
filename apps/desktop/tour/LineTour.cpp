// The part of the walk that looks at the line: a full download in words, and what the filters leave of it.
#include <QCheckBox>
#include <QTest>

#include "desktop/tour/Tour.h"
#include "shell/FrmLineTrace.h"

namespace tour {

void Tour::TraceLine() {
  vc::Session& session = program.session;
  const auto& trace = session.windows.Get<vc::FrmLineTrace>("FrmLineTrace");
  Choose({"mnuSettings"}, "mnuLineTrace");
  desktop::FormWindow* window = program.windows.WindowOf(trace.form);
  Expect(window != nullptr && window->isVisible(), "the line trace is open");
  if (window == nullptr) return;
  Master().activateWindow();
  Expect(QTest::qWaitForWindowActive(&Master(), PatienceMilliseconds), "the master panel has the keyboard");
  Reconnect();
  constexpr std::size_t download = 200;  // rows that a full one has at least
  Await([&trace] { return trace.lstTrace.Rows() > download; }, "a full download is traced");
  Photograph(window, "line-trace");
  const auto click = [window](const char* name) {
    QWidget* widget = window->findChild<QWidget*>(name);
    QTest::mouseClick(widget, Qt::LeftButton, {}, {widget->height() / 2, widget->height() / 2});
  };
  click("chkPolls");
  click("btnPause");
  Await([&session] { return !session.portLibrary.tap.On(); }, "it pauses");
  window->findChild<QWidget*>("txtSearch")->setFocus();
  QTest::keyClicks(window->findChild<QWidget*>("txtSearch"), "limiter");
  Await([&trace] { return trace.lstTrace.Rows() == 2; }, "the text that is looked for is found");
  Photograph(window, "line-trace-found");
  ShowOver(*window, "FrmLineTrace");
  click("btnClose");
  Expect(session.forms.Find("FrmLineTrace") == nullptr, "the line trace has gone");
}

}  // namespace tour
