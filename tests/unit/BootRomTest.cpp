// The boot ROM of the simulated unit: its commands, its transfers, and what it makes of the images.
#include <numeric>
#include <string>

#include <gtest/gtest.h>

#include "TempFolder.h"
#include "unit/Download.h"
#include "unit/Dump.h"
#include "unit/ImageFile.h"

namespace unit_test {
namespace {

using unit::RomFault;
using unit::Section;
constexpr std::int64_t Second = 1'000'000;

Bytes XmodemPacket(int number, const Bytes& image) {
  const auto low = static_cast<std::uint8_t>(number);
  Bytes packet{1, low, static_cast<std::uint8_t>(255 - low)};
  for (std::size_t i = 0; i < 128; ++i) {
    const std::size_t place = static_cast<std::size_t>(number - 1) * 128 + i;
    packet.push_back(place < image.size() ? image[place] : std::uint8_t{0});
  }
  packet.push_back(static_cast<std::uint8_t>(std::accumulate(packet.begin() + 3, packet.end(), 0)));
  return packet;
}

// A unit whose line is asked second by second, as its boot ROM is never quiet while it wants packets.
struct RomBench : Bench {
  using Bench::Bench;

  std::string Say(const Bytes& bytes, std::int64_t wait = Second / 10) {
    device.Receive(bytes, now, rate);
    now += wait;
    return Text(device.Transmit(now));
  }
  std::string Say(std::string_view text, std::int64_t wait = Second / 10) {
    return Say(Bytes(text.begin(), text.end()), wait);
  }
  // Up to the first packet; both answers.
  std::string Begin(std::string_view choice) {
    const std::string chosen = Say(choice);
    return chosen + Say("YY", 3 * Second + Second / 20);
  }
  // All packets of an image from `first` on; the answers, one character for each where all goes well.
  std::string Send(const Bytes& image, int first = 1) {
    std::string answers;
    const int last = static_cast<int>((image.size() + 127) / 128);
    for (int number = first; number <= last; ++number) answers += Say(XmodemPacket(number, image), 0);
    return answers;
  }
  std::string LastLine() {
    const std::string dump = DumpText(device);
    return dump.substr(dump.rfind('\n', dump.size() - 2) + 1);
  }
  bool Tells(const std::string& line) { return Has(DumpText(device), line); }
};

unit::Options With(std::uint32_t exchange, RomFault fault) {
  unit::Options options;
  options.romFaults[exchange] = fault;
  return options;
}

const Bytes mainImage = unit::MakeImage(Section::Main, 410, 24 * 1024);
const Bytes daughterImage = unit::MakeImage(Section::Daughter, 410, 40 * 1024);  // its numbers go past 255

std::string Digits(const Bytes& bytes) {
  char digits[5];
  std::snprintf(digits, sizeof digits, "%04X", std::accumulate(bytes.begin(), bytes.end(), 0U) & 0xFFFFU);
  return digits;
}

TEST(BootRom, TakesBothImagesAndStartsThem) {
  RomBench bench;
  ExpectTaken(bench, {Command(56, 7), Store(3, 1)});
  EXPECT_EQ(bench.Say("?TERMIN"), "VELTRANUM");
  EXPECT_EQ(bench.Say("?TERMIN"), "VELTRANUM") << "in the boot ROM as well";
  EXPECT_EQ(bench.Begin("?M"), "MDLOK\r\n");
  EXPECT_TRUE(bench.Tells("image 1 erased, 0 bytes\nimage 2 complete, version 4.02, 128 bytes\n"));
  EXPECT_EQ(bench.Say("", 3 * Second), "\x15\x15\x15");
  EXPECT_EQ(bench.Send(mainImage), std::string(192, '\x06'));
  EXPECT_EQ(bench.LastLine(), "boot ROM receives section 1, 192 packets\n");
  EXPECT_EQ(bench.Say("\x04"), '\x06' + Digits(mainImage));
  EXPECT_EQ(bench.Say("\x04"), '\x06' + Digits(mainImage)) << "its answer may get lost";
  EXPECT_EQ(bench.Begin("?D"), "DDLOK\r\n");
  EXPECT_EQ(bench.Send(daughterImage), std::string(320, '\x06'));
  EXPECT_EQ(bench.Say("\x04"), '\x06' + Digits(daughterImage));
  EXPECT_EQ(bench.device.Rom().images, (unit::Images{mainImage, daughterImage}));
  EXPECT_EQ(bench.Say("?X", 2 * Second), "");
  EXPECT_EQ(bench.Ask(CommandFrame(130)), "!VER401410");
  EXPECT_FALSE(bench.device.HeldRegisters().values[56]) << "as at power-up";
  EXPECT_TRUE(bench.Tells("memory 3 register 56 7 ")) << "which the memories survive";
  EXPECT_EQ(bench.LastLine(), "application runs\n");
}

TEST(BootRom, WithoutBothImagesTheApplicationStaysAway) {
  RomBench bench;
  bench.Say("?TERMIN");
  EXPECT_EQ(bench.Say("?X", 2 * Second), "");
  EXPECT_EQ(bench.Ask(CommandFrame(130)), "!VER401402") << "nothing was erased";
  bench.Say("?TERMIN");
  bench.Begin("?D");
  bench.Send(Bytes(daughterImage.begin(), daughterImage.begin() + 1280));
  EXPECT_EQ(bench.Say("\x04").size(), 5U);
  EXPECT_TRUE(bench.Tells("image 2 cut off, 1280 bytes\nboot ROM has received section 2\n"));
  EXPECT_EQ(bench.Say("?X", 2 * Second), "");
  EXPECT_EQ(bench.LastLine(), "boot ROM waits\n");
  for (const Bytes& frame : {CommandFrame(130), CommandFrame(128), PacketFrame(0, 'Y'), Bytes{4}, Bytes{1}})
    EXPECT_EQ(bench.Ask(frame), "") << Text(frame);
  EXPECT_EQ(bench.Say("?TERMIN"), "VELTRANUM");
  EXPECT_EQ(bench.Begin("?D"), "DDLOK\r\n");
  bench.Send(mainImage);
  bench.Say("\x04");
  EXPECT_TRUE(bench.Tells("image 2 of another section, 24576 bytes\n"));
}

TEST(BootRom, CommandsAreFoundInPiecesAndBehindGarbageAndNowhereElse) {
  struct Case {
    std::vector<std::string> pieces;  // a fifth of a second apart
    std::string answer;
  };
  const std::string frame = Text(CommandFrame(0x4D)), yy = Text(PacketFrame(0, 'Y'));
  for (const auto& [pieces, answer] : std::vector<Case>{{{"?TER", "MIN"}, "VELTRANUM"},
                                                        {{"?T?TERMIN"}, "VELTRANUM"},
                                                        {{"?TERM?TERMIN"}, "VELTRANUM"},
                                                        {{"?TERMIN?"}, ""},
                                                        {{"?MM"}, ""},
                                                        {{"?", "M"}, "MDL"},
                                                        {{"\xFF\x80?D"}, "DDL"},
                                                        {{frame}, ""},
                                                        {{"YY"}, ""},
                                                        {{"?M", "Y", "Y"}, "MDLOK\r\n\x15\x15"},
                                                        {{"?M", "YYY"}, "MDL"},
                                                        {{"?M", yy, "xYY"}, "MDL"}}) {
    RomBench bench;
    bench.Say("?TERMIN");
    std::string heard;
    for (const std::string& piece : pieces) heard += bench.Say(piece, Second / 5);
    heard += bench.Say("", 4 * Second + Second / 2);
    EXPECT_EQ(heard, answer) << testing::PrintToString(pieces);
    EXPECT_EQ(bench.device.Rom().images[0].empty(), Has(answer, "OK"));
  }
}

TEST(BootRom, TheApplicationStopsForNoOtherText) {
  RomBench bench;
  Bytes packet = PacketFrame(0, 0, unit::BytesOf("?TERMIN"));
  EXPECT_EQ(bench.Ask(packet), "!OK") << "inside a frame it is content";
  EXPECT_EQ(bench.Say("?TERMIM?TERM"), "");
  bench.now += Second;
  EXPECT_EQ(bench.Say("IN?M"), "");
  EXPECT_TRUE(bench.device.InApplication());
  EXPECT_EQ(bench.Say("?MP?TERMIN"), "!RT") << "seven bytes are a frame, whatever they are";
  EXPECT_EQ(bench.Say("x?TERMIN"), "VELTRANUM");

  unit::Options slow;
  slow.baud = 38400;
  RomBench other(slow);
  EXPECT_EQ(other.Say("?TERMIN"), "") << "at its own rate";
  other.rate = 115200;
  other.Say("?TERMIN");
  EXPECT_TRUE(other.device.InApplication()) << "nor at another one";
  other.device.Install({});
  EXPECT_EQ(other.Say("?TERMIN"), "VELTRANUM") << "the boot ROM has its own rate";
}

TEST(Transfer, APacketIsStoredOnceOrRefused) {
  RomBench bench;
  bench.Say("?TERMIN");
  bench.Begin("?M");
  const auto packet = [](int number) { return XmodemPacket(number, mainImage); };
  const auto with = [&](std::size_t place, int flips) {
    Bytes damaged = packet(2);
    damaged[place] = static_cast<std::uint8_t>(damaged[place] ^ flips);
    return damaged;
  };
  const Bytes whole = packet(2), lostByte(whole.begin(), whole.end() - 1);
  EXPECT_EQ(bench.Say(packet(0), 0), "\x15") << "nothing is there to be repeated";
  EXPECT_EQ(bench.Say(packet(1), 0), "\x06");
  EXPECT_EQ(bench.Say(packet(1), 0), "\x06");
  for (const Bytes& bad : {with(0, 5), with(1, 1), with(2, 64), with(60, 1), with(131, 128), packet(3),
                           Joined(Bytes{1}, whole), lostByte, Bytes{1}, Joined(Bytes{4}, whole)})
    EXPECT_EQ(bench.Say(bad, Second), "\x15");
  EXPECT_EQ(bench.LastLine(), "boot ROM receives section 1, 1 packets\n");
  EXPECT_EQ(bench.Say(Joined(whole, Bytes{4}), Second).size(), 6U) << "the end is no part of it";
  EXPECT_EQ(bench.device.Rom().images[0], Bytes(mainImage.begin(), mainImage.begin() + 256));
}

TEST(Transfer, AHostThatFallsSilentIsGivenUp) {
  for (const bool first : {true, false}) {
    RomBench bench;
    bench.Say("?TERMIN");
    bench.Begin("?M");
    if (!first) bench.Say(XmodemPacket(1, mainImage));
    bench.Exchange({});
    EXPECT_EQ(bench.LastLine(), "boot ROM waits\n");
    EXPECT_TRUE(bench.Tells("image 1 erased, 0 bytes"));
    EXPECT_EQ(bench.Begin("?M"), "MDLOK\r\n");
    bench.Say(Joined(XmodemPacket(1, mainImage), Bytes{1, 2}));
    bench.device.LineClosed();
    EXPECT_EQ(bench.Say("?TERMIN", Second), "\x15") << "taken for the rest of the packet";
    EXPECT_EQ(bench.Say("?TERMIN"), "VELTRANUM");
  }
}

TEST(RomFaults, BefallTheExchangeThatTheyAreMeantFor) {
  const auto answerTo = [](RomFault fault) {
    RomBench bench(With(2, fault));
    bench.Say("?TERMIN");
    std::string answers = bench.Say("?M") + '|';
    answers += bench.Say("", 30 * Second) + '|';
    return answers + bench.LastLine();
  };
  const std::string waits = "boot ROM waits\n", ready = "boot ROM is ready to erase section 1\n";
  EXPECT_EQ(answerTo(RomFault::Deaf), "||" + waits);
  EXPECT_EQ(answerTo(RomFault::Silent), "||" + ready);
  EXPECT_EQ(answerTo(RomFault::Refuse), "!RT||" + waits);
  EXPECT_EQ(answerTo(RomFault::NegativeAck), "\x15||" + waits);
  EXPECT_EQ(answerTo(RomFault::Twice), "MDLMDL||" + ready);
  EXPECT_EQ(answerTo(RomFault::Late), "|MDL|" + ready);
  EXPECT_EQ(answerTo(RomFault::Sum), "MDL||" + ready);
  EXPECT_EQ(answerTo(RomFault::Cut), "||application runs\n") << "nothing is erased yet";

  RomBench bench(With(1, RomFault::Deaf));
  EXPECT_EQ(bench.Say("?TERMIN"), "");
  EXPECT_TRUE(bench.device.InApplication());

  for (const auto& [fault, expected] : {std::pair{RomFault::Sum, true}, std::pair{RomFault::Twice, false}}) {
    RomBench wrong(With(4, fault));
    wrong.Say("?TERMIN");
    wrong.Begin("?M");
    EXPECT_EQ(wrong.Say("\x04") == std::string("\x06") + "0001", expected);
  }
}

TEST(Images, EveryCutAndEveryChangedByteIsSeen) {
  const Bytes image = unit::MakeImage(Section::Daughter, 999, 384);
  EXPECT_TRUE(unit::Examine(Section::Daughter, image).complete);
  EXPECT_EQ(unit::Examine(Section::Daughter, image).versionHundredths, 999);
  for (auto end = image.begin(); end != image.end(); ++end)
    EXPECT_FALSE(unit::Examine(Section::Daughter, Bytes(image.begin(), end)).complete);
  for (std::size_t place = 0; place < image.size(); ++place) {
    Bytes changed = image;
    changed[place] ^= 0x10;
    EXPECT_FALSE(unit::Examine(Section::Daughter, changed).complete) << place;
  }
  EXPECT_TRUE(unit::Examine(Section::Daughter, Joined(image, Bytes(127, 0))).complete);
  EXPECT_FALSE(unit::Examine(Section::Daughter, Joined(image, Bytes(128, 0))).complete);
  EXPECT_FALSE(unit::Examine(Section::Daughter, Joined(image, Bytes(1, 1))).complete);
}

TEST(ImageFile, GivesBackWhatWasKeptOrIsPutAside) {
  const support::TempFolder folder;
  const std::string path = folder.Path() + "/images";
  std::string trouble = path + ": is damaged, now put aside as ";
  trouble += path + ".damaged; both sections are erased";
  EXPECT_FALSE(unit::LoadImages(path).images) << "no file: as it was delivered";
  const unit::Images images{Bytes(mainImage.begin(), mainImage.begin() + 300), Bytes{}};
  const std::string good = unit::ImageFileText(images);
  support::Put(path, good);
  EXPECT_EQ(unit::LoadImages(path).images, images);
  for (std::size_t at = 0; at < good.size(); at += 7) {
    for (const bool cut : {true, false}) {
      std::string bad = good.substr(0, cut ? at : good.size());
      if (!cut) bad[at] ^= 1;
      support::Put(path, bad);
      const auto loaded = unit::LoadImages(path);
      ASSERT_EQ(loaded.images, unit::Images{}) << at;
      ASSERT_EQ(loaded.trouble, trouble);
    }
  }
}

}  // namespace
}  // namespace unit_test
