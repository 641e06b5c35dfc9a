#include "model/RegisterReadings.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

#include "link/Status.h"
#include "model/Bandwidth.h"
#include "text/Convert.h"
#include "text/modString.h"

namespace vc {
namespace {

using Word = std::uint16_t;

std::size_t Bits(Word value, int lowest, unsigned mask) {
  return static_cast<std::size_t>(value >> lowest & mask);
}
bool Bit(Word value, int place) { return Bits(value, place, 1U) != 0; }
std::string Count(std::size_t number) { return std::to_string(number); }
std::string OnOff(bool on) { return on ? "on" : "off"; }
std::string SideName(int entry) { return entry == 0 ? "left" : "right"; }

// Of nothing there is no level.
std::string Decibels(double ratio) {
  constexpr double shortest = 0.05;  // dB, which would be read as minus nothing
  if (ratio <= 0) return "-inf";
  const double decibels = 20 * std::log10(ratio);
  return FixedText(std::abs(decibels) < shortest ? 0 : decibels, 1);
}

// The places of the chain that can be listened to, by their codes.
std::string SourceText(std::size_t code) {
  struct Group {
    std::size_t first, position;
    const char* what;
  };
  constexpr std::array<Group, 6> groups{{{2, 1, "in of "},
                                         {6, 1, "out of "},
                                         {10, 1, "second out of "},
                                         {18, 5, "in of "},
                                         {22, 5, "out of "},
                                         {26, 5, "second out of "}}};
  constexpr std::size_t perGroup = 4;
  for (const Group& group : groups) {
    if (code >= group.first && code < group.first + perGroup) {
      return group.what + Count(code - group.first + group.position);
    }
  }
  switch (code) {
    case 0:
    case 1:
      return SideName(static_cast<int>(code)) + " in";
    case 14:
    case 15:
      return SideName(static_cast<int>(code - 14)) + " equalizer";
    case 30:
    case 31:
      return SideName(static_cast<int>(code - 30)) + " line out";
    default:
      return "source " + Count(code);
  }
}

std::string ClassText(std::size_t stageClass) {
  constexpr std::array<const char*, 8> names{"adaptive", "finite",  "parametric", "compressor",
                                             "class 4",  "class 5", "class 6",    "idle"};
  return names.at(stageClass);
}

std::string Listed(std::string text, const std::string& more) {
  return text.empty() ? more : std::move(text) + ", " + more;
}

std::string TraceAveraging(std::size_t byte) {
  constexpr std::size_t exponential = 0x10, peakHold = 0x40;
  if ((byte & peakHold) != 0) return "peak hold";
  return (byte & exponential) != 0 ? "exponential, " + Count(std::size_t{1} << (byte & 15U)) + " averages"
                                   : "newest alone";
}

std::string TraceRun(std::size_t byte) {
  constexpr std::size_t stands = 0x80, anew = 0x40;
  return std::string((byte & stands) != 0 ? "stands" : "runs") + ((byte & anew) != 0 ? ", begins anew" : "");
}

// A byte a trace, that of the first one low.
std::string OfBothTraces(Word value, std::string (*read)(std::size_t byte)) {
  const std::string first = read(Bits(value, 0, 255U)), second = read(Bits(value, 8, 255U));
  return first == second ? first : "trace 1 " + first + "; trace 2 " + second;
}

std::string ThreeBitClasses(Word value, std::span<const int> positions, std::span<const int> places) {
  if (value == registers::HoldAllStages) return "all stages held";
  std::string text;
  for (std::size_t i = 0; i < positions.size(); ++i) {
    text = Listed(text, std::to_string(positions[i]) + " " + ClassText(Bits(value, places[i], 7U)));
  }
  return text;
}

std::string BandwidthText(Word bits) {
  if (bits == registers::OptionBandwidthWord) {
    return std::string(Bandwidths()[registers::OptionBandwidthIndex].name) + " with the option";
  }
  const auto& words = registers::BandwidthWords;
  const auto* const found = std::ranges::find(words, bits);
  return found == words.end()
             ? "unknown bandwidth"
             : std::string(Bandwidths()[static_cast<std::size_t>(found - words.begin())].name);
}

}  // namespace

namespace reading {

std::string Number(Word value, int) { return std::to_string(value); }
std::string Hex(Word value, int) { return "0x" + HexPadded(value, 4); }

std::string SystemWord(Word value, int) {
  constexpr Word bandwidthMask = 0xF000;
  return "left level " + Level(value & 255U, 0) + " dB, bandwidth " +
         BandwidthText(static_cast<Word>(value & bandwidthMask));
}

std::string Level(Word value, int) {
  constexpr double unity = 192, stepsPerDecibel = 2;
  return FixedText((value - unity) / stepsPerDecibel, 1);
}

std::string Limiter(Word value, int) {
  const std::size_t release = LimiterReleaseSeconds.size() - 1 - Bits(value, 12, 3U);
  return OnOff(Bit(value, 15)) + (Bit(value, 14) ? ", linked" : ", independent") + ", release " +
         std::string(LimiterReleaseSeconds.at(release));
}

std::string InputStage(Word value, int) {
  return "input highpass " + OnOff(Bit(value, 15)) + ", output highpass " + OnOff(Bit(value, 14));
}

std::string OutputStage(Word value, int) { return value == 0 ? "not processed" : "processed"; }

std::string LimiterThreshold(Word value, int) {
  return Decibels(value / static_cast<double>(FullScaleLevel));
}

std::string AgcGain(Word value, int) {
  constexpr double unity = 4095;
  const Word gain = value & 4095U;
  return gain == 0 ? "no" : Decibels(unity / gain);
}

std::string Agc(Word value, int) {
  return OnOff(Bit(value, 15)) + (Bit(value, 14) ? ", linked" : ", independent") + ", release " +
         std::string(AgcReleaseMilliseconds.at(Bits(value, 12, 3U))) + " ms, gain up to " + AgcGain(value, 0);
}

std::string StageRouting(Word value, int) {
  return "B " + SourceText(Bits(value, 10, 31U)) + ", A " + SourceText(Bits(value, 5, 31U)) + ", C " +
         SourceText(Bits(value, 0, 31U));
}

std::string ChannelRouting(Word value, int) {
  const std::string first = SourceText(Bits(value, 10, 31U)), second = SourceText(Bits(value, 5, 31U));
  return "equalizer hears " + first + (first == second ? "" : " and " + second) + ", analyzer " +
         SourceText(Bits(value, 0, 31U));
}

std::string OutputRouting(Word value, int) {
  return "left " + SourceText(Bits(value, 5, 31U)) + ", right " + SourceText(Bits(value, 0, 31U)) +
         (Bit(value, 14) ? ", inputs swapped" : "") + (Bit(value, 15) ? ", linked" : "");
}

// A byte tells no more than 256.
std::string Sizes(Word value, int) {
  const auto taps = [](std::size_t byte) { return Count(byte + 1) + (byte == 255 ? " or more" : ""); };
  return taps(Bits(value, 8, 255U)) + " and " + taps(Bits(value, 0, 255U));
}

std::string Adaptation(Word value, int) {
  const std::size_t mu = Bits(value, 0, 2047U);
  return (mu == 0 ? std::string("frozen") : "rate word " + Count(mu)) + ", " + Count(Bits(value, 11, 31U)) +
         " blocks";
}

std::string AdaptSelection(Word value, int entry) {
  constexpr std::array<const char*, 7> names{"always",         "input above",  "input below",
                                             "output above",   "output below", "reference above",
                                             "reference below"};
  std::string text;
  for (int i = 0; i < 4; ++i) {
    const std::size_t choice = Bits(value, 12 - 4 * i, 15U);
    const std::string name = choice < names.size() ? names[choice] : "choice " + Count(choice);
    std::string numbered = std::to_string(4 * entry + i + 1);
    numbered.append(" ").append(name);
    text = Listed(text, numbered);
  }
  return text;
}

std::string Threshold(Word value, int) { return Decibels(value / 32767.0); }
std::string Attenuation(Word value, int) { return Decibels(1 - value / 32768.0); }
std::string Gain(Word value, int) { return Decibels(value / 16.0); }
std::string TraceGain(Word value, int) { return Decibels(value / 128.0); }

std::string Positions(Word value, int) {
  constexpr int positions = 8;
  std::string text;
  for (int p = 1; p <= positions; ++p) {
    if (Bit(value, positions - p)) text = Listed(text, std::to_string(p));
  }
  return text.empty() ? "none" : text;
}

std::string FirstClasses(Word value, int) {
  constexpr std::array positions{1, 2, 3, 4, 5}, places{12, 9, 6, 3, 0};
  return ThreeBitClasses(value, positions, places);
}

std::string LastClasses(Word value, int) {
  constexpr std::array positions{6, 9, 10}, places{12, 3, 0};
  return ThreeBitClasses(value, positions, places);
}

std::string Borrowing(Word value, int) {
  struct Field {
    int place;
    unsigned mask;
  };
  constexpr std::array<Field, 6> fields{{{13, 7}, {10, 7}, {7, 7}, {4, 7}, {2, 3}, {0, 3}}};
  std::string text;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const std::size_t extra = Bits(value, fields[i].place, fields[i].mask);
    if (extra != 0) text = Listed(text, Count(i + 1) + " borrows " + Count(extra));
  }
  return text.empty() ? "none" : text;
}

std::string LevelControls(Word value, int) {
  if (value == 112) return "shown";
  return value == 96 ? "hidden" : std::to_string(value);
}

std::string Averaging(Word value, int) { return OfBothTraces(value, TraceAveraging); }
std::string AnalyzerRun(Word value, int) { return OfBothTraces(value, TraceRun); }

std::string Sides(Word value, int) {
  std::string text;
  if (Bit(value, 0)) text = "left";
  if (Bit(value, 1)) text = Listed(text, "right");
  return text.empty() ? "none" : text;
}

std::string BroadbandPiece(Word value, int) {
  constexpr std::size_t valuesPerPiece = 12;
  const std::size_t piece = Bits(value, 0, 4095U);
  const std::string text = SideName(static_cast<int>(Bits(value, 12, 15U))) + ", piece " + Count(piece);
  if (piece == 0) return text + ", parameters";
  return text + ", values " + Count((piece - 1) * valuesPerPiece) + " to " +
         Count(piece * valuesPerPiece - 1);
}

std::string MemoryPlace(Word value, int) {
  return "memory " + Count(Bits(value, 0, 3U) | Bits(value, 3, 12U)) + ", auxiliary function " +
         Count(Bits(value, 2, 7U));
}

std::string Synthesis(Word value, int) {
  constexpr std::array<const char*, 12> names{"coefficients of the host",
                                              "lowpass",
                                              "highpass",
                                              "notch",
                                              "slot",
                                              "bandpass",
                                              "bandstop",
                                              "comb",
                                              "graphic bands",
                                              "parametric or compressor",
                                              "inverse comb",
                                              "compressor"};
  const std::size_t algorithm = Bits(value, 0, 4095U);
  return "position " + Count(Bits(value, 12, 15U) + 1) + ", " +
         (algorithm < names.size() ? names[algorithm] : "algorithm " + Count(algorithm));
}

std::string CoefficientBlock(Word value, int) {
  return "position " + Count(Bits(value, 12, 15U) + 1) + ", block " + Count(Bits(value, 0, 31U));
}

}  // namespace reading

namespace entryName {

std::string Alone(int) { return {}; }
std::string Side(int entry) { return ", " + SideName(entry); }
std::string Position(int entry) { return " of position " + std::to_string(entry + 1); }
std::string Pair(int entry) {
  return " of positions " + std::to_string(2 * entry + 1) + " and " + std::to_string(2 * entry + 2);
}
std::string Four(int entry) {
  return " of positions " + std::to_string(4 * entry + 1) + " to " + std::to_string(4 * entry + 4);
}
std::string HalfOfLong(int entry) {
  return " value " + std::to_string(entry / 2 + 1) + (entry % 2 == 0 ? ", high" : ", low");
}

}  // namespace entryName
}  // namespace vc
