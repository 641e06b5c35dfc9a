#include "text/WallText.h"

namespace vc {
namespace {

std::string TwoDigits(int number) { return (number < 10 ? "0" : "") + std::to_string(number); }

}  // namespace

std::string DateText(const WallTime& now) {
  return std::to_string(now.year) + "-" + TwoDigits(now.month) + "-" + TwoDigits(now.day);
}

std::string TimeText(const WallTime& now) {
  return TwoDigits(now.hour) + ":" + TwoDigits(now.minute) + ":" + TwoDigits(now.second);
}

std::string DateTimeText(const WallTime& now) { return DateText(now) + " " + TimeText(now); }

}  // namespace vc
