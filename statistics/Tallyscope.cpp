// SPDX-License-Identifier: MIT
#include "statistics/Tallyscope.h"

#include <cassert>
#include <cstdlib>
#include <ctime>

#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Bivariate.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Multivariate.h"

namespace tallyscope {

class CTallyscope::Listener : public CDataListener {
 public:
  explicit Listener(CTallyscope& session) : session_(session) {}
  void OnDataChanged(const DataChange& change) override { session_.DropResults(change); }

 private:
  CTallyscope& session_;
};

CTallyscope::CTallyscope() {
  std::srand(static_cast<unsigned>(std::time(nullptr)));
  levelId_ = std::rand();
}

CTallyscope::~CTallyscope() = default;

void CTallyscope::Fill(CStats_Data* data, bool owns) {
  multivariate_.reset();
  bivariate_.reset();
  spatial_.reset();
  sort = {};
  ownsData_ = owns;
  if (ownedData_.get() == data) static_cast<void>(ownedData_.release());
  ownedData_.reset(owns ? data : nullptr);
  SetData(data);
  MakeCaches();
}

// Entries that stay are made new in place.
void CTallyscope::MakeCaches() {
  axes_ = data_->GetSpatialSize();
  const int fields = data_->GetValueSize();
  const auto renew = [count = static_cast<std::size_t>(axes_ + fields)](auto& cache) {
    cache.resize(count);
    for (auto& entry : cache) entry = {};
  };
  renew(uniStats_);
  renew(variograms_);
  renew(variogramModels_);
  for (int axis = 1; axis <= axes_; ++axis) FillCaches(-axis);
  for (int field = 0; field < fields; ++field) FillCaches(field);
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

// What hangs on the data.

void CTallyscope::DropResults(const DataChange& change) {
  const int columns = data_->GetSpatialSize() + data_->GetValueSize();
  const bool moved = data_->GetSpatialSize() != axes_ || uniStats_.size() != static_cast<std::size_t>(columns);
  if (moved || change.kind == DataChange::kAxes) {
    sort = {};
    if (bivariate_) bivariate_->xLink = bivariate_->yLink = nullptr;  // caches of other columns now
    MakeCaches();
  }
  for (int dim = -axes_; dim < columns - axes_; ++dim) {
    if (change.Concerns(dim)) DropFigures(dim);
    // Any variogram is in terms of the axes.
    auto* variogram = GetVariogram(dim);
    if ((change.Concerns(dim) || change.dim < 0) && variogram->IsItem(0)) variogram->ResetFlags(0);
  }
  if (auto* own = GetOwnCalculator()) {
    for (int item = 0; item < own->GetItemCount(); ++item) {
      if (change.Concerns(own->GetItemDim(item))) own->ResetFlags(0);
    }
  }
  if (spatial_) DropSelection();
}

void CTallyscope::DropFigures(int dim) {
  auto& figures = *GetUniStats(dim);
  figures = {};
  figures.Add(data_, dim);
}

// Gestures may be in terms of any column.
void CTallyscope::DropSelection() {
  spatial_->ResetFlags(0);
  spatial_->lists.clear();
  spatial_->changed.clear();
  spatial_->bitmaps.clear();
  if (spatial_->regions.IsEmpty()) return;
  spatial_->extractFlags &= ~static_cast<unsigned>(CStats_Spatial::kIncremental);
  spatial_->Calculate(1, nullptr);
}

void CTallyscope::SetData(CStats_Data* data) {
  if (ownsData_ && ownedData_.get() != data) {
    static_cast<void>(ownedData_.release());
    ownedData_.reset(data);
  }
  data_ = data;
  spreadsheetData_ = data;
  listener_ = std::make_shared<Listener>(*this);
  if (data != nullptr) data->AddListener(listener_);
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
  if (GetOwnCalculator() != nullptr) return;
  if (mode_ == eBivariate) bivariate_ = std::make_unique<CStats_Bivariate>();
  if (mode_ == eMultivariate || mode_ == eSpatial) multivariate_ = std::make_unique<CStats_Multivariate>();
}

void CTallyscope::DestroyCalculator() {
  if (mode_ != eBivariate && mode_ != eMultivariate && mode_ != eSpatial) return;
  bivariate_.reset();
  multivariate_.reset();
}

CStats_Calculator* CTallyscope::GetOwnCalculator() const {
  if (bivariate_) return bivariate_.get();
  return multivariate_.get();
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
      return GetOwnCalculator();
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
  const auto index = static_cast<std::size_t>(dim < 0 ? -dim - 1 : data_->GetSpatialSize() + dim);
  assert(index < uniStats_.size());
  return index;
}

}  // namespace tallyscope
