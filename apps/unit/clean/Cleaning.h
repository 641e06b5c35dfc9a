// Cleaning a recording: through an engine of its own, as fast as that goes, into a file.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "unit/Setting.h"

namespace unit::clean {

// What adaptive filters do while a recording is cleaned.
enum class Learning : std::uint8_t {
  FromBeginning,  // begin with nothing learned
  Kept            // keep what they have learned, and learn nothing more
};

struct CleaningWish {
  std::string in, out;       // files
  double from = 0;           // second of the recording at which the part begins
  std::optional<double> to;  // and ends; nothing is the recording's end
  Learning adaptive = Learning::FromBeginning;
  std::string setup;     // name of what the unit was set by, for the report alone
  bool lenient = false;  // what is wrong with the recording is told, and it is cleaned as it is
  Setting setting;       // of the unit, with what its filters have learned (Unit::Present)
};

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
  void Wait();

  bool Finished() const { return State() != CleaningState::Running; }
  CleaningState State() const { return state.load(std::memory_order_acquire); }
  CleaningProgress Progress() const;

  // What follows holds once it is finished.
  // Why it has failed, in words; empty where it has not.
  const std::string& Error() const { return error; }
  // Lines that tell what was done; none where there is no file.
  const std::vector<std::string>& Report() const { return report; }

 private:
  void Run();

  CleaningWish wish;
  std::thread thread;
  std::atomic<bool> cancelled = false;
  std::atomic<double> done = 0;
  std::atomic<CleaningState> state = CleaningState::Running;
  std::chrono::steady_clock::time_point begun;
  std::string error;
  std::vector<std::string> report;
};

}  // namespace unit::clean
