// SPDX-License-Identifier: MIT
#include "plots/UPlotX_St_Scatter.h"

#include "platform/core/StringTable.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

namespace {

constexpr int kDimX = -1;
constexpr int kDimY = -2;

}  // namespace

CUPlotX_St_Scatter::CUPlotX_St_Scatter() {
  scaling = eNatural;
  padding = 0.02;
  titleX = LoadString(kStringAxisX);
  titleY = LoadString(kStringAxisY);
  allowDialogX = false;
  allowDialogY = false;
}

bool CUPlotX_St_Scatter::GetFields(Fields& fields) const {
  fields = {kDimX, kDimY};
  return HasColumns(fields);
}

void CUPlotX_St_Scatter::TakeExtents() {
  Fields fields;
  if (!GetFields(fields)) return;
  titleX = data->GetValueName(kDimX);
  titleY = data->GetValueName(kDimY);
  CStats_Univariate x;
  x.Add(data, kDimX);
  x.Calculate(1, nullptr);
  CStats_Univariate y;
  y.Add(data, kDimY);
  y.Calculate(1, nullptr);
  extents = {{x.minimum, y.minimum, 0}, {x.maximum, y.maximum, 1}, 1};
}

void CUPlotX_St_Scatter::RenderLayer(CDC& dc) {
  if (IsReady()) RenderStations(dc);
}

}  // namespace tallyscope
