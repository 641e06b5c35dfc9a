// Reads the spectra of the unit's analyzer, one trace a request.
#pragma once

#include <array>
#include <cstdint>

#include "link/modDeviceComm.h"
#include "model/SystemSettings.h"

namespace vc {

inline constexpr std::size_t SpectrumLines = 512;  // of a reply; the last 52 are beyond the display

// One byte a line: 192 and above are the top of the display, a step is 70/185 dB.
using RawTrace = std::array<std::uint8_t, SpectrumLines>;

struct SpectrumReader {
  SpectrumReader(const SystemSettings& record, modDeviceComm& link);

  std::int16_t SpecChannelToggle = 0;   // 0 or 1, channel of the last request
  RawTrace RawTrace1{}, RawTrace2{};    // of channels 0 and 1
  unsigned Replies1 = 0, Replies2 = 0;  // how many of each have come, so that a new one can be told

  // One step of the polled request: of the channel that is displayed, or of both in turn.
  void RequestSpectrumData();
  // The same for the spectral inverse filter, which looks at channel 0 alone. Of a reply for the other
  // channel only the status counts.
  void RequestSIFData();

 private:
  void Step(const PolledRequest& request, RawTrace* secondTrace);
  bool TakeTrace(RawTrace& trace);

  const SystemSettings& settings;
  modDeviceComm& device;
};

}  // namespace vc
