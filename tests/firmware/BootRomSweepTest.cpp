// Updates that meet a fault at every exchange and at every byte: each one verifies, or fails with true words
// and a unit that the next try brings up.
#include <gtest/gtest.h>

#include "FaultyLine.h"
#include "QuietView.h"
#include "TestSession.h"

namespace vc {
namespace {

using support::ByteFault;
using unit::Section;

constexpr std::uint32_t Exchanges = 17;  // of an update without a fault

struct Update {
  support::FaultyLine line;
  support::TestSession test{line.End()};
  modFirmware firmware{test.session.platform, test.session.objectLog, View(), test.session.portLibrary.tap};
  const unit::Images old = unit::FactoryImages(402);
  const unit::Images files{unit::MakeImage(Section::Main, 410, 6 * 128),
                           unit::MakeImage(Section::Daughter, 410, 3 * 128)};
  std::optional<std::size_t> pulledAt;  // the byte from which on the port is gone
  std::string words;                    // on the state of the unit
  int runs = 0, verified = 0;

  Update() {
    for (const std::size_t i : {0U, 1U}) {
      support::Put(test.folder.Path() + '/' + std::string(FirmwareFileNames.at(i)),
                   std::string(files[i].begin(), files[i].end()));
    }
    line.bytePassed = [this] { test.ports.state.gone = pulledAt && line.passed >= *pulledAt; };
  }

  UploadView View() {
    UploadView view = support::QuietView();
    view.failed = [this](const std::string& told) { words = told; };
    return view;
  }

  unit::Unit& Now() { return line.Now(); }

  bool Say(const std::string& text) const { return words.find(text) != std::string::npos; }

  // A restart that the unit did not hear leaves it in its boot ROM: it gives no answer to that.
  void ExpectNewFirmware(bool restarts) {
    Now().Transmit(test.clock.Microseconds());
    EXPECT_EQ(Now().Rom().images, files);
    EXPECT_FALSE(firmware.failure);
    EXPECT_TRUE(Now().InApplication() || (!restarts && Now().Rom().CanStart()));
    EXPECT_EQ(test.desk.boxes.size(), 1U);
    EXPECT_EQ(test.desk.boxes.back().title, "Upload Complete");
  }

  void ExpectTrueWords() {
    Now().Transmit(test.clock.Microseconds() + unit::PowerCutMicroseconds);
    EXPECT_EQ(test.desk.boxes.size(), 1U);
    EXPECT_EQ(test.desk.boxes.back().title, "Firmware Upload Error");
    EXPECT_TRUE(!test.ports.state.gone || Say("The port went away.")) << words;
    const unit::Images& images = Now().Rom().images;
    for (const Section section : unit::Sections) {
      const std::size_t i = NumberOf(section) - 1;
      const std::string name = "Section " + std::to_string(i + 1);
      EXPECT_TRUE(!Say(name + " is written.") || images[i] == files[i]) << words;
      EXPECT_TRUE(!Say(name + " has not been changed.") || images[i] == old[i]) << words;
    }
    EXPECT_TRUE(!Say("has not been changed.  The unit must") || images == old) << words;
    EXPECT_TRUE(!Say("waits in its boot ROM") || !Now().InApplication()) << words;
    EXPECT_TRUE(!Now().InApplication() || images == old) << "half an update runs";
  }

  void Meet(const unit::Options& options, const std::optional<ByteFault>& fault) {
    line.PlugInAnother(options);
    line.fault = fault;
    ++runs;
    test.desk.boxes.clear();
    const double start = test.clock.Seconds();
    const bool done = firmware.StartFirmwareUpdate(1);
    verified += done ? 1 : 0;
    EXPECT_LT(test.clock.Seconds() - start, pulledAt ? 20.0 : 400.0);
    done ? ExpectNewFirmware(false) : ExpectTrueWords();
    line.fault.reset();
    pulledAt.reset();
    test.ports.state.gone = false;
    test.desk.boxes.clear();
    EXPECT_TRUE(firmware.StartFirmwareUpdate(1)) << "the next try: " << firmware.failure->description;
    ExpectNewFirmware(true);
  }
};

TEST(BootRomSweep, AFaultAtEveryExchange) {
  using unit::RomFault;
  Update update;
  for (const RomFault fault : {RomFault::Deaf, RomFault::Silent, RomFault::Refuse, RomFault::NegativeAck,
                               RomFault::Twice, RomFault::Late, RomFault::Sum, RomFault::Cut}) {
    for (std::uint32_t exchange = 1; exchange <= Exchanges; ++exchange) {
      SCOPED_TRACE(testing::Message() << "fault " << static_cast<int>(fault) << " at exchange " << exchange);
      unit::Options options;
      options.romFaults[exchange] = fault;
      update.Meet(options, {});
    }
  }
  EXPECT_GT(update.verified, update.runs * 8 / 10);
}

TEST(BootRomSweep, AFaultAtEveryByte) {
  Update update;
  update.Meet({}, {});
  const std::size_t bytes = update.line.passed / 2;
  for (const auto kind : {ByteFault::Kind::Lost, ByteFault::Kind::Doubled, ByteFault::Kind::Changed}) {
    for (std::size_t place = 0; place < bytes; ++place) {
      SCOPED_TRACE(testing::Message() << "kind " << static_cast<int>(kind) << " at byte " << place);
      update.Meet({}, ByteFault{.kind = kind, .place = place});
    }
  }
  // All but those whose sum is damaged.
  EXPECT_GT(update.verified, update.runs * 98 / 100);
}

TEST(BootRomSweep, ThePortIsPulledAtEveryPlace) {
  Update update;
  update.Meet({}, {});
  const std::size_t bytes = update.line.passed / 2;
  for (std::size_t place = 0; place < bytes; ++place) {
    SCOPED_TRACE(testing::Message() << "at byte " << place);
    update.pulledAt = place;
    update.Meet({}, {});
  }
  EXPECT_LT(update.verified, 10) << "where only the restart is cut off";
}

}  // namespace
}  // namespace vc
