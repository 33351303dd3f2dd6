// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "workbench/PP_Univariate_Stats.h"
#include "workbench/PS_BaseTS.h"

namespace tallyscope {

// The sheet of a univariate analysis.
class CPS_Univariate : public CPS_BaseTS {
 public:
  using CPS_BaseTS::CPS_BaseTS;
  ~CPS_Univariate() override;

  void CreatePPUnivariateStats();
  void DestroyPPUnivariateStats();
  void DestroyPPages() override;

 private:
  std::unique_ptr<CPP_Univariate_Stats> stats_;
};

}  // namespace tallyscope
