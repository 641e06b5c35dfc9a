// What a display shows goes onto paper, by its button and in a report.
#include <gmock/gmock.h>

#include "PanelRun.h"
#include "model/Kinds.h"
#include "report/GraphPictures.h"

namespace vc {
namespace {

using testing::Contains;
using testing::HasSubstr;

struct PrintedDisplays : testing::Test, support::PanelRun {
  support::RecordingPrinters& printers = test.printers;

  PrintedDisplays() {
    printers.printable = {10460, 15400};
    record.filterType.Fill(FilterKind::OneChAdaptive);
    record.filterActive.Fill(1);
    Edit("numFilters", "4");
    for (int stage = 1; stage <= 4; ++stage) Edit("ch1Taps", "600", stage);
    Settle();
    std::vector<std::int32_t> taps(600);
    for (int i = 0; i < 600; ++i) taps[static_cast<std::size_t>(i)] = (i % 7 - 3) * 1000 * i;
    for (unsigned page = 0; page < 6; ++page) unit.Now().Learn(page, taps);
  }
  static std::vector<std::string> Texts(const support::Printout& printout) {
    std::vector<std::string> texts;
    for (const auto& page : printout.pages) {
      for (const auto& one : page.texts) texts.push_back(one.text);
    }
    return texts;
  }
  support::ShownBox LastBox() const {
    return test.desk.boxes.empty() ? support::ShownBox{} : test.desk.boxes.back();
  }
  bool InReport(const ReportPicture& picture) {
    const ReportPictures pictures = GraphPictures({record, test.clock.Wall(), session.displays.Reading()});
    const auto document = printers.Begin({"Office", "report"});
    return pictures.shown(picture) && pictures.draw(*document, picture, 800);
  }
};

TEST_F(PrintedDisplays, CoefficientsAreThoseInTheWindow) {
  EXPECT_EQ(Click("btnCoeffDisplay"), "");
  ASSERT_EQ(Top().name, "FrmCoeffDisp");
  EXPECT_EQ(Click("btnPrint"), "");  // nothing has been read
  EXPECT_THAT(Texts(printers.printouts.at(0)), Contains("# of Coefs Displayed: 32"));
  EXPECT_THAT(Texts(printers.printouts.at(0)), Contains(testing::EndsWith(")  Value: ")));
  EXPECT_EQ(printers.printouts.at(0).pages.front().lines.size(), 12U);

  EXPECT_EQ(Set("cmbFilter", "Filter 3"), "");
  test.loop.RunFor(1500);
  EXPECT_EQ(Set("cmbNumCoeffs", "128"), "");
  EXPECT_EQ(Set("cmbZoom", "5x"), "");
  EXPECT_EQ(Type("txtMarkerCoef", "500", true), "");
  const std::vector<float> drawn = std::get<Plot*>(Find("pbxCoef"))->Traces().front().values;
  std::vector<std::string> wanted{
      "Time: " + Get("txtMarkerTime") + " msec  (Coeff # 500)  Value: " + Get("lblMarkerValue"),
      "# of Coefs Displayed: 128", "+0.200", "-0.200"};
  for (const char* label : {"lblTimeSpan(0)", "lblTimeSpan(1)"}) wanted.push_back(Get(label));
  printers.previewed = [this] {
    for (unsigned page = 0; page < 6; ++page) unit.Now().Learn(page, std::vector<std::int32_t>(600));
    test.loop.RunFor(1500);
  };
  EXPECT_EQ(Click("btnPrint"), "");
  EXPECT_NE(std::get<Plot*>(Find("pbxCoef"))->Traces().front().values, drawn);
  const support::Printout& paper = printers.printouts.at(1);
  EXPECT_EQ(paper.job.title, "Coefficient Display");
  EXPECT_THAT(Texts(paper), testing::IsSupersetOf(wanted));
  EXPECT_THAT(Texts(paper), Contains(HasSubstr("Filter 3: 1-Ch Adaptive, 600 coefficients")));
  const auto& lines = paper.pages.front().lines;
  const double top = lines.front().points.front().y;
  std::vector<Point> curve;  // in its stretches, since it leaves the frame
  for (std::size_t i = 11; i + 1 < lines.size(); ++i) {
    curve.insert(curve.end(), lines[i].points.begin(), lines[i].points.end());
  }
  int compared = 0;
  for (std::size_t k = 0; k < drawn.size(); ++k) {
    const Point there{10 + 6655.0 * static_cast<double>(k) / 127, top + 1152 * (1 - drawn[k] / 0.2)};
    if (std::abs(drawn[k]) > 0.199) continue;
    ++compared;
    EXPECT_THAT(curve, Contains(testing::Truly([&](const Point& point) {
                  return std::hypot(point.x - there.x, point.y - there.y) < 0.1;
                })))
        << k;
  }
  EXPECT_GT(compared, 20);
  printers.previewed = nullptr;
  EXPECT_TRUE(InReport({ReportToken::CoefficientGraph, 3}));
  EXPECT_FALSE(InReport({ReportToken::CoefficientGraph, 1}));
  EXPECT_FALSE(InReport({ReportToken::SpectrumPage}));
}

TEST_F(PrintedDisplays, SpectrumHasNothingOfWhatWasMeasuredBefore) {
  Edit("specDisplayMode", "1");
  Edit("averagerMode", "1");
  Edit("specAverages", "4");
  EXPECT_EQ(Click("btnSpecAnalyzer"), "");
  Settle();
  const auto curves = [this] {
    EXPECT_EQ(Click("btnPrint"), "");
    return printers.printouts.back().pages.front().lines.size() - 14;
  };
  EXPECT_EQ(curves(), 1U);
  EXPECT_THAT(Texts(printers.printouts.back()),
              testing::IsSupersetOf({"Yellow Trace: " + Get("cmbYellowSignalSelect") + "   Gain: 0 dB",
                                     std::string("Averager Mode:Exponential  (Num. Avgs = 16)")}));
  EXPECT_EQ(Set("cmbYellowSignalSelect", "Equalizer Output"), "");
  EXPECT_EQ(curves(), 0U);
  EXPECT_TRUE(InReport({ReportToken::SpectrumPage}));
  session.displays.Show(display::None);
  EXPECT_FALSE(InReport({ReportToken::SpectrumPage}));
  EXPECT_FALSE(InReport({ReportToken::CoefficientGraph, 1}));
  EXPECT_TRUE(InReport({ReportToken::CurveGraph, 1}));
}

TEST_F(PrintedDisplays, WhatFailsIsToldAndWhatIsCancelledIsNot) {
  for (const auto& [button, text] :
       {std::pair{"btnSpecAnalyzer", "Error printing Spectrum Analyzer, check printer."},
        {"btnCoeffDisplay", "Error printing coefficient display, check printer."}}) {
    session.displays.Show(display::None);
    test.desk.boxes.clear();
    EXPECT_EQ(Click(button), "");
    printers.endFails = true;
    EXPECT_EQ(Click("btnPrint"), "");
    EXPECT_EQ(LastBox().code, box::Critical);
    EXPECT_EQ(LastBox().title + ": " + LastBox().text, std::string("Print Error: ") + text);
    printers.chosen = false;
    EXPECT_EQ(Click("btnPrint"), "");
    printers.chosen = true;
    printers.wanted = false;
    EXPECT_EQ(Click("btnPrint"), "");
    printers.wanted = true;
    printers.endFails = false;
    EXPECT_EQ(test.desk.boxes.size(), 1U);
  }
}

}  // namespace
}  // namespace vc
