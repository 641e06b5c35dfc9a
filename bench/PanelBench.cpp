// What an edit costs the interface: a move of a slider with its curve, an undo, a panel that comes and goes.
#include <algorithm>
#include <chrono>
#include <string>

#include <benchmark/benchmark.h>

#include "PanelOpening.h"
#include "model/Kinds.h"

namespace {

using Clock = std::chrono::steady_clock;

// An operator's hand on a slider of a panel, on its way to and fro within a part of the range.
struct Hand {
  Hand(const char* panel, const char* slider, double part) {
    OpenPanel(run, panel);
    const vc::AnyControl* longest = vc::FindControl(run.Top(), "sldrTransSlope");
    if (longest != nullptr) vc::SetControl(*longest, "463");
    moved = vc::SliderIn(run.Find(slider));
    from = moved->PositionMin() + (moved->PositionMax() - moved->PositionMin()) * part;
    moved->SetPosition(from);
    moved->Hold();
  }
  void Move() {
    constexpr int steps = 200;
    const double length = std::min(moved->PositionMax() - from, steps * moved->KeyArrowStepSize);
    const double next = moved->Position() + moved->KeyArrowStepSize;
    moved->SetPosition(next > from + length ? from : next);
  }

  support::PanelRun run;
  vc::Slider* moved = nullptr;
  double from = 0;
};

struct Move {
  const char *name, *panel, *slider;
  double part = 0.4;  // of the range, where it begins
};
constexpr Move Moves[]{{"lowpass", "CtlLPF", "sldrCutoff"},
                       {"bandpass", "CtlBPF", "sldrHiCutoff"},
                       {"comb", "CtlComb", "sldrFreq"},
                       {"inverse comb", "CtlSpcht", "sldrFreq"},
                       {"comb of the longest period", "CtlComb", "sldrDepth", 0.0},
                       {"notch", "CtlNotch", "sldrFreq"},
                       {"slot", "CtlSlot", "sldrFreq"},
                       {"multiple notch", "CtlMNotch", "sldrFreq(3)"},
                       {"multiple slot", "CtlMSlot", "sldrFreq(3)"},
                       {"twenty bands", "Ctl20Ban", "sldrGain(7)"},
                       {"twenty bands of an equalizer", "CtlEq", "sldrGain(7)"},
                       {"three sections", "CtlParEq", "sldrCenter(1)"},
                       {"two sections", "CtPar2Eq", "sldrCenter(1)"},
                       {"noise reducer", "CtlNoiseReducer", "sldrAtten"},
                       {"noise bands", "CtlNoiseEq", "sldrGain(7)"},
                       {"expansion ratio", "CtlLCE", "udExpRatio"}};

// The counter is the time of the move over that of a lowpass at the longest filter, moved by turns with it.
void MoveASlider(benchmark::State& state, const Move& move) {
  Hand hand(move.panel, move.slider, move.part), cutOff("CtlLPF", "sldrCutoff", 0.4);
  Clock::duration own{}, lowpass{};
  for (auto unused : state) {
    const auto start = Clock::now();
    hand.Move();
    const auto between = Clock::now();
    cutOff.Move();
    own += between - start;
    lowpass += Clock::now() - between;
    state.SetIterationTime(std::chrono::duration<double>(between - start).count());
  }
  state.counters["ratio"] =
      std::chrono::duration<double>(own).count() / std::chrono::duration<double>(lowpass).count();
}

const bool registered = [] {
  for (const Move& move : Moves) {
    benchmark::RegisterBenchmark((std::string("MoveASlider/") + move.name).c_str(), MoveASlider, move)
        ->UseManualTime()
        ->Unit(benchmark::kMicrosecond);
  }
  return true;
}();

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
