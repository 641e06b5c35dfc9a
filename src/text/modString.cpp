#include "text/modString.h"

#include <algorithm>

namespace vc {

void BytesToString(std::string& text, const Bytes& bytes, std::int32_t count) {
  std::size_t length = bytes.size();
  if (count == 0 && length > 0 && bytes.back() == 0) --length;
  if (count != 0) length = count < 0 ? 0 : std::min(length, static_cast<std::size_t>(count));
  text.assign(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length));
}

void StringToBytes(Bytes& bytes, std::string_view text) { bytes.assign(text.begin(), text.end()); }

std::string HexPadded(std::uint32_t value, int digits) {
  std::string text;
  for (; value != 0; value /= 16) text.insert(text.begin(), "0123456789ABCDEF"[value % 16]);
  const auto width = static_cast<std::size_t>(std::max(digits, 1));
  if (text.size() < width) text.insert(0, width - text.size(), '0');
  return text;
}

}  // namespace vc
