// Everything that a session is given by the host system.
#pragma once

#include "platform/Clock.h"
#include "platform/Desk.h"
#include "platform/EventLoop.h"
#include "platform/Files.h"
#include "platform/Pictures.h"
#include "platform/Printing.h"
#include "platform/Programs.h"
#include "platform/SerialPort.h"

namespace vc {

struct Platform {
  Clock& clock;
  EventLoop& events;
  Desk& desk;
  SerialPorts& ports;
  Files& files;
  Printers& printers;
  Pictures& pictures;
  Programs& programs;
};

}  // namespace vc
