// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "outside/colour/ColourTables.h"
#include "outside/colour/Hsl.h"
#include "outside/colour/Modulation.h"
#include "outside/plot/PlotColours.h"
#include "outside/plot/UPlotX_Container.h"
#include "platform/ui/Contrast.h"

namespace tallyscope {
namespace {

TEST(Colour, GoesToHslAndBack) {
  struct Row {
    COLORREF colour;
    double hue, saturation, lightness;
  };
  for (const auto& row : {Row{0x0000ff, 0, 1, 0.5}, Row{0x00ff00, 1 / 3.0, 1, 0.5}, Row{0xff0000, 2 / 3.0, 1, 0.5},
                          Row{0xffffff, 0, 0, 1}, Row{0, 0, 0, 0}, Row{0x808080, 0, 0, 128 / 255.0},
                          Row{RGB(191, 64, 191), 300 / 360.0, 0.498, 0.5}}) {
    double red = 0, green = 0, blue = 0, hue = 0, saturation = 0, lightness = 0;
    CUPlotX_Container::CREF2RGB(row.colour, red, green, blue);
    CUPlotX_Container::RGB2HSL(red, green, blue, hue, saturation, lightness);
    EXPECT_NEAR(hue, row.hue, 1e-9);
    EXPECT_NEAR(saturation, row.saturation, 1e-3);
    EXPECT_NEAR(lightness, row.lightness, 1e-9);
  }
  for (COLORREF colour = 0; colour <= 0xffffff; colour += 4099)
    EXPECT_EQ(ToColorRef(ToRgb(ToHsl(ToRgb(colour)))), colour);
}

TEST(Colour, TablesRunFromEndToEnd) {
  const auto plain = MakeBlueToRed();
  ASSERT_EQ(plain.size(), 256u);
  EXPECT_EQ(plain.front(), 0xff0000u);
  EXPECT_EQ(plain.back(), 0x0000ffu);
  EXPECT_EQ(plain[85], RGB(0, 255, 170)) << "a third of the way: hue 160 degrees";
  EXPECT_EQ(plain[170], RGB(170, 255, 0)) << "two thirds: hue 80 degrees";
  const auto even = MakePerceptual();
  ASSERT_EQ(even.size(), 256u);
  EXPECT_EQ(even.front(), RGB(0x44, 0x01, 0x54));
  EXPECT_EQ(even.back(), RGB(0xfd, 0xe7, 0x25));
  double last = 0;
  for (const auto colour : even) {
    const double contrast = Contrast(ToQColor(colour), Qt::black);
    EXPECT_GE(contrast, last - 0.02) << "lighter from step to step";
    last = contrast;
  }
}

TEST(Colour, ModulationClampsAndTruncates) {
  const auto table = MakeBlueToRed();
  const ColourModulation colours(10, 266, table);  // steps of 1
  ASSERT_TRUE(colours.IsOn());
  EXPECT_EQ(colours.GetColour(10), table[0]);
  EXPECT_EQ(colours.GetColour(10.999), table[0]);
  EXPECT_EQ(colours.GetColour(11), table[1]);
  EXPECT_EQ(colours.GetColour(264.9), table[254]);
  for (const double above : {265.0, 266.0, 1e300, double(INFINITY)}) EXPECT_EQ(colours.GetColour(above), table[255]);
  for (const double below : {-1e300, -double(INFINITY), double(NAN)}) EXPECT_EQ(colours.GetColour(below), table[0]);
  const SizeModulation sizes(0, 5);
  for (const auto& [value, half] : {std::pair{-1.0, 0}, {0.99, 0}, {1.0, 1}, {3.9, 3}, {4.0, 4}, {5.0, 4}, {99.0, 4}}) {
    EXPECT_EQ(sizes.GetHalfSize(value), half) << value;
  }
  for (const StepMap& map : {colours.GetMap(), sizes.GetMap(), StepMap::ByFraction(0.1, 76.9, 0.00390625, 256)}) {
    std::vector<double> values{-1e300, 1e300, -INFINITY, INFINITY, NAN, -0.0};
    for (double value = -3; value < 300; value += 0.1) values.push_back(value);
    std::vector<int> indices(values.size());
    map.GetIndices(values.data(), static_cast<int>(values.size()), indices.data());
    for (std::size_t i = 0; i < values.size(); ++i) EXPECT_EQ(indices[i], map.GetIndex(values[i])) << values[i];
  }
  // A range that is wider than any number.
  for (const double end : {1e308, 1.7e308}) {
    const ColourModulation wide(-end, end, table);
    ASSERT_TRUE(wide.IsOn());
    for (const auto& [value, index] :
         {std::pair{-end, 0u}, {-0.51 * end, 62u}, {0.0, 128u}, {0.51 * end, 193u}, {end, 255u}}) {
      EXPECT_EQ(wide.GetColour(value), table[index]) << value;
    }
    EXPECT_EQ(SizeModulation(-end, end).GetHalfSize(0), 2);
  }
  EXPECT_FALSE(ColourModulation(3, 3, table).IsOn());
  EXPECT_FALSE(ColourModulation(0, -1, table).IsOn());
  EXPECT_FALSE(ColourModulation(0, NAN, table).IsOn());
  EXPECT_FALSE(SizeModulation(2, 2).IsOn());
}

TEST(Colour, DataColoursAreSeenOnDarkPaper) {
  const PlotColours light;
  EXPECT_FALSE(light.IsDark());
  PlotColours dark;
  dark.paper = RGB(27, 30, 32);
  dark.text = RGB(252, 252, 252);
  ASSERT_TRUE(dark.IsDark());
  EXPECT_EQ(dark.ForPaper(0), dark.text);
  for (const COLORREF colour : {0x0000ffu, 0xff0000u, 0x00ff00u, 0xff00ffu, 0x800000u}) {
    EXPECT_EQ(light.ForPaper(colour), colour);
    EXPECT_GE(Contrast(ToQColor(dark.paper), ToQColor(dark.ForPaper(colour))), 3) << colour;
  }
}

}  // namespace
}  // namespace tallyscope
