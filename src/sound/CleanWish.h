// What is wanted of a cleaning: from the boxes of a window, or from a line of words.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Files.h"

namespace vc {

struct CleanWish {
  std::string in, out;  // files
  // Seconds of the recording; its beginning and its end where there is none.
  std::optional<double> from{}, to{};
  bool adaptiveFiltersKept = false;  // with what they have learned; else they learn from the beginning
};

// "1:02.50", "1:02:03.50"; to a hundredth.
std::string TimeText(double seconds);
// The same way back, with the minutes and hours or without; none where it is no time.
std::optional<double> ParseTime(std::string_view text);

// "interview cleaned.wav" beside "interview.wav". What can only be read, such as MP3, becomes a WAV.
std::string CleanedName(const std::string& in);

// What is wrong with it, as far as can be seen before the recording is opened; empty where nothing is. Both
// files lie in folders that are named from the root.
std::string FaultOf(const CleanWish& wish, Files& files);

// A line as words, as the unit's own commands have them: blanks are between them, and what stands in double
// quotes is one, in which \", \\ and \n stand for themselves. None where a quote is not closed.
std::optional<std::vector<std::string>> WordsOf(std::string_view line);

// What stands behind the word "clean"; empty where it is no wish, and why is said in words.
inline constexpr const char* CleanUsage = "clean IN OUT [from TIME] [to TIME] [adaptive learn|keep]";
std::optional<CleanWish> ReadCleanWish(std::string_view line, std::string& reason);

}  // namespace vc
