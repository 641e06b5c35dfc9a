// A process that works for this one on what may hang or crash.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace unit::sound {

using Records = std::vector<std::string>;

// The attendant's end of the conversation.
class Employer {
 public:
  explicit Employer(int end) : descriptor(end) {}

  // No text holds a zero byte.
  void Tell(const Records& records) const;
  // Waits; false where the employer has let go, or is gone.
  bool Stays(std::chrono::milliseconds wait) const;

 private:
  int descriptor;
};

// It begins as a copy of this process, with nothing open but the conversation: no line, no output. It ends
// when it is let go and, in whatever state, with the thread that began it.
class Attendant {
 public:
  using Work = std::function<void(const Employer&)>;

  // Nothing where the system has no room for a process.
  static std::optional<Attendant> Begin(const Work& work);
  Attendant(Attendant&& other) noexcept;
  Attendant& operator=(Attendant&&) = delete;
  // Lets it go, and ends it where it has not ended in a fifth of a second.
  ~Attendant();

  // What it tells at once. Nothing where it has not told in time, or has ended.
  std::optional<Records> Hear(std::chrono::milliseconds wait);
  // It works still; nobody lets it end without asking for this.
  bool Alive() const;

 private:
  Attendant(pid_t child, int end) : id(child), descriptor(end) {}
  pid_t id;
  int descriptor;
};

}  // namespace unit::sound
