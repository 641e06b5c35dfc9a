// The port library: the unit maker's calls for the serial port and a handful of services, with the small
// integer handles, the 16-bit error word and the queue counts that the layers above depend on. No call raises
// an error: the result tells.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "link/LineTap.h"
#include "platform/Clock.h"
#include "platform/SerialPort.h"

namespace vc {

// Status record of GetCommError. Only the input count is ever read.
struct CommStatus {
  std::uint16_t flags = 0;
  std::uint16_t cbInQue = 0;   // received bytes waiting
  std::uint16_t cbOutQue = 0;  // bytes not yet taken by the line
};

// Bits of the error word.
namespace commError {
inline constexpr std::uint16_t QueueOverflow = 0x01;
inline constexpr std::uint16_t Overrun = 0x02;
inline constexpr std::uint16_t Parity = 0x04;
inline constexpr std::uint16_t Framing = 0x08;
inline constexpr std::uint16_t Break = 0x10;
inline constexpr std::uint16_t SignalTimeout = 0x80;  // carrier lost, or the device itself has gone
}  // namespace commError

// Configuration record of SetCommState16, little-endian.
namespace commRecord {
inline constexpr std::size_t Size = 28;
inline constexpr std::size_t PortId = 0, BaudCode = 2, DataBits = 4, Parity = 5, StopBits = 6;
inline constexpr std::size_t LineSignalTimeout = 8, ClearToSendTimeout = 10, DataSetReadyTimeout = 12;
inline constexpr std::size_t Flags = 14, XonLimit = 18, XoffLimit = 20;
inline constexpr std::uint8_t BinaryMode = 0x01, DtrHeldOff = 0x80;
inline constexpr std::uint16_t Code115200 = 0xF000;  // the one rate that does not fit into its field
}  // namespace commRecord
using CommRecord = std::array<std::uint8_t, commRecord::Size>;

// Coefficients of one read-back block, and of the longest filter.
inline constexpr std::size_t CoefBlockSize = 256;
inline constexpr std::size_t CoefCapacity = 8192;
inline constexpr std::size_t CoefBlocks = CoefCapacity / CoefBlockSize;
// What is left of a coefficient reply behind its 45-byte head.
inline constexpr std::size_t CoefBodySize = 770;

struct veltrana {
  veltrana(SerialPorts& systemPorts, Clock& systemClock);

  SerialPorts& ports;
  Clock& clock;
  std::string openFailure;  // why the last OpenComm failed, in plain words
  LineTap tap;

  // Opens the port of a NUL-terminated name ("COM1") exclusively, with queues of the sizes given. Negative
  // where the port is absent or busy.
  std::int16_t OpenComm(std::string_view name, std::int16_t inputSize, std::int16_t outputSize);
  void CloseComm(std::int16_t handle);
  // Applies rate, format and DTR of the record to the port that it names. 0 on success.
  std::int16_t SetCommState16(const CommRecord& record);
  // Queues the bytes and returns without waiting for the line; what exceeds the output queue is lost. Returns
  // the count queued.
  std::int16_t WriteComm(std::int16_t handle, std::span<const std::uint8_t> bytes);
  // Takes at most bytes.size() bytes from the input queue without blocking; the count really read.
  std::int16_t ReadComm(std::int16_t handle, std::span<std::uint8_t> bytes);
  // The error word since the last call, which clears it; fills in the queue counts. Never blocks.
  std::uint16_t GetCommError(std::int16_t handle, CommStatus& status);
  // selector 0 discards the output queue, 1 the input queue.
  std::int16_t FlushComm(std::int16_t handle, std::int16_t selector);
  // Gives the processor away until bytes come in, at most for so long. It lets no event run.
  void AwaitComm(std::int16_t handle, std::int32_t hundredths);

  // Waits until no byte has come in for so long; no longer than a second, nor with a full queue or a device
  // that is gone.
  void AwaitSilence(std::int16_t handle, std::int64_t microseconds);

  // The first bytes of the input queue, at most so many, where the tap is listened to; else nothing. They
  // stay where they are, and whoever asks tells the tap of them: no flush will.
  std::string Overheard(std::int16_t handle, std::int16_t count);

  // Waits (0 for not at all), then returns the present time, both in hundredths of a second.
  std::int32_t WaitHundredths(std::int32_t hundredths);

  // Takes the body of a coefficient reply from the input queue: 256 coefficients of 24 bits, high byte first,
  // and two bytes that are not used. The low five bits of the address in the last coefficient request that
  // was written on the handle are the block's place in the array of 8192. False, and the array as it was,
  // where the body is short or nothing was requested.
  bool DownloadCoefs(std::int16_t handle, std::span<std::int32_t, CoefCapacity> coefs);

 private:
  struct Line {
    std::unique_ptr<SerialPort> port;
    std::size_t inputSize = 0, outputSize = 0;
    std::deque<std::uint8_t> input, output;
    std::uint16_t errors = 0;
    std::optional<std::size_t> coefBlock;  // of the last coefficient request, 0..31
    std::size_t overheard = 0;             // bytes of the input that the tap has been told of
  };
  Line* Find(std::int16_t handle);
  void Pump(Line& line) const;
  void TellUnread(Line& line) const;

  std::map<std::int16_t, Line> lines;
  std::int64_t startMicroseconds;
};

// The value limited to the two bounds.
std::int16_t MinMax(std::int16_t value, std::int16_t lower, std::int16_t upper);

// Raw copy of as many bytes as the destination takes.
void CopyDataToBytes(std::span<std::uint8_t> destination, std::span<const std::byte> source);

}  // namespace vc
