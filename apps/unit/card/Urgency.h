// What has to be done in time.
#pragma once

namespace unit::sound {

// While there is one, the thread that made it comes before whatever has no time to keep, where the system
// lets it: to root, and to users with a limit "rtprio" as members of the group "audio" commonly have. Threads
// and processes that it begins are ordinary ones.
class Urgency {
 public:
  Urgency();
  ~Urgency();
  Urgency(const Urgency&) = delete;
  Urgency& operator=(const Urgency&) = delete;

 private:
  static thread_local int held;  // by this thread, whose property the priority is
};

}  // namespace unit::sound
