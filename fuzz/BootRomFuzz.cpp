// The simulated unit's boot ROM against a host that says whatever the input says: commands whole and in
// pieces, packets good and bad, whole images, frames, noise and silence. No section changes without "YY",
// what is written is what was sent, and the application runs only on two images that are as the format says.
#include <array>
#include <numeric>
#include <string>

#include "Input.h"
#include "Promise.h"
#include "unit/Dump.h"
#include "unit/ImageFile.h"

namespace fuzz {
namespace {

using unit::Bytes;

// By the division of polynomials, the highest power in the lowest bit.
std::uint32_t Crc(const Bytes& bytes, std::size_t count) {
  std::uint64_t rest = 0xFFFFFFFF;
  for (std::size_t i = 0; i < count; ++i) {
    for (unsigned bit = 0; bit < 8; ++bit) {
      const bool carry = ((rest ^ static_cast<unsigned>(bytes[i]) >> bit) & 1U) != 0;
      rest = rest >> 1U ^ (carry ? 0xEDB88320U : 0U);
    }
  }
  return static_cast<std::uint32_t>(rest ^ 0xFFFFFFFF);
}

std::size_t Number(const Bytes& bytes, std::size_t place, unsigned count) {
  std::size_t value = 0;
  while (count > 0) value = value * 256 + bytes[place + --count];
  return value;
}

bool IsImage(const Bytes& content, char kind) {
  const std::string head = std::string("VLNIMAGE") + kind + '\1';
  if (content.size() < 20 || !std::equal(head.begin(), head.end(), content.begin())) return false;
  const std::size_t size = Number(content, 12, 4);
  return size >= 20 && size <= content.size() && Crc(content, size - 4) == Number(content, size - 4, 4);
}

struct Host {
  unit::Unit unit;
  std::int64_t now = 0;
  std::string said;
  bool erased = false;  // it has said "YY"
  std::uint32_t faulty;

  explicit Host(const unit::Options& options) : unit(options), faulty(options.romFaults.begin()->first) {}
  void Send(const Bytes& bytes, int rate = unit::RomBaud) {
    said.append(bytes.begin(), bytes.end());
    erased = erased || said.find("YY") != std::string::npos;
    if (said.size() > 1) said.erase(0, said.size() - 1);
    unit.Receive(bytes, now, rate);
  }
  Bytes Wait(std::int64_t microseconds) {
    now += microseconds;
    return unit.Transmit(now);
  }
};

Bytes Packet(std::size_t number, std::span<const std::uint8_t> data) {
  Bytes packet{1, static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(~number)};
  packet.insert(packet.end(), data.begin(), data.end());
  packet.resize(131);
  packet.push_back(static_cast<std::uint8_t>(std::accumulate(packet.begin() + 3, packet.end(), 0)));
  return packet;
}

constexpr std::array<std::string_view, 5> commands{"?TERMIN", "?M", "?D", "YY", "?X"};
constexpr std::int64_t LongEnough = 5'000'000;

void SayCommand(Host& host, Input& input) {
  const std::string_view text = commands[input.Below(commands.size())];
  host.Send({text.begin(), text.end()});
  host.Wait(LongEnough);
}

void SayPieces(Host& host, Input& input) {
  for (const char character : commands[input.Below(commands.size())]) {
    host.Wait(10'000LL * input.Byte());
    host.Send({static_cast<std::uint8_t>(character)});
  }
}

void SendPacket(Host& host, Input& input) {
  const std::size_t number = input.Byte(), flips = input.Byte();
  Bytes packet = Packet(number, input.Bytes(input.Below(129)));
  if (flips != 0) packet[input.Below(packet.size())] ^= static_cast<std::uint8_t>(flips);
  host.Send(packet);
}

// A whole update of a section, or what the input leaves of it, perhaps with a fault in the file.
void Update(Host& host, Input& input) {
  const unit::Section section = unit::Sections[input.Below(2)];
  Bytes image = MakeImage(section, static_cast<int>(input.Below(1000)), 20 + input.Below(1024));
  if (const std::size_t place = input.Below(512); place < image.size()) image[place] ^= 16U;
  const std::size_t packets = image.size() / 128 + 1, sent = std::min<std::size_t>(packets, input.Byte());
  for (const std::string_view text : {commands[0], commands[NumberOf(section)], commands[3]}) {
    host.Send({text.begin(), text.end()});
    host.Wait(LongEnough);
  }
  for (std::size_t i = 0; i < sent; ++i) {
    const auto rest = std::span(image).subspan(i * 128);
    host.Send(Packet(i + 1, rest.first(std::min<std::size_t>(128, rest.size()))));
  }
  host.Send({unit::Eot});
  host.Wait(LongEnough);
}

void SendAnything(Host& host, Input& input) {
  const auto bytes = input.Bytes(input.Byte());
  host.Send({bytes.begin(), bytes.end()}, input.Byte() == 1 ? 9600 : unit::RomBaud);
}

std::string SumOf(const Bytes& bytes) {
  char digits[5];
  std::snprintf(digits, sizeof digits, "%04X", std::accumulate(bytes.begin(), bytes.end(), 0U) % 0x10000U);
  return digits;
}

// Its answer is the sum of a section as it stands then, unless a fault has befallen it.
void SayEnd(Host& host, Input& /*input*/) {
  host.Wait(LongEnough);
  const std::uint32_t exchanges = host.unit.Rom().Exchanges();
  host.Send({unit::Eot});
  const Bytes heard = host.Wait(LongEnough);
  const bool answered = heard.size() == 5 && host.unit.Rom().Exchanges() == exchanges + 1;
  if (!answered || heard[0] != unit::Ack || exchanges + 1 == host.faulty) return;
  const std::string digits(heard.begin() + 1, heard.end());
  const unit::Images& images = host.unit.Rom().images;
  Require(digits == SumOf(images[0]) || digits == SumOf(images[1]), "the sum is that of what was written");
}

void Pause(Host& host, Input& input) { host.Wait(1000LL * input.Word()); }

void HangUp(Host& host, Input& /*input*/) { host.unit.LineClosed(); }

constexpr std::array Operations{SayCommand, SayCommand, SayPieces, SendPacket,   SendPacket,
                                Update,     SayEnd,     Pause,     SendAnything, HangUp};

void RequireTruth(Host& host, const unit::Images& before) {
  const unit::Images& now = host.unit.Rom().images;
  Require(host.erased || now == before, "no section changes without its erasure");
  const bool good = IsImage(now[0], 'M') && IsImage(now[1], 'D');
  Require(good || !host.unit.InApplication(), "the application needs both images");
  const std::string dump = DumpText(host.unit);
  for (const unit::Section section : unit::Sections) {
    const bool called =
        dump.find("image " + std::to_string(NumberOf(section)) + " complete") != std::string::npos;
    Require(!called || IsImage(ImageOf(now, section), section == unit::Section::Main ? 'M' : 'D'),
            "what it calls complete is an image");
  }
  Require(now[0].size() <= unit::SectionCapacity && now[1].size() <= unit::SectionCapacity,
          "there is room for it");
}

void TryHost(Input input) {
  constexpr int mostSteps = 48;
  constexpr std::int64_t hour = 3'600'000'000;
  unit::Options options;
  options.pace = (input.Byte() & 1U) != 0;
  options.romFaults[1U + input.Byte() % 64U] = static_cast<unit::RomFault>(input.Below(8));
  Host host(options);
  unit::Images kept = host.unit.Rom().images;
  const unit::Images before = kept;
  host.unit.imagesChanged = [&](const unit::Images& images) { kept = images; };
  for (int step = 0; step < mostSteps && !input.AtEnd(); ++step) {
    Operations[input.Below(Operations.size())](host, input);
    RequireTruth(host, before);
  }
  host.Wait(hour);
  Require(!host.unit.NextEvent(), "it falls silent");
  Require(kept == host.unit.Rom().images, "every change is told of");
  host.unit.Install(kept);
  const bool good = IsImage(kept[0], 'M') && IsImage(kept[1], 'D');
  Require(good || !host.unit.InApplication(), "nor does it start without them");
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::TryHost(fuzz::Input({data, size}));
  return 0;
}
