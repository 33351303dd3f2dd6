// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "workbench/PP_Univariate_Histogram.h"
#include "workbench/PP_Univariate_Scatter.h"
#include "workbench/PP_Univariate_Stats.h"
#include "workbench/PS_BaseTS.h"

namespace tallyscope {

// The sheet of a univariate analysis.
class CPS_Univariate : public CPS_BaseTS {
 public:
  using CPS_BaseTS::CPS_BaseTS;
  ~CPS_Univariate() override;

  void CreatePPUnivariateScatter();
  void DestroyPPUnivariateScatter();
  void CreatePPUnivariateStats();
  void DestroyPPUnivariateStats();
  void CreatePPUnivariateHistogram();
  void DestroyPPUnivariateHistogram();
  void DestroyPPages() override;

 private:
  std::unique_ptr<CPP_Univariate_Scatter> scatter_;
  std::unique_ptr<CPP_Univariate_Stats> stats_;
  std::unique_ptr<CPP_Univariate_Histogram> histogram_;
};

}  // namespace tallyscope
