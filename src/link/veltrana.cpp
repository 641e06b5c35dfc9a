#include "link/veltrana.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "link/Frames.h"

namespace vc {
namespace {

constexpr std::int64_t MicrosecondsPerHundredth = 10000;

std::uint16_t ErrorWord(const SerialErrors& errors) {
  std::uint16_t word = 0;
  const auto add = [&word](bool seen, std::uint16_t bit) { word = seen ? word | bit : word; };
  add(errors.framing, commError::Framing);
  add(errors.overrun, commError::Overrun);
  add(errors.parity, commError::Parity);
  add(errors.breakSeen, commError::Break);
  add(errors.gone, commError::SignalTimeout);
  return word;
}

std::uint16_t WordAt(const CommRecord& record, std::size_t offset) {
  return static_cast<std::uint16_t>(record[offset] | record[offset + 1] << 8);
}

// The block that a coefficient request asks for; nothing where the bytes are none.
std::optional<std::size_t> CoefBlockOf(std::span<const std::uint8_t> bytes) {
  constexpr std::size_t addressOffset = 4;
  const CommandFrame request = MakeCommandFrame(command::ReadCoefficients, 0);
  const auto opening = std::span(request).first<addressOffset>();
  if (bytes.size() != request.size() || !std::ranges::equal(bytes.first<addressOffset>(), opening)) return {};
  return bytes[addressOffset] % CoefBlocks;
}

}  // namespace

veltrana::veltrana(SerialPorts& systemPorts, Clock& systemClock)
    : ports(systemPorts), clock(systemClock), startMicroseconds(systemClock.Microseconds()) {}

veltrana::Line* veltrana::Find(std::int16_t handle) {
  const auto found = lines.find(handle);
  return found == lines.end() ? nullptr : &found->second;
}

void veltrana::Pump(Line& line) const {
  std::array<std::uint8_t, 512> block{};
  while (!line.output.empty()) {
    const std::size_t count = std::min(block.size(), line.output.size());
    std::copy_n(line.output.begin(), count, block.begin());
    const std::size_t taken = line.port->Write({block.data(), count});
    line.output.erase(line.output.begin(), line.output.begin() + static_cast<std::ptrdiff_t>(taken));
    if (taken < count) break;
  }
  while (line.input.size() < line.inputSize) {
    const std::size_t room = std::min(block.size(), line.inputSize - line.input.size());
    const std::size_t count = line.port->Read({block.data(), room});
    if (count != 0) tap.Came();
    line.input.insert(line.input.end(), block.begin(), block.begin() + static_cast<std::ptrdiff_t>(count));
    if (count < room) break;
  }
  line.errors |= ErrorWord(line.port->TakeErrors());
}

std::int16_t veltrana::OpenComm(std::string_view name, std::int16_t inputSize, std::int16_t outputSize) {
  openFailure.clear();
  const std::string portName(name.substr(0, name.find('\0')));
  auto port = ports.Open(portName, openFailure);
  if (!port) {
    tap.Event(openFailure, true);
    return -1;
  }
  if (tap.On()) tap.Event(portName + " opened", false);
  std::int16_t handle = 1;
  while (lines.contains(handle)) ++handle;
  Line& line = lines[handle];
  line.port = std::move(port);
  line.inputSize = static_cast<std::size_t>(std::max<std::int16_t>(inputSize, 0));
  line.outputSize = static_cast<std::size_t>(std::max<std::int16_t>(outputSize, 0));
  return handle;
}

void veltrana::CloseComm(std::int16_t handle) {
  Line* line = Find(handle);
  if (line == nullptr) return;
  TellUnread(*line);
  tap.Event("port closed", false);
  lines.erase(handle);
}

// Nobody will read what waits.
void veltrana::TellUnread(Line& line) const {
  if (!tap.On()) return;
  Pump(line);
  const auto unread =
      line.input.begin() + static_cast<std::ptrdiff_t>(std::min(line.overheard, line.input.size()));
  const std::string bytes(unread, line.input.end());
  if (!bytes.empty()) tap.Reply(bytes, 0, ReplyFate::ThrownAway);
}

std::int16_t veltrana::SetCommState16(const CommRecord& record) {
  Line* line = Find(record[commRecord::PortId]);
  if (line == nullptr) return -1;
  const std::uint16_t code = WordAt(record, commRecord::BaudCode);
  SerialConfig config;
  config.baud = code == commRecord::Code115200 ? 115200 : code;
  config.dtr = (record[commRecord::Flags] & commRecord::DtrHeldOff) == 0;
  const bool taken = line->port->Configure(config);
  if (tap.On()) {
    tap.Event(std::to_string(config.baud) + " baud, DTR " + (config.dtr ? "on" : "off") +
                  (taken ? "" : ": refused by the port"),
              !taken);
  }
  return taken ? std::int16_t{0} : std::int16_t{-1};
}

std::int16_t veltrana::WriteComm(std::int16_t handle, std::span<const std::uint8_t> bytes) {
  Line* line = Find(handle);
  if (line == nullptr) return 0;
  if (const auto block = CoefBlockOf(bytes)) line->coefBlock = block;
  const std::size_t count = std::min(bytes.size(), line->outputSize - line->output.size());
  if (count < bytes.size()) line->errors |= commError::QueueOverflow;
  line->output.insert(line->output.end(), bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
  Pump(*line);
  return static_cast<std::int16_t>(count);
}

std::int16_t veltrana::ReadComm(std::int16_t handle, std::span<std::uint8_t> bytes) {
  Line* line = Find(handle);
  if (line == nullptr) return 0;
  Pump(*line);
  const std::size_t count = std::min(bytes.size(), line->input.size());
  std::copy_n(line->input.begin(), count, bytes.begin());
  line->input.erase(line->input.begin(), line->input.begin() + static_cast<std::ptrdiff_t>(count));
  line->overheard -= std::min(line->overheard, count);
  return static_cast<std::int16_t>(count);
}

std::string veltrana::Overheard(std::int16_t handle, std::int16_t count) {
  Line* line = tap.On() ? Find(handle) : nullptr;
  if (line == nullptr) return {};
  line->overheard = std::min(line->input.size(), static_cast<std::size_t>(std::max<std::int16_t>(count, 0)));
  return {line->input.begin(), line->input.begin() + static_cast<std::ptrdiff_t>(line->overheard)};
}

std::uint16_t veltrana::GetCommError(std::int16_t handle, CommStatus& status) {
  Line* line = Find(handle);
  if (line == nullptr) {
    status = {};
    return commError::SignalTimeout;
  }
  Pump(*line);
  status.cbInQue = static_cast<std::uint16_t>(line->input.size());
  status.cbOutQue = static_cast<std::uint16_t>(line->output.size());
  return std::exchange(line->errors, std::uint16_t{0});
}

std::int16_t veltrana::FlushComm(std::int16_t handle, std::int16_t selector) {
  Line* line = Find(handle);
  if (line == nullptr) return -1;
  if (selector == 0) {
    tap.NotSent(line->output.size());
    line->output.clear();
    line->port->DiscardOutput();
  } else {
    TellUnread(*line);
    line->overheard = 0;
    line->input.clear();
    line->port->DiscardInput();
  }
  return 0;
}

void veltrana::AwaitComm(std::int16_t handle, std::int32_t hundredths) {
  // While bytes still wait for the line a short sleep lets them out in time.
  constexpr std::int64_t shortMicroseconds = 1000;
  Line* line = Find(handle);
  if (line == nullptr) return;
  const std::int64_t limit = hundredths * MicrosecondsPerHundredth;
  line->port->AwaitInput(line->output.empty() ? limit : std::min(limit, shortMicroseconds));
}

void veltrana::AwaitSilence(std::int16_t handle, std::int64_t microseconds) {
  constexpr std::int64_t longest = 1000000;
  Line* line = Find(handle);
  if (line == nullptr) return;
  Pump(*line);
  const std::int64_t start = clock.Microseconds();
  std::int64_t silentSince = start;
  std::size_t seen = line->input.size();
  for (std::int64_t now = start; now - silentSince < microseconds && now - start < longest;
       now = clock.Microseconds()) {
    if ((line->errors & commError::SignalTimeout) != 0 || seen == line->inputSize) return;
    line->port->AwaitInput(microseconds - (now - silentSince));
    Pump(*line);
    if (line->input.size() == seen) continue;
    seen = line->input.size();
    silentSince = clock.Microseconds();
  }
}

std::int32_t veltrana::WaitHundredths(std::int32_t hundredths) {
  if (hundredths > 0) clock.Sleep(hundredths * MicrosecondsPerHundredth);
  return static_cast<std::int32_t>((clock.Microseconds() - startMicroseconds) / MicrosecondsPerHundredth);
}

bool veltrana::DownloadCoefs(std::int16_t handle, std::span<std::int32_t, CoefCapacity> coefs) {
  std::array<std::uint8_t, CoefBodySize> body{};
  const bool whole = ReadComm(handle, body) == static_cast<std::int16_t>(body.size());
  const Line* line = Find(handle);
  if (!whole || line == nullptr || !line->coefBlock) return false;
  for (std::size_t i = 0; i < CoefBlockSize; ++i) {
    const std::uint32_t bits = static_cast<std::uint32_t>(body[3 * i]) << 24U |
                               static_cast<std::uint32_t>(body[3 * i + 1]) << 16U |
                               static_cast<std::uint32_t>(body[3 * i + 2]) << 8U;
    const std::int32_t signedBits = static_cast<std::int32_t>(bits) >> 8;  // carries the sign down
    coefs[*line->coefBlock * CoefBlockSize + i] = signedBits;
  }
  return true;
}

std::int16_t MinMax(std::int16_t value, std::int16_t lower, std::int16_t upper) {
  return std::max(lower, std::min(value, upper));
}

void CopyDataToBytes(std::span<std::uint8_t> destination, std::span<const std::byte> source) {
  if (!destination.empty()) {
    std::memcpy(destination.data(), source.data(), std::min(destination.size(), source.size()));
  }
}

}  // namespace vc
