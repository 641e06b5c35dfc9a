#include "unit/control/Control.h"

namespace unit::control {
namespace {

constexpr std::int64_t LookAgain = 20'000;  // microseconds

}  // namespace

Control::Control(int input, Parts& commanded, Outlet& answered)
    : lines(input), parts(commanded), outlet(answered) {}

void Control::Serve(std::int64_t now) {
  if (outlet.Full()) {
    due = now + LookAgain;
    return;
  }
  if (!waiting) TakeLine();
  if (!waiting) return;
  const std::optional<std::string> answer = AnswerTo(parts, *waiting);
  due = answer ? now : now + LookAgain;
  if (!answer) return;
  if (!answer->empty()) outlet.Say(*answer);
  waiting.reset();
}

// Where there is none, Event tells of the next one.
void Control::TakeLine() {
  due.reset();
  std::optional<InputLines::Line> line = lines.Take();
  if (!line) return;
  if (!line->tooLong) {
    waiting = std::move(line->text);
    return;
  }
  outlet.Say(Refusal("a line has " + std::to_string(InputLines::LongestLine) + " bytes at most"));
  due = 0;
}

}  // namespace unit::control
