// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

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

TEST(Session, StartsUnivariateOnTheFirstAxis) {
  CTallyscope session;
  EXPECT_EQ(session.GetMode(), CTallyscope::eUnivariate);
  EXPECT_EQ(session.GetKeyDim(), -1);
  EXPECT_EQ(session.GetAncDim(), -1);
}

TEST(Session, ChoosesFields) {
  CTallyscope session;
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

TEST(Session, CachesTheFiguresOfEachDim) {
  auto table = TableFrom(R"(X Y Z  Au Cu
                            1 2 3  4  5)");
  CTallyscope session;
  session.Fill(&table, false);
  for (int dim = -3; dim < 2; ++dim) {
    auto* figures = session.GetUniStats(dim);
    ASSERT_EQ(figures->GetItemCount(), 1);
    EXPECT_EQ(figures->GetItemDim(0), dim);
    EXPECT_EQ(figures->GetItemData(0), &table);
    session.SetUniDim(dim);
    EXPECT_EQ(session.GetCalculator(), figures);
    figures->Calculate(1, nullptr);
  }
  EXPECT_EQ(session.GetUniStats(-3)->mean, 3);
  EXPECT_EQ(session.GetUniStats(0)->mean, 4);
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

}  // namespace

}  // namespace tallyscope
