// Another program as a child: lines in, lines out, with time-outs. It is ended with the object.
#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace support {

class Program {
 public:
  Program(const std::string& path, const std::vector<std::string>& arguments = {});
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  void Say(const std::string& line) const;
  void CloseInput();
  // As a reader that goes away.
  void CloseOutput();
  // The next line that begins with the text; empty where none comes in time.
  std::string Await(const std::string& beginning, int milliseconds = 5000);
  // Waits for the end; the exit code, -1 where it does not end in time, -2 where a signal ended it.
  int AwaitEnd(int milliseconds = 5000);
  void Signal(int number) const;
  pid_t Id() const { return child; }

 private:
  pid_t child = -1;
  int input = -1, output = -1;
  std::string pending;
};

}  // namespace support
