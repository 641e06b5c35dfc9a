// How the routing registers lay out the chain: what each stage listens to, in which order the stages run, and
// what leaves the outputs.
#include "unit/sound/Routing.h"

#include <algorithm>

namespace unit::sound {
namespace {

constexpr std::uint8_t StageRouting = 31;    // and the position, 1..8
constexpr std::uint8_t ChannelRouting = 31;  // and the position, 9 or 10
constexpr std::uint8_t OutputRouting = 42;
constexpr std::uint8_t FirstClasses = 85;
constexpr std::uint8_t LastClasses = 86;
constexpr std::uint8_t AdaptiveStages = 88;

constexpr unsigned CodeMask = 31;
constexpr unsigned SwapBit = 0x4000;
constexpr unsigned LinkedBit = 0x8000;
constexpr unsigned IdleClass = 7;
constexpr unsigned NeverTold = source::Silence * (1024U + 32U + 1U);

// By position, 1 first.
constexpr std::array<std::uint8_t, RoutedPositions> inputTaps{2, 3, 4, 5, 18, 19, 20, 21, 16, 16};
constexpr std::array<std::uint8_t, RoutedPositions> firstOutputs{6, 7, 8, 9, 22, 23, 24, 25, 14, 15};
constexpr std::array<std::uint8_t, RoutedPositions> secondOutputs{10, 11, 12, 13, 26, 27, 28, 29, 16, 16};

std::size_t FindPosition(const std::array<std::uint8_t, RoutedPositions>& table, std::uint8_t code) {
  if (code == source::Silence) return 0;
  const auto* place = std::find(table.begin(), table.end(), code);
  return place == table.end() ? 0 : static_cast<std::size_t>(place - table.begin()) + 1;
}

// The position that drives a code or has it as its input tap, 1..10; 0 where there is none.
std::size_t DriverOf(std::uint8_t code) {
  return std::max(FindPosition(firstOutputs, code), FindPosition(secondOutputs, code));
}
std::size_t TapOwner(std::uint8_t code) { return FindPosition(inputTaps, code); }

struct Fields {
  std::uint8_t high, middle, low;
};

class Planner {
 public:
  explicit Planner(const RegisterValues& held) : registers(held) {}

  Route Plan() {
    route.stereo = !Idle(RoutedPositions);
    for (std::size_t position = 1; position <= RoutedPositions; ++position) {
      route.stages[position - 1].runs = Runs(position);
    }
    for (std::size_t position = 1; position <= RoutedPositions; ++position) Visit(position);
    PlanOutputs();
    PlanTaps();
    return route;
  }

 private:
  enum class Progress { None, Begun, Done };

  unsigned Word(std::size_t code, unsigned neverTold) const { return registers[code].value_or(neverTold); }

  Fields FieldsOf(std::size_t code) const {
    const unsigned word = Word(code, NeverTold);
    const auto field = [word](unsigned shift) { return static_cast<std::uint8_t>(word >> shift & CodeMask); };
    return {field(10), field(5), field(0)};
  }

  bool Idle(std::size_t position) const {
    constexpr std::array<unsigned, RoutedPositions> shifts{12, 9, 6, 3, 0, 12, 0, 0, 3, 0};
    const unsigned word = Word(position <= 5 ? FirstClasses : LastClasses, 0x7FFF);
    return (word >> shifts[position - 1] & 7U) == IdleClass;
  }

  bool Runs(std::size_t position) const {
    if (!IsBroadband(position)) return !Idle(position);
    const bool held = Word(FirstClasses, 0x7FFF) == 0x7FFF && Word(LastClasses, 0x7FFF) == 0x7FFF;
    return !held && (Word(AdaptiveStages, 0) >> (8 - position) & 1U) != 0;
  }

  // Puts the position into the order, behind everything that it listens to.
  void Visit(std::size_t position) {
    StageRoute& stage = route.stages[position - 1];
    Progress& progress = visits[position - 1];
    if (!stage.runs || progress != Progress::None) return;
    progress = Progress::Begun;
    if (IsEqualizer(position)) {
      const Fields fields = FieldsOf(ChannelRouting + position);
      stage.b = Resolve(fields.high);
      stage.c = Resolve(fields.middle);
      stage.a = stage.b;
    } else {
      const Fields fields = FieldsOf(StageRouting + position);
      stage.b = Resolve(fields.high);
      stage.c = Resolve(fields.low);
      stage.ownChannelOnC = OwnChannelOnC(position, stage);
      const bool ownTap = TapOwner(fields.middle) == position;
      stage.a = ownTap ? stage.OwnChannel() : Resolve(fields.middle);
    }
    progress = Progress::Done;
    route.order[route.count++] = static_cast<std::uint8_t>(position);
  }

  // What a code comes to once all that it depends on is in the order.
  std::uint8_t Resolve(std::uint8_t code) {
    if (code == source::LeftIn || code == source::RightIn) return code;
    if (code == source::LeftOut || code == source::RightOut) return Cut(route.loop);
    const std::size_t tapped = TapOwner(code);
    const std::size_t position = std::max(tapped, DriverOf(code));
    if (position == 0 || !route.At(position).runs) return Cut(route.undriven);
    Visit(position);
    if (visits[position - 1] == Progress::Begun) return Cut(route.loop);
    return tapped != 0 ? route.At(position).OwnChannel() : code;
  }

  static std::uint8_t Cut(bool& why) {
    why = true;
    return source::Silence;
  }

  bool OnRight(std::size_t position) const { return route.stereo && position % 2 == 0; }

  bool Carries(std::uint8_t code, bool right) const {
    if (code == source::Silence) return false;
    const std::size_t position = DriverOf(code);
    return (position == 0 ? code == source::RightIn : OnRight(position)) == right;
  }

  bool OwnChannelOnC(std::size_t position, const StageRoute& stage) const {
    return !Carries(stage.b, OnRight(position)) && Carries(stage.c, OnRight(position));
  }

  void PlanOutputs() {
    const unsigned word = Word(OutputRouting, NeverTold & 0x3FFU);
    const Fields fields = FieldsOf(OutputRouting);
    route.outputs = {Resolve(fields.middle), Resolve(fields.low)};
    route.swap = (word & SwapBit) != 0;
    route.linked = (word & LinkedBit) != 0;
  }

  // A tap that hears nothing is no fault of the chain.
  void PlanTaps() {
    const bool loop = route.loop;
    const bool undriven = route.undriven;
    for (std::size_t trace = 0; trace < route.taps.size(); ++trace) {
      const std::uint8_t code = FieldsOf(ChannelRouting + FirstEqualizer + trace).low;
      const bool out = code == source::LeftOut || code == source::RightOut;
      route.taps[trace] = out ? code : Resolve(code);
    }
    route.loop = loop;
    route.undriven = undriven;
  }

  const RegisterValues& registers;
  Route route;
  std::array<Progress, RoutedPositions> visits{};
};

}  // namespace

std::uint8_t FirstOutput(std::size_t position) { return firstOutputs[position - 1]; }
std::uint8_t SecondOutput(std::size_t position) { return secondOutputs[position - 1]; }

Route RouteOf(const RegisterValues& registers) { return Planner(registers).Plan(); }

}  // namespace unit::sound
