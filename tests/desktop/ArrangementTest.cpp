// Tables and banks in their windows: what stands in line, what scrolls, and where the keyboard goes.
#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>

#include "MasterWindow.h"
#include "Room.h"
#include "RowForm.h"
#include "Unheard.h"

namespace desktop {
namespace {

template <typename Sample>
struct Opened {
  Sample sample;
  vc::Forms forms{support::DeadEnd{}};
  FormWindows windows{forms};

  explicit Opened(const QSize& size) {
    forms.Show(sample.form);
    EXPECT_TRUE(QTest::qWaitForWindowActive(&Window()));
    Window().resize(size);
    Settle();
  }
  // Twice: what has become narrower scrolls only then.
  static void Settle() {
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
  }
  FormWindow& Window() { return *windows.WindowOf(sample.form); }
  QWidget& At(const std::string& name, int index) {
    return *Window().template findChild<QWidget*>(ToQt(name + "(" + std::to_string(index) + ")"));
  }
  QRect Place(const QWidget& widget) { return {widget.mapTo(&Window(), QPoint()), widget.size()}; }
  static std::string Focused() { return FromQt(QApplication::focusWidget()->objectName()); }
  static void Press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
};
using Table = Opened<support::RowForm>;

// The panel of an equalizer's bands.
struct Bank : MasterWindow {
  explicit Bank(const QSize& size) {
    for (int band = 0; band < 20; ++band) Edit("eqBandGain", std::to_string(band * 7 % 41), 9, band);
    session.panels.OpenEqualizer(1);
    Ready();
    Window().resize(size);
    Table::Settle();
  }
  QWidget& Band(const char* name, int band) const {
    return MasterWindow::At(name + ("(" + std::to_string(band) + ")"));
  }
  vc::Slider& SliderOf(int band) const {
    return *std::get<vc::Slider*>(Find("sldrGain(" + std::to_string(band) + ")"));
  }
  QRect Place(const QWidget& widget) const { return {widget.mapTo(&Window(), QPoint()), widget.size()}; }
};

// What is left of a small screen at 125 %.
constexpr QSize SmallScreen(1024, 540), LargeScreen(1280, 690);

TEST(Tables, AlignTheirColumnsUnderTheHeadings) {
  for (const QSize& size : {SmallScreen, LargeScreen}) {
    Table table(size);
    ExpectAllFits(table.Window());
    for (const char* caption : {"Notch 4", "A notch of many words", ""}) {
      table.sample.rows[3]->frame.core.SetCaption(caption);
      Table::Settle();
      for (const char* name : {"sldrFreq", "txtFreq", "sldrWidth", "txtWidth"}) {
        const QRect first = table.Place(table.At(name, 0));
        for (int row = 1; row < 16; ++row) {
          const QRect other = table.Place(table.At(name, row));
          EXPECT_TRUE(other.left() == first.left() && other.width() == first.width())
              << name << row << caption << other.left() << " " << first.left() << " " << other.width() << " "
              << first.width();
        }
      }
    }
    int headings = 0;
    for (const QLabel* label : table.Window().findChildren<QLabel*>()) {
      if (label->text() != "Width") continue;
      ++headings;  // and no row repeats it
      EXPECT_EQ(table.Place(*label).left(), table.Place(table.At("sldrWidth", 0)).left());
      EXPECT_LE(table.Place(*label).bottom(), table.Place(table.At("sldrWidth", 0)).top());
    }
    EXPECT_EQ(headings, 1);
  }
}

TEST(Tables, ScrollAloneAndShowWhatHasTheFocus) {
  Table table({700, 360});
  ExpectAllFits(table.Window());  // the rest of the form stands still
  QWidget& last = table.At("sldrFreq", 15);
  EXPECT_TRUE(last.visibleRegion().isEmpty());
  table.At("txtWidth", 14).setFocus(Qt::TabFocusReason);
  Table::Press(Qt::Key_Tab);
  EXPECT_EQ(Table::Focused(), "sldrFreq(15)");
  Table::Settle();
  EXPECT_EQ(last.visibleRegion().boundingRect(), last.rect());
  table.At("txtFreq", 0).setFocus(Qt::ShortcutFocusReason);  // nor need it come by Tab
  Table::Settle();
  EXPECT_FALSE(table.At("txtFreq", 0).visibleRegion().isEmpty());
  last.setFocus(Qt::ShortcutFocusReason);
  // The wheel scrolls back over sliders and numbers, and changes none of them.
  const double before = table.sample.rows[14]->freq.slider.Position();
  constexpr int notches = 12 * 120;
  for (const char* name : {"sldrFreq", "txtFreq"}) {
    QWidget& under = table.At(name, 14);
    for (QWidget* at = &under; at != nullptr && !last.visibleRegion().isEmpty(); at = at->parentWidget()) {
      TurnWheel(*at, notches);
    }
  }
  EXPECT_TRUE(last.visibleRegion().isEmpty());
  EXPECT_DOUBLE_EQ(table.sample.rows[14]->freq.slider.Position(), before);
  // Nor does it stop at the one that has the focus while it scrolls.
  table.At("sldrFreq", 14).setFocus(Qt::OtherFocusReason);
  TurnWheel(table.At("sldrFreq", 14), 120);
  EXPECT_DOUBLE_EQ(table.sample.rows[14]->freq.slider.Position(), before);
}

TEST(Tables, AreReadRowByRow) {
  Table table(LargeScreen);
  EXPECT_EQ(table.At("sldrFreq", 2).accessibleName(), "Notch 3, Freq.");
  EXPECT_EQ(table.At("txtWidth", 2).accessibleName(), "Notch 3, Width");
  EXPECT_EQ(HeardOf(table.At("sldrFreq", 2)), "900 Hz");
  table.sample.rows[2]->frame.core.SetCaption("Slot 3");
  EXPECT_EQ(table.At("txtFreq", 2).accessibleName(), "Slot 3, Freq.");
  table.At("sldrFreq", 2).setFocus(Qt::TabFocusReason);
  for (const char* next : {"txtFreq(2)", "sldrWidth(2)", "txtWidth(2)", "sldrFreq(3)"}) {
    Table::Press(Qt::Key_Tab);
    EXPECT_EQ(Table::Focused(), next);
  }
  table.sample.rows[3]->frame.core.SetEnabled(false);
  EXPECT_FALSE(table.At("txtFreq", 3).isEnabled());
}

TEST(Banks, StandEquallyWideUnderTheirNumbers) {
  for (const QSize& size : {SmallScreen, LargeScreen}) {
    Bank bank(size);
    for (const char* widest : {"100", "1.25K"}) {
      bank.SliderOf(3).core.SetCaption(widest);
      Table::Settle();
      ExpectAllFits(bank.Window());
      const QRect first = bank.Place(bank.Band("sldrGain", 0)), second = bank.Place(bank.Band("sldrGain", 1));
      int before = first.center().x();
      for (int band = 0; band < 20; ++band) {
        const QRect slider = bank.Place(bank.Band("sldrGain", band));
        const QRect text = bank.Place(bank.Band("txtGain", band));
        EXPECT_LT(text.bottom(), slider.top());
        EXPECT_NEAR(text.center().x(), slider.center().x(), 1);
        if (band > 0) {
          EXPECT_NEAR(slider.center().x() - before, second.x() - first.x(), 1);
        }
        before = slider.center().x();
      }
    }
    bank.Window().resize(size.width() * 3 / 4, size.height());  // too narrow for the longest caption
    Table::Settle();
    EXPECT_NEAR(bank.Band("txtGain", 3).width(), bank.Band("txtGain", 0).width(), 1);
  }
}

TEST(Banks, GoFromBandToBandByLeftAndRight) {
  Bank bank(LargeScreen);
  vc::Slider& slider = bank.SliderOf(2);
  const double before = slider.Position();
  bank.Band("sldrGain", 2).setFocus(Qt::TabFocusReason);
  EXPECT_EQ(bank.Band("sldrGain", 2).accessibleName(), "Band Gain, 200");
  EXPECT_EQ(HeardOf(bank.Band("sldrGain", 2)), "-14 dB");
  Table::Press(Qt::Key_Down);
  EXPECT_DOUBLE_EQ(slider.Position(), before - 1);
  bank.SliderOf(1).core.SetEnabled(false);
  for (const auto& [key, name] : {std::pair{Qt::Key_Left, "sldrGain(0)"},
                                  {Qt::Key_Left, "sldrGain(0)"},
                                  {Qt::Key_Right, "sldrGain(2)"},
                                  {Qt::Key_Tab, "txtGain(2)"},
                                  {Qt::Key_Left, "txtGain(2)"},
                                  {Qt::Key_Tab, "sldrGain(3)"}}) {
    Table::Press(key);
    EXPECT_EQ(Table::Focused(), name);
  }
  EXPECT_DOUBLE_EQ(slider.Position(), before - 1);
}

TEST(Arrangements, HaveRoomForLargerLetters) {
  const QFont usual = QApplication::font();
  QFont large = usual;
  large.setPointSizeF(1.35 * PointSize(usual));
  QApplication::setFont(large);
  {
    Table table(LargeScreen);
    ExpectAllFits(table.Window());
    Bank bank(LargeScreen);
    ExpectAllFits(bank.Window());
  }
  QApplication::setFont(usual);
}

}  // namespace
}  // namespace desktop
