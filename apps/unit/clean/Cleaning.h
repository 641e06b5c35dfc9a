// Cleaning a recording: through an engine of its own, as fast as that goes, into a file.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "unit/clean/CleaningWish.h"

namespace unit::clean {

enum class CleaningState : std::uint8_t { Running, Done, Cancelled, Failed };

struct CleaningProgress {
  double done = 0;                    // 0..1
  std::optional<double> secondsLeft;  // by the speed so far; nothing before there is one
};

// One cleaning, in a thread of its own. All calls come from one thread.
class Cleaning {
 public:
  explicit Cleaning(CleaningWish wanted);
  Cleaning(const Cleaning&) = delete;
  Cleaning& operator=(const Cleaning&) = delete;
  // Cancels it where it still runs.
  ~Cleaning();

  // Once. What can be said at once of a wish that makes no sense comes as a failure, too.
  void Start();
  // Ends it soon, without a file; nothing happens where it has come to its end before.
  void Cancel();
  bool CancelAsked() const { return cancelled; }
  void Wait();

  bool Finished() const { return State() != CleaningState::Running; }
  CleaningState State() const { return state.load(std::memory_order_acquire); }
  CleaningProgress Progress() const;

  // What follows holds once it is finished.
  // Why it has failed, in words; empty where it has not.
  const std::string& Error() const { return outcome.error; }
  // It has failed for what is wrong with the recording, and a lenient wish would take that as it is.
  bool Flawed() const { return outcome.flawed; }
  // Lines that tell what was done; none where there is no file.
  const std::vector<std::string>& Report() const { return outcome.report; }

 private:
  void Run();

  CleaningWish wish;
  std::thread thread;
  std::atomic<bool> cancelled = false;
  std::atomic<double> done = 0;
  std::atomic<CleaningState> state = CleaningState::Running;
  std::chrono::steady_clock::time_point begun;
  Outcome outcome;
};

}  // namespace unit::clean
