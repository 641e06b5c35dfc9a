// The object log: a keyed collection of the program's live objects and a serial counter.
#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace vc {

struct modDebug {
  std::map<std::int32_t, std::string> objects;  // serial number to name
  std::int32_t maxId = 0;

  // Returns the new serial number.
  std::int32_t RegisterObject(const std::string& name);
  // Returns the stored name; a number that is not there gives the empty string and is ignored.
  std::string UnregisterObject(std::int32_t serial);
  // One line per entry with the running count and the name, then the totals; each line ends with CR and LF.
  void DumpObjects(std::string& text) const;
};

}  // namespace vc
