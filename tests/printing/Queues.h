// The print server of this run.
#pragma once

namespace support {

class PrintServer;
inline PrintServer* queues = nullptr;

}  // namespace support
