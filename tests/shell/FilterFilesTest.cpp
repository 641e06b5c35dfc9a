// Storing and recalling one filter, as the operator does it: by control name, on real files, with a unit.
#include <gmock/gmock.h>

#include "PanelRun.h"
#include "model/Kinds.h"
#include "persist/MemSelect.h"

namespace vc {
namespace {

using Direction = MemSelect::Direction;
using support::Content;
using support::Put;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Type = IndivFileType;

constexpr const char* NotSent =
    "Error transmitting the coefficients to the Veltrana.  Please retry recalling the coefficients";

struct FilterFiles : testing::Test, support::PanelRun {
  support::TempFolder folder;
  int told = 0;

  FilterFiles() { record.workingFolder = folder.Path(); }

  std::string Path(const std::string& name) const { return folder.Path() + "/" + name; }
  std::string Previous(const std::string& extension) const {
    return Path("Previous Filter Settings" + extension);
  }
  void Open(Direction direction, std::int16_t type) {
    session.windows.Get<MemSelect>("MemSelect").Prepare(direction, type, [this] { ++told; });
    session.windows.Open("MemSelect");
  }
  void Exchange(Direction direction, std::int16_t type, const std::string& name) {
    Open(direction, type);
    EXPECT_EQ(PanelRun::Type("txtFileName", name), "");
    EXPECT_EQ(Click("btnOK"), "");
  }
  void Store(std::int16_t type, const std::string& name) { Exchange(Direction::Store, type, name); }
  void Recall(std::int16_t type, const std::string& name) { Exchange(Direction::Recall, type, name); }
  bool IsOpen() const { return Top().name == "MemSelect"; }
  // What the boxes since the last call have said.
  std::vector<std::string> Boxes() {
    std::vector<std::string> said;
    for (const support::ShownBox& box : test.desk.boxes) said.push_back(box.title + ": " + box.text);
    test.desk.boxes.clear();
    return said;
  }
  std::string LastBox() {
    const std::vector<std::string> said = Boxes();
    return said.empty() ? "" : said.back();
  }
  std::size_t Steps() {
    std::size_t steps = 0;
    while (session.history.CanUndo()) session.history.Undo(), ++steps;
    for (std::size_t step = 0; step < steps; ++step) session.history.Redo();
    return steps;
  }
  std::size_t FilesInFolder() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder.Path()), {}));
  }
  // An adaptive filter in stage 2 of so many taps, that has learned: -n at tap n.
  void Learn(int taps) {
    Edit("numFilters", "2");
    Edit("filterType", "1", 2);
    Edit("ch1Taps", std::to_string(taps), 2);
    Settle();
    std::vector<std::int32_t> learned(static_cast<std::size_t>(taps));
    for (std::size_t n = 0; n < learned.size(); ++n) learned[n] = -static_cast<std::int32_t>(n) * 1000;
    unit.Now().Learn(1, learned);
    record.curFilter = 2;
  }
  const std::vector<std::int32_t>& Held() const { return Stage(2).coefficients; }
};

TEST_F(FilterFiles, AreLookedForAmongTheDocumentsUntilAFolderIsChosenAndTheCopyIsKeptWithTheProgram) {
  test.desk.documentFolder = folder.Path();
  const std::string own = test.desk.InstallFolder() + "/Previous Filter Settings.tbg";
  record.workingFolder.clear();
  Open(Direction::Store, Type::BandGraphic);
  EXPECT_EQ(Get("txtFolder"), folder.Path());
  Press("Escape");
  Store(Type::BandGraphic, "hum");
  Recall(Type::BandGraphic, "hum");
  EXPECT_TRUE(std::filesystem::exists(own) && !std::filesystem::exists(Previous(".tbg")));
  Open(Direction::Recall, Type::BandGraphic);
  EXPECT_EQ(Click("btnPrevious"), "");
}

TEST_F(FilterFiles, ARecallIsOneStepAndExchangesWithThePreviousTable) {
  record.curFilter = 3;
  for (int band = 0; band < 20; ++band) Edit("bandGain", std::to_string(band), 3, band);
  const auto stored = record.bandGain[3];
  Open(Direction::Store, Type::BandGraphic);
  EXPECT_EQ(Top().Caption(), "Store 20-Band Graphic Filter");
  EXPECT_EQ(Click("btnPrevious"), "it is hidden");
  Press("Escape");
  Store(Type::BandGraphic, "hum");
  for (int band = 0; band < 20; ++band) Edit("bandGain", "7", 3, band);
  const auto mine = record.bandGain[3];
  Open(Direction::Recall, Type::BandGraphic);
  EXPECT_EQ(Top().Caption(), "Recall 20-Band Graphic Filter");
  EXPECT_EQ(Get("txtFileName"), "hum.tbg");
  EXPECT_EQ(RangeOf(Find("fileVw")), "hum.tbg");
  EXPECT_EQ(Click("btnPrevious"), "it is disabled");
  Press("Escape");
  EXPECT_TRUE(record.bandGain[3] == mine);
  const std::size_t steps = Steps();
  Recall(Type::BandGraphic, "hum");
  EXPECT_TRUE(record.bandGain[3] == stored);
  EXPECT_EQ(told, 1);
  EXPECT_FALSE(IsOpen());
  EXPECT_EQ(session.history.UndoTitle(), "Recall 20-Band Graphic Filter");
  EXPECT_EQ(Steps(), steps + 1);
  session.history.Undo();
  EXPECT_TRUE(record.bandGain[3] == mine);
  session.history.Redo();
  for (const auto& [now, before] : {std::pair{mine, stored}, {stored, mine}}) {
    Open(Direction::Recall, Type::BandGraphic);
    EXPECT_EQ(Click("btnPrevious"), "");
    EXPECT_TRUE(record.bandGain[3] == now);
    EXPECT_TRUE(Content(Previous(".tbg"))
                    .starts_with(std::to_string(before[0]) + "\r\n" + std::to_string(before[1]) + "\r\n"));
  }
  EXPECT_THAT(Boxes(), IsEmpty());
}

TEST_F(FilterFiles, AFileThatIsThereIsAskedForFirst) {
  Put(Path("hum.neq"), "mine");
  Store(Type::NoiseEq, "hum");
  EXPECT_THAT(Boxes(), ElementsAre("File Already Exists: hum.neq already exists. Do you wish to overwrite?"));
  EXPECT_TRUE(IsOpen());
  EXPECT_EQ(Content(Path("hum.neq")), "mine");
  test.desk.answers = {Answer::Yes};
  EXPECT_EQ(Click("btnOK"), "");
  EXPECT_NE(Content(Path("hum.neq")), "mine");
}

TEST_F(FilterFiles, ATableGoesOutAtOnceAndEndsWhereItsFileDoes) {
  Edit("filterType", "12", 1);
  for (const int point : {0, 459, 460, 512}) Edit("hiResCurve", "-20", 1, point);
  Store(Type::HiResGraphic, "curve");
  session.master.ConfigMasterControl();
  Edit("hiResCurve", "-3", 1, 0);
  Settle();
  Sent();
  Recall(Type::HiResGraphic, "curve");
  EXPECT_THAT(Sent(), HasSubstr("#63 192/0 "));
  EXPECT_EQ(record.hiResCurve[1][0] + record.hiResCurve[1][459], -40);
  EXPECT_EQ(record.hiResCurve[1][460] + record.hiResCurve[1][512], 0);
  EXPECT_EQ(session.history.UndoTitle(), "Recall Hi-Res Graphic Equalizer");
  EXPECT_TRUE(session.download.HoldsTable(1));
}

TEST_F(FilterFiles, OneTbgServesEqualizersAndFiltersAndBothSidesOfALinkedPair) {
  Edit("configMode", "1");
  for (int band = 0; band < 20; ++band) Edit("eqBandGain", std::to_string(2 * band), 9, band);
  Store(Type::BandEqualizer, "both");
  Recall(Type::BandGraphic, "both");
  EXPECT_EQ(record.bandGain[1][19], 38);
  record.eqBandGain[9].Fill(1);
  Recall(Type::BandEqualizer, "both");
  EXPECT_EQ(record.eqBandGain[9][19] + record.eqBandGain[10][19], 76);
  session.history.Undo();
  EXPECT_EQ(record.eqBandGain[9][19] + record.eqBandGain[10][19], 1);
  Edit("configMode", "2");
  record.curEq = 2;
  Recall(Type::BandEqualizer, "both");
  EXPECT_EQ(record.eqBandGain[9][19], 1);
  EXPECT_EQ(record.eqBandGain[10][19], 38);
}

TEST_F(FilterFiles, ABadFileChangesNothing) {
  const SystemSettings before = record;
  const std::size_t steps = Steps();
  for (std::int16_t type = 0; type <= Type::OneChAdaptive; ++type) {
    SCOPED_TRACE(type);
    const std::string extension(GetIndivSettingsFileExt(type)), name = "x" + extension;
    const std::string error =
        std::string(IndivFileRows()[static_cast<std::size_t>(type)].title) + " Recall Error: ";
    WriteIndivFile(test.files, Path(name), type, 1, record, {1, 2, 3});
    const std::string good = Content(Path(name));
    for (const std::string& bad : {std::string(), good.substr(0, good.size() - 3), "x" + good}) {
      Put(Path(name), bad);
      Recall(type, name);
      EXPECT_EQ(LastBox(), error + name + ".  Invalid individual filter settings file.");
    }
    std::filesystem::remove(Path(name));
    Recall(type, name);
    const std::string missing = "Error recalling " + name + " file.";
    EXPECT_EQ(LastBox(), error + missing);
    Press("Escape");
  }
  EXPECT_TRUE(record == before);
  EXPECT_EQ(Steps(), steps);
  EXPECT_EQ(FilesInFolder() + static_cast<std::size_t>(told), 0U);
}

TEST_F(FilterFiles, WhateverFailsTheOldFileAndTheRecordStand) {
  Store(Type::BandGraphic, "hum");
  const std::string old = Content(Path("hum.tbg"));
  Edit("bandGain", "9", 1, 4);
  for (int n = 1; n <= 4; ++n) {
    Open(Direction::Store, Type::BandGraphic);
    EXPECT_EQ(PanelRun::Type("txtFileName", "hum"), "");
    test.desk.answers = {Answer::Yes};
    test.files.operations = 0;
    test.files.failAt = n;
    EXPECT_EQ(Click("btnOK"), "");
    EXPECT_EQ(LastBox(), "20-Band Graphic Filter Store Error: Error storing hum.tbg file.") << n;
    test.files.failAt = 0;
    EXPECT_EQ(Content(Path("hum.tbg")), old);
  }
  Recall(Type::BandGraphic, "hum");  // and there is a previous one
  const std::string previous = Content(Previous(".tbg"));
  Edit("bandGain", "11", 1, 4);
  const SystemSettings before = record;
  for (int n = 1; n <= 5; ++n) {
    Open(Direction::Recall, Type::BandGraphic);
    test.files.operations = 0;
    test.files.failAt = n;
    test.files.failFor = 100;  // a full disk has no other place either
    EXPECT_EQ(Click("btnOK"), "");
    const char* text =
        n == 1 ? "Error recalling hum.tbg file." : "Error storing Previous Filter Settings.tbg file.";
    EXPECT_EQ(LastBox(), std::string("20-Band Graphic Filter Recall Error: ") + text) << n;
    test.files.failAt = 0;
    EXPECT_EQ(Content(Previous(".tbg")), previous);
    EXPECT_TRUE(record == before);
    EXPECT_TRUE(IsOpen());
  }
  for (const char* name : {"no/where", "sub/"}) {
    std::filesystem::create_directory(Path("sub"));
    Store(Type::BandGraphic, name);
    EXPECT_THAT(LastBox(), HasSubstr("Store Error: Error storing ")) << name;
  }
  EXPECT_EQ(FilesInFolder(), 3U);
}

TEST_F(FilterFiles, AFolderThatCannotBeWrittenHasItsPreviousTableBesideTheProgram) {
  Store(Type::BandGraphic, "hum");
  Edit("bandGain", "9", 1, 4);
  Open(Direction::Recall, Type::BandGraphic);
  test.files.operations = 0;
  test.files.failAt = 2;
  EXPECT_EQ(Click("btnOK"), "");
  test.files.failAt = 0;
  EXPECT_EQ(record.bandGain[1][4], 0);
  EXPECT_FALSE(std::filesystem::exists(Previous(".tbg")));
  Open(Direction::Recall, Type::BandGraphic);
  EXPECT_EQ(Click("btnPrevious"), "");
  EXPECT_EQ(record.bandGain[1][4], 9);
  EXPECT_THAT(Boxes(), IsEmpty());
}

TEST_F(FilterFiles, WhatAFilterHasLearnedGoesToAFileAndIntoAStageOfTheRightSize) {
  Learn(2500);
  const auto learned = Held();
  Edit("ch1Mu", "55", 2);
  Store(Type::OneChAdaptive, "room");
  EXPECT_TRUE(Content(Path("room.cof")).starts_with("2500\r\n55\r\n"));
  EXPECT_EQ(test.desk.progress.back(), std::pair(10, 10));
  Edit("ch1Taps", "100", 2);
  Settle();
  EXPECT_THAT(Held(), IsEmpty());
  const std::size_t steps = Steps();
  Recall(Type::OneChAdaptive, "room");
  EXPECT_EQ(record.ch1Taps[2], 2500);
  ASSERT_EQ(Held().size(), 2512U);  // whole packets
  EXPECT_TRUE(std::equal(learned.begin(), learned.end(), Held().begin()));
  EXPECT_EQ(Steps(), steps + 1);
  EXPECT_FALSE(test.desk.hourglass);
  EXPECT_TRUE(session.periodic.tmrBargraph->Enabled());
  Edit("numFilters", "4");
  record.curFilter = 1;  // another stage, with room for less
  Edit("filterType", "1", 1);
  Recall(Type::OneChAdaptive, "room");
  EXPECT_EQ(record.ch1Taps[1], 1024);
  EXPECT_TRUE(std::equal(learned.begin(), learned.begin() + 1024, Stage(1).coefficients.begin(),
                         Stage(1).coefficients.end()));
  EXPECT_THAT(Boxes(), IsEmpty());
}

TEST_F(FilterFiles, WithoutAUnitTheSettingsOfAnAdaptiveFilterAreTakenAlone) {
  Learn(64);
  Store(Type::OneChAdaptive, "room");
  Edit("ch1Mu", "99", 2);
  session.device.DisconnectZorq(true);
  Store(Type::OneChAdaptive, "other");
  EXPECT_THAT(Boxes(), ElementsAre("1-Channel Adaptive Filter Store Error: Error storing other.cof file."));
  Store(Type::OneChAdaptive, "room");  // and nobody is asked
  EXPECT_THAT(Boxes(), ElementsAre("1-Channel Adaptive Filter Store Error: Error storing room.cof file."));
  Recall(Type::OneChAdaptive, "room");
  EXPECT_THAT(Boxes(), ElementsAre(std::string("1-Channel Adaptive Filter Recall Error: ") + NotSent));
  EXPECT_EQ(record.ch1Mu[2], 4);
  EXPECT_EQ(told, 1);
  EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(FilterFiles, WhatCannotBeReadBackIsNotLostToARecall) {
  Learn(64);
  Store(Type::OneChAdaptive, "room");
  Edit("ch1Mu", "99", 2);
  const auto read = session.setups.hooks.readCoefficients;
  session.setups.hooks.readCoefficients = [](int, CoefSpan) { return false; };
  Recall(Type::OneChAdaptive, "room");
  EXPECT_THAT(Boxes(), ElementsAre("1-Channel Adaptive Filter Recall Error: Error storing Previous Filter "
                                   "Settings.cof file."));
  EXPECT_EQ(record.ch1Mu[2], 99);
  session.setups.hooks.readCoefficients = read;
  unit.FallSilent();  // and the link with it, while it is asked: there is no unit any more
  EXPECT_EQ(Click("btnOK"), "");
  EXPECT_FALSE(session.device.comm.CommPortOpen);
  EXPECT_EQ(LastBox(), std::string("1-Channel Adaptive Filter Recall Error: ") + NotSent);
  EXPECT_EQ(record.ch1Mu[2], 4);
  EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(FilterFiles, MoreThanPacketsCanCarryIsNotSent) {
  Learn(4100);
  Store(Type::OneChAdaptive, "hall");
  Recall(Type::OneChAdaptive, "hall");
  EXPECT_THAT(Boxes(), ElementsAre(std::string("1-Channel Adaptive Filter Recall Error: ") + NotSent));
  EXPECT_THAT(Held(), IsEmpty());  // the recall has begun it anew
  Edit("ch1Taps", "4096", 2);
  Settle();
  Store(Type::OneChAdaptive, "least");
  Recall(Type::OneChAdaptive, "least");
  EXPECT_EQ(Held().size(), 4096U);
  EXPECT_THAT(Boxes(), IsEmpty());
}

TEST_F(FilterFiles, ALinkThatFailsWhileCoefficientsGoOutSaysSoItself) {
  Learn(1000);
  Store(Type::OneChAdaptive, "room");
  // Behind the settings, in the midst of the packets.
  unit.FailAt(40, support::WatchedUnit::Failure::Silence, test.ports.state);
  Recall(Type::OneChAdaptive, "room");
  const auto boxes = Boxes();
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_THAT(boxes[0], HasSubstr(" while downloading coefficient packet #"));
  EXPECT_FALSE(session.device.comm.CommPortOpen || IsOpen());
  EXPECT_EQ(told, 1);
}

TEST_F(FilterFiles, TheWindowLiesOverThePanelThatAsksAndGoesWithIt) {
  OpenFilter(1, FilterKind::Lowpass);
  Form& panel = Top();
  session.windows.OpenOver("MemSelect", panel);
  ASSERT_TRUE(IsOpen());
  EXPECT_FALSE(session.forms.Operable(panel));
  session.forms.Unload(panel);
  EXPECT_EQ(&Top(), &session.master.form);
}

}  // namespace
}  // namespace vc
