#include "model/RegisterTable.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "link/Frames.h"
#include "model/Kinds.h"
#include "model/Stages.h"
#include "text/Convert.h"

namespace vc {
namespace {

using Source = RegisterSource;
using Word = std::uint16_t;

Word ToWord(int value) { return static_cast<Word>(value & 0xFFFF); }

// A value of a choice, and what stands for every choice outside the list.
template <std::size_t Count>
Word Choice(const std::array<Word, Count>& words, int choice, Word otherwise) {
  return choice >= 0 && choice < static_cast<int>(Count) ? words[static_cast<std::size_t>(choice)]
                                                         : otherwise;
}

Word SystemWordOf(const Source& s, int) {
  return ToWord((s.settings.levelControl[1] & 255) + BandwidthBits(s.settings));
}
Word RightLevel(const Source& s, int) { return ToWord(s.settings.levelControl[2] & 255); }
Word Limiter(const Source& s, int) {
  const SystemSettings& r = s.settings;
  return ToWord(r.limiterEnabled * 32768 + r.limiterLinked * 16384 + (3 - r.limiterRelease) * 4096 + 4095);
}
Word InputStage(const Source& s, int) {
  const SystemSettings& r = s.settings;
  return ToWord(r.procEnabled != 0 ? r.ihpfEnabled * 32768 + r.ohpfEnabled * 16384 + 4095 : 4095);
}
Word OutputStage(const Source& s, int) { return s.settings.procEnabled != 0 ? Word{4095} : Word{0}; }
Word LimiterThreshold(const Source& s, int) {
  return Choice<4>({10362, 7336, 5193, 3677}, s.settings.limiterThreshold, 10362);
}
Word ReservedLong(const Source& s, int entry) {
  const std::int32_t value = s.settings.reservedLongs[entry / 2 + 1];
  if (entry % 2 == 0) return ToWord(value / 65536);
  const Word sign = value < 0 ? Word{0x8000} : Word{0};
  return static_cast<Word>(sign | ToWord(value));
}
Word InputCutoff(const Source& s, int) { return ToWord(s.settings.ihpfCutoff); }
Word OutputCutoff(const Source& s, int) { return ToWord(s.settings.ohpfCutoff); }
Word AgcGainWord(const Source& s, int) {
  return Choice<7>({2303, 1295, 728, 410, 230, 130, 73}, s.settings.agcGain, 2303);
}
Word Agc(const Source& s, int) {
  const SystemSettings& r = s.settings;
  return ToWord(r.agcEnabled * 32768 + r.agcLinked * 16384 + r.agcRelease * 4096 + AgcGainWord(s, 0));
}
Word StageRouting(const Source& s, int entry) {
  const int p = entry + 1;
  return ToWord(s.image.stageSrcB[p] * 1024 + s.image.stageSrcA[p] * 32 + s.image.stageSrcC[p]);
}

// The analyzer tap of a signal code.
int TapOf(const Source& s, int signal) {
  constexpr int outputTap = 30;
  constexpr std::array<int, 6> fixed{0, 1, 14, 15, 30, 31};
  if (signal >= 0 && signal < 6) return fixed[static_cast<std::size_t>(signal)];
  if (signal <= 11) return s.image.stageOut[PositionOfStage(s.settings.configMode, signal - 5)];
  if (signal <= 13) return s.image.stageOut[signal - 5];
  return outputTap;
}
Word ChannelRouting(const Source& s, int entry) {
  const int source = s.image.equalizerSource[entry + 1];
  const int signal = entry == 0 ? s.settings.yellowSignal : s.settings.blueSignal;
  return ToWord(source * 1024 + source * 32 + TapOf(s, signal));
}
Word OutputRouting(const Source& s, int) {
  const int sources = s.image.outputSource[1] * 32 + s.image.outputSource[2];
  const int swap = s.settings.channelSwap != 0 ? 16384 : 0;
  const int linked = s.settings.configMode == ConfigMode::StereoLinked ? 32768 : 0;
  return ToWord(sources | swap | linked);
}
Word Span(const Source& s, int entry) {
  constexpr std::array<int, 6> masks{32767, 16383, 8191, 8191, 4095, 4095};
  return ToWord(std::clamp<int>(s.image.stageSpan[entry + 1], 0, masks[static_cast<std::size_t>(entry)]));
}
int SizeByte(const Source& s, int position) { return std::clamp<int>(s.image.stageSize[position], 0, 255); }
Word SizePair(const Source& s, int entry) {
  return ToWord(SizeByte(s, 2 * entry + 1) * 256 + SizeByte(s, 2 * entry + 2));
}
Word EqualizerSizes(const Source& s, int) { return ToWord(SizeByte(s, 9) * 256 + SizeByte(s, 10)); }
Word Adaptation(const Source& s, int entry) {
  const int p = entry + 1;
  const int blocks = (s.image.stageBlocks[p] & 31) * 2048;
  const bool frozen = s.image.stageFreeze[p] == 0 || s.settings.adaptEnabled == 0;
  return ToWord(frozen ? blocks : blocks + (s.image.stageMu[p] & 2047));
}
Word AdaptSelect(const Source& s, int entry) {
  int word = 0;
  for (int i = 1; i <= 4; ++i) word = word * 16 + (s.image.stageAdaptSelect[4 * entry + i] & 15);
  return ToWord(word);
}
Word Threshold(const Source& s, int entry) { return ToWord(s.image.stageThreshold[entry + 1]); }
Word Normalize(const Source& s, int) {
  int word = 0;
  for (int p = 1; p <= 8; ++p) word = word * 2 + (s.image.stageNormalize[p] & 1);
  return ToWord(word);
}
Word Attenuation(const Source& s, int entry) { return ToWord(s.image.stageAtten[entry + 1]); }
Word FirstClasses(const Source& s, int) {
  int word = 0;
  for (int p = 1; p <= 5; ++p) word = word * 8 + s.image.stageClass[p];
  return ToWord(word);
}
Word LastClasses(const Source& s, int) {
  return ToWord(s.image.stageClass[6] * 4096 + s.image.stageClass[9] * 8 + s.image.stageClass[10]);
}
Word Borrowing(const Source& s, int) {
  const auto& extra = s.settings.extraStages;
  return ToWord((extra[1] & 7) << 13 | (extra[2] & 7) << 10 | (extra[3] & 7) << 7 | (extra[4] & 7) << 4 |
                (extra[5] & 3) << 2 | (extra[6] & 3));
}
Word AdaptiveStages(const Source& s, int) {
  int word = 0;
  for (int p = 1; p <= 8; ++p) word = word * 2 + (s.image.stageAdaptive[p] & 1);
  return ToWord(word);
}
Word Gain(const Source& s, int entry) { return ToWord(s.image.stageGain[entry + 1]); }
Word LevelControls(const Source& s, int) { return s.settings.levelControlsShown != 0 ? Word{112} : Word{96}; }
Word Averaging(const Source& s, int) {
  const int mode = s.settings.averagerMode;
  return ToWord((s.settings.specAverages & 15) * 257 + (mode == 1 ? 4112 : 0) + (mode == 4 ? 16448 : 0));
}
Word AnalyzerRunning(const Source& s, int) {
  const int clear = s.analyzerClear ? registers::AnalyzerClear : 0;
  return ToWord(clear | (s.settings.specRun == 0 ? registers::AnalyzerStands : 0));
}
Word TraceGain(std::int16_t decibels) { return ToWord(Nearest32(std::pow(10.0, decibels / 20.0) * 128.0)); }
Word BlueGain(const Source& s, int) { return TraceGain(s.settings.blueGain); }
Word YellowGain(const Source& s, int) { return TraceGain(s.settings.yellowGain); }

namespace entries = entryName;

constexpr std::array Rows{
    RegisterRow{0, 1, "system word", "left level, bandwidth", "", SystemWordOf, reading::SystemWord},
    RegisterRow{1, 1, "right level", "`levelControl[2]`", "dB", RightLevel, reading::Level},
    RegisterRow{4, 1, "limiter", "on, linked, 3 - release, 4095", "s", Limiter, reading::Limiter},
    RegisterRow{5, 1, "input stage", "input and output high-pass on, 4095", "", InputStage,
                reading::InputStage},
    RegisterRow{6, 2, "output stage", "4095 with processing, else 0", "", OutputStage, reading::OutputStage,
                entries::Side},
    RegisterRow{8, 1, "limiter threshold", "by `limiterThreshold`", "dB", LimiterThreshold,
                reading::LimiterThreshold},
    RegisterRow{9, 8, "reserved", "`reservedLongs`, high word then low word", "", ReservedLong, reading::Hex,
                entries::HalfOfLong},
    RegisterRow{17, 1, "input high-pass", "`ihpfCutoff`", "Hz", InputCutoff, reading::Number},
    RegisterRow{18, 1, "output high-pass", "`ohpfCutoff`", "Hz", OutputCutoff, reading::Number},
    RegisterRow{19, 1, "automatic gain control", "on, linked, release, gain word", "dB", Agc, reading::Agc},
    RegisterRow{20, 1, "gain word", "by `agcGain`", "dB", AgcGainWord, reading::AgcGain},
    RegisterRow{32, 8, "stage routing", "sources B, A, C of positions 1 to 8", "", StageRouting,
                reading::StageRouting, entries::Position},
    RegisterRow{40, 2, "channel routing", "the equalizer's source twice, the analyzer tap", "",
                ChannelRouting, reading::ChannelRouting, entries::Side},
    RegisterRow{42, 1, "output routing", "linked, swap, left source, right source", "", OutputRouting,
                reading::OutputRouting},
    RegisterRow{43, 6, "span", "prediction span or delay of positions 1 to 6", "samples", Span,
                reading::Number, entries::Position},
    RegisterRow{51, 3, "sizes", "taps minus one of a pair of positions, each at most 255", "taps", SizePair,
                reading::Sizes, entries::Pair},
    RegisterRow{55, 1, "equalizer sizes", "the same of positions 9 and 10", "taps", EqualizerSizes,
                reading::Sizes},
    RegisterRow{56, 6, "adaptation", "blocks, and Mu unless frozen, of positions 1 to 6", "", Adaptation,
                reading::Adaptation, entries::Position},
    RegisterRow{64, 2, "adapt selection", "a nibble each of four positions", "", AdaptSelect,
                reading::AdaptSelection, entries::Four},
    RegisterRow{66, 8, "adapt threshold", "linear, positions 1 to 8", "dB", Threshold, reading::Threshold,
                entries::Position},
    RegisterRow{74, 1, "normalization", "a bit each of positions 1 to 8", "", Normalize, reading::Positions},
    RegisterRow{75, 8, "attenuation", "positions 1 to 8", "dB", Attenuation, reading::Attenuation,
                entries::Position},
    RegisterRow{85, 1, "classes", "three bits each of positions 1 to 5", "", FirstClasses,
                reading::FirstClasses},
    RegisterRow{86, 1, "classes", "three bits each of positions 6, 9, 10", "", LastClasses,
                reading::LastClasses},
    RegisterRow{87, 1, "borrowing", "`extraStages` of positions 1 to 6", "", Borrowing, reading::Borrowing},
    RegisterRow{88, 1, "adaptive stages", "a bit each of positions 1 to 8", "", AdaptiveStages,
                reading::Positions},
    RegisterRow{105, 8, "gain", "positions 1 to 8", "dB", Gain, reading::Gain, entries::Position},
    RegisterRow{129, 1, "level controls", "112 while they are shown, else 96", "", LevelControls,
                reading::LevelControls},
    RegisterRow{151, 1, "spectrum averaging", "`specAverages` twice, averager mode", "", Averaging,
                reading::Averaging},
    RegisterRow{150, 1, "analyzer run", "0x4040 to begin anew, 0x8080 while it stands", "", AnalyzerRunning,
                reading::AnalyzerRun},
    RegisterRow{158, 1, "blue gain", "linear, 128 is 0 dB", "dB", BlueGain, reading::TraceGain},
    RegisterRow{157, 1, "yellow gain", "linear, 128 is 0 dB", "dB", YellowGain, reading::TraceGain},
};

constexpr std::array Commands{
    CommandRow{registers::StageReset, "reset of stages", false, reading::Positions},
    CommandRow{command::ReadCoefficients, "coefficients", true, reading::CoefficientBlock},
    CommandRow{registers::BroadbandPiece, "broadband stage", false, reading::BroadbandPiece},
    CommandRow{registers::BroadbandReset, "reset of broadband stages", false, reading::Sides},
    CommandRow{registers::StoreInMemory, "store", false, reading::MemoryPlace},
    CommandRow{command::ConfirmConnection, "connection check", false, nullptr},
    CommandRow{command::Version, "version", true, nullptr},
    CommandRow{command::FirstSpectrum, "spectrum of trace 1", true, nullptr},
    CommandRow{command::FirstSpectrum + 1, "spectrum of trace 2", true, nullptr},
    CommandRow{registers::Synthesize, "synthesize", false, reading::Synthesis},
    CommandRow{command::MainStatus, "levels and status", true, nullptr},
    CommandRow{command::EqualizerStatus, "equalizer levels", true, nullptr},
};

std::string RegisterLines() {
  std::string lines = "| code | register | value | in a trace |\n|---|---|---|---|\n";
  for (const RegisterRow& row : RegisterRows()) {
    std::string codes = std::to_string(row.firstCode);
    if (row.count > 1) codes.append(" to ").append(std::to_string(row.firstCode + row.count - 1));
    const bool plain = *row.unit != '\0';
    lines.append("| ").append(codes).append(" | ").append(row.name).append(" | ").append(row.value);
    lines.append(" | ").append(plain ? row.unit : "words").append(" |\n");
  }
  return lines;
}

std::string CommandLines() {
  std::string lines = "| code | command | answer |\n|---|---|---|\n";
  for (const CommandRow& row : CommandRows()) {
    lines.append("| ").append(std::to_string(row.code)).append(" | ").append(row.name);
    lines.append(" | ").append(row.request ? "data" : "acknowledged").append(" |\n");
  }
  return lines;
}

}  // namespace

std::span<const RegisterRow> RegisterRows() { return Rows; }
std::span<const CommandRow> CommandRows() { return Commands; }

std::uint16_t BandwidthBits(const SystemSettings& settings) {
  constexpr auto option = static_cast<std::int16_t>(registers::OptionBandwidthIndex);
  if (settings.bandwidthIndex == option && settings.unitOptionLatched) return registers::OptionBandwidthWord;
  return Choice(registers::BandwidthWords, settings.bandwidthIndex, registers::BandwidthWords.front());
}

std::string RegisterPage() {
  return "# The unit's registers\n\nIn the order in which a download walks them. Positions are the unit's: "
         "in "
         "the stereo "
         "modes the left filter of\npair p stands at 2p - 1, the right one at 2p; 7 and 8 are the broadband "
         "stages, 9 and "
         "10 the equalizers.\nThis page is made from the program's own table, as are the names and values in "
         "the [line trace](line-trace.md).\n\n" +
         RegisterLines() + "\n## Commands that are no registers\n\n" + CommandLines();
}

}  // namespace vc
