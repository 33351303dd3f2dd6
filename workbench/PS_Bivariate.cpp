// SPDX-License-Identifier: MIT
#include "workbench/PS_Bivariate.h"

namespace tallyscope {

CPS_Bivariate::~CPS_Bivariate() {
  CPS_Bivariate::DestroyPPages();
}

void CPS_Bivariate::CreatePPBivariateScatter() {
  MakePage(scatter_);
}

void CPS_Bivariate::DestroyPPBivariateScatter() {
  DestroyPage(scatter_);
}

void CPS_Bivariate::CreatePPBivariateStats() {
  MakePage(stats_);
}

void CPS_Bivariate::DestroyPPBivariateStats() {
  DestroyPage(stats_);
}

void CPS_Bivariate::DestroyPPages() {
  DestroyPPBivariateScatter();
  DestroyPPBivariateStats();
}

}  // namespace tallyscope
