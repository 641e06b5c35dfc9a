// Two complete setups, A and B. The one that is heard is in the record; the other one is kept beside it, with
// the file that is open of it.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "model/RecordEdits.h"
#include "persist/SetupContext.h"
#include "platform/EventLoop.h"
#include "text/Wire.h"
#include "widgets/Forms.h"

namespace vc {

struct SetupPair {
  struct Around {
    RecordEdits& edits;
    SetupContext& setup;
    EventLoop& events;
    // Asked before a copy takes the place of changes that no file holds; named is the setup that has them.
    Wire<bool(const std::string& named)> mayOverwrite;
    // Which one is heard is another one than before.
    Wire<void()> shown;
  };
  explicit SetupPair(const Around& parts);
  SetupPair(const SetupPair&) = delete;
  SetupPair& operator=(const SetupPair&) = delete;

  enum Side { A, B };
  Side Heard() const { return heard; }
  Side Other() const { return heard == A ? B : A; }
  static std::string NameOf(Side side) { return side == A ? "A" : "B"; }

  // The other one is heard, as one step. Until it is first heard it is as this one is. While a hand holds a
  // slider this waits until it has let go; a second wish meanwhile takes the first one back.
  void Switch();
  // Switches where this one is not heard, or will not be.
  void Hear(Side side);
  // The one that is heard takes the place of the other one, as one step. Nothing where both are alike.
  void Copy();

  // The other one as the operator has it; null until it is first heard.
  const SystemSettings* OtherRecord() const { return other ? &other->setup.record : nullptr; }
  // The other one has changes that no file holds.
  bool OtherChanged() const;
  // The run begins with these two.
  void Begin(Side heardNow, const std::optional<SystemSettings>& kept);
  // No file is open of the other one, which counts as changed where it differs from this record.
  void JudgeOther(const SystemSettings& by);
  // Another number whenever the other one is another one.
  int Revision() const { return revision; }

 private:
  struct Kept {
    KeptSetup setup;
    std::optional<std::array<std::int16_t, 2>> formerLevels;  // see RecordEdits
  };
  using KeptPointer = std::shared_ptr<const Kept>;

  bool MayAct() const;
  bool HandHolds() const;
  void Await();
  void Cross();
  // What is heard now, to be kept.
  KeptPointer Present() const;
  bool Alike(const Kept& one) const;
  // The record has been brought to the other setup: what lies around it follows.
  void Turn(const KeptPointer& stays, const Kept& comes);

  Around around;
  std::unique_ptr<Timer> tmrHand;  // while a switch waits for it
  Side heard = A;
  KeptPointer other;
  SetupOfFile fileOfOther;
  int revision = 0;
};

}  // namespace vc
