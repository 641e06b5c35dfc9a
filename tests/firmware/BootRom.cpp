#include "BootRom.h"

#include <algorithm>
#include <cstdio>
#include <numeric>
#include <sstream>

namespace support {
namespace {

constexpr std::size_t PacketSize = 132;
constexpr std::int64_t MicrosecondsPerByte = 87, PauseMicroseconds = 100000;
constexpr const char* Ack = "\x06";
constexpr const char* Nak = "\x15";

}  // namespace

FarEnd BootRom::End() {
  return {.receive =
              [this](std::span<const std::uint8_t> bytes, std::int64_t now, std::uint32_t baud) {
                if (baud != 115200) protests.push_back("baud " + std::to_string(baud));
                input.append(bytes.begin(), bytes.end());
                Take(now + static_cast<std::int64_t>(bytes.size()) * MicrosecondsPerByte);
              },
          .transmit = [this](std::int64_t now) { return Transmit(now); },
          .nextEvent = [this]() -> std::optional<std::int64_t> {
            std::optional<std::int64_t> next;
            if (!pending.empty()) next = pending.front().time;
            if (transfer && !anyPacket) next = std::min(next.value_or(nextAsk), nextAsk);
            return next;
          }};
}

int BootRom::Count(const std::string& event) const {
  return static_cast<int>(std::ranges::count(heard, event));
}

std::string BootRom::Hear(const std::string& event, const std::string& regular, std::int64_t at) {
  heard.push_back(event);
  std::string bytes = instead(event, Count(event)).value_or(regular);
  std::istringstream parts(bytes);
  for (std::string part; std::getline(parts, part, '\t'); at += PauseMicroseconds) {
    pending.insert(std::ranges::upper_bound(pending, at, {}, &Due::time), {at, part});
  }
  return bytes;
}

Bytes BootRom::Transmit(std::int64_t now) {
  if (transfer && !anyPacket && nextAsk <= now) {
    Hear("ask", Nak, nextAsk);
    nextAsk += askMicroseconds;
  }
  Bytes bytes;
  for (; !pending.empty() && pending.front().time <= now; pending.pop_front()) {
    bytes.insert(bytes.end(), pending.front().bytes.begin(), pending.front().bytes.end());
  }
  return bytes;
}

void BootRom::Take(std::int64_t now) {
  if (transfer) {
    TakeData(now);
    return;
  }
  if (!TakeCommand(now)) protests.push_back(input);
  input.clear();
}

bool BootRom::TakeCommand(std::int64_t now) {
  if (input == "\x04") {
    Hear("EOT", "", now);  // whoever leaves a transfer may not know that it has ended
    return true;
  }
  if (input == "?TERMIN") {
    Hear(input, "VELTRANUM", now);
  } else if (input == "?M" || input == "?D") {
    section = input == "?M" ? 0 : 1;
    Hear(input, input == "?M" ? "MDL" : "DDL", now);
  } else if (input == "YY" && section >= 0) {
    transfer = Hear(input, "OK" + afterErase, now + eraseMicroseconds).starts_with("OK");
    anyPacket = false;
    expected = 1;
    nextAsk = now + eraseMicroseconds + askMicroseconds / 2;
    if (transfer) sections.at(static_cast<std::size_t>(section)).clear();
  } else if (input == "?X") {
    Hear(input, "", now);
    restarted = true;
  } else {
    return false;
  }
  return true;
}

void BootRom::TakeData(std::int64_t now) {
  while (!input.empty()) {
    if (input[0] == '\x04') {
      input.erase(0, 1);
      transfer = !Hear("EOT", Ack + Digits(), now).starts_with(Ack);
      return;
    }
    if (input.size() < PacketSize) return;
    if (!TakePacket(now)) protests.push_back("packet");
    input.erase(0, PacketSize);
  }
}

bool BootRom::TakePacket(std::int64_t now) {
  const auto byte = [this](std::size_t at) { return static_cast<std::uint8_t>(input[at]); };
  const auto number = static_cast<std::uint8_t>(expected & 255);
  const int sum = std::accumulate(input.begin() + 3, input.begin() + 131, 0, [](int total, char c) {
    return (total + static_cast<std::uint8_t>(c)) & 255;
  });
  const bool again = anyPacket && byte(1) == static_cast<std::uint8_t>(number - 1);
  if (byte(0) != 1 || byte(1) + byte(2) != 255 || byte(131) != sum || (byte(1) != number && !again))
    return false;
  anyPacket = true;
  const int which = again ? expected - 1 : expected;
  const std::string event = "packet " + std::to_string(which);
  if (!Hear(event, Ack, now).ends_with(Ack) || again) return true;
  auto& data = sections.at(static_cast<std::size_t>(section));
  data.insert(data.end(), input.begin() + 3, input.begin() + 131);
  ++expected;
  return true;
}

std::string BootRom::Digits() const {
  const auto& data = sections.at(static_cast<std::size_t>(section));
  char text[5];
  std::snprintf(text, sizeof text, "%04X", std::accumulate(data.begin(), data.end(), 0U) & 0xFFFFU);
  return text;
}

}  // namespace support
