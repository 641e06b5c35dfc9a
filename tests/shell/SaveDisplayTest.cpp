// What a display shows is saved and copied: by the spectrum analyzer's window, on real files.
#include <filesystem>
#include <sstream>

#include <gmock/gmock.h>

#include "PanelRun.h"

namespace vc {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

struct SavedDisplays : testing::Test, support::PanelRun {
  const std::string folder = test.folder.Path() + "/evidence";

  SavedDisplays() {
    fs::create_directory(folder);
    Edit("workingFolder", folder);
    Edit("specDisplayMode", "2");
    session.displays.Show(display::Spectrum);
    Settle();
    for (std::size_t line = 0; line < SpectrumLines; ++line) {
      session.spectrumReader.RawTrace1[line] = static_cast<std::uint8_t>(line % 200);
      session.spectrumReader.RawTrace2[line] = static_cast<std::uint8_t>(192 - line % 150);
    }
    session.periodic.EnableMainTimer(false);  // so they stay
    ++session.spectrumReader.Replies1;
    ++session.spectrumReader.Replies2;
    test.loop.RunFor(100);
  }
  std::string Save(const std::string& type, const std::string& name = "") {
    EXPECT_EQ(Click("btnSave"), "");
    EXPECT_EQ(Top().name, "SaveDisplay");
    EXPECT_EQ(Set("cmbType", type), "");
    EXPECT_TRUE(name.empty() || Type("txtFileName", name).empty());
    const std::string proposed = Get("txtFileName");
    EXPECT_EQ(Click("btnOK"), "");
    return proposed;
  }
  std::string Read(const std::string& name) const { return support::Content(folder + "/" + name); }
  // The names in the folder, in their order.
  std::string Names() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename());
    std::ranges::sort(names);
    std::string all;
    for (const std::string& name : names) all += name + ";";
    return all;
  }
};

TEST_F(SavedDisplays, NumbersAreThoseOfTheTraces) {
  EXPECT_EQ(Save("CSV numbers"), "Spectrum 1.csv");
  std::istringstream lines(Read("Spectrum 1.csv"));
  std::string line;
  std::getline(lines, line);
  EXPECT_EQ(line, "Hz,Trace 1 dB,Trace 2 dB");
  for (std::size_t i = 0; i < 460; ++i) {
    ASSERT_TRUE(std::getline(lines, line)) << i;
    double hertz = 0, first = 0, second = 0;
    ASSERT_EQ(std::sscanf(line.c_str(), "%lf,%lf,%lf", &hertz, &first, &second), 3) << line;
    EXPECT_NEAR(hertz, record.sampleRate / 1024.0 * static_cast<double>(i + 1), 1e-3);
    const auto level = [i](const RawTrace& raw) {
      return std::clamp((raw[i] - 192) * 70 / 185.0, -70.0, 0.0);
    };
    EXPECT_NEAR(first, level(session.spectrumReader.RawTrace1), 1e-4);
    EXPECT_NEAR(second, level(session.spectrumReader.RawTrace2), 1e-4);
  }
  EXPECT_FALSE(std::getline(lines, line));
}

TEST_F(SavedDisplays, NamesAreProposedAndNothingIsOverwrittenUnasked) {
  EXPECT_EQ(Save("PNG picture"), "Spectrum 1.png");
  EXPECT_EQ(Top().name, "SpecDisp");
  EXPECT_EQ(Save("SVG drawing"), "Spectrum 2.svg");
  EXPECT_EQ(Save("CSV numbers"), "Spectrum 3.csv");
  EXPECT_EQ(Save("CSV numbers", "mine"), "mine");
  EXPECT_EQ(Names(), "Spectrum 1.png;Spectrum 2.svg;Spectrum 3.csv;mine.csv;");
  EXPECT_TRUE(test.desk.boxes.empty());
  const std::string before = Read("mine.csv");
  session.spectrumReader.RawTrace1.fill(100);
  ++session.spectrumReader.Replies1;
  test.loop.RunFor(100);
  Save("CSV numbers", "mine.csv");
  EXPECT_EQ(Read("mine.csv"), before);
  ASSERT_EQ(test.desk.boxes.size(), 1U);
  EXPECT_EQ(test.desk.boxes.back().text, "mine.csv already exists. Do you wish to overwrite?");
  test.desk.answers = {Answer::Yes};
  EXPECT_EQ(Click("btnOK"), "");
  EXPECT_NE(Read("mine.csv"), before);
  EXPECT_EQ(Top().name, "SpecDisp");
}

TEST_F(SavedDisplays, ADiskThatFailsLeavesNothingAndIsToldOf) {
  fs::create_directory(folder + "/inner.csv");
  for (const auto& [name, failing, words] : {std::tuple{"one", 2, "The disk is full, or has failed."},
                                             {"one", 3, "The disk is full, or has failed."},
                                             {"one", 4, "cannot be replaced"},
                                             {"nowhere/one", 0, "There is no such folder"},
                                             {"inner.csv", 0, "is not saved"}}) {
    EXPECT_EQ(Click("btnSave"), "");
    EXPECT_EQ(Set("cmbType", "CSV numbers"), "");
    EXPECT_EQ(Type("txtFileName", name), "");
    test.files.operations = 0;
    test.files.failAt = failing;
    EXPECT_EQ(Click("btnOK"), "");
    test.files.failAt = 0;
    ASSERT_FALSE(test.desk.boxes.empty());
    EXPECT_EQ(test.desk.boxes.back().title, "Unable to Save File");
    EXPECT_THAT(test.desk.boxes.back().text, HasSubstr(words)) << name << failing;
    EXPECT_EQ(Names(), "inner.csv;") << failing;
    EXPECT_EQ(Top().name, "SaveDisplay");
    EXPECT_EQ(Click("btnCancel"), "");
  }
  EXPECT_EQ(Click("btnCopy"), "");
  EXPECT_THAT(test.pictures.copied, HasSubstr("PNG"));
  test.pictures.clipboard = false;
  EXPECT_EQ(Click("btnCopy"), "");
  EXPECT_THAT(test.desk.boxes.back().text, HasSubstr("There is no clipboard here."));
}

// The display goes on below, and what is saved is what it showed.
TEST_F(SavedDisplays, WhatIsSavedIsWhatWasShownWhenItWasAskedFor) {
  EXPECT_EQ(Click("btnSave"), "");
  session.spectrumReader.RawTrace1.fill(100);
  ++session.spectrumReader.Replies1;
  test.loop.RunFor(200);
  EXPECT_EQ(Set("cmbType", "CSV numbers"), "");
  EXPECT_EQ(Click("btnOK"), "");
  const std::string saved = Read("Spectrum 1.csv");
  Save("CSV numbers", "later");
  EXPECT_NE(saved, Read("later.csv"));
  EXPECT_THAT(saved, HasSubstr(",-70,"));
  EXPECT_EQ(Click("btnSave"), "");
  session.displays.Show(display::None);  // with the window that it asked in
  EXPECT_EQ(Top().name, "MasterControl");
}

}  // namespace
}  // namespace vc
