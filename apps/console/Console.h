// The session with text in and text out, one command a line. It reaches every control of every open form by
// its name and knows none of them.
#pragma once

#include <functional>
#include <ostream>
#include <span>
#include <string>

#include "console/ConsoleDesk.h"
#include "host/TimerLoop.h"
#include "shell/Session.h"

namespace console {

class Console {
 public:
  Console(vc::Session& runningSession, ConsoleDesk& operatorDesk, host::TimerLoop& timerLoop,
          std::ostream& stream)
      : session(runningSession), desk(operatorDesk), loop(timerLoop), out(stream) {}

  // Carries out one line. What is wrong with it is told in one line that begins with "error".
  void Execute(const std::string& line);
  // Tells what went wrong, in one line as above.
  void Error(const std::string& what, const std::string& why);
  // One such line has been told, whichever.
  bool Failed() const { return failed; }

 private:
  struct Command {
    const char* name;
    const char* usage;
    void (Console::*run)(const std::string& arguments);
  };
  static std::span<const Command> Commands();

  void ListForms(const std::string& arguments);
  void ShowForm(const std::string& arguments);
  void ShowControl(const vc::AnyControl& control);
  void GetControl(const std::string& arguments);
  void SetControl(const std::string& arguments);
  void TypeText(const std::string& arguments);
  void EnterText(const std::string& arguments);
  void Click(const std::string& arguments);
  void Press(const std::string& arguments);
  void Point(const std::string& arguments);
  void Default(const std::string& arguments);
  void Menu(const std::string& arguments);
  void Key(const std::string& arguments);
  void QueueAnswers(const std::string& arguments);
  void Run(const std::string& arguments);
  void Close(const std::string& arguments);
  void Record(const std::string& arguments);
  void Unit(const std::string& arguments);
  void AskUnit(const std::string& command);
  void Clean(const std::string& arguments);
  void Drop(const std::string& arguments);
  void Quit(const std::string& arguments);
  void Help(const std::string& arguments);

  // Runs the action on the control that the first word names, with the rest of the line.
  void Operate(const std::string& arguments,
               const std::function<std::string(const vc::AnyControl&, const std::string&)>& action);

  vc::Session& session;
  ConsoleDesk& desk;
  host::TimerLoop& loop;
  std::ostream& out;
  bool failed = false;
};

}  // namespace console
