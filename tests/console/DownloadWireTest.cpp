// What a change of the record costs on the wire, frame by frame, from the console program itself to a
// listener that is not ours. Expected frames are worked out apart from this program, by other means.
#include <algorithm>

#include <gtest/gtest.h>

#include "FrameListener.h"
#include "Installed.h"

namespace {

using support::Frames;
using support::FrameTexts;

constexpr const char* FreshRegisters = R"(
    M 82 0000; M 55 FF7F; M 56 FF7F; M 00 C090; M 59 FF00; M 71 0300; M 01 C000; M 04 FF7F; M 05 FFCF;
    M 06 FF0F; M 07 FF0F; M 08 7A28; M 09 0000; M 0A 0000; M 0B 0000; M 0C 0000; M 0D 0000; M 0E 0000;
    M 0F 0000; M 10 0000; M 11 C800; M 12 C800; M 13 FF48; M 14 FF08; M 20 4000; M 21 6000; M 22 8000;
    M 23 A000; M 24 4002; M 25 6002; M 26 8002; M 27 A002; M 28 C018; M 29 2E04; M 2A CE01; M 2B 0000;
    M 2C 0000; M 2D 0000; M 2E 0000; M 2F 0000; M 30 0000; M 33 0003; M 34 0000; M 35 0000; M 37 F5F5;
    M 38 0420; M 39 0000; M 3A 0000; M 3B 0000; M 3C 0000; M 3D 0000; M 40 0000; M 41 0000; M 42 7A28;
    M 43 0000; M 44 0000; M 45 0000; M 46 0000; M 47 0000; M 48 0000; M 49 0000; M 4A 0000; M 4B 0000;
    M 4C 0000; M 4D 0000; M 4E 0000; M 4F 0000; M 50 0000; M 51 FF7F; M 52 0000; M 55 FF0F; M 56 0F70;
    M 57 0000; M 58 8200; M 69 1000; M 6A 1000; M 6B 1000; M 6C 1000; M 6D 1000; M 6E 1000; M 6F 1000;
    M 70 1000; M 81 7000; M 97 0101; M 96 0000; M 9E 8000; M 9D 8000;)";

constexpr const char* FreshNoiseReducer = R"(
    L 00 00000000 0E000000 1454733F*2 00000000 3333333F ACC52737 00000000*5; M 66 0000; L 00 0000803F*12;
    M 66 0100; L 00 0000803F*12; M 66 0200; L 00 0000803F*12; M 66 0300; L 00 0000803F*12; M 66 0400;
    L 00 0000803F*12; M 66 0500; L 00 0000803F*12; M 66 0600; L 00 0000803F*12; M 66 0700; L 00 0000803F*12;
    M 66 0800; L 00 0000803F*12; M 66 0900; L 00 0000803F*12; M 66 0A00; L 00 0000803F*8 00000000*4;
    M 66 0B00;)";

constexpr const char* FreshEqualizer = "L 00 FF7FFF7F*10 00000000*2; L 01 00000000*12; M C0 0880;";

struct Step {
  std::string edit;   // of the record
  FrameTexts frames;  // that it sends
};

// From rows "* edit => frame; frame;".
std::vector<Step> Steps(std::string_view rows) {
  std::vector<Step> steps;
  for (std::size_t at = rows.find("* "); at != std::string_view::npos;) {
    const std::size_t next = rows.find("* ", at + 2);
    const std::string_view row = rows.substr(at, next - at);
    const std::size_t arrow = row.find(" =>");
    steps.push_back({std::string(row.substr(2, arrow - 2)), Frames(row.substr(arrow + 3))});
    at = next;
  }
  return steps;
}

// Frames on the line for frames in short.
std::size_t WireCount(const FrameTexts& texts) {
  std::size_t count = 0;
  for (const std::string& text : texts)
    count += text.find(" packets:") == std::string::npos ? 1 : std::stoul(text);
  return count;
}

// The program in a folder of its own, connected, with the first download taken.
struct DownloadWire : testing::Test {
  support::Installed installed{CONSOLE_PROGRAM};
  support::FrameListener listener;
  support::Program console = installed.RunAt(listener.line.Path());
  FrameTexts first = listener.UntilPolls(4);

  FrameTexts After(const std::string& edit, std::size_t count) {
    console.Say("record " + edit);
    return listener.Take(count);
  }

  // Frames too many of one step stand at the head of the next, and behind the last.
  void Check(std::string_view rows) {
    for (const Step& step : Steps(rows)) {
      EXPECT_EQ(After(step.edit, WireCount(step.frames)), step.frames) << step.edit;
    }
    ExpectQuiet();
  }

  // A poll may be on its way; behind the second one every change has gone out.
  void ExpectQuiet() {
    console.Say("get txtComInfo");
    EXPECT_EQ(console.Await("txtComInfo"), "txtComInfo\tConnected COM 1 115200 Baud");
    EXPECT_EQ(listener.UntilPolls(2), FrameTexts());
  }

  // What of a whole download a fresh Mono one does not have.
  FrameTexts New(FrameTexts frames) const {
    std::erase_if(frames, [&](const std::string& frame) { return std::ranges::count(first, frame) > 0; });
    return frames;
  }
};

TEST_F(DownloadWire, FreshRecord) {
  EXPECT_EQ(first, Frames(std::string(FreshRegisters) + FreshNoiseReducer + FreshEqualizer));
  ExpectQuiet();
}

TEST_F(DownloadWire, EveryKindOfFilterAndAChangeWithinIt) {
  Check(R"(
    * filterType(1) 0 => M 55 FF7F; M 56 FF7F; M 59 8000; M 20 4004; M 55 FF0F; M 56 0F70;
    * ch2Delay(1) 1000 => M 2B E803;
    * filterType(1) 1 => M 55 FF7F; M 56 FF7F; M 59 8000; M 20 4000; M 2B 0000; M 55 FF0F; M 56 0F70;
    * ch1Thresh(1) -20 => M 42 CD0C;
    * filterType(1) 2 => M 55 FF7F; M 56 FF7F; M 59 8000; M 33 00FF; M 38 0000; M 42 0000; M 55 FF1F;
        M 56 0F70; M 58 0200; L 00 64000000 03007A28 00000000*10; L 01 00000000*12; M C0 0100;
    * lpfCutoff(1) 900 => L 00 84030000 03007A28 00000000*10; L 01 00000000*12; M C0 0100;
    * filterType(1) 3 => M 55 FF7F; M 56 FF7F; M 59 8000; M 55 FF1F; M 56 0F70;
        L 00 00000000 03007A28 00000000*10; L 01 00000000*12; M C0 0200;
    * hpfAtten(1) 25 => L 00 00000000 03003307 00000000*10; L 01 00000000*12; M C0 0200;
    * filterType(1) 4 => M 55 FF7F; M 56 FF7F; M 59 8000; M 55 FF1F; M 56 0F70;
        L 00 00000A00 03007A28 00000000*10; L 01 00000000*12; M C0 0500;
    * bpfTransSlope(1) 40 => L 00 00000A00 28007A28 00000000*10; L 01 00000000*12; M C0 0500;
    * filterType(1) 5 => M 55 FF7F; M 56 FF7F; M 59 8000; M 55 FF1F; M 56 0F70;
        L 00 00000A00 03007A28 00000000*10; L 01 00000000*12; M C0 0600;
    * bsfHiCutoff(1) 1200 => L 00 0000B004 03007A28 00000000*10; L 01 00000000*12; M C0 0600;
    * filterType(1) 6 => M 55 FF7F; M 56 FF7F; M 59 8000; M 55 FF1F; M 56 0F70;
        L 00 05006400 00003D2F 00000000*10; L 01 00000000*12; M C0 0700;
    * combDepth(1) 30 => L 00 05006400 0000EC77 00000000*10; L 01 00000000*12; M C0 0700;
    * filterType(1) 7 => M 55 FF7F; M 56 FF7F; M 59 8000; M 55 FF1F; M 56 0F70;
        L 00 64000000 03008657 00000000*10; L 01 00000000*12; M C0 0300;
    * notchAtten(1) 20 => L 00 64000000 03003373 00000000*10; L 01 00000000*12; M C0 0300;
    * filterType(1) 8 => M 55 FF7F; M 56 FF7F; M 59 8000; M 4B FF7F; M 55 FF1F; M 56 0F70;
    * mnotchFreq(1,1) 1000 => 64 packets: FFC000 first, 004000 at 512; M C0 0000;
    * filterType(1) 9 => M 55 FF7F; M 56 FF7F; M 59 8000; M 4B 0000; M 55 FF1F; M 56 0F70;
        L 00 64000000 03007A28 00000000*10; L 01 00000000*12; M C0 0400;
    * slotWidth(1) 77 => L 00 64000000 4D007A28 00000000*10; L 01 00000000*12; M C0 0400;
    * filterType(1) 10 => M 55 FF7F; M 56 FF7F; M 59 8000; M 4B FF7F; M 55 FF1F; M 56 0F70;
    * mslotFreq(1,16) 500 => 64 packets: FFC000 first, 7FBFFF at 512; M C0 0000;
    * filterType(1) 11 => M 55 FF7F; M 56 FF7F; M 59 8000; M 55 FF1F; M 56 0F70;
    * sifCurve(1,100) -6 => 64 packets: FFC013 first, 0CFFEC at 512; M C0 0000;
    * filterType(1) 12 => M 55 FF7F; M 56 FF7F; M 59 8000; M 55 FF1F; M 56 0F70;
    * hiResCurve(1,459) -6 => 64 packets: 000013 first, 0D3FEC at 512; M C0 0000;
    * filterType(1) 13 => M 55 FF7F; M 56 FF7F; M 59 8000; M 4B 0000; M 55 FF1F; M 56 0F70;
        L 00 FF7FFF7F*10 00000000*2; L 01 00000000*12; M C0 0800;
    * bandGain(1,19) 12 => L 00 FF7FFF7F*9 FF7F2720 00000000*2; L 01 00000000*12; M C0 0800;
    * filterType(1) 14 => M 55 FF7F; M 56 FF7F; M 59 8000; M 55 FF2F; M 56 0F70; L 00 FF7F53E3 AF5558B9
        00000000 AC1C0000 53E3AF55 58B90000 0000AC1C 000053E3 AF5558B9 00000000 AC1C0000 53E3AF55;
        L 01 58B90000 0000AC1C 00000000*10; M C0 0900;
    * parBoost(1,1) -12 => L 00 FF7F53E3 AF5558B9 00000000 AC1C0000 53E3AF55 58B90000 0000AC1C 05F453E3
        AF5558B9 00000000 AC1C0000 53E3AF55; L 01 58B90000 0000AC1C 00000000*10; M C0 0900;
    * filterType(1) 15 => M 55 FF7F; M 56 FF7F; M 59 8000; M 55 FF1F; M 56 0F70;
        L 00 05006400 00001488 00000000*10; L 01 00000000*12; M C0 0A00;
    * combHarmonic(1) 1 => L 00 02006400 0000EC77 00000000*10; L 01 00000000*12; M C0 0A00;
    * filterType(1) 16 => M 55 FF7F; M 56 FF7F; M 59 8000; M 55 FF3F; M 56 0F70;
        L 00 CDCCCC00 33333300 000F0080 000F1000 00000000*8; L 01 00000000*12; M C0 0900;
    * lceAttack(1) 5 => L 00 00000008 33333300 000F0080 000F1000 00000000*8; L 01 00000000*12; M C0 0900;)");
}

TEST_F(DownloadWire, EveryKindOfEqualizerAndBroadbandStage) {
  Check(std::string(R"(
    * eqBandGain(9,0) 20 => L 00 CD0CFF7F FF7FFF7F*9 00000000*2; L 01 00000000*12; M C0 0880;
    * eqType(1) 1 => 16 packets: 008000 first, 727FFF at 128; M C0 0080;
    * edgeCurve(1,0) -6 => 16 packets: 004027 first, 724026 at 128; M C0 0080;
    * eqType(1) 2 => M 56 1770; L 00 FF7F53E3 AF5558B9 00000000 AC1C0000 53E3AF55 58B90000 0000AC1C 000053E3
        AF5558B9 00000000 AC1C0000 53E3AF55; L 01 58B90000 0000AC1C 00000000*10; M C0 0980;
    * eqParLevel(9) 180 => L 00 264053E3 AF5558B9 00000000 AC1C0000 53E3AF55 58B90000 0000AC1C 000053E3
        AF5558B9 00000000 AC1C0000 53E3AF55; L 01 58B90000 0000AC1C 00000000*10; M C0 0980;
    * eqParBoost(9,1) -12 => L 00 264053E3 AF5558B9 00000000 AC1C0000 53E3AF55 58B90000 0000AC1C 05F453E3
        AF5558B9 00000000 AC1C0000 53E3AF55; L 01 58B90000 0000AC1C 00000000*10; M C0 0980;
    * eqType(1) 3 => M 56 1F70; L 00 CDCCCC00 33333300 000F0080 000F1000 00000000*8; L 01 00000000*12;
        M C0 0980;
    * eqLceCompThresh(9) -18 => L 00 CDCCCC00 33333300 000F0080 030C1000 00000000*8; L 01 00000000*12;
        M C0 0980;
    * eqType(1) 0 => M 56 0F70; L 00 CD0CFF7F FF7FFF7F*9 00000000*2; L 01 00000000*12; M C0 0880;
    * broadbandType(1) 1 => L 00 00000000 0E000000 0E4E563F*2 00000000 3333333F ACC52737 00000000*5;
        M 66 0000; L 00 00000000*12; M 66 0100; L 00 00000000*12; M 66 0200; L 00 00000000*12; M 66 0300;
        L 00 00000000*12; M 66 0400; L 00 00000000*12; M 66 0500; L 00 00000000*12; M 66 0600;
        L 00 00000000*12; M 66 0700; L 00 00000000*12; M 66 0800; L 00 00000000*12; M 66 0900;
        L 00 00000000*12; M 66 0A00; L 00 00000000*12; M 66 0B00;
    * noiseEqVals(1,7) 0.5 => L 00 00000000*6 0000003F*6; M 66 0400;
    * filterAtten(7) 16384 => M 51 0040;
    * broadbandType(1) 0 => )") +
        FreshNoiseReducer);
}

// Its register or its block; what is taken back before the tick, or belongs to another kind, costs nothing.
TEST_F(DownloadWire, OnlyDifferencesGoOut) {
  Check(R"(
    * levelControl(1) 200 => M 00 C890;
    * filterType(1) 2 => M 55 FF7F; M 56 FF7F; M 59 8000; M 33 00FF; M 38 0000; M 42 0000; M 55 FF1F;
        M 56 0F70; M 58 0200; L 00 64000000 03007A28 00000000*10; L 01 00000000*12; M C0 0100;
    * lpfCutoff(1) 900 => L 00 84030000 03007A28 00000000*10; L 01 00000000*12; M C0 0100;
    * limiterThreshold 2 => M 08 4914;
    * averagerMode 4 => M 97 4141;
    * averagerMode 3 => M 97 0101;)");
  console.Say("record lpfCutoff(1) 950\nrecord bandGain(1,0) 3\nrecord lpfCutoff(1) 900");  // in one tick
  ExpectQuiet();
}

TEST_F(DownloadWire, StereoLinkedServesBothSidesFromTheLeft) {
  const FrameTexts download = After("configMode 1", 140);
  ASSERT_EQ(download.size(), 140U);
  EXPECT_EQ(New(download), Frames(R"(
    M 21 6104; M 27 A106; M 29 FF1C; M 2A CF81; M 33 0303; M 39 0420; M 43 7A28; M 52 FF7F; M 55 FF01;
    M 56 0970; M 58 C300; M 66 0010; M 66 0110; M 66 0210; M 66 0310; M 66 0410; M 66 0510; M 66 0610;
    M 66 0710; M 66 0810; M 66 0910; M 66 0A10; M 66 0B10; M C0 0890;)"));
  Check(R"(
    * filterType(1) 2 => M 55 FF7F; M 56 FF7F; M 59 C000; M 33 FFFF; M 38 0000; M 39 0000; M 42 0000;
        M 43 0000; M 55 FF13; M 56 0970; M 58 0300; L 00 64000000 03007A28 00000000*10; L 01 00000000*12;
        M C0 0100; L 00 64000000 03007A28 00000000*10; L 01 00000000*12; M C0 0110;
    * lpfCutoff(1) 900 => L 00 84030000 03007A28 00000000*10; L 01 00000000*12; M C0 0100;
        L 00 84030000 03007A28 00000000*10; L 01 00000000*12; M C0 0110;
    * filterType(1) 8 => M 55 FF7F; M 56 FF7F; M 59 C000; M 4B FF7F; M 4C FF7F; M 55 FF13; M 56 0970;
    * mnotchFreq(1,1) 1000 => 64 packets: FFC000 first, 004000 at 512; M C0 0000;
    * eqType(1) 3 => M 56 1B70; L 00 CDCCCC00 33333300 000F0080 000F1000 00000000*8; L 01 00000000*12;
        M C0 0980; L 00 CDCCCC00 33333300 000F0080 000F1000 00000000*8; L 01 00000000*12; M C0 0990;
    * eqType(1) 1 => M 56 0970; 16 packets: 008000 first, 727FFF at 128; M C0 0080;
    * broadbandParms.coefC(1) 0.5 => L 00 00000000 0E000000 1454733F*2 0000003F 3333333F ACC52737 00000000*5;
        M 66 0000; L 00 00000000 0E000000 1454733F*2 0000003F 3333333F ACC52737 00000000*5; M 66 0010;
    * channelSwap 1 => M 2A CFC1;)");
  // Unlinked, the right side gets what it has of its own.
  Check(R"(
    * configMode 2 => M 55 FF7F; M 56 FF7F; M 59 4000; M 29 3F04; M 2A C141; M 33 03FF; M 39 0420; M 43 7A28;
        M 4C 0000; M 55 FF11; M 56 0970; M 58 4300; L 00 00000000 0E000000 1454733F*2 00000000 3333333F
        ACC52737 00000000*5; M 66 0010; L 00 FF7FFF7F*10 00000000*2; L 01 00000000*12; M C0 0890;
    * filterActive(4) 1 => M 29 FF1C; M 2A C741;
    * eqActive(2) 1 => M 2A CF41;
    * filterType(4) 12 => M 55 FF7F; M 56 FF7F; M 59 4000; M 33 FFFF; M 39 0000; M 43 0000; M 4C FF7F;
        M 55 FF13; M 56 0970; M 58 0300;
    * hiResCurve(4,459) -6 => 64 packets: 000013 first, 0D3FEC at 512; M C0 0010;
    * filterType(1) 0 => M 55 FF7F; M 56 FF7F; M 59 8000; M 20 4004; M 33 FF03; M 38 0420; M 42 7A28;
        M 4B 0000; M 55 FF03; M 56 0970; M 58 8300;
    * ch2DelayChan(1) 1 => M 20 4100;
    * broadbandActive(2) 1 => M 20 5900; M 21 7964;
    * yellowSignal 9 => M 28 C718; M 96 4040;
    * eqType(2) 1 => 16 packets: 008000 first, 727FFF at 128; M C0 0090;
    * numFilters 2 => M 55 FF7F; M 56 FF7F; M 59 3000; M 22 8618; M 23 A71C; M 34 0303; M 3A 0420; M 3B 0420;
        M 44 7A28; M 45 7A28; M 55 0702; M 56 0970; M 58 B300;)");
}

TEST_F(DownloadWire, AnotherBandwidthBuildsEverythingAnew) {
  After("filterType(1) 2", 12);
  const FrameTexts download = After("bandwidthIndex 5", 116);
  ASSERT_EQ(download.size(), 116U);
  EXPECT_EQ(New(download), Frames(R"(
    M 00 C0F0; M 33 00FF; M 38 0000; M 42 0000; M 55 FF1F; M 58 0200; L 00 64000000 03007A28 00000000*10;
    M C0 0100; L 00 00000000 48000000 FA697D3F*2 00000000 3333333F ACC52737 00000000*5;)"));
  Check(R"(
    * filterType(1) 12 => M 55 FF7F; M 56 FF7F; M 59 8000; M 4B FF7F; M 55 FF1F; M 56 0F70;
    * hiResCurve(1,459) -6 => 61 packets: 000000 first, 0D3FEA at 488; M C0 0000;)");
}

}  // namespace
