// What the host's side of the link costs: a command's round trip through the real port on a pseudo-terminal
// whose far end answers at once, and the numeric services.
#include <array>
#include <atomic>
#include <memory>
#include <thread>

#include <benchmark/benchmark.h>
#include <kiss_fftr.h>

#include "OnePort.h"
#include "Pty.h"
#include "Unheard.h"
#include "host/SystemClock.h"
#include "link/FilterTransform.h"
#include "link/modDeviceComm.h"

namespace {

// Answers every frame of the given size with "!OK".
class Answerer {
 public:
  Answerer(const support::Pty& line, std::size_t frameSize)
      : thread([this, &line, frameSize] {
          while (!stop) {
            if (line.Read(frameSize, 100).size() == frameSize) line.Write("!OK");
          }
        }) {}
  ~Answerer() {
    stop = true;
    thread.join();
  }
  Answerer(const Answerer&) = delete;
  Answerer& operator=(const Answerer&) = delete;

 private:
  std::atomic<bool> stop = false;
  std::thread thread;
};

struct OpenLink {
  support::Pty line;
  bench::OnePort ports{line.Path()};
  host::SystemClock clock;
  vc::veltrana library{ports, clock};
  std::int16_t comPort = 1, baudIndex = 4;
  bool linkReady = false;
  vc::modDeviceComm device{library, {comPort, baudIndex, linkReady}, support::Unheard<vc::LinkHooks>()};

  OpenLink() {
    device.hooks.mainTimerMilliseconds = [] { return 50; };
    device.comm.CommPortId = library.OpenComm("COM1", 4096, 4096);
    device.comm.CommPortOpen = device.comm.ApplyCommState(-1);
  }
};

void CommandRoundTrip(benchmark::State& state) {
  OpenLink link;
  const Answerer answerer(link.line, std::tuple_size_v<vc::CommandFrame>);
  for (auto _ : state) link.device.IssueCommand(17, 200, 2);
  if (!link.device.comm.CommPortOpen || link.device.CommRetryCount != 0) state.SkipWithError("lost answers");
}
BENCHMARK(CommandRoundTrip)->Unit(benchmark::kMicrosecond)->UseRealTime()->MinTime(2.0);

void PacketRoundTrip(benchmark::State& state) {
  OpenLink link;
  const Answerer answerer(link.line, std::tuple_size_v<vc::PacketFrame>);
  const std::array<std::uint8_t, vc::PacketPayload> payload{};
  for (auto _ : state) link.device.SendDataPacket(payload, 3, 5, false);
  if (!link.device.comm.CommPortOpen || link.device.CommRetryCount != 0) state.SkipWithError("lost answers");
}
BENCHMARK(PacketRoundTrip)->Unit(benchmark::kMicrosecond)->UseRealTime()->MinTime(2.0);

void IdlePollStep(benchmark::State& state) {
  OpenLink link;
  link.device.ReplyTicksLeft = 20000;
  link.device.ReplyBytesExpected = 46;
  for (auto _ : state) {
    link.device.ReplyTicksLeft = 20000;
    link.device.RequestBargraphData();
  }
}
BENCHMARK(IdlePollStep)->Unit(benchmark::kMicrosecond);

void Ifft(benchmark::State& state) {
  vc::FilterTransform transform;
  std::vector<float> buffer(vc::IfftCapacity, 1.0F);
  for (auto _ : state) {
    transform.CalculateIFFT(static_cast<std::int16_t>(state.range(0)), 1,
                            std::span<float, vc::IfftCapacity>(buffer.data(), vc::IfftCapacity));
    benchmark::DoNotOptimize(buffer.data());
  }
}
BENCHMARK(Ifft)->Arg(246)->Arg(1024)->Arg(4096)->Unit(benchmark::kMicrosecond);

// The same taps by another's real inverse transform: the alternating sign delays by half the length.
void KissIfft(benchmark::State& state) {
  const auto size = static_cast<std::size_t>(state.range(0));
  const std::unique_ptr<kiss_fftr_state, void (*)(void*)> plan(
      kiss_fftr_alloc(static_cast<int>(size), 1, nullptr, nullptr),
      [](void* memory) { kiss_fftr_free(memory); });
  std::vector<float> buffer(vc::IfftCapacity, 1.0F);
  std::vector<kiss_fft_cpx> spectrum(size / 2 + 1);
  for (auto _ : state) {
    const float scale = 1.0F / static_cast<float>(size);
    for (std::size_t k = 0; k <= size / 2; ++k)
      spectrum[k] = {k % 2 == 0 ? buffer[k] * scale : -buffer[k] * scale, 0};
    kiss_fftri(plan.get(), spectrum.data(), buffer.data());
    benchmark::DoNotOptimize(buffer.data());
  }
}
BENCHMARK(KissIfft)->Arg(246)->Arg(1024)->Arg(4096)->Unit(benchmark::kMicrosecond);

}  // namespace
