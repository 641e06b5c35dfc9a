// The toolkit's application, with a net under every handler.
#pragma once

#include <QApplication>

namespace desktop {

class Application : public QApplication {
 public:
  // No command line is taken: give it one argument, the program's name.
  Application(int& argumentCount, char** arguments);

  // A Fault that escapes from a handler is shown and the program goes on.
  bool notify(QObject* receiver, QEvent* event) override;

 private:
  bool faultShown = false;
};

}  // namespace desktop
