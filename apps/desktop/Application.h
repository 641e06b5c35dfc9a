// The toolkit's application, with a net under every handler.
#pragma once

#include <functional>

#include <QApplication>

#include "text/Convert.h"

namespace desktop {

class Application : public QApplication {
 public:
  // No command line is taken: give it one argument, the program's name.
  Application(int& argumentCount, char** arguments);

  // A Fault that escapes from a handler is shown and the program goes on.
  bool notify(QObject* receiver, QEvent* event) override;
  // The same for a handler that the toolkit calls from deep within its own code, which is built without
  // exceptions: a Fault that went through it would leave unreleased what it holds.
  static void Guard(const std::function<void()>& handler);

 private:
  void Tell(const vc::Fault& fault);

  bool faultShown = false;
};

}  // namespace desktop
