// Writes the factory setup, as the program itself would store it: the defaults, protected.
#include <iostream>

#include "host/PosixFiles.h"
#include "model/Settings.h"
#include "persist/SafeFile.h"
#include "persist/SetupText.h"

int main(int count, char** words) {
  if (count != 2) {
    std::cerr << "usage: make_factory FILE\n";
    return 2;
  }
  vc::SystemSettings settings;
  vc::InitSettings(settings);
  settings.setupDescription = "Factory defaults";
  constexpr std::int16_t isProtected = 1;
  host::PosixFiles files;
  if (vc::WriteWholeFile(files, words[1], vc::WriteSetup(settings, isProtected, {}))) return 0;
  std::cerr << words[1] << " cannot be written\n";
  return 1;
}
