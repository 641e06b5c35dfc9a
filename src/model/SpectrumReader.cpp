#include "model/SpectrumReader.h"

#include <algorithm>

namespace vc {
namespace {

constexpr std::int16_t DisplaySecond = 0, DisplayFirst = 1;  // specDisplayMode; any other shows both

constexpr PolledRequest SpectrumOf(int channel, const char* errorName, const char* errorText = StopQuestion) {
  constexpr std::int16_t replyBytes = StatusHeadSize + SpectrumLines + 1;
  const auto code = static_cast<std::uint8_t>(command::FirstSpectrum + channel);
  return {code,     token::FirstSpectrum, token::SecondSpectrum, replyBytes, StatusHeadSize, 10000, errorName,
          errorText};
}

std::int16_t NextChannel(std::int16_t channel, std::int16_t displayMode) {
  if (displayMode == DisplayFirst) return 0;
  if (displayMode == DisplaySecond) return 1;
  return static_cast<std::int16_t>((channel + 1) & 1);
}

}  // namespace

SpectrumReader::SpectrumReader(const SystemSettings& record, modDeviceComm& link)
    : settings(record), device(link) {}

void SpectrumReader::RequestSpectrumData() {
  if (!device.comm.CommPortOpen) return;
  if (device.ReplyTicksLeft == 0) {
    SpecChannelToggle = NextChannel(SpecChannelToggle, settings.specDisplayMode);
  }
  Step(SpectrumOf(SpecChannelToggle, "RequestSpectrumData_Err"), &RawTrace2);
}

void SpectrumReader::RequestSIFData() {
  Step(SpectrumOf(0, "RequestSIFData_Err", "RequestSIFData error, do you wish to stop?"), nullptr);
}

// Without a place for the second trace its body is left to the flush.
void SpectrumReader::Step(const PolledRequest& request, RawTrace* secondTrace) {
  device.PollStep(
      request, 0, [this](const std::string& reply) { device.DecodeStatusHead(reply); },
      [&](const std::string& reply) {
        const bool first = reply.starts_with(token::FirstSpectrum);
        RawTrace* const trace = first ? &RawTrace1 : secondTrace;
        if (trace != nullptr && TakeTrace(*trace)) ++(first ? Replies1 : Replies2);
      });
}

// False where the body is not there as a whole.
bool SpectrumReader::TakeTrace(RawTrace& trace) {
  RawTrace body{};
  const std::int16_t count = device.portLibrary.ReadComm(device.comm.CommPortId, body);
  const bool whole = count == static_cast<std::int16_t>(body.size());
  if (whole) trace = body;
  return whole;
}

}  // namespace vc
