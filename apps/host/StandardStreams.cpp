#include "host/StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

namespace host {

void FillStandardStreams() {
  int opened = 0;
  while (opened >= 0 && opened <= STDERR_FILENO) opened = open("/dev/null", O_RDWR | O_NOCTTY);
  if (opened > STDERR_FILENO) close(opened);
}

}  // namespace host
