// Which device stands behind a port name.
#pragma once

#include <string>
#include <vector>

namespace host {

struct PortMap {
  std::string linkFolder;                      // links named COM1 to COM9 in here win
  std::string classFolder = "/sys/class/tty";  // where the system tells its terminals
  std::string deviceFolder = "/dev";
  std::string ownFolder{};  // where links can be made, and count as well; none for linkFolder itself

  // Path of the device of "COMn"; empty where there is none. A link counts even where its target is missing.
  std::string PathOf(const std::string& portName) const;
  // The serial devices present: real UARTs by number, then USB adapters by the socket that they sit in, so
  // that the order does not depend on which was plugged in first.
  std::vector<std::string> Devices() const;
  // Path of a link that can be made there, its folder included; empty where the port has a device. One that
  // leads to a pseudo-terminal that has gone is what a killed program has left, and is no device.
  std::string PlaceForLine(const std::string& portName) const;

 private:
  std::string LinkOf(const std::string& portName) const;
};

}  // namespace host
