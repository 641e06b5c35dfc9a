// A started session with a watched unit, edited as the console edits it: by name.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Marked.h"
#include "TestSession.h"
#include "WatchedUnit.h"
#include "model/Fields.h"

namespace support {

struct DownloadRun {
  WatchedUnit unit;
  TestSession test{unit.End()};
  vc::Session& session = test.session;
  vc::SystemSettings& record = session.settings;
  std::vector<std::string> edits;

  explicit DownloadRun(const unit::Options& options = {}) {
    unit.PlugIn(options);
    session.Start();
  }

  void Edit(const std::string& name, const std::string& text, int i = 0, int j = 0) {
    std::string error;
    edits.push_back(name + "[" + std::to_string(i) + "][" + std::to_string(j) + "] = " + text);
    EXPECT_TRUE(session.edits.ByText(*vc::FindField(name), i, j, text, {name}, error))
        << edits.back() << ": " << error;
  }

  // Long enough for any change to have gone out.
  void Settle() { test.loop.RunFor(700); }

  void Reconnect() {
    session.master.menus.mnuDisconnect.Click();
    session.master.menus.mnuConnect.Click();
  }

  bool Connected() const {
    return session.device.comm.CommPortOpen && session.periodic.connectionState == vc::StateConnected;
  }

  const unit::Stage& Stage(unsigned position) const { return unit.Now().HeldStages().At(position); }

  // The frames since the last call but for the polling, as "85/32767" for a command, "#0" for a packet.
  std::string Sent() {
    std::string text;
    for (const unit::Frame& frame : unit.frames) {
      const bool packet = frame.kind == unit::Frame::Kind::Packet;
      if (IsPoll(frame)) continue;
      text += packet ? "#" : "";
      text += std::to_string(frame.number) + (packet ? " " : "/" + std::to_string(frame.argument) + " ");
    }
    unit.frames.clear();
    return text;
  }

  static bool IsPoll(const unit::Frame& frame) {
    constexpr std::uint8_t mainStatus = 232, equalizerStatus = 234, firstSpectrum = 161;
    return frame.kind == unit::Frame::Kind::Command &&
           (frame.number == mainStatus || frame.number == equalizerStatus || frame.number == firstSpectrum);
  }
};

// Every test its own session.
struct DownloadFixture : testing::Test, DownloadRun {};

}  // namespace support
