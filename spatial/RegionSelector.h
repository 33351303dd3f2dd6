// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <span>
#include <vector>

#include "spatial/Extraction.h"
#include "spatial/PolygonTest.h"
#include "spatial/StationQuery.h"

namespace tallyscope {

class CProgressSink;
class CStats_Data;
class CStats_Rgn;
class CStats_RgnDataRange;
class PairProgress;

// Evaluates the regions of a selection, one after the other, into its bits, and records the stations whose bit changes.
//   RegionSelector selector(data, settings, bits, changed, sink, progress);   // bits for all stations
//   selector.Apply(region);
class RegionSelector {
 public:
  // `sink` is asked while a search is built, `progress`, which reports to it, while stations are looked at.
  RegionSelector(CStats_Data& data, const ExtractionSettings& settings, bvector& bits, std::vector<int>& changed,
                 CProgressSink* sink, PairProgress& progress);

  // False if the region's search can't be built, and then nothing is taken, or when the sink cancels.
  bool Apply(CStats_Rgn& region);

 private:
  bool Records() const { return settings_.Has(ExtractionSettings::kChanges); }
  void Take(int station) {
    if (Records() && bits_.Get(station) != include_) changed_.push_back(station);
    bits_.Set(station, include_);
  }
  void TakeRange(int first, int last);
  void Invert();
  bool TakeValues(CStats_RgnDataRange& region);
  bool TakeRectangle(CStats_Rgn& region);
  bool ScanRectangle(const std::array<int, 3>& dims, int axes, const Box& box);
  bool TakePolygon(CStats_Rgn& region);
  bool TakeLeaves(const PointIndex& points, std::span<const PointIndex::Node* const> leaves, PolygonTest& polygon,
                  const PolygonTest::Scope& outer);
  void TakeLeaf(const PointIndex& points, const PointIndex::Node& leaf, PolygonTest& polygon,
                const PolygonTest::Scope& scope);
  bool IsSearchBuiltFor(const std::array<int, 3>& dims, int dimCount);

  CStats_Data& data_;
  const ExtractionSettings& settings_;
  int total_;
  bvector& bits_;
  std::vector<int>& changed_;
  CProgressSink* sink_;
  PairProgress& progress_;
  bool include_ = true;                     // of the region at hand
  std::vector<PolygonTest::Place> places_;  // of the leaf at hand
};

}  // namespace tallyscope
