// SPDX-License-Identifier: MIT
// A host's read or a sink that throws, and a sink that cancels: whatever was under way can be asked again, and gives
// what it would have given.
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

#include "spatial/Stats_PointSearch.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Analysis.h"
#include "statistics/ProgressSink.h"
#include "statistics/Stats_Bivariate.h"
#include "statistics/Stats_Multivariate.h"
#include "statistics/Stats_RgnDataRange.h"
#include "tests/support/Made.h"

namespace tallyscope {

namespace {

// Counts what a host and a sink are asked, and throws, or cancels, at one of these calls.
class Trap {
 public:
  int calls = 0;
  int at = -1;
  bool cancels = false;  // the sink's calls alone count

  bool Call(bool ofSink) {
    if (cancels && !ofSink) return true;
    if (calls++ != at) return true;
    if (!cancels) throw std::runtime_error("trap");
    return false;
  }
  void Set(int call) {
    calls = 0;
    at = call;
  }
};

class TrappedTable : public CStats_Data {
 public:
  TrappedTable(CStats_Data& table, Trap& trap) : table_(table), trap_(trap) {}
  int GetSize() override { return table_.GetSize(); }
  int GetSpatialSize() override { return table_.GetSpatialSize(); }
  int GetValueSize() override { return table_.GetValueSize(); }
  using CStats_Data::GetValue;
  double GetValue(int field, int station) override {
    trap_.Call(false);
    return table_.GetValue(field, station);
  }
  bool IsValueValid(int field, int station) override { return table_.IsValueValid(field, station); }

 private:
  CStats_Data& table_;
  Trap& trap_;
};

class TrappedSink : public CProgressSink {
 public:
  explicit TrappedSink(Trap& trap) : trap_(trap) {}
  bool OnProgress(int) override { return trap_.Call(true); }
  void SetTask(const char*, int) override {}

 private:
  Trap& trap_;
};

using Figures = std::vector<double>;

// Objects over a table: asked for everything they give their figures, or nothing when they could not.
using Subject = std::function<Figures(CProgressSink*)>;

Figures FiguresOf(CStats_Univariate& u) {
  Figures figures = {u.mean, u.variance, u.skewness, u.median, u.mode, u.binnedMedian, u.binnedMode};
  for (auto* histogram : {&u.sortedHistogram, &u.binnedHistogram}) {
    figures.push_back(histogram->IsItem(0) ? histogram->GetFlags(0) : -1);
    for (const auto& bin : histogram->bins) figures.push_back(bin.count + bin.cumulative + bin.dataMin + bin.binMax);
  }
  return figures;
}

Figures FiguresOf(CStats_Bivariate& pair) {
  Figures figures = {pair.covariance, pair.correlation, pair.inertia, pair.rankCorrelation, pair.displayLine[0]};
  for (auto* curve : {&pair.expectationX, &pair.expectationYGivenX, &pair.expectationXGivenY, &pair.expectationY}) {
    figures.insert(figures.end(), curve->begin(), curve->end());
  }
  return figures;
}

Figures FiguresOf(CStats_Spatial& spatial) {
  Figures figures;
  for (int i = 0; !spatial.bitmaps.empty() && i < spatial.bitmaps[0].GetSize(); ++i) {
    figures.push_back(spatial.bitmaps[0].Get(i));
  }
  return figures;
}

Subject Univariate(CStats_Data& table) {
  auto figures = std::make_shared<CStats_Univariate>();
  figures->Add(&table, 0);
  return [=](CProgressSink* sink) { return figures->Calculate(15, sink) ? FiguresOf(*figures) : Figures(); };
}

Subject LoneHistogram(CStats_Data& table) {
  auto histogram = std::make_shared<CStats_Histogram>();
  histogram->Add(&table, 0);
  return [=](CProgressSink* sink) {
    if (!histogram->Calculate(1, sink)) return Figures();
    EXPECT_EQ(histogram->owner, nullptr);
    return Figures{histogram->GetPercentile(0.4), histogram->GetMode()};
  };
}

Subject Bivariate(CStats_Data& table) {
  auto pair = std::make_shared<CStats_Bivariate>();
  pair->Add(&table, 0);
  pair->Add(&table, 1);
  return [=](CProgressSink* sink) {
    const bool done = pair->Calculate(15, sink);
    EXPECT_EQ(pair->xLink, nullptr);
    return done ? FiguresOf(*pair) : Figures();
  };
}

Subject Multivariate(CStats_Data& table) {
  auto joint = std::make_shared<CStats_Multivariate>();
  for (int dim = -2; dim < 2; ++dim) joint->Add(&table, dim);
  return [=](CProgressSink* sink) { return joint->Calculate(1, sink) ? joint->means : Figures(); };
}

Subject SortAndFind(CStats_Data& table) {
  return [&table](CProgressSink* sink) {
    table.Sort(1, 1, sink);
    if (!table.IsSorted(1, 1)) return Figures();
    std::vector<int> ranks;
    table.GetRanks(1, ranks);
    int position = -1;
    table.Find(1, 3, position, 3, 1);
    Figures figures(ranks.begin(), ranks.end());
    figures.push_back(position);
    return figures;
  };
}

// A start of each mode, one after the other, with a selection by value.
Subject Session(CStats_Data& table) {
  auto session = std::make_shared<CTallyscope>();
  session->Fill(&table, false);
  return [session, &table](CProgressSink* sink) {
    CAnalysis analysis(*session);
    if (!analysis.Start(CTallyscope::eUnivariate, 0, 0, sink)) return Figures();
    Figures figures = FiguresOf(*analysis.GetUnivariate());
    if (!analysis.Start(CTallyscope::eBivariate, 0, 1, sink)) return Figures();
    const Figures pair = FiguresOf(*analysis.GetBivariate());
    if (!analysis.Start(CTallyscope::eSpatial, 0, 0, sink)) return Figures();
    CStats_Spatial& selection = *analysis.GetSelection();
    if (selection.regions.IsEmpty()) {
      auto region = std::make_unique<CStats_RgnDataRange>();
      region->box = {{-1, 0, 0}, {1, 0, 0}, 1};
      selection.regions.Append(std::move(region));
      selection.extractFlags = CStats_Spatial::kBitmaps;
    }
    if (!selection.Calculate(1, sink)) return Figures();
    const Figures bits = FiguresOf(selection);
    figures.insert(figures.end(), pair.begin(), pair.end());
    figures.insert(figures.end(), bits.begin(), bits.end());
    figures.push_back(table.GetPointSearch()->IsPartitioned());
    return figures;
  };
}

struct Row {
  const char* name;
  Subject (*make)(CStats_Data& table);
};

constexpr Row kRows[] = {
    {"univariate", Univariate},     {"histogram", LoneHistogram}, {"bivariate", Bivariate},
    {"multivariate", Multivariate}, {"sort", SortAndFind},        {"session", Session},
};

CMadeTable MakeTable() {
  return CMadeTable(
      {made::Normal(120, 0, 1, 1), made::Normal(120, 0, 1, 2),
       made::WithNulls(made::Normal(120, 0, 1, 3), made::Every(7)), made::Rounded(made::Normal(120, 0, 2, 4), 1)},
      2);
}

void TryEachCall(const Row& row, bool cancels) {
  SCOPED_TRACE(row.name);
  CMadeTable made = MakeTable();
  Trap trap;
  trap.cancels = cancels;
  TrappedSink sink(trap);
  TrappedTable untouched(made, trap);
  const Figures expected = row.make(untouched)(&sink);
  ASSERT_FALSE(expected.empty());
  const int calls = trap.calls;
  ASSERT_TRUE(cancels || calls > 100);
  const int step = calls > 4000 ? 13 : 1;  // every branch is met many times over
  for (int at = 0; at < calls; at += step) {
    TrappedTable table(made, trap);
    trap.Set(-1);
    const Subject subject = row.make(table);
    trap.Set(at);
    bool threw = false;
    Figures got;
    try {
      got = subject(&sink);
    } catch (const std::runtime_error&) {
      threw = true;
    }
    ASSERT_NE(threw, cancels) << "call " << at;
    ASSERT_TRUE(got.empty()) << "passes as done at call " << at;
    trap.Set(-1);
    ASSERT_EQ(subject(&sink), expected) << "after call " << at;
  }
}

TEST(Failures, AThrowLeavesEveryObjectUsable) {
  for (const Row& row : kRows) TryEachCall(row, false);
}

TEST(Failures, ACancelLeavesEveryObjectUsable) {
  for (const Row& row : kRows) TryEachCall(row, true);
}

// A former result stands until another is there whole.
TEST(Failures, AHistogramStandsWhenItsSuccessorIsCancelled) {
  CMadeTable table = MakeTable();
  Trap trap;
  trap.cancels = true;
  TrappedSink sink(trap);
  for (const int flag : {4, 8}) {
    CStats_Univariate figures;
    figures.Add(&table, 1);
    ASSERT_TRUE(figures.Calculate(15, nullptr));
    const Figures before = FiguresOf(figures);
    figures.ClearFlags(0, flag);
    trap.Set(30);
    EXPECT_FALSE(figures.Calculate(flag, &sink));
    EXPECT_EQ(FiguresOf(figures), before);
  }

  CStats_Histogram lone;
  lone.Add(&table, 1);
  ASSERT_TRUE(lone.Calculate(1, nullptr));
  const double median = lone.GetPercentile(0.5);
  lone.ClearFlags(0, 1);
  lone.SetMaxBins(3);
  trap.Set(150);
  EXPECT_FALSE(lone.Calculate(1, &sink));
  EXPECT_EQ(lone.GetPercentile(0.5), median);
}

}  // namespace

}  // namespace tallyscope
