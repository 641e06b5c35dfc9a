#include "desktop/QtPictures.h"

#include <optional>

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgGenerator>

#include "desktop/CurveRaster.h"
#include "desktop/PainterSurface.h"
#include "desktop/Theme.h"

namespace desktop {
namespace {

constexpr int Fineness = 2;           // pixels of a file for each of the surface
constexpr int PixelsPerInch = 96;     // of the surface, by which its letters are as large as on the screen
constexpr double LetterPoints = 9.0;  // whatever the size of the windows' letters

// What has pixels has its curves stroked into them by the raster: the painter would take a minute for a noisy
// one.
bool DrawOn(QPaintDevice& device, const Pixels& pixels, const vc::Size& size, const vc::Drawing& drawing) {
  QPalette paper = PaletteOf(Theme::Light);
  paper.setColor(QPalette::Window, Qt::white);
  QPainter painter;
  if (!painter.begin(&device)) return false;
  QFont letters("sans-serif");  // by which every program that shows a file finds its own
  letters.setPointSizeF(LetterPoints);
  painter.setFont(letters);
  PainterSurface surface(painter, paper, QRect(0, 0, size.width, size.height));
  std::optional<CurveRaster> raster;
  if (pixels.first != nullptr) surface.StrokeBy(raster.emplace(Fineness), pixels);
  drawing(surface);
  return painter.end();
}

QImage Drawn(const vc::Size& size, const vc::Drawing& drawing) {
  constexpr double inchesPerMetre = 1.0 / 0.0254;
  QImage image(Fineness * size.width, Fineness * size.height, QImage::Format_RGB32);
  image.setDevicePixelRatio(Fineness);
  image.setDotsPerMeterX(static_cast<int>(PixelsPerInch * inchesPerMetre));
  image.setDotsPerMeterY(static_cast<int>(PixelsPerInch * inchesPerMetre));
  if (image.isNull()) return {};
  return DrawOn(image, PixelsOf(image), size, drawing) ? image : QImage();
}

bool WritePng(QBuffer& file, const vc::Size& size, const vc::Drawing& drawing) {
  return Drawn(size, drawing).save(&file, "PNG");
}

bool WriteSvg(QBuffer& file, const vc::Size& size, const vc::Drawing& drawing) {
  QSvgGenerator generator;
  generator.setOutputDevice(&file);
  generator.setSize({size.width, size.height});
  generator.setViewBox(QRect(0, 0, size.width, size.height));
  generator.setResolution(PixelsPerInch);
  generator.setTitle({});  // else it tells of the toolkit
  generator.setDescription({});
  return DrawOn(generator, {}, size, drawing);
}

}  // namespace

std::string QtPictures::Draw(vc::PictureFormat format, const vc::Size& size, const vc::Drawing& drawing) {
  QBuffer file;
  file.open(QIODevice::WriteOnly);
  const auto write = format == vc::PictureFormat::Png ? WritePng : WriteSvg;
  return write(file, size, drawing) ? file.data().toStdString() : std::string();
}

bool QtPictures::Copy(const vc::Size& size, const vc::Drawing& drawing) {
  const QImage image = Drawn(size, drawing);
  if (image.isNull()) return false;
  QGuiApplication::clipboard()->setImage(image);
  return true;
}

}  // namespace desktop
