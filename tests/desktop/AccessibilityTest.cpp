// What a screen reader hears, asked of the accessibility interface itself.
#include <gtest/gtest.h>

#include <QLabel>

#include "MasterWindow.h"

namespace desktop {
namespace {

QAccessibleInterface& Heard(QWidget& widget) { return *QAccessible::queryAccessibleInterface(&widget); }

// Current, lowest and highest number, and the step.
std::string Numbers(QWidget& widget) {
  QAccessibleValueInterface* value = Heard(widget).valueInterface();
  if (value == nullptr) return "none";
  std::string text;
  for (const QVariant& number :
       {value->currentValue(), value->minimumValue(), value->maximumValue(), value->minimumStepSize()}) {
    text += (number.isValid() ? QString::number(number.toDouble()).toStdString() : "") + " ";
  }
  return text;
}

// Everything that can be heard within, a line each.
void Walk(const QAccessibleInterface& from, std::string& all) {
  if (from.state().invisible) return;
  for (const auto what : {QAccessible::Name, QAccessible::Description, QAccessible::Value}) {
    all += from.text(what).toStdString() + "\n";
  }
  for (int i = 0; i < from.childCount(); ++i) Walk(*from.child(i), all);
}

std::string AllHeard(QWidget& window) {
  std::string all;
  Walk(Heard(window), all);
  return all;
}

TEST(Accessibility, ASlidersNumbersAreThoseThatItShows) {
  MasterWindow run;
  run.record.lpfAtten[1] = 40;
  run.record.lpfCutoff[1] = 1000;
  run.record.lpfTransSlope[1] = 100;
  run.OpenFilter(1, vc::FilterKind::Lowpass);
  run.Ready();
  EXPECT_EQ(Numbers(run.At("sldrAtten")), "40 10 60 1 ");
  EXPECT_EQ(Numbers(run.At("sldrTransSlope")), "341.4 9.1 1585 3.4 ");
  EXPECT_EQ(Heard(run.At("sldrAtten")).role(), QAccessible::Slider);
  EXPECT_EQ(Heard(run.At("sldrAtten")).text(QAccessible::Value), "40 dB");
  Heard(run.At("sldrAtten")).valueInterface()->setCurrentValue(25);
  EXPECT_EQ(run.record.lpfAtten[1], 25);
  Heard(run.At("sldrTransSlope")).valueInterface()->setCurrentValue(170.9);
  EXPECT_EQ(run.Says("txtTransSlope"), "170.9 dB/Octave");
  run.Press("Escape");
  run.Edit("levelControlsShown", "1");
  EXPECT_EQ(Numbers(run.At("sldrLevel(0)")), "0 -48 31.5 0.5 ");
  run.Click("btnIhpfConfig");
  run.Ready();
  EXPECT_EQ(Numbers(run.At("sldrCutoff")), "200 100 500 10 ");
}

TEST(Accessibility, AnUpDownIsASpinBoxWithTheNumbersThatItShows) {
  Shown shown;
  auto& upDown = shown.sample.udThresh;
  upDown.slider.show = [](double position) { return vc::FixedText(position / 10, 1); };
  upDown.slider.parse = [](const std::string& text) { return vc::ParseNumber(text).value() * 10; };
  upDown.SetValue(-25);
  EXPECT_EQ(Heard(shown.At("udThresh")).role(), QAccessible::SpinBox);
  EXPECT_EQ(Numbers(shown.At("udThresh")), "-2.5 -9 0 0.1 ");
  Heard(shown.At("udThresh")).valueInterface()->setCurrentValue(-7.33);
  EXPECT_EQ(upDown.Value(), -73);
}

TEST(Accessibility, ABarHasARoleAndTheNumberThatItShows) {
  MasterWindow run;
  QWidget& bar = run.At("lbInputLeft");
  run.session.master.chain.inputs[0].bar.SetReading("-12.3 dB");
  EXPECT_EQ(Heard(bar).role(), QAccessible::ProgressBar);
  EXPECT_EQ(Numbers(bar), "-12.3 -66 3  ");
  EXPECT_EQ(run.Says("lbInputLeft"), "-12.3 dB");
  run.session.master.chain.inputs[0].bar.SetReading("no unit");
  EXPECT_EQ(Numbers(bar), "-66 -66 3  ");
  EXPECT_EQ(run.Says("lbInputLeft"), "no unit");
  run.OpenFilter(1, vc::FilterKind::Lowpass);
  run.Ready();
  EXPECT_EQ(Heard(run.At("pltResponse")).role(), QAccessible::Graphic);
}

TEST(Accessibility, AScaleMayHaveUnitsAndSigns) {
  Shown shown;
  auto& gauge = shown.sample.lbGauge;
  gauge.SetScale({{50, "0 dB"}, {100, "+90 dB"}, {0, "-90 dB"}});
  gauge.SetReading("+3.5 dB");
  EXPECT_EQ(Numbers(shown.At("lbGauge")), "3.5 -90 90  ");
}

TEST(Accessibility, NothingIsHeardThatIsNotShown) {
  MasterWindow run;
  run.Edit("eqType", std::to_string(vc::EqKind::Compressor), 2);
  std::string all = AllHeard(run.Window());
  EXPECT_EQ(all.find("Right Output"), std::string::npos);  // in Mono
  EXPECT_EQ(all.find("Compressor"), std::string::npos);    // the kind of a block that is not there
  EXPECT_NE(all.find("Filter 3"), std::string::npos);      // its title is shown
  EXPECT_EQ(all.find("Filter 3, "), std::string::npos);
  run.Edit("configMode", "2");
  all = AllHeard(run.Window());
  EXPECT_NE(all.find("Right Output"), std::string::npos);
  EXPECT_NE(all.find("Compressor"), std::string::npos);
  run.record.bpfLoCutoff[1] = 0;
  run.OpenFilter(1, vc::FilterKind::Bandpass);
  run.Ready();
  EXPECT_EQ(run.Says("txtLoCutoff"), "Out");
  EXPECT_EQ(run.Says("sldrLoCutoff"), "Out");
  EXPECT_EQ(AllHeard(run.Window()).find("Out Hz"), std::string::npos);
}

TEST(Accessibility, AWindowThatHasGoneIsNotAsked) {
  MasterWindow run;
  run.OpenFilter(1, vc::FilterKind::Lowpass);
  run.Ready();
  QWidget& slider = run.At("sldrAtten");
  run.Set("sldrAtten", "20");  // the handle would follow when events run
  run.CloseTop();
  run.session.panels.OpenFilter(2);  // which frees the panel that was open before
  EXPECT_EQ(Numbers(slider), "    ");
  QCoreApplication::processEvents();
}

}  // namespace
}  // namespace desktop
