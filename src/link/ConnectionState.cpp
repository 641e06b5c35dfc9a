#include "link/ConnectionState.h"

#include "link/modComm.h"

namespace vc {

std::string ConnectionText(const std::string& state, std::int16_t comPort, std::int16_t baudIndex) {
  const std::string port = std::to_string(comPort);
  const std::string rate = std::string(" ") + BaudOf(baudIndex).text + " Baud";
  if (state == "1") return "Connected COM " + port + rate;
  if (state == "2") return "COM " + port + " is closed";
  if (state == "3") return "Remote connection.  Pass through enabled through COM " + port + rate;
  if (state == "4") return "Dialing connection with modem on COM " + port;
  return "Modem disconnected from COM " + port;
}

std::string UnansweredText(std::int32_t hundredths) {
  const std::int32_t seconds = hundredths / 100;
  return seconds == 0 ? std::string{} : ", no answer for " + std::to_string(seconds) + " s";
}

bool ConnectionAnimated(const std::string& state) { return state == "1" || state == "3"; }

}  // namespace vc
