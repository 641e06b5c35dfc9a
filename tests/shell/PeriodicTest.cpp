// What the tick asks for in each of its modes, tick by tick.
#include <gtest/gtest.h>

#include "LinkFixture.h"

namespace vc {
namespace {

struct Periodic : support::LinkFixture {
  PeriodicService& periodic = session.periodic;
  std::string asked;

  // Of each of the next ticks what it asked the unit ("M" main, "E" equalizer) or a reader for, and a "|"
  // where the bars moved.
  std::string Ticks(int count) {
    for (asked.clear(); count > 0; --count) {
      session.master.chain.lbOutputLeft.SetValue(99);
      test.loop.RunFor(50);
      for (const auto& frame : unit.sent) asked += frame.bytes[3] == 0xE8 ? "M" : "E";
      unit.sent.clear();
      asked += session.master.chain.lbOutputLeft.Value() == 99 ? "." : "|";
    }
    return asked;
  }
};

TEST_F(Periodic, EveryModeAsksForItsOwn) {
  periodic.calls.requestCoefBlock = [this] { asked += "C"; };
  periodic.calls.requestSpectrum = [this] { asked += "S"; };
  periodic.calls.requestSif = [this] { asked += std::to_string(periodic.sifStep); };
  OpenLink(true);
  unit.always = support::GoodReply;
  EXPECT_EQ(Ticks(4), "M||M||");
  periodic.eqLevelsWanted = true;
  const std::pair<std::int16_t, const char*> rows[] = {{poll::MainLevels, "M||E..M||"},
                                                       {poll::Coefficients, "C|E||C|E||"},
                                                       {poll::Spectrum, "S|E||S|E||"},
                                                       {poll::Sif, "5|2|7|4|1|6|3|0|5|"}};
  for (const auto& [mode, ticks] : rows) {
    periodic.pollMode = mode;
    periodic.pollEqTurn = false;
    device.DrainPendingReply();
    EXPECT_EQ(Ticks(mode == poll::Sif ? 9 : 6), ticks);
  }
  EXPECT_FALSE(periodic.pollEqTurn);  // the last mode takes no turns
  periodic.pollMode = poll::MainLevels;
  periodic.pollEqTurn = true;
  EXPECT_EQ(Ticks(1), "E.");
  device.DisconnectZorq(true);
  Ticks(1);
  EXPECT_EQ(session.master.chain.inputs[0].bar.Reading(), "no unit");
  const Label& oversize = session.master.lblOversizeFilters(0);
  EXPECT_FALSE(oversize.core.Visible());
  session.settings.extraStages[6] = 1;
  Ticks(2);
  EXPECT_TRUE(oversize.core.Visible());
  // Who stops the timer within a tick finds it stopped behind it.
  periodic.calls.requestSpectrum = [this] { periodic.EnableMainTimer(false); };
  periodic.pollMode = poll::Spectrum;
  Ticks(2);
  EXPECT_FALSE(periodic.tmrBargraph->Enabled());
}

}  // namespace
}  // namespace vc
