// Pictures of a display, read back as other programs read them.
#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <map>
#include <random>

#include <QBuffer>
#include <QClipboard>
#include <QElapsedTimer>
#include <QImage>
#include <QXmlStreamReader>

#include "MasterWindow.h"
#include "desktop/LineParts.h"
#include "desktop/QtPictures.h"
#include "desktop/Theme.h"
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

// The elements of an SVG file by name, with their attributes.
std::multimap<QString, QXmlStreamAttributes> ElementsOf(const std::string& bytes) {
  QXmlStreamReader reader(QByteArray::fromStdString(bytes));
  std::multimap<QString, QXmlStreamAttributes> elements;
  while (!reader.atEnd()) {
    if (reader.readNext() == QXmlStreamReader::StartElement) {
      elements.emplace(reader.name().toString(), reader.attributes());
    }
  }
  EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
  return elements;
}

TEST_F(SavedPicture, AsSvgHasTheCurvesWithinTheFrameAndShortGridLines) {
  plot.SetTraces({{"Yellow", {40, -40, 90, -20}, vc::ScreenYellow}});
  const auto elements = ElementsOf(pictures.Draw(vc::PictureFormat::Svg, Whole, Drawn()));
  EXPECT_LT(elements.size(), 100U);
  EXPECT_TRUE(elements.contains("text"));
  const auto yellow = std::ranges::count_if(
      elements, [](const auto& element) { return element.second.value("stroke") == u"#ffff00"; });
  EXPECT_GE(yellow, 1);
  const auto [first, last] = elements.equal_range("polyline");
  EXPECT_GT(std::distance(first, last),
            2);  // the grid, and what rises above the frame comes back as a line more
  for (auto line = first; line != last; ++line) {
    const QStringList points = line->second.value("points").toString().split(' ', Qt::SkipEmptyParts);
    EXPECT_GE(points.size(), 2);
    for (const QString& point : points) {
      const double y = point.section(',', 1).toDouble();
      EXPECT_GT(y, 1.0) << "above the frame, where the picture's edge is";
      EXPECT_LT(y, Whole.height - 1.0);
    }
  }
}

TEST(LineParts, AreCutAtTheEdges) {
  const QRectF clip(0, 0, 10, 10);
  const auto parts = [&](std::vector<vc::Point> points) { return PartsWithin(points, clip); };
  using Lines = std::vector<QPolygonF>;
  EXPECT_EQ(parts({{2, 2}, {4, 4}, {6, 2}}), (Lines{{{{2, 2}, {4, 4}, {6, 2}}}}));
  EXPECT_EQ(parts({{-5, 5}, {5, 5}, {5, -5}, {7, -5}, {7, 5}}),
            (Lines{{{{0, 5}, {5, 5}, {5, 0}}}, {{{7, 0}, {7, 5}}}}));
  EXPECT_EQ(parts({{-5, 5}, {15, 5}}), (Lines{{{{0, 5}, {10, 5}}}}));
  EXPECT_TRUE(parts({{-5, -1}, {15, -1}}).empty());
  EXPECT_TRUE(parts({{5, 5}}).empty());
  constexpr double endless = std::numeric_limits<double>::infinity();
  EXPECT_EQ(parts({{5, -endless}, {5, 8}, {6, 8}}), (Lines{{{{5, 0}, {5, 8}, {6, 8}}}}));
  EXPECT_EQ(parts({{1, 1}, {2, 2}, {3, std::nan("")}, {4, 4}, {5, 5}}),
            (Lines{{{{1, 1}, {2, 2}}}, {{{4, 4}, {5, 5}}}}));
}

TEST_F(SavedPicture, AsSvgCutsAnImageToItsClip) {
  const std::vector<std::uint32_t> pixels{0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFFFFFFFF};
  const auto elements = ElementsOf(pictures.Draw(vc::PictureFormat::Svg, Whole, [&](vc::Surface& surface) {
    surface.DrawPixels(pixels, {2, 2}, {10, 20, 100, 100}, {30, 20, 200, 40});
  }));
  const auto image = elements.find("image");
  ASSERT_NE(image, elements.end());
  EXPECT_EQ(image->second.value("x"), u"30");
  EXPECT_EQ(image->second.value("width"), u"80");
  EXPECT_EQ(image->second.value("height"), u"40");
  const QString data = image->second.value("xlink:href").toString().section(',', 1);
  const QImage shown = QImage::fromData(QByteArray::fromBase64(data.toLatin1()));
  EXPECT_EQ(shown.pixelColor(0, 0), QColor(Qt::red));
  EXPECT_EQ(shown.pixelColor(shown.width() - 1, shown.height() - 1), QColor(Qt::green));
}

TEST_F(SavedPicture, IsMadeAtOnceHoweverManyPointsAreInIt) {
  std::mt19937 random;
  std::vector<float> noise(8192);
  for (float& value : noise) value = -static_cast<float>(random() % 70U);
  plot.SetTraces({{"Yellow", noise, vc::ScreenYellow}, {"Blue", noise, vc::ScreenBlue}});
  QElapsedTimer took;
  took.start();
  EXPECT_FALSE(pictures.Draw(vc::PictureFormat::Png, Whole, Drawn()).empty());
  EXPECT_FALSE(pictures.Draw(vc::PictureFormat::Svg, Whole, Drawn()).empty());
  EXPECT_LT(took.elapsed(), 1000 * TIME_ALLOWANCE);
}

TEST_F(SavedPicture, IsThatOfPaperInTheDarkThemeToo) {
  const vc::Drawing letters = [](vc::Surface& surface) {
    surface.FillRectangle({0, 0, 60, 30}, vc::WindowBack);
    surface.DrawText({5, 5, 50, 20}, "100 Hz");
  };
  const auto pictureIn = [&](vc::Theme theme) {
    ApplyTheme(theme);
    return pictures.Draw(vc::PictureFormat::Png, {60, 30}, letters);
  };
  const std::string dark = pictureIn(vc::Theme::Dark);
  EXPECT_EQ(dark, pictureIn(vc::Theme::Light));
  EXPECT_EQ(QImage::fromData(QByteArray::fromStdString(dark)).pixelColor(1, 1), QColor(Qt::white));
}

TEST_F(SavedPicture, IsPutIntoTheClipboard) {
  QGuiApplication::clipboard()->clear();
  ASSERT_TRUE(pictures.Copy(Whole, Drawn()));
  Expect(QGuiApplication::clipboard()->image());
}

}  // namespace
}  // namespace desktop
