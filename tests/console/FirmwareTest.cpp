// A firmware update with both programs on a real line: cut off by the death of either in the middle of a
// section, the next one brings the unit up again.
#include <chrono>
#include <csignal>
#include <functional>
#include <memory>
#include <thread>

#include <gtest/gtest.h>

#include "Installed.h"
#include "unit/ImageFile.h"

namespace {

using support::Program;
using unit::Section;

bool Soon(const std::function<bool()>& condition) {
  for (int i = 0; i < 5000 && !condition(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(2));
  return condition();
}

struct FirmwarePrograms : testing::Test {
  support::Installed installed{CONSOLE_PROGRAM};
  const std::string images = installed.folder.Path() + "/images", trace = installed.folder.Path() + "/trace",
                    dump = installed.folder.Path() + "/dump", line = installed.folder.Path() + "/line";
  const unit::Images files{unit::MakeImage(Section::Main, 410, 40 * 128),
                           unit::MakeImage(Section::Daughter, 410, 20 * 128)};
  std::unique_ptr<Program> simulated, console;

  FirmwarePrograms() {
    const char* const names[] = {"vlnamain.fwr", "vlnadaug.fwr"};
    for (const std::size_t i : {0U, 1U}) {
      support::Put(installed.folder.Path() + '/' + names[i], std::string(files[i].begin(), files[i].end()));
    }
  }

  void StartUnit() {
    simulated = std::make_unique<Program>(
        UNIT_PROGRAM, std::vector<std::string>{"--link", line, "--no-sound", "--images", images, "--trace",
                                               trace, "--dump", dump, "--erase-time", "50", "--delay", "3"});
    ASSERT_NE(simulated->Await("veltrana-unit: "), "");
  }
  // Without its port at first: looking for a unit that is in its boot ROM would take it a while.
  void StartConsole() {
    std::filesystem::remove(installed.port);
    std::filesystem::create_symlink("nowhere", installed.port);
    console = std::make_unique<Program>(installed.program);
    EXPECT_NE(console->Await("box\t48\tInvalid/Unavailable"), "");
    std::filesystem::remove(installed.port);
    std::filesystem::create_symlink(line, installed.port);
  }
  void BeginUpdate() const {
    for (const char* said : {"answer yes", "key Alt+U", "key Alt+U", "run 100"}) console->Say(said);
  }
  bool Traced(const std::string& what, std::size_t times = 1) const {
    return Soon([&] {
      const std::string text = support::Content(trace);
      std::size_t found = 0;
      for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++found;
      return found >= times;
    });
  }
  std::string Dumped() {
    std::filesystem::remove(dump);
    simulated->Signal(SIGUSR1);
    EXPECT_TRUE(Soon([&] { return std::filesystem::exists(dump); }));
    return support::Content(dump);
  }
};

TEST_F(FirmwarePrograms, ADeathOnEitherSideIsMadeGoodByTheNextUpdate) {
  StartUnit();
  StartConsole();
  BeginUpdate();
  ASSERT_TRUE(Traced("  packet 10\n"));
  console->Signal(SIGKILL);
  EXPECT_EQ(console->AwaitEnd(), -2);
  EXPECT_NE(Dumped().find("image 1 erased, 0 bytes\nimage 2 complete, version 4.02, 128 bytes\n"
                          "boot ROM receives section 1, "),
            std::string::npos);

  StartConsole();
  BeginUpdate();
  ASSERT_TRUE(Traced("section 2 is erased\n"));
  ASSERT_TRUE(Traced("  packet 10\n", 3));
  simulated->Signal(SIGKILL);
  EXPECT_EQ(simulated->AwaitEnd(), -2);
  EXPECT_NE(console->Await("box\t16\tFirmware Upload Error", 20000), "");

  StartUnit();
  EXPECT_NE(
      Dumped().find("image 1 complete, version 4.10, 5120 bytes\nimage 2 erased, 0 bytes\nboot ROM waits\n"),
      std::string::npos);
  BeginUpdate();
  EXPECT_NE(console->Await("box\t64\tUpload Complete", 20000), "");
  EXPECT_NE(
      Dumped().find("image 1 complete, version 4.10, 5120 bytes\nimage 2 complete, version 4.10, 2560 bytes\n"
                    "application runs\n"),
      std::string::npos);
  EXPECT_EQ(unit::LoadImages(images).images, files);
}

}  // namespace
