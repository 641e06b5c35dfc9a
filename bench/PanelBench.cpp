// What an edit costs the interface: a move of a slider with its curve, an undo, a panel that comes and goes.
#include <benchmark/benchmark.h>

#include "PanelRun.h"
#include "model/Kinds.h"

namespace {

void MoveASlider(benchmark::State& state, std::int16_t kind, const char* slider) {
  support::PanelRun run;
  run.OpenFilter(1, kind);
  run.Set("sldrTransSlope", "463");
  auto& moved = *std::get<vc::Slider*>(run.Find(slider));
  double position = 1000;
  moved.Hold();
  for (auto unused : state) {
    position = position > 2000 ? 1000 : position + 1;
    moved.SetPosition(position);
  }
}
BENCHMARK_CAPTURE(MoveASlider, lowpass, vc::FilterKind::Lowpass, "sldrCutoff")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(MoveASlider, bandpass, vc::FilterKind::Bandpass, "sldrHiCutoff")
    ->Unit(benchmark::kMicrosecond);

void UndoAndRedo(benchmark::State& state) {
  support::PanelRun run;
  run.Edit("ihpfCutoff", "300");
  for (auto unused : state) {
    run.session.history.Undo();
    run.session.history.Redo();
  }
}
BENCHMARK(UndoAndRedo)->Unit(benchmark::kMicrosecond);

void OpenAndClose(benchmark::State& state) {
  support::PanelRun run;
  run.record.filterType[1] = vc::FilterKind::Bandpass;
  for (auto unused : state) {
    run.session.panels.OpenFilter(1);
    run.CloseTop();
  }
}
BENCHMARK(OpenAndClose)->Unit(benchmark::kMicrosecond);

}  // namespace
