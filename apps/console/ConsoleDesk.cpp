#include "console/ConsoleDesk.h"

#include <array>
#include <optional>

namespace console {
namespace {

using vc::Answer;
using vc::box::Buttons;

struct AnswerRow {
  const char* word;
  Answer answer;
  Buttons offeredBy;
};
constexpr std::array<AnswerRow, 8> AnswerTable{{{"ok", Answer::Ok, Buttons::Ok},
                                                {"ok", Answer::Ok, Buttons::OkCancel},
                                                {"cancel", Answer::Cancel, Buttons::OkCancel},
                                                {"yes", Answer::Yes, Buttons::YesNo},
                                                {"no", Answer::No, Buttons::YesNo},
                                                {"cancel", Answer::Cancel, Buttons::YesNoCancel},
                                                {"yes", Answer::Yes, Buttons::YesNoCancel},
                                                {"no", Answer::No, Buttons::YesNoCancel}}};

std::optional<Answer> Offered(const std::string& word, Buttons buttons) {
  for (const AnswerRow& row : AnswerTable) {
    if (row.word == word && row.offeredBy == buttons) return row.answer;
  }
  return std::nullopt;
}

std::string WordOf(Answer answer) {
  for (const AnswerRow& row : AnswerTable) {
    if (row.answer == answer) return row.word;
  }
  return {};
}

}  // namespace

std::string OneLine(const std::string& text) {
  std::string line;
  for (const char character : text) {
    switch (character) {
      case '\n':
        line += "\\n";
        break;
      case '\r':
        break;
      case '\t':
        line += "\\t";
        break;
      case '\\':
        line += "\\\\";
        break;
      default:
        line += character;
    }
  }
  return line;
}

std::string FromOneLine(const std::string& line) {
  std::string text;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char escaped = line[i] == '\\' && i + 1 < line.size() ? line[i + 1] : '\0';
    switch (escaped) {
      case 'n':
        text += '\n';
        break;
      case 't':
        text += '\t';
        break;
      case '\\':
        text += '\\';
        break;
      default:
        text += line[i];
        continue;
    }
    ++i;
  }
  return text;
}

vc::Answer ConsoleDesk::Box(int code, const std::string& title, const std::string& text) {
  const Buttons buttons = vc::box::ButtonsOf(code);
  Answer answer = vc::SafeAnswer(buttons);
  std::string remark = " (default)";
  if (!answers.empty()) {
    const std::string word = answers.front();
    answers.pop_front();
    const auto offered = Offered(word, buttons);
    answer = offered.value_or(answer);
    remark = offered ? "" : " (default: " + OneLine(word) + " is not offered)";
  }
  out << "box\t" << code << '\t' << OneLine(title) << '\t' << OneLine(text) << '\t' << WordOf(answer)
      << remark << std::endl;  // whoever reads along must see the box now
  return answer;
}

void ConsoleDesk::Beep() { out << "beep" << std::endl; }

void ConsoleDesk::TellPages(const std::string& title, int pages, const std::string& file) {
  out << "print\t" << OneLine(title) << '\t' << pages << '\t' << OneLine(file) << std::endl;
}

bool ConsoleDesk::Open(const std::string& target) {
  out << "open\t" << OneLine(target) << std::endl;
  return true;
}

void ConsoleDesk::ShowWaiting(int tenths) {
  constexpr int second = 10;
  if (tenths < second) waitTold = 0;
  if (tenths / second <= waitTold) return;
  waitTold = tenths / second;
  out << "waiting\t" << waitTold << std::endl;
}

void ConsoleDesk::ShowProgress(std::string_view what, int done, int total) {
  constexpr std::int64_t second = 1000000;
  const std::int64_t now = clock.Microseconds();
  if (done == 0) lastProgress = now;
  if (now - lastProgress < second) return;
  lastProgress = now;
  out << "progress\t" << what << '\t' << done << '\t' << total << std::endl;
}

}  // namespace console
