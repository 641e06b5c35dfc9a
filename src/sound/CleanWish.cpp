#include "sound/CleanWish.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <utility>

#include "persist/FileNames.h"
#include "text/Convert.h"

namespace vc {
namespace {

namespace fs = std::filesystem;

constexpr int PerMinute = 60;

std::string TwoDigits(std::int64_t number) { return (number < 10 ? "0" : "") + std::to_string(number); }

// Named in two ways, by a link perhaps, it is the same file.
bool SameFile(const std::string& one, const std::string& other) {
  std::error_code ignored;
  return fs::path(one).lexically_normal() == fs::path(other).lexically_normal() ||
         fs::equivalent(one, other, ignored);
}

std::string FaultOfTimes(const CleanWish& wish) {
  const double from = wish.from.value_or(0.0);
  if (from < 0.0 || (wish.to && *wish.to <= from)) return "The part has to end after it begins.";
  return {};
}

// Takes the value of one of the words that may follow the files; what is wrong with it, or nothing.
using Taker = std::string (*)(CleanWish& wish, const std::string& value);

template <std::optional<double> CleanWish::*Time>
std::string TakeTime(CleanWish& wish, const std::string& value) {
  wish.*Time = ParseTime(value);
  return wish.*Time ? "" : value + " is no time; say seconds, or 1:02.5";
}

std::string TakeAdaptive(CleanWish& wish, const std::string& value) {
  wish.adaptiveFiltersKept = value == "keep";
  return value == "keep" || value == "learn" ? "" : "adaptive filters learn or keep, not " + value;
}

struct WordRow {
  std::string_view word;
  Taker take;
};
constexpr std::array<WordRow, 3> WordTable{
    {{"from", TakeTime<&CleanWish::from>}, {"to", TakeTime<&CleanWish::to>}, {"adaptive", TakeAdaptive}}};

}  // namespace

std::string TimeText(double seconds) {
  constexpr std::int64_t perSecond = 100;
  const auto hundredths = static_cast<std::int64_t>(std::llround(std::max(seconds, 0.0) * perSecond));
  const std::int64_t whole = hundredths / perSecond, minutes = whole / PerMinute;
  const std::string tail = TwoDigits(whole % PerMinute) + "." + TwoDigits(hundredths % perSecond);
  if (minutes < PerMinute) return std::to_string(minutes) + ":" + tail;
  return std::to_string(minutes / PerMinute) + ":" + TwoDigits(minutes % PerMinute) + ":" + tail;
}

std::optional<double> ParseTime(std::string_view text) {
  constexpr int mostColons = 2;
  constexpr double longest = 1e6;  // seconds, eleven days
  double whole = 0.0;
  for (int colons = 0; text.find(':') != std::string_view::npos; ++colons) {
    const auto part = ParseInteger(text.substr(0, text.find(':')));
    if (!part || *part < 0 || static_cast<double>(*part) > longest || colons == mostColons)
      return std::nullopt;
    whole = (whole + static_cast<double>(*part)) * PerMinute;
    text.remove_prefix(text.find(':') + 1);
  }
  const auto seconds = ParseNumber(text);
  if (!seconds || *seconds < 0.0 || whole + *seconds > longest) return std::nullopt;
  return whole + *seconds;
}

std::string CleanedName(const std::string& in) {
  const fs::path path(in);
  if (!path.has_filename()) return {};
  const std::string name = path.filename().string();
  const bool writable = HasExtension(name, ".wav") || HasExtension(name, ".flac");
  const std::string extension = writable ? path.extension().string() : ".wav";
  return (path.parent_path() / (path.stem().string() + " cleaned" + extension)).string();
}

std::string FaultOf(const CleanWish& wish, Files& files) {
  if (wish.in.empty()) return "Choose the recording.";
  if (wish.out.empty()) return "Say what the cleaned file is to be called.";
  if (files.KindOf(wish.in) == FileKind::Nothing) return "There is no file " + wish.in + ".";
  if (files.KindOf(wish.in) != FileKind::File) return wish.in + " is no file.";
  if (SameFile(wish.in, wish.out)) return "The cleaned file must be another one than the recording.";
  if (files.KindOf(fs::path(wish.out).parent_path().string()) != FileKind::Folder) {
    return "There is no folder " + fs::path(wish.out).parent_path().string() + ".";
  }
  const FileKind there = files.KindOf(wish.out);
  if (there != FileKind::Nothing && there != FileKind::File) return wish.out + " is no file.";
  return FaultOfTimes(wish);
}

std::optional<std::vector<std::string>> WordsOf(std::string_view line) {
  std::vector<std::string> words;
  bool quoted = false, open = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (!quoted && (line[i] == ' ' || line[i] == '\t')) {
      open = false;
      continue;
    }
    if (!std::exchange(open, true)) words.emplace_back();
    if (line[i] == '"') {
      quoted = !quoted;
    } else {
      const bool escaped = quoted && line[i] == '\\' && i + 1 < line.size();
      if (escaped) ++i;
      words.back() += escaped && line[i] == 'n' ? '\n' : line[i];
    }
  }
  return quoted ? std::nullopt : std::optional(std::move(words));
}

std::optional<CleanWish> ReadCleanWish(std::string_view line, std::string& reason) {
  const auto words = WordsOf(line);
  reason = std::string("say ") + CleanUsage;
  if (!words || words->size() < 2 || words->size() % 2 != 0) return std::nullopt;
  std::error_code ignored;
  CleanWish wish{fs::absolute(words->at(0), ignored).string(), fs::absolute(words->at(1), ignored).string()};
  for (std::size_t i = 2; i < words->size(); i += 2) {
    const auto* const row = std::ranges::find(WordTable, words->at(i), &WordRow::word);
    if (row == WordTable.end()) return std::nullopt;
    reason = row->take(wish, words->at(i + 1));
    if (!reason.empty()) return std::nullopt;
  }
  reason.clear();
  return wish;
}

}  // namespace vc
