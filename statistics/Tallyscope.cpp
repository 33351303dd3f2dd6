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
  const auto count = static_cast<std::size_t>(axes + data->GetValueSize());
  uniStats_ = std::vector<CStats_Univariate>(count);
  variograms_ = std::vector<CStats_SampleVariogram>(count);
  variogramModels_ = std::vector<CStats_ModelVariogram>(count);
  for (int axis = 1; axis <= axes; ++axis) FillCaches(-axis);
  for (int field = 0; field < data->GetValueSize(); ++field) FillCaches(field);
}

// A host's variogram keeps what it has computed, if it is of this table.
void CTallyscope::FillCaches(int dim) {
  GetUniStats(dim)->Add(data_, dim);
  auto* variogram = GetVariogram(dim);
  if (!variogram->IsItem(0) || variogram->GetItemData(0) != data_) {
    variogram->Clear();
    variogram->Add(data_, dim);
  }
  variogram->ResetSpatialDims();
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
    case eVariogram:
      return GetVariogram(dims_.front());
  }
  return nullptr;
}

CStats_Univariate* CTallyscope::GetUniStats(int dim) {
  return &uniStats_[GetCacheIndex(dim)];
}

CStats_SampleVariogram* CTallyscope::GetVariogram(int dim) {
  auto* own = data_->GetVariogram(dim);
  return own != nullptr ? own : &variograms_[GetCacheIndex(dim)];
}

CStats_ModelVariogram* CTallyscope::GetVariogramModel(int dim) {
  auto* own = data_->GetVariogramModel(dim);
  return own != nullptr ? own : &variogramModels_[GetCacheIndex(dim)];
}

std::size_t CTallyscope::GetCacheIndex(int dim) const {
  return static_cast<std::size_t>(dim < 0 ? -dim - 1 : data_->GetSpatialSize() + dim);
}

}  // namespace tallyscope
