// The unit's end of the serial line: a pseudo-terminal that the host finds under a symbolic link.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "unit/Bytes.h"

namespace unit {

// Owns one descriptor of the system.
class Descriptor {
 public:
  Descriptor() = default;
  ~Descriptor() { Close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  void Take(int opened);
  void Close();
  int Number() const { return descriptor; }
  bool Valid() const { return descriptor >= 0; }

 private:
  int descriptor = -1;
};

class PtyLine {
 public:
  PtyLine() = default;
  ~PtyLine();
  PtyLine(const PtyLine&) = delete;
  PtyLine& operator=(const PtyLine&) = delete;

  // Makes the pseudo-terminal and the link to it. A link that stands there is replaced, anything else is left
  // alone. Gives an empty text, or what went wrong.
  std::string Open(const std::string& linkPath);

  // What poll() is to watch for input.
  int Master() const { return master.Number(); }
  int Watch() const { return watch.Number(); }
  const std::string& Device() const { return device; }

  enum class Host { Stayed, Closed, ClosedAndOpened };
  struct Input {
    Bytes bytes;
    int rate = 0;  // as the host has set it, in baud
    // What the host did with its end. After Closed the bytes are from before; after ClosedAndOpened they are
    // taken to be from after it.
    Host host = Host::Stayed;
  };

  // Takes what is there, without waiting.
  Input Read();

  // Sends without waiting; what the line has no room for is lost, as nobody reads it.
  void Write(std::span<const std::uint8_t> bytes) const;

  // Discards what was sent and not read by the host.
  void DiscardSent() const;

 private:
  std::string OpenTerminal();
  std::string MakeLink(const std::string& linkPath);
  Host HostChange() const;

  Descriptor master;
  Descriptor slave;  // kept open, so that the line and its settings outlive the host's visits
  Descriptor watch;  // tells when the host opens and closes the line
  std::string device;
  std::string link;
};

}  // namespace unit
