#include "panels/BandCaptions.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace vc {
namespace {

using Captions = std::array<std::string_view, BandCount>;

// By bandwidthIndex.
constexpr std::array<Captions, 6> Rows{{
    {"40",  "120",  "200",  "280",  "360",  "440",  "520",  "600",  "680",  "740",
     "880", "1.1K", "1.3K", "1.5K", "1.8K", "2.0K", "2.2K", "2.5K", "2.7K", "3.0K"},
    {"67",   "200",  "333",  "467",  "600",  "733",  "867",  "1.0K", "1.1K", "1.3K",
     "1.5K", "1.8K", "2.1K", "2.5K", "2.9K", "3.3K", "3.7K", "4.1K", "4.5K", "4.9K"},
    {"80",   "240",  "400",  "560",  "720",  "880",  "1.0K", "1.2K", "1.4K", "1.5K",
     "1.8K", "2.2K", "2.6K", "3.0K", "3.5K", "4.0K", "4.4K", "5.0K", "5.4K", "5.9K"},
    {"100",  "300",  "500",  "700",  "900",  "1.1K", "1.3K", "1.5K", "1.7K", "1.9K",
     "2.2K", "2.7K", "3.2K", "3.8K", "4.4K", "5.0K", "5.6K", "6.2K", "6.8K", "7.4K"},
    {"133",  "400",  "667",  "933",  "1.2K", "1.5K", "1.7K", "2.0K", "2.3K", "2.5K",
     "2.9K", "3.6K", "4.3K", "5.1K", "5.9K", "6.7K", "7.5K", "8.3K", "9.1K", "9.9K"},
    {"200",  "600",  "1.0K", "1.4K", "1.8K", "2.2K", "2.6K", "3.0K", "3.4K", "3.8K",
     "4.4K", "5.4K", "6.4K", "7.6K", "8.8K", "10K",  "11K",  "12K",  "14K",  "15K"},
}};

}  // namespace

std::string_view BandCaption(std::int16_t bandwidthIndex, int band) {
  const auto row = static_cast<std::size_t>(std::clamp<int>(bandwidthIndex, 0, int{Rows.size()} - 1));
  return Rows.at(row).at(static_cast<std::size_t>(std::clamp(band, 0, BandCount - 1)));
}

}  // namespace vc
