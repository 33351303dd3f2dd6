// SPDX-License-Identifier: MIT
#include "workbench/PS_Univariate.h"

namespace tallyscope {

CPS_Univariate::~CPS_Univariate() {
  CPS_Univariate::DestroyPPages();
}

void CPS_Univariate::CreatePPUnivariateScatter() {
  MakePage(scatter_);
}

void CPS_Univariate::DestroyPPUnivariateScatter() {
  DestroyPage(scatter_);
}

void CPS_Univariate::CreatePPUnivariateStats() {
  MakePage(stats_);
}

void CPS_Univariate::DestroyPPUnivariateStats() {
  DestroyPage(stats_);
}

void CPS_Univariate::CreatePPUnivariateHistogram() {
  MakePage(histogram_);
}

void CPS_Univariate::DestroyPPUnivariateHistogram() {
  DestroyPage(histogram_);
}

void CPS_Univariate::DestroyPPages() {
  DestroyPPUnivariateScatter();
  DestroyPPUnivariateStats();
  DestroyPPUnivariateHistogram();
}

}  // namespace tallyscope
