// Lines that go out on a descriptor, without ever waiting for whoever reads them.
#pragma once

#include <chrono>
#include <memory>
#include <string>

namespace unit::control {

// A thread of its own writes. Where nobody reads any more, lines are lost; SIGPIPE must be ignored.
class Outlet {
 public:
  explicit Outlet(int descriptor);
  ~Outlet();
  Outlet(const Outlet&) = delete;
  Outlet& operator=(const Outlet&) = delete;

  // line: without its end.
  void Say(const std::string& line);
  // So much has not been read that no more should be said.
  bool Full() const;
  // Waits until all has gone out, but not longer than that.
  void Drain(std::chrono::milliseconds longest);

 private:
  struct Shared;
  std::shared_ptr<Shared> shared;  // with the thread, which may outlive this
};

}  // namespace unit::control
