// How the simulated unit is to behave, and the command line that says so.
#include "unit/Options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <system_error>

namespace unit {
namespace {

constexpr std::array bauds = {9600, 14400, 19200, 38400, 115200};
constexpr int LastVersion = 999;
constexpr std::uint32_t LastDelay = 600'000;

// Takes the whole text as a number within the bounds; false leaves the target as it was.
template <typename Number>
bool Take(std::string_view text, Number low, Number high, Number& target) {
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  // Written so that "nan" is refused as well.
  if (error != std::errc() || end != text.data() + text.size() || !(value >= low && value <= high))
    return false;
  target = value;
  return true;
}

bool TakeText(std::string_view text, std::string& target) {
  target = text;
  return !text.empty();
}

bool TakeBaud(Options& options, std::string_view text) {
  return Take(text, bauds.front(), bauds.back(), options.baud) &&
         std::find(bauds.begin(), bauds.end(), options.baud) != bauds.end();
}

bool TakeMilliseconds(std::string_view text, std::int64_t& microseconds) {
  std::uint32_t milliseconds = 0;
  if (!Take(text, 0U, LastDelay, milliseconds)) return false;
  microseconds = std::int64_t{milliseconds} * 1000;
  return true;
}

bool TakeSilentAfter(Options& options, std::string_view text) {
  return Take(text, 0U, UINT32_MAX, options.silentAfter.emplace());
}

bool TakeCoefficients(Options& options, std::string_view text) {
  constexpr unsigned lastPage = 5;
  const std::size_t colon = text.find(':');
  unsigned page = 0;
  if (colon == std::string_view::npos || !Take(text.substr(0, colon), 0U, lastPage, page)) return false;
  return TakeText(text.substr(colon + 1), options.coefficients[page]);
}

bool TakeRomFault(Options& options, std::string_view text) {
  const std::size_t colon = text.find(':');
  const auto fault = RomFaultOf(text.substr(0, colon));
  std::uint32_t exchange = 0;
  if (colon == std::string_view::npos || !fault || !Take(text.substr(colon + 1), 1U, UINT32_MAX, exchange))
    return false;
  options.romFaults[exchange] = *fault;
  return true;
}

bool TakeMemory(Options& options, std::string_view text) {
  constexpr unsigned lastMemory = 10;
  return Take(text, 1U, lastMemory, options.memory.emplace());
}

std::string WrongToClean(const Options& options) {
  if (!options.memory) return "--clean needs --memory N";
  if (options.in.empty() || options.out.empty()) return "--clean needs --in FILE and --out FILE";
  if (options.to && *options.to <= options.from) return "--to must be a later second than --from";
  return options.fast || options.looped || options.silent || options.seconds != 0
             ? "--clean excludes --fast, --seconds, --loop and --no-sound"
             : "";
}

// What is wrong with the options as a whole; empty where nothing is.
std::string Wrong(const Options& options) {
  if (options.help) return {};
  if (options.memory && options.memories.empty()) return "--memory needs --memories FILE";
  if (options.clean) return WrongToClean(options);
  if (!options.fast) return options.link.empty() ? "--link PATH is needed" : "";
  if (!options.memory) return "--fast needs --memory N";
  if (options.out.empty()) return "--fast needs --out FILE";
  if (options.silent) return "--fast and --no-sound exclude each other";
  if (options.paused) return "--fast and --paused exclude each other";
  const bool endless = options.in.empty() || options.looped;
  return endless && options.seconds == 0 ? "--fast needs --seconds N here, as the sound has no end" : "";
}

constexpr double LastSecond = 1e8;
constexpr std::string_view Second = "a number of seconds from 0 to 100000000";
constexpr std::string_view Version = "a whole number from 0 to 999";
constexpr std::string_view Milliseconds = "a whole number from 0 to 600000";
constexpr std::string_view Probability = "a number from 0 to 1";

struct Row {
  std::string_view name;
  std::string_view value;  // its name in the usage; empty for a flag
  std::string_view wants;  // what a good value is
  bool (*take)(Options& options, std::string_view text);
  std::string_view help;
};

constexpr Row rows[] = {
    {"--link", "PATH", "a path", [](Options& o, std::string_view t) { return TakeText(t, o.link); },
     "make the line's symbolic link at PATH (needed)"},
    {"--baud", "RATE", "9600, 14400, 19200, 38400 or 115200", TakeBaud, "rate of the unit's line, 115200"},
    {"--pace", "", "", [](Options& o, std::string_view) { return o.pace = true; },
     "answer at the true speed of the line"},
    {"--boot", "N", Version,
     [](Options& o, std::string_view t) { return Take(t, 0, LastVersion, o.bootHundredths); },
     "boot ROM version in hundredths, 401"},
    {"--firmware", "N", Version,
     [](Options& o, std::string_view t) { return Take(t, 0, LastVersion, o.firmwareHundredths); },
     "firmware version in hundredths, 402"},
    {"--option", "", "", [](Options& o, std::string_view) { return o.option = true; },
     "set the option flag of the status"},
    {"--attached", "", "", [](Options& o, std::string_view) { return o.attached = true; },
     "end with the standard input, on which commands come"},
    {"--trace", "FILE", "a path", [](Options& o, std::string_view t) { return TakeText(t, o.trace); },
     "write what happens on the line to FILE"},
    {"--dump", "FILE", "a path", [](Options& o, std::string_view t) { return TakeText(t, o.dump); },
     "on SIGUSR1 write what the unit was given to FILE"},
    {"--memories", "FILE", "a path", [](Options& o, std::string_view t) { return TakeText(t, o.memories); },
     "keep the stand-alone memories in FILE"},
    {"--images", "FILE", "a path", [](Options& o, std::string_view t) { return TakeText(t, o.images); },
     "keep the firmware images in FILE"},
    {"--memory", "N", "a whole number from 1 to 10", TakeMemory, "start with the setting of memory N"},
    {"--in", "FILE", "a path", [](Options& o, std::string_view t) { return TakeText(t, o.in); },
     "hear FILE (WAV, FLAC, ...) and not the built-in scene"},
    {"--loop", "", "", [](Options& o, std::string_view) { return o.looped = true; },
     "hear FILE over and over"},
    {"--paused", "", "", [](Options& o, std::string_view) { return o.paused = true; },
     "hear FILE once a command lets it play"},
    {"--lenient", "", "", [](Options& o, std::string_view) { return o.lenient = true; },
     "hear what there is of a FILE that is cut off, and 0 for what is no number"},
    {"--out", "FILE", "a path", [](Options& o, std::string_view t) { return TakeText(t, o.out); },
     "write what leaves the unit to FILE (.wav or .flac)"},
    {"--no-sound", "", "", [](Options& o, std::string_view) { return o.silent = true; },
     "process no sound; all levels stay at 0"},
    {"--fast", "", "", [](Options& o, std::string_view) { return o.fast = true; },
     "no line: process the sound as fast as it goes, and end"},
    {"--seconds", "N", "a number from 0.1 to 1000000",
     [](Options& o, std::string_view t) { return Take(t, 0.1, 1e6, o.seconds); },
     "with --fast: process so many seconds of sound"},
    {"--clean", "", "", [](Options& o, std::string_view) { return o.clean = true; },
     "no line: clean the recording --in to --out, tell what was done, and end"},
    {"--from", "S", Second, [](Options& o, std::string_view t) { return Take(t, 0.0, LastSecond, o.from); },
     "with --clean: begin at second S of the recording"},
    {"--to", "S", Second,
     [](Options& o, std::string_view t) { return Take(t, 0.0, LastSecond, o.to.emplace()); },
     "with --clean: end at second S of the recording"},
    {"--keep-adaptive", "", "", [](Options& o, std::string_view) { return o.keepAdaptive = true; },
     "with --clean: filters keep what they have learned, and learn no more"},
    {"--coefficients", "PAGE:FILE", "a page from 0 to 5, a colon and a path", TakeCoefficients,
     "on SIGUSR2 let the stage of PAGE have learned what is in FILE"},
    {"--seed", "N", "a whole number",
     [](Options& o, std::string_view t) { return Take(t, std::uint64_t{0}, UINT64_MAX, o.seed); },
     "seed of all faults, 1"},
    {"--lose", "P", Probability,
     [](Options& o, std::string_view t) { return Take(t, 0.0, 1.0, o.faults.lose); },
     "probability that a byte is lost"},
    {"--corrupt", "P", Probability,
     [](Options& o, std::string_view t) { return Take(t, 0.0, 1.0, o.faults.corrupt); },
     "probability that a byte is changed"},
    {"--double", "P", Probability,
     [](Options& o, std::string_view t) { return Take(t, 0.0, 1.0, o.faults.twice); },
     "probability that a byte comes twice"},
    {"--refuse", "P", Probability, [](Options& o, std::string_view t) { return Take(t, 0.0, 1.0, o.refuse); },
     "probability that a frame gets a complaint"},
    {"--delay", "MS", Milliseconds,
     [](Options& o, std::string_view t) { return TakeMilliseconds(t, o.delayMicroseconds); },
     "milliseconds before each reply"},
    {"--store-time", "MS", Milliseconds,
     [](Options& o, std::string_view t) { return TakeMilliseconds(t, o.storeMicroseconds); },
     "milliseconds that a store in a memory takes, 500"},
    {"--erase-time", "MS", Milliseconds,
     [](Options& o, std::string_view t) { return TakeMilliseconds(t, o.eraseMicroseconds); },
     "milliseconds that the erasure of a firmware section takes, 3000"},
    {"--rom-fault", "FAULT:N",
     "deaf, silent, refuse, nak, twice, late, sum or cut, a colon and a whole number from 1", TakeRomFault,
     "fault at exchange N with the boot ROM"},
    {"--silent-after", "N", "a whole number from 0 to 4294967295", TakeSilentAfter,
     "fall silent after N answered frames"},
    {"--help", "", "", [](Options& o, std::string_view) { return o.help = true; }, "show this text"},
};

std::string Wrong(const Row& row) { return std::string(row.name) + " needs " + std::string(row.wants); }

}  // namespace

std::variant<Options, std::string> ParseOptions(std::span<const std::string_view> arguments) {
  Options options;
  for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
    const auto* const row = std::find_if(std::begin(rows), std::end(rows),
                                         [&](const Row& candidate) { return candidate.name == *argument; });
    if (row == std::end(rows)) return "unknown option " + std::string(*argument);
    std::string_view value;
    if (!row->value.empty()) {
      if (++argument == arguments.end()) return Wrong(*row);
      value = *argument;
    }
    if (!row->take(options, value)) return Wrong(*row) + ", not \"" + std::string(value) + "\"";
  }
  std::string wrong = Wrong(options);
  if (!wrong.empty()) return wrong;
  return options;
}

std::string Usage() {
  constexpr std::size_t column = 25;
  std::string text = "usage: veltrana-unit --link PATH [option]...\n";
  for (const Row& row : rows) {
    std::string line = "  " + std::string(row.name) + ' ' + std::string(row.value);
    line.resize(column + 2, ' ');
    text += line + std::string(row.help) + '\n';
  }
  return text;
}

}  // namespace unit
