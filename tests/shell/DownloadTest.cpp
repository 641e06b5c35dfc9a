// Whole sessions that bring the simulated unit up to the record, in virtual time: when a change goes out,
// what it may touch, and what a link that is lost on the way leaves behind.
#include <utility>

#include "DownloadFixture.h"
#include "model/Settings.h"

namespace vc {
namespace {

using support::WatchedUnit;
using unit::Frame;

struct Downloads : support::DownloadFixture {
  // What each of the next ticks does: "s" sends, "p" polls, "." neither.
  std::string Ticks(int count) {
    constexpr int tickMilliseconds = 50;
    std::string text;
    for (int i = 0; i < count; ++i) {
      unit.frames.clear();
      test.loop.RunFor(tickMilliseconds);
      if (unit.frames.empty()) {
        text += '.';
      } else {
        text += IsPoll(unit.frames.front()) ? 'p' : 's';
      }
    }
    return text;
  }

  void EditCountingDown(std::int16_t ticks) {
    Edit("ihpfCutoff", std::to_string(200 + ticks));
    record.settingsChanged = ticks;
  }

  void BuildHiRes(int stage) {
    Edit("filterType", "12", stage);
    Edit("hiResCurve", "-20", stage, 100);
    Settle();
    Sent();
  }

  bool HasTable(unsigned position) const { return !Stage(position).coefficients.empty(); }
};

TEST_F(Downloads, OneTickSendsAndTheNextFourRest) {
  Edit("ihpfCutoff", "300");
  EXPECT_EQ(Ticks(8), "s....p.p");
  Edit("ihpfCutoff", "310");
  EXPECT_EQ(Ticks(2), "s.");
  Edit("ihpfCutoff", "320");  // 100 ms after the other: it goes out too, and the polling waits for it
  EXPECT_EQ(Ticks(6), "s....p");
  EditCountingDown(10);
  EXPECT_EQ(Ticks(11), ".....s....p");
  EditCountingDown(7);
  EXPECT_EQ(Ticks(8), "..s....p");
  Edit("ihpfCutoff", "444");
  Edit("ihpfCutoff", "207");       // back before the tick: nothing to send,
  EXPECT_EQ(Ticks(7), "......p");  // and the sixth tick reads the reply that was outstanding
  EditCountingDown(10);
  session.config.ConfigureStages(true);
  EXPECT_EQ(record.settingsChanged, 0);
  EXPECT_EQ(Ticks(1), "p");
}

TEST_F(Downloads, PendingFitRunsOnlyWhereTheLayoutChanges) {
  Settle();
  Sent();
  Edit("ch1Taps", "1000", 1);
  EXPECT_NE(record.fitPending, 0);
  Settle();
  EXPECT_EQ(record.fitPending, 0);
  EXPECT_EQ(Sent().find(" 0/"), std::string::npos);  // no bandwidth sequence: nothing was forgotten

  record.ch1Taps[1] = 2048;  // as a panel may ask, beyond the limit of one DSP stage
  record.fitPending = -1;
  support::MarkEdited(record);
  Settle();
  EXPECT_NE(Sent().find(" 0/"), std::string::npos);
  EXPECT_EQ(record.maxTaps[1], 2048);
  EXPECT_EQ(unit.Now().HeldRegisters().values[87], 1 << 13);

  Edit("numFilters", "6");
  Settle();
  EXPECT_EQ(record.numFilters, 5);  // as many as are offered
  EXPECT_TRUE(test.desk.boxes.empty());
  Edit("filterType", "2", 1);  // gives back what it had borrowed
  EXPECT_EQ(unit.Now().HeldRegisters().values[87], 0);

  Edit("configMode", "2");  // so does the right partner, where it alone has asked
  record.ch1Taps[4] = 2048;
  session.config.ConfigureStages(true);
  EXPECT_EQ(unit.Now().HeldRegisters().values[87], 1 << 13 | 1 << 10);
  Edit("filterType", "2", 4);
  EXPECT_EQ(unit.Now().HeldRegisters().values[87], 0);
}

TEST_F(Downloads, RunningTableStaysUntilItIsClearedOrDestroyed) {
  for (const bool destroyed : {false, true}) {
    BuildHiRes(1);
    const auto table = Stage(1).coefficients;
    Edit("limiterThreshold", destroyed ? "1" : "2");
    Edit("eqBandGain", destroyed ? "7" : "9", 9, 3);
    Edit("lpfCutoff", "500", 1);  // of a kind that the stage does not have
    Settle();
    EXPECT_EQ(Sent(), destroyed ? "8/7336 #0 #1 192/32776 " : "8/5193 #0 #1 192/32776 ");
    EXPECT_EQ(Stage(1).coefficients, table);
    if (destroyed) record.filterBuilt[1] = 0;
    record.filterDirty[1] = -1;
    support::MarkEdited(record);
    Settle();
    EXPECT_EQ(Sent().substr(0, 25), "85/32767 86/32767 89/128 ");
    EXPECT_FALSE(HasTable(1));
  }
}

TEST_F(Downloads, AnotherNumberOfFiltersSendsTheDifferenceAndCutsNothing) {
  Edit("numFilters", "2");
  Settle();
  Edit("ch1Taps", "1024", 2);
  record.ch1Taps[2] = 3000;  // as a panel may ask, beyond the limit of one DSP stage
  record.fitPending = -1;
  support::MarkEdited(record);
  Settle();
  const std::string held = unit.Dump();
  for (const char* number : {"1", "2"}) {
    Sent();
    Edit("numFilters", number);
    Settle();
    const std::string sent = Sent();
    EXPECT_NE(sent.find(" 89/64 "), sent.npos) << sent;  // of all stages the second alone begins anew
    EXPECT_EQ(sent.find(" 0/"), sent.npos) << sent;
    EXPECT_EQ(record.ch1Taps[2], 3000);
    Edit("ch1Taps", "900", 1);  // needs no more stages either
    Edit("ihpfCutoff", "300");
    session.history.Undo();
    session.history.Undo();
    Settle();
    EXPECT_EQ(record.ch1Taps[2], 3000);
  }
  Settle();
  EXPECT_EQ(unit.Dump(), held);
}

TEST_F(Downloads, AnalyzerTapsAndSpansKeepToTheirRegisters) {
  Edit("configMode", "2");
  Edit("broadbandActive", "1", 2);
  Edit("yellowSignal", "12");
  Edit("blueSignal", "13");
  Settle();
  const auto word = [this](std::size_t code) { return unit.Now().HeldRegisters().values[code].value_or(0); };
  EXPECT_EQ(word(40) & 31, 0);  // the left broadband stage is out: the input itself
  EXPECT_EQ(word(41) & 31, 25);
  Edit("configMode", "0");
  record.numFilters = 5;
  record.ch1Taps[5] = 2048;
  session.config.ConfigureStages(true);
  Edit("ch1PredSpan", "8191", 5);
  Settle();
  EXPECT_EQ(word(47), 4095);
}

// Whether the analyzer runs is compared; that it begins anew goes out whenever it is asked for, and once.
struct AnalyzerRuns : Downloads {
  // The arguments of register 150 since the last call, each with a blank behind it.
  std::string Runs() {
    constexpr std::uint8_t analyzerRun = 150;
    std::string arguments;
    for (const Frame& frame : unit.frames) {
      if (frame.kind != Frame::Kind::Packet && frame.number == analyzerRun) {
        arguments += std::to_string(frame.argument) + " ";
      }
    }
    unit.frames.clear();
    return arguments;
  }
  std::string RunsOf(const std::function<void()>& action) {
    Runs();
    action();
    Settle();
    return Runs();
  }
  void Clear() { session.edits.ClearAnalyzer(); }
};

TEST_F(AnalyzerRuns, AreComparedAndClearsAlwaysGoOut) {
  for (const std::string run : {"1", "0"}) {
    const std::string kept = run == "1" ? "0 " : "32896 ", cleared = run == "1" ? "16448 " : "49344 ";
    EXPECT_EQ(RunsOf([&] { Edit("specRun", run); }), run == "1" ? "" : kept);
    for (int time = 0; time < 2; ++time) EXPECT_EQ(RunsOf([&] { Clear(); }), cleared);
    EXPECT_EQ(RunsOf([&] { Edit("specAverages", run == "1" ? "3" : "4"); }), "");
    EXPECT_EQ(RunsOf([&] { Reconnect(); }), kept);
    EXPECT_EQ(RunsOf([&] {
                session.master.menus.mnuDisconnect.Click();
                Clear();
                Clear();
                session.master.menus.mnuConnect.Click();
              }),
              cleared);
  }
  EXPECT_EQ(RunsOf([&] {
              Clear();
              Edit("specRun", "1");
            }),
            "16448 ");
}

TEST_F(AnalyzerRuns, AClearThatIsAskedForWhileSettingsGoOutIsNeitherLostNorSentTwice) {
  Reconnect();
  int total = 0;
  std::string expected;
  for (int at = 0; at == 0 || at <= total; ++at) {
    session.download.progress = [&](int done, int all) {
      if (done == 0) total = all;
      if (done == at) Clear();
      if (done == all) session.download.progress = [](int, int) {};
    };
    EXPECT_EQ(RunsOf([&] { session.config.ConfigureStages(true); }), "0 16448 ") << at;
  }
  EXPECT_GT(total, 40);
}

// The line is lost at a frame of the full download, which has been asked to clear.
TEST_F(AnalyzerRuns, AClearOutlivesAFailureAndIsNotRepeatedAfterOne) {
  Reconnect();
  Sent();
  Reconnect();
  std::vector<Frame> frames;
  std::ranges::copy_if(unit.frames, std::back_inserter(frames), [](const Frame& f) { return !IsPoll(f); });
  const auto isRun = [](const Frame& frame) { return frame.number == 150; };
  const auto at = static_cast<std::size_t>(std::ranges::find_if(frames, isRun) - frames.begin());
  const auto hold = static_cast<std::size_t>(
      std::ranges::find_if(frames, [](const Frame& frame) { return frame.number == 85; }) - frames.begin());
  for (const int beyond : {-1, 0, 1}) {
    session.master.menus.mnuDisconnect.Click();
    Clear();
    Runs();
    unit.FailAt(at - hold + static_cast<std::size_t>(beyond), WatchedUnit::Failure::FrameLost,
                test.ports.state);
    session.master.menus.mnuConnect.Click();
    EXPECT_FALSE(session.device.comm.CommPortOpen);
    const std::string before = Runs();
    unit.Recover();
    EXPECT_EQ(before + RunsOf([&] { session.master.menus.mnuConnect.Click(); }),
              beyond < 0   ? "16448 "
              : beyond > 0 ? "16448 0 "
                           : "16448 16448 ");  // the first was lost
  }
}

// Of a pair, neither hears what its partner makes of the signal.
TEST_F(Downloads, ACancellerHearsWhatFeedsItsPartner) {
  Edit("configMode", "2");
  Edit("numFilters", "2");
  for (const int stage : {1, 4, 2, 5}) Edit("filterActive", "1", stage);
  for (const int stage : {4, 2}) Edit("filterType", "0", stage);
  Settle();
  const auto sources = [this](std::size_t position) {
    const int word = unit.Now().HeldRegisters().values[31 + position].value_or(0);
    return std::pair(word >> 10, word & 31);
  };
  EXPECT_EQ(sources(2), std::pair(0, 1));  // the inputs
  EXPECT_EQ(sources(3), std::pair(7, 6));  // the outputs of the pair before
  Edit("ch2DelayChan", "1", 4);
  Settle();
  EXPECT_EQ(sources(2), std::pair(1, 0));
}

TEST_F(Downloads, AnewFromTheResetOnTheUnitHoldsWhatItHeld) {
  Edit("configMode", "2");
  Edit("eqBandGain", "9", 9, 4);
  Edit("eqType", "1", 2);
  Edit("edgeCurve", "-9", 2, 40);
  Settle();
  const std::string held = unit.Dump();
  Sent();
  session.download.ForgetBandwidth();
  support::MarkEdited(record);
  Settle();
  EXPECT_NE(Sent().find(" 89/255 "), std::string::npos);
  EXPECT_EQ(unit.Dump(), held);
}

TEST_F(Downloads, OnlyFiltersBelow128TapsTellTheirBlocks) {
  const auto adaptation = [this] { return unit.Now().HeldRegisters().values[56].value_or(0); };
  Edit("ch1Mu", "500", 1);
  for (const auto& [taps, blocks] : {std::pair{"127", 4}, {"128", 0}}) {
    Edit("ch1Taps", taps, 1);
    Settle();
    EXPECT_EQ(adaptation(), blocks * 2048 + 500) << taps;
  }
  Edit("adaptEnabled", "0");
  Settle();
  EXPECT_EQ(adaptation(), 0);
}

TEST_F(Downloads, ProgressCountsEveryFrameBetweenFrames) {
  std::vector<std::pair<int, int>> told;
  session.download.progress = [&](int done, int total) {
    if (done == 0) Sent();
    EXPECT_EQ(static_cast<std::size_t>(done), unit.frames.size());
    told.emplace_back(done, total);
  };
  BuildHiRes(1);
  told.clear();
  session.config.ConfigureStages(true);
  const int total = static_cast<int>(told.size()) - 1;
  ASSERT_GT(total, 150);
  for (int done = 0; done <= total; ++done) {
    ASSERT_EQ(told[static_cast<std::size_t>(done)], std::pair(done, total));
  }
  EXPECT_EQ(unit.brokenWrites, 0U);
}

// A link that is lost at one frame of a full download.
struct LostLinks : Downloads {
  LostLinks() {
    const char* const kinds[] = {"1", "2", "12", "14", "8", "16"};
    Edit("numFilters", "6");
    for (int stage = 1; stage <= 6; ++stage) Edit("filterType", kinds[stage - 1], stage);
    Edit("hiResCurve", "-20", 3, 100);
    Edit("mnotchFreq", "1000", 5, 1);
    Edit("broadbandType", "1", 1);
    Edit("broadbandActive", "1", 1);
    Edit("noiseEqVals", "0.25", 1, 7);
    Edit("eqType", "1", 1);
    Settle();
  }

  std::vector<Frame> FullDownload() {
    unit.PlugInAnother();
    session.master.menus.mnuDisconnect.Click();
    unit.frames.clear();
    session.master.menus.mnuConnect.Click();
    std::vector<Frame> frames;
    for (const Frame& frame : unit.frames) {
      if (!IsPoll(frame)) frames.push_back(frame);
    }
    return frames;
  }

  void FailAt(std::size_t frame, WatchedUnit::Failure how) {
    session.master.menus.mnuDisconnect.Click();
    unit.PlugInAnother();
    test.desk.boxes.clear();
    unit.FailAt(frame, how, test.ports.state);
    session.master.menus.mnuConnect.Click();
  }

  // The record as the operator knows it: the marks of the run aside.
  SystemSettings Known() const {
    SystemSettings known = record;
    known.linkReady = false;
    known.settingsChanged = known.fitPending = 0;
    for (auto* marks : {&known.stageChanged, &known.filterDirty, &known.filterBuilt}) marks->Fill(0);
    for (auto* marks : {&known.eqChanged, &known.broadbandChanged, &known.broadbandClear}) marks->Fill(0);
    return known;
  }
};

// What the failure box says of a frame: a packet is told by the command that it is for.
std::string Failed(const std::vector<Frame>& frames, std::size_t at) {
  constexpr std::uint8_t broadband = 102, synthesize = 192;
  const bool packet = frames[at].kind == Frame::Kind::Packet;
  std::size_t next = at;
  while (frames[next].kind == Frame::Kind::Packet) ++next;
  const Frame& command = frames[next];
  const int selector = command.argument & 0xFFF;
  if (command.number == synthesize && selector != 0) return " while synthesizing filters.";
  if (!packet) return " while issuing Command #" + std::to_string(command.number) + ".";
  if (command.number == broadband) {
    return " while downloading broadband packets #" + std::to_string(selector) + ".";
  }
  return " while downloading coefficient packet #" + std::to_string(frames[at].number) + ".";
}

TEST_F(LostLinks, EveryFrameCanFailAndTheReconnectMendsIt) {
  using enum WatchedUnit::Failure;
  const std::vector<Frame> frames = FullDownload();
  const std::string undisturbed = unit.Dump();
  const SystemSettings known = Known();
  ASSERT_GT(frames.size(), 250U);
  for (const auto how : {FrameLost, AnswerLost, Silence}) {
    for (std::size_t at = 0; at < frames.size(); ++at) {
      SCOPED_TRACE("frame " + std::to_string(at) + ", failure " + std::to_string(static_cast<int>(how)));
      FailAt(at, how);
      ASSERT_EQ(test.desk.boxes.size(), 1U);
      if (how == Silence) {
        ASSERT_EQ(test.desk.boxes[0].title, "Veltrana Communications Failure");
        ASSERT_EQ(test.desk.boxes[0].text,
                  "Communications have failed with Veltrana on port COM1" + Failed(frames, at) +
                      "  Please check all settings and connections, then attempt reconnect.");
      } else {  // the line went with it
        ASSERT_EQ(test.desk.boxes[0].title, "Veltrana Connection Lost");
      }
      ASSERT_EQ(session.periodic.connectionState, StateClosed);
      ASSERT_FALSE(test.ports.state.open || test.desk.hourglass);
      ASSERT_TRUE(Known() == known);
      unit.Recover();
      session.master.menus.mnuConnect.Click();
      ASSERT_EQ(test.desk.boxes.size(), 1U);
      ASSERT_TRUE(Connected());
      ASSERT_EQ(unit.Dump(), undisturbed);
    }
  }
}

// The same while only a difference goes out, the record being edited further before the reconnect.
TEST_F(LostLinks, EditLostOnItsWayGoesOutWithTheReconnect) {
  FullDownload();
  const std::string before = unit.Dump();
  test.desk.boxes.clear();
  Edit("hiResCurve", "-33", 3, 200);
  test.ports.state.gone = true;
  Settle();
  EXPECT_EQ(test.desk.boxes.size(), 1U);
  EXPECT_FALSE(Connected());
  Edit("filterType", "3", 2);
  Settle();
  EXPECT_EQ(unit.Dump(), before);
  test.ports.state.gone = false;
  session.master.menus.mnuConnect.Click();
  const std::string mended = unit.Dump();
  EXPECT_EQ(Stage(2).algorithm, 2);
  FullDownload();
  EXPECT_EQ(unit.Dump(), mended);
}

}  // namespace
}  // namespace vc
