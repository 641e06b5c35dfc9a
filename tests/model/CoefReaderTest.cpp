// Coefficients and spectra read back from the unit: blocks and pages, and reads that break off.
#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "LinkFixture.h"
#include "Marked.h"
#include "UnitEnd.h"
#include "model/Kinds.h"

namespace vc {
namespace {

using Table = std::vector<std::int32_t>;

Table PageContent(int page) {
  Table content;
  for (int i = 0; i < 8192; ++i) content.push_back((i % 2 == 0 ? 1 : -1) * (1000000 * (page + 1) + i));
  return content;
}

// A session whose unit has learned something else on every page, and can fail at a request for coefficients.
struct ReadBack : testing::Test {
  unit::Unit simulated{unit::Options{}};
  std::vector<int> addresses;  // of the requests
  int stepAtRequest = -1;      // adaptation at position 1 while the last of them came, 0 if frozen
  std::size_t polls = 0, failingRequest = 1000;
  std::function<void()> failure;
  bool answersFailing = false;  // though it has failed

  support::TestSession test{End()};
  Session& session = test.session;
  SystemSettings& record = session.settings;
  CoefReader& reader = session.coefReader;
  Table destination;

  ReadBack() {
    session.Start();
    record.filterType.Fill(FilterKind::OneChAdaptive);
    record.ch1Mu.Fill(500);
    Lay(ConfigMode::Mono, 1024);
  }

  support::FarEnd End() {
    support::FarEnd end = support::EndOf(simulated);
    end.receive = [this, hear = end.receive](auto bytes, auto now, auto baud) {
      polls += bytes[3] == 0xE8 ? 1 : 0;
      if (bytes.size() == 7 && bytes[3] == 0x5B) {
        addresses.push_back(bytes[4] | bytes[5] << 8);
        stepAtRequest = Step();
        if (addresses.size() == failingRequest + 1) {
          failure();
          if (!answersFailing) return;
        }
      }
      hear(bytes, now, baud);
    };
    return end;
  }

  int Step() const { return simulated.HeldRegisters().values[56].value_or(0) & 2047; }

  void Lay(std::int16_t mode, int taps) {
    record.configMode = mode;
    record.numFilters = mode == ConfigMode::Mono ? 6 : 3;
    record.ch1Taps.Fill(static_cast<std::int16_t>(taps));
    session.download.DownloadSettings(DownloadMode::KeepTables);
    for (unsigned page = 0; page < 6; ++page) simulated.Learn(page, PageContent(static_cast<int>(page)));
  }

  void EditThreshold(std::int16_t choice) {
    record.limiterThreshold = choice;
    support::MarkEdited(record);
  }

  bool Read(int stage) {
    addresses.clear();
    polls = 0;
    destination.assign(CoefCapacity, 7);
    return reader.ReadFilterCoefficients(stage, CoefSpan(destination));
  }

  void ExpectFailure() {
    EXPECT_FALSE(Read(1));
    EXPECT_EQ(destination, Table(CoefCapacity, 7));
    EXPECT_EQ(record.filterAdapt[1], 1);
    EXPECT_TRUE(session.periodic.tmrBargraph->Enabled());
    EXPECT_TRUE(!session.device.comm.CommPortOpen || Step() == 500);
  }
};

TEST_F(ReadBack, EveryStageHasItsPageInEveryMode) {
  const int pages[][6] = {{0, 1, 2, 3, 4, 5}, {0, 2, 4, 1, 3, 5}, {0, 2, 4, 1, 3, 5}};
  for (const int taps : {8192, 257, 256, 100}) {
    for (std::int16_t mode = 0; mode < 3; ++mode) {
      Lay(mode, taps);
      for (int stage = 1; stage <= 6; ++stage) {
        SCOPED_TRACE(testing::Message() << taps << " taps, mode " << mode << ", stage " << stage);
        const int page = pages[mode][stage - 1], blocks = (taps + 255) / 256;
        Table expected = PageContent(page);
        std::fill(expected.begin() + 256 * blocks, expected.end(), 0);
        ASSERT_TRUE(Read(stage));
        ASSERT_EQ(destination, expected);
        ASSERT_EQ(addresses.size(), static_cast<std::size_t>(blocks));
        ASSERT_EQ(addresses.front(), page * 4096 + (blocks > 1 ? 1 : 0));
        ASSERT_EQ(stepAtRequest, page == 0 || (mode == ConfigMode::StereoLinked && page == 1) ? 0 : 500);
        ASSERT_EQ(Step(), 500);
        ASSERT_EQ(polls, 0U);
      }
    }
  }
  EXPECT_FALSE(Read(0) || Read(7));
  record.filterType[4] = FilterKind::Notch;
  EXPECT_EQ(CoefficientCount(record, 4), 1024);
}

TEST_F(ReadBack, FirstBlockThatDoesNotComeEndsIt) {
  const CoefHooks hooks = reader.hooks;
  const auto otherReply = [this] {
    const CommandFrame frame = MakeCommandFrame(0xE8, 0);
    for (int i = 0; i < 18; ++i) simulated.Receive(frame, test.clock.Microseconds(), 115200);
  };
  const std::function<void()> failures[] = {
      [] {}, otherReply, [this] { reader.hooks.ending = [] { return true; }; },
      [this] { reader.hooks.runEvents = [this] { session.master.menus.mnuDisconnect.Click(); }; },
      [this] { test.ports.state.gone = true; }};
  for (const auto& how : failures) {
    failure = how;
    for (failingRequest = 0; failingRequest < 4; ++failingRequest) {
      SCOPED_TRACE(testing::Message() << "failure " << &how - failures << " at request " << failingRequest);
      ExpectFailure();
      EXPECT_EQ(addresses.size(), failingRequest + 1);
      test.ports.state.gone = false;
      reader.hooks = hooks;
      if (!session.device.comm.CommPortOpen) session.master.menus.mnuConnect.Click();
    }
  }
}

TEST_F(ReadBack, HandlersUnderTheReadDoItNoHarm) {
  session.periodic.EnableMainTimer(false);
  reader.hooks.runEvents = [&] {
    EXPECT_FALSE(reader.ReadFilterCoefficients(2, CoefSpan(destination)));
    EditThreshold(3);
    session.periodic.EnableMainTimer(true);
    test.loop.RunEvents(0);
  };
  EXPECT_TRUE(Read(1));
  EXPECT_EQ(destination[1023], PageContent(0)[1023]);
  EXPECT_EQ(polls, 0U);
  EXPECT_TRUE(session.periodic.tmrBargraph->Enabled());  // as the handler wanted it
  EXPECT_EQ(simulated.HeldRegisters().values[8], 3677);  // with the thaw

  reader.hooks.runEvents = [&] { session.device.DrainPendingReply(); };
  ExpectFailure();
  reader.hooks.runEvents = [&] { record.ch1Taps[1] = 300; };
  ExpectFailure();
}

TEST_F(ReadBack, PendingEditGoesFirstAndOnlyWhatAdaptsIsFrozen) {
  record.filterAdapt[2] = 0;
  Lay(ConfigMode::StereoLinked, 100);
  EditThreshold(1);
  const auto before = simulated.HeldRegisters().counts;
  EXPECT_TRUE(Read(5));  // runs with the fields of stage 2
  EXPECT_EQ(simulated.HeldRegisters().values[8], 7336);
  EXPECT_EQ(simulated.HeldRegisters().counts[59], before[59]);
}

TEST_F(ReadBack, DisplayIsReadRoundAndRoundAndBeforeTheStatusCounts) {
  reader.coefFilterIndex = 2;
  session.periodic.pollMode = poll::Coefficients;
  test.loop.RunFor(1000);
  Table expected = PageContent(2);
  std::fill(expected.begin() + 1024, expected.end(), 0);
  EXPECT_EQ(Table(reader.CoefReadback.begin(), reader.CoefReadback.end()), expected);

  reader.CoefReadback.fill(0);
  int newest = 0;
  session.device.hooks.unitOptionChanged = [&] {
    newest = reader.CoefReadback[static_cast<std::size_t>(addresses.back() % 4 * 256)];
    session.config.ConfigureStages(false);  // resets the stages
  };
  simulated.option = true;
  test.loop.RunFor(200);
  EXPECT_NE(newest, 0);
  EXPECT_TRUE(test.desk.boxes.empty());
}

TEST_F(ReadBack, BlockThatHasNotComeIsAskedForAgain) {
  session.periodic.pollMode = poll::Coefficients;
  failure = [] {};
  failingRequest = 1;
  test.loop.RunFor(12'000);
  ASSERT_GT(addresses.size(), 3U);
  EXPECT_THAT(std::span(addresses).first(4), testing::ElementsAre(1, 2, 2, 3));

  // The answer to a request for the stage shown before is none for the present one.
  addresses.clear();
  failingRequest = 2;
  unsigned cleared = 0;
  failure = [&] {
    reader.Display(4);
    cleared = reader.revision;
  };
  answersFailing = true;
  simulated.Learn(3, Table(1024));
  test.loop.RunFor(1000);
  EXPECT_EQ(std::ranges::count(reader.CoefReadback, 0), 8192);
  EXPECT_EQ(reader.revision, cleared + 4) << "four blocks, and after that nothing new";
  EXPECT_EQ(addresses.back() / 4096, 3);
}

struct Spectra : support::LinkFixture {
  SpectrumReader& reader = session.spectrumReader;

  // Replies with a level and a body by the channel; cross answers for the other one.
  void Answer(bool cross) {
    unit.sent.clear();
    unit.always = [cross](const support::Bytes& frame) {
      const bool first = (frame[3] == 0xA1) != cross;
      const std::string head = support::MainStatusReply({first ? 100 : 200, 0, 0, 0, 0, 0}).substr(3, 42);
      return support::ScriptedReply{(first ? "!S1" : "!S2") + head + std::string(513, first ? 'a' : 'b')};
    };
  }
};

TEST_F(Spectra, ChannelsTakeTurnsWhereBothAreShown) {
  OpenLink();
  using Row = std::pair<std::int16_t, std::string>;
  for (const auto& [mode, codes] : {Row{2, "\xA2\xA1\xA2"}, {1, "\xA1\xA1\xA1"}, {0, "\xA2\xA2\xA2"}}) {
    Answer(false);
    session.settings.specDisplayMode = mode;
    std::string sent;
    for (int step = 0; step < 6; ++step) reader.RequestSpectrumData();
    for (const auto& frame : unit.sent) sent += static_cast<char>(frame.bytes[3]);
    EXPECT_EQ(sent, codes) << mode;
  }
  EXPECT_EQ(std::count(reader.RawTrace1.begin(), reader.RawTrace1.end(), 'a'), 512);
  EXPECT_EQ(reader.RawTrace2[511], 'b');
}

TEST_F(Spectra, InverseFilterLooksAtTheFirstChannelAlone) {
  OpenLink(true);
  device.hooks.unitOptionChanged = [] { throw Fault{"Overflow"}; };
  for (const bool cross : {true, false}) {
    Answer(cross);
    device.status.unitOptionPrev = !cross;
    for (int step = 0; step < 2; ++step) reader.RequestSIFData();
    EXPECT_EQ(unit.sent.front().bytes[3], 0xA1);
    EXPECT_EQ(device.status.levelInLeft, cross ? 200 : 100);
    EXPECT_EQ(reader.RawTrace1[511], cross ? 0 : 'a');
    EXPECT_EQ(reader.RawTrace2, RawTrace{});
  }
  EXPECT_EQ(OnlyBox(), "20|RequestSIFData_Err|RequestSIFData error, do you wish to stop?");
}

}  // namespace
}  // namespace vc
