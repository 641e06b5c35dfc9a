// A started session in virtual time, worked by commands of the console.
#pragma once

#include <sstream>
#include <string>

#include "NoPrograms.h"
#include "RecordingPrinters.h"
#include "ScriptedUnit.h"
#include "TempFolder.h"
#include "VirtualLine.h"
#include "console/Console.h"
#include "host/CairoPictures.h"
#include "host/PosixFiles.h"

namespace support {

struct ConsoleRun {
  TempFolder folder;
  VirtualClock clock;
  host::TimerLoop loop{clock};
  std::ostringstream out;
  console::ConsoleDesk desk{out, clock, {PROGRAM_FOLDER, folder.Path()}};
  ScriptedUnit unit;
  VirtualPorts ports{clock, unit.End()};
  host::PosixFiles files;
  RecordingPrinters printers;
  host::CairoPictures pictures;
  support::NoPrograms programs;
  vc::Session session{{clock, loop, desk, ports, files, printers, pictures, programs}};
  console::Console face{session, desk, loop, out};

  ConsoleRun() {
    unit.always = GoodReply;
    session.Start();
    out.str("");
  }
  // What is answered.
  std::string Say(const std::string& line) {
    out.str("");
    face.Execute(line);
    return out.str();
  }
};

}  // namespace support
