// The simulated unit as a program of its own beside this one: started with a port of the nine that has no
// device behind it, told what to do by lines, and asked how it stands ten times a second.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "model/SystemSettings.h"
#include "platform/Platform.h"
#include "text/Wire.h"

namespace vc {

// What it tells of itself.
struct UnitEvents {
  // It has answered how it stands, does not answer any more, has come or was stopped.
  Wire<void()> changed;
  Wire<void()> died;  // by itself
};

struct UnitProgram {
  UnitProgram(Platform& host, const SystemSettings& record, UnitEvents events);

  // Starts it at the record's port where that is free, else at the first free one, and returns once its line
  // is there. False where it cannot be had, and reason says why in words. True where it runs already.
  bool Start(std::string& reason);
  // Ends it, which completes the file that it writes; nothing where it does not run.
  void Stop();
  bool Running() const { return running != nullptr; }
  // The program is there to be started.
  bool Installed() const;
  // Of its line, 1 to 9; of the last one where it has ended by itself; 0 where it was stopped or never ran.
  int Port() const { return port; }

  // One command in its language. The answer comes later, once, in the order of the questions. Without "ok",
  // and with an "error" in words, where the program does not run, dies before it answers or is stopped, and
  // where it has not answered anything for some seconds. Never again where this object has gone.
  void Ask(const std::string& command, std::function<void(const Said& answer)> then);
  // Its last answer to "state"; nothing where it does not run.
  Said state;
  // It runs and has not answered for some seconds.
  bool Silent() const { return silent; }
  // The last line of its complaints, where it has ended by itself.
  const std::string& LastWords() const { return lastWords; }
  // Why it does not hear or write now what it did when it ran last; empty while it does.
  const std::string& NotResumed() const { return notResumed; }

 private:
  using Then = std::function<void(const Said& answer)>;
  struct Question {
    Then then;
    std::int64_t at;  // microseconds
  };
  struct Place {
    int port;
    std::string link;
    std::unique_ptr<FileLock> claim;
  };

  std::string Path() const;
  // No port where none is free.
  Place FreePlace() const;
  Place Claimed(int number) const;
  std::vector<std::string> Arguments(const std::string& link) const;
  bool AwaitLine(std::string& reason);
  void Tick();
  void TakeAnswers();
  void NoteSilence();
  void Put(const std::string& command, Then then);
  void AskState();
  // What it hears and where that goes is said again at its next start, in the next run of this program too.
  void Keep(const std::string& command);
  void Resume();
  std::string KeptPath() const;
  void Refuse(Then then, const std::string& error);
  void Drop(const std::string& error);
  void Forget();

  Platform& platform;
  const SystemSettings& settings;
  UnitEvents events;
  std::unique_ptr<Timer> tmrUnit;
  std::unique_ptr<RunningProgram> running;
  std::unique_ptr<FileLock> claim;
  int port = 0;
  int ticks = 0;
  bool silent = false, stateAsked = false;
  std::string lastWords, keptSource, keptOutput, notResumed;
  std::deque<Question> asked;               // and not answered
  std::vector<std::function<void()>> late;  // answers that are told at the next tick
};

// A word as it stands in a command, whatever is in it.
std::string Quoted(const std::string& word);

}  // namespace vc
