// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>

#include "host/OpenTable.h"

namespace tallyscope {
namespace {

std::string Axes(CHostTable& table) {
  std::string names;
  for (int axis = 1; axis <= table.GetSpatialSize(); ++axis) names += (axis > 1 ? " " : "") + table.GetValueName(-axis);
  return names;
}

// The axes of a table with those headings and a row of numbers, or the refusal.
std::string Axes(const std::string& headings, const ReaderOptions& options = {}) {
  std::string row = "1";
  for (const char c : headings) row += c == ',' ? ",1" : "";
  const auto opened = OpenTableText(headings + "\n" + row + "\n", "t", options, nullptr);
  return opened.table ? Axes(*opened.table) : opened.error;
}

TEST(AxisGuess, Headings) {
  struct Case {
    const char* headings;
    const char* axes;
  };
  for (const auto& c : {
           Case{"x,y,cadmium,elev", "x y"},  // a height beside x and y is a measurement
           Case{"hole,from,to,X,Y,Z,Cu", "X Y Z"},
           Case{"lat,long,depth,mag", "long lat depth"},
           Case{"longitude,latitude,field,height_ell_m", "longitude latitude"},
           Case{"*ID,XCOO,YCOO,Ag,ELEV", "XCOO YCOO"},
           Case{"Xloc,Yloc,Landuse", "Xloc Yloc"},
           Case{"Easting (m),Northing (m),Elevation (m),Au", "Easting (m) Northing (m) Elevation (m)"},
           Case{"NORTH,EAST,ELEV", "EAST NORTH ELEV"},
           Case{"UTM_E,UTM_N,z", "UTM_E UTM_N z"},
           Case{"x_coord,y-coord,Z Coord", "x_coord y-coord Z Coord"},
           Case{"x,y,lon,lat,depth", "x y"},     // the plane pair goes first, and z with its pair
           Case{"x,lat,z", ""},                  // half a pair of each
           Case{"z,depth,elev", ""},             // z never comes alone
           Case{"xray,yield,zinc,eastern", ""},  // names that only begin so
           Case{"max_x,y", ""},
       }) {
    EXPECT_EQ(Axes(c.headings), c.axes) << c.headings;
  }
}

TEST(AxisGuess, ColumnsWithoutNumbersAreNoAxes) {
  const auto opened = OpenTableText("x,y,lon,lat,z\nwest,1,5,6,7\neast,2,5,6,7\n", "t", {}, nullptr);
  ASSERT_TRUE(opened.table);
  EXPECT_EQ(Axes(*opened.table), "lon lat z");
  const auto nulls = OpenTableText("x,y,z\n1,1,\n2,2,\n", "t", {}, nullptr);
  EXPECT_EQ(Axes(*nulls.table), "x y");
}

TEST(AxisGuess, Options) {
  EXPECT_EQ(Axes("x,y,elev,a", {.x = "a", .y = "x"}), "a x");
  EXPECT_EQ(Axes("x,y,elev,a", {.x = "a", .y = "x", .z = "elev"}), "a x elev");
  EXPECT_EQ(Axes("x,y,elev,a", {.z = "elev"}), "x y elev");
  EXPECT_EQ(Axes("x,y,z,elev", {.z = "elev"}), "x y elev") << "instead of the z that was guessed";
  EXPECT_EQ(Axes("x,y,z", {.noAxes = true}), "");
  EXPECT_EQ(Axes("a,b,elev", {.z = "elev"}),
            "No x and y were found in the headings of t that elev could go with: name them too.");
  EXPECT_EQ(Axes("x,y,zinc", {.x = "x", .y = "zink"}), "t has no field zink; did you mean zinc?");
  EXPECT_EQ(Axes("East,North,v", {.x = "EAST", .y = "North"}), "t has no field EAST; did you mean East?");
  EXPECT_EQ(Axes("a,b,c", {.x = "longitude", .y = "b"}), "t has no field longitude; it has a, b and c.");
  EXPECT_EQ(Axes("a,b,c", {.x = "a", .y = "a"}), "The field a of t can't be two axes at once.");
  const auto text = OpenTableText("a,b\nfoo,1\n", "t", {.x = "a", .y = "b"}, nullptr);
  EXPECT_EQ(text.error, "The field a of t holds texts and can't be an axis.");
}

}  // namespace
}  // namespace tallyscope
