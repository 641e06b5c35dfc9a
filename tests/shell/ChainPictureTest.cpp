// The picture of the whole chain: what it shows in each configuration, where a click leads, and the spectra
// behind it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PanelRun.h"
#include "analysis/SpectrumTrace.h"
#include "model/Kinds.h"
#include "model/SignalCode.h"

namespace vc {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

struct WholeChain : testing::Test, support::PanelRun {
  Plot& plot = session.master.chain.pltWholeChain;

  WholeChain() {
    for (const char* field : {"ihpfEnabled", "ohpfEnabled"}) Edit(field, "0");
    for (int stage = 1; stage <= FilterStages; ++stage) Edit("filterActive", "0", stage);
    for (const int side : {1, 2}) {
      Edit("eqActive", "0", side);
      Edit("broadbandActive", "0", side);
    }
    Edit("procEnabled", "1");
  }
  void PutNotch(int stage, const char* hertz) {
    Edit("filterType", std::to_string(FilterKind::Notch), stage);
    Edit("notchWidth", "400", stage);
    Edit("notchFreq", hertz, stage);
    Edit("notchAtten", "40", stage);
    Edit("filterActive", "1", stage);
  }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const PlotTrace& trace : plot.Traces()) names.push_back(trace.name);
    return names;
  }
  // The panel that a click opens; it is closed again. Nothing where it leads nowhere.
  std::string Opened(double hertz, double level) const {
    plot.pointer({PointerAction::Press, hertz, level});
    plot.pointer({PointerAction::Release, hertz, level});
    return Closed();
  }
  std::string Closed() const {
    if (&Top() == &session.master.form) return {};
    const std::string title = Top().Caption();
    session.forms.Close(Top());
    return title;
  }
};

TEST_F(WholeChain, EachConfigurationHasItsCurves) {
  PutNotch(1, "1000");
  EXPECT_THAT(Names(), ElementsAre("Response"));
  EXPECT_NEAR(*plot.LevelAt(plot.Traces()[0], 1000), -40, 0.2);
  EXPECT_NEAR(*plot.LevelAt(plot.Traces()[0], 1500), 0, 0.2);
  Edit("configMode", "1");
  EXPECT_THAT(Names(), ElementsAre("Left and Right"));
  Edit("configMode", "2");
  PutNotch(1, "1000");
  PutNotch(PairStages + 1, "2000");
  EXPECT_THAT(Names(), ElementsAre("Left", "Right"));
  EXPECT_NEAR(*plot.LevelAt(plot.Traces()[1], 2000), -40, 0.2);
  EXPECT_NEAR(*plot.LevelAt(plot.Traces()[1], 1000), 0, 0.2);
  Edit("procEnabled", "0");
  EXPECT_NEAR(*plot.LevelAt(plot.Traces()[1], 2000), 0, 0.01);
}

TEST_F(WholeChain, AClickOpensTheFilterThatDoesMostThere) {
  Edit("configMode", "2");
  PutNotch(1, "1000");
  PutNotch(PairStages + 1, "1000");
  Edit("notchAtten", "20", PairStages + 1);
  Edit("ihpfEnabled", "1");
  EXPECT_THAT(Opened(1000, -39), HasSubstr("(Left Filter 1)"));
  EXPECT_THAT(Opened(1000, -21), HasSubstr("(Right Filter 1)"));
  EXPECT_EQ(Opened(30, -50), "Input HPF Config");
  EXPECT_EQ(Opened(1500, 0), "");
  EXPECT_EQ(Opened(1000, 30), "");  // beyond the frame
  // A button that is let go where it was not pressed is no click.
  plot.pointer({PointerAction::Release, 1000, -39});
  EXPECT_EQ(Closed(), "");
  // By the keyboard: the one that does most at the marker.
  EXPECT_FALSE(plot.keyPressed("Enter"));
  plot.SetCursor(1000);
  EXPECT_TRUE(plot.keyPressed("Enter"));
  EXPECT_THAT(Closed(), HasSubstr("(Left Filter 1)"));
  EXPECT_FALSE(plot.keyPressed("Left"));
}

TEST_F(WholeChain, WhatIsSaidNamesTheMakerAndWhatIsLeftOut) {
  PutNotch(1, "1000");
  Edit("filterType", std::to_string(FilterKind::OneChAdaptive), 2);
  Edit("filterActive", "1", 2);
  Edit("numFilters", "3");
  plot.SetCursor({});
  EXPECT_THAT(plot.Reading(), HasSubstr("greatest attenuation -40.0 dB at 1000 Hz, by Filter 1, Notch"));
  EXPECT_THAT(plot.Reading(), HasSubstr("Not shown, as they follow the sound: Filter 2, 1-Ch"));
  plot.SetCursor(1000);
  EXPECT_EQ(plot.CursorText(), "1000 Hz: -40.0 dB (Filter 1, Notch)");
  plot.SetCursor(2000);
  EXPECT_THAT(plot.CursorText(), Not(HasSubstr("Filter")));
}

TEST_F(WholeChain, SpectraStandBehindItWhileTheyArePolled) {
  Edit("specDisplayMode", "2");
  Edit("yellowSignal", std::to_string(signal::LeftIn));
  Edit("blueSignal", std::to_string(signal::LeftLine));
  Edit("yellowGain", "10");
  Settle();
  EXPECT_THAT(Names(), ElementsAre("Response"));
  session.displays.Show(display::Spectrum);
  EXPECT_THAT(Names(), ElementsAre("Response"));  // nothing has come yet
  test.loop.RunFor(2000);
  ASSERT_THAT(Names(), ElementsAre("Response", "Input", "Output"));
  const PlotTrace& input = plot.Traces()[1];
  ASSERT_EQ(input.values.size(), static_cast<std::size_t>(TraceLines));
  EXPECT_NEAR(input.places[1], record.sampleRate / 1024 * 2, 1e-3);
  const auto raw = ScaledLine(session.spectrumReader.RawTrace1[7]);
  EXPECT_FLOAT_EQ(input.values[7], static_cast<float>(LevelOf(raw)) - 10);  // as it would be without the gain
  EXPECT_TRUE(input.filled);
  // A signal within the chain is neither input nor output; a trace that is not polled is none.
  Edit("blueSignal", std::to_string(signal::FirstFilter));
  Settle();
  EXPECT_THAT(Names(), ElementsAre("Response", "Input"));
  Edit("specDisplayMode", "0");
  Settle();
  EXPECT_THAT(Names(), ElementsAre("Response"));
  Edit("specDisplayMode", "1");
  test.loop.RunFor(2000);
  EXPECT_THAT(Names(), ElementsAre("Response", "Input"));
  // With the display they go, and come anew with the next one.
  session.displays.Show(display::None);
  test.loop.RunFor(200);
  EXPECT_THAT(Names(), ElementsAre("Response"));
  session.displays.Show(display::Spectrum);
  test.loop.RunFor(2000);
  EXPECT_THAT(Names(), ElementsAre("Response", "Input"));
  session.device.DisconnectZorq(true);
  EXPECT_THAT(Names(), ElementsAre("Response"));
}

}  // namespace
}  // namespace vc
