// The dialogue with a boot ROM and the transfer, step by step in virtual time.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BootRom.h"
#include "QuietView.h"
#include "TestSession.h"

namespace vc {
namespace {

using support::Bytes;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string Ack = "\x06", Nak = "\x15";

Bytes Image(std::size_t size) {
  Bytes image(size);
  for (std::size_t i = 0; i < size; ++i) image[i] = static_cast<std::uint8_t>(i * 7 % 251);
  return image;
}

struct Transfer : testing::Test {
  support::BootRom rom;
  support::TestSession test{rom.End()};
  std::vector<std::string> stages;
  std::vector<std::pair<int, int>> progress;
  bool blinking = false, writing = false;
  modFirmware firmware{test.session.platform, test.session.objectLog, View(), test.session.portLibrary.tap};
  std::string reply;

  UploadView View() {
    UploadView view = support::QuietView();
    view.section = [this](const std::string& text) { stages.push_back(text); };
    view.blink = [this](bool on) { blinking = on; };
    view.SetXmodemResults = [this](int total, int done) {
      progress.emplace_back(total, done);
      return true;
    };
    view.writing = [this](bool on) { writing = on; };
    return view;
  }
  void Install(std::size_t main, std::size_t daughter) {
    Put("vlnamain.fwr", Image(main));
    Put("vlnadaug.fwr", Image(daughter));
  }
  void Put(const std::string& name, const Bytes& bytes) const {
    support::Put(test.folder.Path() + "/" + name, std::string(bytes.begin(), bytes.end()));
  }
  // What the section holds, without the zeros that fill its last packet.
  Bytes Held(int section, std::size_t size) const {
    Bytes data = rom.sections.at(static_cast<std::size_t>(section - 1));
    EXPECT_TRUE(std::all_of(data.begin() + static_cast<std::ptrdiff_t>(std::min(size, data.size())),
                            data.end(), [](std::uint8_t byte) { return byte == 0; }));
    EXPECT_EQ(data.size() % 128, 0U);
    data.resize(size);
    return data;
  }
  double Seconds(const std::function<bool()>& step, bool succeeds) {
    const double start = test.clock.Seconds();
    EXPECT_EQ(step(), succeeds);
    return test.clock.Seconds() - start;
  }
  bool Open() { return firmware.OpenComPort(1); }
  // As far as to the transfer of section 1.
  void Begin() {
    Open();
    EXPECT_TRUE(firmware.TransmitCommand({"?M", "MDL", 3}, reply));
    EXPECT_TRUE(firmware.TransmitCommand({"YY", "OK", 2, 200}, reply));
  }
  std::string Box() const {
    if (test.desk.boxes.size() != 1) return std::to_string(test.desk.boxes.size()) + " boxes";
    return test.desk.boxes.front().title;
  }
};

TEST_F(Transfer, WritesBothSectionsAndRestarts) {
  Install(40010, 128);
  EXPECT_TRUE(firmware.StartFirmwareUpdate(12));
  EXPECT_EQ(test.ports.state.name, "COM9");
  EXPECT_EQ(Held(1, 40010), Image(40010));
  EXPECT_EQ(Held(2, 128), Image(128));
  EXPECT_THAT(rom.protests, IsEmpty());
  EXPECT_TRUE(rom.restarted);
  EXPECT_EQ(rom.Count("packet 313"), 1);
  EXPECT_EQ(rom.Count("?X"), 1);
  EXPECT_THAT(stages,
              ElementsAre("Connecting to Veltrana", "Updating Section 1 of 2", "Verifying Section Checksum",
                          "Updating Section 2 of 2", "Verifying Section Checksum", "Resetting Veltrana",
                          "Firmware Update Complete"));
  EXPECT_EQ(progress.front(), std::pair(313, 0));
  ASSERT_GT(progress.size(), 313U);
  EXPECT_EQ(progress[313], std::pair(313, 313));
  EXPECT_EQ(Box(), "Upload Complete");
  EXPECT_TRUE(firmware.firmwareAbort);
  EXPECT_FALSE(blinking || writing || test.ports.state.open);
}

// 20 milliseconds a packet at most: 11.5 take 132 bytes on the line, and the rest is what its answer waits
// for.
TEST_F(Transfer, IsBoundByTheLine) {
  Begin();
  EXPECT_TRUE(firmware.WaitForNak());
  const Bytes data = Image(128);
  EXPECT_LT(Seconds([&] { return firmware.TransmitXmodemPacket(data, 1); }, true), 0.020);
}

TEST_F(Transfer, CommandsAreRepeatedAsOftenAsTold) {
  Open();
  rom.instead = [](auto&, int) { return std::string(); };
  struct Case {
    BootCommand command;
    int times;
    double seconds;
  };
  for (const auto& [command, times, seconds] : {Case{{"?TERMIN", "VELTRANUM", 9}, 5, 5.0},
                                                {{"?M", "MDL", 3, 0, 0}, 5, 5.0},
                                                {{"?D", "DDL", 3, 20, 2}, 2, 4.0}}) {
    EXPECT_NEAR(Seconds([&, sent = command] { return firmware.TransmitCommand(sent, reply); }, false),
                seconds, 0.3);
    EXPECT_EQ(rom.Count(command.text), times);
  }
  EXPECT_EQ(reply, "");
}

// Its beginning is as long as the answer that is waited for.
TEST_F(Transfer, ARefusalIsKnownByItsWholeAndEndsTheAttemptAtOnce) {
  Open();
  EXPECT_TRUE(firmware.TransmitCommand({"?M", "MDL", 3}, reply));
  rom.eraseMicroseconds = 100;
  rom.afterErase = "";
  rom.instead = [](const std::string& heard, int count) {
    if (heard != "YY" || count == 5) return std::optional<std::string>();
    return std::optional<std::string>(count == 1 ? "!R\tT" : "!RT");
  };
  EXPECT_LT(Seconds([&] { return firmware.TransmitCommand({"YY", "OK", 2, 200}, reply); }, true), 1.0);
  EXPECT_EQ(reply, "OK");
  EXPECT_EQ(rom.Count("YY"), 5);
}

TEST_F(Transfer, AnAnswerCountsByItsLengthOrByWhatItHolds) {
  Open();
  rom.instead = [](const std::string& heard, int) {
    return std::optional<std::string>(heard == "?M" ? "XYZ" : "\r\nDDL\r\n>");
  };
  EXPECT_TRUE(firmware.TransmitCommand({"?M", "MDL", 3}, reply));
  EXPECT_EQ(reply, "XYZ");
  EXPECT_FALSE(firmware.TransmitCommand({"?M", "MDL", -1, 1, 1}, reply));
  EXPECT_TRUE(firmware.TransmitCommand({"?D", "DDL", 0}, reply));
  EXPECT_EQ(reply, "DDL");
}

TEST_F(Transfer, ALoneRequestIsNoneUntilASecondByteComes) {
  rom.afterErase = "";
  Begin();
  EXPECT_NEAR(Seconds([&] { return firmware.WaitForNak(); }, true), 1.5, 0.1);
  rom.instead = [](const std::string& heard, int count) {
    return heard == "ask" && count > 3 ? std::optional<std::string>("") : std::nullopt;
  };
  EXPECT_NEAR(Seconds([&] { return firmware.WaitForNak(); }, false), 21.0, 0.5);
}

TEST_F(Transfer, APacketGoesOutTenTimes) {
  Begin();
  EXPECT_TRUE(firmware.WaitForNak());
  const Bytes data = Image(128);
  rom.instead = [](const std::string& heard, int count) {
    if (heard == "packet 1") return std::optional<std::string>(count < 10 ? "\x15" : "\x06");
    return heard == "packet 2" ? std::optional<std::string>("") : std::nullopt;
  };
  EXPECT_LT(Seconds([&] { return firmware.TransmitXmodemPacket(data, 1); }, true), 12.0);
  EXPECT_NEAR(Seconds([&] { return firmware.TransmitXmodemPacket(data, 2); }, false), 210.0, 5.0);
  EXPECT_EQ(rom.Count("packet 1"), 10);
  EXPECT_EQ(rom.Count("packet 2"), 10);
  EXPECT_THROW(firmware.TransmitXmodemPacket(std::span(data).first(127), 3), Fault);
}

// A request that was on its way when the first packet went out is no answer to it: a packet that is sent
// twice is answered twice, and from there on every answer would be taken for the next packet's. Where it must
// be sent twice, the answer to the first one may still come.
TEST_F(Transfer, NoAnswerIsTakenForAnotherPackets) {
  Install(2560, 128);
  rom.instead = [](const std::string& heard, int count) {
    if (heard == "packet 1" && count == 1) return std::optional<std::string>("\x15\t\x06");
    if (heard == "packet 4") return std::optional<std::string>(count == 1 ? "\x15" : "\x06\t\x06");
    return std::optional<std::string>();
  };
  EXPECT_TRUE(firmware.StartFirmwareUpdate(1));
  EXPECT_EQ(Held(1, 2560), Image(2560));
  EXPECT_EQ(rom.Count("packet 1"), 2);  // one a section
  EXPECT_EQ(rom.Count("packet 4"), 2);
}

TEST_F(Transfer, TheSumIsTextAndMustBeThatOfTheFile) {
  for (const std::string digits : {"0000", "12ab", "12A"}) {
    Install(256, 128);
    rom.instead = [digits](const std::string& heard, int) {
      return heard == "EOT" ? std::optional<std::string>(Ack + digits) : std::nullopt;
    };
    EXPECT_FALSE(firmware.StartFirmwareUpdate(1));
    EXPECT_EQ(firmware.state.sections[0], SectionState::Erased);
    EXPECT_EQ(firmware.state.sections[1], SectionState::Untouched);
    EXPECT_EQ(rom.Count("EOT"), 2);  // and once more, to leave the transfer
    rom.heard.clear();
  }
}

TEST_F(Transfer, TheEndIsSentTwice) {
  Install(256, 128);
  rom.instead = [](const std::string& heard, int count) {
    return heard == "EOT" && count == 1 ? std::optional<std::string>("") : std::nullopt;
  };
  EXPECT_TRUE(firmware.StartFirmwareUpdate(1));
  EXPECT_EQ(rom.Count("EOT"), 3);
}

TEST_F(Transfer, AFileThatPacketsDoNotCoverIsRefusedBeforeAnythingIsErased) {
  for (const std::size_t size : {0U, 1U, 64U, 129U, 300U, 320U}) {
    Install(size, 128);
    EXPECT_FALSE(firmware.StartFirmwareUpdate(1)) << size;
    EXPECT_EQ(rom.Count("?M"), 0);
    Install(128, size);
    EXPECT_FALSE(firmware.StartFirmwareUpdate(1)) << size;
    EXPECT_EQ(rom.Count("?D"), 0);
    EXPECT_EQ(firmware.state.sections[0], SectionState::Written);
    rom.heard.clear();
  }
  EXPECT_EQ(rom.sections[1], Bytes{2});
}

TEST_F(Transfer, TheEndOfTheProgramEndsEveryWait) {
  Install(512, 512);
  rom.instead = [&](const std::string& heard, int) {
    if (heard == "packet 2") test.loop.RequestEnd();
    return heard == "packet 2" ? std::optional<std::string>("") : std::nullopt;
  };
  EXPECT_LT(Seconds([&] { return firmware.StartFirmwareUpdate(1); }, false), 10.0);
  EXPECT_THAT(test.desk.boxes, IsEmpty());  // nobody is there to answer
}

}  // namespace
}  // namespace vc
