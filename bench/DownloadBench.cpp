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

void FullDownload(benchmark::State& state) {
  const PacedUnit paced;
  host::SystemClock clock;
  host::TimerLoop loop(clock);
  support::TestDesk desk(paced.folder.Path());
  OnePort ports(paced.link);
  host::PosixFiles files;
  support::RecordingPrinters printers;
  host::CairoPictures pictures;
  support::NoPrograms programs;
  vc::Session session({clock, loop, desk, ports, files, printers, pictures, programs});
  session.Start();
  session.settings.numFilters = 6;
  const bool hostMade = state.range(0) != 0;
  session.settings.filterType.Fill(hostMade ? vc::FilterKind::HiResGraphic : vc::FilterKind::Lowpass);
  std::size_t bytes = 0;
  for (auto _ : state) {
    const std::size_t before = ports.bytes;
    session.download.DownloadSettings(vc::DownloadMode::KeepTables);
    bytes += ports.bytes - before;
  }
  if (!session.device.comm.CommPortOpen) state.SkipWithError("the link was lost");
  constexpr double secondsPerByte = 10.0 / 115200.0;
  const double transactions = static_cast<double>(desk.progress.back().second);
  state.counters["bytes"] =
      benchmark::Counter(static_cast<double>(bytes), benchmark::Counter::kAvgIterations);
  state.counters["frames"] = transactions;
  state.counters["line_ms"] = benchmark::Counter(static_cast<double>(bytes) * secondsPerByte * 1000.0,
                                                 benchmark::Counter::kAvgIterations);
}
BENCHMARK(FullDownload)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

}  // namespace
