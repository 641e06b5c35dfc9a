// The commands that come on the standard input, as a table.
#pragma once

#include <cstdint>
#include <future>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "unit/card/SoundCard.h"
#include "unit/clean/Cleaning.h"
#include "unit/control/Words.h"

namespace unit {
class Unit;
namespace sound {
class LiveSound;
}
}  // namespace unit

namespace unit::control {

// What commands act on. What is not there has no commands: they say so.
struct Parts {
  Unit& unit;
  sound::LiveSound* sound = nullptr;          // null where the unit processes none
  std::unique_ptr<clean::Cleaning> cleaning;  // the last one; null before the first
  std::uint64_t seed = 1;                     // of the scene
  std::future<sound::CardNames> devices;      // that are being looked for; not valid where nobody asks
  std::string trouble;                        // what went wrong by itself last; empty once that is made good
};

// In words what is wrong; nothing has changed.
struct Refused {
  std::string why;
};
// The fields of the answer but "ok", an object; or none.
using Answer = std::variant<nlohmann::json, Refused>;

struct Command {
  std::string_view name;
  std::string_view usage;  // what follows the name, empty for nothing
  std::string_view help;
  // words: those behind the name. No answer yet: it is asked again every 20 ms, and the commands behind it
  // wait.
  std::optional<Answer> (*run)(Parts& parts, const Words& words);
  bool needsSound = false;  // it is run only where parts.sound is there
};

std::span<const Command> Commands();

// The whole line of the answer to a command's line, without its end; nothing yet as above. No line fails to
// get one, whatever it holds. An empty text where the line holds no word.
std::optional<std::string> AnswerTo(Parts& parts, std::string_view line);

// The answer that says what is wrong.
std::string Refusal(const std::string& error);

}  // namespace unit::control
