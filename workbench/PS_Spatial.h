// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "workbench/PP_Spatial_Scatter.h"
#include "workbench/PP_Spatial_Stats.h"
#include "workbench/PS_BaseTS.h"

namespace tallyscope {

// The sheet of a spatial analysis.
class CPS_Spatial : public CPS_BaseTS {
 public:
  using CPS_BaseTS::CPS_BaseTS;
  ~CPS_Spatial() override;

  void CreatePPSpatialScatter();
  void DestroyPPSpatialScatter();
  void CreatePPSpatialStats();
  void DestroyPPSpatialStats();
  void DestroyPPages() override;

 private:
  std::unique_ptr<CPP_Spatial_Scatter> scatter_;
  std::unique_ptr<CPP_Spatial_Stats> stats_;
};

}  // namespace tallyscope
