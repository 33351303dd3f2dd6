// SPDX-License-Identifier: MIT
#include "statistics/Tallyscope.h"

#include <cstdlib>
#include <ctime>

#include "statistics/Stats_Data.h"

namespace tallyscope {

CTallyscope::CTallyscope() {
  std::srand(static_cast<unsigned>(std::time(nullptr)));
  levelId_ = std::rand();
}

CTallyscope::~CTallyscope() = default;

void CTallyscope::Fill(CStats_Data* data, bool owns) {
  ownedData_.reset(owns ? data : nullptr);
  SetData(data);
  const int axes = data->GetSpatialSize();
  const int count = axes + data->GetValueSize();
  uniStats_.clear();
  uniStats_.resize(static_cast<std::size_t>(count));
  for (int dim = -axes; dim < data->GetValueSize(); ++dim) GetUniStats(dim)->Add(data, dim);
}

void CTallyscope::SetData(CStats_Data* data) {
  if (ownedData_ && ownedData_.get() != data) {
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

CStats_Calculator* CTallyscope::GetCalculator() {
  return mode_ == eUnivariate ? GetUniStats(dims_.front()) : nullptr;
}

CStats_Univariate* CTallyscope::GetUniStats(int dim) { return &uniStats_[GetCacheIndex(dim)]; }

std::size_t CTallyscope::GetCacheIndex(int dim) const {
  return static_cast<std::size_t>(dim < 0 ? -dim - 1 : data_->GetSpatialSize() + dim);
}

}  // namespace tallyscope
