// Setup files in a folder of their own, without a session around them.
#pragma once

#include <gtest/gtest.h>

#include "FaultyFiles.h"
#include "TempFolder.h"
#include "TestSession.h"
#include "Unheard.h"
#include "model/Settings.h"
#include "persist/modSettings.h"

namespace support {

struct SetupFixture : testing::Test {
  TempFolder folder;
  TestDesk desk{folder.Path()};
  FaultyFiles files;
  vc::SystemSettings settings;
  vc::modSettings setups{settings, files, desk, Unheard<vc::SetupHooks>()};
  std::string path = folder.Path() + "/One.nrv";

  SetupFixture() { vc::InitSettings(settings); }
  bool Load(const std::string& from, std::int16_t flag = vc::TakeConnection) {
    return setups.LoadSetupFile(from, flag);
  }
  std::size_t FilesInFolder() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder.Path()),
                                                  std::filesystem::directory_iterator()));
  }
};

}  // namespace support
