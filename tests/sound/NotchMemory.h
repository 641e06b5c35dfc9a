// A memory file of a unit that the program has set.
#pragma once

#include <fstream>
#include <string>
#include <utility>

#include "SoundRun.h"
#include "model/Kinds.h"
#include "unit/MemoryFile.h"

namespace support {

// Nothing but a notch, 300 Hz wide, in memory 2.
inline void WriteNotchMemory(const std::string& path, const std::string& hertz) {
  SoundRun run;
  run.Put(1, vc::FilterKind::Notch);
  for (const auto& [field, value] :
       {std::pair<const char*, std::string>{"notchFreq", hertz}, {"notchWidth", "300"}, {"notchAtten", "50"}})
    run.Edit(field, value, 1);
  run.Settle();
  run.session.panels.OpenMemory(2);
  run.test.desk.answers = {vc::Answer::Yes};
  run.Click("btnOK");
  std::ofstream(path) << unit::MemoryFileText(run.unit.Now().memories);
}

}  // namespace support
