// A session whose unit follows a script, with the link open where a test wants it so.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ScriptedUnit.h"
#include "TestSession.h"
#include "model/Settings.h"

namespace support {

struct LinkFixture : testing::Test {
  ScriptedUnit unit;
  TestSession test{unit.End()};
  vc::Session& session = test.session;
  vc::modDeviceComm& device = session.device;

  LinkFixture() { vc::InitSettings(session.settings); }

  // Connects to a unit that answers everything, then forgets what was sent and said.
  void OpenLink(bool fullConnect = false) {
    unit.always = GoodReply;
    ASSERT_TRUE(device.InitComPort(fullConnect));
    unit.always = nullptr;
    unit.sent.clear();
    test.desk.boxes.clear();
  }

  double SecondsFor(const std::function<void()>& action) {
    const double start = test.clock.Seconds();
    action();
    return test.clock.Seconds() - start;
  }

  const std::string& State() const { return session.periodic.connectionState; }

  // The one box that was shown, as "code|title|text".
  std::string OnlyBox() const {
    if (test.desk.boxes.size() != 1) return std::to_string(test.desk.boxes.size()) + " boxes";
    const ShownBox& box = test.desk.boxes.front();
    return std::to_string(box.code) + "|" + box.title + "|" + box.text;
  }
};

}  // namespace support
