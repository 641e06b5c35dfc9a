#include "unit/clean/Cleaning.h"

#include <system_error>
#include <utility>

#include "unit/clean/Job.h"

namespace unit::clean {

Cleaning::Cleaning(CleaningWish wanted) : wish(std::move(wanted)) {}

Cleaning::~Cleaning() {
  Cancel();
  Wait();
}

void Cleaning::Start() {
  begun = std::chrono::steady_clock::now();
  try {
    thread = std::thread([this] { Run(); });
  } catch (const std::system_error& fault) {
    outcome.error = wish.in + ": can't be cleaned now: " + fault.what();
    state = CleaningState::Failed;
  }
}

void Cleaning::Cancel() { cancelled = true; }

void Cleaning::Wait() {
  if (thread.joinable()) thread.join();
}

CleaningProgress Cleaning::Progress() const {
  const double part = done;
  if (part <= 0) return {};
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begun;
  return {.done = part, .secondsLeft = taken.count() * (1 - part) / part};
}

void Cleaning::Run() {
  outcome = Clean(wish, cancelled, done);
  CleaningState end = CleaningState::Cancelled;
  if (!outcome.error.empty()) end = CleaningState::Failed;
  if (!outcome.report.empty()) end = CleaningState::Done;
  state.store(end, std::memory_order_release);
}

}  // namespace unit::clean
