// What the spectrum analyzer's window shows of sounds that are known: through the unit, the line and the
// host, worked by its controls.
#include <algorithm>
#include <cmath>
#include <memory>
#include <set>

#include <gmock/gmock.h>

#include "SoundRun.h"
#include "TempFolder.h"
#include "analysis/SignalCodes.h"
#include "model/FilterResponse.h"
#include "model/Kinds.h"
#include "unit/sound/LiveSound.h"
#include "unit/sound/SoundWriter.h"

namespace sound_test::screen {
namespace {

using namespace measure;
using vc::FilterKind;

struct Tone {
  double hertz, db;
};

Signal Tones(const std::vector<Tone>& tones, double rate, double secondsEach) {
  Signal all;
  for (const Tone& tone : tones) {
    const Signal one = Sine(tone.hertz, rate, static_cast<std::size_t>(secondsEach * rate), Linear(tone.db));
    all.insert(all.end(), one.begin(), one.end());
  }
  return all;
}

// The window is open before a sound begins, so that its seconds are those of the sound.
struct Screen : support::SoundRun {
  std::unique_ptr<unit::sound::LiveSound> live;

  explicit Screen(std::int16_t configMode = 0) : SoundRun(configMode) { Settle(); }

  double HostRate() const { return record.sampleRate; }
  double LineHz(double line) const { return HostRate() / 1024.0 * (line + 1.0); }

  void Open() {
    session.displays.Show(vc::display::Spectrum);
    Settle();
    ASSERT_EQ(Top().name, "SpecDisp");
  }
  void Play(const Signal& left, const Signal& right) {
    const std::string path = test.folder.Path() + "/heard.wav";
    auto created = unit::sound::SoundWriter::Create(path, static_cast<int>(HostRate()));
    auto& writer = std::get<unit::sound::SoundWriter>(created);
    for (std::size_t at = 0; at < left.size(); at += unit::sound::BlockFrames) {
      const std::size_t size = std::min(unit::sound::BlockFrames, left.size() - at);
      writer.Write(std::span(left).subspan(at, size), std::span(right).subspan(at, size));
    }
    ASSERT_EQ(writer.Close(), "");
    unit::sound::SoundOptions options;
    options.in = path;
    options.looped = true;
    live = std::get<0>(unit::sound::LiveSound::Open(options));
    live->Attach(unit.Now());
  }
  void HearUntil(double seconds) {
    while (live->Seconds() < seconds) test.loop.RunFor(50);
  }
  double Number(const char* control) const { return std::stod(Get(control)); }
  // dB of a line of a trace, as it is drawn.
  double Drawn(std::size_t trace, int line) const {
    const vc::Plot& plot = *std::get<vc::Plot*>(Find("pbxSpec"));
    return plot.Traces().at(trace).values.at(static_cast<std::size_t>(line));
  }
  double Peak(std::size_t trace) const {
    const vc::Plot& plot = *std::get<vc::Plot*>(Find("pbxSpec"));
    return std::ranges::max(plot.Traces().at(trace).values);
  }
};

TEST(SoundToScreen, TonesStandAtTheirFrequencyAndLevel) {
  for (const char* bandwidth : {"1", "5"}) {
    Screen run;
    run.Edit("bandwidthIndex", bandwidth);
    run.Edit("specDisplayMode", "1");
    run.Settle();
    run.Open();
    EXPECT_EQ(run.Set("cmbAveragerMode", "No Average"), "");
    EXPECT_EQ(run.Click("btnMarker"), "");
    constexpr double seconds = 0.8;
    std::vector<double> lines;
    std::vector<Tone> tones;
    for (const double line : {5.0, 20.25, 99.5, 150.63, 287.3, 411.78, 455.5}) {
      for (const double db : {-1.0, -22.5, -48.3}) {
        lines.push_back(line);
        tones.push_back({run.LineHz(line), db});
      }
    }
    const Signal heard = Tones(tones, run.HostRate(), seconds);
    run.Play(heard, Signal(heard.size()));
    for (std::size_t i = 0; i < tones.size(); ++i) {
      run.HearUntil(seconds * (static_cast<double>(i) + 0.9));
      EXPECT_EQ(run.Click("btnFindPeak"), "");
      EXPECT_NEAR(run.Number("lblTrace1Mag"), tones[i].db, 0.5) << tones[i].hertz;
      const double off = (run.Number("txtMarkerFreq") - tones[i].hertz) / run.LineHz(0);
      EXPECT_LT(std::abs(off), 0.68) << tones[i].hertz << " " << tones[i].db;
      const bool clear = std::abs(lines[i] - std::round(lines[i])) < 0.35;
      EXPECT_TRUE(!clear || std::abs(off) < 0.5) << tones[i].hertz;
    }
  }
}

// White noise, so that every line tells the response at its frequency; lines whose neighbours, which the
// window lets in as well, stand much apart are left out.
TEST(SoundToScreen, WhatAFilterMakesOfNoiseFollowsItsDrawnResponse) {
  for (const std::int16_t kind : {FilterKind::Lowpass, FilterKind::Comb, FilterKind::TriParametric}) {
    Screen run;
    run.Put(1, kind);
    run.Edit("lpfCutoff", "2500", 1);
    run.Edit("lpfTransSlope", "20", 1);
    run.Edit("lpfAtten", "25", 1);
    run.Edit("combFreq", "800", 1);
    run.Edit("combDepth", "15", 1);
    run.Edit("combLimit", "3000", 1);
    run.Edit("parBoost", "12", 1, 1);
    run.Edit("parBoost", "-9", 1, 2);
    run.Edit("specDisplayMode", "2");
    run.Settle();
    run.Open();
    EXPECT_EQ(run.Set("cmbYellowSignalSelect", "Left In"), "");
    EXPECT_EQ(run.Set("cmbBlueSignalSelect", "Filter 1 Output"), "");
    EXPECT_EQ(run.Set("cmbAveragerMode", "Exponential"), "");
    EXPECT_EQ(run.Type("txtAverages", "128", true), "");
    run.Settle();
    const Signal noise = Noise(static_cast<std::size_t>(11 * run.HostRate()), 0.6F);
    run.Play(noise, Signal(noise.size()));
    run.HearUntil(10);
    std::vector<double> hertz;
    for (int line = 0; line < 460; ++line) hertz.push_back(run.LineHz(line));
    const auto drawn = vc::FilterResponse(run.record, {vc::BlockFamily::Filter, 1, kind}, hertz);
    int compared = 0;
    for (int line = 8; line < 450; ++line) {
      const auto at = static_cast<std::size_t>(line);
      const auto [least, most] = std::ranges::minmax(std::span(drawn).subspan(at - 4, 9));
      const double in = run.Drawn(0, line), out = run.Drawn(1, line);
      if (most - least > 3.0F || in < -60.0 || out < -60.0) continue;
      ++compared;
      EXPECT_NEAR(out - in, drawn[at], 1.0) << kind << " at " << hertz[at];
    }
    EXPECT_GT(compared, 150) << kind;
  }
}

// Every stage has a gain of its own, and each channel a tone of its own: no two signals are alike.
struct AllSignals : Screen {
  static constexpr double In = -1.0, BroadbandGain = -6.02;
  static constexpr std::array<int, 2> Lines{30, 50};  // of the tones, left and right
  const bool stereo, linked;

  AllSignals(std::int16_t configMode, int filters)
      : Screen(configMode),
        stereo(configMode != vc::ConfigMode::Mono),
        linked(configMode == vc::ConfigMode::StereoLinked) {
    Edit("numFilters", std::to_string(filters));
    for (int stage = 1; stage <= 6; ++stage) {
      Put(stage, FilterKind::TriParametric);
      Edit("parLevel", std::to_string(188 - 2 * stage), stage);
    }
    for (const int side : {1, 2}) {
      Edit("eqType", std::to_string(vc::EqKind::DualParametric), side);
      Edit("eqParLevel", std::to_string(side == 1 ? 175 : 173), 8 + side);
      Edit("eqActive", "1", side);
      Edit("broadbandType", std::to_string(vc::BroadbandKind::NoiseEq), side);
      Edit("broadbandActive", "1", side);
      Edit("filterGain", "8", 6 + side);
    }
    Edit("specDisplayMode", "2");
    Edit("ohpfEnabled", "1");
    Edit("ohpfCutoff", "500");
    Settle();
    Open();
    EXPECT_EQ(Set("cmbAveragerMode", "No Average"), "");
    constexpr std::size_t size = 1024 * 8;
    Play(Sine(LineHz(Lines[0]), HostRate(), size, Linear(In)),
         Sine(LineHz(Lines[1]), HostRate(), size, Linear(In)));
  }
  double Response(vc::BlockFamily family, int number, std::int16_t kind, double hertz) const {
    return vc::FilterResponse(record, {family, number, kind}, std::span(&hertz, 1)).at(0);
  }
  // A side's level behind so many of its filters.
  double Behind(std::size_t side, int filters) const {
    double level = In + BroadbandGain;
    for (int n = 1; n <= filters; ++n) {
      const int stage = side == 1 && !linked ? vc::PairStages + n : n;
      level += Response(vc::BlockFamily::Filter, stage, FilterKind::TriParametric, LineHz(Lines[side]));
    }
    return level;
  }
  double BehindEqualizer(std::size_t side) const {
    const int number = side == 1 && !linked ? 2 : 1;
    return Behind(side, record.numFilters) +
           Response(vc::BlockFamily::Equalizer, number, vc::EqKind::DualParametric, LineHz(Lines[side]));
  }
  // Of the tone of the signal's own side; what the output's highpass takes of it is asked for apart.
  double Expected(std::int16_t code, std::size_t side) const {
    using namespace vc::signal;
    if (code == LeftIn || code == RightIn) return In;
    if (code >= LeftBroadband) return Behind(side, 0);
    if (code < FirstFilter) return BehindEqualizer(side);
    const int stage = code - FirstFilter + 1;
    return Behind(side, stereo && stage > vc::PairStages ? stage - vc::PairStages : stage);
  }
  std::size_t SideOf(std::int16_t code) const {
    using namespace vc::signal;
    const bool filter = code >= FirstFilter && code < LeftBroadband;
    return filter ? (stereo && code >= FirstFilter + vc::PairStages ? 1 : 0) : code % 2;
  }
  void Expect(std::int16_t code, std::size_t trace, const std::string& text) const {
    const std::size_t side = SideOf(code);
    const double shown = Drawn(trace, Lines[side]), other = Drawn(trace, Lines[1 - side]);
    const bool line = code == vc::signal::LeftLine || code == vc::signal::RightLine;
    if (line) {
      EXPECT_LT(shown, Expected(code, side) - 0.7) << text;
      EXPECT_GT(shown, Expected(code, side) - 14.0) << text;
    } else {
      EXPECT_NEAR(shown, Expected(code, side), 0.6) << text;
    }
    EXPECT_LT(other, -65.0) << text;
  }
};

TEST(SoundToScreen, EverySignalOfTheListsIsThatSignal) {
  for (const std::int16_t mode :
       {vc::ConfigMode::Mono, vc::ConfigMode::StereoIndependent, vc::ConfigMode::StereoLinked}) {
    for (int filters = 1; filters <= (mode == vc::ConfigMode::Mono ? 6 : 3); ++filters) {
      AllSignals run(mode, filters);
      const auto yellow = vc::SignalChoices(run.record, vc::TraceColour::Yellow);
      const auto blue = vc::SignalChoices(run.record, vc::TraceColour::Blue);
      ASSERT_GE(yellow.size(), 5U + static_cast<std::size_t>(filters));
      for (std::size_t row = 0; row < yellow.size(); ++row) {
        const std::size_t otherRow = yellow.size() - 1 - row;
        EXPECT_EQ(run.Set("cmbYellowSignalSelect", yellow[row].text), "");
        EXPECT_EQ(run.Set("cmbBlueSignalSelect", blue[otherRow].text), "");
        run.test.loop.RunFor(900);
        const std::string where =
            " of " + std::to_string(filters) + " filters, configuration " + std::to_string(mode);
        run.Expect(yellow[row].code, 0, yellow[row].text + where);
        run.Expect(blue[otherRow].code, 1, blue[otherRow].text + where);
      }
    }
  }
}

// After a fall of 30 dB an exponential average over m spectra, each half as long as its samples, falls by
// the factor 1 - 1/m with each.
TEST(SoundToScreen, AveragesFallAsTheirLawSays) {
  for (const int averages : {16, 64}) {
    Screen run;
    run.Edit("specDisplayMode", "1");
    run.Open();
    EXPECT_EQ(run.Set("cmbAveragerMode", "Exponential"), "");
    EXPECT_EQ(run.Type("txtAverages", std::to_string(averages), true), "");
    run.Settle();
    const Signal heard = Tones({{run.LineHz(100), -10}, {run.LineHz(100), -40}}, run.HostRate(), 10);
    run.Play(heard, Signal(heard.size()));
    run.HearUntil(9.9);
    EXPECT_NEAR(run.Drawn(0, 100), -10, 0.5);
    for (const double seconds : {0.5, 1.0, 1.5}) {
      run.HearUntil(10 + seconds);
      const double spectra = (seconds - 0.1) * run.HostRate() / 512;  // on its way for 0.1 s on average
      const double kept = std::pow(1.0 - 1.0 / averages, spectra);
      const double power = kept * 0.1 + (1 - kept) * 0.0001;
      EXPECT_NEAR(run.Drawn(0, 100), 10 * std::log10(power), averages == 16 ? 1.6 : 0.8) << seconds;
    }
  }
}

TEST(SoundToScreen, PeaksAreHeldUntilTheClearAndHeldTracesUntilTheRun) {
  Screen run;
  run.Edit("specDisplayMode", "1");
  run.Open();
  EXPECT_EQ(run.Set("cmbAveragerMode", "Peak Hold"), "");
  run.Settle();
  const std::vector<Tone> tones{{run.LineHz(100), -10}, {run.LineHz(200), -20}, {run.LineHz(300), -30}};
  const Signal heard = Tones(tones, run.HostRate(), 4);
  run.Play(heard, Signal(heard.size()));
  run.HearUntil(5);
  EXPECT_NEAR(run.Drawn(0, 100), -10, 0.5);  // gone, and held
  EXPECT_NEAR(run.Drawn(0, 200), -20, 0.5);
  EXPECT_EQ(run.Click("btnClear"), "");
  run.HearUntil(6);
  EXPECT_LT(run.Drawn(0, 100), -65);
  EXPECT_NEAR(run.Drawn(0, 200), -20, 0.5);
  EXPECT_EQ(run.Click("btnRun"), "");
  run.HearUntil(9.5);
  EXPECT_LT(run.Drawn(0, 300), -65);  // it stands still
  EXPECT_EQ(run.Click("btnClear"), "");
  run.HearUntil(10.5);
  EXPECT_EQ(run.Peak(0), -70);  // and is held as it was cleared
  EXPECT_EQ(run.Click("btnRun"), "");
  run.HearUntil(11.5);
  EXPECT_NEAR(run.Drawn(0, 300), -30, 0.5);
  EXPECT_LT(run.Drawn(0, 200), -65);
}

// Tones move on below the preview: what is on paper is what was on the screen at the click.
TEST(SoundToScreen, PaperHasWhatTheWindowShowedAtTheClick) {
  Screen run;
  run.Edit("specDisplayMode", "2");
  run.Open();
  EXPECT_EQ(run.Set("cmbAveragerMode", "No Average"), "");
  EXPECT_EQ(run.Set("cmbBlueSignalSelect", "Line Output"), "");
  EXPECT_EQ(run.Type("txtYellowGain", "3", true), "");
  EXPECT_EQ(run.Type("txtBlueGain", "12", true), "");
  EXPECT_EQ(run.Click("btnMarker"), "");
  const Signal heard = Tones({{run.LineHz(50), -7}, {run.LineHz(300), -31}}, run.HostRate(), 2);
  run.Play(heard, Signal(heard.size()));
  run.HearUntil(1.9);
  EXPECT_EQ(run.Click("btnFindPeak"), "");
  const std::vector<vc::PlotTrace> shown = std::get<vc::Plot*>(run.Find("pbxSpec"))->Traces();
  const std::string marked = "Freq: " + run.Get("txtMarkerFreq") + " Hz    Mag: ";
  const std::vector<std::string> magnitudes{run.Get("lblTrace2Mag"), run.Get("lblTrace1Mag")};
  run.test.printers.printable = {10460, 15400};
  run.test.printers.previewed = [&run] { run.HearUntil(3.9); };
  EXPECT_EQ(run.Click("btnPrint"), "");
  EXPECT_NE(run.Get("lblTrace1Mag"), magnitudes[1]);
  ASSERT_EQ(run.test.printers.printouts.size(), 1U);
  const auto& page = run.test.printers.printouts.front().pages.front();
  std::string texts;
  std::vector<double> tops;
  for (const auto& text : page.texts) {
    texts += text.text + "\n";
    if (text.text == "0dB") tops.push_back(text.top);
  }
  EXPECT_THAT(texts,
              testing::HasSubstr("\nBlue Trace: Line Output   Gain: 12 dB\n" + marked + magnitudes[0]));
  EXPECT_THAT(texts, testing::HasSubstr("\nYellow Trace: Left In   Gain: 3 dB\n" + marked + magnitudes[1]));
  ASSERT_EQ(page.lines.size(), 2U * 16);
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t line = 0; line < 460; ++line) {
      const double level = shown.at(1 - i).values[line];
      const double below = page.lines[16 * i + 14].points.at(line).y - tops.at(i);
      ASSERT_NEAR(std::min(below, 2765.0), std::max(100.0, -level * 39.5), 0.51) << line;
    }
  }
}

// What the line and the tick allow: a tick sends, the reply comes byte by byte, the first tick behind its end
// reads it.
TEST(SoundToScreen, TracesComeAsOftenAsTheLineAndTheTickAllow) {
  constexpr double tick = 0.050, byteSeconds = 10.0 / 115200, replyBytes = 558, minute = 60;
  for (const bool both : {false, true}) {
    support::PanelRun run;
    unit::Options paced;
    paced.pace = true;
    run.unit.PlugIn(paced);
    run.Reconnect();
    run.Edit("specDisplayMode", both ? "2" : "1");
    run.session.displays.Show(vc::display::Spectrum);
    run.Settle();
    const vc::SpectrumReader& reader = run.session.spectrumReader;
    const std::array<unsigned, 2> before{reader.Replies1, reader.Replies2};
    run.unit.frames.clear();
    run.test.loop.RunFor(static_cast<int>(1000 * minute));
    std::array<int, 2> asked{};
    std::size_t longest = 0;
    for (const unit::Frame& frame : run.unit.frames) {
      if (frame.number == 161 || frame.number == 162) ++asked.at(frame.number - 161U);
      longest = std::max(longest, frame.bytes.size());
    }
    const double answer = (static_cast<double>(longest) + replyBytes) * byteSeconds;
    const double allowed = minute / (tick * (1 + std::ceil(answer / tick)));
    const double each = both ? allowed / 2 : allowed;
    EXPECT_GE(asked[0], 0.95 * each);
    EXPECT_GE(asked[1], both ? 0.95 * each : 0);
    EXPECT_LE(asked[0] + asked[1], allowed + 2);
    EXPECT_EQ(asked[1] == 0, !both);
    EXPECT_NEAR(reader.Replies1 - before[0], asked[0], 1);
    EXPECT_NEAR(reader.Replies2 - before[1], asked[1], 1);
  }
}

}  // namespace
}  // namespace sound_test::screen
