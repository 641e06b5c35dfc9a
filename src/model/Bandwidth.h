// What follows from the audio bandwidth: rates, limits and what one DSP stage of the unit can hold.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "model/SystemSettings.h"

namespace vc {

struct BandwidthRow {
  std::string_view name;  // in the list
  std::int16_t bandwidthHz;
  std::int32_t sampleRate;          // Hz
  std::string_view displayLimit;    // Hz, the top of the 460-line grid: 230/512 of the sample rate
  std::int16_t maxDspStagesMono;    // filter stages that may be in use
  std::int16_t maxDspStagesStereo;  // per channel
  std::int16_t adaptiveStageTaps;   // taps one DSP stage gives to an adaptive filter
  std::int16_t generalStageTaps;    // and to any other
};

inline constexpr int SpanPerStage = 4096;  // samples of prediction span or delay that one DSP stage holds

// By bandwidthIndex.
std::span<const BandwidthRow> Bandwidths();
// The row of a code; a code outside the table counts as the narrowest bandwidth.
const BandwidthRow& BandwidthOf(std::int16_t bandwidthIndex);
std::int16_t MaxDspStages(const BandwidthRow& row, std::int16_t configMode);

struct BandwidthLimits {
  std::int16_t bandwidthHz;
  float sampleRate;  // Hz
};

// From bandwidthIndex, not from the derived fields.
std::int32_t GetSampleRate(const SystemSettings& settings);
BandwidthLimits GetBandwidthLimits(const SystemSettings& settings);
std::string_view GetDisplayLimit(std::int16_t bandwidthIndex);

}  // namespace vc
