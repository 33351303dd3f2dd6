// SPDX-License-Identifier: MIT
#include "statistics/Tallyscope.h"

#include <cstdlib>
#include <ctime>

#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Bivariate.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Multivariate.h"

namespace tallyscope {

CTallyscope::CTallyscope() {
  std::srand(static_cast<unsigned>(std::time(nullptr)));
  levelId_ = std::rand();
}

CTallyscope::~CTallyscope() = default;

void CTallyscope::Fill(CStats_Data* data, bool owns) {
  ownsData_ = owns;
  ownedData_.reset(owns ? data : nullptr);
  SetData(data);
  const int axes = data->GetSpatialSize();
  const int count = axes + data->GetValueSize();
  uniStats_.clear();
  uniStats_.resize(static_cast<std::size_t>(count));
  for (int dim = -axes; dim < data->GetValueSize(); ++dim) GetUniStats(dim)->Add(data, dim);
}

void CTallyscope::SetData(CStats_Data* data) {
  if (ownsData_ && ownedData_.get() != data) {
    static_cast<void>(ownedData_.release());
    ownedData_.reset(data);
  }
  data_ = data;
  spreadsheetData_ = data;
}

void CTallyscope::SetUniDim(int dim) {
  uniDim_ = dim;
  dims_ = {dim};
}

void CTallyscope::SetSPDim(int dim) {
  spDim_ = dim;
  dims_ = {dim};
}

void CTallyscope::SetVarDim(int dim) {
  varDim_ = dim;
  dims_ = {dim};
}

void CTallyscope::SetBiDim1(int dim) {
  biDim1_ = dim;
  dims_.resize(2);
  dims_.front() = dim;
}

void CTallyscope::SetBiDim2(int dim) {
  biDim2_ = dim;
  dims_.resize(2);
  dims_.back() = dim;
}

void CTallyscope::CreateCalculator() {
  if (calculator_) return;
  if (mode_ == eBivariate) calculator_ = std::make_unique<CStats_Bivariate>();
  if (mode_ == eMultivariate || mode_ == eSpatial) calculator_ = std::make_unique<CStats_Multivariate>();
}

void CTallyscope::DestroyCalculator() {
  if (mode_ == eBivariate || mode_ == eMultivariate || mode_ == eSpatial) calculator_.reset();
}

void CTallyscope::CreateSpatialCalculator() {
  if (spatial_) return;
  spatial_ = std::make_unique<CStats_Spatial>();
  spatial_->Add(data_, dims_.front());
  spatial_->SetSpatialDims(-1, -2, -3, data_->GetSpatialSize());
}

void CTallyscope::DestroySpatialCalculator() {
  spatial_.reset();
}

CStats_Calculator* CTallyscope::GetCalculator() {
  switch (mode_) {
    case eUnivariate:
      return GetUniStats(dims_.front());
    case eBivariate:
    case eMultivariate:
      return calculator_.get();
    case eSpatial:
      return spatial_.get();
    default:
      return nullptr;
  }
}

CStats_Univariate* CTallyscope::GetUniStats(int dim) {
  return &uniStats_[GetCacheIndex(dim)];
}

std::size_t CTallyscope::GetCacheIndex(int dim) const {
  return static_cast<std::size_t>(dim < 0 ? -dim - 1 : data_->GetSpatialSize() + dim);
}

}  // namespace tallyscope
