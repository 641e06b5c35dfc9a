// What has to be done in time.
#include "unit/card/Urgency.h"

#include <sched.h>

namespace unit::sound {
namespace {

constexpr int Priority = 5;  // below those of sound servers and their clients

void Set(int policy, int priority) {
  const sched_param wanted{.sched_priority = priority};
  sched_setscheduler(0, policy | SCHED_RESET_ON_FORK, &wanted);
}

int Policy() { return sched_getscheduler(0) & ~SCHED_RESET_ON_FORK; }

}  // namespace

thread_local int Urgency::held = 0;

// A policy that somebody else has given it stays.
Urgency::Urgency() {
  if (++held == 1 && Policy() == SCHED_OTHER) Set(SCHED_FIFO, Priority);
}

Urgency::~Urgency() {
  if (--held == 0 && Policy() == SCHED_FIFO) Set(SCHED_OTHER, 0);
}

}  // namespace unit::sound
