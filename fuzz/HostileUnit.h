// The far end of a line of which every answer is in the fuzzer's input: the right one, one with damage,
// whatever bytes or none; at once, late or in drops. It holds the host to what it must send: whole frames.
#pragma once

#include <string>

#include "Input.h"
#include "ScriptedUnit.h"
#include "VirtualLine.h"

namespace fuzz {

class HostileUnit {
 public:
  // Where the answers are used up it gives the right ones.
  explicit HostileUnit(Input answers);

  support::FarEnd End();

  // Set once the port is there: an answer may take the device away, or spoil the line.
  support::LineState* line = nullptr;
  std::size_t frames = 0;  // that came, of which nobody has asked yet
  std::string said;        // what the host was given since somebody cleared it

 private:
  support::ScriptedReply Answer(const support::Bytes& frame);
  std::string Damaged(std::string reply);
  std::string RightAnswer(const support::Bytes& frame);

  Input script;
  support::ScriptedUnit unit;
};

}  // namespace fuzz
