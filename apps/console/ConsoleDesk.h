// The operator's desk in text: every message box is a line of output, answered from a queue.
#pragma once

#include <deque>
#include <ostream>
#include <string>

#include "host/Folders.h"
#include "platform/Clock.h"
#include "platform/Desk.h"

namespace console {

// Line ends, tabs and backslashes as "\n", "\t" and "\\", so that a text stays within its field of its line.
std::string OneLine(const std::string& text);
// The same way back; a backslash that begins none of these stands for itself.
std::string FromOneLine(const std::string& line);

class ConsoleDesk : public vc::Desk {
 public:
  ConsoleDesk(std::ostream& stream, vc::Clock& source, host::Folders programFolders)
      : out(stream), clock(source), folders(std::move(programFolders)) {}

  vc::Answer Box(int code, const std::string& title, const std::string& text) override;
  // A line "beep".
  void Beep() override;
  void SetHourglass(bool /*shown*/) override {}
  // A line "progress", what, done, total once a second.
  void ShowProgress(std::string_view what, int done, int total) override;
  // A line "waiting", seconds, from the first whole second on.
  void ShowWaiting(int tenths) override;
  // A line "print", title, pages, file.
  void TellPages(const std::string& title, int pages, const std::string& file);
  // A line "open", target.
  bool Open(const std::string& target) override;
  void SetTheme(vc::Theme /*theme*/) override {}
  std::string InstallFolder() const override { return folders.writable; }
  std::string DocumentFolder() const override { return folders.Documents(); }
  std::string ProgramFolder() const override { return folders.Files(); }
  std::string ExecutableFolder() const override { return folders.executable; }
  bool ProgramFolderReadOnly() const override { return folders.readOnly; }

  // Answers for the next boxes, first come first served: ok, cancel, yes, no, or a path for a file box.
  void QueueAnswer(const std::string& answer) { answers.push_back(answer); }

 private:
  std::ostream& out;
  vc::Clock& clock;
  std::int64_t lastProgress = 0;  // when the present work began or was told of last, in microseconds
  int waitTold = 0;               // seconds
  host::Folders folders;
  std::deque<std::string> answers;
};

}  // namespace console
