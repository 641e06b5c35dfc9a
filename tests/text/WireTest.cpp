// A module whose wires are not all there never comes to be.
#include <gtest/gtest.h>

#include "Unheard.h"
#include "link/modDeviceComm.h"
#include "model/CoefReader.h"
#include "model/modDeviceConfig.h"
#include "persist/SetupContext.h"
#include "shell/MenuActions.h"
#include "shell/PeriodicService.h"
#include "text/Wire.h"

namespace vc {
namespace {

// Each of these numbers is that of the wires in the bundle: with one fewer it does not compile.
static_assert(support::FewestWires<LinkHooks>() == 13);
static_assert(support::FewestWires<FitHooks>() == 6);
static_assert(support::FewestWires<CoefHooks>() == 6);
static_assert(support::FewestWires<SetupHooks>() == 3);
static_assert(support::FewestWires<TickCalls>() == 5);
static_assert(support::FewestWires<SessionCalls>() == 11);
static_assert(!std::is_default_constructible_v<SetupContext>);
static_assert(!std::is_constructible_v<Wire<void()>, std::nullptr_t>);
static_assert(!std::is_constructible_v<Wire<void()>, void (*)(int)>);

TEST(Wires, AnEmptyFunctionFailsWhereItIsWiredAndSaysWhere) {
  std::function<bool()> empty;
  std::string told;
  try {
    const SetupHooks hooks{
        .portOpen = empty, .readCoefficients = support::DeadEnd{}, .progress = support::DeadEnd{}};
  } catch (const Fault& fault) {
    told = fault.description;
  }
  EXPECT_NE(told.find("WireTest.cpp:"), std::string::npos) << told;
}

TEST(Wires, AnEventNeedsNoListener) {
  std::function<void(const std::string&)> event;
  Raise(event, "unheard");
  std::string heard;
  event = [&heard](const std::string& what) { heard = what; };
  Raise(event, "heard");
  EXPECT_EQ(heard, "heard");
}

}  // namespace
}  // namespace vc
