// The system's requests to end the program: SIGTERM, SIGINT, SIGHUP and SIGQUIT.
#pragma once

namespace host {

class EndSignals {
 public:
  // From now on they do not end the program by themselves, and a reader that goes away is an error of the
  // write and no signal. A program that was started to outlive its terminal still does. One object a program.
  EndSignals();
  ~EndSignals();
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;

  // Readable while one waits to be taken; negative where the system gave none, and then they act as ever.
  int Descriptor() const { return descriptor; }
  // True where one has come since the last call.
  bool Take();
  // True from the first one on, taken or not, until they are forgotten.
  bool Come() const;
  void Forget();

 private:
  int descriptor;
  bool come = false;
};

}  // namespace host
