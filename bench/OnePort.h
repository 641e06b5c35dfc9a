// The real port of one device, whatever name it is opened by.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "host/PosixSerialPorts.h"

namespace bench {

class OnePort : public vc::SerialPorts {
 public:
  explicit OnePort(std::string devicePath) : path(std::move(devicePath)) {}
  std::unique_ptr<vc::SerialPort> Open(const std::string& /*name*/, std::string& reason) override {
    return host::OpenSerialDevice(path, reason);
  }
  std::string PlaceForLine(const std::string& /*name*/) override { return {}; }

 private:
  std::string path;
};

}  // namespace bench
