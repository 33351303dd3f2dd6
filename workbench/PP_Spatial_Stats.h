// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "workbench/PP_Stats.h"

namespace tallyscope {

// The "Statistics" page of a spatial analysis: where the stations lie, counted where all axes have a value.
class CPP_Spatial_Stats : public CPP_Stats {
 public:
  CPP_Spatial_Stats();

  int total = 0;
  int valid = 0;
  int invalid = 0;
  std::array<Range, 3> axes{};

  void Initialise() override;
  void UploadData() override;
  void DoDataExchange(unsigned control, CDataExchange* exchange) override;
  void EnableControls() override;  // row Z shows with three axes

 protected:
  std::vector<FigureGroup> GetGroups() const override;
};

}  // namespace tallyscope
