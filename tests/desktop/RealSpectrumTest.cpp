// The whole way of a sound to the operator's eyes: a file that the unit's program hears, the line at its own
// speed, the desktop program, and the pixels of its window.
#include <algorithm>
#include <cmath>
#include <fstream>
#include <numbers>
#include <random>
#include <span>
#include <vector>

#include <QImage>
#include <QLabel>
#include <QLineEdit>

#include "RealPort.h"
#include "TempFolder.h"
#include "desktop/PlotView.h"
#include "model/FilterResponse.h"
#include "model/Kinds.h"

namespace desktop {
namespace {

constexpr double ToneHz = 1234.0, ToneDb = -20.0;
constexpr std::uint32_t FileRate = 36000, FileSeconds = 10;

double Tone(std::uint32_t i) {
  return std::sin(2 * std::numbers::pi * ToneHz * i / FileRate) * std::pow(10, ToneDb / 20);
}
double Noise(std::uint32_t i) {
  static std::mt19937 random{7};
  return i == 0 ? 0.0 : std::uniform_real_distribution<>(-0.5, 0.5)(random);
}

// A WAV file of one channel, 16 bits.
std::string WaveFile(const std::string& folder, double (*sample)(std::uint32_t i)) {
  constexpr std::uint32_t count = FileSeconds * FileRate;
  const std::string path = folder + "/heard.wav";
  std::ofstream file(path, std::ios::binary);
  const auto put = [&file](std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) file.put(static_cast<char>(value >> (8 * i) & 0xFFU));
  };
  file << "RIFF";
  put(36 + 2 * count, 4);
  file << "WAVEfmt ";
  for (const auto& [value, bytes] :
       {std::pair{16U, 4}, {1U, 2}, {1U, 2}, {FileRate, 4}, {2 * FileRate, 4}, {2U, 2}, {16U, 2}}) {
    put(value, bytes);
  }
  file << "data";
  put(2 * count, 4);
  for (std::uint32_t i = 0; i < count; ++i) {
    put(static_cast<std::uint32_t>(std::lround(32767 * sample(i))), 2);
  }
  return path;
}

struct Heard {
  explicit Heard(double (*sample)(std::uint32_t i)) : path(WaveFile(folder.Path(), sample)) {}
  support::TempFolder folder;
  const std::string path;
};

struct RealSound : Heard, RealPort {
  explicit RealSound(double (*sample)(std::uint32_t i)) : Heard(sample), RealPort({"--in", path, "--loop"}) {
    Ready();
  }
  // The letters of a row belong together however slow the machine is.
  void ChooseByKeys(const char* list, const char* row) const {
    const int usual = QApplication::keyboardInputInterval();
    QTest::qWait(usual);
    At(list).setFocus();
    QApplication::setKeyboardInputInterval(100 * usual);
    QTest::keyClicks(&At(list), row);
    QApplication::setKeyboardInputInterval(usual);
    EXPECT_TRUE(dynamic_cast<QComboBox&>(At(list)).currentText().startsWith(row));
  }
  void OpenAnalyzer(std::int16_t traces) const {
    Hit("btnSpecAnalyzer");
    Ready();
    ASSERT_EQ(Window().objectName(), "SpecDisp");
    for (const auto& [box, alone] : {std::pair{"chkYellowTrace", 1}, {"chkBlueTrace", 0}}) {
      const bool shown = Record().specDisplayMode == 2 || Record().specDisplayMode == alone;
      if (shown != (traces == 2 || traces == alone)) QTest::keyClick(&At(box), Qt::Key_Space);
    }
    ASSERT_EQ(Record().specDisplayMode, traces);
  }
  double Read(const char* name) const {
    if (const auto* text = qobject_cast<QLineEdit*>(&At(name))) return text->text().toDouble();
    return dynamic_cast<QLabel&>(At(name)).text().toDouble();
  }
  double LineHz() const { return static_cast<double>(Record().sampleRate) / 1024.0; }
};
struct RealSpectrum : RealSound {
  RealSpectrum() : RealSound(Tone) {}
};
struct RealNoise : RealSound {
  RealNoise() : RealSound(Noise) {}
};

TEST_F(RealSpectrum, AToneThatTheUnitHearsIsSeenAtItsPlace) {
  OpenAnalyzer(1);
  const vc::SpectrumReader& reader = program->session.spectrumReader;
  QTest::qWait(1500);
  const unsigned before = reader.Replies1;
  QTest::qWait(3000);
  EXPECT_GT(reader.Replies1 - before, 15U);  // of 30 at most
  Hit("btnMarker");
  Hit("btnFindPeak");
  EXPECT_NEAR(Read("txtMarkerFreq"), ToneHz, LineHz() / 2 + 1);
  EXPECT_NEAR(Read("lblTrace1Mag"), ToneDb, 0.5);
  Hit("btnMarker");

  auto& view = dynamic_cast<PlotView&>(At("pbxSpec"));
  const QImage image = view.grab().toImage();
  QPoint top(-1, image.height());
  const vc::Rectangle& frame = view.Layout().frame;
  for (int x = frame.left + 2; x < frame.Right() - 2; ++x) {
    for (int y = frame.top + frame.height / 8; y < top.y(); ++y) {  // below the traces' names
      const QColor colour = image.pixelColor(x, y);
      if (colour.red() > 180 && colour.green() > 180 && colour.blue() < 80) top = {x, y};
    }
  }
  ASSERT_GE(top.x(), 0);
  const double hertz = LineHz() * (1 + (top.x() - frame.left) * 459.0 / (frame.width - 1));
  EXPECT_NEAR(hertz, ToneHz, 3 * LineHz());
  EXPECT_NEAR((top.y() - frame.top) * -70.0 / (frame.height - 1), ToneDb, 1.5);
}

// Lines whose neighbours stand much apart are left out: the window of the analyzer lets those in as well.
TEST_F(RealNoise, BehindAFilterFollowsItsDrawnResponse) {
  ChooseByKeys("cmbBandwidth", "16");
  Open("cmbFilter(1)", "Lowpass", "btnFilterConfig(1)");
  Write("txtCutoff", "5000", Qt::Key_Return);
  Write("txtTransSlope", "20", Qt::Key_Return);
  Write("txtAtten", "25", Qt::Key_Return);
  Hit("btnOK");
  Ready();
  if (Record().filterActive[1] == 0) Hit("btnFilterActive(1)");
  OpenAnalyzer(2);
  ChooseByKeys("cmbBlueSignalSelect", "Filter 1");
  ChooseByKeys("cmbAveragerMode", "Exp");
  Write("txtAverages", "128", Qt::Key_Return);
  QTest::qWait(5000);  // 128 spectra take 1.8 s
  const std::vector<vc::PlotTrace>& traces = dynamic_cast<PlotView&>(At("pbxSpec")).Model().Traces();
  ASSERT_EQ(traces.size(), 2U);
  std::vector<double> hertz;
  for (int line = 0; line < 460; ++line) hertz.push_back(LineHz() * (line + 1));
  const auto drawn =
      vc::FilterResponse(Record(), {vc::BlockFamily::Filter, 1, vc::FilterKind::Lowpass}, hertz);
  int compared = 0;
  for (std::size_t line = 8; line < 450; ++line) {
    const auto [least, most] = std::ranges::minmax(std::span(drawn).subspan(line - 4, 9));
    const float in = traces[0].values[line], out = traces[1].values[line];
    if (most - least > 3.0F || in < -65.0F || out < -65.0F) continue;
    ++compared;
    EXPECT_NEAR(out - in, drawn[line], 1.0) << hertz[line];
  }
  EXPECT_GT(compared, 150);
}

}  // namespace
}  // namespace desktop
