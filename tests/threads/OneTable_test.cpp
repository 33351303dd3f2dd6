// SPDX-License-Identifier: MIT
// A worker computes on the very table that the main thread reads, paints from and selects on: what it works with
// doesn't change, and what it makes is taken over by the main thread as a value. ThreadSanitizer finds what breaks
// that; without it the figures would differ from those of a table that nobody disturbs.
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include "spatial/StationIndex.h"
#include "spatial/StationQuery.h"
#include "spatial/Stats_PointSearch.h"
#include "spatial/Stats_SampleVariogram.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/ProgressSink.h"
#include "statistics/SortTable.h"
#include "statistics/Stats_Bivariate.h"
#include "statistics/Stats_RgnDataRange.h"
#include "statistics/Stats_RgnRect.h"
#include "statistics/Stats_Univariate.h"
#include "tests/support/Made.h"

namespace tallyscope {
namespace {

constexpr int kStations = 3000;
constexpr Box kWindow{{20, 20, 0}, {70, 80, 0}};

CMadeTable MakeStations() {
  return CMadeTable(
      {made::Normal(kStations, 50, 20, 1), made::Normal(kStations, 50, 20, 2),
       made::WithNulls(made::Normal(kStations, 10, 2, 3), made::Every(7)), made::Normal(kStations, 0, 1, 4)},
      2);
}

void Prepare(CStats_Data& table) {
  table.Sort(0, 0, nullptr);
  table.GetPointSearch()->SetDefaultFields();
  ASSERT_TRUE(table.PreparePointSearch(nullptr));
}

struct Computed {
  std::shared_ptr<const SortTable> order;  // of field 1, which the table has not sorted
  std::vector<double> figures;
  std::vector<int> near;

  bool operator==(const Computed& other) const {
    return *order == *other.order && figures == other.figures && near == other.near;
  }
};

Computed Compute(CStats_Data& table, CProgressSink* sink) {
  Computed made;
  made.order = MakeSortTable(table, 1, true, sink);
  CStats_Univariate field;
  field.Add(&table, 0);
  EXPECT_TRUE(field.Calculate(15, sink));
  CStats_Bivariate pair;
  pair.Add(&table, 0);
  pair.Add(&table, 1);
  EXPECT_TRUE(pair.Calculate(2, sink));
  CStats_SampleVariogram variogram;
  variogram.Add(&table, 0);
  variogram.ResetSpatialDims();
  EXPECT_TRUE(variogram.CalcVariogram(0, 30, -1, sink));
  EXPECT_TRUE(variogram.CalcErrorVariance(0, 1, sink));
  made.figures = {field.mean, field.skewness, field.median, pair.covariance, variogram.errorMoment};
  for (const double inertia : variogram.GetCurve().momentOfInertia) made.figures.push_back(inertia);
  const StationIndex index = GetStationIndex(table);
  StationQuery query(*index.points);
  query.SearchSphere({50, 50, 0}, 10);
  for (int station = 0; query.GetNext(station, 1);) made.near.push_back(station);
  return made;
}

// What a window does meanwhile: cells and co-ordinates are read, rows shown in their order, stations picked, regions
// added and undone.
double WatchAndSelect(CStats_Data& table, CStats_Spatial& selection) {
  std::vector<double> values(kStations);
  std::vector<unsigned char> valid(kStations);
  double seen = table.ReadValues(0, 0, kStations, values.data(), valid.data());
  for (int row = 0; row < 50; ++row) seen += table.GetValue(-1, table.GetSortedStation(0, row));
  const StationIndex index = GetStationIndex(table);
  StationQuery pick(*index.points);
  pick.SearchSphere({40, 60, 0}, 3);
  for (int station = 0; pick.GetNext(station, 1);) seen += station;
  auto rect = std::make_unique<CStats_RgnRect>();
  rect->box = kWindow;
  rect->SetDims(-1, -2, -3, 2);
  selection.AddSelRegion(std::move(rect));
  auto range = std::make_unique<CStats_RgnDataRange>();
  range->box = {{9, 0, 0}, {11, 0, 0}};
  selection.AddSelRegion(std::move(range));
  seen += selection.bitmaps[0].Count();
  selection.ClearLastSelRegion();
  selection.RestoreLastSelRegion();
  selection.ClearAllSelRegion();
  return seen;
}

TEST(OneTable, AWorkerComputesWhileTheMainThreadReadsAndSelects) {
  auto alone = MakeStations();
  Prepare(alone);
  const Computed expected = Compute(alone, nullptr);
  CStats_Spatial lonely;
  lonely.Add(&alone, 0);
  const double expectedSeen = WatchAndSelect(alone, lonely);
  ASSERT_GT(expected.near.size(), 10U);

  auto table = MakeStations();
  Prepare(table);
  CStats_Spatial selection;
  selection.Add(&table, 0);
  std::atomic<bool> done = false;
  auto worker = std::async(std::launch::async, [&] {
    Computed made = Compute(table, nullptr);
    done = true;
    return made;
  });
  int turns = 0;
  while (!done || turns < 3) {
    ASSERT_EQ(WatchAndSelect(table, selection), expectedSeen);
    ++turns;
  }
  const Computed made = worker.get();
  EXPECT_TRUE(made == expected);
  table.TakeSortTable(1, 1, made.order);
  EXPECT_TRUE(table.IsSorted(1, 1));
  EXPECT_GE(table.GetValue(1, table.GetSortedStation(1, 0)), table.GetValue(1, table.GetSortedStation(1, 1)));
}

// The main thread waits for the worker to have begun, then tells it to stop.
TEST(OneTable, AWorkerIsCancelledFromTheMainThread) {
  struct Stop : CProgressSink {
    std::atomic<bool> begun = false;
    std::atomic<bool> wanted = false;
    bool OnProgress(int) override {
      begun = true;
      while (!wanted) std::this_thread::yield();
      return false;
    }
    void SetTask(const char*, int) override {}
  } sink;
  auto table = MakeStations();
  Prepare(table);
  CStats_SampleVariogram variogram;
  variogram.Add(&table, 0);
  variogram.ResetSpatialDims();
  auto worker = std::async(std::launch::async, [&] { return variogram.CalcVariogram(0, 30, -1, &sink); });
  while (!sink.begun) std::this_thread::yield();
  sink.wanted = true;
  EXPECT_FALSE(worker.get());
  EXPECT_EQ(variogram.GetFlags(0) & 4, 0);
  EXPECT_TRUE(GetStationIndex(table)) << "the search stands";
}

}  // namespace
}  // namespace tallyscope
