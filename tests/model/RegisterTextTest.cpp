// Registers in words: what each setting becomes on the line, and what is read of it.
#include <map>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "model/RegisterTable.h"
#include "model/RegisterText.h"
#include "model/Settings.h"

namespace vc {
namespace {

struct Registers : testing::Test {
  SystemSettings settings;
  RegisterImage image;

  Registers() { InitSettings(settings); }

  std::string Read(std::uint8_t code) {
    for (const RegisterRow& row : RegisterRows()) {
      const int entry = code - row.firstCode;
      if (entry >= 0 && entry < row.count) return CommandText(code, row.make({image, settings}, entry));
    }
    return "no register";
  }
};

TEST_F(Registers, AreReadAsTheyAreSet) {
  settings.limiterEnabled = settings.limiterLinked = 1;
  settings.limiterRelease = 1;
  settings.limiterThreshold = 2;
  settings.agcEnabled = 1;
  settings.agcLinked = 0;
  settings.agcRelease = 3;
  settings.agcGain = 4;
  settings.levelControl[1] = 180;
  settings.bandwidthIndex = 3;
  settings.ihpfCutoff = 230;
  settings.specAverages = 5;
  settings.averagerMode = 1;
  settings.blueGain = -12;
  image.stageAtten[3] = 16384;
  image.stageGain[8] = 32;
  image.stageThreshold[2] = 3277;
  image.stageSpan[6] = 300;
  image.stageSize[1] = 127;
  image.stageSize[2] = 1023;
  image.stageClass[1] = dsp::Finite;
  image.stageClass[2] = dsp::Idle;
  image.stageAdaptive[7] = 1;
  EXPECT_EQ(Read(0), "0 system word = 53428: left level -6.0 dB, bandwidth 8 kHz");
  EXPECT_EQ(Read(4), "4 limiter = 61439: on, linked, release 0.250 s");
  EXPECT_EQ(Read(8), "8 limiter threshold = 5193: -12.0 dB");
  EXPECT_EQ(Read(17), "17 input high-pass = 230: 230 Hz");
  EXPECT_EQ(Read(19),
            "19 automatic gain control = 45286: on, independent, release 50 ms, gain up to 25.0 dB");
  EXPECT_EQ(Read(48), "48 span of position 6 = 300: 300 samples");
  EXPECT_EQ(Read(51), "51 sizes of positions 1 and 2 = 32767: 128 and 256 or more taps");
  EXPECT_EQ(Read(67), "67 adapt threshold of position 2 = 3277: -20.0 dB");
  EXPECT_EQ(Read(77), "77 attenuation of position 3 = 16384: -6.0 dB");
  EXPECT_EQ(Read(85), "85 classes = 7680: 1 finite, 2 idle, 3 adaptive, 4 adaptive, 5 adaptive");
  EXPECT_EQ(Read(88), "88 adaptive stages = 2: 7");
  EXPECT_EQ(Read(112), "112 gain of position 8 = 32: 6.0 dB");
  EXPECT_EQ(Read(151), "151 spectrum averaging = 5397: exponential, 32 averages");
  EXPECT_EQ(Read(158), "158 blue gain = 32: -12.0 dB");
}

// Of every choice that a panel offers, the words differ, and so do the numbers.
TEST_F(Registers, TellEveryChoiceFromTheOthers) {
  struct Choice {
    std::uint8_t code;
    std::int16_t& field;
    int choices;
  };
  for (const Choice& choice : {Choice{4, settings.limiterRelease, 4},
                               {8, settings.limiterThreshold, 4},
                               {19, settings.agcRelease, 4},
                               {20, settings.agcGain, 7},
                               {0, settings.bandwidthIndex, 6}}) {
    std::set<std::string> texts;
    for (int i = 0; i < choice.choices; ++i) {
      choice.field = static_cast<std::int16_t>(i);
      const std::string text = Read(choice.code);
      texts.insert(text.substr(text.find(':')));
    }
    EXPECT_EQ(texts.size(), static_cast<std::size_t>(choice.choices)) << int{choice.code};
  }
}

TEST(RegisterText, ActionsAndRequestsHaveNamesAndWhatTheyAreGiven) {
  const std::map<std::string, std::pair<int, int>> texts{
      {"85 classes = 32767: all stages held", {85, 32767}},
      {"89 reset of stages = 130: 1, 7", {89, 0x82}},
      {"102 broadband stage = 4107: right, piece 11, values 120 to 131", {102, 4107}},
      {"113 reset of broadband stages = 3: left, right", {113, 3}},
      {"127 store = 74: memory 10, auxiliary function 2", {127, 74}},
      {"192 synthesize = 8194: position 3, highpass", {192, 0x2002}},
      {"91 coefficients = 4097: position 2, block 1", {91, 4097}},
      {"232 levels and status", {232, 0}},
      {"200 = 7: not known to this program", {200, 7}}};
  for (const auto& [text, command] : texts) {
    EXPECT_EQ(
        CommandText(static_cast<std::uint8_t>(command.first), static_cast<std::uint16_t>(command.second)),
        text);
  }
}

// Whatever is on the line has words, and no two codes have the same name.
TEST(RegisterText, AnyCodeWithAnyArgumentIsRead) {
  std::map<std::string, int> names;
  for (int code = 0; code < 256; ++code) {
    const auto byte = static_cast<std::uint8_t>(code);
    if (UseOf(byte) != CommandUse::Unknown) ++names[CommandName(byte)];
    for (int argument = 0; argument < 65536; argument += 257) {
      EXPECT_FALSE(CommandText(byte, static_cast<std::uint16_t>(argument)).empty());
    }
  }
  EXPECT_EQ(names.extract("classes").mapped(), 2);  // told apart by the positions in their values
  for (const auto& [name, count] : names) EXPECT_EQ(count, 1) << name;
}

}  // namespace
}  // namespace vc
