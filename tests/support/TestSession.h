// A whole session on a virtual clock and a virtual line, with a desk that answers from a queue.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "FaultyFiles.h"
#include "NoPrograms.h"
#include "RecordingPrinters.h"
#include "TempFolder.h"
#include "VirtualClock.h"
#include "VirtualLine.h"
#include "host/CairoPictures.h"
#include "host/TimerLoop.h"
#include "shell/Session.h"

namespace support {

struct ShownBox {
  int code;
  std::string title, text;
  vc::Answer answer;
};

class TestDesk : public vc::Desk {
 public:
  explicit TestDesk(const std::string& folder) : documentFolder(folder), installFolder(folder) {}
  vc::Answer Box(int code, const std::string& title, const std::string& text) override {
    vc::Answer answer = vc::SafeAnswer(vc::box::ButtonsOf(code));
    if (!answers.empty()) {
      answer = answers.front();
      answers.pop_front();
    }
    boxes.push_back({code, title, text, answer});
    return answer;
  }
  void SetHourglass(bool shown) override { hourglass = shown; }
  void ShowProgress(std::string_view /*what*/, int done, int total) override {
    progress.emplace_back(done, total);
  }
  void ShowWaiting(int tenths) override { waited.push_back(tenths); }
  void Beep() override { ++beeps; }
  bool Open(const std::string& target) override {
    opened.push_back(target);
    return canOpen;
  }
  void SetTheme(vc::Theme chosen) override { theme = chosen; }
  std::string InstallFolder() const override { return installFolder; }
  std::string DocumentFolder() const override { return documentFolder; }
  std::string ProgramFolder() const override { return programFolder; }
  std::string ExecutableFolder() const override { return programFolder; }
  bool ProgramFolderReadOnly() const override { return programFolderReadOnly; }

  std::vector<ShownBox> boxes;
  std::deque<vc::Answer> answers;
  bool hourglass = false;
  int beeps = 0;
  std::vector<std::string> opened;
  bool canOpen = true;
  vc::Theme theme = vc::Theme::System;
  std::string documentFolder;
  std::string programFolder = PROGRAM_FOLDER;
  bool programFolderReadOnly = false;
  std::vector<std::pair<int, int>> progress;
  std::vector<int> waited;  // tenths, call by call

 private:
  std::string installFolder;
};

// With a clipboard that keeps what was copied last, as a PNG file.
class TestPictures : public host::CairoPictures {
 public:
  bool Copy(const vc::Size& size, const vc::Drawing& drawing) override {
    if (!clipboard) return false;
    copied = Draw(vc::PictureFormat::Png, size, drawing);
    return !copied.empty();
  }

  bool clipboard = true;
  std::string copied;
};

struct TestSession {
  // In a folder of its own, or in one that other sessions use before, after or beside it.
  // With files of its own where others are not given.
  explicit TestSession(FarEnd end, const std::string& sharedFolder = {}, vc::Files* otherFiles = nullptr)
      : desk(sharedFolder.empty() ? folder.Path() : sharedFolder),
        ports(clock, std::move(end)),
        session({clock, loop, desk, ports, otherFiles == nullptr ? files : *otherFiles, printers, pictures,
                 programs}) {}

  TempFolder folder;
  VirtualClock clock;
  host::TimerLoop loop{clock};
  TestDesk desk;
  VirtualPorts ports;
  FaultyFiles files;
  RecordingPrinters printers;
  TestPictures pictures;
  support::NoPrograms programs;
  vc::Session session;
};

}  // namespace support
