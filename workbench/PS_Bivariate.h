// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "workbench/PP_Bivariate_Scatter.h"
#include "workbench/PP_Bivariate_Stats.h"
#include "workbench/PS_BaseTS.h"

namespace tallyscope {

// The sheet of a bivariate analysis.
class CPS_Bivariate : public CPS_BaseTS {
 public:
  using CPS_BaseTS::CPS_BaseTS;
  ~CPS_Bivariate() override;

  void CreatePPBivariateScatter();
  void DestroyPPBivariateScatter();
  void CreatePPBivariateStats();
  void DestroyPPBivariateStats();
  void DestroyPPages() override;

 private:
  std::unique_ptr<CPP_Bivariate_Scatter> scatter_;
  std::unique_ptr<CPP_Bivariate_Stats> stats_;
};

}  // namespace tallyscope
