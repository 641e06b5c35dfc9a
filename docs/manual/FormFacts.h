// A form as its page in the manual has it, taken while the form is open.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "manual/Facts.h"

namespace manual {

class OpenForms;

struct FormFacts {
  struct Row {
    std::vector<std::string> names;  // of the group's controls, without indices
    Facts facts;
  };
  std::string name, caption;
  std::vector<Row> rows{};
  std::vector<std::string> keys{};  // "Alt+A", of the whole form
  std::map<std::string, std::string>
      captions{};  // of all controls, by name, and with the index where they have one
};

// Every form in a new setup; what has another range at the widest bandwidth says so.
std::vector<FormFacts> FactsOfAll(OpenForms& forms);

}  // namespace manual
