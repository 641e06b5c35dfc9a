// The graphs on a sheet of A4, by their lines and texts in twips.
#include <cmath>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestSession.h"
#include "model/Settings.h"
#include "report/GraphLines.h"
#include "report/GraphPictures.h"

namespace vc {
namespace {

using support::PrintedLine;
using support::PrintedPage;
using testing::Contains;
using testing::HasSubstr;

PrintedLine Solid(std::vector<Point> points) { return {std::move(points), LineStyle::Solid}; }
PrintedLine Dotted(std::vector<Point> points) { return {std::move(points), LineStyle::Dotted}; }
PrintedLine Box(double left, double top, double right, double bottom) {
  return Solid({{left, top}, {right, top}, {right, bottom}, {left, bottom}, {left, top}});
}

bool IsNear(const PrintedLine& line, const std::vector<Point>& points) {
  return std::ranges::equal(line.points, points, [](const Point& one, const Point& other) {
    return std::hypot(one.x - other.x, one.y - other.y) < 0.01;
  });
}

struct Graphs : testing::Test {
  support::RecordingPrinters printers;
  support::TestDesk desk{""};
  GraphSource source{.settings = {}, .printed = {2028, 2, 9, 7, 5, 0}};

  Graphs() {
    printers.printable = {10460, 15400};
    InitSettings(source.settings);
    source.settings.setupDescription = "Room 4";
    source.settings.sampleRate = 7200;
  }
  // The last document.
  std::vector<PrintedPage>& Pages() { return printers.printouts.back().pages; }
  bool Draw(const ReportPicture& picture, int top = 1000) {
    const ReportPictures pictures = GraphPictures(source);
    const auto document = printers.Begin({.printer = "Office", .title = ""});
    return pictures.shown(picture) && pictures.draw(*document, picture, top);
  }
  bool PrintAlone() { return GraphTask(source, desk).drawing(*printers.Begin({"Office", ""})); }

  // The texts of a page as "left,top text", those above excepted.
  static std::vector<std::string> Texts(const PrintedPage& page, int from = 0) {
    std::vector<std::string> texts;
    for (const auto& one : page.texts) {
      if (one.top < from) continue;
      texts.push_back(std::to_string(one.left) + "," + std::to_string(one.top) + " " + one.text);
    }
    return texts;
  }
  SpectrumReading& Spectrum() {
    RawTrace raw{};
    raw.fill(100);
    raw[0] = 0, raw[1] = 7, raw[2] = 185, raw[3] = 186, raw[4] = 255;
    SpectrumReading reading;
    reading.traces = {{"Blue Trace", "Line Output", "3", raw, "-34.8"},
                      {"Yellow Trace", "Left In", "0", raw, "-0.4"}};
    reading.averagerMode = "Peak Hold";
    source.display = reading;
    return std::get<SpectrumReading>(*source.display);
  }
  CoefficientReading& Coefficients(std::vector<float> values) {
    CoefficientReading reading;
    reading.stage = 2;
    reading.filter = "Filter 2: Lowpass, 32 coefficients";
    reading.CoefValues = std::move(values);
    reading.halfScale = 0.5;
    reading.axisTop = "+0.500", reading.axisBottom = "-0.500";
    reading.timeFirst = "0.000 msec", reading.timeLast = "4.306 msec";
    source.display = reading;
    return std::get<CoefficientReading>(*source.display);
  }
};

TEST_F(Graphs, FramesStandWhereTheyAreToBe) {
  struct Case {
    ReportPicture picture;
    double right, bottom, step;
    int levels, foot;
    const char* limit;
  };
  Spectrum().traces.pop_back();
  for (const Case& one : {Case{{ReportToken::SpectrumPage}, 6939, 2865, 805, 7, 3035, "3234 Hz"},
                          Case{{ReportToken::CurveGraph, 6}, 6901, 2470, 800, 6, 2640, "3234.4 Hz"},
                          Case{{ReportToken::EqualizerGraph, 2}, 6901, 2470, 800, 6, 2640, "3234.4 Hz"},
                          Case{{ReportToken::InverseGraph, 1}, 6901, 2470, 800, 7, 2640, "3234.4 Hz"}}) {
    ASSERT_TRUE(Draw(one.picture));
    const PrintedPage& page = Pages().front();
    EXPECT_THAT(page.lines, Contains(Box(499, 1090, one.right, 1000 + one.bottom)));
    int rows = 0;
    for (double y = 495; y < one.bottom; y += 395, ++rows) {
      EXPECT_THAT(page.lines, Contains(Dotted({{500, 1000 + y}, {one.right - 1, 1000 + y}})));
    }
    for (int i = 1; i <= 7; ++i) {
      const double x = 500 + i * one.step;
      EXPECT_THAT(page.lines, Contains(Dotted({{x, 1100}, {x, 1000 + one.bottom}})));
    }
    EXPECT_EQ(page.lines.size(), 1U + static_cast<unsigned>(rows) + 7 + 1);  // the last one is the curve
    std::vector<std::string> labels{"0,1000 0dB"};
    for (int i = 1; i <= one.levels; ++i) {
      labels.push_back("0," + std::to_string(1000 + 395 * i) + " -" + std::to_string(10 * i));
    }
    labels.push_back("480," + std::to_string(1000 + one.foot) + " 0");
    labels.push_back("6500," + std::to_string(1000 + one.foot) + " " + one.limit);
    auto texts = Texts(page);
    texts.resize(labels.size());
    EXPECT_EQ(texts, labels);
  }
}

TEST_F(Graphs, CurvesLieAtTheirLevels) {
  SystemSettings& settings = source.settings;
  for (int line = 0; line < 460; ++line) settings.hiResCurve[3][line] = static_cast<float>(-line) / 8;
  settings.edgeCurve[1][114] = -60;
  settings.sifCurve[6].Fill(-20);
  settings.sifCurve[6][459] = -std::numeric_limits<float>::infinity();
  const auto curve = [this](ReportToken token, int stage) {
    EXPECT_TRUE(Draw({token, stage}));
    return Pages().front().lines.back().points;
  };
  const std::vector<Point> hiRes = curve(ReportToken::CurveGraph, 3);
  ASSERT_EQ(hiRes.size(), 460U);
  EXPECT_EQ(hiRes.front(), (Point{500, 1100}));
  EXPECT_EQ(hiRes[80].y, 1100 + 395);
  EXPECT_NEAR(hiRes[230].x, 3707, 1);
  EXPECT_EQ(hiRes.back().x, 6900);
  const std::vector<Point> edge = curve(ReportToken::EqualizerGraph, 1);
  ASSERT_EQ(edge.size(), 115U);
  EXPECT_EQ(edge[113], (Point{6844, 1100}));
  EXPECT_EQ(edge.back(), (Point{6900, 3470}));
  settings.filterAtten[6] = 32767;
  EXPECT_NEAR(curve(ReportToken::InverseGraph, 6)[9].y, 1100 + 790, 0.1);
  EXPECT_EQ(curve(ReportToken::InverseGraph, 6).back(), (Point{6900, 3470}));
  settings.filterAtten[6] = 16384;  // counts twice: of the gain, and of the decibels
  EXPECT_NEAR(curve(ReportToken::InverseGraph, 6)[9].y, 1100 + 39.5 * 10 * std::log10(1 / 0.55), 0.1);
  settings.filterAtten[6] = 0;
  EXPECT_EQ(curve(ReportToken::InverseGraph, 6)[9].y, 1100);
}

TEST_F(Graphs, SpectraLieSevenUnitsALineUnderTheirOwnScale) {
  SpectrumReading& reading = Spectrum();
  reading.marker = {459, "3234"};
  reading.averages = "16";
  ASSERT_TRUE(Draw({ReportToken::SpectrumPage}, 800));
  ASSERT_EQ(Pages().size(), 1U);
  const PrintedPage& page = Pages().front();
  const std::vector<Point>& trace = page.lines[14].points;
  ASSERT_EQ(trace.size(), 460U);
  const std::vector<Point> first{{500, 3665}, {507, 3565}, {514, 905}, {521, 900}, {528, 900}, {535, 2175}};
  EXPECT_TRUE(std::ranges::equal(std::span(trace).first(6), first));
  EXPECT_EQ(trace.back().x, 500 + 7 * 459);
  EXPECT_EQ(page.lines[15], Solid({{3713, 900}, {3713, 3664}}));
  EXPECT_THAT(Texts(page), testing::IsSupersetOf({"500,4035 Blue Trace: Line Output   Gain: 3 dB",
                                                  "1000,3800 Freq: 3234 Hz    Mag: -34.8 dB",
                                                  "3500,4235 Averager Mode:Peak Hold  (Num. Avgs = 16)",
                                                  "500,7870 Yellow Trace: Left In   Gain: 0 dB"}));
  reading.marker.reset();
  reading.traces = {reading.traces.back()};
  reading.traces.front().raw.reset();  // nothing has come
  ASSERT_TRUE(Draw({ReportToken::SpectrumPage}));
  EXPECT_EQ(Pages().front().lines.size(), 14U);
  for (const std::string& text : Texts(Pages().front())) {
    EXPECT_THAT(text, testing::Not(testing::AnyOf(HasSubstr("Freq: "), HasSubstr("Blue"))));
  }
}

TEST_F(Graphs, CoefficientsAreCutOffAtTheirFrame) {
  const float none = std::numeric_limits<float>::quiet_NaN();
  Coefficients({0, 0.5, 1.5, -0.5, none, 0.25, 0}).marker = {3, "3", "0.417", "-0.5000"};
  ASSERT_TRUE(Draw({ReportToken::CoefficientGraph, 2}));
  const PrintedPage& page = Pages().front();
  const double top = 1090, sixth = 6655 / 6.0;
  EXPECT_EQ(page.lines.front(), Box(10, top, 6665, top + 2304));
  const int heights[] = {230, 461, 691, 922, 1152, 1382, 1613, 1843, 2074};
  for (std::size_t i = 0; i < 9; ++i) {
    EXPECT_EQ(page.lines[i + 1], Dotted({{10, top + heights[i]}, {6665, top + heights[i]}}));
  }
  EXPECT_EQ(page.lines[10], Dotted({{3337.5, top}, {3337.5, top + 2304}}));
  ASSERT_EQ(page.lines.size(), 15U);
  EXPECT_TRUE(IsNear(page.lines[11], {{10, top + 1152}, {10 + sixth, top}}));
  EXPECT_TRUE(IsNear(page.lines[12], {{10 + 2.5 * sixth, top}, {10 + 3 * sixth, top + 2304}}));
  EXPECT_TRUE(IsNear(page.lines[13], {{10 + 5 * sixth, top + 576}, {6665, top + 1152}}));
  EXPECT_TRUE(IsNear(page.lines[14], {{10 + 3 * sixth, top}, {10 + 3 * sixth, top + 2304}}));
  EXPECT_EQ(Texts(page),
            (std::vector<std::string>{
                "6765,1090 +0.500", "6765,3194 -0.500", "10,3454 0.000 msec", "5585,3454 4.306 msec",
                "10,3654 Time: 0.417 msec  (Coeff # 3)  Value: -0.5000", "10,3854 # of Coefs Displayed: 7"}));
  Coefficients({none}).marker = {0, "0", "0.000", ""};
  EXPECT_TRUE(Draw({ReportToken::CoefficientGraph, 2}));
  Coefficients({});
  EXPECT_TRUE(Draw({ReportToken::CoefficientGraph, 2}));
}

TEST_F(Graphs, WhatIsNotThereIsNotDrawn) {
  const auto none = [this](ReportToken token, std::initializer_list<int> stages) {
    for (const int stage : stages) EXPECT_FALSE(Draw({token, stage})) << stage;
  };
  none(ReportToken::SpectrumPage, {0});
  none(ReportToken::NewPage, {0});
  Coefficients({0, 1});
  none(ReportToken::SpectrumPage, {0});
  none(ReportToken::CoefficientGraph, {1, 0, -48, 207});
  std::get<CoefficientReading>(*source.display).stage = 6;
  none(ReportToken::CoefficientGraph, {6});
  none(ReportToken::InverseGraph, {0, 7, -48, 207});
  none(ReportToken::CurveGraph, {0, 7, -1});
  none(ReportToken::EqualizerGraph, {0, 3, 9});
  source.display.reset();
  EXPECT_FALSE(PrintAlone());
}

// Sheets of 75 lines, of which a graph takes 17: the last one that has room begins at line 58.
TEST_F(Graphs, TakeTheirLinesOfAReportAndNoMore) {
  Coefficients({0, 0.1F}).marker = {1, "1", "0.139", "0.1000"};
  for (const auto& [spaced, fitting] : {std::pair{false, 54}, {true, 27}}) {
    for (const std::string token : {"%CO2", "%SI1", "%SG6", "%EG2"}) {
      for (const int lines : {fitting, fitting + 1}) {
        std::string text;
        for (int i = 0; i < lines; ++i) text += "line\r\n";
        const ReportJob job{text + token + "\r\nbehind\r\n", "Room 4", source.printed, spaced};
        const auto document = printers.Begin({.printer = "Office", .title = ""});
        ASSERT_TRUE(PrintReportText(*document, job, GraphPictures(source), desk));
        const int top = lines == fitting ? 58 * 200 : 800;
        ASSERT_EQ(Pages().size(), lines == fitting ? 1U : 2U) << token;
        const PrintedPage& page = Pages().back();
        EXPECT_EQ(page.lines.front().points.front().y, top + 90) << token << lines;
        EXPECT_EQ(page.texts.back().text + std::to_string(page.texts.back().top - top), "behind3400");
        for (const auto& one : page.texts)
          EXPECT_TRUE(one.text == "behind" || one.top <= top + 3200) << one.text;
        for (const auto& line : page.lines) {
          for (const Point& point : line.points) EXPECT_TRUE(point.y >= top && point.y <= top + 3200);
        }
      }
    }
  }
}

TEST_F(Graphs, StandAloneUnderAHead) {
  source.settings.setupDescription =
      "Room 4\r\n" + std::string(61, 'x') + " " + std::string(60, 'y') + " z\nlast \xC3\xA9\r\n";
  source.settings.adaptEnabled = 0;
  Coefficients({0, 0.1F});
  ASSERT_TRUE(PrintAlone());
  EXPECT_TRUE(printers.printouts.back().ended);
  EXPECT_EQ(printers.printouts.back().fonts, (std::vector<PrintFont>{{.name = "Courier New", .points = 9}}));
  const auto texts = Texts(Pages().front());
  const std::vector<std::string> head{
      "0,0 Room 4" + std::string(59, ' ') + "   Page 1 of 1",
      "0,200 Date Printed: 2028-02-09" + std::string(41, ' ') + "   Initials:",
      "0,400 " + std::string(90, '_')};
  std::vector<std::string> lines;
  for (const std::string& line :
       {std::string("Coefficient Display Data"), std::string("Veltrana Master Control Version 1.0"),
        std::string("Setup Report for 2028-02-09 07:05:00"), std::string("Description:"),
        std::string("     Room 4"), "     " + std::string(61, 'x'), "     " + std::string(60, 'y') + " z",
        std::string("     last \xC3\xA9"), std::string("     "), std::string("-"),
        std::string("System Settings:"), std::string("     Bandwidth: 3.2 kHz"),
        std::string("     Sample Frequency: 7.2000 kHz"), std::string("     Configuration: Mono"),
        "     Number DSP Stages: " + std::to_string(source.settings.numFilters),
        std::string("     Number Broadband Stages: 1"), std::string("     Number EQ Stages: 1"),
        std::string("     Adaptation: Disabled"), std::string("     Processor: In")}) {
    const int top = 800 + 200 * static_cast<int>(lines.size());
    lines.push_back("0," + std::to_string(top) + " " + (line == "-" ? "" : std::string(10, ' ') + line));
  }
  lines.insert(lines.begin(), head.begin(), head.end());
  EXPECT_TRUE(std::ranges::equal(lines, std::span(texts).first(lines.size())))
      << testing::PrintToString(texts);
  EXPECT_THAT(texts.back(), HasSubstr("Filter 2: Lowpass, 32 coefficients"));

  printers.endFails = true;
  EXPECT_FALSE(PrintAlone());
  printers.endFails = false;
  Spectrum();
  ASSERT_TRUE(PrintAlone());
  for (const std::string& text : Texts(Pages().front()))
    EXPECT_THAT(text, testing::Not(HasSubstr("Broadband")));
}

// A head of 4 lines, 15 of text, and two frames of 3835.
TEST_F(Graphs, StandOnAFurtherPageWhereThereIsNoRoom) {
  Spectrum();
  constexpr int needed = 19 * 200 + 2 * 3835;
  for (const auto& [height, pages] :
       {std::pair{needed, 1}, {needed - 1, 2}, {needed - 3835, 2}, {needed - 3836, 3}}) {
    printers.printable.height = height;
    ASSERT_TRUE(PrintAlone());
    ASSERT_EQ(Pages().size(), static_cast<std::size_t>(pages)) << height;
    for (const PrintedPage& page : Pages()) {
      EXPECT_THAT(page.texts.front().text, HasSubstr(" of " + std::to_string(pages)));
    }
    printers.failingPage = pages == 1 ? 0 : pages;
    EXPECT_EQ(PrintAlone(), pages == 1);
    printers.failingPage = 0;
  }
  printers.printable.height = 800 + 2 * 3835 - 1;
  ASSERT_TRUE(Draw({ReportToken::SpectrumPage}, 800));
  ASSERT_EQ(Pages().size(), 2U);
  EXPECT_THAT(Texts(Pages().back()).front(), testing::EndsWith("   Page 2 of 2"));
  EXPECT_THAT(Texts(Pages().back()), Contains("0,800 0dB"));
  for (const Size& sheet : {Size{0, 0}, Size{10, 900}, Size{3000, -5}}) {
    printers.printable = sheet;
    EXPECT_TRUE(PrintAlone());
  }
}

}  // namespace
}  // namespace vc
