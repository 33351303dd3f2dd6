// SPDX-License-Identifier: MIT
#include "statistics/Stats_Region.h"

#include <gtest/gtest.h>

#include <random>

#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_RgnDataRange.h"
#include "statistics/Stats_RgnIndexList.h"
#include "statistics/Stats_RgnIndexRange.h"
#include "statistics/Stats_RgnInvert.h"
#include "statistics/Stats_RgnRect.h"
#include "statistics/Stats_RgnSelAll.h"
#include "statistics/Stats_Univariate.h"
#include "tests/support/Made.h"

namespace tallyscope {
namespace {

CMadeTable Stations(int count) {
  return CMadeTable({made::Normal(count, 0, 1, 1), made::Normal(count, 0, 1, 2),
                     made::WithNulls(made::Ramp(count, 0, count - 1), made::Every(7))},
                    2);
}

std::unique_ptr<CStats_Rgn> Rows(double first, double last) {
  auto region = std::make_unique<CStats_RgnIndexRange>();
  region->box = {{first, 0, 0}, {last, 0, 0}, 1};
  return region;
}

std::unique_ptr<CStats_Rgn> List(std::vector<int> stations) {
  auto region = std::make_unique<CStats_RgnIndexList>();
  region->stations = std::move(stations);
  return region;
}

// Replays the regions into the calculator's first list, as a push does.
void ListSelection(CStats_Spatial& spatial) {
  spatial.extractFlags &= ~static_cast<unsigned>(CStats_Spatial::kIncremental);
  spatial.extractFlags |= CStats_Spatial::kLists | CStats_Spatial::kBitmaps;
  spatial.ClearFlags(0, 1);
  spatial.Calculate(1, nullptr);
}

std::vector<bool> Bits(const CStats_Spatial& spatial, int count) {
  std::vector<bool> bits(static_cast<std::size_t>(count));
  for (int i = 0; i < count && !spatial.bitmaps.empty(); ++i)
    bits[static_cast<std::size_t>(i)] = spatial.bitmaps[0].Get(i);
  return bits;
}

TEST(Stats_Region, ShowsTheSelectedStationsAlone) {
  CMadeTable table = Stations(100);
  CStats_Spatial spatial;
  spatial.Add(&table, 0);
  spatial.AddSelRegion(List({50, 7, 90, 7}));
  ListSelection(spatial);
  CStats_Region region(&spatial);
  ASSERT_EQ(region.GetSize(), 3);
  double value = -1;
  EXPECT_TRUE(region.GetValue(0, 2, value));
  EXPECT_EQ(value, 90);
  value = -1;
  EXPECT_FALSE(region.GetValue(0, 0, value)) << "station 7 is null";
  EXPECT_EQ(value, -1);
  CStats_Univariate figures;
  figures.Add(&region, 0);
  figures.Calculate(1, nullptr);
  EXPECT_EQ(figures.valid, 2);
  EXPECT_EQ(figures.mean, 70);
  EXPECT_EQ(region.GetSource(), &table);

  // A selection of the selection reaches the host's stations.
  CStats_Spatial again;
  again.Add(&region, 0);
  again.AddSelRegion(Rows(1, 2));
  ListSelection(again);
  CStats_Region top(&again);
  ASSERT_EQ(top.GetSize(), 2);
  EXPECT_EQ(top.GetSourceStation(0), 50);
  EXPECT_EQ(top.GetSourceStation(1), 90);
}

TEST(Stats_Region, BulkReadsGiveWhatSingleReadsWould) {
  CMadeTable table = Stations(3000);
  std::mt19937_64 random(5);
  CStats_Spatial spatial;
  spatial.Add(&table, 0);
  spatial.AddSelRegion(Rows(100, 1500));
  std::vector<int> some;
  for (int i = 0; i < 900; ++i) some.push_back(static_cast<int>(random() % 3000));
  spatial.AddSelRegion(List(some));
  ListSelection(spatial);
  CStats_Region region(&spatial);
  CSingleReads single(region);
  const int size = region.GetSize();
  for (int field = -2; field < 1; ++field) {
    for (const int first : {0, 1, 700, size - 3}) {
      const int count = std::min(1300, size - first);
      const auto room = static_cast<std::size_t>(count);
      std::vector<double> values(room, 5), plain(room, 5);
      std::vector<unsigned char> valid(room), plainValid(room);
      EXPECT_EQ(region.ReadValues(field, first, count, values.data(), valid.data()),
                single.ReadValues(field, first, count, plain.data(), plainValid.data()));
      EXPECT_EQ(valid, plainValid);
      for (std::size_t i = 0; i < room; ++i) EXPECT_TRUE(valid[i] == 0 || values[i] == plain[i]);
      region.ReadRawValues(field, first, count, values.data());
      single.ReadRawValues(field, first, count, plain.data());
      EXPECT_EQ(values, plain);
      std::vector<int> stations(room);
      for (int& station : stations) station = static_cast<int>(random() % static_cast<unsigned>(size));
      region.ReadRawValuesAt(field, stations.data(), count, values.data());
      single.ReadRawValuesAt(field, stations.data(), count, plain.data());
      EXPECT_EQ(values, plain);
      EXPECT_EQ(region.ReadValuesAt(field, stations.data(), count, values.data(), valid.data()),
                single.ReadValuesAt(field, stations.data(), count, plain.data(), plainValid.data()));
      EXPECT_EQ(valid, plainValid);
    }
  }
}

// The selections of a session, kept whole, one for each step.
TEST(Stats_Region, GesturesUndoAndRedoAsRemembered) {
  constexpr int kStations = 400;
  CMadeTable table = Stations(kStations);
  std::mt19937_64 random(20240611);
  CStats_Spatial spatial;
  spatial.Add(&table, 0);
  std::vector<std::vector<bool>> photos{std::vector<bool>(kStations)};
  std::size_t at = 0;
  const auto number = [&](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); };
  const auto anyRegion = [&]() -> std::unique_ptr<CStats_Rgn> {
    switch (number(6)) {
      case 0:
        return Rows(number(kStations), number(kStations));
      case 1:
        return List({number(kStations), number(kStations), number(kStations)});
      case 2:
        return std::make_unique<CStats_RgnInvert>();
      case 3: {
        auto region = std::make_unique<CStats_RgnDataRange>();
        region->box = {{number(300) * 1.0, 0, 0}, {number(100) + 300.0, 0, 0}, 1};
        return region;
      }
      case 4: {
        auto region = std::make_unique<CStats_RgnRect>();
        region->box = {{number(200) / 100.0 - 1, -1, 0}, {number(200) / 100.0 - 1, 1, 0}, 1};
        if (number(2) == 0) region->SetDims(-1, 0, -3, 2);
        return region;
      }
      default:
        return std::make_unique<CStats_RgnSelAll>();
    }
  };
  // One region alone, station by station.
  const auto apply = [&](std::vector<bool> bits, CStats_Rgn& region) {
    const double low = std::min(region.GetPoint(0)[0], region.GetPoint(1)[0]);
    const double high = std::max(region.GetPoint(0)[0], region.GetPoint(1)[0]);
    for (int i = 0; i < kStations; ++i) {
      double value = 0;
      bool inside = true;
      if (region.GetType() == CStats_Rgn::kIndexRange)
        inside = region.GetPoint(0)[0] <= i && i <= region.GetPoint(1)[0];
      if (region.GetType() == CStats_Rgn::kDataRange)
        inside = table.GetValue(0, i, value) && low <= value && value <= high;
      if (region.GetType() == CStats_Rgn::kIndexList) {
        const auto& list = static_cast<CStats_RgnIndexList&>(region).stations;
        inside = std::find(list.begin(), list.end(), i) != list.end();
      }
      if (region.GetType() == CStats_Rgn::kRect) {
        const double x = table.GetValue(region.GetDim1(), i);
        inside = table.GetValue(region.GetDim2(), i, value) && low <= x && x <= high && -1 <= value && value <= 1;
      }
      const auto bit = static_cast<std::size_t>(i);
      if (inside) bits[bit] = region.GetType() == CStats_Rgn::kInvert ? !bits[bit] : region.include;
    }
    return bits;
  };
  for (int step = 0; step < 600; ++step) {
    const int choice = number(10);
    if (choice < 5) {
      auto region = anyRegion();
      region->include = number(3) != 0;
      photos.resize(at + 1);
      photos.push_back(apply(photos[at], *region));
      ++at;
      spatial.AddSelRegion(std::move(region));
    } else if (choice < 7) {
      at -= at > 0 ? 1 : 0;
      spatial.ClearLastSelRegion();
    } else if (choice < 9) {
      at += at + 1 < photos.size() ? 1 : 0;
      spatial.RestoreLastSelRegion();
    } else if (number(4) == 0) {
      at = 0;
      spatial.ClearAllSelRegion();
    }
    if (step % 40 == 0) {
      const CStats_Spatial copy(spatial);
      spatial = copy;  // a copy replays regions of its own
    }
    if (spatial.bitmaps.empty()) continue;
    ASSERT_EQ(Bits(spatial, kStations), photos[at]) << "step " << step;
    ASSERT_EQ(static_cast<std::size_t>(spatial.regions.GetCount()) + 1, photos.size());
  }
}

}  // namespace
}  // namespace tallyscope
