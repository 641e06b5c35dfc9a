// What the console says to the simulated unit, and has it do.
#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <optional>
#include <string_view>

#include "console/Console.h"
#include "sound/CleanWish.h"
#include "text/Convert.h"

namespace console {
namespace {

constexpr int WaitMilliseconds = 100;

// A value without parts in one word; the parts of a row or of names with tabs between.
std::string Word(const vc::Said& said) {
  std::string text;
  const auto append = [&text](const vc::Said& part) { text += (text.empty() ? "" : "\t") + Word(part); };
  if (const auto* truth = std::get_if<bool>(&said.Value())) return *truth ? "1" : "0";
  if (const auto* number = std::get_if<double>(&said.Value())) return vc::ShortestText(*number);
  if (const auto* names = std::get_if<vc::Said::Names>(&said.Value())) {
    for (const vc::Said::Named& each : *names) append(each.value);
    return text;
  }
  for (const vc::Said& item : said.Items()) append(item);
  return text.empty() ? OneLine(said.Text()) : text;
}

// Names with names in them are lines of their own ("source.kind"); of a row each is one, but for numbers.
void Print(std::ostream& out, const std::string& name, const vc::Said& said) {
  if (const auto* names = std::get_if<vc::Said::Names>(&said.Value())) {
    for (const vc::Said::Named& each : *names) {
      Print(out, name.empty() ? each.name : name + "." + each.name, each.value);
    }
    return;
  }
  const vc::Said::Row& items = said.Items();
  if (items.empty() || std::holds_alternative<double>(items.front().Value())) {
    out << name << '\t' << Word(said) << '\n';
    return;
  }
  for (const vc::Said& item : items) out << name << '\t' << Word(item) << '\n';
}

std::string StartUnit(vc::Session& session) {
  std::string reason = session.StartUnit();
  if (!reason.empty() || session.device.comm.CommPortOpen) return reason;
  return "it runs, but there is no connection to it";
}

std::string StopUnit(vc::Session& session) {
  session.unitConnection.Stop();
  return {};
}

// What the program does with the unit by itself; what went wrong, or nothing.
struct OwnCommand {
  std::string_view name;
  std::string (*run)(vc::Session& session);
};
constexpr std::array<OwnCommand, 2> OwnTable{{{"start", StartUnit}, {"stop", StopUnit}}};

}  // namespace

void Console::Unit(const std::string& arguments) {
  const auto* const own = std::ranges::find(OwnTable, arguments, &OwnCommand::name);
  if (own == OwnTable.end()) return AskUnit(arguments);
  const std::string wrong = own->run(session);
  if (!wrong.empty()) Error("unit " + arguments, wrong);
}

// The answer may come when nobody waits for it any more.
void Console::AskUnit(const std::string& command) {
  const auto answer = std::make_shared<std::optional<vc::Said>>();
  session.unit.Ask(command, [answer](const vc::Said& said) { *answer = said; });
  while (!*answer && !loop.Ending()) loop.RunEvents(WaitMilliseconds);
  const std::string what = "unit " + command;
  if (!*answer) return Error(what, "the program ends");
  if (!(**answer)["ok"].True()) return Error(what, (**answer)["error"].Text());
  if (const auto* names = std::get_if<vc::Said::Names>(&(*answer)->Value())) {
    for (const vc::Said::Named& each : *names) {
      if (each.name != "ok") Print(out, each.name, each.value);
    }
  }
}

void Console::Clean(const std::string& arguments) {
  std::string reason;
  const auto wish = vc::ReadCleanWish(arguments, reason);
  vc::CleanRun& run = session.cleaning;
  if (!wish || run.Busy()) {
    return Error("clean " + arguments, wish ? "a recording is being cleaned already" : reason);
  }
  run.Start(*wish);
  constexpr int whole = 100;
  while (run.Busy() && !loop.Ending()) {
    loop.RunEvents(WaitMilliseconds);
    desk.ShowProgress("Cleaning", static_cast<int>(std::floor(run.done * whole)), whole);
  }
  if (run.Busy()) run.Cancel();
  for (const std::string& line : run.report) out << "report\t" << OneLine(line) << '\n';
  if (run.phase != vc::CleanPhase::Done) {
    Error("clean " + arguments, run.error.empty() ? "cancelled; nothing has been written" : run.error);
  }
}

}  // namespace console
