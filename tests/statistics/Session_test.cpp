// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <stdexcept>

#include "spatial/Stats_PointSearch.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Analysis.h"
#include "statistics/Stats_Bivariate.h"
#include "statistics/Stats_Region.h"
#include "statistics/Stats_RgnDataRange.h"
#include "statistics/Tallyscope.h"
#include "tests/support/Made.h"

namespace tallyscope {

namespace {

class Counted : public CStats_Data {
 public:
  explicit Counted(int& alive) : alive_(alive) { ++alive_; }
  ~Counted() override { --alive_; }

 private:
  int& alive_;
};

TEST(Session, ChoosesFields) {
  CTallyscope session;
  EXPECT_EQ(session.GetMode(), CTallyscope::eUnivariate);
  EXPECT_EQ(session.GetDims(), (std::vector<int>{-1}));
  session.SetBiDim2(3);
  EXPECT_EQ(session.GetDims(), (std::vector<int>{-1, 3}));
  session.SetBiDim1(2);
  EXPECT_EQ(session.GetDims(), (std::vector<int>{2, 3}));
  session.SetUniDim(-2);
  EXPECT_EQ(session.GetDims(), (std::vector<int>{-2}));
  session.SetBiDim2(4);
  EXPECT_EQ(session.GetDims(), (std::vector<int>{-2, 4}));
  session.SetSPDim(1);
  session.SetVarDim(0);
  EXPECT_EQ(session.GetKeyDim(), 0);
  EXPECT_EQ(session.GetSPDim(), 1);
  EXPECT_EQ(session.GetUniDim(), -2);
}

TEST(Session, DeletesTheTableItOwnsAtItsEnd) {
  int alive = 0;
  auto* first = new Counted(alive);
  auto* second = new Counted(alive);
  Counted borrowed(alive);
  {
    CTallyscope owner;
    owner.Fill(first, true);
    owner.SetData(second);  // first goes back to us
    EXPECT_EQ(owner.GetSSData(), second);
    CTallyscope borrower;
    borrower.Fill(&borrowed, false);
  }
  EXPECT_EQ(alive, 2);
  delete first;
  EXPECT_EQ(alive, 1);
}

TEST(Session, FilledAgainLetsGoOfTheTableBefore) {
  int alive = 0;
  auto second = TableFrom("X Y Au\n1 2 3\n4 5 6");
  CTallyscope session;
  session.Fill(new Counted(alive), true);
  session.CreateSpatialCalculator();
  session.SetMode(CTallyscope::eBivariate);
  session.CreateCalculator();
  session.Fill(&second, false);
  EXPECT_EQ(alive, 0);
  EXPECT_EQ(session.GetSpatialCalculator(), nullptr) << "reads a table that is gone";
  EXPECT_EQ(session.GetOwnCalculator(), nullptr);
  session.CreateSpatialCalculator();
  EXPECT_EQ(session.GetSpatialCalculator()->GetItemData(0), &second);
  auto* same = new Counted(alive);
  session.Fill(same, true);
  session.Fill(same, true);
  EXPECT_EQ(alive, 1);
}

// What hangs on the data.

class Heard : public CDataListener {
 public:
  void OnDataChanged(const DataChange& change) override {
    ++times;
    last = change;
    if (throws) throw std::runtime_error("heard");
  }
  int times = 0;
  bool throws = false;
  DataChange last;
};

CMadeTable MakeField() {
  return CMadeTable(
      {made::Normal(400, 0, 1, 1), made::Normal(400, 0, 1, 2), made::Normal(400, 5, 1, 3), made::Normal(400, 7, 1, 4)},
      2);
}

TEST(DataChange, DropsTheSortTablesAndSearchOfTheColumn) {
  struct Case {
    DataChange change;
    bool sorted0, sorted1, searched;  // afterwards
  };
  for (const auto& c : {Case{DataChange::Column(0), false, true, true}, Case{DataChange::Column(-2), true, true, false},
                        Case{DataChange::Axes(), false, false, false}, Case{DataChange::All(), false, false, false}}) {
    auto table = MakeField();
    const auto listener = std::make_shared<Heard>();
    listener->throws = true;
    const auto other = std::make_shared<Heard>();
    table.AddListener(listener);
    table.AddListener(std::make_shared<Heard>());  // dead at once
    table.AddListener(other);
    table.Sort(0, 0, nullptr);
    table.Sort(1, 1, nullptr);
    table.GetPointSearch()->SetFields(-1, -2, -3, 2);
    ASSERT_TRUE(table.PreparePointSearch(nullptr));
    EXPECT_THROW(table.DataChanged(c.change), std::runtime_error);
    EXPECT_EQ(table.IsSorted(0, 0), c.sorted0);
    EXPECT_EQ(table.IsSorted(1, 1), c.sorted1);
    EXPECT_EQ(table.GetPointSearch()->IsPartitioned(), c.searched);
    EXPECT_EQ(listener->times, 1);
    EXPECT_EQ(other->times, 1) << "not told, since another threw";
    EXPECT_EQ(other->last.dim, c.change.dim);
  }
}

void Shift(CMadeTable& table, int dim, double by) {
  for (double& value : table.GetMade(dim).values) value += by;
  table.DataChanged(DataChange::Column(dim));
}

TEST(DataChange, ASessionComputesAgainWhatHungOnTheColumn) {
  auto table = MakeField();
  CTallyscope session;
  session.Fill(&table, false);
  CAnalysis analysis(session);
  ASSERT_TRUE(analysis.Start(CTallyscope::eBivariate, 0, 1, nullptr));
  auto* pair = analysis.GetBivariate();
  auto* first = session.GetUniStats(0);
  auto* second = session.GetUniStats(1);
  second->Calculate(15, nullptr);
  session.GetVariogramModel(0)->SetIsotropicNugget(5);
  auto region = std::make_unique<CStats_RgnDataRange>();
  region->box = {{0, 0, 0}, {6, 0, 0}, 1};
  analysis.GetSelection()->AddSelRegion(std::move(region));
  const int selected = analysis.GetSelection()->bitmaps[0].Count();

  const double covariance = pair->covariance;
  const double mean = first->mean;
  Shift(table, 0, 100);
  EXPECT_EQ(first->GetFlags(0) | pair->GetFlags(0), 0);
  EXPECT_EQ(second->GetFlags(0), 15) << "of another column";
  ASSERT_GT(selected, 0);
  EXPECT_EQ(analysis.GetSelection()->bitmaps[0].Count(), 0) << "still the stations of the values before";
  EXPECT_TRUE(pair->Calculate(15, nullptr));
  EXPECT_EQ(pair->xLink, first);
  EXPECT_NEAR(first->mean, mean + 100, 1e-9);
  EXPECT_NEAR(pair->covariance, covariance, 1e-9);

  session.GetVariogram(1)->CalcVariogram(0, 1, 0, nullptr);
  Shift(table, 0, 0);
  EXPECT_NE(session.GetVariogram(1)->GetFlags(0), 0);
  Shift(table, -1, 1);
  EXPECT_EQ(session.GetVariogram(1)->GetFlags(0), 0) << "distances have changed";
  EXPECT_EQ(session.GetVariogramModel(0)->isotropicNugget.nugget, 5);

  session.sort.sorted = true;
  table.DataChanged(DataChange::Axes());
  EXPECT_FALSE(session.sort.sorted);
  EXPECT_TRUE(session.GetVariogramModel(0)->IsEmpty()) << "of what is another column now";
  EXPECT_EQ(pair->xLink, nullptr);
  EXPECT_EQ(session.GetUniStats(0), first);
}

TEST(DataChange, ReachesAPushedSelection) {
  auto table = MakeField();
  CStats_Spatial spatial;
  spatial.Add(&table, 0);
  auto region = std::make_unique<CStats_RgnDataRange>();
  region->box = {{5, 0, 0}, {9, 0, 0}, 1};
  spatial.regions.Append(std::move(region));
  ASSERT_TRUE(spatial.Calculate(1, nullptr));
  CStats_Region pushed(&spatial);
  CTallyscope session;
  session.Fill(&pushed, false);
  pushed.Sort(1, 0, nullptr);
  session.GetUniStats(1)->Calculate(1, nullptr);
  Shift(table, 1, 3);
  EXPECT_FALSE(pushed.IsSorted(1, 0));
  EXPECT_EQ(session.GetUniStats(1)->GetFlags(0), 0);
}

}  // namespace

}  // namespace tallyscope
