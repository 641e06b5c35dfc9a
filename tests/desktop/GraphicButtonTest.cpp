// The image button under the operator's mouse and keyboard.
#include <gtest/gtest.h>

#include <QPushButton>

#include "Shown.h"

namespace desktop {
namespace {

struct ButtonTest : testing::Test {
  Shown shown;
  vc::GraphicButton& model = shown.sample.btnActive;
  QPushButton& view = shown.At<QPushButton>("btnActive");

  ButtonTest() {
    const auto told = [this](const std::string& what) {
      return [this, what](const vc::MouseEvent& at) {
        shown.sample.events += what + std::to_string(at.x) + "," + std::to_string(at.y) + " ";
      };
    };
    model.mouseDown = told("down");
    model.mouseMove = told("move");
    model.mouseUp = told("up");
  }
  QColor Colour() const {  // of its face, beside the caption
    return view.grab().toImage().pixelColor(LineHeight(view) / 2, view.height() / 2);
  }
};

TEST_F(ButtonTest, LooksPressedWhileItIsHeldAndLatchesWhenItIsReleased) {
  const QColor up = Colour();
  QTest::mousePress(&view, Qt::LeftButton, {}, {9, 8});
  EXPECT_EQ(model.Picture(), vc::GraphicButton::PictureState::Down);
  const QColor held = Colour();
  EXPECT_NE(held, up);
  QTest::mouseMove(&view, {10, 8});
  QTest::mouseRelease(&view, Qt::LeftButton, {}, {11, 8});
  EXPECT_EQ(shown.sample.events, "down9,8 move10,8 up11,8 active ");
  EXPECT_TRUE(view.isChecked());
  EXPECT_EQ(shown.Says("btnActive"), "on");
  EXPECT_NE(Colour(), held);
  EXPECT_NE(Colour(), up);
}

TEST_F(ButtonTest, APressIsTakenBackByLeavingTheButtonAndByDisablingIt) {
  QTest::mousePress(&view, Qt::LeftButton, {}, {9, 8});
  QTest::mouseMove(&view, {9, -50});
  EXPECT_EQ(model.Picture(), vc::GraphicButton::PictureState::Up);
  QTest::mouseRelease(&view, Qt::LeftButton, {}, {9, -50});
  EXPECT_FALSE(model.Value() == 1 || view.isChecked());
  QTest::mousePress(&view, Qt::LeftButton, {}, {9, 8});
  model.core.SetEnabled(false);
  QTest::mouseRelease(&view, Qt::LeftButton, {}, {9, 8});
  model.core.SetEnabled(true);
  EXPECT_EQ(model.Picture(), vc::GraphicButton::PictureState::Up);
  EXPECT_FALSE(view.isDown());
  shown.sample.events.clear();
  QTest::keyClick(&view, Qt::Key_Space);
  EXPECT_EQ(shown.sample.events, "down0,0 up0,0 active ");
  EXPECT_EQ(model.Value(), 1);
}

TEST_F(ButtonTest, ALatchedButtonHasTheTintOfItsOwner) {
  model.SetValue(1);
  QCoreApplication::processEvents();
  const QColor accent = Colour();
  model.SetLatchedTint(vc::GraphicButton::Tint::Green);
  const QColor green = Colour();
  EXPECT_NE(green, accent);
  EXPECT_GT(green.green(), green.red());
  EXPECT_GT(green.green(), green.blue());
  model.core.SetEnabled(false);
  EXPECT_NE(Colour(), green);
}

TEST_F(ButtonTest, ThePointerAndTheFocusRectangleAreTheModels) {
  model.SetMousePointer(vc::GraphicButton::Pointer::Hand);
  EXPECT_EQ(view.cursor().shape(), Qt::PointingHandCursor);
  shown.Focus("btnActive");
  const QImage framed = view.grab().toImage();
  model.SetShowFocusRect(false);
  const QImage plain = view.grab().toImage();
  EXPECT_NE(framed, plain);
  model.SetShowFocusRect(true);
  model.SetFocusRectColor(0x0000FF);
  const QImage red = view.grab().toImage();
  EXPECT_NE(red, framed);
  const int inset = LineHeight(view) / 5;
  bool found = false;
  for (int x = inset; x < view.width() - inset; ++x) found |= red.pixelColor(x, inset) == QColor(Qt::red);
  EXPECT_TRUE(found);
}

}  // namespace
}  // namespace desktop
