// The program's mark: the same on every surface, as an icon, and where it is clicked.
#include <gtest/gtest.h>

#include <QApplication>
#include <QIcon>
#include <QImage>
#include <QPainter>

#include "Shown.h"
#include "desktop/MarkIcon.h"
#include "desktop/PainterSurface.h"
#include "host/CairoPictures.h"
#include "shell/Notices.h"
#include "widgets/Mark.h"

namespace desktop {
namespace {

constexpr int Side = 64;

QImage Painted() {
  QImage image(Side, Side, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  const QPalette palette;
  PainterSurface surface(painter, palette, image.rect());
  vc::DrawMark(surface, {0, 0, Side, Side});
  return image;
}

QImage AsFile() {
  const std::string bytes = host::DrawIcon({Side, Side}, [](vc::Surface& surface) {
    vc::DrawMark(surface, {0, 0, Side, Side});
  });
  return QImage::fromData(QByteArray::fromStdString(bytes));
}

TEST(Mark, IsTheSameInWindowsAndInFiles) {
  const QImage painted = Painted(), file = AsFile();
  ASSERT_EQ(file.size(), painted.size());
  int differing = 0;
  for (int y = 0; y < Side; ++y) {
    for (int x = 0; x < Side; ++x) {
      const QColor one = painted.pixelColor(x, y), other = file.pixelColor(x, y);
      const int apart = std::abs(one.green() - other.green()) + std::abs(one.alpha() - other.alpha());
      differing += apart > 40 ? 1 : 0;  // the two shade edges in ways of their own
    }
  }
  EXPECT_LT(differing, Side * Side / 100);
  for (const int corner : {0, Side - 1}) EXPECT_EQ(file.pixelColor(corner, 0).alpha(), 0);
  EXPECT_EQ(file.pixelColor(Side / 2, 0).alpha(), 255);  // the tile goes to the edge
  const QColor tone = file.pixelColor(Side / 2, Side / 4), shoulder = file.pixelColor(4, Side * 3 / 8);
  EXPECT_GT(tone.red(), tone.blue() + 100);
  EXPECT_EQ(shoulder, QColor(Qt::white));
}

TEST(Mark, IsTheIconOfEveryWindow) {
  const QIcon icon = MarkIcon();
  for (const int side : {16, 48, 128}) {
    EXPECT_EQ(icon.actualSize(QSize(side, side)), QSize(side, side));
    EXPECT_EQ(icon.pixmap(side, side).toImage().pixelColor(side / 2, side / 4).red(), 0xF7);
  }
}

TEST(Mark, StandsInTheMiddleOfTheSplash) {
  vc::FrmSplash splash;
  vc::Forms forms{support::DeadEnd{}};
  const FormWindows windows(forms);
  forms.Show(splash.form);
  QWidget& window = *windows.WindowOf(splash.form);
  const QWidget& mark = *window.findChild<QWidget*>("imgMark");
  EXPECT_NEAR(mark.mapTo(&window, mark.rect().center()).x(), window.width() / 2, 2);
}

TEST(Mark, APictureIsClickedByTheLeftButtonOnItself) {
  vc::Form form{"Form", "Form"};
  vc::Picture picture{form, "imgLogo", "Logo", 1, support::DrawSample, 1};
  int clicks = 0;
  picture.clicked = [&clicks] { ++clicks; };
  vc::Forms forms{support::DeadEnd{}};
  const FormWindows windows(forms);
  forms.Show(form);
  auto* view = windows.WindowOf(form)->findChild<QWidget*>("imgLogo(1)");
  ASSERT_NE(view, nullptr);
  QTest::mouseClick(view, Qt::LeftButton);
  QTest::mouseClick(view, Qt::RightButton);
  EXPECT_EQ(clicks, 1);
  QTest::mousePress(view, Qt::LeftButton);
  QTest::mouseRelease(view, Qt::LeftButton, {}, QPoint(-5, -5));
  EXPECT_EQ(clicks, 1);
}

}  // namespace
}  // namespace desktop
