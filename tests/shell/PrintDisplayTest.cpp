// What a display shows goes onto paper, by its button and in a report.
#include <gmock/gmock.h>

#include "PanelRun.h"
#include "model/Kinds.h"
#include "report/GraphPictures.h"

namespace vc {
namespace {

using testing::HasSubstr;

struct PrintedDisplays : testing::Test, support::PanelRun {
  support::RecordingPrinters& printers = test.printers;

  PrintedDisplays() {
    printers.printable = {10460, 15400};
    record.filterType.Fill(FilterKind::OneChAdaptive);
    record.filterActive.Fill(1);
    Edit("numFilters", "4");
    Edit("ch1Taps", "600", 3);
    Settle();
  }
  void Learn(int height) {
    std::vector<std::int32_t> taps(600);
    for (int i = 0; i < 600; ++i) taps[static_cast<std::size_t>(i)] = (i % 7 - 3) * height * i;
    unit.Now().Learn(2, taps);
    test.loop.RunFor(1500);
  }
  const support::PrintedPage& Paper() const { return printers.printouts.back().pages.front(); }
  std::string Texts() const { return Paper().Text(); }
  bool InReport(const ReportPicture& picture) {
    return GraphPictures({record, test.clock.Wall(), session.displays.Reading()}).shown(picture);
  }
};

TEST_F(PrintedDisplays, CoefficientsAreThoseInTheWindow) {
  EXPECT_EQ(Click("btnCoeffDisplay"), "");
  EXPECT_EQ(Click("btnPrint"), "");
  EXPECT_THAT(Texts(), HasSubstr(")  Value: \n# of Coefs Displayed: 4\n"));
  EXPECT_EQ(Paper().lines.size(), 12U);  // nothing has been read

  EXPECT_EQ(Set("cmbFilter", "Filter 3"), "");
  Learn(1000);
  EXPECT_EQ(Set("cmbNumCoeffs", "128"), "");
  EXPECT_EQ(Set("cmbZoom", "2x"), "");
  EXPECT_EQ(Type("txtMarkerCoef", "500", true), "");
  const std::vector<float> drawn = std::get<Plot*>(Find("pbxCoef"))->Traces().front().values;
  const std::string told = "+0.500\n-0.500\n" + Get("lblTimeSpan(0)") + "\n" + Get("lblTimeSpan(1)") +
                           "\nTime: " + Get("txtMarkerTime") +
                           " msec  (Coeff # 500)  Value: " + Get("lblMarkerValue") +
                           "\n# of Coefs Displayed: 128\nFilter 3: 1-Ch Adaptive, 600 coefficients\n";
  printers.previewed = [this] { Learn(-500); };
  EXPECT_EQ(Click("btnPrint"), "");
  EXPECT_NE(std::get<Plot*>(Find("pbxCoef"))->Traces().front().values, drawn);
  EXPECT_THAT(Texts(), testing::EndsWith(told));
  const std::vector<Point>& curve = Paper().lines.at(11).points;
  ASSERT_EQ(curve.size(), 128U);
  for (std::size_t k = 0; k < 128; ++k) {
    EXPECT_NEAR(curve[k].x, 10 + 6655.0 * static_cast<double>(k) / 127, 0.1);
    EXPECT_NEAR((Paper().lines[0].points[0].y + 1152 - curve[k].y) / 2304, drawn[k], 1e-5) << k;
  }
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
    return Paper().lines.size() - 14;
  };
  EXPECT_EQ(curves(), 1U);
  EXPECT_THAT(
      Texts(),
      HasSubstr("\nYellow Trace: Left In   Gain: 0 dB\nAverager Mode:Exponential  (Num. Avgs = 16)\n"));
  EXPECT_EQ(Set("cmbYellowSignalSelect", "Equalizer Output"), "");
  EXPECT_EQ(curves(), 0U);
  EXPECT_TRUE(InReport({ReportToken::SpectrumPage}));
  session.displays.Show(display::None);
  EXPECT_FALSE(InReport({ReportToken::SpectrumPage}));
  EXPECT_FALSE(InReport({ReportToken::CoefficientGraph, 1}));
}

TEST_F(PrintedDisplays, WhatFailsIsToldAndWhatIsCancelledIsNot) {
  for (const auto& [button, text] :
       {std::pair{"btnSpecAnalyzer", "Error printing Spectrum Analyzer, check printer."},
        {"btnCoeffDisplay", "Error printing coefficient display, check printer."}}) {
    session.displays.Show(display::None);
    test.desk.boxes.clear();
    printers.endFails = true;
    EXPECT_EQ(Click(button), "");
    EXPECT_EQ(Click("btnPrint"), "");
    ASSERT_EQ(test.desk.boxes.size(), 1U);
    EXPECT_EQ(test.desk.boxes[0].code, box::Critical);
    EXPECT_EQ(test.desk.boxes[0].title + ": " + test.desk.boxes[0].text, std::string("Print Error: ") + text);
    printers.endFails = false;
    for (bool* agreed : {&printers.chosen, &printers.wanted}) {
      *agreed = false;
      EXPECT_EQ(Click("btnPrint"), "");
      *agreed = true;
    }
    EXPECT_EQ(test.desk.boxes.size(), 1U);
  }
}

}  // namespace
}  // namespace vc
