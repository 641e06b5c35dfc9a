// The six audio bandwidths.
#include "model/Bandwidth.h"

#include <array>

#include "model/Kinds.h"

namespace vc {
namespace {

// The working limit of "11 kHz" is 10500 Hz: the label is rounded, the limit is not.
constexpr std::array bandwidths{
    BandwidthRow{"3.2 kHz", 3200, 7200, "3234", 6, 3, 1024, 1024},
    BandwidthRow{"5.4 kHz", 5400, 12000, "5391", 6, 3, 1024, 1024},
    BandwidthRow{"6.5 kHz", 6500, 14400, "6469", 6, 3, 1024, 1024},
    BandwidthRow{"8 kHz", 8000, 18000, "8086", 6, 3, 1024, 1024},
    BandwidthRow{"11 kHz", 10500, 24000, "10781", 5, 2, 752, 1024},
    BandwidthRow{"16 kHz", 16000, 36000, "16172", 2, 1, 480, 976},
};

}  // namespace

std::span<const BandwidthRow> Bandwidths() { return bandwidths; }

const BandwidthRow& BandwidthOf(std::int16_t bandwidthIndex) {
  const auto place = static_cast<std::size_t>(bandwidthIndex);  // a negative code is past the end too
  return place < bandwidths.size() ? bandwidths[place] : bandwidths.front();
}

std::int16_t MaxDspStages(const BandwidthRow& row, std::int16_t configMode) {
  return configMode == ConfigMode::Mono ? row.maxDspStagesMono : row.maxDspStagesStereo;
}

std::int32_t GetSampleRate(const SystemSettings& settings) {
  return BandwidthOf(settings.bandwidthIndex).sampleRate;
}

BandwidthLimits GetBandwidthLimits(const SystemSettings& settings) {
  const BandwidthRow& row = BandwidthOf(settings.bandwidthIndex);
  return {row.bandwidthHz, static_cast<float>(row.sampleRate)};
}

std::string_view GetDisplayLimit(std::int16_t bandwidthIndex) {
  return BandwidthOf(bandwidthIndex).displayLimit;
}

}  // namespace vc
