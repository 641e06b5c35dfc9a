// Updates of whatever files against a boot ROM that answers whatever the input says: each of them ends with
// the line free, nothing is erased for nothing, and one that is told to have succeeded has.
#include <algorithm>
#include <array>
#include <numeric>

#include "HostileUnit.h"
#include "MemoryFiles.h"
#include "NoPrograms.h"
#include "Promise.h"
#include "QuietDesk.h"
#include "RecordingPrinters.h"
#include "firmware/FrmFirmwareUpload.h"
#include "host/CairoPictures.h"
#include "host/TimerLoop.h"
#include "link/LineTap.h"
#include "text/modString.h"

namespace fuzz {
namespace {

const std::string Folder = "/program";
constexpr std::size_t PacketSize = 132;
constexpr const char* Ack = "\x06";

// It knows what it was sent, holds the host to it, and says the right thing or another one.
class HostileBootRom {
 public:
  explicit HostileBootRom(Input answers) : script(answers) {}

  support::FarEnd End() {
    support::FarEnd end = voice.End();
    end.receive = [this](std::span<const std::uint8_t> bytes, std::int64_t now, std::uint32_t baud) {
      Require(baud == 115200, "the boot ROM is spoken to at its rate");
      Take(std::string(bytes.begin(), bytes.end()), now);
    };
    return end;
  }

  support::LineState* line = nullptr;
  std::array<std::string, 2> sections;        // what came in packets that it took
  std::array<bool, 2> erased{}, confirmed{};  // asked to erase; its true digits were said
  bool restarted = false;
  bool late = false;  // an answer came after nobody waited for it any more, and may be taken for another one

 private:
  void Take(const std::string& bytes, std::int64_t now) {
    if (bytes.size() == PacketSize) return TakePacket(bytes, now);
    if (bytes == "?TERMIN") return void(Say("VELTRANUM", now));
    if (bytes == "?M" || bytes == "?D") return Prepare(bytes == "?M" ? 0 : 1, now);
    if (bytes == "YY") return Erase(now);
    if (bytes == "\x04") return EndTransfer(now);
    Require(bytes == "?X", "what is sent is a command, a packet or an end");
    restarted = true;
  }
  void Prepare(std::size_t which, std::int64_t now) {
    Require(which == 0 || confirmed[0], "section 2 comes behind section 1");
    section = which;
    Say(which == 0 ? "MDL" : "DDL", now);
  }
  void Erase(std::int64_t now) {
    Require(section < sections.size(), "something is erased that was prepared");
    erased.at(section) = true;
    sections.at(section).clear();
    confirmed.at(section) = false;
    next = 1;
    Say("OK\r\n", now);
    Say("\x15", now + 500'000);
  }
  void TakePacket(const std::string& bytes, std::int64_t now) {
    const auto at = [&bytes](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
    const int sum = std::accumulate(bytes.begin() + 3, bytes.end() - 1, 0, [](int total, char byte) {
      return total + static_cast<std::uint8_t>(byte);
    });
    Require(at(0) == 1 && at(1) + at(2) == 255 && at(131) == (sum & 255), "a packet is whole");
    Require(section < sections.size() && erased.at(section), "packets follow the erasing");
    const bool again = at(1) == ((next - 1) & 255), wanted = at(1) == (next & 255);
    Require(again || wanted || strayed || late, "packets come in their order");
    strayed = strayed || again;  // an answer that comes late is then taken for the next packet's
    if (!again && !wanted) return void(Say("\x15", now));
    // One to which it does not say so it may not have taken.
    const bool taken = Say(Ack, now).find(Ack) != std::string::npos || script.Below(2) == 0;
    if (again || !taken) return;
    sections.at(section) += bytes.substr(3, 128);
    ++next;
  }
  void EndTransfer(std::int64_t now) {
    if (section >= sections.size()) return;
    const auto& data = sections.at(section);
    const unsigned sum = std::accumulate(data.begin(), data.end(), 0U, [](unsigned total, char byte) {
      return total + static_cast<std::uint8_t>(byte);
    });
    const std::string digits = vc::HexPadded(sum & 0xFFFFU, 4);
    if (Say(Ack + digits, now).find(digits) != std::string::npos) confirmed.at(section) = true;
  }
  // Returns what it says.
  std::string Say(std::string bytes, std::int64_t now) {
    constexpr std::array<std::int64_t, 4> delays{0, 15'000, 700'000, 22'000'000};
    constexpr std::array<std::int64_t, 4> gaps{0, 87, 25'000, 3'000'000};
    const unsigned kind = script.Byte();
    if ((kind & 7U) == 4 && !bytes.empty())
      bytes[script.Below(bytes.size())] = static_cast<char>(script.Byte());
    if ((kind & 7U) == 5) bytes = script.Text(script.Byte());
    if ((kind & 7U) == 6) bytes.insert(script.Below(bytes.size() + 1), 1, static_cast<char>(script.Byte()));
    if ((kind & 7U) == 7) line->gone = line->gone || script.Below(4) == 0;
    late = late || (kind >> 3U & 3U) == 3 || (kind >> 5U & 3U) == 3;
    if ((kind & 7U) == 7) return {};
    voice.Send({bytes, delays[kind >> 3U & 3U], gaps[kind >> 5U & 3U]}, now);
    return bytes;
  }

  Input script;
  support::ScriptedUnit voice;
  std::size_t section = 2;
  int next = 1;
  bool strayed = false;  // an answer was believed that was none
};

struct Run {
  HostileBootRom rom;
  support::VirtualClock clock;
  host::TimerLoop loop{clock};
  QuietDesk desk{Folder};
  MemoryFiles files;
  support::VirtualPorts ports{clock, rom.End()};
  support::RecordingPrinters printers;
  host::CairoPictures pictures;
  support::NoPrograms programs;
  vc::Platform platform{clock, loop, desk, ports, files, printers, pictures, programs};
  vc::modDebug log;
  vc::SystemSettings settings;
  vc::Forms forms{[](const std::string& /*message*/) {}};
  vc::LineTap tap;
  vc::FrmFirmwareUpload window{platform, log, settings, forms, tap};

  explicit Run(Input answers) : rom(answers) { rom.line = &ports.state; }
};

// Of packets that differ; now and then with an end that they do not cover, or nothing at all.
std::string File(Input& ops) {
  constexpr std::array<std::size_t, 8> ends{0, 0, 0, 0, 1, 63, 64, 65};
  std::string file;
  for (std::size_t packets = ops.Below(4) + 1; packets > 0; --packets)
    file.append(128, static_cast<char>(ops.Byte()));
  const std::size_t kind = ops.Byte();
  if (kind == 255) file.clear();
  return file.append(ends[kind % ends.size()], '\x55');
}

bool Holds(const std::string& section, const std::string& file) {
  return section.starts_with(file) && section.size() - file.size() < 128;
}

void RequireOutcome(const Run& run, const std::string& failure) {
  const std::string& main = run.files.content.at(Folder + "/vlnamain.fwr");
  const std::string& daughter = run.files.content.at(Folder + "/vlnadaug.fwr");
  const auto& rom = run.rom;
  Require(!run.ports.state.open && !run.loop.endRefused && run.window.form.refusal.empty(),
          "the line is free");
  Require(!run.window.tmrBlink->Enabled() && !run.loop.Ending(), "nothing goes on");
  for (const auto& [file, erased] : {std::pair{&main, rom.erased[0]}, {&daughter, rom.erased[1]}}) {
    const std::size_t rest = file->size() % 128;
    Require(!erased || (!file->empty() && (rest == 0 || rest >= 64)),
            "nothing is erased for a file that cannot be sent");
  }
  if (!failure.empty()) return;
  Require(rom.restarted && rom.erased[0] && rom.erased[1], "a success went through all steps");
  if (rom.late) return;
  Require(rom.confirmed[0] && rom.confirmed[1], "a success was told both sums");
  Require(Holds(rom.sections[0], main) && Holds(rom.sections[1], daughter),
          "a success has both files in the unit");
}

void TryUpdate(Input ops, Input answers) {
  constexpr double patience = 2000.0;  // virtual seconds: ten packets ten times, commands and ends
  Run run(answers);
  run.ports.state.absent = ops.Below(32) == 31;
  run.ports.state.refusesConfig = ops.Below(32) == 31;
  run.files.content[Folder + "/vlnamain.fwr"] = File(ops);
  run.files.content[Folder + "/vlnadaug.fwr"] = File(ops);
  bool over = false;
  std::string failure;
  run.window.Take("4.00", [&](const std::string& words) {
    over = true;
    failure = words;
  });
  run.window.Fill();
  run.forms.Show(run.window.form, vc::Modality::Modal);
  const double start = run.clock.Seconds();
  while (!over && run.clock.Seconds() - start < patience) run.loop.RunFor(1000);
  Require(over && run.forms.open.empty(), "every update ends");
  RequireOutcome(run, failure);
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input({data, size});
  const fuzz::Input ops = input.Part();
  fuzz::TryUpdate(ops, input);
  return 0;
}
