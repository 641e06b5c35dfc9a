// Draws what the unit makes of a bad recording: averaged spectra before and after, one picture for each way
// to clean it up. `make_sound_pictures FOLDER`.
#include <algorithm>
#include <array>
#include <cmath>
#include <iostream>
#include <numbers>
#include <string>
#include <vector>

#include <kissfft/kiss_fftr.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include "sound/Cleaning.h"

namespace {

using cleaning::SceneSound;
using measure::Signal;
using support::SoundRun;

constexpr std::size_t SpectrumSize = 1024;

struct Curve {
  QString name;
  QColor color;
  std::vector<double> levels;  // in dB, a sine of peak 1.0 has 0; of the frequencies i * rate / 1024
};

struct Picture {
  QString title;
  double rate = 12000;                  // Hz
  double lastHz = 6000, stepHz = 1000;  // from 0 Hz on
  double lowest = -80, highest = -20;   // dB
  std::vector<Curve> curves;            // the last one on top
};

const QColor BeforeColor(222, 110, 24), AfterColor(24, 88, 168), SpeechColor(150, 150, 150);
const QColor InkColor(40, 40, 40), GridColor(228, 228, 228);

// The powers of 1024 samples under a raised cosine.
void AddSpectrum(std::span<const float> piece, kiss_fftr_cfg transform, std::vector<double>& powers) {
  std::array<float, SpectrumSize> windowed{};
  for (std::size_t i = 0; i < SpectrumSize; ++i) {
    const double turn = 2.0 * std::numbers::pi * (static_cast<double>(i) + 0.5) / SpectrumSize;
    windowed[i] = piece[i] * static_cast<float>(1.0 - std::cos(turn));
  }
  std::array<kiss_fft_cpx, SpectrumSize / 2 + 1> bins{};
  kiss_fftr(transform, windowed.data(), bins.data());
  for (std::size_t k = 0; k < bins.size(); ++k)
    powers[k] += double{bins[k].r} * bins[k].r + double{bins[k].i} * bins[k].i;
}

// The mean over all pieces from a sample on; where speech is given, over its pauses, once the unit has
// nothing left of what was spoken.
std::vector<double> Spectrum(const Signal& sound, std::size_t from, const Signal* speech = nullptr) {
  constexpr std::ptrdiff_t after = 2048;
  kiss_fftr_state* const transform = kiss_fftr_alloc(SpectrumSize, 0, nullptr, nullptr);
  std::vector<double> levels(SpectrumSize / 2 + 1);
  double count = 0;
  for (std::size_t at = from; at + SpectrumSize <= sound.size(); at += SpectrumSize / 2) {
    if (speech != nullptr) {
      const auto begin = speech->begin() + static_cast<std::ptrdiff_t>(at);
      const auto spoken = [](float sample) { return sample != 0; };
      if (std::any_of(begin - after, begin + static_cast<std::ptrdiff_t>(SpectrumSize), spoken)) continue;
    }
    AddSpectrum(std::span(sound).subspan(at, SpectrumSize), transform, levels);
    ++count;
  }
  kiss_fftr_free(transform);
  for (double& level : levels)
    level = 10.0 * std::log10(level / count + 1e-20) - measure::Decibels(SpectrumSize / 2.0);
  return levels;
}

Signal SpeechOf(const SoundRun& run, std::size_t size) {
  return SceneSound(run.Rate(), size, cleaning::SpeechAlone())[0];
}

Picture HumPicture() {
  SoundRun run;
  cleaning::SetHumFilter(run, 1024, 16);
  const std::size_t size = 180 * 12000;
  const Signal before = SceneSound(run.Rate(), size, cleaning::SpeechAndHum())[0], after = run.Left(before);
  const Signal speech = SpeechOf(run, size);
  return {.title = "One-channel adaptive filter: hum in the pauses of the speech",
          .rate = run.Rate(),
          .lastHz = 800,
          .stepHz = 50,
          .lowest = -100,
          .highest = -30,
          .curves = {{"before", BeforeColor, Spectrum(before, size / 2, &speech)},
                     {"after", AfterColor, Spectrum(after, size / 2, &speech)}}};
}

Picture ReferencePicture() {
  SoundRun run;
  cleaning::SetCanceller(run);
  const std::size_t size = 60 * 12000;
  const SoundRun::Stereo heard = SceneSound(run.Rate(), size, {});
  const Signal after = run.Through(heard)[0], speech = SpeechOf(run, size);
  return {.title = "Reference canceller: the whole scene in the pauses of the speech",
          .rate = run.Rate(),
          .lowest = -110,
          .highest = -30,
          .curves = {{"before", BeforeColor, Spectrum(heard[0], size / 2, &speech)},
                     {"after", AfterColor, Spectrum(after, size / 2, &speech)}}};
}

Picture NoisePicture() {
  SoundRun run;
  cleaning::SetNoiseReducer(run);
  const std::size_t size = 60 * 12000;
  const Signal before = SceneSound(run.Rate(), size, {})[0], after = run.Left(before);
  return {.title = "Noise reducer: the whole scene, speech and pauses",
          .rate = run.Rate(),
          .lowest = -80,
          .highest = -20,
          .curves = {{"speech alone", SpeechColor, Spectrum(SpeechOf(run, size), size / 2)},
                     {"before", BeforeColor, Spectrum(before, size / 2)},
                     {"after", AfterColor, Spectrum(after, size / 2)}}};
}

class Sheet {
 public:
  explicit Sheet(const Picture& shown) : shown_(shown), painter_(&image_) {
    image_.fill(Qt::white);
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setFont(Font(13));
  }

  QImage Draw() {
    DrawGrid();
    for (const Curve& curve : shown_.curves) DrawCurve(curve);
    DrawTitles();
    DrawLegend();
    painter_.end();
    return image_;
  }

 private:
  static QFont Font(int pixels, bool bold = false) {
    QFont font("DejaVu Sans");
    font.setPixelSize(pixels);
    font.setBold(bold);
    return font;
  }

  double X(double hertz) const { return area_.left() + area_.width() * hertz / shown_.lastHz; }
  double Y(double level) const {
    return area_.bottom() - area_.height() * (level - shown_.lowest) / (shown_.highest - shown_.lowest);
  }

  // In the middle of a pixel, so that one line is one pixel wide.
  void Line(double x1, double y1, double x2, double y2) {
    const auto middle = [](double place) { return std::floor(place) + 0.5; };
    painter_.drawLine(QPointF(middle(x1), middle(y1)), QPointF(middle(x2), middle(y2)));
  }

  void DrawGrid() {
    constexpr double stepDb = 10;
    for (double hertz = 0; hertz <= shown_.lastHz; hertz += shown_.stepHz) {
      painter_.setPen(GridColor);
      Line(X(hertz), area_.top(), X(hertz), area_.bottom());
      painter_.setPen(InkColor);
      painter_.drawText(QRectF(X(hertz) - 40, area_.bottom() + 6, 80, 20), Qt::AlignCenter,
                        QString::number(hertz));
    }
    for (double level = shown_.lowest; level <= shown_.highest; level += stepDb) {
      painter_.setPen(GridColor);
      Line(area_.left(), Y(level), area_.right(), Y(level));
      painter_.setPen(InkColor);
      painter_.drawText(QRectF(area_.left() - 58, Y(level) - 10, 50, 20), Qt::AlignRight | Qt::AlignVCenter,
                        QString::number(level));
    }
    Line(area_.left(), area_.bottom(), area_.right(), area_.bottom());
    Line(area_.left(), area_.top(), area_.left(), area_.bottom());
  }

  void DrawCurve(const Curve& curve) {
    QPolygonF points;
    for (std::size_t i = 0; i < curve.levels.size(); ++i) {
      const double hertz = static_cast<double>(i) * shown_.rate / SpectrumSize;
      points << QPointF(X(hertz), Y(curve.levels[i]));
    }
    painter_.setClipRect(area_);
    painter_.setPen(QPen(curve.color, 1.8));
    painter_.drawPolyline(points);
    painter_.setClipping(false);
  }

  void DrawTitles() {
    painter_.setPen(InkColor);
    painter_.drawText(QRectF(area_.left(), area_.bottom() + 28, area_.width(), 20), Qt::AlignCenter, "Hz");
    painter_.drawText(QRectF(area_.left() - 58, area_.top() - 28, 50, 20), Qt::AlignRight, "dB");
    painter_.setFont(Font(15, true));
    painter_.drawText(QRectF(area_.left(), area_.top() - 38, area_.width(), 24), Qt::AlignLeft, shown_.title);
    painter_.setFont(Font(13));
  }

  void DrawLegend() {
    constexpr double rowHeight = 22, width = 150;
    double y = area_.top() + 12;
    const double x = area_.right() - width;
    painter_.setPen(GridColor);
    painter_.setBrush(Qt::white);
    painter_.drawRect(
        QRectF(x - 10.5, y - 4.5, width, rowHeight * static_cast<double>(shown_.curves.size()) + 8));
    for (const Curve& curve : shown_.curves) {
      painter_.setPen(QPen(curve.color, 3));
      painter_.drawLine(QPointF(x, y + rowHeight / 2), QPointF(x + 28, y + rowHeight / 2));
      painter_.setPen(InkColor);
      painter_.drawText(QRectF(x + 38, y, width, rowHeight), Qt::AlignLeft | Qt::AlignVCenter, curve.name);
      y += rowHeight;
    }
  }

  const Picture& shown_;
  QImage image_{1000, 500, QImage::Format_RGB32};
  QPainter painter_;
  QRectF area_{70, 50, 900, 390};
};

bool Save(const Picture& picture, const std::string& path) {
  if (Sheet(picture).Draw().save(QString::fromStdString(path))) return true;
  std::cerr << path << ": can't be written\n";
  return false;
}

}  // namespace

int main(int count, char** words) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QGuiApplication application(count, words);
  if (count != 2) {
    std::cerr << "usage: make_sound_pictures FOLDER\n";
    return 2;
  }
  const std::string folder = words[1];
  const bool whole = Save(HumPicture(), folder + "/hum.png") &&
                     Save(ReferencePicture(), folder + "/reference.png") &&
                     Save(NoisePicture(), folder + "/noise.png");
  return whole ? 0 : 1;
}
