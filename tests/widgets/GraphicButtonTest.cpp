// The image button's latching, its pictures and its events.
#include <gtest/gtest.h>

#include "widgets/GraphicButton.h"

namespace vc {
namespace {

struct GraphicButtons : testing::Test {
  Form form{"F", "Form"};
  GraphicButton latch{form, "latch", "Latch", GraphicButton::Style::Latching};
  GraphicButton push{form, "push", "Push", GraphicButton::Style::Push};
  std::string events;

  GraphicButtons() {
    form.complain = [this](const std::string& message) { events += message; };
    for (GraphicButton* button : {&latch, &push}) {
      const auto told = [this, button](const std::string& what) {
        return [this, button, what](const MouseEvent& at) {
          events += what + std::to_string(at.x) + "," + std::to_string(at.y) + "=" + State(*button) + " ";
        };
      };
      button->mouseDown = told("down");
      button->mouseMove = told("move");
      button->mouseUp = told("up");
      button->clicked = [this, button] { events += "click=" + State(*button) + " "; };
    }
  }
  // Value and picture.
  static std::string State(const GraphicButton& button) {
    return std::to_string(button.Value()) + "/" + std::to_string(static_cast<int>(button.Picture()));
  }
};

TEST_F(GraphicButtons, ALatchTogglesAndAPushButtonComesUpAgain) {
  latch.MouseDown({LeftMouseButton, 3, 4});
  latch.MouseMove({LeftMouseButton, 5, 6});
  latch.MouseUp({LeftMouseButton, 7, 8});
  EXPECT_EQ(events, "down3,4=0/2 move5,6=0/2 up7,8=1/2 click=1/2 ");
  events.clear();
  latch.Click();
  EXPECT_EQ(events, "up0,0=0/1 click=0/1 ");
  events.clear();
  push.MouseDown({});
  push.MouseUp({});
  push.Click();
  EXPECT_EQ(events, "down0,0=0/2 up0,0=0/1 click=0/1 up0,0=0/1 click=0/1 ");
}

TEST_F(GraphicButtons, WhileDisabledTheMouseDoesNothing) {
  latch.core.SetEnabled(false);
  latch.MouseDown({});
  latch.MouseMove({});
  latch.MouseUp({});
  latch.Click();
  EXPECT_EQ(events, "");
  EXPECT_EQ(State(latch), "0/3");
  latch.SetValue(1);
  EXPECT_EQ(State(latch), "1/3");
  latch.core.SetEnabled(true);
  EXPECT_EQ(State(latch), "1/2");
}

TEST_F(GraphicButtons, RefreshShowsTheStateThatIsAskedFor) {
  int shown = 0;
  form.controlChanged = [&shown](const ControlCore&, std::string_view property) {
    if (property == "Picture") ++shown;
  };
  std::string states;
  for (const int state : {2, 2, 3, 1, 0}) {
    push.Refresh(state);
    states += State(push) + " ";
  }
  EXPECT_EQ(states, "0/2 0/2 0/3 0/1 0/1 ");
  EXPECT_EQ(shown, 3);  // what is shown already changes nothing
  push.Refresh(2);
  for (const int state : {-1, 4}) push.Refresh(state);
  EXPECT_EQ(State(push), "0/2");
  const std::string message = "Invalid picture state in GraphicButton:Refresh()";
  EXPECT_EQ(events, message + message);
  push.SetValue(0);
  EXPECT_EQ(State(push), "0/1");
  form.complain = nullptr;
  push.Refresh(9);
}

}  // namespace
}  // namespace vc
