// What the display says of a connection state.
#pragma once

#include <cstdint>
#include <string>

namespace vc {

// The text of a state on the port and at the rate of the record. States beyond "2" are ready for a remote
// link; any state that is not known reads as a disconnected modem.
std::string ConnectionText(const std::string& state, std::int16_t comPort, std::int16_t baudIndex);

// What stands behind that text while polled requests go without an answer for a second or more; else nothing.
std::string UnansweredText(std::int32_t hundredths);

// The connection icon runs while a link stands.
bool ConnectionAnimated(const std::string& state);

}  // namespace vc
