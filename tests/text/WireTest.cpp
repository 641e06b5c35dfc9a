// A wire leads somewhere from the beginning.
#include <functional>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "Unheard.h"
#include "text/Wire.h"

namespace vc {
namespace {

struct Bundle {
  Wire<void()> first;
  Wire<bool(int)> second;
};
static_assert(support::FewestWires<Bundle>() == 2);  // with one fewer it does not compile
static_assert(!std::is_constructible_v<Wire<void()>, std::nullptr_t>);
static_assert(!std::is_constructible_v<Wire<void()>, void (*)(int)>);

TEST(Wires, AnEmptyFunctionFailsWhereItIsWiredAndSaysWhere) {
  std::function<bool()> empty;
  std::string told;
  try {
    const Wire<bool()> wire = empty;
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
