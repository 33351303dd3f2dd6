// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "spatial/Stats_Spatial.h"
#include "spatial/VariogramCurve.h"

namespace tallyscope {

class CStats_VariogramData;

// How the values of a field differ with the separation of their stations: one polar lag grid, computed once, from which
// curves in any direction are read without going back to the stations.
//   CStats_SampleVariogram variogram;
//   variogram.Add(&table, dim);
//   variogram.ResetSpatialDims();
//   if (!variogram.CalcVariogram(0, -1, 0, sink)) ...        // default range, all stations; cancelled
//   variogram.GetVariogramData(curve);                       // all directions
//   variogram.GetVariogramData(curve, 45, 0, 22.5);          // north-east, give or take 22.5 degrees
class CStats_SampleVariogram : public CStats_Spatial {
 public:
  // Of the last CalcErrorVariance that went through.
  int errorPairCount = 0;  // saturates
  std::int64_t errorPairs = 0;
  double errorCovariance = 0;
  double errorMoment = 0;

  // Computes the grid: 50 lags by 72 azimuths, or 25 by 36 by 18 dips in three dimensions. A range of 0 or less gives
  // way to the default range, which follows from the spacing of the stations in the calculator's own spatial dims; a
  // limit below 1 takes all stations. Sets flag 4 of the item. False when the sink cancels or the stations can't be
  // searched: grid, flag and settings are then those of the grid that stood before.
  virtual bool CalcVariogram(int item, double range, int sampleLimit, CProgressSink* progress);

  // The values of pairs of stations of one leaf of the search that lie closer than `range`: an estimate of the
  // variogram next to zero. False without a search or when the sink cancels, which leaves the former figures.
  virtual bool CalcErrorVariance(int item, double range, CProgressSink* progress);

  // Curves of the grid that stands, by its own range and shape: an entry for each lag with a pair. False, with `data`
  // as it was, if there is no polar grid. `direction` is a bearing in degrees clockwise from +y, `dip` is positive
  // downwards and counts with three spatial dims only; `tolerance` is to each side of both. A bin that is in part
  // within the tolerance counts in part. Pair counts are of the grid, where each pair counts twice; they saturate.
  virtual bool GetVariogramData(CStats_VariogramData& data);
  virtual bool GetVariogramData(CStats_VariogramData& data, double direction, double dip, double tolerance);
  // The same curves with counts in full; empty if there is no polar grid.
  VariogramCurve GetCurve() const;
  VariogramCurve GetCurve(double direction, double dip, double tolerance) const;

 private:
  struct Weights {
    std::vector<double> levels;
    std::vector<double> rows;
  };

  double GetDefaultRange(CStats_Data& data, CProgressSink* progress);
  template <class GetWeights>
  VariogramCurve ReadCurve(const GetWeights& getWeights) const;
  bool Hand(VariogramCurve curve, CStats_VariogramData& data) const;
};

}  // namespace tallyscope
