// Real serial ports: UARTs, USB adapters and pseudo-terminals of a POSIX system.
#pragma once

#include <memory>
#include <string>

#include "host/PortMap.h"
#include "platform/SerialPort.h"

namespace host {

class PosixSerialPorts : public vc::SerialPorts {
 public:
  explicit PosixSerialPorts(PortMap portMap) : map(std::move(portMap)) {}
  std::unique_ptr<vc::SerialPort> Open(const std::string& name, std::string& reason) override;
  std::string PlaceForLine(const std::string& name) override { return map.PlaceForLine(name); }

 private:
  PortMap map;
};

// Opens a device by its path; reason says in plain words why it failed.
std::unique_ptr<vc::SerialPort> OpenSerialDevice(const std::string& path, std::string& reason);

}  // namespace host
