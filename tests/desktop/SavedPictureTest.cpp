// Pictures of a display, read back as other programs read them.
#include <QBuffer>
#include <QClipboard>
#include <QImage>
#include <QXmlStreamReader>

#include "MasterWindow.h"
#include "desktop/QtPictures.h"
#include "widgets/Plot.h"

namespace desktop {
namespace {

struct SavedPicture : testing::Test {
  vc::Form form{"Form", "Form"};
  vc::Plot plot{form, "pltShown", "Spectrum"};
  static constexpr vc::Size Whole{400, 300};
  QtPictures pictures;

  SavedPicture() {
    plot.screen = true;
    plot.SetAxes({.from = 0, .to = 100, .unit = "Hz"}, {.from = -70, .to = 0, .unit = "dB"});
    plot.SetTraces(
        {{"Yellow", {-10, -40, -20}, vc::ScreenYellow}, {"Blue \xff", {-50, -60, -30}, vc::ScreenBlue}});
  }
  vc::Drawing Drawn() const {
    return [this](vc::Surface& surface) { plot.Draw(surface, {0, 0, Whole.width, Whole.height}); };
  }
  // Of the pixels within the plot's frame.
  static double Share(const QImage& image, const std::function<bool(const QColor&)>& is) {
    int found = 0, all = 0;
    for (int y = image.height() / 4; y < image.height() * 3 / 4; ++y) {
      for (int x = image.width() / 4; x < image.width() * 3 / 4; ++x, ++all) {
        found += is(image.pixelColor(x, y)) ? 1 : 0;
      }
    }
    return static_cast<double>(found) / all;
  }
  static void Expect(const QImage& image) {
    ASSERT_EQ(image.size(), QSize(2 * Whole.width, 2 * Whole.height));
    EXPECT_GT(Share(image, [](const QColor& c) { return c == QColor(255, 255, 0); }), 0.001);
    EXPECT_GT(Share(image, [](const QColor& c) { return c == QColor(128, 128, 255); }), 0.001);
    EXPECT_GT(Share(image, [](const QColor& c) { return c.lightness() < 40; }), 0.8);
  }
};

TEST_F(SavedPicture, AsPngShowsTheTracesOnADarkScreen) {
  const std::string bytes = pictures.Draw(vc::PictureFormat::Png, Whole, Drawn());
  Expect(QImage::fromData(QByteArray::fromStdString(bytes)));
}

TEST_F(SavedPicture, AsSvgIsWellFormedAndHasTheCurves) {
  const std::string bytes = pictures.Draw(vc::PictureFormat::Svg, Whole, Drawn());
  QXmlStreamReader reader(QByteArray::fromStdString(bytes));
  int curves = 0;
  while (!reader.atEnd()) {
    if (reader.readNext() != QXmlStreamReader::StartElement) continue;
    const QString style = reader.attributes().value("style").toString();
    const bool curve = style.contains("stroke:rgb(100%,100%,0%)") || style.contains("50.196078%,100%)");
    curves += reader.name() == u"path" && curve ? 1 : 0;
  }
  EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
  EXPECT_GE(curves, 2);
}

TEST_F(SavedPicture, IsPutIntoTheClipboard) {
  QGuiApplication::clipboard()->clear();
  ASSERT_TRUE(pictures.Copy(Whole, Drawn()));
  Expect(QGuiApplication::clipboard()->image());
}

}  // namespace
}  // namespace desktop
