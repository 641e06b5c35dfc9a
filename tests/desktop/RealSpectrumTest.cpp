// The whole way of a sound to the operator's eyes: a file that the unit's program hears, the line at its own
// speed, the desktop program, and the pixels of its window.
#include <cmath>
#include <fstream>
#include <numbers>

#include <QImage>

#include "RealPort.h"
#include "TempFolder.h"
#include "desktop/PlotView.h"

namespace desktop {
namespace {

constexpr double ToneHz = 1234.0, ToneDb = -20.0;

// Ten seconds of a tone as a WAV file of one channel, 16 bits, 16 kHz.
std::string ToneFile(const std::string& folder) {
  constexpr std::uint32_t rate = 16000, count = 10 * rate;
  const std::string path = folder + "/tone.wav";
  std::ofstream file(path, std::ios::binary);
  const auto put = [&file](std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) file.put(static_cast<char>(value >> (8 * i) & 0xFFU));
  };
  file << "RIFF";
  put(36 + 2 * count, 4);
  file << "WAVEfmt ";
  for (const auto& [value, bytes] :
       {std::pair{16U, 4}, {1U, 2}, {1U, 2}, {rate, 4}, {2 * rate, 4}, {2U, 2}, {16U, 2}}) {
    put(value, bytes);
  }
  file << "data";
  put(2 * count, 4);
  for (std::uint32_t i = 0; i < count; ++i) {
    const double sample = std::sin(2 * std::numbers::pi * ToneHz * i / rate) * std::pow(10, ToneDb / 20);
    put(static_cast<std::uint32_t>(std::lround(32767 * sample)), 2);
  }
  return path;
}

struct Heard {
  support::TempFolder folder;
  const std::string path = ToneFile(folder.Path());
};

struct RealSpectrum : Heard, RealPort {
  RealSpectrum() : RealPort({"--in", path, "--loop"}) {}
};

TEST_F(RealSpectrum, AToneThatTheUnitHearsIsSeenAtItsPlace) {
  Ready();
  Hit("btnSpecAnalyzer");
  Ready();
  ASSERT_EQ(Window().objectName(), "SpecDisp");
  if (Record().specDisplayMode == 0) QTest::keyClick(&At("chkYellowTrace"), Qt::Key_Space);
  QTest::keyClick(&At("chkBlueTrace"), Qt::Key_Space);
  ASSERT_EQ(Record().specDisplayMode, 1);
  const vc::SpectrumReader& reader = program->session.spectrumReader;
  QTest::qWait(1500);
  const unsigned before = reader.Replies1;
  QTest::qWait(3000);
  EXPECT_GT(reader.Replies1 - before, 15U);  // of 30 at most

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
  const double line = Record().sampleRate / 1024.0;
  const double hertz = line + (top.x() - frame.left) * 459 * line / (frame.width - 1);
  EXPECT_NEAR(hertz, ToneHz, 3 * line);
  EXPECT_NEAR((top.y() - frame.top) * -70.0 / (frame.height - 1), ToneDb, 1.5);
}

}  // namespace
}  // namespace desktop
