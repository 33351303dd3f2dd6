// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "PairTable.h"
#include "statistics/Stats_Bivariate.h"
#include "statistics/Stats_Multivariate.h"
#include "statistics/Tallyscope.h"
#include "tests/support/Made.h"

namespace tallyscope {
namespace {

TEST(SessionCalculators, EachModeMakesItsOwn) {
  PairTable table({{{1}, {2}}, {{3}, {4}}});
  CTallyscope session;
  session.Fill(&table, false);
  session.SetMode(CTallyscope::eUnivariate);
  session.CreateCalculator();
  EXPECT_EQ(session.GetOwnCalculator(), nullptr);

  session.SetMode(CTallyscope::eBivariate);
  EXPECT_EQ(session.GetCalculator(), nullptr);
  session.CreateCalculator();
  CStats_Calculator* pair = session.GetCalculator();
  EXPECT_NE(dynamic_cast<CStats_Bivariate*>(pair), nullptr);
  session.CreateCalculator();
  EXPECT_EQ(session.GetCalculator(), pair) << "one is enough";

  session.SetMode(CTallyscope::eVariogram);
  session.DestroyCalculator();
  EXPECT_EQ(session.GetOwnCalculator(), pair) << "modes without one leave it";

  session.SetMode(CTallyscope::eSpatial);
  session.DestroyCalculator();
  session.CreateCalculator();
  EXPECT_NE(dynamic_cast<CStats_Multivariate*>(session.GetOwnCalculator()), nullptr);
  session.SetMode(CTallyscope::eMultivariate);
  EXPECT_EQ(session.GetCalculator(), session.GetOwnCalculator());
}

// A host that keeps the variogram and model of its second field itself.
class CKeepsVariograms : public CMadeTable {
 public:
  CKeepsVariograms()
      : CMadeTable({made::Ramp(3, 0, 2), made::Ramp(3, 5, 6), made::Ramp(3, 1, 2), made::Ramp(3, 3, 4)}, 2) {}
  CStats_SampleVariogram* GetVariogram(int field) override { return field == 1 ? &variogram : nullptr; }
  CStats_ModelVariogram* GetVariogramModel(int field) override { return field == 1 ? &model : nullptr; }

  CStats_SampleVariogram variogram;
  CStats_ModelVariogram model;
};

CMadeTable MakeSolid() {
  return TableFrom(R"(X Y Z  Au Cu
                      1 2 3  4  5
                      2 2 3  6  7
                      1 4 3  9  8)");
}

TEST(SessionCalculators, EachColumnHasItsVariogramAndModel) {
  auto table = MakeSolid();
  CTallyscope session;
  session.Fill(&table, false);
  const double maxima[] = {3, 4, 2, 9, 8};  // Z Y X Au Cu
  for (int dim = -3; dim < 2; ++dim) {
    auto* variogram = session.GetVariogram(dim);
    ASSERT_EQ(variogram->GetItemCount(), 1);
    EXPECT_EQ(variogram->GetItemData(0), &table);
    EXPECT_EQ(variogram->GetItemDim(0), dim);
    EXPECT_EQ(variogram->GetSpatialDimCount(), 3);
    session.SetMode(CTallyscope::eVariogram);
    session.SetVarDim(dim);
    EXPECT_EQ(session.GetCalculator(), variogram);
    session.SetMode(CTallyscope::eUnivariate);
    session.SetUniDim(dim);
    auto* figures = session.GetUniStats(dim);
    EXPECT_EQ(session.GetCalculator(), figures);
    EXPECT_EQ(figures->GetItemDim(0), dim);
    figures->Calculate(1, nullptr);
    EXPECT_EQ(figures->maximum, maxima[dim + 3]) << dim;
  }
  EXPECT_EQ(session.GetVariogram(-3) + 1, session.GetVariogram(0)) << "axes in front";
  session.GetVariogramModel(0)->SetIsotropicNugget(5);
  EXPECT_TRUE(session.GetVariogramModel(1)->IsEmpty());

  session.GetVariogram(0)->CalcVariogram(0, 10, 0, nullptr);
  session.SetMode(CTallyscope::eUnivariate);
  session.SetMode(CTallyscope::eVariogram);
  session.SetVarDim(0);
  EXPECT_EQ(session.GetCalculator()->GetFlags(0) & 4, 4) << "what was computed stays";
}

TEST(SessionCalculators, AHostsOwnVariogramIsUsed) {
  CKeepsVariograms table;
  auto elsewhere = MakeSolid();
  table.variogram.Add(&elsewhere, 0);
  table.variogram.Add(&elsewhere, 1);
  {
    CTallyscope session;
    session.Fill(&table, false);
    EXPECT_EQ(session.GetVariogram(1), &table.variogram);
    EXPECT_EQ(session.GetVariogramModel(1), &table.model);
    EXPECT_NE(session.GetVariogram(0), &table.variogram);
    ASSERT_EQ(table.variogram.GetItemCount(), 1) << "another table's items are dropped";
    EXPECT_EQ(table.variogram.GetItemData(0), &table);
    EXPECT_EQ(table.variogram.GetItemDim(0), 1);
    table.variogram.CalcVariogram(0, 10, 0, nullptr);
    table.model.SetIsotropicNugget(3);
  }
  CTallyscope next;
  next.Fill(&table, false);
  EXPECT_EQ(next.GetVariogram(1)->GetFlags(0) & 4, 4) << "a new session of the same table computes nothing anew";
  EXPECT_EQ(next.GetVariogramModel(1)->isotropicNugget.nugget, 3);
}

}  // namespace
}  // namespace tallyscope
