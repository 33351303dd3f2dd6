// SPDX-License-Identifier: MIT
#include "workbench/PS_Spatial.h"

namespace tallyscope {

CPS_Spatial::~CPS_Spatial() {
  CPS_Spatial::DestroyPPages();
}

void CPS_Spatial::CreatePPSpatialScatter() {
  MakePage(scatter_);
}

void CPS_Spatial::DestroyPPSpatialScatter() {
  DestroyPage(scatter_);
}

void CPS_Spatial::CreatePPSpatialStats() {
  MakePage(stats_);
}

void CPS_Spatial::DestroyPPSpatialStats() {
  DestroyPage(stats_);
}

void CPS_Spatial::DestroyPPages() {
  DestroyPPSpatialScatter();
  DestroyPPSpatialStats();
}

}  // namespace tallyscope
