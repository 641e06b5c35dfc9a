// What the program itself says of its controls, for the manual: captions, ranges, choices, what a new setup
// has.
#pragma once

#include <string>
#include <vector>

#include "widgets/Form.h"

namespace manual {

// A control, an array of them, or options of which one stands: what has one line in the words.
struct ControlGroup {
  std::vector<vc::AnyControl> controls;

  // Without an index; of options that are no array that of the first one.
  const std::string& Name() const;
  bool Bears(const std::string& name) const;
};

// In reading order, without what needs no words: frames, labels, whole menus, and numbers beside a slider,
// which go with it.
std::vector<ControlGroup> GroupsOf(const vc::Form& form);

struct Facts {
  int count = 1;         // of an array
  std::string kind;      // "slider"
  std::string caption;   // without access keys, with the menu or the frame where it has one
  std::string around{};  // the caption of its frame, empty where it has none
  std::string range{};   // "10 to 60 dB"; empty where it has none
  std::vector<std::string> choices{};
  std::string factory{};  // in a new setup; empty where nothing can be said
  std::string key{};      // "Ctrl+Z"
};

Facts FactsOf(const ControlGroup& group);

// Of one control, without access key; with the menus around an entry, and that of its frame where it has
// none.
std::string CaptionOf(const vc::AnyControl& control);

}  // namespace manual
