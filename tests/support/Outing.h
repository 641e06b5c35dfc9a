// Runs of the program one after another in the same folder, with the same unit.
#pragma once

#include <gtest/gtest.h>

#include "SetupFixture.h"
#include "TestSession.h"
#include "WatchedUnit.h"
#include "model/FieldText.h"
#include "widgets/ControlText.h"

namespace support {

struct States : testing::Test {
  TempFolder folder;
  WatchedUnit unit;
  std::string last = folder.Path() + "/veltrana.set";

  std::string Path(const std::string& name) const { return folder.Path() + "/" + name; }
  void Learn(unsigned page, std::int32_t first) {
    std::vector<std::int32_t> coefficients(2000);
    for (std::size_t i = 0; i < coefficients.size(); ++i) {
      coefficients[i] = (i % 2 == 0 ? 1 : -1) * (first + static_cast<std::int32_t>(i));
    }
    unit.Now().Learn(page, coefficients);
  }
};

// A run of the program in the common folder.
struct Outing : TestSession {
  explicit Outing(States& states, bool plugged = true)
      : TestSession(states.unit.End(), states.folder.Path()) {
    ports.state.absent = !plugged;
  }
  vc::Session& Started() {
    session.Start();
    return session;
  }
  std::vector<std::string> Titles() const {
    std::vector<std::string> titles;
    for (const ShownBox& shown : desk.boxes) titles.push_back(shown.title);
    return titles;
  }
  void Edit(const std::string& field, const std::string& text, int i = 0, int j = 0) {
    std::string error;
    EXPECT_TRUE(session.edits.ByText(*vc::FindField(field), i, j, text, {field}, error)) << error;
  }
  // By names, as the operator does it.
  std::string Do(const std::string& control, const std::string& text = {}) {
    const vc::AnyControl* found = vc::FindControl(*session.forms.Top(), control);
    if (found == nullptr) return "no " + control + " on " + session.forms.Top()->name;
    return text.empty() ? vc::ClickControl(*found) : vc::TypeInto(*found, text, false);
  }
};

inline std::string SetupOf(vc::Session& session) { return vc::WriteSetup(session.settings, 0, {}); }

}  // namespace support
