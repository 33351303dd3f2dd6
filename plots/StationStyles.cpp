// SPDX-License-Identifier: MIT
#include "plots/StationStyles.h"

#include <algorithm>

#include "plots/UPlotX_Tallyscope.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

namespace {

constexpr COLORREF kBlackColour = 0x000000;
constexpr COLORREF kRedColour = 0x0000ff;
constexpr long long kReadAllPart = 4;  // from a fourth of the stations on, reading all in order is the quicker way

}  // namespace

StationStyles::StationStyles(const CUPlotX_Tallyscope& plot, Nulls nulls, long long expected)
    : data_(*plot.data),
      hidesNulls_(nulls == Nulls::kHidden),
      colourDim_(plot.colourDim),
      sizeDim_(plot.sizeDim),
      colours_(plot.GetColourModulation()),
      sizes_(plot.GetSizeModulation()),
      selection_(plot.GetShownSelection()),
      chosen_(plot.ForPaper(colours_.IsOn() ? kBlackColour : kRedColour)) {
  for (const COLORREF colour : plot.colourTable) table_.push_back(plot.ForPaper(colour));
  table_.resize(kBlack, plot.ForPaper(kBlackColour));
  table_.push_back(plot.ForPaper(kBlackColour));
  if (IsModulated() && expected * kReadAllPart > data_.GetSize()) ReadAll();
}

void StationStyles::ReadAll() {
  const int total = data_.GetSize();
  all_.assign(static_cast<std::size_t>(total), kPlain);
  for (int first = 0; first < total; first += kBlock) {
    const int count = std::min(kBlock, total - first);
    Code* codes = all_.data() + first;
    const auto read = [&](int dim) { data_.ReadValues(dim, first, count, values_.data(), valid_.data()); };
    if (colours_.IsOn()) {
      read(colourDim_);
      AddColours(codes, count);
    }
    if (sizes_.IsOn()) {
      read(sizeDim_);
      AddSizes(codes, count);
    }
  }
}

void StationStyles::Read(const int* stations, int count) {
  if (!all_.empty()) {
    for (int i = 0; i < count; ++i) codes_[static_cast<std::size_t>(i)] = all_[static_cast<std::size_t>(stations[i])];
  } else {
    std::fill_n(codes_.begin(), count, kPlain);
    const auto read = [&](int dim) { data_.ReadValuesAt(dim, stations, count, values_.data(), valid_.data()); };
    if (colours_.IsOn()) {
      read(colourDim_);
      AddColours(codes_.data(), count);
    }
    if (sizes_.IsOn()) {
      read(sizeDim_);
      AddSizes(codes_.data(), count);
    }
  }
  if (selection_ == nullptr) return;
  for (int i = 0; i < count; ++i) {
    if (selection_->Get(stations[i])) codes_[static_cast<std::size_t>(i)] |= kSelected;
  }
}

// From the values read last.

void StationStyles::AddColours(Code* codes, int count) {
  colours_.GetMap().GetIndices(values_.data(), count, indices_.data());
  AddIndices(codes, count, kColour, 0);
}

void StationStyles::AddSizes(Code* codes, int count) {
  sizes_.GetMap().GetIndices(values_.data(), count, indices_.data());
  AddIndices(codes, count, kHalfMask << kHalfShift, kHalfShift);
}

// Valid values put their index into the bits `place`. Nulls come in no order that a branch could be guessed by.
void StationStyles::AddIndices(Code* codes, int count, Code place, int shift) const {
  const Code null = hidesNulls_ ? kHidden : Code{0};
  for (int i = 0; i < count; ++i) {
    const auto at = static_cast<std::size_t>(i);
    const auto isValid = static_cast<Code>(-valid_[at]);  // all bits or none
    const auto with = static_cast<Code>((codes[i] & ~place) | indices_[at] << shift);
    codes[i] = static_cast<Code>((with & isValid) | ((codes[i] | null) & ~isValid));
  }
}

}  // namespace tallyscope
