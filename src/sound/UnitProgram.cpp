#include "sound/UnitProgram.h"

#include <fstream>
#include <utility>

#include "link/modComm.h"
#include "persist/SafeFile.h"
#include "text/Convert.h"
#include "text/modFile.h"

namespace vc {
namespace {

constexpr int Ports = 9;
constexpr int MostAnswers = 100;  // in one tick
constexpr int TickMilliseconds = 20, TicksAState = 5;
constexpr std::int64_t StartMicroseconds = 5'000'000, UnansweredMicroseconds = 5'000'000;

Said Refusal(const std::string& error) {
  return Said(Said::Names{{"ok", Said(false)}, {"error", Said(error)}});
}

constexpr const char *SourceIs = "source ", *OutputIs = "output ";

constexpr const char* NotRunning = "the simulated unit does not run";
constexpr const char* NotAnswering = "the simulated unit does not answer";
constexpr const char* Ended = "the simulated unit has ended";

}  // namespace

UnitProgram::UnitProgram(Platform& host, const SystemSettings& record, UnitEvents unitEvents)
    : platform(host),
      settings(record),
      events(std::move(unitEvents)),
      tmrUnit(host.events.CreateTimer(TickMilliseconds, [this] { Tick(); })) {}

std::string UnitProgram::Path() const { return JoinPath(platform.desk.ExecutableFolder(), "veltrana-unit"); }

bool UnitProgram::Installed() const { return platform.files.KindOf(Path()) == FileKind::File; }

// A claim keeps a second program from the place until this one's line has gone.
UnitProgram::Place UnitProgram::Claimed(int number) const {
  const std::string name = "COM" + std::to_string(number);
  const std::string link = platform.ports.PlaceForLine(name);
  if (link.empty()) return {};
  bool heldElsewhere = false;
  auto taken = platform.files.Lock(link + ".lock", heldElsewhere);
  // The other program's line may have come between the look and the claim.
  if (taken == nullptr || platform.ports.PlaceForLine(name).empty()) return {};
  return {number, link, std::move(taken)};
}

UnitProgram::Place UnitProgram::FreePlace() const {
  if (Place wanted = Claimed(settings.comPort); wanted.claim) return wanted;
  for (int number = 1; number <= Ports; ++number) {
    if (Place free = Claimed(number); free.claim) return free;
  }
  return {};
}

std::vector<std::string> UnitProgram::Arguments(const std::string& link) const {
  const std::string folder = platform.desk.InstallFolder();
  return {"--attached",
          "--link",
          link,
          "--baud",
          std::to_string(BaudOf(settings.baudIndex).baud),
          "--memories",
          JoinPath(folder, "veltrana-unit.memories"),
          "--images",
          JoinPath(folder, "veltrana-unit.images")};
}

bool UnitProgram::Start(std::string& reason) {
  if (Running()) return true;
  if (!Installed()) {
    reason = Path() + " is not there";
    return false;
  }
  Forget();
  Place place = FreePlace();
  if (!place.claim) {
    reason = "every port from COM1 to COM9 has a device behind it, or its link cannot be made";
    return false;
  }
  running = platform.programs.Start(Path(), Arguments(place.link), reason);
  if (running == nullptr) return false;
  port = place.port;
  claim = std::move(place.claim);
  if (!AwaitLine(reason)) {
    Forget();
    return false;
  }
  tmrUnit->SetEnabled(true);
  Resume();
  AskState();
  events.changed();
  return true;
}

// The place is free no longer once the line is there.
bool UnitProgram::AwaitLine(std::string& reason) {
  constexpr std::int64_t step = 5000;
  const std::int64_t end = platform.clock.Microseconds() + StartMicroseconds;
  const std::string name = "COM" + std::to_string(port);
  while (!platform.ports.PlaceForLine(name).empty()) {
    running->TakeAnswer();  // nobody has asked anything yet
    const bool alive = running->Running();
    if (!alive || platform.clock.Microseconds() >= end) {
      const std::string words = running->LastWords();
      reason = words.empty() ? std::string(alive ? NotAnswering : Ended) : words;
      return false;
    }
    platform.clock.Sleep(step);
  }
  return true;
}

void UnitProgram::Forget() {
  running.reset();
  claim.reset();
  port = 0;
  state = {};
  lastWords.clear();
  silent = stateAsked = false;
}

void UnitProgram::Stop() {
  if (port == 0) return;
  Drop("the simulated unit was stopped");
  Forget();
  events.changed();
}

void UnitProgram::Ask(const std::string& command, Then then) {
  const bool kept = command.starts_with(SourceIs) || command.starts_with(OutputIs);
  if (!kept) return Put(command, std::move(then));
  Put(command, [this, command, told = std::move(then)](const Said& answer) {
    if (answer["ok"].True()) Keep(command);
    Raise(told, answer);
  });
}

void UnitProgram::Put(const std::string& command, Then then) {
  if (running == nullptr) return Refuse(std::move(then), NotRunning);
  if (silent) return Refuse(std::move(then), NotAnswering);
  running->Say(command);
  asked.push_back({std::move(then), platform.clock.Microseconds()});
}

void UnitProgram::Refuse(Then then, const std::string& error) {
  late.emplace_back([told = std::move(then), error] { Raise(told, Refusal(error)); });
  tmrUnit->SetEnabled(true);
}

void UnitProgram::Drop(const std::string& error) {
  for (Question& question : std::exchange(asked, {})) Refuse(std::move(question.then), error);
}

// What is told may ask, stop and start.
void UnitProgram::Tick() {
  if (running != nullptr) TakeAnswers();
  for (const auto& tell : std::exchange(late, {})) tell();
  if (running == nullptr) {
    tmrUnit->SetEnabled(!late.empty());
    return;
  }
  NoteSilence();
  if (++ticks % TicksAState == 0) AskState();
}

void UnitProgram::TakeAnswers() {
  for (int taken = 0; taken < MostAnswers; ++taken) {
    auto answer = running->TakeAnswer();
    if (!answer) break;
    silent = false;
    if (asked.empty()) continue;  // nobody has asked for this one
    late.emplace_back(
        [told = std::move(asked.front().then), said = std::move(*answer)] { Raise(told, said); });
    asked.pop_front();
  }
  if (running->Running()) return;
  const std::string words = running->LastWords();
  const int last = port;
  Drop(words.empty() ? Ended : words);
  Forget();
  port = last;
  lastWords = words;
  late.emplace_back([this] { events.died(); });
}

void UnitProgram::NoteSilence() {
  const bool waits =
      !asked.empty() && platform.clock.Microseconds() - asked.front().at >= UnansweredMicroseconds;
  if (std::exchange(silent, waits) != waits) events.changed();
}

void UnitProgram::AskState() {
  if (stateAsked || running == nullptr) return;
  stateAsked = true;
  Put("state", [this](const Said& answer) {
    stateAsked = false;
    if (!answer["ok"].True()) return;
    state = answer;
    events.changed();
  });
}

std::string UnitProgram::KeptPath() const { return JoinPath(platform.desk.InstallFolder(), "veltrana.unit"); }

void UnitProgram::Keep(const std::string& command) {
  notResumed.clear();
  std::string& kept = command.starts_with(SourceIs) ? keptSource : keptOutput;
  // A file that was written would be begun anew.
  const std::string resumed = command.starts_with("output file ") ? "output none" : command;
  if (std::exchange(kept, resumed) == resumed) return;
  WriteWholeFile(platform.files, KeptPath(), keptSource + "\n" + keptOutput + "\n");
}

void UnitProgram::Resume() {
  notResumed.clear();
  if (keptSource.empty() && keptOutput.empty()) {
    std::ifstream file(KeptPath());
    for (std::string line; std::getline(file, line);) {
      if (line.starts_with(SourceIs)) keptSource = line;
      if (line.starts_with(OutputIs)) keptOutput = line;
    }
  }
  for (const std::string& command : {keptSource, keptOutput}) {
    if (command.empty()) continue;
    Put(command, [this](const Said& answer) {
      if (!answer["ok"].True()) notResumed = answer["error"].Text();
    });
  }
}

std::string Quoted(const std::string& word) {
  std::string quoted = "\"";
  for (const char character : word) {
    if (character == '\n') {
      quoted += "\\n";
      continue;
    }
    if (character == '"' || character == '\\') quoted += '\\';
    quoted += character;
  }
  return quoted + '"';
}

}  // namespace vc
