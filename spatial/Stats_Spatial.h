// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <memory>
#include <span>
#include <vector>

#include "platform/core/Box.h"
#include "spatial/Extraction.h"
#include "spatial/LagGrid.h"
#include "statistics/Stats_Calculator.h"
#include "statistics/Stats_RgnList.h"
#include "statistics/bvector.h"

namespace tallyscope {

struct StationIndex;

// The calculator of all that depends on where stations lie. Bits of Calculate:
//   1   extraction: stations by regular cell, or by the regions of a selection
//   2   lag pairs: stations some distance apart, cell by cell
//   4   lag grid: all pairs of stations that have a value in the item's field, sorted by their separation
//   8   surface fit: a plane through the values, v' = a + b x' + c y' on normalised co-ordinates
// It reaches the stations through the data set's point search, which it leaves built on its spatial dims. A co-ordinate
// that isn't finite counts as null. A session's
// calculator holds the selection:
//   spatial.AddSelRegion(std::make_unique<CStats_RgnSelAll>());
//   spatial.bitmaps[0].Get(station) ...
//   spatial.ClearLastSelRegion();   // undo
class CStats_Spatial : public CStats_Calculator {
 public:
  using enum ExtractionSettings::ExtractFlag;
  using enum LagSettings::LagFlag;
  enum PairFlag : unsigned {
    kPairX = 0x01,  // axes with a range in box mode
    kPairY = 0x02,
    kPairZ = 0x04,
    kPairCells = 0x08,     // a pair of lists for each cell; clear: a single one
    kRing = 0x10,          // ring and sector; clear: box
    kSampleLeaves = 0x20,  // stations and pairs are limited; clear: all
    kPairValues = 0x40     // both stations have a value in the item's field
  };

  CStats_Spatial();

  // Results of the last extraction that went through. Region evaluation has one list, one list of changes and one
  // bitmap; lag pairs have two lists a cell, the first and the second stations.
  std::vector<std::vector<int>> lists;
  std::vector<std::vector<int>> changed;
  std::vector<bvector> bitmaps;

  // Of the next extraction (see Extraction.h).
  unsigned extractFlags = kLists;
  CStats_RgnList regions;
  Box cellBox;
  Point3 origin{};
  std::array<int, 3> cellCount{};
  Point3 cellStep{};

  unsigned pairFlags = 0;
  double range = 0;             // ring: distance, or spacing of the cells' distances
  double width = 0;             // ring: radial
  double azimuth = 0;           // ring: radians from +x towards +y
  double azimuthTolerance = 0;  // to each side
  bool limitWidth = false;
  double maxWidth = 1e10;          // most length of the ring's outer arc
  Point3 pairOffset{};             // box: of the window from the station, or spacing of the cells
  Box pairBox;                     // box: the window
  std::array<int, 3> pairCount{};  // cells; ring: distances, azimuths
  int stationLimit = 1000;         // stations sampled; negative: all
  int pairsPerStation = 100;       // asked after each pair, so one is always kept
  int totalPairs = 100000;

  // Of the next lag grid (see LagSettings.h).
  unsigned lagFlags = 0;
  Point3 lagRange{-1, -1, -1};
  std::array<int, 3> lagCount{90, 90, 90};
  int sampleLimit = 20000;
  LagGrid grid;  // the last that was computed, with settings of its own

  // The last plane, and the start and range that normalise each of its three co-ordinates.
  double fitA = 0, fitB = 0, fitC = 0;
  double xMin = 0, xRange = 1;
  double yMin = 0, yRange = 1;
  double valueMin = 0, valueRange = 1;

  ExtractionSettings GetExtractionSettings() const;
  LagSettings GetLagSettings() const;                // with the spatial dims
  void SetLagSettings(const LagSettings& settings);  // but for the dims

  bool CalculateItem(int item, int flags, CProgressSink* progress) override;

  virtual void SetSpatialDims(int dimX, int dimY, int dimZ, int dimCount);
  virtual void ResetSpatialDims();  // the axes of item 0's data set; two without an item
  virtual int GetSpatialDimX() { return dims_[0]; }
  virtual int GetSpatialDimY() { return dims_[1]; }
  virtual int GetSpatialDimZ() { return dims_[2]; }
  virtual int GetSpatialDimCount() { return dimCount_; }
  virtual int GetListCount() { return static_cast<int>(lists.size()); }

  // The computations. Each takes its settings from the members above, and puts its result there once it has gone
  // through: false when the search can't be had, the sink cancels, or there are more cells than memory is given to
  // (2^24, or 2 GB of lists and bitmaps); the former result then stands. They throw what the table and the sink throw,
  // with the former result in place. A region whose search can't be built is skipped: the others are taken, and the
  // answer is false in the end.
  virtual bool CalcExtraction(CStats_Data* data, int dim, CProgressSink* progress);
  virtual bool CalcLagPairs(CStats_Data* data, int dim, CProgressSink* progress);
  // Fewer than two spatial dims have no search: their pairs are walked without, and stations with a null co-ordinate
  // have no part in that.
  virtual bool CalcLagGrid(CStats_Data* data, int dim, CProgressSink* progress);
  // Over the stations with a value and both co-ordinates.
  virtual bool CalcSurfaceFit(CStats_Data* data, int dim, CProgressSink* progress);

  // Gestures: add one (what was undone before is dropped), undo the last active, redo the first undone, undo all. False
  // when the sink cancels: regions and selection are then as they were.
  bool AddSelRegion(std::unique_ptr<CStats_Rgn> region, CProgressSink* progress = nullptr);
  bool ClearLastSelRegion(CProgressSink* progress = nullptr);
  bool RestoreLastSelRegion(CProgressSink* progress = nullptr);
  bool ClearAllSelRegion(CProgressSink* progress = nullptr);

 protected:
  std::array<int, 3> GetSpatialDims() { return {GetSpatialDimX(), GetSpatialDimY(), GetSpatialDimZ()}; }

 private:
  class PairCollector;

  bool Reselect(bool incremental, CProgressSink* progress);
  bool SetActiveAndReselect(std::span<CStats_Rgn* const> changing, bool active, CProgressSink* progress);
  std::vector<int> ListFirstStations(CStats_Data& data, const StationIndex& index) const;
  bool ExtractRegions(CStats_Data& data, CProgressSink* progress);
  void TakeOver(Extraction result);

  std::array<int, 3> dims_{-1, -2, -3};
  int dimCount_ = 2;
};

}  // namespace tallyscope
