// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "outside/plot/AxisTicks.h"
#include "platform/core/NumberText.h"

namespace tallyscope {
namespace {

constexpr double kPixelsPerCharacter = 6;

bool Fits(const CString& label, double apart) {
  return static_cast<double>(label.size()) * kPixelsPerCharacter + 8 < apart;
}

std::string Majors(const AxisTicks& made) {
  std::string text;
  for (const auto& tick : made.ticks) {
    if (tick.IsMajor()) text += (text.empty() ? "" : " ") + tick.label;
  }
  return text;
}

TEST(AxisTicks, AreRoundAndSayWhatTheyMean) {
  struct Row {
    double low, high, pixels;
    const char* labels;
    int exponent;
  };
  for (const auto& row :
       {Row{0, 100, 600, "0 20 40 60 80 100", 0},  //
        Row{113, 1839, 600, "250 500 750 1000 1250 1500 1750", 0},
        Row{-0.03, 0.03, 600, "-0.03 -0.02 -0.01 0 0.01 0.02 0.03", 0},
        Row{178605, 181390, 600, "179000 179500 180000 180500 181000", 0},  //
        Row{178000, 182600, 600, "178 179 180 181 182", 3}, Row{0, 1e-7, 600, "0 20 40 60 80 100", -9},
        Row{1000000, 1000001, 900, "1000000.0 1000000.2 1000000.4 1000000.6 1000000.8 1000001.0", 0},
        Row{0, 100, 80, "0 50 100", 0}, Row{-1e308, 1e308, 600, "-100 -75 -50 -25 0 25 50 75 100", 306},
        Row{-1.7e308, 1.7e308, 200, "-100 0 100", 306}, Row{-1.79e308, 1.79e308, 60, "-1.79e+308 1.79e+308", 0}}) {
    const auto made = MakeAxisTicks(row.low, row.high, AxisMap(), row.pixels, Fits);
    EXPECT_EQ(Majors(made), row.labels) << row.low << " to " << row.high;
    EXPECT_EQ(made.exponent, row.exponent) << row.low << " to " << row.high;
  }
}

TEST(AxisTicks, LieInTheRangeAtRoundSteps) {
  for (double low = -1e7; low < 1e7; low += 1.31e6) {
    for (double span = 1e-3; span < 1e9; span *= 3.7) {
      const auto made = MakeAxisTicks(low, low + span, AxisMap(), 640, Fits);
      const auto majors =
          std::count_if(made.ticks.begin(), made.ticks.end(), [](auto& tick) { return tick.IsMajor(); });
      EXPECT_LE(majors, 9) << low << " + " << span;
      for (const auto& tick : made.ticks) {
        EXPECT_GE(tick.world, low - span * 1e-6);
        EXPECT_LE(tick.world, low + span * (1 + 1e-6));
        if (!tick.IsMajor()) continue;
        const double shown = ParseLeadingNumber(tick.label) * std::pow(10.0, made.exponent);
        EXPECT_NEAR(shown, tick.world, std::max(span * 1e-6, std::abs(tick.world) * 1e-15)) << tick.label;
      }
    }
  }
}

TEST(AxisTicks, OfALogarithmicAxisArePowersOfTen) {
  const AxisMap map{AxisMap::kLogarithmic, 1};
  EXPECT_EQ(Majors(MakeAxisTicks(0, 2000, map, 600, Fits)), "0 1 10 100 1000");
  const auto both = MakeAxisTicks(-150, 1500, map, 600, Fits);
  EXPECT_EQ(Majors(both), "0 1 -1 10 -10 100 -100 1000");
  EXPECT_EQ(Majors(MakeAxisTicks(0, 1e9, map, 300, Fits)), "0 1 100 10000 1e6 1e8") << "those that there is room for";
  EXPECT_EQ(Majors(MakeAxisTicks(200, 300, map, 600, Fits)), "200 220 240 260 280 300") << "less than a decade";
}

// Zoomed far out, the powers next to zero lie upon it.
TEST(AxisTicks, OfAWideLogarithmicAxisStandApart) {
  for (const double high : {10.0, 1e9, 1e60, 1e300}) {
    const AxisMap map{AxisMap::kLogarithmic, 0.5};
    const double low = -high / 10;
    const auto made = MakeAxisTicks(low, high, map, 336, Fits);
    const double perUnit = 336 / (map.ToData(high) - map.ToData(low));
    std::vector<double> majors;
    std::vector<double> all;
    for (const auto& tick : made.ticks) {
      all.push_back(map.ToData(tick.world) * perUnit);
      if (tick.IsMajor()) majors.push_back(all.back());
    }
    std::sort(majors.begin(), majors.end());
    EXPECT_GE(majors.size(), 3u) << high;
    for (std::size_t i = 1; i < majors.size(); ++i) EXPECT_GT(majors[i] - majors[i - 1], 12) << high;
    EXPECT_LT(all.size(), 100u) << high;
  }
}

// Such as the range of a field that is constant but for the rounding of its making. Steps within it can't be counted.
TEST(AxisTicks, OfARangeThatIsRoundingAreItsEnds) {
  for (const auto& [low, high] :
       {std::pair{0.1, std::nextafter(0.1, 1)}, {1e16, 1e16 + 2}, {-1e300, std::nextafter(-1e300, 0)}}) {
    const auto made = MakeAxisTicks(low, high, AxisMap(), 640, Fits);
    ASSERT_EQ(made.ticks.size(), 2u) << low;
    EXPECT_EQ(made.ticks.front().world, low);
    EXPECT_EQ(made.ticks.back().world, high);
  }
}

TEST(AxisTicks, OfNoRangeAreNone) {
  for (const auto& [low, high] : {std::pair{1.0, 1.0}, {2.0, 1.0}, {0.0, INFINITY}, {NAN, 1.0}}) {
    EXPECT_TRUE(MakeAxisTicks(low, high, AxisMap(), 600, Fits).ticks.empty());
  }
}

TEST(AxisTicks, UseTheUsersCharacters) {
  SetNumberCharacters({",", "."});
  EXPECT_EQ(Majors(MakeAxisTicks(0, 1, AxisMap(), 600, Fits)), "0 0,2 0,4 0,6 0,8 1,0");
  SetNumberCharacters({".", ","});
}

TEST(AxisMap, IsContinuousAndComesBack) {
  const AxisMap map{AxisMap::kLogarithmic, 0.5};
  EXPECT_EQ(map.ToData(0), 0);
  EXPECT_EQ(map.ToData(0.25), 0.5) << "even within the band";
  EXPECT_EQ(map.ToData(0.5), 1);
  EXPECT_NEAR(map.ToData(0.5 * (1 + 1e-9)), 1, 1e-8);
  EXPECT_NEAR(map.ToData(5), 2, 1e-15);
  EXPECT_NEAR(map.ToData(-50), -3, 1e-15);
  for (const double value : {-1e12, -3.0, -0.5, -0.1, 0.0, 1e-9, 0.49, 0.51, 7.0, 1e15}) {
    EXPECT_NEAR(map.ToWorld(map.ToData(value)), value, std::abs(value) * 1e-12);
    EXPECT_EQ(AxisMap().ToWorld(AxisMap().ToData(value)), value);
  }
  const AxisMap narrow{AxisMap::kLogarithmic, 1e-300};
  EXPECT_NEAR(narrow.ToWorld(-316), -1e15, 1e3) << "where ten to the power of 315 alone is beyond any number";
}

TEST(AxisMap, MapsManyAsItDoesOne) {
  std::vector<double> values{0,        -0.0,      0.5, -0.5, 1, 2, 1e300, -1e300, 5e-324, 1.7976931348623157e308,
                             INFINITY, -INFINITY, NAN};
  for (double size = 1e-6; size < 1e12; size *= 1.0037) {
    values.push_back(size);
    values.push_back(-size);
  }
  const auto count = static_cast<int>(values.size());
  std::vector<double> mapped(values.size());
  for (const double band : {0.5, 1.0, 1e-9, 1e6}) {
    const AxisMap map{AxisMap::kLogarithmic, band};
    map.ToDataNearly(values.data(), count, mapped.data());
    for (std::size_t i = 0; i < values.size(); ++i) {
      const double plain = map.ToData(values[i]);
      if (std::isfinite(plain)) {
        ASSERT_NEAR(mapped[i], plain, 4e-16 * std::max(1.0, std::abs(plain))) << values[i] << " by " << band;
        ASSERT_EQ(std::signbit(mapped[i]), std::signbit(plain)) << values[i];
      } else {
        ASSERT_TRUE(std::isnan(mapped[i])) << values[i];
      }
    }
  }
  AxisMap().ToDataNearly(values.data(), count, mapped.data());
  for (int i = 0; i < count; ++i) ASSERT_TRUE(mapped[i] == values[i] || std::isnan(values[i]));
}

}  // namespace
}  // namespace tallyscope
