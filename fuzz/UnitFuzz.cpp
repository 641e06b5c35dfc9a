// The simulated unit against a host that sends it whatever the input says: commands, packets, pieces of them
// and noise. It answers in whole replies, what it holds is told in lines from which it can be read again, and
// its sound stays in range.
#include <array>
#include <cmath>
#include <numeric>

#include "HostileInput.h"
#include "Input.h"
#include "Promise.h"
#include "unit/MemoryFile.h"
#include "unit/Unit.h"
#include "unit/sound/Engine.h"

namespace fuzz {
namespace {

using unit::Bytes;

struct Host {
  unit::Unit unit;
  std::int64_t now = 0;
  Bytes heard;

  explicit Host(const unit::Options& options) : unit(options), baud(options.baud) {}
  void Send(const Bytes& bytes) {
    unit.Receive(bytes, now, baud);
    Listen();
  }
  void Listen() {
    const Bytes bytes = unit.Transmit(now);
    heard.insert(heard.end(), bytes.begin(), bytes.end());
  }
  void Wait(std::int64_t microseconds) {
    now += microseconds;
    Listen();
  }

 private:
  int baud;
};

std::uint8_t Complement(std::span<const std::uint8_t> bytes) {
  return static_cast<std::uint8_t>(256U - std::accumulate(bytes.begin(), bytes.end(), 0U) % 256);
}

// With its checksum, which is no obstacle to a host that means what it sends.
void SendFrame(Host& host, Bytes frame) {
  constexpr std::size_t header = 3;
  frame.push_back(Complement(std::span(frame).subspan(header)));
  host.Send(frame);
}

void SendCommand(Host& host, Input& input) {
  SendFrame(host, {'?', 'M', 'P', input.Byte(), input.Byte(), input.Byte()});
}

void SendPacket(Host& host, Input& input) {
  Bytes frame{'?', 'L', 'P', input.Byte()};
  const auto payload = input.Bytes(input.Below(unit::PayloadSize + 1));
  frame.insert(frame.end(), payload.begin(), payload.end());
  constexpr std::size_t unsealed = 4 + unit::PayloadSize;
  frame.resize(unsealed, input.Byte());
  SendFrame(host, std::move(frame));
}

// The packets of a design and the command that they are for.
void Synthesize(Host& host, Input& input) {
  const std::size_t packets = 1 + input.Below(64);
  const std::uint8_t step = input.Byte();
  for (std::size_t number = 0; number < packets; ++number) {
    Bytes frame{'?', 'L', 'P', static_cast<std::uint8_t>(number)};
    for (std::size_t i = 0; i < unit::PayloadSize; ++i) {
      frame.push_back(static_cast<std::uint8_t>(step * (number + i)));
    }
    SendFrame(host, std::move(frame));
  }
  SendFrame(host, {'?', 'M', 'P', unit::SynthesizeCode, input.Byte(), input.Byte()});
}

void SendAnything(Host& host, Input& input) {
  const auto bytes = input.Bytes(input.Byte());
  host.Send({bytes.begin(), bytes.end()});
}

void Pause(Host& host, Input& input) { host.Wait(1000LL * input.Word()); }

void HangUp(Host& host, Input& /*input*/) {
  host.unit.LineClosed();
  host.heard.clear();
}

void Learn(Host& host, Input& input) {
  std::vector<std::int32_t> coefficients(input.Below(9000), -(1 << 23));
  for (std::int32_t& coefficient : coefficients) coefficient += input.Word();
  host.unit.Learn(static_cast<unsigned>(input.Below(unit::PageCount)), coefficients);
}

void Recall(Host& host, Input& input) { host.unit.Recall(input.Byte() % (unit::MemoryCount + 2)); }

constexpr std::array Operations{SendCommand, SendCommand, SendCommand,  SendPacket, Synthesize,
                                Learn,       Pause,       SendAnything, HangUp,     Recall};

std::size_t SizeOfReply(std::string_view stream) {
  struct Form {
    std::string_view token;
    std::size_t size;
  };
  constexpr std::array<Form, 8> forms{{{"!OK", 3},
                                       {"!RT", 3},
                                       {"!VER", 10},
                                       {"!MG", 46},
                                       {"!EG", 8},
                                       {"!CV", 815},
                                       {"!S1", 558},
                                       {"!S2", 558}}};
  for (const Form& form : forms) {
    if (stream.starts_with(form.token)) return form.size;
  }
  return 0;
}

void RequireReplies(const Bytes& heard) {
  std::string text(heard.begin(), heard.end());
  std::string_view stream = text;
  while (!stream.empty()) {
    const std::size_t size = SizeOfReply(stream);
    Require(size > 0 && size <= stream.size(), "it speaks in whole replies");
    stream.remove_prefix(size);
  }
}

void RequireRetelling(const unit::Setting& setting) {
  const std::string text = SettingText(setting);
  unit::Setting again;
  for (std::string_view rest = text; !rest.empty();) {
    const std::string_view line = rest.substr(0, rest.find('\n'));
    TakeSettingLine(line, again);
    rest.remove_prefix(line.size() + 1);
  }
  Require(SettingText(again) == text, "what it tells is what it holds");
}

void RequireSound(const unit::Setting& setting, unsigned seed) {
  constexpr std::size_t frames = 256;
  constexpr int blocks = 3;
  unit::sound::Engine engine;
  engine.Recall(setting);
  bench::HostileInput input(engine.SampleRate(), seed);
  std::array<std::array<float, frames>, 2> sound{};
  for (int block = 0; block < blocks; ++block) {
    input.Next(sound);
    engine.Process(sound[0], sound[1], sound[0], sound[1]);
    for (const auto& side : sound) {
      for (const float sample : side) Require(std::abs(sample) <= 1.0F, "no sample is beyond full scale");
    }
  }
  for (const unsigned level : engine.Readings().levels) Require(level <= 32767, "a level has 15 bits");
}

void TryHost(Input input) {
  constexpr int mostSteps = 64;
  constexpr std::int64_t longEnough = 3'600'000'000;
  const unsigned way = input.Byte();
  unit::Options options;
  options.pace = (way & 1U) != 0;
  Host host(options);
  for (int step = 0; step < mostSteps && !input.AtEnd(); ++step) {
    Operations[input.Below(Operations.size())](host, input);
  }
  host.Wait(longEnough);
  Require(!host.unit.NextEvent(), "it falls silent");
  const bool applicationAlone = host.unit.Rom().Exchanges() == 0;
  if (applicationAlone) RequireReplies(host.heard);
  RequireRetelling(host.unit.Held());
  for (const auto& memory : host.unit.memories) {
    if (memory) RequireRetelling(memory->setting);
  }
  if ((way & 2U) != 0) RequireSound(host.unit.Held(), way);
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::TryHost(fuzz::Input({data, size}));
  return 0;
}
