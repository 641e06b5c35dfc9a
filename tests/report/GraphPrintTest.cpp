// The graphs on a sheet of A4, by their lines and texts in twips.
#include <cmath>
#include <limits>

#include <gmock/gmock.h>

#include "TestSession.h"
#include "model/Settings.h"
#include "report/GraphPictures.h"

namespace vc {
namespace {

using support::PrintedPage;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;
using Strings = std::vector<std::string>;

constexpr float None = std::numeric_limits<float>::quiet_NaN();

std::string At(double x, double y) { return FixedText(x, 1) + "," + FixedText(y, 1); }
std::string Box(double left, double top, double right, double bottom) {
  return At(left, top) + " " + At(right, top) + " " + At(right, bottom) + " " + At(left, bottom) + " " +
         At(left, top);
}
std::string Dotted(double x, double y, double toX, double toY) { return "~" + At(x, y) + " " + At(toX, toY); }

struct Graphs : testing::Test {
  support::RecordingPrinters printers;
  support::TestDesk desk{""};
  GraphSource source{.settings = {}, .printed = {2028, 2, 9, 7, 5, 0}};
  SystemSettings& settings = source.settings;
  SpectrumReading spectrum;
  CoefficientReading coefficients;

  Graphs() {
    printers.printable = {10460, 15400};
    InitSettings(settings);
    settings.setupDescription = "Room 4";
    settings.sampleRate = 7200;
    RawTrace raw{0, 7, 185, 186, 255, 100};
    spectrum.traces = {{"Blue Trace", "Line Output", "3", raw, "-34.8"},
                       {"Yellow Trace", "Left In", "0", raw, ""}};
    spectrum.averagerMode = "Peak Hold";
    coefficients = {2, "Filter 2: Lowpass", {0, 0.1F}, 0.5, "+0.5", "-0.5", "0.000 msec", "0.139 msec", {}};
  }
  std::vector<PrintedPage>& Pages() { return printers.printouts.back().pages; }  // of the last document
  bool Draw(const ReportPicture& picture, int top = 1000) {
    const ReportPictures pictures = GraphPictures(source);
    const auto document = printers.Begin({.printer = "Office", .title = ""});
    return pictures.shown(picture) && pictures.draw(*document, picture, top);
  }
  bool PrintAlone() { return GraphTask(source, desk).drawing(*printers.Begin({"Office", ""})); }
  static Strings Texts(const PrintedPage& page) {
    Strings texts;
    for (const auto& one : page.texts) {
      texts.push_back(std::to_string(one.left) + "," + std::to_string(one.top) + " " + one.text);
    }
    return texts;
  }
  Strings Lines() {
    Strings lines;
    for (const auto& [points, style] : Pages().front().lines) {
      lines.emplace_back(style == LineStyle::Dotted ? "~" : "");
      for (const Point& point : points)
        lines.back() += (&point == points.data() ? "" : " ") + At(point.x, point.y);
    }
    return lines;
  }
};

TEST_F(Graphs, FramesStandWhereTheyAreToBe) {
  struct Case {
    ReportPicture picture;
    double right, bottom, step;
    int levels, foot;
    const char* limit;
  };
  spectrum.traces.pop_back();
  source.display = spectrum;
  for (const Case& one : {Case{{ReportToken::SpectrumPage}, 6939, 2865, 805, 7, 3035, "3234 Hz"},
                          Case{{ReportToken::CurveGraph, 6}, 6901, 2470, 800, 6, 2640, "3234.4 Hz"},
                          Case{{ReportToken::EqualizerGraph, 2}, 6901, 2470, 800, 6, 2640, "3234.4 Hz"},
                          Case{{ReportToken::InverseGraph, 1}, 6901, 2470, 800, 7, 2640, "3234.4 Hz"}}) {
    ASSERT_TRUE(Draw(one.picture));
    Strings frame{Box(499, 1090, one.right, 1000 + one.bottom)}, labels{"0,1000 0dB"};
    for (double y = 1495; y < 1000 + one.bottom; y += 395) frame.push_back(Dotted(500, y, one.right - 1, y));
    for (int i = 1; i <= 7; ++i) {
      frame.push_back(Dotted(500 + i * one.step, 1100, 500 + i * one.step, 1000 + one.bottom));
    }
    for (int i = 1; i <= one.levels; ++i) {
      labels.push_back("0," + std::to_string(1000 + 395 * i) + " -" + std::to_string(10 * i));
    }
    labels.push_back("480," + std::to_string(1000 + one.foot) + " 0");
    labels.push_back("6500," + std::to_string(1000 + one.foot) + " " + one.limit);
    Strings lines = Lines(), texts = Texts(Pages().front());
    lines.pop_back();  // the curve
    texts.resize(labels.size());
    EXPECT_EQ(lines, frame);
    EXPECT_EQ(texts, labels);
  }
}

TEST_F(Graphs, CurvesLieAtTheirLevels) {
  for (int line = 0; line < 460; ++line) settings.hiResCurve[3][line] = static_cast<float>(-line) / 8;
  settings.edgeCurve[1][114] = -60;
  settings.sifCurve[6].Fill(-20);
  settings.sifCurve[6][459] = -std::numeric_limits<float>::infinity();
  const auto curve = [this](ReportToken token, int stage) {
    EXPECT_TRUE(Draw({token, stage}, 0));
    return Pages().front().lines.back().points;
  };
  const std::vector<Point> hiRes = curve(ReportToken::CurveGraph, 3);
  ASSERT_EQ(hiRes.size(), 460U);
  EXPECT_EQ(At(hiRes[80].x, hiRes[80].y) + " " + At(hiRes[459].x, hiRes[459].y),
            "1615.0,495.0 6900.0,2366.3");
  const std::vector<Point> edge = curve(ReportToken::EqualizerGraph, 1);
  ASSERT_EQ(edge.size(), 115U);
  EXPECT_EQ(At(edge[113].x, edge[113].y) + " " + At(edge[114].x, edge[114].y), "6844.0,100.0 6900.0,2470.0");
  // Half of it counts twice: of the gain, and of the decibels.
  for (const auto& [amount, decibels] :
       {std::pair{32767, 20.0}, {16384, 10 * std::log10(1 / 0.55)}, {0, 0.0}}) {
    settings.filterAtten[6] = static_cast<std::int16_t>(amount);
    EXPECT_NEAR(curve(ReportToken::InverseGraph, 6)[9].y, 100 + 39.5 * decibels, 0.1);
  }
  settings.filterAtten[6] = 32767;
  EXPECT_EQ(curve(ReportToken::InverseGraph, 6).back(), (Point{6900, 2470}));
}

TEST_F(Graphs, SpectraLieSevenUnitsALineUnderTheirOwnScale) {
  spectrum.marker = {459, "3234"};
  spectrum.averages = "16";
  source.display = spectrum;
  ASSERT_TRUE(Draw({ReportToken::SpectrumPage}, 800));
  ASSERT_EQ(Pages().size(), 1U);
  EXPECT_THAT(Lines()[14],
              testing::StartsWith("500.0,3665.0 507.0,3565.0 514.0,905.0 521.0,900.0 528.0,900.0 "
                                  "535.0,2175.0 542.0,3665.0 "));
  EXPECT_THAT(Lines()[14], EndsWith(" 3713.0,3665.0"));
  EXPECT_EQ(Lines()[15], "3713.0,900.0 3713.0,3664.0");
  EXPECT_THAT(Texts(Pages().front()), IsSupersetOf({"500,4035 Blue Trace: Line Output   Gain: 3 dB",
                                                    "1000,3800 Freq: 3234 Hz    Mag: -34.8 dB",
                                                    "3500,4235 Averager Mode:Peak Hold  (Num. Avgs = 16)",
                                                    "500,7870 Yellow Trace: Left In   Gain: 0 dB"}));
  spectrum.marker.reset();
  spectrum.traces = {{"Yellow Trace", "Left In", "0", {}, ""}};  // of which nothing has come
  source.display = spectrum;
  ASSERT_TRUE(Draw({ReportToken::SpectrumPage}));
  EXPECT_EQ(Lines().size(), 14U);
  EXPECT_THAT(Texts(Pages().front()),
              testing::Each(Not(testing::AnyOf(HasSubstr("Freq"), HasSubstr("Blue")))));
}

TEST_F(Graphs, CoefficientsAreCutOffAtTheirFrame) {
  coefficients.CoefValues = {0, 0.5, 1.5, -0.5, None, 0.25, 0};
  coefficients.marker = {3, "3", "0.417", "-0.5000"};
  source.display = coefficients;
  ASSERT_TRUE(Draw({ReportToken::CoefficientGraph, 2}, 910));
  Strings lines{Box(10, 1000, 6665, 3304)};
  for (const double height : {230, 461, 691, 922, 1152, 1382, 1613, 1843, 2074}) {
    lines.push_back(Dotted(10, 1000 + height, 6665, 1000 + height));
  }
  lines.insert(lines.end(),
               {Dotted(3337.5, 1000, 3337.5, 3304), "10.0,2152.0 1119.2,1000.0",
                "2782.9,1000.0 3337.5,3304.0", "5555.8,1576.0 6665.0,2152.0", "3337.5,1000.0 3337.5,3304.0"});
  EXPECT_EQ(Lines(), lines);
  EXPECT_EQ(
      Texts(Pages().front()),
      (Strings{"6765,1000 +0.5", "6765,3104 -0.5", "10,3364 0.000 msec", "5585,3364 0.139 msec",
               "10,3564 Time: 0.417 msec  (Coeff # 3)  Value: -0.5000", "10,3764 # of Coefs Displayed: 7"}));
  for (const std::vector<float>& few : {std::vector<float>{}, {None}}) {
    coefficients.CoefValues = few;
    source.display = coefficients;
    EXPECT_TRUE(Draw({ReportToken::CoefficientGraph, 2}));
  }
}

TEST_F(Graphs, WhatIsNotThereIsNotDrawn) {
  EXPECT_FALSE(PrintAlone());
  EXPECT_FALSE(Draw({ReportToken::SpectrumPage}));
  coefficients.stage = 6;
  source.display = coefficients;
  for (const ReportToken token :
       {ReportToken::SpectrumPage, ReportToken::CoefficientGraph, ReportToken::NewPage,
        ReportToken::InverseGraph, ReportToken::CurveGraph, ReportToken::EqualizerGraph}) {
    for (const int stage : {0, 7, -48, 207}) EXPECT_FALSE(Draw({token, stage})) << stage;
  }
  EXPECT_FALSE(Draw({ReportToken::CoefficientGraph, 6}));
  EXPECT_FALSE(Draw({ReportToken::EqualizerGraph, 3}));
}

// Sheets of 75 lines, of which a graph takes 17: the last one that has room begins at line 58.
TEST_F(Graphs, TakeTheirLinesOfAReportAndNoMore) {
  coefficients.marker = {1, "1", "0.139", "0.1000"};
  source.display = coefficients;
  for (const auto& [spaced, fitting] : {std::pair{false, 54}, {true, 27}}) {
    for (const std::string token : {"%CO2", "%SI1", "%SG6", "%EG2"}) {
      for (const int lines : {fitting, fitting + 1}) {
        ReportJob job{"", "Room 4", source.printed, spaced};
        for (int i = 0; i < lines; ++i) job.text += "line\r\n";
        job.text += token + "\r\nbehind\r\n";
        const auto document = printers.Begin({.printer = "Office", .title = ""});
        ASSERT_TRUE(PrintReportText(*document, job, GraphPictures(source), desk));
        ASSERT_EQ(Pages().size(), lines == fitting ? 1U : 2U) << token;
        const int top = lines == fitting ? 58 * 200 : 800;
        const PrintedPage& page = Pages().back();
        EXPECT_EQ(page.lines.front().points.front().y, top + 90) << token << lines;
        EXPECT_EQ(page.texts.back().text + std::to_string(page.texts.back().top - top), "behind3400");
        for (const auto& one : page.texts) EXPECT_TRUE(one.text == "behind" || one.top <= top + 3200);
      }
    }
  }
}

TEST_F(Graphs, StandAloneUnderAHead) {
  const std::string many(61, 'x'), few(60, 'y');
  settings.setupDescription = "Room 4\r\n" + many + " " + few + " z\nlast \xC3\xA9\r\n";
  settings.adaptEnabled = 0;
  settings.numFilters = 5;
  source.display = coefficients;
  ASSERT_TRUE(PrintAlone());
  EXPECT_TRUE(printers.printouts.back().ended);
  EXPECT_EQ(printers.printouts.back().fonts, (std::vector<PrintFont>{{.name = "Courier New", .points = 9}}));
  std::string text;
  for (const auto& one : Pages().front().texts) text += std::to_string(one.top / 200) + one.text + "\n";
  const std::string indent(10, ' '), deeper(15, ' ');
  EXPECT_THAT(text, HasSubstr("   Page 1 of 1\n1Date Printed: 2028-02-09 "));
  EXPECT_THAT(text,
              HasSubstr("\n4" + indent + "Coefficient Display Data\n5" + indent +
                        "Veltrana Master Control Version 1.0\n6" + indent +
                        "Setup Report for 2028-02-09 07:05:00\n7" + indent + "Description:\n8" + deeper +
                        "Room 4\n9" + deeper + many + "\n10" + deeper + few + " z\n11" + deeper +
                        "last \xC3\xA9\n12" + deeper + "\n13\n14" + indent + "System Settings:\n15" + deeper +
                        "Bandwidth: 3.2 kHz\n16" + deeper + "Sample Frequency: 7.2000 kHz\n17" + deeper +
                        "Configuration: Mono\n18" + deeper + "Number DSP Stages: 5\n19" + deeper +
                        "Number Broadband Stages: 1\n20" + deeper + "Number EQ Stages: 1\n21" + deeper +
                        "Adaptation: Disabled\n22" + deeper + "Processor: In\n"));
  EXPECT_THAT(text, EndsWith("Filter 2: Lowpass\n"));
  source.display = spectrum;
  ASSERT_TRUE(PrintAlone());
  EXPECT_THAT(Texts(Pages().front()), testing::Each(Not(HasSubstr("Broadband"))));
}

// A head of 4 lines, 15 of text, and two frames of 3835.
TEST_F(Graphs, StandOnAFurtherPageWhereThereIsNoRoom) {
  source.display = spectrum;
  constexpr int frame = 3835, needed = 19 * 200 + 2 * frame;
  for (const auto& [height, pages] :
       {std::pair{needed, 1}, {needed - 1, 2}, {needed - frame, 2}, {needed - frame - 1, 3}}) {
    printers.printable.height = height;
    ASSERT_TRUE(PrintAlone());
    ASSERT_EQ(Pages().size(), static_cast<std::size_t>(pages)) << height;
    for (const PrintedPage& page : Pages()) {
      EXPECT_THAT(page.texts.front().text, EndsWith(" of " + std::to_string(pages)));
    }
    printers.failingPage = pages == 1 ? 0 : pages;
    EXPECT_EQ(PrintAlone(), pages == 1);
    printers.failingPage = 0;
  }
  printers.printable.height = 800 + 2 * frame - 1;
  ASSERT_TRUE(Draw({ReportToken::SpectrumPage}, 800));
  ASSERT_EQ(Pages().size(), 2U);
  EXPECT_THAT(Texts(Pages().back()).front(), EndsWith("   Page 2 of 2"));
  EXPECT_THAT(Texts(Pages().back()), Contains("0,800 0dB"));
  for (const Size& sheet : {Size{0, 0}, Size{10, 900}, Size{3000, -5}}) {
    printers.printable = sheet;
    EXPECT_TRUE(PrintAlone());
  }
}

}  // namespace
}  // namespace vc
