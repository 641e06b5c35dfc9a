// How routing registers lay out the chain: those that the host sends, and those that it should not.
#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "unit/sound/Routing.h"

namespace unit::sound {
namespace sound_test::routing {
namespace {

using Changes = std::vector<std::pair<std::uint8_t, std::uint16_t>>;
using HostValues = std::array<std::uint16_t, 14>;  // of 32..42, 85, 86 and 88

RegisterValues RegistersOf(const HostValues& values) {
  RegisterValues registers{};
  std::copy_n(values.begin(), 11, registers.begin() + 32);
  registers[85] = values[11];
  registers[86] = values[12];
  registers[88] = values[13];
  return registers;
}

std::size_t DriverOf(std::uint8_t code) {
  for (std::size_t position = 1; position <= RoutedPositions; ++position) {
    if (code == FirstOutput(position) || code == SecondOutput(position)) return position;
  }
  return 0;
}

// From the input to an output: "in 0, 7, 1" for the left input and then positions; a second output is "1b".
std::string Trail(const Route& route, std::uint8_t code) {
  if (code == source::Silence) return "silence";
  const std::size_t position = DriverOf(code);
  if (position == 0) return "in " + std::to_string(code);
  return Trail(route, route.At(position).OwnChannel()) + ", " + std::to_string(position) +
         (code == SecondOutput(position) ? "b" : "");
}

std::string Cancellers(const Route& route) {
  std::string text;
  for (const std::uint8_t position : route.Order()) {
    const StageRoute& stage = route.At(position);
    if (stage.b != stage.c) text += std::to_string(position) + ":" + std::to_string(stage.Reference()) + " ";
  }
  return text;
}

std::string OrderOf(const Route& route) {
  std::string text;
  for (const std::uint8_t position : route.Order()) text += std::to_string(position) + " ";
  return text;
}

struct HostCase {
  const char* name;
  HostValues values;  // as the host has sent them
  std::string left, right, cancellers, order;
  bool stereo, swap, linked;
};

// Mono: cancellers at 1 (delayed reference) and 4, the rejected output of 2, a 3 that is out of the chain.
// Linked: a canceller, a lowpass, a rejected output, no equalizer. Independent: cancellers at 1, 2 and 6, a
// 3 that is out of the chain, equalizer on the left only.
// clang-format off
const HostCase hostCases[] = {
    {"Mono, one filter",
     {64, 96, 128, 160, 576, 608, 640, 672, 6336, 1070, 462, 4095, 28687, 130},
     "in 0, 1, 9", "in 0, 1, 9", "", "1 7 9 ", false, false, false},
    {"Mono, six filters",
     {24641, 6246, 11403, 1195, 9801, 23158, 640, 672, 24288, 1070, 16846, 65, 4111, 210},
     "in 0, 7, 1, 2b, 4, 5, 6, 9", "in 0, 7, 1, 2b, 4, 5, 6, 9", "1:1 4:1 ", "7 1 2 3 4 5 6 9 ",
     false, true, false},
    {"Stereo Linked",
     {25688, 24697, 6278, 7335, 8776, 9833, 640, 1697, 27456, 28526, 33627, 72, 9, 207},
     "in 0, 7, 1, 3, 5b", "in 1, 8, 2, 4, 6b", "1:25 2:24 ", "8 7 1 2 3 4 5 6 9 10 ", true, false, true},
    {"Stereo Independent",
     {89, 121, 6278, 7335, 6726, 9830, 640, 1697, 23232, 24302, 471, 9, 9, 231},
     "in 0, 1, 5, 9", "in 1, 8, 2, 4, 6", "1:25 2:0 6:6 ", "8 1 2 3 4 5 6 7 9 10 ", true, false, false},
};
// clang-format on

TEST(Routing, FollowsWhatTheHostSends) {
  for (const HostCase& c : hostCases) {
    SCOPED_TRACE(c.name);
    const Route route = RouteOf(RegistersOf(c.values));
    EXPECT_EQ(Trail(route, route.outputs[0]), c.left);
    EXPECT_EQ(Trail(route, route.outputs[1]), c.right);
    EXPECT_EQ(Cancellers(route), c.cancellers);
    EXPECT_EQ(OrderOf(route), c.order);
    EXPECT_EQ(route.stereo, c.stereo);
    EXPECT_EQ(route.swap, c.swap);
    EXPECT_EQ(route.linked, c.linked);
    EXPECT_FALSE(route.loop);
    EXPECT_FALSE(route.undriven);
    EXPECT_EQ(route.taps[0], 0);
    EXPECT_EQ(route.taps[1], 14);
    for (const std::uint8_t position : route.Order()) {
      EXPECT_EQ(route.At(position).a, route.At(position).OwnChannel());
    }
  }
}

struct OddCase {
  const char* name;
  Changes changes;  // to Mono with one filter
  std::string left;
  bool loop, undriven;
};

constexpr std::uint16_t Fed(unsigned from, unsigned tap) {
  return static_cast<std::uint16_t>(from * 1024 + tap * 32 + from);
}

const OddCase oddCases[] = {
    {"a stage that hears itself", {{32, Fed(6, 2)}}, "silence, 1, 9", true, false},
    {"two in a ring", {{85, 0777}, {32, Fed(7, 2)}, {33, Fed(6, 3)}}, "silence, 2, 1, 9", true, false},
    {"equalizer in the chain", {{32, Fed(14, 2)}}, "silence, 9", true, false},
    {"output as a source", {{32, Fed(30, 2)}}, "silence, 1, 9", true, false},
    {"a code of nobody", {{32, Fed(17, 2)}}, "silence, 1, 9", false, true},
    {"an idle stage", {{32, Fed(7, 2)}}, "silence, 1, 9", false, true},
    {"second output of an equalizer", {{42, Fed(16, 0)}}, "in 0", false, true},
    {"input tap of another stage",
     {{85, 0777}, {33, Fed(1, 3)}, {32, Fed(3, 2)}},
     "in 1, 1, 9",
     false,
     false},
    {"all held", {{85, 32767}, {86, 32767}}, "silence", false, true},
    {"outputs past the stages", {{42, 1}}, "in 0", false, false},
};

TEST(Routing, CutsLoopsAndHearsSilenceWhereNobodyDrives) {
  for (const OddCase& c : oddCases) {
    SCOPED_TRACE(c.name);
    RegisterValues registers = RegistersOf(hostCases[0].values);
    for (const auto& [code, value] : c.changes) registers[code] = value;
    const Route route = RouteOf(registers);
    EXPECT_EQ(Trail(route, route.outputs[0]), c.left);
    EXPECT_EQ(route.loop, c.loop);
    EXPECT_EQ(route.undriven, c.undriven);
  }
  const Route nothing = RouteOf({});
  EXPECT_EQ(nothing.count, 0U);
  EXPECT_EQ(nothing.outputs[0], source::Silence);
}

TEST(Routing, AnyRegistersGiveARouteThatCanBeRun) {
  std::mt19937 random(1);
  for (int round = 0; round < 20000; ++round) {
    RegisterValues registers{};
    for (std::size_t code = 32; code <= 42; ++code) registers[code] = static_cast<std::uint16_t>(random());
    for (const std::size_t code : {85U, 86U, 88U}) registers[code] = static_cast<std::uint16_t>(random());
    const Route route = RouteOf(registers);
    std::vector<std::size_t> ready{0};
    for (const std::uint8_t position : route.Order()) {
      for (const std::uint8_t code : {route.At(position).a, route.At(position).b, route.At(position).c}) {
        const bool there = code != source::Silence && DriverOf(code) == 0
                               ? code <= source::RightIn
                               : code == source::Silence || std::ranges::count(ready, DriverOf(code)) == 1;
        ASSERT_TRUE(there) << "round " << round << " position " << int{position} << " code " << int{code};
      }
      ASSERT_EQ(std::ranges::count(ready, position), 0);
      ready.push_back(position);
    }
  }
}

}  // namespace
}  // namespace sound_test::routing
}  // namespace unit::sound
