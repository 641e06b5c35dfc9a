// The way on which a second program hands the file that it was started with to the one that runs: a named
// pipe in the folder where both keep their files. It has a reader only while that one lives, so that a
// program that died leaves nothing behind that anybody could wait for.
#pragma once

#include <string>
#include <vector>

namespace host {

class Handover {
 public:
  static constexpr const char* PipeName = "veltrana.open";
  explicit Handover(const std::string& folder) : pipe(folder + "/" + PipeName) {}
  ~Handover();
  Handover(const Handover&) = delete;
  Handover& operator=(const Handover&) = delete;

  // Hands a path over, at once. False where no program listens, or the pipe is full or none.
  bool Give(const std::string& path) const;
  // From now on this program takes what is handed over. False where the folder has no room for a pipe.
  bool Listen();
  // Readable where something waits; negative where this program does not listen.
  int Descriptor() const { return descriptor; }
  // What has been handed over since the last call.
  std::vector<std::string> Take();

 private:
  std::string pipe;
  int descriptor = -1;
  std::string begun;  // of a path whose end has not come yet
};

}  // namespace host
