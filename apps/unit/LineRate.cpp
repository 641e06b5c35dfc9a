// The rate at which the other end of a pseudo-terminal has set the line. A file of its own, since the
// kernel's terminal header, which alone knows arbitrary rates, does not go together with the library's.
#include "unit/LineRate.h"

#include <asm/ioctls.h>
#include <asm/termbits.h>
#include <sys/ioctl.h>

namespace unit {

int LineRate(int descriptor) {
  termios2 settings{};
  return ioctl(descriptor, TCGETS2, &settings) == 0 ? static_cast<int>(settings.c_ospeed) : 0;
}

}  // namespace unit
