// Cleaning a recording beside everything else.
#include <array>
#include <nlohmann/json.hpp>

#include "unit/Unit.h"
#include "unit/clean/Cleaning.h"
#include "unit/control/Rows.h"

namespace unit::control {
namespace {

using clean::Cleaning;
using clean::CleaningState;
using clean::CleaningWish;
using clean::Learning;
using nlohmann::json;

struct StateRow {
  CleaningState state;
  std::string_view name;
};
constexpr StateRow states[] = {{CleaningState::Running, "running"},
                               {CleaningState::Done, "done"},
                               {CleaningState::Cancelled, "cancelled"},
                               {CleaningState::Failed, "failed"}};

struct Wanted {
  std::string_view word;
  std::string_view wants;  // what a good value is
  bool (*take)(CleaningWish& wish, const std::string& value);
};
constexpr Wanted wanted[] = {{"from", "a second of the recording",
                              [](CleaningWish& wish, const std::string& value) {
                                const auto second = SecondsOf(value);
                                wish.from = second.value_or(0);
                                return second.has_value();
                              }},
                             {"to", "a second of the recording",
                              [](CleaningWish& wish, const std::string& value) {
                                wish.to = SecondsOf(value);
                                return wish.to.has_value();
                              }},
                             {"adaptive", "learn or keep",
                              [](CleaningWish& wish, const std::string& value) {
                                wish.adaptive = value == "keep" ? Learning::Kept : Learning::FromBeginning;
                                return value == "keep" || value == "learn";
                              }},
                             {"setup", "a name",
                              [](CleaningWish& wish, const std::string& value) {
                                wish.setup = value;
                                return true;
                              }},
                             {"flaws", "take or refuse", [](CleaningWish& wish, const std::string& value) {
                                wish.lenient = value == "take";
                                return value == "take" || value == "refuse";
                              }}};

// What is wrong with the words, or nothing.
std::string TakeWish(const Words& words, CleaningWish& wish) {
  if (words.size() < 2) return "clean needs a recording and a file for what comes of it";
  wish.in = words[0];
  wish.out = words[1];
  for (std::size_t at = 2; at < words.size(); at += 2) {
    const auto* const row = std::ranges::find(wanted, std::string_view(words[at]), &Wanted::word);
    if (row == std::end(wanted)) return std::get<Refused>(TooMuch({words[at]})).why;
    if (at + 1 == words.size() || !row->take(wish, words[at + 1]))
      return words[at] + " needs " + std::string(row->wants);
  }
  return {};
}

json Progress(const Cleaning& cleaning) {
  const clean::CleaningProgress progress = cleaning.Progress();
  json fields{{"done", progress.done}, {"secondsLeft", nullptr}};
  if (progress.secondsLeft) fields["secondsLeft"] = *progress.secondsLeft;
  return fields;
}

}  // namespace

json CleanState(const Parts& parts) {
  if (!parts.cleaning) return nullptr;
  const Cleaning& cleaning = *parts.cleaning;
  const CleaningState state = cleaning.State();
  json fields = state == CleaningState::Running ? Progress(cleaning) : json::object();
  fields["state"] = std::ranges::find(states, state, &StateRow::state)->name;
  if (state == CleaningState::Done) fields["report"] = cleaning.Report();
  if (state == CleaningState::Failed)
    fields["error"] = cleaning.Error() + (cleaning.Flawed() ? " (flaws take has it as it is)" : "");
  return fields;
}

std::optional<Answer> Clean(Parts& parts, const Words& words) {
  CleaningWish wish;
  const std::string wrong = TakeWish(words, wish);
  if (!wrong.empty()) return Refused{wrong};
  if (!parts.unit.InApplication()) return Refused{"the unit is in its boot ROM"};
  if (parts.cleaning && !parts.cleaning->Finished()) return Refused{"a recording is being cleaned already"};
  wish.setting = parts.unit.Present();
  parts.cleaning = std::make_unique<Cleaning>(std::move(wish));
  parts.cleaning->Start();
  return Answer(json::object());
}

// Nothing is left of a file once it is answered.
std::optional<Answer> Cancel(Parts& parts, const Words& words) {
  if (!words.empty()) return TooMuch(words);
  if (!parts.cleaning || (parts.cleaning->Finished() && !parts.cleaning->CancelAsked()))
    return Refused{"nothing is being cleaned"};
  parts.cleaning->Cancel();
  if (!parts.cleaning->Finished()) return std::nullopt;
  return Answer(json{{"clean", CleanState(parts)}});
}

std::optional<Answer> Wait(Parts& parts, const Words& words) {
  if (!words.empty()) return TooMuch(words);
  if (parts.cleaning && !parts.cleaning->Finished()) return std::nullopt;
  return Answer(json{{"clean", CleanState(parts)}});
}

}  // namespace unit::control
