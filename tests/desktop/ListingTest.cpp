// A listing in its window: only what is on show is asked for, the end is kept, and so is what is looked at.
#include <set>

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QScrollBar>

#include "Shown.h"
#include "desktop/ListingView.h"

namespace desktop {
namespace {

struct Listings : testing::Test {
  Shown shown;
  vc::Listing& listing = shown.sample.lstRows;
  ListingView& view = dynamic_cast<ListingView&>(shown.At("lstRows"));
  std::set<std::size_t> asked;  // rows, since it was cleared

  Listings() {
    listing.cells = [this](std::size_t number) {
      asked.insert(number);
      return std::vector<std::string>{std::to_string(number), "row " + std::to_string(number)};
    };
    listing.stands = [](std::size_t number) { return number % 10 == 3; };
    shown.Window().resize(700, 1600);
    Settle();
    asked.clear();
  }
  static void Settle() { QCoreApplication::processEvents(); }
  void Roll(std::size_t first, std::size_t behind) {
    listing.Roll(first, behind);
    Settle();
  }
  // Numbers of the rows at the top and at the bottom of what is on show.
  int Top() const { return NumberAt(1); }
  int Bottom() const { return NumberAt(view.viewport()->height() - 2); }
  int NumberAt(int y) const { return view.model()->index(view.rowAt(y), 0).data().toInt(); }
  int End() const { return view.model()->index(view.model()->rowCount() - 1, 0).data().toInt(); }
};

TEST_F(Listings, ItAsksForTheRowsOnShowAlone) {
  Roll(0, 10'000);
  EXPECT_EQ(view.model()->rowCount(), 10'000);
  EXPECT_EQ(Bottom(), 9'999);
  EXPECT_LT(asked.size(), 60U);
  EXPECT_GT(asked.size(), 2U);
}

TEST_F(Listings, ItStaysAtTheEndOrWithTheRowsThatAreLookedAt) {
  Roll(0, 1'000);
  Roll(0, 1'100);
  EXPECT_EQ(Bottom(), 1'099);
  view.verticalScrollBar()->setValue(500);
  Settle();
  EXPECT_EQ(Top(), 500);
  Roll(0, 1'300);
  EXPECT_EQ(Top(), 500);
  Roll(250, 1'550);  // older ones fall out below what is looked at
  EXPECT_EQ(Top(), 500);
  Roll(700, 2'000);  // now that as well
  EXPECT_EQ(Top(), 700);
  view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
  Roll(3'000, 4'000);  // all that it had
  EXPECT_EQ(Bottom(), 3'999);
  listing.Replace(9'000, 9'002);
  Settle();
  EXPECT_EQ(view.model()->rowCount(), 2);
  EXPECT_EQ(End(), 9'001);
}

TEST_F(Listings, ErrorsStandOutAndRowsAreCopied) {
  Roll(0, 20);
  const auto ink = [this](int row) { return view.model()->index(row, 0).data(Qt::ForegroundRole); };
  EXPECT_TRUE(ink(13).isValid());
  EXPECT_FALSE(ink(12).isValid());
  view.setFocus();
  view.selectRow(12);
  QTest::keyClick(&view, Qt::Key_Down, Qt::ShiftModifier);
  QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), QLatin1String("12\trow 12\n13\trow 13\n"));
}

}  // namespace
}  // namespace desktop
