// SPDX-License-Identifier: MIT
#include "workbench/PS_Univariate.h"

namespace tallyscope {

CPS_Univariate::~CPS_Univariate() {
  CPS_Univariate::DestroyPPages();
}

void CPS_Univariate::CreatePPUnivariateStats() {
  MakePage(stats_);
}

void CPS_Univariate::DestroyPPUnivariateStats() {
  DestroyPage(stats_);
}

void CPS_Univariate::DestroyPPages() {
  DestroyPPUnivariateStats();
}

}  // namespace tallyscope
