// SPDX-License-Identifier: MIT
#include "workbench/PS_Univariate.h"

namespace tallyscope {

CPS_Univariate::~CPS_Univariate() {
  CPS_Univariate::DestroyPPages();
}

void CPS_Univariate::CreatePPUnivariateStats() {
  DestroyPPUnivariateStats();
  stats_ = std::make_unique<CPP_Univariate_Stats>();
  stats_->sheet = this;
  AddPage(stats_.get());
}

void CPS_Univariate::DestroyPPUnivariateStats() {
  if (stats_) RemovePage(stats_.get());
  stats_.reset();
}

void CPS_Univariate::DestroyPPages() {
  DestroyPPUnivariateStats();
}

void CPS_Univariate::Write2Registry() {
  if (stats_) stats_->Write2Registry();
}

}  // namespace tallyscope
