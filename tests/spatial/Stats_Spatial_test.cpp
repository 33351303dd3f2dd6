// SPDX-License-Identifier: MIT
#include "spatial/Stats_Spatial.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <random>

#include "SpatialTesting.h"
#include "spatial/PolygonTest.h"
#include "spatial/Stats_PointSearch.h"
#include "statistics/ProgressSink.h"
#include "statistics/Stats_RgnDataRange.h"
#include "statistics/Stats_RgnIndexList.h"
#include "statistics/Stats_RgnIndexRange.h"
#include "statistics/Stats_RgnInvert.h"
#include "statistics/Stats_RgnPoly.h"
#include "statistics/Stats_RgnRect.h"
#include "statistics/Stats_RgnSelAll.h"

namespace tallyscope {
namespace {

using testing_spatial::BoundsOf;
using testing_spatial::Cloud;
using testing_spatial::kNull;
using testing_spatial::NastyClouds;
using testing_spatial::Table;

constexpr double kPi = 3.14159265358979323846;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::vector<int> Selected(const CStats_Spatial& spatial) {
  std::vector<int> stations;
  for (int i = 0; i < spatial.bitmaps[0].GetSize(); ++i) {
    if (spatial.bitmaps[0].Get(i)) stations.push_back(i);
  }
  return stations;
}

template <class Region>
std::unique_ptr<Region> BoxRegion(Point3 from, Point3 to, bool include = true) {
  auto region = std::make_unique<Region>();
  region->box = {from, to, 1};
  region->include = include;
  return region;
}

// Six stations along x, the last without a value and the fifth without a place.
CMadeTable SixStations() {
  return Table(2, {{0, 1, 2, 3, kNull, 5}, {0, 0, 1, 1, 0, 0}, {10, 20, 30, 40, 50, kNull}});
}

TEST(Stats_Spatial, EachRegionTakesItsStations) {
  CMadeTable table = SixStations();
  const auto list = [](std::vector<int> stations) {
    auto region = std::make_unique<CStats_RgnIndexList>();
    region->stations = std::move(stations);
    return region;
  };
  const auto values = [](double low, double high) {
    auto region = BoxRegion<CStats_RgnDataRange>({low, 0, 0}, {high, 0, 0});
    region->field = 0;
    return region;
  };
  const auto polygon = [](std::vector<Point3> points) {
    auto region = std::make_unique<CStats_RgnPoly>();
    region->points = std::move(points);
    return region;
  };
  const auto fields = [](std::unique_ptr<CStats_Rgn> region, int dim1, int dim2) {
    region->SetDims(dim1, dim2, -3, 2);
    return region;
  };
  struct Row {
    const char* name;
    std::unique_ptr<CStats_Rgn> region;
    std::vector<int> taken;
  };
  Row rows[] = {
      {"rectangle, faces in", BoxRegion<CStats_RgnRect>({1, 0, 0}, {3, 1, 0}), {1, 2, 3}},
      {"corners the other way round", BoxRegion<CStats_RgnRect>({3, 1, 0}, {1, 0, 0}), {1, 2, 3}},
      {"rectangle on a field", fields(BoxRegion<CStats_RgnRect>({15, -1, 0}, {45, 0.5, 0}), 0, -2), {1}},
      {"polygon, an edge through stations", polygon({{0, 0, 0}, {5, 0, 0}, {5, 2, 0}}), {0, 1, 3, 5}},
      {"polygon without vertices", polygon({}), {}},
      {"index range", BoxRegion<CStats_RgnIndexRange>({1.9, 0, 0}, {3.2, 0, 0}), {1, 2, 3}},
      {"index range beyond both ends",
       BoxRegion<CStats_RgnIndexRange>({-1e300, 0, 0}, {1e300, 0, 0}),
       {0, 1, 2, 3, 4, 5}},
      {"index range all behind the end", BoxRegion<CStats_RgnIndexRange>({70, 0, 0}, {80, 0, 0}), {5}},
      {"index range backwards", BoxRegion<CStats_RgnIndexRange>({3, 0, 0}, {1, 0, 0}), {}},
      {"index list, with strangers", list({4, 2, 2, -1, 6}), {2, 4}},
      {"data range, ends in, nulls out", values(20, 50), {1, 2, 3, 4}},
      {"all", std::make_unique<CStats_RgnSelAll>(), {0, 1, 2, 3, 4, 5}},
      {"inversion of none", std::make_unique<CStats_RgnInvert>(), {0, 1, 2, 3, 4, 5}},
  };
  for (Row& row : rows) {
    for (const bool records : {false, true}) {
      SCOPED_TRACE(row.name);
      CStats_Spatial spatial;
      spatial.Add(&table, 0);
      if (records) spatial.extractFlags |= CStats_Spatial::kChanges;
      spatial.AddSelRegion(row.region->Clone());
      EXPECT_TRUE(spatial.GetFlags(0) & 1);
      EXPECT_EQ(Selected(spatial), row.taken);
      std::vector<int> changed = spatial.changed[0];
      std::sort(changed.begin(), changed.end());
      EXPECT_EQ(changed, records ? row.taken : std::vector<int>{});

      // Excluding it from all leaves the rest, but for an inversion, and for stations on a polygon's edge.
      auto excluding = row.region->Clone();
      excluding->include = false;
      if (row.region->GetType() == CStats_Rgn::kInvert || row.region->GetType() == CStats_Rgn::kPoly) continue;
      CStats_Spatial rest;
      rest.Add(&table, 0);
      rest.AddSelRegion(std::make_unique<CStats_RgnSelAll>());
      if (records) rest.extractFlags |= CStats_Spatial::kChanges;
      rest.AddSelRegion(std::move(excluding));
      EXPECT_EQ(Selected(rest).size() + row.taken.size(), 6u);
      EXPECT_EQ(rest.changed[0].size(), records ? row.taken.size() : 0u);
    }
  }
}

TEST(Stats_Spatial, StationsOnAnEdgeStayWhereAPolygonExcludes) {
  CMadeTable table = SixStations();
  CStats_Spatial spatial;
  spatial.Add(&table, 0);
  spatial.AddSelRegion(std::make_unique<CStats_RgnSelAll>());
  auto polygon = std::make_unique<CStats_RgnPoly>();
  polygon->points = {{0, 0, 0}, {5, 0, 0}, {5, 3, 0}, {0, 3, 0}};
  polygon->include = false;
  spatial.AddSelRegion(std::move(polygon));
  EXPECT_EQ(Selected(spatial), (std::vector<int>{0, 1, 4, 5})) << "2 and 3 lie inside, 4 nowhere";
}

TEST(Stats_Spatial, ARegionThatCantBeSearchedFails) {
  CMadeTable line = Table(1, {{0, 1, 2}, {5, 6, 7}});
  CStats_Spatial spatial;
  spatial.Add(&line, 0);
  spatial.ResetSpatialDims();
  spatial.AddSelRegion(BoxRegion<CStats_RgnIndexRange>({1, 0, 0}, {2, 0, 0}));
  EXPECT_EQ(Selected(spatial), (std::vector<int>{1, 2})) << "rows need no search";
  spatial.AddSelRegion(BoxRegion<CStats_RgnRect>({0, 0, 0}, {9, 9, 0}));
  EXPECT_FALSE(spatial.GetFlags(0) & 1);
  EXPECT_EQ(Selected(spatial), (std::vector<int>{1, 2}));
  // A replay skips it, goes on and ends in false.
  spatial.extractFlags &= ~static_cast<unsigned>(CStats_Spatial::kIncremental);
  spatial.regions.Append(BoxRegion<CStats_RgnIndexRange>({2, 0, 0}, {2, 0, 0}, false));
  EXPECT_FALSE(spatial.Calculate(1, nullptr));
  EXPECT_EQ(Selected(spatial), (std::vector<int>{1}));
  auto fields = BoxRegion<CStats_RgnRect>({0, 0, 0}, {1, 9, 0});
  fields->SetDims(-1, 0, -3, 2);
  CStats_Spatial fresh;
  fresh.Add(&line, 0);
  fresh.AddSelRegion(std::move(fields));
  EXPECT_EQ(Selected(fresh), (std::vector<int>{0, 1})) << "one axis and a field";
}

TEST(Stats_Spatial, RecordsChangesInTheOrderOfTheSearch) {
  CMadeTable table = NastyClouds()[4].Table(2);
  CStats_Spatial spatial;
  spatial.Add(&table, 0);
  spatial.extractFlags |= CStats_Spatial::kChanges;
  spatial.AddSelRegion(BoxRegion<CStats_RgnIndexRange>({0, 0, 0}, {500, 0, 0}));
  spatial.AddSelRegion(BoxRegion<CStats_RgnRect>({0.2, 0.2, 0}, {0.6, 0.9, 0}, false));
  std::vector<int> expected;
  CStats_PointSearch& search = *table.GetPointSearch();
  search.SearchBox({{0.2, 0.2, 0}, {0.6, 0.9, 0}, 1});
  for (int station = 0; search.GetNext(station, 1);) {
    if (station <= 500) expected.push_back(station);
  }
  EXPECT_FALSE(std::is_sorted(expected.begin(), expected.end()));
  EXPECT_EQ(spatial.changed[0], expected);
}

// Inside a leaf of nine stations or more whose corners are all in the polygon, with none of its vertices, all are
// taken.
TEST(Stats_Spatial, PolygonsOverClouds) {
  std::mt19937_64 random(17);
  for (const Cloud& cloud : NastyClouds()) {
    SCOPED_TRACE(cloud.name);
    CMadeTable table = cloud.Table(2);
    const Box bounds = BoundsOf(cloud);
    for (int round = 0; round < 20; ++round) {
      auto region = std::make_unique<CStats_RgnPoly>();
      for (int i = 0; i < 3 + round; ++i) {
        Point3 vertex{};
        for (std::size_t a = 0; a < 2; ++a) {
          vertex[a] = bounds.min[a] + static_cast<double>(random() % 21) / 20 * (bounds.max[a] - bounds.min[a]);
        }
        region->points.push_back(vertex);
      }
      PolygonTest polygon(region->points);
      Box box = polygon.GetBounds();
      box.min[2] = -1e20;
      CStats_Spatial spatial;
      spatial.Add(&table, 0);
      spatial.AddSelRegion(std::move(region));
      std::vector<int> expected;
      CPointSearch::Leaves leaves;
      table.GetPointSearch()->CollectLeavesInBox(leaves, box, false);
      for (const auto* leaf : leaves) {
        const auto out = [&](double x, double y) {
          PolygonTest::Place place{};
          polygon.Classify(polygon.GetWhole(), &x, &y, 1, &place);
          return place == PolygonTest::kOutside;
        };
        const Box& cell = leaf->box;
        const bool whole = leaf->points.size() >= 9 && !polygon.HasVertexIn(cell) && !out(cell.min[0], cell.min[1]) &&
                           !out(cell.min[0], cell.max[1]) && !out(cell.max[0], cell.min[1]) &&
                           !out(cell.max[0], cell.max[1]);
        for (const int station : leaf->points) {
          if (whole || !out(table.GetValue(-1, station), table.GetValue(-2, station))) expected.push_back(station);
        }
      }
      std::sort(expected.begin(), expected.end());
      ASSERT_EQ(Selected(spatial), expected);
    }
  }
}

TEST(Stats_Spatial, RegularCellsHoldTheStationsAroundTheirCentres) {
  for (const Cloud& cloud : {NastyClouds()[4], NastyClouds()[7], NastyClouds()[10]}) {
    SCOPED_TRACE(cloud.name);
    CMadeTable table = cloud.Table(3);
    CStats_Spatial spatial;
    spatial.Add(&table, 0);
    spatial.ResetSpatialDims();
    spatial.extractFlags = CStats_Spatial::kRegularCells | CStats_Spatial::kLists | CStats_Spatial::kBitmaps |
                           CStats_Spatial::kExtractX | CStats_Spatial::kExtractZ;
    spatial.cellBox = {{-0.3, 0, -0.5}, {0.3, 0, 0.5}, 1};  // cells overlap along x
    spatial.origin = {0.2, 99, 0.5};
    spatial.cellCount = {4, 7, 2};
    spatial.cellStep = {0.5, 1, 1};
    ASSERT_TRUE(spatial.Calculate(1, nullptr));
    ASSERT_EQ(spatial.GetListCount(), 8) << "the axis without its flag counts once";
    for (int k = 0; k < 2; ++k) {
      for (int i = 0; i < 4; ++i) {
        const auto& list = spatial.lists[static_cast<std::size_t>(4 * k + i)];
        const double x = 0.2 + i * 0.5, z = 0.5 + k * 1.0;
        std::vector<int> expected;
        for (int s = 0; s < table.GetSize(); ++s) {
          const double sx = table.GetValue(-1, s), sz = table.GetValue(-3, s);
          const bool placed = table.IsValueValid(-1, s) && table.IsValueValid(-2, s) && table.IsValueValid(-3, s);
          if (placed && x - 0.3 <= sx && sx <= x + 0.3 && z - 0.5 <= sz && sz <= z + 0.5) expected.push_back(s);
        }
        std::vector<int> sorted = list;
        std::sort(sorted.begin(), sorted.end());
        EXPECT_EQ(sorted, expected);
        const bvector& bits = spatial.bitmaps[static_cast<std::size_t>(4 * k + i)];
        for (const int station : expected) EXPECT_TRUE(bits.Get(station));
      }
    }
  }
}

// Refused before memory is asked for.
TEST(Stats_Spatial, MoreCellsThanReason) {
  CMadeTable table = SixStations();
  CStats_Spatial spatial;
  spatial.Add(&table, 0);
  constexpr int kMost = std::numeric_limits<int>::max();
  for (const std::array<int, 3>& count :
       {std::array<int, 3>{100'000, 100'000, 1}, {kMost, kMost, kMost}, {1, 1 << 25, 1}}) {
    for (const unsigned what : {CStats_Spatial::kLists, CStats_Spatial::kBitmaps}) {
      spatial.extractFlags = CStats_Spatial::kRegularCells | CStats_Spatial::kExtractX | CStats_Spatial::kExtractY |
                             CStats_Spatial::kExtractZ | what;
      spatial.cellCount = count;
      EXPECT_FALSE(spatial.Calculate(1, nullptr));
    }
    spatial.pairCount = count;
    for (const unsigned mode : {CStats_Spatial::kRing, CStats_Spatial::kPairX}) {
      spatial.pairFlags = CStats_Spatial::kPairCells | CStats_Spatial::kPairY | CStats_Spatial::kPairZ | mode;
      EXPECT_FALSE(spatial.Calculate(2, nullptr));
    }
  }
  // Few enough as lists, but not as a bitmap of all stations each.
  CMadeTable large({made::Ramp(100'000, 0, 1), made::Ramp(100'000, 0, 1), made::Ramp(100'000, 0, 1)}, 2);
  CStats_Spatial many;
  many.Add(&large, 0);
  many.extractFlags = CStats_Spatial::kRegularCells | CStats_Spatial::kExtractX | CStats_Spatial::kBitmaps;
  many.cellCount = {1'000'000, 1, 1};
  EXPECT_FALSE(many.Calculate(1, nullptr));
}

TEST(Stats_Spatial, ABitmapIsMadeWhenNothingIsAskedFor) {
  CMadeTable table = SixStations();
  CStats_Spatial spatial;
  spatial.Add(&table, 0);
  spatial.extractFlags = 0;
  spatial.regions.Append(std::make_unique<CStats_RgnSelAll>());
  ASSERT_TRUE(spatial.Calculate(1, nullptr));
  EXPECT_EQ(Selected(spatial).size(), 6u);
  EXPECT_TRUE(spatial.lists[0].empty());
}

// Lag pairs.

using Pairs = std::vector<std::pair<int, int>>;

Pairs PairsOf(const CStats_Spatial& spatial, std::size_t cell) {
  Pairs pairs;
  for (std::size_t k = 0; k < spatial.lists[2 * cell].size(); ++k) {
    pairs.emplace_back(spatial.lists[2 * cell][k], spatial.lists[2 * cell + 1][k]);
  }
  return pairs;
}

Pairs AllPairs(CMadeTable& table, bool values, const std::function<bool(double dx, double dy)>& passes) {
  Pairs pairs;
  const auto qualifies = [&](int s) {
    return table.IsValueValid(-1, s) && table.IsValueValid(-2, s) && (!values || table.IsValueValid(0, s));
  };
  for (int s = 0; s < table.GetSize(); ++s) {
    for (int t = 0; t < table.GetSize(); ++t) {
      if (qualifies(s) && qualifies(t) &&
          passes(table.GetValue(-1, t) - table.GetValue(-1, s), table.GetValue(-2, t) - table.GetValue(-2, s))) {
        pairs.emplace_back(s, t);
      }
    }
  }
  return pairs;
}

// A lattice of 12 by 12, so that windows and rings meet stations exactly; some without a place, some without a value.
CMadeTable Lattice() {
  std::vector<std::vector<double>> columns(3);
  for (int i = 0; i < 144; ++i) {
    columns[0].push_back(i % 17 == 0 ? kNull : i % 12);
    columns[1].push_back(i / 12);
    columns[2].push_back(i % 5 == 0 ? kNull : i);
  }
  return Table(2, columns);
}

TEST(Stats_Spatial, BoxPairsLieInTheWindow) {
  CMadeTable table = Lattice();
  CStats_Spatial spatial;
  spatial.Add(&table, 0);
  spatial.pairFlags = CStats_Spatial::kPairX | CStats_Spatial::kPairY | CStats_Spatial::kPairValues;
  spatial.pairBox = {{-1, -0.5, 0}, {1, 0.5, 0}, 1};
  spatial.pairOffset = {2, 1, 0};
  ASSERT_TRUE(spatial.Calculate(2, nullptr));
  Pairs found = PairsOf(spatial, 0);
  EXPECT_TRUE(std::is_sorted(found.begin(), found.end(), [](auto& a, auto& b) { return a.first < b.first; }));
  std::sort(found.begin(), found.end());
  EXPECT_EQ(found,
            AllPairs(table, true, [](double dx, double dy) { return dx >= 1 && dx <= 3 && dy >= 0.5 && dy <= 1.5; }));

  // An even number of cells lies at half steps; an inactive axis takes everything.
  spatial.pairFlags = CStats_Spatial::kPairX | CStats_Spatial::kPairCells;
  spatial.pairBox = {{-0.5, 0, 0}, {0.5, 0, 0}, 1};
  spatial.pairCount = {4, 3, 9};
  spatial.ClearFlags(0, 2);
  ASSERT_TRUE(spatial.Calculate(2, nullptr));
  ASSERT_EQ(spatial.GetListCount(), 8);
  for (std::size_t cell = 0; cell < 4; ++cell) {
    found = PairsOf(spatial, cell);
    std::sort(found.begin(), found.end());
    const double at = 2 * (static_cast<double>(cell) - 1.5);
    EXPECT_EQ(found, AllPairs(table, false, [at](double dx, double) { return dx >= at - 0.5 && dx <= at + 0.5; }));
  }
}

TEST(Stats_Spatial, RingPairsLieInTheSector) {
  CMadeTable table = Lattice();
  CStats_Spatial spatial;
  spatial.Add(&table, 0);
  spatial.pairFlags = CStats_Spatial::kRing | CStats_Spatial::kPairCells;
  spatial.range = 2;
  spatial.width = 1;
  spatial.azimuth = -0.2;
  spatial.azimuthTolerance = 0.6;
  spatial.pairCount = {3, 8, 0};
  for (const bool limited : {false, true}) {
    spatial.limitWidth = limited;
    spatial.maxWidth = 1.5;
    spatial.ClearFlags(0, 2);
    ASSERT_TRUE(spatial.Calculate(2, nullptr));
    ASSERT_EQ(spatial.GetListCount(), 48);
    for (int j = 0; j < 8; ++j) {
      for (int i = 1; i < 3; ++i) {
        Pairs found = PairsOf(spatial, static_cast<std::size_t>(3 * j + i));
        std::sort(found.begin(), found.end());
        const double inner = 2 * i - 0.5, outer = 2 * i + 0.5, middle = -0.2 + j * kPi / 4;
        const double half = limited ? std::min(0.6, 0.75 / outer) : 0.6;
        EXPECT_EQ(found, AllPairs(table, false,
                                  [&](double dx, double dy) {
                                    const double distance = std::hypot(dx, dy);
                                    const double off = std::remainder(std::atan2(dy, dx) - middle, 2 * kPi);
                                    return distance >= inner && distance <= outer && std::fabs(off) <= half;
                                  }))
            << "ring " << i << ", direction " << j;
      }
    }
  }
}

TEST(Stats_Spatial, SamplingStopsAtItsLimits) {
  CMadeTable table = NastyClouds()[4].Table(2);
  CStats_Spatial spatial;
  spatial.Add(&table, 0);
  spatial.pairFlags = CStats_Spatial::kSampleLeaves;  // every axis takes everything
  ASSERT_TRUE(spatial.Calculate(2, nullptr));
  CStats_PointSearch& search = *table.GetPointSearch();
  search.SearchAll();
  const std::size_t quota = static_cast<std::size_t>((1000 + search.GetLeafCount() - 1) / search.GetLeafCount());
  std::vector<int> expected;
  for (const auto* leaf : search.GetLeaves()) {
    for (std::size_t p = 0; p < std::min(quota, leaf->points.size()); ++p) {
      expected.insert(expected.end(), 100, leaf->points[p]);
    }
  }
  expected.resize(std::min<std::size_t>(expected.size(), 100000));
  EXPECT_EQ(spatial.lists[0], expected);

  spatial.stationLimit = -1;
  spatial.totalPairs = 0;
  spatial.ClearFlags(0, 2);
  ASSERT_TRUE(spatial.Calculate(2, nullptr));
  EXPECT_EQ(spatial.lists[0].size(), 1u) << "limits are asked after each pair";
}

TEST(Stats_Spatial, FitsAPlane) {
  // v = 3 + 2 x - y over x in 0..4 and y in 0..2: v runs from 1 to 11, so v' = 0.2 + 0.8 x' - 0.2 y'.
  std::vector<std::vector<double>> columns(3);
  for (int i = 0; i < 15; ++i) {
    columns[0].push_back(i % 5);
    columns[1].push_back(i / 5);
    columns[2].push_back(3 + 2.0 * (i % 5) - i / 5);
  }
  CMadeTable plane = Table(2, columns);
  CStats_Spatial spatial;
  spatial.Add(&plane, 0);
  ASSERT_TRUE(spatial.Calculate(8, nullptr));
  EXPECT_NEAR(spatial.fitA, 0.2, 1e-14);
  EXPECT_NEAR(spatial.fitB, 0.8, 1e-14);
  EXPECT_NEAR(spatial.fitC, -0.2, 1e-14);
  EXPECT_EQ(spatial.valueMin, 1);
  EXPECT_EQ(spatial.valueRange, 10);

  // Stations without a finite co-ordinate or a value have no part in it.
  for (const Point3& stranger : {Point3{kNull, 1, 5},
                                 {1, kNull, 5},
                                 {kInfinity, 1, 5},
                                 {-kInfinity, 1, 5},
                                 {1, kInfinity, 5},
                                 {NAN, 2, 5},
                                 {2, -kInfinity, 5},
                                 {3, 1, kNull}}) {
    for (std::size_t i = 0; i < 3; ++i) columns[i].push_back(stranger[i]);
  }
  CMadeTable strangers = Table(2, columns);
  CStats_Spatial same;
  same.Add(&strangers, 0);
  ASSERT_TRUE(same.Calculate(8, nullptr));
  EXPECT_EQ((std::vector{same.fitA, same.fitB, same.fitC, same.xMin, same.xRange}),
            (std::vector{spatial.fitA, spatial.fitB, spatial.fitC, spatial.xMin, spatial.xRange}));

  CMadeTable line = Table(2, {{0.1, 0.2, 0.3, 0.7}, {0.1, 0.2, 0.3, 0.7}, {4, 3, 7, 1}});
  CStats_Spatial flat;
  flat.Add(&line, 0);
  EXPECT_TRUE(flat.Calculate(8, nullptr)) << "no plane through a line is no failure";
  EXPECT_EQ(flat.fitA, 0);
  EXPECT_EQ(flat.fitB, 0);
  EXPECT_EQ(flat.fitC, 0);
}

// Cancels at a given percentage.
class Canceller : public CProgressSink {
 public:
  explicit Canceller(int limit) : limit_(limit) {}
  bool OnProgress(int percent) override { return percent < limit_; }
  void SetTask(const char*, int) override {}

 private:
  int limit_;
};

TEST(Stats_Spatial, ACancelledComputationSetsNoFlag) {
  CMadeTable table = NastyClouds()[4].Table(2);
  table.PreparePointSearch(nullptr);
  for (const int flag : {1, 2, 8}) {
    for (const int limit : {0, 60}) {
      CStats_Spatial spatial;
      spatial.Add(&table, 0);
      spatial.extractFlags = CStats_Spatial::kRegularCells | CStats_Spatial::kExtractX;
      spatial.cellCount = {20, 1, 1};
      Canceller canceller(limit);
      EXPECT_FALSE(spatial.Calculate(flag, &canceller));
      EXPECT_EQ(spatial.GetFlags(0), 0);
    }
  }
}

}  // namespace
}  // namespace tallyscope
