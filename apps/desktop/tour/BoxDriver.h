// The operator's hand on message boxes: each one that comes up is photographed and answered.
#pragma once

#include <deque>
#include <functional>
#include <string>

#include <QMessageBox>
#include <QTimer>

namespace tour {

class BoxDriver {
 public:
  // seen gets every box before it is answered.
  explicit BoxDriver(std::function<void(QMessageBox& box)> seen);

  // The button for the next box that has no answer yet. A box without an answer gets the safe one.
  void AnswerNext(QMessageBox::StandardButton button) { answers.push_back(button); }
  // Boxes that came without an answer being ready.
  int Unexpected() const { return unexpected; }
  std::string LastTitle() const { return lastTitle; }
  std::string LastText() const { return lastText; }

 private:
  void Look();
  void Answer(QMessageBox& box);

  std::function<void(QMessageBox&)> told;
  std::deque<QMessageBox::StandardButton> answers;
  int unexpected = 0;
  std::string lastTitle, lastText;
  QTimer timer;
};

}  // namespace tour
