// SPDX-License-Identifier: MIT
#include "statistics/Analysis.h"

#include <gtest/gtest.h>

#include "spatial/Stats_PointSearch.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/AnalysisKind.h"
#include "statistics/Stats_Bivariate.h"
#include "statistics/Stats_Multivariate.h"
#include "tests/support/Made.h"

namespace tallyscope {

namespace {

using Mode = CTallyscope::eAnalysisMode;

CMadeTable MakeTable(int axes) {
  std::vector<MadeColumn> columns;
  for (unsigned i = 0; i < 5; ++i) columns.push_back(made::Normal(300, i, 1, i + 1));
  return CMadeTable(std::move(columns), axes);
}

// What the table's search and the selection run on, as the dims that count.
std::vector<int> SearchDims(CStats_Data& table, CStats_Spatial& selection) {
  CStats_PointSearch& search = *table.GetPointSearch();
  if (!search.IsPartitioned()) return {};
  std::vector<int> dims = {search.GetFieldX(), search.GetFieldY(), search.GetFieldZ()};
  dims.resize(static_cast<std::size_t>(search.GetDimensions()));
  EXPECT_EQ(selection.GetSpatialDimX(), search.GetFieldX());
  EXPECT_EQ(selection.GetSpatialDimY(), search.GetFieldY());
  EXPECT_EQ(selection.GetSpatialDimCount(), search.GetDimensions());
  return dims;
}

TEST(Analysis, EachModeGetsItsCalculatorsAndSearch) {
  struct Case {
    Mode mode;
    int key;
    int flags;  // of the mode's calculator
    std::vector<int> searched;
  };
  const Case cases[] = {{CTallyscope::eUnivariate, 1, 11, {}},
                        {CTallyscope::eBivariate, 1, 15, {1, -2}},
                        {CTallyscope::eSpatial, 1, 0, {-1, -2, -3}},
                        {CTallyscope::eVariogram, 1, 0, {-1, -2, -3}}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.mode);
    CMadeTable table = MakeTable(3);
    CTallyscope session;
    session.Fill(&table, false);
    CAnalysis analysis(session);
    for (int start = 0; start < 2; ++start) {  // again on what stands
      ASSERT_TRUE(analysis.Start(c.mode, c.key, -2, nullptr));
      EXPECT_EQ(session.GetKeyDim(), c.key);
      EXPECT_EQ(SearchDims(table, *analysis.GetSelection()), c.searched);
      auto* calculator = session.GetCalculator();
      EXPECT_EQ(calculator->GetFlags(0), c.flags);
      EXPECT_EQ(calculator->GetItemCount(), c.mode == CTallyscope::eBivariate ? 2 : 1);
      EXPECT_EQ(analysis.GetBivariate() != nullptr, c.mode == CTallyscope::eBivariate);
      EXPECT_EQ(analysis.GetAxes() != nullptr, c.mode == CTallyscope::eSpatial);
    }
    if (analysis.GetAxes() != nullptr) {
      EXPECT_EQ(analysis.GetAxes()->means.size(), 3u);
    }
    if (analysis.GetBivariate() != nullptr) {
      EXPECT_EQ(analysis.GetBivariate()->yLink, session.GetUniStats(-2));
    }
  }
}

TEST(Analysis, WhatATableLacksIsntStarted) {
  struct Case {
    int axes;
    Mode mode;
    int key;
    int ancillary;
  };
  for (const Case& c : {Case{0, CTallyscope::eSpatial, 0, 0}, Case{1, CTallyscope::eVariogram, 0, 0},
                        Case{0, CTallyscope::eUnivariate, 5, 0}, Case{2, CTallyscope::eUnivariate, -3, 0},
                        Case{2, CTallyscope::eBivariate, 0, 3}, Case{2, CTallyscope::eMultivariate, 0, 0}}) {
    CMadeTable table = MakeTable(c.axes);
    CTallyscope session;
    session.Fill(&table, false);
    EXPECT_FALSE(CAnalysis(session).Start(c.mode, c.key, c.ancillary, nullptr)) << c.mode;
    EXPECT_EQ(session.GetSpatialCalculator(), nullptr);
  }
  CStats_Data one;
  EXPECT_TRUE(CAnalysis::IsPossible(one, CTallyscope::eUnivariate));
  EXPECT_FALSE(CAnalysis::IsPossible(one, CTallyscope::eBivariate));
  for (const auto& kind : GetAnalysisKinds()) EXPECT_EQ(&GetAnalysisKind(kind.mode), &kind);
}

TEST(Analysis, AFieldIsComparedWithItselfWhereThereIsNoOther) {
  CMadeTable table({made::Normal(300, 0, 1)});
  CTallyscope session;
  session.Fill(&table, false);
  EXPECT_FALSE(CAnalysis::IsPossible(table, CTallyscope::eBivariate)) << "nobody is offered that";
  CAnalysis analysis(session, /*picksStations=*/false);
  ASSERT_TRUE(analysis.Start(CTallyscope::eBivariate, 0, 0, nullptr));
  EXPECT_EQ(analysis.GetBivariate()->inertia, 0);
  EXPECT_FALSE(table.GetPointSearch()->IsPartitioned());
}

TEST(Analysis, ATableTooLargeToSortStartsWithoutRanks) {
  CMadeTable made = MakeTable(2);
  CSingleReads table(made);
  table.canSort = false;
  CTallyscope session;
  session.Fill(&table, false);
  CAnalysis analysis(session);
  EXPECT_TRUE(analysis.Start(CTallyscope::eBivariate, 0, 1, nullptr));
  EXPECT_EQ(analysis.GetBivariate()->GetFlags(0), 3);
}

}  // namespace

}  // namespace tallyscope
