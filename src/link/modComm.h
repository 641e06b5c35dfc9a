// Wrappers of the port library for the one link, and the table of its rates.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "link/veltrana.h"

namespace vc {

struct BaudRow {
  const char* text;
  std::uint16_t code;            // for the configuration record
  std::int16_t extraHundredths;  // what replies at this rate may take longer
  std::int64_t baud;
};
inline constexpr std::array<BaudRow, 5> BaudTable{{{"9600", 0x2580, 135, 9600},
                                                   {"14400", 0x3840, 50, 14400},
                                                   {"19200", 0x4B00, 45, 19200},
                                                   {"38400", 0x9600, 45, 38400},
                                                   {"115200", commRecord::Code115200, 45, 115200}}};
inline constexpr std::int16_t LastBaudIndex = BaudTable.size() - 1;

// Any index outside the table stands for its last row.
constexpr std::int16_t BoundedBaudIndex(std::int16_t index) {
  return index < 0 || index > LastBaudIndex ? LastBaudIndex : index;
}
constexpr const BaudRow& BaudOf(std::int16_t index) {
  return BaudTable[static_cast<std::size_t>(BoundedBaudIndex(index))];
}

// How long a line must be silent until nothing more of a reply is to be expected: 20 byte times, at least
// 10 ms.
constexpr std::int64_t SilenceMicroseconds(std::int16_t baudIndex) {
  constexpr std::int64_t shortest = 10000, twentyBytes = 20 * 10 * 1000000LL;
  return std::max(shortest, twentyBytes / BaudOf(baudIndex).baud);
}

// The fields of the settings record that the link reads and writes.
struct LinkRecord {
  std::int16_t& comPort;    // 1..9
  std::int16_t& baudIndex;  // into BaudTable
  bool& linkReady;          // true after a full connect
};

struct modComm {
  veltrana& portLibrary;
  LinkRecord record;

  bool CommPortOpen = false;
  std::int16_t CommPortId = -1;  // negative while no handle is held
  CommStatus CommStat{};

  // Discards both queues of an open port; the second flush's result, 0 for a closed port.
  std::int16_t FlushCommQueues() const;
  // Reads count bytes into text, one character per byte; text always gets count characters, the missing ones
  // NUL. Returns the count really read.
  std::int16_t ReadCommString(std::int16_t handle, std::string& text, std::int16_t count) const;
  // Configures the port from the record; dtrFlag -1 puts DTR on, any other value off. A rate index outside
  // the table is rewritten to its last row. False where the port refuses.
  bool ApplyCommState(const std::int16_t& dtrFlag) const;
};

}  // namespace vc
