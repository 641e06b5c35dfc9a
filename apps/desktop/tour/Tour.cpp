#include "desktop/tour/Tour.h"

#include <array>
#include <filesystem>
#include <iostream>
#include <set>

#include <QAccessible>
#include <QTest>

#include "desktop/tour/Hand.h"

namespace tour {
namespace {

constexpr const char* Connected = "Connected COM 1 115200 Baud";
constexpr const char* Closed = "COM 1 is closed";
// In Mono, as the program comes up first, there is one output.
constexpr std::array<const char*, 3> Bars{"lbInputLeft", "lbInputRight", "lbOutputLeft"};
const std::vector<std::string> RateMenus{"mnuSettings", "mnuLocalConnectSettings", "mnuBaudRate"};

std::string Line(std::string text) {
  for (char& character : text) {
    if (character == '\n') character = ' ';
  }
  return text;
}

}  // namespace

Tour::Tour(desktop::Program& desktopProgram, Album& pictures)
    : program(desktopProgram), album(pictures), boxes([this](QMessageBox& box) {
        Say("box ", box.windowTitle().toStdString() + ": " + Line(box.text().toStdString()));
        Photograph(&box, "box-" + std::to_string(++boxNumber));
      }) {}

void Tour::Run() {
  const std::string link = program.folders.executable + "/ports/COM1";
  std::error_code error;
  linked = std::filesystem::exists(link, error);
  Expect(linked, "a unit is linked as ports/COM1 beside the program");
  StartSession();
  if (linked) WatchLevels();
  Photograph(&Master(), "master");
  ShowMenus();
  if (linked) ChangeRate();
  ShowChain();
  ShowPanels();
  ShowDisplays();
  UndoSteps();
  StoreAndRecall();
  SwitchSetups();
  StoreAndRecallFilter();
  ShowReport();
  ShowAbout();
  ShowObjectLog();
  if (linked) UpdateFirmware();
  if (linked) TraceLine();
  ShowUnit();
  Expect(!linked || boxes.Unexpected() == 0, "no box came up that was not expected");
  LeaveProgram();
}

void Tour::StartSession() {
  QTimer watch;  // fires as soon as the splash lets events run
  QObject::connect(&watch, &QTimer::timeout, &watch, [this, &watch] {
    desktop::FormWindow* splash = program.windows.WindowOf(program.session.windows.FormOf("FrmSplash"));
    if (splash == nullptr || !splash->isVisible()) return;
    watch.stop();
    Photograph(splash, "splash");
  });
  watch.start(0);
  program.session.Start();
  Expect(!watch.isActive(), "the splash was on the screen");
  Expect(QTest::qWaitForWindowActive(&Master(), PatienceMilliseconds), "the master control panel came up");
  // An offscreen screen may be smaller than any that an operator has.
  constexpr int usualWidth = 1280, usualHeight = 720;
  Master().resize(usualWidth, usualHeight);
  const char* state = linked ? Connected : Closed;
  Await([this, state] { return Shows(state); }, std::string("the state reads ") + state);
}

void Tour::WatchLevels() {
  std::array<std::set<std::string>, Bars.size()> readings;
  constexpr int looks = 40, lookMilliseconds = 50;
  for (int look = 0; look < looks; ++look) {
    QTest::qWait(lookMilliseconds);
    for (std::size_t bar = 0; bar < Bars.size(); ++bar) readings[bar].insert(Spoken(Bars[bar]));
  }
  for (std::size_t bar = 0; bar < Bars.size(); ++bar) {
    Expect(readings[bar].size() > 1,
           std::string(Bars[bar]) + " moved: " + std::to_string(readings[bar].size()) + " readings from " +
               *readings[bar].begin() + " to " + *readings[bar].rbegin());
  }
}

void Tour::ShowMenus() {
  for (const char* menu : {"mnuFile", "mnuView", "mnuSettings", "mnuStandAlone", "mnuReport", "mnuHelp"}) {
    Expect(OpenMenu(Master(), {menu}) != nullptr, std::string(menu) + " opened by a click");
    Photograph(&Master(), std::string("menu-") + menu);
    CloseMenus(Master());
  }
  Expect(OpenMenu(Master(), RateMenus) != nullptr, "the baud rates opened by their access keys");
  Photograph(&Master(), "menu-mnuBaudRate");
  CloseMenus(Master());
}

void Tour::ChangeRate() {
  boxes.AnswerNext(QMessageBox::Cancel);
  Choose(RateMenus, "mnuBaudSelect(2)");
  Expect(boxes.LastTitle() == "Baud Rate Change", "a new rate asks first");
  Expect(Shows(Connected) && program.session.device.comm.CommPortOpen, "Cancel keeps the connection");
  boxes.AnswerNext(QMessageBox::Ok);
  Choose(RateMenus, "mnuBaudSelect(2)");
  Await([this] { return Shows(Closed); }, std::string("OK closes it, the state reads ") + Closed);
  Photograph(&Master(), "master-closed");
  Choose(RateMenus, "mnuBaudSelect(4)");
  Choose({"mnuSettings"}, "mnuConnect");
  Await([this] { return Shows(Connected); }, "back on the old rate it connects again");
}

void Tour::ShowAbout() {
  boxes.AnswerNext(QMessageBox::Ok);
  Choose({"mnuHelp"}, "mnuAbout");
  const std::string text = boxes.LastText();
  Expect(boxes.LastTitle() == "About Veltrana" && text.find("Version") != std::string::npos, "the About box");
  const bool known = text.find("Unknown") == std::string::npos;
  Expect(known == linked, linked ? "it knows the unit's versions" : "it knows no unit's versions");
}

void Tour::ShowObjectLog() {
  Master().activateWindow();
  Expect(QTest::qWaitForWindowActive(&Master(), PatienceMilliseconds), "the panel is active again");
  QTest::keyClick(&Master(), Qt::Key_D, Qt::AltModifier);
  desktop::FormWindow* log = program.windows.WindowOf(program.session.windows.FormOf("FrmDebug"));
  Expect(log != nullptr && log->isVisible(), "Alt+D shows the object log");
  if (log == nullptr) return;
  Photograph(log, "object-log");
  Expect(log->windowModality() == Qt::ApplicationModal, "it blocks the panel behind it");
  QTest::mouseClick(log->findChild<QWidget*>("btnOK"), Qt::LeftButton);
  Await([this] { return program.windows.WindowOf(program.session.windows.FormOf("FrmDebug")) == nullptr; },
        "OK closes it");
}

void Tour::Reconnect() {
  Choose({"mnuSettings"}, "mnuDisconnect");
  Await([this] { return Shows(Closed); }, "disconnected");
  Await([this] { return Spoken("lbInputLeft") == "no unit"; }, "the bars say that there is no unit");
  Choose({"mnuSettings"}, "mnuConnect");
  Await([this] { return Shows(Connected); }, "connected again");
}

void Tour::LeaveProgram() {
  Choose({"mnuFile"}, "mnuExit");
  Expect(program.session.forms.open.empty(), "Exit took every window away");
  Expect(program.events.Ending(), "the program ends");
  if (!program.events.Ending()) program.events.RequestEnd();
}

void Tour::Say(const char* how, const std::string& what) const {
  std::cout << how << ' ' << what << std::endl;
}

void Tour::Expect(bool happened, const std::string& what) {
  Say(happened ? "ok  " : "FAIL", what);
  if (!happened) ++failures;
}

void Tour::Await(const std::function<bool()>& condition, const std::string& what) {
  Expect(QTest::qWaitFor(condition, PatienceMilliseconds), what);
}

void Tour::Photograph(QWidget* window, const std::string& name) {
  if (!album.Save(*window, name)) Expect(false, "the picture " + name + " could be written");
}

void Tour::Choose(const std::vector<std::string>& menus, const std::string& entry) {
  Expect(ClickEntry(OpenMenu(Master(), menus), entry), entry + " chosen from the menu");
}

std::string Tour::Spoken(const char* control) const {
  auto* widget = Master().findChild<QWidget*>(control);
  if (widget == nullptr) return {};
  return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Description).toStdString();
}

}  // namespace tour
