// Conversions between numbers and texts.
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "text/Convert.h"

namespace vc {
namespace {

TEST(Nearest, RoundsHalvesToEven) {
  EXPECT_EQ(Nearest(0.5), 0);
  EXPECT_EQ(Nearest(1.5), 2);
  EXPECT_EQ(Nearest(-2.5), -2);
  EXPECT_EQ(Nearest(2.4999), 2);
  EXPECT_EQ(Nearest32(2147483646.5), 2147483646);
  EXPECT_EQ(Floor(-0.1), -1);
}

TEST(Nearest, RaisesAFaultForWhatDoesNotFit) {
  EXPECT_EQ(Nearest(32767.4), 32767);
  EXPECT_THROW(Nearest(32767.5), Fault);
  EXPECT_THROW(Nearest(-32768.6), Fault);
  EXPECT_THROW(Nearest(std::nan("")), Fault);
  EXPECT_THROW(Nearest32(std::numeric_limits<double>::infinity()), Fault);
  EXPECT_THROW(Floor(40000.0), Fault);
  EXPECT_THROW(Divide(1.0, 0.0), Fault);
}

TEST(ParseNumber, TakesNumbersAndNothingElse) {
  EXPECT_EQ(ParseNumber(" 12.5 "), 12.5);
  EXPECT_EQ(ParseNumber("+3"), 3.0);
  EXPECT_EQ(ParseNumber("-.5"), -0.5);
  for (const char* bad : {"", " ", "abc", "1,5", "12x", "nan", "inf", "--1", "+-1", "0x10", "1e999"}) {
    EXPECT_FALSE(ParseNumber(bad)) << bad;
  }
  EXPECT_EQ(ParseInteger("-40"), -40);
  EXPECT_FALSE(ParseInteger("4.0"));
}

TEST(FixedText, HasNoMinusBeforeZeroAndAPointAlways) {
  EXPECT_EQ(FixedText(-0.04, 1), "0.0");
  EXPECT_EQ(FixedText(-0.06, 1), "-0.1");
  EXPECT_EQ(FixedText(4.01, 2), "4.01");
  EXPECT_EQ(FixedText(1e300, 0).size(), 301U);
}

TEST(ShortestText, ReadsBackToTheSameFloat) {
  for (const float value : {0.1F, 1.0F / 3.0F, 1e-30F, -60.0F, 3.4e38F}) {
    EXPECT_EQ(static_cast<float>(*ParseNumber(ShortestText(value))), value);
  }
}

}  // namespace
}  // namespace vc
