// SPDX-License-Identifier: MIT
// A table whose reads throw, and sinks that throw or cancel, at every n-th call through all that is computed of places:
// the former results stand, and the next try gives what an undisturbed one does.
#include <gtest/gtest.h>

#include <functional>
#include <sstream>

#include "SpatialTesting.h"
#include "spatial/Stats_LagGridData.h"
#include "spatial/Stats_PointSearch.h"
#include "spatial/Stats_SampleVariogram.h"
#include "statistics/ProgressSink.h"
#include "statistics/Stats_RgnDataRange.h"
#include "statistics/Stats_RgnPoly.h"
#include "statistics/Stats_RgnRect.h"
#include "statistics/Stats_RgnSelAll.h"

namespace tallyscope::testing_spatial {
namespace {

struct Stumble {};

// Throws when `left` calls have gone well; negative: never.
class Stone {
 public:
  int left = -1;

  void Step() {
    if (left >= 0 && left-- == 0) throw Stumble();
  }
};

class CStumblingTable : public CStats_Data {
 public:
  explicit CStumblingTable(CMadeTable& table) : table_(table) {}

  int GetSize() override { return table_.GetSize(); }
  int GetSpatialSize() override { return table_.GetSpatialSize(); }
  int GetValueSize() override { return table_.GetValueSize(); }
  using CStats_Data::GetValue;
  double GetValue(int field, int station) override {
    stone.Step();
    return table_.GetValue(field, station);
  }
  bool IsValueValid(int field, int station) override {
    stone.Step();
    return table_.IsValueValid(field, station);
  }

  Stone stone;

 private:
  CMadeTable& table_;
};

class CStumblingSink : public CProgressSink {
 public:
  explicit CStumblingSink(bool cancels) : cancels_(cancels) {}
  bool OnProgress(int) override {
    if (!cancels_) stone.Step();
    return !cancels_ || stone.left < 0 || stone.left-- > 0;
  }
  void SetTask(const char*, int) override {
    if (!cancels_) stone.Step();
  }

  Stone stone;

 private:
  bool cancels_;
};

CMadeTable MakeTable() {
  std::vector<std::vector<double>> columns(3);
  const Cloud cloud = NastyClouds()[4];
  for (std::size_t i = 0; i < 250; ++i) {
    columns[0].push_back(cloud.points[i][0]);
    columns[1].push_back(i % 9 == 0 ? kNull : cloud.points[i][1]);
    columns[2].push_back(i % 7 == 0 ? kNull : cloud.points[i][2]);
  }
  return Table(2, columns);
}

// All results, as text.
std::string Describe(CStats_SampleVariogram& spatial) {
  std::ostringstream out;
  out.precision(17);
  for (const auto& list : spatial.lists) {
    out << "\nlist";
    for (const int station : list) out << " " << station;
  }
  for (const auto& bits : spatial.bitmaps) out << "\nbits " << bits.Count() << " of " << bits.GetSize();
  out << "\nchanged " << spatial.changed.size() << ", regions " << spatial.regions.GetCount() << "\nplane "
      << spatial.fitA << " " << spatial.fitB << " " << spatial.xRange << "\nerror " << spatial.errorPairs << " "
      << spatial.errorMoment << "\nflags " << spatial.GetFlags(0);
  CStats_LagGridData cells(&spatial);
  for (int i = 0; i < cells.GetSize(); ++i) {
    if (cells.GetValue(2, i) > 0) out << "\n" << i << " " << cells.GetValue(2, i) << " " << cells.GetValue(0, i);
  }
  for (const double lag : spatial.GetCurve().lag) out << "\nlag " << lag;
  return out.str();
}

template <class Region>
std::unique_ptr<Region> Between(const Point3& from, const Point3& to) {
  auto region = std::make_unique<Region>();
  region->box = {from, to, 1};
  return region;
}

using Variogram = CStats_SampleVariogram;

struct Work {
  const char* name;
  std::function<bool(Variogram&, CProgressSink*)> run;
};

std::vector<Work> ListWorks() {
  const auto polygon = [](Variogram& spatial, CProgressSink* sink) {
    auto region = std::make_unique<CStats_RgnPoly>();
    region->points = {{0.1, 0.1, 0}, {0.9, 0.2, 0}, {0.5, 0.8, 0}};
    region->SetDims(-1, 0, -3, 2);
    return spatial.AddSelRegion(std::move(region), sink);
  };
  return {
      {"cells",
       [](Variogram& spatial, CProgressSink* sink) {
         spatial.extractFlags = CStats_Spatial::kRegularCells | CStats_Spatial::kLists | CStats_Spatial::kBitmaps |
                                CStats_Spatial::kExtractX | CStats_Spatial::kExtractY;
         spatial.cellCount = {3, 4, 1};
         spatial.cellStep = {0.3, 0.3, 0};
         spatial.cellBox = {{-0.2, -0.2, 0}, {0.2, 0.2, 0}, 1};
         spatial.ClearFlags(0, 1);
         return spatial.Calculate(1, sink);
       }},
      {"polygon", polygon},
      {"rectangle",
       [](Variogram& spatial, CProgressSink* sink) {
         return spatial.AddSelRegion(Between<CStats_RgnRect>({0, 0, 0}, {0.5, 0.5, 0}), sink);
       }},
      {"values",
       [](Variogram& spatial, CProgressSink* sink) {
         return spatial.AddSelRegion(Between<CStats_RgnDataRange>({0, 0, 0}, {0.5, 0, 0}), sink);
       }},
      {"undo", [](Variogram& spatial, CProgressSink* sink) { return spatial.ClearLastSelRegion(sink); }},
      {"undo all", [](Variogram& spatial, CProgressSink* sink) { return spatial.ClearAllSelRegion(sink); }},
      {"pairs",
       [](Variogram& spatial, CProgressSink* sink) {
         spatial.pairFlags = CStats_Spatial::kPairX | CStats_Spatial::kPairY | CStats_Spatial::kPairValues;
         spatial.pairBox = {{-0.1, -0.1, 0}, {0.1, 0.1, 0}, 1};
         spatial.ClearFlags(0, 2);
         return spatial.Calculate(2, sink);
       }},
      {"plane",
       [](Variogram& spatial, CProgressSink* sink) {
         spatial.ClearFlags(0, 8);
         return spatial.Calculate(8, sink);
       }},
      {"variogram", [](Variogram& spatial, CProgressSink* sink) { return spatial.CalcVariogram(0, 0.2, 0, sink); }},
      {"variogram of the default range",
       [](Variogram& spatial, CProgressSink* sink) { return spatial.CalcVariogram(0, 0, 90, sink); }},
      {"error variance",
       [](Variogram& spatial, CProgressSink* sink) { return spatial.CalcErrorVariance(0, 0.05, sink); }},
  };
}

class Exceptions : public ::testing::Test {
 protected:
  Exceptions() {
    former.Add(&table, 0);
    former.ResetSpatialDims();
    former.AddSelRegion(std::make_unique<CStats_RgnSelAll>());
    former.AddSelRegion(Between<CStats_RgnDataRange>({0, 0, 0}, {0.9, 0, 0}));
    former.AddSelRegion(Between<CStats_RgnDataRange>({0, 0, 0}, {0.1, 0, 0}));
    former.ClearLastSelRegion();
    former.CalcVariogram(0, 0.5, 0, nullptr);
    former.Calculate(8, nullptr);
  }
  // What describes results, but for the flag that the caller cleared.
  static std::string WithoutFlags(std::string text) {
    const auto at = text.find("\nflags ");
    return text.erase(at, text.find('\n', at + 1) - at);
  }

  CMadeTable made = MakeTable();
  CStumblingTable table{made};
  CStats_SampleVariogram former;
};

TEST_F(Exceptions, OfReadsLeaveTheFormerResultWhole) {
  for (const Work& work : ListWorks()) {
    CStats_SampleVariogram expected = former;
    table.DestroyPointSearch();
    ASSERT_TRUE(work.run(expected, nullptr)) << work.name;
    int stumbles = 0;
    for (int left = 0;; left += 1 + left / 2) {
      SCOPED_TRACE(std::string(work.name) + " at read " + std::to_string(left));
      CStats_SampleVariogram spatial = former;
      table.DestroyPointSearch();
      table.stone.left = left;
      bool hasThrown = false;
      try {
        work.run(spatial, nullptr);
      } catch (const Stumble&) {
        hasThrown = true;
      }
      table.stone.left = -1;
      if (!hasThrown) break;
      ++stumbles;
      ASSERT_EQ(WithoutFlags(Describe(spatial)), WithoutFlags(Describe(former)));
      ASSERT_TRUE(work.run(spatial, nullptr));
      ASSERT_EQ(Describe(spatial), Describe(expected));
    }
    EXPECT_GT(stumbles, 3) << work.name;
  }
}

TEST_F(Exceptions, OfSinksAndCancelsToo) {
  for (const Work& work : ListWorks()) {
    CStats_SampleVariogram expected = former;
    table.DestroyPointSearch();
    ASSERT_TRUE(work.run(expected, nullptr)) << work.name;
    for (const bool cancels : {false, true}) {
      int stumbles = 0;
      for (int left = 0;; left += 1 + left / 4) {
        SCOPED_TRACE(std::string(work.name) + (cancels ? " cancelled" : "") + " at report " + std::to_string(left));
        CStats_SampleVariogram spatial = former;
        table.DestroyPointSearch();
        CStumblingSink sink(cancels);
        sink.stone.left = left;
        bool isDone = false;
        try {
          isDone = work.run(spatial, &sink);
        } catch (const Stumble&) {
        }
        if (isDone) break;
        ++stumbles;
        ASSERT_EQ(WithoutFlags(Describe(spatial)), WithoutFlags(Describe(former)));
        ASSERT_TRUE(work.run(spatial, nullptr));
        ASSERT_EQ(Describe(spatial), Describe(expected));
      }
      EXPECT_GT(stumbles, 0) << work.name;
    }
  }
}

// What is shared stays as it is whatever becomes of the search, and queries don't disturb each other.
TEST_F(Exceptions, SharedIndexesAndQueriesStandOnTheirOwn) {
  CStats_PointSearch& search = *made.GetPointSearch();
  ASSERT_TRUE(made.PreparePointSearch(nullptr));
  const auto shared = search.Share();
  const auto walk = [](StationQuery& query) {
    std::vector<int> stations;
    for (int station = 0; query.GetNext(station, 1);) stations.push_back(station);
    return stations;
  };
  StationQuery all(*shared), some(*shared);
  all.SearchAll();
  some.SearchBox({{0.2, 0.2, 0}, {0.6, 0.6, 0}, 1});
  int first = 0, second = 0;
  ASSERT_TRUE(some.GetNext(first, 1));
  const std::vector<int> everyone = walk(all);
  ASSERT_TRUE(some.GetNext(second, 1));
  some.SearchBox({{0.2, 0.2, 0}, {0.6, 0.6, 0}, 1});
  const std::vector<int> box = walk(some);
  EXPECT_EQ(box[0], first);
  EXPECT_EQ(box[1], second);
  // The search takes its own tree apart, then has another one.
  search.SearchAll();
  int station = 0;
  ASSERT_TRUE(search.GetNext(station, 1));
  search.GetTree()->Delete(search.GetTree()->GetRoot());
  search.SetPartitioned(false);
  EXPECT_EQ(search.Share(), nullptr);
  all.SearchAll();
  EXPECT_EQ(walk(all), everyone);
  search.SetFields(-1, 0, -3, 2);
  ASSERT_TRUE(made.PreparePointSearch(nullptr));
  some.SearchBox({{0.2, 0.2, 0}, {0.6, 0.6, 0}, 1});
  EXPECT_EQ(walk(some), box);
  // A lag grid leaves the search that it found to others.
  CStats_SampleVariogram variogram;
  variogram.Add(&made, 0);
  variogram.ResetSpatialDims();
  ASSERT_TRUE(variogram.CalcVariogram(0, 0.3, 0, nullptr));
  const auto after = search.Share();
  ASSERT_NE(after, nullptr);
  ASSERT_TRUE(variogram.CalcVariogram(0, 0.2, 0, nullptr));
  EXPECT_EQ(search.Share(), after);
}

}  // namespace
}  // namespace tallyscope::testing_spatial
