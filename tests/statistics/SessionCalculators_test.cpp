// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "PairTable.h"
#include "statistics/Stats_Bivariate.h"
#include "statistics/Stats_Multivariate.h"
#include "statistics/Tallyscope.h"

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

}  // namespace
}  // namespace tallyscope
