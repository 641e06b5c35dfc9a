// Child processes that are told what to do over pipes, and answer in lines of JSON.
#pragma once

#include "platform/Programs.h"

namespace host {

class PosixPrograms : public vc::Programs {
 public:
  std::unique_ptr<vc::RunningProgram> Start(const std::string& path,
                                            const std::vector<std::string>& arguments,
                                            std::string& reason) override;
};

}  // namespace host
