// A full download at 115200 baud to the simulated unit that takes the true time of the line for every byte,
// with no host-made stage and with six: how much longer than the bytes' own time it takes.
#include <csignal>
#include <filesystem>

#include <benchmark/benchmark.h>
#include <unistd.h>

#include "NoPrograms.h"
#include "Program.h"
#include "RecordingPrinters.h"
#include "TempFolder.h"
#include "TestSession.h"
#include "host/CairoPictures.h"
#include "host/PosixSerialPorts.h"
#include "host/SystemClock.h"
#include "model/Kinds.h"

namespace {

// A real port that counts what passes.
class CountingPort : public vc::SerialPort {
 public:
  CountingPort(std::unique_ptr<vc::SerialPort> realPort, std::size_t& passed)
      : port(std::move(realPort)), bytes(passed) {}
  bool Configure(const vc::SerialConfig& config) override { return port->Configure(config); }
  std::size_t Write(std::span<const std::uint8_t> data) override { return Count(port->Write(data)); }
  std::size_t Read(std::span<std::uint8_t> data) override { return Count(port->Read(data)); }
  vc::SerialErrors TakeErrors() override { return port->TakeErrors(); }
  std::size_t UnsentBytes() override { return port->UnsentBytes(); }
  void DiscardInput() override { port->DiscardInput(); }
  void DiscardOutput() override { port->DiscardOutput(); }
  void AwaitInput(std::int64_t microseconds) override { port->AwaitInput(microseconds); }

 private:
  std::size_t Count(std::size_t count) {
    bytes += count;
    return count;
  }
  std::unique_ptr<vc::SerialPort> port;
  std::size_t& bytes;
};

class OnePort : public vc::SerialPorts {
 public:
  explicit OnePort(std::string devicePath) : path(std::move(devicePath)) {}
  std::unique_ptr<vc::SerialPort> Open(const std::string& /*name*/, std::string& reason) override {
    auto port = host::OpenSerialDevice(path, reason);
    return port ? std::make_unique<CountingPort>(std::move(port), bytes) : nullptr;
  }
  std::string PlaceForLine(const std::string& /*name*/) override { return {}; }
  std::size_t bytes = 0;

 private:
  std::string path;
};

struct PacedUnit {
  support::TempFolder folder;
  std::string link = folder.Path() + "/line";
  support::Program unit{UNIT_PROGRAM, {"--link", link, "--pace"}};
  PacedUnit() {
    for (int i = 0; i < 1000 && !std::filesystem::exists(link); ++i) usleep(5000);
  }
};

// A session that is connected to it, with six filters.
struct PacedSession {
  PacedUnit paced;
  host::SystemClock clock;
  host::TimerLoop loop{clock};
  support::TestDesk desk{paced.folder.Path()};
  OnePort ports{paced.link};
  host::PosixFiles files;
  support::RecordingPrinters printers;
  host::CairoPictures pictures;
  support::NoPrograms programs;
  vc::Session session{{clock, loop, desk, ports, files, printers, pictures, programs}};
  PacedSession() {
    session.Start();
    session.settings.numFilters = 6;
  }
};

constexpr double MillisecondsPerByte = 10.0 / 115.2;

void FullDownload(benchmark::State& state) {
  PacedSession run;
  vc::Session& session = run.session;
  const bool hostMade = state.range(0) != 0;
  session.settings.filterType.Fill(hostMade ? vc::FilterKind::HiResGraphic : vc::FilterKind::Lowpass);
  std::size_t bytes = 0;
  for (auto _ : state) {
    const std::size_t before = run.ports.bytes;
    session.download.DownloadSettings(vc::DownloadMode::KeepTables);
    bytes += run.ports.bytes - before;
  }
  if (!session.device.comm.CommPortOpen) state.SkipWithError("the link was lost");
  const double transactions = static_cast<double>(run.desk.progress.back().second);
  state.counters["bytes"] =
      benchmark::Counter(static_cast<double>(bytes), benchmark::Counter::kAvgIterations);
  state.counters["frames"] = transactions;
  state.counters["line_ms"] = benchmark::Counter(static_cast<double>(bytes) * MillisecondsPerByte,
                                                 benchmark::Counter::kAvgIterations);
}
BENCHMARK(FullDownload)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

// Between two setups with six other filters: from the key to the last frame. What is waited for the next
// tick, 50 ms at most, comes on top.
void SwitchSetup(benchmark::State& state) {
  PacedSession run;
  vc::Session& session = run.session;
  session.settings.filterType.Fill(vc::FilterKind::Lowpass);
  session.edits.Fit();
  session.pair.Switch();
  for (int stage = 1; stage <= vc::FilterStages; ++stage) {
    session.edits.Apply({{vc::FindField("lpfCutoff"), stage, 0, 1000.0}}, {"Cutoff"});
  }
  session.edits.SendChanges();
  const std::size_t before = run.ports.bytes;
  for (auto _ : state) {
    session.pair.Switch();
    session.edits.SendChanges();
  }
  if (!session.device.comm.CommPortOpen) state.SkipWithError("the link was lost");
  const auto bytes = static_cast<double>(run.ports.bytes - before);
  state.counters["bytes"] = benchmark::Counter(bytes, benchmark::Counter::kAvgIterations);
  state.counters["line_ms"] =
      benchmark::Counter(bytes * MillisecondsPerByte, benchmark::Counter::kAvgIterations);
}
BENCHMARK(SwitchSetup)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(4);

}  // namespace
