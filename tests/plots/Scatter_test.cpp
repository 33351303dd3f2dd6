// SPDX-License-Identifier: MIT
// What the scatters draw: marks, their order, colours and sizes, the hover mark.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "plots/StationWalk.h"
#include "spatial/Stats_PointSearch.h"
#include "statistics/ProgressSink.h"
#include "statistics/Stats_RgnIndexList.h"
#include "tests/plots/ScatterTesting.h"

namespace tallyscope {
namespace {

using namespace testing_plots;
using Strings = std::vector<std::string>;

constexpr COLORREF kRed = 0x0000ff;

Strings Sorted(Strings texts) {
  std::sort(texts.begin(), texts.end());
  return texts;
}

void Choose(View& view, std::vector<int> stations) {
  auto region = std::make_unique<CStats_RgnIndexList>();
  region->stations = std::move(stations);
  view.plot.AddSelRegion(std::move(region));
}

// Four stations at the corners of a square; the colour field runs from 0 to 255, the size field from 0 to 10.
CMadeTable Square() {
  return TableFrom(R"(X    Y    colour size same
                      16   16   0      0    7
                      16   32   255    10   7
                      32   16   -      5    7
                      32   32   128    -    7)");
}

TEST(Scatter, DrawsAPlusForEachStationWithBothValues) {
  auto table = TableFrom(R"(U    V
                            0    0
                            256  256
                            128  64
                            -    10
                            10   -
                            700  10
                            280  10)");
  BiView view(table);
  const auto dc = view.Draw();
  // The last lies right of the frame but in the client area: drawn, and clipped away.
  EXPECT_EQ(Sorted(Texts(dc)), Sorted({"48,288 000000 1", "304,32 000000 1", "176,224 000000 1", "328,278 000000 1"}));
  for (const auto& mark : dc.marks) EXPECT_EQ(mark.clip, ToDrawRect(kFrame));
}

TEST(Scatter, DrawsSelectedStationsLastAndLarger) {
  auto table = TableFrom(R"(U V
                            10 10
                            20 20
                            30 30
                            40 40)");
  BiView view(table);
  Choose(view, {0, 2});
  EXPECT_EQ(Texts(view.Draw()), (Strings{"68,268 000000 1", "88,248 000000 1", "58,278 0000ff 2", "78,258 0000ff 2"}));
  view.plot.ClearLastSelRegion();
  for (const auto& text : Texts(view.Draw())) EXPECT_EQ(text.substr(text.find(' ')), " 000000 1");
}

// Nulls of the modulation: plain in the plane of two fields, not there on the map.
TEST(Scatter, ModulatesColourAndSize) {
  struct Case {
    const char* name;
    int colour, size;  // indices of the lists: none, X, Y, then the fields
    std::vector<int> chosen;
    Strings plane, map;
  };
  const Case cases[] = {
      {"colour",
       3,
       0,
       {},
       {"64,272 ff0000 1", "64,256 0000ff 1", "80,272 000000 1", "80,256 MIDDLE 1"},
       {"64,272 ff0000 1", "64,256 0000ff 1", "80,256 MIDDLE 1"}},
      {"colour, and the selection black",
       3,
       0,
       {1},
       {"64,272 ff0000 1", "80,272 000000 1", "80,256 MIDDLE 1", "64,256 000000 2"},
       {"64,272 ff0000 1", "80,256 MIDDLE 1", "64,256 000000 2"}},
      {"size",
       0,
       4,
       {},
       {"64,272 000000 0", "64,256 000000 4", "80,272 000000 2", "80,256 000000 1"},
       {"64,272 000000 0", "64,256 000000 4", "80,272 000000 2"}},
      {"size, and the selection red",
       0,
       4,
       {1},
       {"64,272 000000 0", "80,272 000000 2", "80,256 000000 1", "64,256 0000ff 5"},
       {"64,272 000000 0", "80,272 000000 2", "64,256 0000ff 5"}},
      {"both",
       3,
       4,
       {},
       {"64,272 ff0000 0", "64,256 0000ff 4", "80,272 000000 2", "80,256 MIDDLE 1"},
       {"64,272 ff0000 0", "64,256 0000ff 4"}},
      {"equal values modulate nothing",
       5,
       5,
       {3},
       {"64,272 000000 1", "64,256 000000 1", "80,272 000000 1", "80,256 0000ff 2"},
       {"64,272 000000 1", "64,256 000000 1", "80,272 000000 1", "80,256 0000ff 2"}},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.name);
    auto table = Square();
    BiView plane(table, -1, -2);
    StView map(table);
    for (View* view : {static_cast<View*>(&plane), static_cast<View*>(&map)}) {
      view->plot.SetColourDim(each.colour);
      view->plot.SetSizeDim(each.size);
      if (!each.chosen.empty()) Choose(*view, each.chosen);
      // 128 of 0 to 255 is past the middle of 256 steps.
      char middle[7];
      std::snprintf(middle, sizeof middle, "%06x", view->plot.colourTable[128]);
      auto wanted = view == &plane ? each.plane : each.map;
      for (auto& text : wanted) {
        if (const auto at = text.find("MIDDLE"); at != std::string::npos) text.replace(at, 6, middle);
      }
      EXPECT_EQ(Sorted(Texts(view->Draw())), Sorted(wanted));
    }
  }
}

// A view of few stations reads them one by one, a view of many reads the fields from end to end.
TEST(Scatter, LooksTheSameInEveryView) {
  auto table = NastyTable(4000, 21);
  BiView plane(table);
  StView map(table);
  for (View* view : {static_cast<View*>(&plane), static_cast<View*>(&map)}) {
    view->plot.SetColourDim(5);
    view->plot.SetSizeDim(5);
    view->plot.colourLow = view->plot.sizeLow = 0;  // past the infinities
    view->plot.colourHigh = view->plot.sizeHigh = 256;
    std::vector<int> chosen;
    for (int i = 0; i < 4000; i += 3) chosen.push_back(i);
    Choose(*view, chosen);
    Strings whole, parts;
    for (const auto& [mark, clip] : view->Draw().marks) {
      if (mark.x > 48.25F && mark.x < 303.75F && mark.y > 32.25F && mark.y < 287.75F) whole.push_back(Text(mark));
    }
    for (int k = 0; k < 64; ++k) {
      // The frame shows an eighth of each axis, and the client area a little more.
      const double left = k % 8 * 32, bottom = k / 8 * 32;
      view->Show(left, bottom, left + 32, bottom + 32);
      for (auto [mark, clip] : view->Draw().marks) {
        const double x = left + (mark.x - kFrame.left) / 8.0, y = bottom + (kFrame.bottom - mark.y) / 8.0;
        if (x < left || x >= left + 32 || y < bottom || y >= bottom + 32) continue;
        mark.x = static_cast<float>(kFrame.left + x);
        mark.y = static_cast<float>(kFrame.bottom - y);
        if (mark.x > 48.25F && mark.x < 303.75F && mark.y > 32.25F && mark.y < 287.75F) parts.push_back(Text(mark));
      }
    }
    EXPECT_GT(whole.size(), 2000U);
    EXPECT_EQ(Sorted(whole), Sorted(parts));
  }
}

TEST(Scatter, MapsTheRangeOfAModulationOnce) {
  auto table = Square();
  BiView view(table, -1, -2);
  view.plot.SetColourDim(3);
  EXPECT_GT(view.plot.colourLow, view.plot.colourHigh);
  view.Draw();
  EXPECT_EQ(view.plot.colourLow, 0);
  EXPECT_EQ(view.plot.colourHigh, 255);
  view.plot.SetColourDim(99);  // no such entry
  EXPECT_EQ(view.plot.colourDim, kNoDim);
}

// No number, no range: that is found once, not at every repaint.
TEST(Scatter, LooksForARangeOnce) {
  class Table : public CMadeTable {
   public:
    using CMadeTable::CMadeTable;
    int ReadValues(int field, int first, int count, double* values, unsigned char* valid) override {
      reads += field == 2 ? 1 : 0;
      return CMadeTable::ReadValues(field, first, count, values, valid);
    }
    int reads = 0;
  };
  for (const bool hasNulls : {false, true}) {
    const auto none = made::Column({NAN, NAN, NAN}, "none");
    Table table(
        {made::Ramp(3, 0, 100), made::Ramp(3, 0, 200), hasNulls ? made::WithNulls(none, made::Every(1)) : none});
    BiView view(table);
    view.plot.SetColourDim(3);
    view.plot.SetSizeDim(3);
    EXPECT_EQ(view.Draw().marks.size(), 3U);
    const int before = table.reads;
    EXPECT_GT(before, 0);
    view.Draw();
    EXPECT_EQ(table.reads, before);
  }
}

// A drawing reads what has been prepared and makes nothing, also after a cancel.
TEST(Scatter, DrawsWhatIsPrepared) {
  class Sink : public CProgressSink {
   public:
    bool OnProgress(int) override { return --left >= 0; }
    void SetTask(const char*, int) override {}
    int left = 0;
  };
  auto table = NastyTable(3000, 5);
  BiView plane(table);
  StView map(table);
  for (View* view : {static_cast<View*>(&plane), static_cast<View*>(&map)}) {
    auto& plot = view->plot;
    table.DestroyPointSearch();
    plot.SetColourDim(5);
    plot.SetSizeDim(5);
    const auto draw = [&] {
      RecorderDC dc(kClient);
      plot.RenderLayer(dc);
      return dc;
    };
    const auto bare = draw();
    EXPECT_TRUE(bare.marks.empty() && bare.LinesOf(0xff00ff, 2).size() < 2) << "no stations, no quantiles";
    EXPECT_GT(plot.colourLow, plot.colourHigh);
    EXPECT_FALSE(table.GetPointSearch()->IsPartitioned());
    int cancels = 0;
    for (bool done = false; !done; ++cancels) {
      ASSERT_LT(cancels, 10000);
      plot.SetColourDim(5);
      Sink sink;
      sink.left = cancels;
      done = plot.Prepare(&sink);
      EXPECT_EQ(done, sink.left >= 0) << cancels;
      draw();
    }
    EXPECT_GT(cancels, 3);
    const auto marks = draw().marks.size();
    EXPECT_GT(marks, 1000U);
    EXPECT_EQ(marks, view->Draw().marks.size());
  }
}

TEST(Scatter, ShowsWhatLiesAsFarApartAsNumbersDo) {
  const std::vector<double> ends{-1.7e308, -1e308, 0, 1e308, 1.7e308};
  CMadeTable table({made::Column(ends, "X"), made::Column(ends, "Y"), made::Column(ends, "U")}, 2);
  StView view(table);
  view.map.TakeExtents();
  view.plot.ZoomFit();
  view.plot.SetColourDim(3);
  view.plot.SetSizeDim(3);
  auto marks = view.Draw().marks;
  ASSERT_EQ(marks.size(), 5U);
  std::sort(marks.begin(), marks.end(), [](auto& a, auto& b) { return a.mark.x < b.mark.x; });
  const std::size_t colours[] = {0, 52, 128, 203, 255};
  for (std::size_t i = 0; i < 5; ++i) {
    const auto& mark = marks[i].mark;
    EXPECT_EQ(mark.colour, view.plot.colourTable[colours[i]]) << i;
    EXPECT_TRUE(mark.x > kFrame.left && mark.x < kFrame.right && mark.y > kFrame.top && mark.y < kFrame.bottom)
        << mark.x;
    EXPECT_EQ(view.plot.GetClosestStation({ends[i], ends[i], 0}, {2, 2}), static_cast<int>(i));
  }
  EXPECT_GT(marks[4].mark.x - marks[0].mark.x, 200);
}

// The stations of the search one by one, through the chain.
std::vector<PlotMark> PlainMarks(View& view) {
  const auto [dimX, dimY] = DimsOf(view);
  auto* search = view.table.GetPointSearch();
  search->SetFields(dimX, dimY, -3, 2);
  view.table.PreparePointSearch(nullptr);
  search->SearchBox(view.plot.Rect2World(CRect{0, 0, kClient.cx, kClient.cy}.Grown(1)));
  std::vector<PlotMark> marks;
  for (int station; search->GetNext(station, 1);) {
    const auto at = view.plot.World2Device(view.table.GetValue(dimX, station), view.table.GetValue(dimY, station));
    marks.push_back({static_cast<float>(at[0]), static_cast<float>(at[1]), 0, 1});
  }
  return marks;
}

TEST(Scatter, AgreesWithThePlainWalkInEveryView) {
  const Box views[] = {{{0, 0, 0}, {256, 256, 1}, 1},
                       {{100, 40, 0}, {120, 45, 1}, 1},
                       {{-1e6, -1e6, 0}, {1e6, 1e6, 1}, 1},
                       {{127.4999, 99.99999, 0}, {127.5001, 100.00001, 1}, 1},
                       {{900, 900, 0}, {901, 901, 1}, 1}};
  for (const int stations : {1, 60, 97, 1200, 30000}) {
    auto table = NastyTable(stations, static_cast<unsigned>(stations));
    BiView plane(table);
    StView map(table);
    for (View* view : {static_cast<View*>(&plane), static_cast<View*>(&map)}) {
      for (const bool logarithmic : {false, true}) {
        for (auto& axis : view->plot.maps) axis = {logarithmic ? AxisMap::kLogarithmic : AxisMap::kLinear, 4};
        for (const Box& box : views) {
          const auto low = view->plot.World2Data(box.min);
          const auto high = view->plot.World2Data(box.max);
          view->Show(low[0], low[1], high[0], high[1]);
          const auto drawn = view->Draw().marks;
          const auto plain = PlainMarks(*view);
          ASSERT_EQ(drawn.size(), plain.size()) << stations << " stations, left " << box.min[0];
          for (std::size_t i = 0; i < plain.size(); ++i) {
            ASSERT_NEAR(drawn[i].mark.x, plain[i].x, 1e-3);
            ASSERT_NEAR(drawn[i].mark.y, plain[i].y, 1e-3);
          }
        }
      }
    }
  }
}

TEST(Scatter, ShowsWhatHasNoPlaceInWords) {
  struct Case {
    const char* text;
    const char* plane;
    const char* map;
  };
  const Case cases[] = {
      {"X Y U V\n", "No valid values in U", "No valid values in X"},
      {"X Y U V\n1 - - 2\n", "No valid values in U", "No valid values in Y"},
      {"X Y U V\n1 - 2 -\n- 1 - 2\n", "No station has a value in both U and V",
       "No station has a value in both X and Y"},
      {"X Y U V\n1 2 3 4\n", "", ""},
      {"U V\n1 2\n", "", "The table has no X and Y"},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.text);
    auto table = TableFrom(each.text);
    BiView plane(table);
    StView map(table);
    plane.plot.Prepare(nullptr);
    EXPECT_EQ(plane.plot.GetEmptyReason(), each.plane);
    map.plot.Prepare(nullptr);
    EXPECT_EQ(map.plot.GetEmptyReason(), each.map);
    plane.bi.TakeExtents();
    map.map.TakeExtents();
    for (View* view : {static_cast<View*>(&plane), static_cast<View*>(&map)}) {
      const bool isEmpty = !view->plot.GetEmptyReason().empty();
      view->container.InitialiseExtents();
      view->container.ZoomFit();
      EXPECT_EQ(view->Draw().marks.size(), isEmpty ? 0U : 1U);
      const CRect& frame = view->plot.GetFrame();
      const CPoint middle{(frame.left + frame.right) / 2, (frame.top + frame.bottom) / 2};
      EXPECT_EQ(view->plot.PickAt(middle), isEmpty ? -1 : 0);  // where a lone station stands
    }
  }
}

TEST(Scatter, DrawsNothingWithoutItsParts) {
  auto table = Square();
  for (int missing = 0; missing < 3; ++missing) {
    BiView plane(table, -1, -2);
    StView map(table);
    for (View* view : {static_cast<View*>(&plane), static_cast<View*>(&map)}) {
      if (missing == 0) view->plot.calculator = nullptr;
      if (missing == 1) view->plot.spatial = nullptr;
      if (missing == 2) view->plot.data = nullptr;
      view->plot.hover = 0;
      const auto dc = view->Draw();
      EXPECT_TRUE(dc.marks.empty() && dc.lines.empty() && dc.texts.empty());
    }
    // Each gesture needs what it uses.
    CRect all{0, 0, 300, 300};
    CPoint place{64, 272};
    EXPECT_FALSE(plane.plot.Select(all, true));
    EXPECT_EQ(map.plot.Select(all, true), missing == 0);
    EXPECT_EQ(plane.plot.Select(place, true), missing == 1);
    EXPECT_EQ(map.plot.Select(place, true), missing != 2);
    EXPECT_EQ(plane.plot.Describe(0).empty(), missing != 1);
  }
}

// Two lines of a plus: across, then upright.
void ExpectPlus(const RecorderDC& dc, double x, double y, double width) {
  const auto lines = dc.LinesOf(kRed, width);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].points, (std::vector{DrawPoint{x - 8, y}, DrawPoint{x + 8, y}}));
  EXPECT_EQ(lines[1].points, (std::vector{DrawPoint{x, y - 8}, DrawPoint{x, y + 8}}));
  EXPECT_EQ(lines[0].pen.ends, PenEnds::kSquare);
  EXPECT_EQ(lines[0].clip, ToDrawRect(kFrame));
}

TEST(Scatter, MarksTheHoverStation) {
  auto table = TableFrom(R"(X   Y   U   V
                            64  64  64  64
                            10  -   -   10)");
  BiView plane(table);
  StView map(table);
  for (View* view : {static_cast<View*>(&plane), static_cast<View*>(&map)}) {
    auto& plot = view->plot;
    EXPECT_TRUE(view->Draw().LinesOf(kRed).empty());
    plot.glance = 0;
    ExpectPlus(view->Draw(), 112, 224, 1);
    CPoint near{115, 220};
    EXPECT_FALSE(plot.SelectMove(near, true));  // no gesture runs
    EXPECT_TRUE(plot.Select(near, true));
    EXPECT_EQ(plot.hover, 0);
    EXPECT_EQ(plot.hoverX, view == &plane ? 64 : 67);  // the map's mark finds the station when it is drawn
    ExpectPlus(view->Draw(), 112, 224, 4);
    CPoint far{200, 100};
    EXPECT_TRUE(plot.SelectMove(far, true));
    EXPECT_EQ(plot.hover, -1);
    ExpectPlus(view->Draw(), 200, 100, 4);  // nothing near: at the pointer
    plot.SetHover(1);                       // a null: where it was
    ExpectPlus(view->Draw(), 200, 100, 4);
    EXPECT_TRUE(plot.CancelSelect(far, true));
    plot.glance = -1;
    EXPECT_EQ(plot.hover, -2);
    EXPECT_TRUE(view->Draw().LinesOf(kRed).empty());
  }
}

TEST(Scatter, TellsAStationAndItsTable) {
  auto table = TableFrom(R"(X       Y       zinc  lead  copper
                            181072  333611  1022  299   85
                            181025  333558  -     277   81
                            181165  333537  640   199   -)");
  BiView plane(table);
  StView map(table);
  EXPECT_EQ(plane.plot.Describe(0), "station 1: X 181072, Y 333611, zinc 1022, lead 299");
  EXPECT_EQ(plane.plot.Describe(3), "");
  map.plot.SetColourDim(5);
  map.plot.SetSizeDim(1);
  EXPECT_EQ(map.plot.Describe(2), "station 3: X 181165, Y 333537, copper null");
  EXPECT_EQ(map.plot.GetDataText(),
            "Station\tX\tY\tcopper\n1\t181072\t333611\t85\n2\t181025\t333558\t81\n3\t181165\t333537\t\n");
  Choose(plane, {2});
  EXPECT_EQ(plane.plot.GetDataText(), "Station\tzinc\tlead\tSelected\n1\t1022\t299\t0\n3\t640\t199\t1\n");
  double x = 0, y = 0;
  EXPECT_TRUE(plane.plot.GetPlace(2, x, y));
  EXPECT_EQ(x, 640);
  EXPECT_FALSE(plane.plot.GetPlace(1, x, y));
  EXPECT_EQ(plane.plot.GetHoverCount(), 3);
}

TEST(Scatter, TheMapKeepsUnitsEqual) {
  auto table = TableFrom("X Y\n0 0\n1000 10\n");
  StView view(table);
  view.map.TakeExtents();
  EXPECT_EQ(view.plot.titleX, "X");
  EXPECT_FALSE(view.plot.allowDialogX || view.plot.allowDialogY);
  view.container.InitialiseExtents();
  view.container.ZoomFit();
  const auto low = view.plot.World2Device(0, 0);
  const auto high = view.plot.World2Device(1000, 1000);
  EXPECT_NEAR(high[0] - low[0], low[1] - high[1], 1e-6);
  EXPECT_LT(high[0] - low[0], view.plot.GetFrame().Width());
}

}  // namespace
}  // namespace tallyscope
