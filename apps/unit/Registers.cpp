// What the unit was sent and took: the last argument of every command and the last content of every packet.
#include "unit/Registers.h"

#include <algorithm>

namespace unit {

void Registers::Store(const Frame& frame) {
  if (frame.kind == Frame::Kind::Command) {
    values[frame.number] = frame.argument;
    ++counts[frame.number];
    return;
  }
  Payload payload{};
  std::copy_n(frame.bytes.begin() + 4, PayloadSize, payload.begin());
  packets[frame.number] = payload;
  ++packetCounts[frame.number];
}

}  // namespace unit
