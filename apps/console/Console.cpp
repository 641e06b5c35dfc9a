#include "console/Console.h"

#include <algorithm>
#include <array>
#include <optional>
#include <sstream>

#include "console/ControlPath.h"
#include "model/FieldText.h"
#include "model/Settings.h"
#include "sound/CleanWish.h"
#include "text/Convert.h"
#include "widgets/ControlText.h"
#include "widgets/Controls.h"

namespace console {
namespace {

// The first word, and what stands behind the one blank after it.
std::pair<std::string, std::string> SplitWord(const std::string& line) {
  const auto blank = line.find(' ');
  if (blank == std::string::npos) return {line, {}};
  return {line.substr(0, blank), line.substr(blank + 1)};
}

// "lpfCutoff", "lpfCutoff(2)" or "mnotchFreq(2,3)": a name and up to two indices.
struct FieldPath {
  std::string name;
  std::array<int, 2> index{};
  int dimensions = 0;
};

std::optional<FieldPath> ParseFieldPath(const std::string& text) {
  const auto open = text.find('(');
  FieldPath path{text.substr(0, open)};
  if (open == std::string::npos) return path;
  if (text.back() != ')') return std::nullopt;
  std::istringstream indices(text.substr(open + 1, text.size() - open - 2));
  for (std::string part; std::getline(indices, part, ',');) {
    const auto number = vc::ParseInteger(part);
    if (!number || *number < -9999 || *number > 9999 || path.dimensions == 2) return std::nullopt;
    path.index[static_cast<std::size_t>(path.dimensions++)] = static_cast<int>(*number);
  }
  return path.dimensions > 0 ? std::optional(path) : std::nullopt;
}

bool HasElement(const vc::FieldRow& row, const FieldPath& path) {
  if (path.dimensions != row.dimensions) return false;
  for (std::size_t i = 0; i < static_cast<std::size_t>(row.dimensions); ++i) {
    if (!row.extent[i].Holds(path.index[i])) return false;
  }
  return true;
}

std::string IndexText(const vc::FieldRow& row) {
  std::string text;
  for (std::size_t i = 0; i < static_cast<std::size_t>(row.dimensions); ++i) {
    text += (i == 0 ? "(" : ",") + std::to_string(row.extent[i].first) + ".." +
            std::to_string(row.extent[i].last);
  }
  return text.empty() ? "no index" : text + ")";
}

}  // namespace

std::span<const Console::Command> Console::Commands() {
  static constexpr std::array<Command, 21> table{{{"forms", "forms", &Console::ListForms},
                                                  {"show", "show [FORM]", &Console::ShowForm},
                                                  {"get", "get CONTROL", &Console::GetControl},
                                                  {"set", "set CONTROL VALUE", &Console::SetControl},
                                                  {"type", "type CONTROL TEXT", &Console::TypeText},
                                                  {"enter", "enter CONTROL TEXT", &Console::EnterText},
                                                  {"click", "click CONTROL", &Console::Click},
                                                  {"press", "press CONTROL KEY", &Console::Press},
                                                  {"point", "point PLOT X Y", &Console::Point},
                                                  {"default", "default SLIDER", &Console::Default},
                                                  {"menu", "menu ENTRY", &Console::Menu},
                                                  {"key", "key COMBINATION", &Console::Key},
                                                  {"answer", "answer ANSWER...", &Console::QueueAnswers},
                                                  {"run", "run MILLISECONDS", &Console::Run},
                                                  {"close", "close [FORM]", &Console::Close},
                                                  {"record", "record FIELD(I,J) [VALUE]", &Console::Record},
                                                  {"unit", "unit start|stop|COMMAND", &Console::Unit},
                                                  {"clean", vc::CleanUsage, &Console::Clean},
                                                  {"drop", "drop FILE", &Console::Drop},
                                                  {"quit", "quit", &Console::Quit},
                                                  {"help", "help", &Console::Help}}};
  return table;
}

void Console::Execute(const std::string& line) {
  std::string text = line;
  if (!text.empty() && text.back() == '\r') text.pop_back();
  text.erase(0, text.find_first_not_of(" \t"));
  if (text.empty()) return;
  const auto [name, arguments] = SplitWord(text);
  const auto commands = Commands();
  const auto found = std::ranges::find(commands, name, [](const Command& command) { return command.name; });
  if (found == commands.end()) {
    Error(name, "no such command; try help");
  } else {
    try {
      (this->*found->run)(arguments);
    } catch (const vc::Fault& fault) {
      Error(text, fault.description);
    }
  }
  out.flush();
}

void Console::Error(const std::string& what, const std::string& why) {
  failed = true;
  out << "error " << OneLine(what) << ": " << OneLine(why) << '\n';
}

void Console::ListForms(const std::string& /*arguments*/) {
  for (const vc::Forms::Entry& entry : session.forms.open) {
    out << entry.form->name << '\t' << OneLine(entry.form->Caption()) << '\t'
        << (entry.modality == vc::Modality::Modeless ? "modeless" : "modal") << '\t'
        << (session.forms.Hidden(entry) ? "hidden" : "shown") << '\n';
  }
}

// With what a screen reader says last, so that one band of twenty is told from the next.
void Console::ShowControl(const vc::AnyControl& control) {
  const vc::ControlCore& core = vc::CoreOf(control);
  out << core.FullName() << '\t' << vc::KindOf(control) << '\t' << OneLine(vc::ValueOf(control)) << '\t'
      << OneLine(vc::RangeOf(control)) << '\t' << (core.Active() ? "enabled" : "disabled") << '\t'
      << (core.Shown() ? "shown" : "hidden") << '\t' << OneLine(core.AccessibleName()) << '\n';
}

void Console::ShowForm(const std::string& arguments) {
  const vc::Form* form = arguments.empty() ? session.forms.Top() : session.forms.Find(arguments);
  if (form == nullptr) return Error(arguments, "no such form is open");
  for (const vc::AnyControl& control : vc::ReadingOrder(*form)) ShowControl(control);
}

void Console::GetControl(const std::string& arguments) {
  const FoundControl found = FindByPath(session.forms, arguments, false);
  if (const auto* why = std::get_if<std::string>(&found)) return Error(arguments, *why);
  const vc::AnyControl& control = *std::get<const vc::AnyControl*>(found);
  std::istringstream numbers(vc::NumbersOf(control));
  std::string line;
  if (!std::getline(numbers, line)) line = OneLine(vc::ValueOf(control));
  do {
    out << arguments << '\t' << line << '\n';
  } while (std::getline(numbers, line));
}

void Console::Operate(const std::string& arguments,
                      const std::function<std::string(const vc::AnyControl&, const std::string&)>& action) {
  const auto [path, rest] = SplitWord(arguments);
  const FoundControl found = FindByPath(session.forms, path, true);
  if (const auto* why = std::get_if<std::string>(&found)) return Error(path, *why);
  const std::string wrong = action(*std::get<const vc::AnyControl*>(found), FromOneLine(rest));
  if (!wrong.empty()) Error(path, wrong);
}

void Console::SetControl(const std::string& arguments) { Operate(arguments, vc::SetControl); }

void Console::TypeText(const std::string& arguments) {
  Operate(arguments,
          [](const auto& control, const auto& text) { return vc::TypeInto(control, text, false); });
}

void Console::EnterText(const std::string& arguments) {
  Operate(arguments, [](const auto& control, const auto& text) { return vc::TypeInto(control, text, true); });
}

void Console::Click(const std::string& arguments) {
  Operate(arguments, [](const auto& control, const auto& /*rest*/) { return vc::ClickControl(control); });
}

void Console::Press(const std::string& arguments) { Operate(arguments, vc::PressKey); }

void Console::Point(const std::string& arguments) { Operate(arguments, vc::PointAt); }

void Console::Default(const std::string& arguments) {
  Operate(arguments, [](const auto& control, const auto& /*rest*/) { return vc::SetToDefault(control); });
}

void Console::Menu(const std::string& arguments) {
  Operate(arguments, [](const vc::AnyControl& control, const auto& /*rest*/) {
    if (!std::holds_alternative<vc::MenuEntry*>(control)) return std::string("it is no menu entry");
    return vc::ClickControl(control);
  });
}

void Console::Key(const std::string& arguments) {
  vc::Form* form = session.forms.Top();
  if (form == nullptr) return Error(arguments, "no form is open");
  const std::string wrong = form->Press(arguments);
  if (!wrong.empty()) Error(arguments, wrong);
}

void Console::QueueAnswers(const std::string& arguments) {
  std::istringstream words(arguments);
  std::string word;
  if (!(words >> word)) return Error("answer", "say ok, cancel, yes, no or a path");
  do {
    desk.QueueAnswer(word);
  } while (words >> word);
}

void Console::Run(const std::string& arguments) {
  constexpr std::int64_t longestMilliseconds = 24LL * 3600 * 1000;
  const auto milliseconds = vc::ParseInteger(arguments);
  if (!milliseconds || *milliseconds < 0 || *milliseconds > longestMilliseconds) {
    return Error("run " + arguments, "say how many milliseconds, at most a day");
  }
  loop.RunFor(static_cast<int>(*milliseconds));
}

void Console::Close(const std::string& arguments) {
  vc::Form* form = arguments.empty() ? session.forms.Top() : session.forms.Find(arguments);
  if (form == nullptr) return Error(arguments, "no such form is open");
  if (!session.forms.Operable(*form)) return Error(arguments, form->name + " is behind a modal form");
  const std::string why = form->refusal;
  session.forms.Close(*form);
  if (!why.empty()) Error(form->name, why);
}

void Console::Record(const std::string& arguments) {
  const auto blank = arguments.find(' ', arguments.find(')') == std::string::npos ? 0 : arguments.find(')'));
  const std::string pathText = arguments.substr(0, blank);
  const auto path = ParseFieldPath(pathText);
  const vc::FieldRow* row = path ? vc::FindField(path->name) : nullptr;
  if (row == nullptr) return Error(pathText, "the record has no such field");
  if (!HasElement(*row, *path)) return Error(pathText, "the field has " + IndexText(*row));
  if (blank != std::string::npos) {
    std::string wrong;
    if (!session.edits.ByText(*row, path->index[0], path->index[1], FromOneLine(arguments.substr(blank + 1)),
                              {pathText}, wrong)) {
      return Error(pathText, wrong);
    }
  }
  out << pathText << '\t' << OneLine(vc::FieldText(session.settings, *row, path->index[0], path->index[1]))
      << '\n';
}

void Console::Drop(const std::string& arguments) {
  if (arguments.empty()) return Error("drop", "say which file");
  session.atHand.Drop({FromOneLine(arguments)});
}

void Console::Quit(const std::string& /*arguments*/) {
  session.master.menus.mnuExit.Click();
  for (const vc::Forms::Entry& entry : session.forms.open) {
    if (!entry.form->refusal.empty()) Error("quit", entry.form->refusal);
  }
}

void Console::Help(const std::string& /*arguments*/) {
  for (const Command& command : Commands()) out << command.usage << '\n';
}

}  // namespace console
