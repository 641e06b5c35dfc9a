// Curves drawn by the mouse and by keys at a real port: what the hand did is in the record line by line, and
// in the coefficients that the unit's own program tells of.
#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

#include "RealPort.h"
#include "desktop/PlotView.h"
#include "model/Kinds.h"

namespace desktop {
namespace {

// The unit's table has the filter's own response, or what a filter stage takes away. Of the curve that no
// filter was built with yet the unit has none.
struct Drawing {
  const char *list, *kind, *open;
  int lines, grid;
  const char* table;
  bool takenAway;
  float (*level)(const vc::SystemSettings& record, int line);
  std::vector<const char*> onward{};  // from the panel of the block to the one that is drawn on
};
const Drawing Drawings[]{
    {"cmbFilter(1)", "Hi-Res", "btnFilterConfig(1)", 460, 1024, "table 1 ", true,
     [](const vc::SystemSettings& record, int line) { return record.hiResCurve[1][line]; }},
    {"cmbEq(1)", "Spectral", "btnEqConfig(1)", 115, 256, "table 9 ", false,
     [](const vc::SystemSettings& record, int line) { return record.edgeCurve[1][line]; }},
    {"cmbFilter(1)",
     "Spectral I",
     "btnFilterConfig(1)",
     460,
     1024,
     nullptr,
     false,
     [](const vc::SystemSettings& record, int line) { return record.customCurve[1][line]; },
     {"ROSSelect(3)", "btnEdit"}}};

struct RealCurve : RealPort {
  const Drawing* drawing = nullptr;

  std::vector<double> Levels() const {
    std::vector<double> levels(static_cast<std::size_t>(drawing->lines));
    for (int line = 0; double& level : levels) level = static_cast<double>(drawing->level(Record(), line++));
    return levels;
  }
  void OpenDrawing(const Drawing& one) {
    drawing = &one;
    Open(one.list, one.kind, one.open);
    for (const char* control : one.onward) {
      Hit(control);
      Ready();
    }
  }
  void LeaveFor(const vc::Form& form) const {
    constexpr int mostWindows = 2;
    for (int window = 0; window < mostWindows && program->session.forms.Top() != &form; ++window) {
      Hit("btnOK");
      Ready();
    }
    EXPECT_EQ(program->session.forms.Top(), &form);
  }
  PlotView& Display() const { return dynamic_cast<PlotView&>(At("FilterDisplay")); }
  // The pixel at a line and a level: the axes end in the middles of the outermost ones.
  QPoint Pixel(double line, double level) const {
    const vc::Rectangle& frame = Display().Layout().frame;
    return {static_cast<int>(std::lround(frame.left + (frame.width - 1) * line / (drawing->lines - 1))),
            static_cast<int>(std::lround(frame.top + (frame.height - 1) * level / -60))};
  }
  // The line whose place a pixel lies in, and its level.
  int LineOf(const QPoint& pixel) const {
    const vc::Rectangle& frame = Display().Layout().frame;
    const double part = std::clamp((pixel.x() - frame.left * 1.0) / (frame.width - 1), 0.0, 1.0);
    return static_cast<int>(part * (drawing->lines - 1) + 1e-6);
  }
  double LevelOf(const QPoint& pixel) const {
    const vc::Rectangle& frame = Display().Layout().frame;
    return std::clamp((pixel.y() - frame.top * 1.0) / (frame.height - 1) * -60, -60.0, 0.0);
  }
  // In steps, as a hand comes there.
  void ClickAt(const QPoint& pixel) const {
    QWindow* window = Window().windowHandle();
    const QPoint there = Display().mapTo(&Window(), pixel);
    for (const int away : {9, 4, 1, 0}) QTest::mouseMove(window, there - QPoint(away, away / 2));
    QTest::mouseClick(window, Qt::LeftButton, {}, there);
  }
  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const {
    QTest::keyClick(Window().focusWidget(), key, modifiers);
  }
  void BeginNew() const {
    Hit("btnNew");
    QCoreApplication::processEvents();
    EXPECT_EQ(QApplication::focusWidget(), &Display());
  }
  // The curve is drawn from the last point to this one.
  static void Join(std::vector<double>& levels, int from, int line, double level) {
    const auto at = [&levels](int place) -> double& { return levels[static_cast<std::size_t>(place)]; };
    for (int between = from + 1; between <= line; ++between) {
      at(between) = at(from) + (level - at(from)) * (between - from) / (line - from);
    }
  }
  int JoinTo(std::vector<double>& levels, int from, const QPoint& pixel) const {
    const int line = LineOf(pixel);
    if (line > from) Join(levels, from, line, LevelOf(pixel));
    ClickAt(pixel);  // behind it the picture may be laid out anew
    return std::max(from, line);
  }
  // Draws on from a line by so many clicks to a pixel of the last line.
  void DrawOn(std::vector<double>& levels, int from, int clicks, const QPoint& end) const {
    for (int click = 1; click <= clicks; ++click) {
      const double line = from + (LineOf(end) - from) * static_cast<double>(click) / (clicks + 1);
      from = JoinTo(levels, from, Pixel(line, -25 + 28 * std::sin(click * 1.7)));
    }
    JoinTo(levels, from, end);
  }
  void ExpectRecord(const std::vector<double>& levels) const {
    for (int line = 0; line < drawing->lines; ++line) {
      ASSERT_NEAR(Levels()[static_cast<std::size_t>(line)], levels[static_cast<std::size_t>(line)], 1e-3)
          << line;
    }
  }
  // On each line the unit does as drawn, but for what lies far below full scale.
  void ExpectInUnit(const std::vector<double>& levels) const {
    if (drawing->table == nullptr) return;
    const std::string dumped = Dump();
    const std::size_t at = dumped.find(drawing->table);
    ASSERT_NE(at, std::string::npos);
    std::istringstream table(dumped.substr(at + std::string(drawing->table).size()));
    std::size_t count = 0;
    table >> count;
    std::vector<double> taps(count);
    for (double& tap : taps) table >> tap;
    ASSERT_EQ(count, static_cast<std::size_t>(drawing->grid));
    for (int line = 0; line < drawing->lines; ++line) {
      std::complex<double> sum;
      for (std::size_t n = 0; n < count; ++n) {
        const double turns = line * (static_cast<double>(n) - static_cast<double>(count) / 2) / drawing->grid;
        sum += taps[n] / 8388607 * std::polar(1.0, -2 * std::numbers::pi * turns);
      }
      const double gain = std::abs(drawing->takenAway ? 1.0 - sum : sum);
      ASSERT_NEAR(gain, std::pow(10, levels[static_cast<std::size_t>(line)] / 20), 2e-4) << line;
    }
  }
};

TEST_F(RealCurve, WhatTheHandDrawsIsInTheRecordAndInTheUnit) {
  for (const Drawing& one : Drawings) {
    SCOPED_TRACE(one.kind);
    OpenDrawing(one);
    const std::vector<double> before = Levels();
    BeginNew();
    const vc::Rectangle frame = Display().Layout().frame;
    std::vector<double> levels(before.size());
    const QPoint first = Pixel(one.lines * 0.6, -12);
    levels[0] = LevelOf(first);
    ClickAt(first);
    for (const bool whole : {true, false}) {  // then a region of what has been drawn, 10 dB lower
      if (!whole) {
        Hit("btnEdit");
        Ready();
        QTest::mouseClick(&At("optDropSelect(2)"), Qt::LeftButton, {},
                          {9, At("optDropSelect(2)").height() / 2});
        Hit("btnProceed");
        Ready();
        for (double& level : levels) level = std::max(level - 10, -60.0);
        ClickAt(Pixel(one.lines / 5.0, -30));
        ClickAt(Pixel(one.lines / 2.0, -50));
      }
      const int left = whole ? 0 : LineOf(Pixel(one.lines / 5.0, 0));
      const QPoint end = whole ? QPoint(frame.Right() + 4, frame.top + 50) : Pixel(one.lines / 2.0, -33);
      const std::vector<double> stood = Levels();
      EXPECT_EQ(stood == before, whole);
      DrawOn(levels, left, whole ? 40 : 9, end);
      EXPECT_TRUE(At("btnOK").isEnabled());
      ExpectRecord(levels);
      ExpectInUnit(levels);
    }
    // Again by keys alone: the level at 0 Hz, a point 100 lines on, and the end.
    BeginNew();
    Key(Qt::Key_Home);
    for (int up = 0; up < 6; ++up) Key(Qt::Key_PageUp);
    for (int down = 0; down < 7; ++down) Key(Qt::Key_Down);
    Key(Qt::Key_Return);
    Key(Qt::Key_Right, Qt::ControlModifier);
    Key(Qt::Key_PageDown);
    Key(Qt::Key_Enter);
    Key(Qt::Key_End);
    Key(Qt::Key_Up, Qt::ControlModifier);
    Key(Qt::Key_Return);
    levels[0] = -7;
    Join(levels, 0, 100, -17);
    Join(levels, 100, one.lines - 1, -16.9);
    ExpectRecord(levels);
    ExpectInUnit(levels);
    LeaveFor(program->session.master.form);
  }
}

TEST_F(RealCurve, AnEditThatIsLeftLeavesWhatStood) {
  for (const Drawing& one : Drawings) {
    SCOPED_TRACE(one.kind);
    OpenDrawing(one);
    const std::vector<double> before = Levels();
    const auto draw = [this] {
      BeginNew();
      ClickAt(Pixel(50, -5));
      for (const int line : {20, 40, 60}) ClickAt(Pixel(line, -line / 2.0));
      EXPECT_FALSE(At("btnOK").isEnabled());
    };
    draw();
    Key(Qt::Key_Escape);
    EXPECT_TRUE(At("btnOK").isEnabled());
    EXPECT_EQ(Levels(), before);
    draw();
    Window().close();
    Ready();
    LeaveFor(program->session.master.form);
    EXPECT_EQ(Levels(), before);
  }
  // The unit goes in the middle: the curve is drawn to its end, and kept.
  OpenDrawing(Drawings[0]);
  BeginNew();
  std::vector<double> levels(static_cast<std::size_t>(drawing->lines));
  levels[0] = LevelOf(Pixel(50, -5));
  ClickAt(Pixel(50, -5));
  QTimer boxes;
  int told = 0;
  QObject::connect(&boxes, &QTimer::timeout, [&told] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr) return;
    ++told;
    box->defaultButton()->click();
  });
  boxes.start(50);
  unit.Signal(SIGKILL);
  EXPECT_TRUE(QTest::qWaitFor([&told] { return told > 0; }, 15000));
  DrawOn(levels, 0, 9, {Display().Layout().frame.Right() + 4, 200});
  ExpectRecord(levels);
  EXPECT_TRUE(At("btnOK").isEnabled());
}

}  // namespace
}  // namespace desktop
