// The whole desktop program at a real port with the unit's own program on the other end: what the operator
// does with mouse and keys is in the record and, told by the unit itself, in the unit.
#include <array>
#include <bit>
#include <functional>
#include <span>

#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QTest>

#include "RealPort.h"
#include "model/Kinds.h"

namespace desktop {
namespace {

std::string Low(int word) { return QString::asprintf("%02X %02X", word & 255, word >> 8).toStdString(); }

TEST_F(RealPort, TheOperatorsHandReachesTheUnit) {
  auto* list = Window().findChild<QComboBox*>("cmbFilter(1)");
  list->setFocus();
  QTest::keyClicks(list, "Low");  // the list goes to the row that begins so
  ASSERT_EQ(Record().filterType[1], vc::FilterKind::Lowpass);
  Hit("btnFilterConfig(1)");
  Ready();
  Write("txtCutoff", "1234", Qt::Key_Return);
  EXPECT_NE(Dump().find("block 1 " + Low(1234)), std::string::npos);
  Write("txtCutoff", "9999", Qt::Key_Tab);
  EXPECT_EQ(Record().lpfCutoff[1], Record().bandwidthHz);
  auto& slider = At("sldrCutoff");
  const QPoint end(slider.width() - 6, slider.height() / 2);
  QTest::mousePress(&slider, Qt::LeftButton, {}, end);
  for (int part = 1; part <= 20; ++part) {
    QTest::mouseMove(&slider, end - QPoint(part * 3, 0));
    QTest::qWait(17);
  }
  QTest::mouseRelease(&slider, Qt::LeftButton, {}, end - QPoint(60, 0));
  const std::int16_t dragged = Record().lpfCutoff[1];
  EXPECT_LT(dragged, 3000);
  EXPECT_NE(Dump().find("block 1 " + Low(dragged)), std::string::npos);
  EXPECT_TRUE(QTest::qWaitFor([this] { return program->session.device.ReplyTicksLeft == 0; }, 2000));
  QTest::keyClick(&slider, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_NE(Dump().find("block 1 " + Low(3200)), std::string::npos);
  QTest::keyClick(&slider, Qt::Key_Escape);
  Ready();
  QTest::keyClick(&Window(), Qt::Key_L, Qt::AltModifier);
  AnswerBox(QMessageBox::Yes);
  QTimer::singleShot(300, [] { AnswerBox(QMessageBox::No); });  // the changes may go
  Window().findChild<QAction*>("mnuNew")->trigger();
  EXPECT_EQ(Record().filterType[1], vc::FilterKind::OneChAdaptive);
  EXPECT_NE(Dump().find("stage 1 class 0 "), std::string::npos);
}

std::string Bytes(std::span<const std::uint8_t> bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) text += QString::asprintf(" %02X", byte).toStdString();
  return text;
}

// What the unit's dump says of a panel's settings, which are seen in the record first.
std::string CombTold(const vc::Session& session) {
  EXPECT_LT(session.settings.combFreq[1], 36);
  EXPECT_GT(session.settings.combDepth[1], 10);
  return "block 1 " + Low(session.settings.combFreq[1]) + " " + Low(session.settings.combLimit[1]);
}
std::string NotchesTold(const vc::Session& session) {
  EXPECT_EQ(session.settings.mnotchFreq[1][1], 1000);
  EXPECT_GT(session.settings.mnotchFreq[1][2], 0);
  return "table 1 1024 ";
}
std::string AdaptiveTold(const vc::Session& session) {
  EXPECT_EQ(session.settings.ch1Taps[1], 304);
  EXPECT_GT(session.settings.ch1PredSpan[1], 0);
  return "register 43 " + std::to_string(session.settings.ch1PredSpan[1]) + " ";
}
std::string SectionsTold(const vc::Session& session) {
  EXPECT_GT(session.settings.parCenter[1][0] * session.settings.sampleRate, 420);
  return "block 1" + Bytes(session.download.image.stageBlock[1]);
}
std::string EqualizerTold(const vc::Session& session) {
  EXPECT_EQ(session.settings.eqParLevel[9], 180);
  EXPECT_GT(session.settings.eqParCenter[9][1] * session.settings.sampleRate, 1450);
  return "block 9" + Bytes(session.download.image.stageBlock[9]);
}
std::string NoiseTold(const vc::Session& session) {
  const float band = session.settings.noiseEqVals[1][2];
  EXPECT_GT(band, 0.1F);
  return "broadband 1 2" + Bytes(std::bit_cast<std::array<std::uint8_t, sizeof band>>(band));
}

// A panel of each family: what is typed, what the mouse drags (a handle or a slider, so many pixels) and the
// button that is then pressed, where one is needed.
struct Handled {
  const char *list, *kind, *open;
  std::array<std::pair<const char*, const char*>, 2> typed;
  const char* dragged;
  QPoint way;
  const char* pressed;
  std::string (*told)(const vc::Session& session);
};
constexpr const char *Filters = "cmbFilter(1)", *FilterSetup = "btnFilterConfig(1)";
const Handled Families[]{{Filters,
                          "Comb",
                          FilterSetup,
                          {{{"txtLimit", "2000"}, {"txtFreq", "200"}}},
                          "pltResponse.Fundamental",
                          {40, 25},
                          nullptr,
                          CombTold},
                         {Filters,
                          "Multiple N",
                          FilterSetup,
                          {{{"txtFreq(0)", "1000"}, {"txtWidth(0)", "60"}}},
                          "pltResponse.Notch 2",
                          {60, 0},
                          "btnBuild",
                          NotchesTold},
                         {Filters,
                          "1-Ch",
                          FilterSetup,
                          {{{"txtTaps", "300"}, {"txtAdapt", "200"}}},
                          "sldrPredSpan",
                          {30, 0},
                          nullptr,
                          AdaptiveTold},
                         {Filters,
                          "Tri",
                          FilterSetup,
                          {{{"CenterText(0)", "400"}, {"BoostText(0)", "9"}}},
                          "pltResponse.Substage 1 (Wide)",
                          {40, -10},
                          nullptr,
                          SectionsTold},
                         {"cmbEq(1)",
                          "Dual",
                          "btnEqConfig(1)",
                          {{{"CenterText(1)", "1400"}, {"txtAtten", "-6"}}},
                          "sldrCenter(1)",
                          {30, 0},
                          nullptr,
                          EqualizerTold},
                         {"cmbBroadband(1)",
                          "Noise E",
                          "btnBroadbandConfig(1)",
                          {{{"txtGain(3)", "-12"}, {"txtAtten", "-20"}}},
                          "sldrGain(2)",
                          {0, 60},
                          nullptr,
                          NoiseTold}};

TEST_F(RealPort, AHandOnAPanelOfEachFamilyReachesTheUnit) {
  for (const Handled& one : Families) {
    SCOPED_TRACE(one.kind);
    Open(one.list, one.kind, one.open);
    for (const auto& [box, text] : one.typed) Write(box, text, Qt::Key_Return);
    QCoreApplication::processEvents();  // a handle goes to its place behind a change
    Drag(At(one.dragged), one.way);
    if (one.pressed != nullptr) Hit(one.pressed);
    const std::string dumped = Dump(), told = one.told(program->session);
    EXPECT_NE(dumped.find(told), std::string::npos) << told;
    Hit("btnOK");
    Ready();
  }
}

}  // namespace
}  // namespace desktop
