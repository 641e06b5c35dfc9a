// A host on which no program can be started: for sessions that nobody looks after, such as fuzzed ones.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/Programs.h"

namespace support {

class NoPrograms : public vc::Programs {
 public:
  std::unique_ptr<vc::RunningProgram> Start(const std::string& path,
                                            const std::vector<std::string>& /*arguments*/,
                                            std::string& reason) override {
    reason = path + ": no program can be started here";
    return nullptr;
  }
};

}  // namespace support
