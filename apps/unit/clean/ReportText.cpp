#include "unit/clean/ReportText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string_view>

namespace unit::clean {
namespace {

std::string Fixed(double number, int decimals) {
  const double steps = std::pow(10, decimals);
  if (std::nearbyint(number * steps) == 0) number = 0;  // no "-0.0"
  std::array<char, 64> text;
  const int size = std::snprintf(text.data(), text.size(), "%.*f", decimals, number);
  return {text.data(), static_cast<std::size_t>(size)};
}

std::string Decibels(double amplitude) {
  return amplitude > 0 ? Fixed(20 * std::log10(amplitude), 1) + " dB" : "silence";
}

std::string Loudness(const LevelReport& levels) {
  return levels.loudness ? Fixed(*levels.loudness, 1) + " LUFS" : "-";
}

std::string Line(std::string_view name, const std::string& value) {
  constexpr std::size_t column = 11;
  std::string line(name);
  line.resize(column, ' ');
  return line + value;
}

std::string Columns(std::string_view name, std::string before, const std::string& after) {
  constexpr std::size_t column = 14;
  before.resize(std::max(column, before.size() + 1), ' ');
  return Line(name, before + after);
}

// "1:02:03.250"
std::string Moment(std::uint64_t frame, int rate) {
  const double seconds = std::nearbyint(static_cast<double>(frame) * 1000 / rate) / 1000;
  const auto minutes = static_cast<unsigned long>(seconds / 60);
  std::array<char, 64> text;
  const int size = std::snprintf(text.data(), text.size(), "%lu:%02lu:%06.3f", minutes / 60, minutes % 60,
                                 seconds - 60.0 * static_cast<double>(minutes));
  return {text.data(), static_cast<std::size_t>(size)};
}

std::string AdaptiveText(const CleaningWish& wish, const Deed& deed) {
  if (!deed.adaptive) return "no filter adapts";
  return wish.adaptive == Learning::Kept ? "kept as they were, nothing more learned"
                                         : "learned from the beginning";
}

std::string RoundingText(const Deed& deed) {
  if (!deed.changed) return "none, the sound was not changed";
  if (deed.dithered) return "dithered (TPDF, 1 LSB to either side)";
  if (deed.format.bits != 0) return "rounded to " + std::to_string(deed.format.bits) + " bits, no dither";
  return "none";
}

std::string FormatText(const Deed& deed) {
  std::string text = std::to_string(deed.rate) + " Hz, " + (deed.channels == 1 ? "mono" : "stereo") + ", " +
                     std::string(deed.format.container) + ", " + std::string(deed.format.depth);
  if (!deed.format.remark.empty()) text += " (" + deed.format.remark + ")";
  return text;
}

std::string TimeText(const Deed& deed) {
  const double sound = static_cast<double>(deed.to - deed.from) / deed.rate;
  std::string text = Fixed(deed.seconds, 1) + " s";
  if (deed.seconds > 0)
    text += ", " + Fixed(sound / deed.seconds, sound < 10 * deed.seconds ? 1 : 0) + " times real time";
  return text;
}

}  // namespace

std::vector<std::string> ReportLines(const CleaningWish& wish, const Deed& deed) {
  std::vector<std::string> lines{Line("Recording", wish.in), Line("Cleaned", wish.out)};
  if (!deed.flaws.empty()) lines.push_back(Line("Flaws", deed.flaws));
  lines.push_back(Line("Part", Moment(deed.from, deed.rate) + " to " + Moment(deed.to, deed.rate) + ", " +
                                   std::to_string(deed.to - deed.from) + " samples"));
  if (!wish.setup.empty()) lines.push_back(Line("Setup", wish.setup));
  lines.push_back(Line("Adaptive", AdaptiveText(wish, deed)));
  lines.push_back(Line("File", FormatText(deed)));
  lines.push_back(
      Line("Unit", std::to_string(deed.unitRate) + " Hz" +
                       (deed.unitRate == deed.rate ? ", no conversion" : ", converted and back")));
  lines.push_back(Line("Rounding", RoundingText(deed)));
  lines.push_back(Columns("", "before", "after"));
  lines.push_back(Columns("Peak", Decibels(deed.before.peak), Decibels(deed.after.peak)));
  lines.push_back(Columns("RMS", Decibels(deed.before.rms), Decibels(deed.after.rms)));
  lines.push_back(Columns("Loudness", Loudness(deed.before), Loudness(deed.after)));
  lines.push_back(Columns("Clipped", std::to_string(deed.before.clipped),
                          std::to_string(deed.after.clipped) + " samples"));
  lines.push_back(Line("Time", TimeText(deed)));
  return lines;
}

}  // namespace unit::clean
