// A file that has a path and lies on no disk.
#pragma once

#include <string>
#include <string_view>

#include <sys/mman.h>
#include <unistd.h>

#include "Promise.h"

namespace fuzz {

class MemoryDescriptor {
 public:
  explicit MemoryDescriptor(std::string_view content) : descriptor(memfd_create("fuzz", MFD_CLOEXEC)) {
    Require(write(descriptor, content.data(), content.size()) == static_cast<ssize_t>(content.size()),
            "there is memory for the file");
  }
  ~MemoryDescriptor() { close(descriptor); }
  MemoryDescriptor(const MemoryDescriptor&) = delete;
  MemoryDescriptor& operator=(const MemoryDescriptor&) = delete;

  std::string Path() const { return "/proc/self/fd/" + std::to_string(descriptor); }

 private:
  int descriptor;
};

}  // namespace fuzz
