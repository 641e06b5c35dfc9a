// Asks for the file that something goes into instead of onto paper.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "persist/FileTarget.h"

namespace vc {

// What is to be asked, and what is done with the answer.
struct PrintFileRequest {
  std::string title;  // of the window
  std::string name;   // what such files are called, before their number
  TargetType type;
  bool append;  // what the file holds is kept
  // Told of the path while the window is still there, which stays where it returns false.
  Wire<bool(const std::string& path)> take;
  std::function<void(const std::string& path)> taken{};  // the window has gone with an answer
};

struct PrintFile {
  explicit PrintFile(SetupContext& setupContext);

  Form form{"PrintFile", "Print To File"};
  FileTarget target;

  // From now on until the next one.
  void Take(const PrintFileRequest& asked);
  // Proposes a name that no file has; to append to, the file that was written last, where it has this type.
  void Fill();

 private:
  std::optional<PrintFileRequest> request;
  std::string last;  // what was written last in this run
};

}  // namespace vc
