#include "link/modComm.h"

#include <algorithm>

#include "text/modString.h"

namespace vc {
namespace {

void PutWord(CommRecord& record, std::size_t offset, std::uint16_t value) {
  record[offset] = static_cast<std::uint8_t>(value & 0xFFU);
  record[offset + 1] = static_cast<std::uint8_t>(value >> 8U);
}

}  // namespace

std::int16_t modComm::FlushCommQueues() const {
  if (!CommPortOpen) return 0;
  portLibrary.FlushComm(CommPortId, 0);
  return portLibrary.FlushComm(CommPortId, 1);
}

std::int16_t modComm::ReadCommString(std::int16_t handle, std::string& text, std::int16_t count) const {
  const auto wanted = static_cast<std::size_t>(std::max<std::int16_t>(count, 0));
  Bytes buffer(std::max(wanted, text.size()));
  const std::int16_t read = portLibrary.ReadComm(handle, {buffer.data(), wanted});
  text.assign(buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(wanted));
  return read;
}

bool modComm::ApplyCommState(const std::int16_t& dtrFlag) const {
  record.baudIndex = BoundedBaudIndex(record.baudIndex);
  CommRecord state{};
  state[commRecord::PortId] = static_cast<std::uint8_t>(CommPortId & 0xFF);
  PutWord(state, commRecord::BaudCode, BaudOf(record.baudIndex).code);
  state[commRecord::DataBits] = 8;
  PutWord(state, commRecord::ClearToSendTimeout, 2000);
  state[commRecord::Flags] = commRecord::BinaryMode;
  if (dtrFlag != -1) state[commRecord::Flags] |= commRecord::DtrHeldOff;
  PutWord(state, commRecord::XonLimit, 10);
  PutWord(state, commRecord::XoffLimit, 10);
  return portLibrary.SetCommState16(state) == 0;
}

}  // namespace vc
