// How inputs are changed: half of the time as any bytes are, else by another value in a few whole lines, so
// that what stands behind them is still read and hostile numbers reach the record.
#include <algorithm>
#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t capacity);

namespace fuzz {
namespace {

constexpr std::array<std::string_view, 36> Values{
    "0",       "1",           "-1",         "2",    "3",      "4",
    "6",       "7",           "9",          "10",   "15",     "16",
    "17",      "31",          "255",        "256",  "459",    "513",
    "4095",    "8192",        "8193",       "9999", "16000",  "32767",
    "-32768",  "32768",       "0.45",       "0.28", "-60.5",  "3.4e38",
    "-3.4e38", "-2147483648", "2147483647", "\"\"", "\"/a\"", "\"Coefficients\""};

using Random = std::minstd_rand;

// Few lines decide how the many behind them are read: these are hit as often as all others together.
std::size_t PickPlace(std::string_view text, Random& random) {
  constexpr std::size_t head = 120;
  constexpr std::size_t blockHead = 24;
  const std::size_t blocks = text.find("\"Coefficients\"");
  switch (random() % 4) {
    case 0:
      return random() % std::min(text.size(), head);
    case 1:
      return blocks == std::string_view::npos ? 0
                                              : blocks + random() % std::min(text.size() - blocks, blockHead);
    default:
      return random() % text.size();
  }
}

void ChangeLine(std::string& text, Random& random) {
  if (text.empty()) return;
  const std::size_t place = PickPlace(text, random);
  const std::size_t before = text.rfind('\n', place);
  const std::size_t begin = before == std::string::npos ? 1 : before + 1;  // behind the byte that is no text
  const std::size_t end = std::min(text.find_first_of("\r\n", begin), text.size());
  if (begin < end) text.replace(begin, end - begin, Values[random() % Values.size()]);
}

}  // namespace
}  // namespace fuzz

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t capacity,
                                               unsigned seed) {
  fuzz::Random random{seed};
  if (random() % 2 == 0) return LLVMFuzzerMutate(data, size, capacity);
  std::string text(data, data + size);
  for (auto lines = random() % 3 + 1; lines > 0; --lines) fuzz::ChangeLine(text, random);
  const std::size_t length = std::min(text.size(), capacity);
  std::copy_n(text.begin(), length, data);
  return length;
}
