// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "platform/core/Box.h"
#include "spatial/LagCell.h"
#include "statistics/Stats_Calculator.h"
#include "statistics/Stats_RgnList.h"
#include "statistics/bvector.h"

namespace tallyscope {

class CStats_PointSearch;
class CStats_Univariate;

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
  enum ExtractFlag : unsigned {
    kRegularCells = 0x01,  // clear: the regions
    kLists = 0x02,
    kBitmaps = 0x04,      // set if neither is
    kIncremental = 0x08,  // the last active region alone, on top of the bits as they stand
    kExtractX = 0x10,     // axes with a range; the others take everything
    kExtractY = 0x20,
    kExtractZ = 0x40,
    kChanges = 0x100  // record stations whose bit changes
  };
  enum PairFlag : unsigned {
    kPairX = 0x01,  // axes with a range in box mode
    kPairY = 0x02,
    kPairZ = 0x04,
    kPairCells = 0x08,     // a pair of lists for each cell; clear: a single one
    kRing = 0x10,          // ring and sector; clear: box
    kSampleLeaves = 0x20,  // stations and pairs are limited; clear: all
    kPairValues = 0x40     // both stations have a value in the item's field
  };

  enum LagFlag : unsigned {
    kLagX = 0x01,  // active axes
    kLagY = 0x02,
    kLagZ = 0x04,
    kPolar = 0x08,     // lag by azimuth by dip; clear: Cartesian, x by y by z
    kSample = 0x10,    // apply sampleLimit
    kUseSearch = 0x20  // walk the pairs leaf by leaf through the point search, which is used up; clear: all by all
  };

  CStats_Spatial();

  // Results. Region evaluation has one list, one list of changes and one bitmap; lag pairs have two lists a cell, the
  // first and the second stations.
  std::vector<std::vector<int>> lists;
  std::vector<std::vector<int>> changed;
  std::vector<bvector> bitmaps;

  unsigned extractFlags = kLists;
  CStats_RgnList regions;
  Box cellBox;      // a cell about its centre
  Point3 origin{};  // centre of cell (0, 0, 0)
  std::array<int, 3> cellCount{};
  Point3 cellStep{};  // between centres

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

  unsigned lagFlags = 0;
  std::array<double, 3> lagRange{-1, -1,
                                 -1};       // polar: the first is the farthest lag; Cartesian: half widths of the grid
  std::array<int, 3> lagCount{90, 90, 90};  // polar: lags, azimuths, dips; Cartesian: cells along x, y, z
  int sampleLimit = 20000;                  // stations, of which every n-th is taken; negative: all
  LagGrid grid;                             // an inactive axis has one entry

  // The plane, and the start and range that normalise each of its three co-ordinates.
  double fitA = 0, fitB = 0, fitC = 0;
  double xMin = 0, xRange = 1;
  double yMin = 0, yRange = 1;
  double valueMin = 0, valueRange = 1;

  bool CalculateItem(int item, int flags, CProgressSink* progress) override;

  virtual void SetSpatialDims(int dimX, int dimY, int dimZ, int dimCount);
  virtual void ResetSpatialDims();  // the axes of item 0's data set; two without an item
  virtual int GetSpatialDimX() { return dims_[0]; }
  virtual int GetSpatialDimY() { return dims_[1]; }
  virtual int GetSpatialDimZ() { return dims_[2]; }
  virtual int GetSpatialDimCount() { return dimCount_; }
  virtual int GetListCount() { return static_cast<int>(lists.size()); }

  // The computations: false when the search can't be had, the sink cancels, or there are more cells than memory is
  // given to (2^24, or 2 GB of lists and bitmaps); what was computed so far then stays. A region whose search can't be
  // built is skipped: the others are taken, and the answer is false in the end.
  virtual bool CalcExtraction(CStats_Data* data, int dim, CProgressSink* progress);
  virtual bool CalcLagPairs(CStats_Data* data, int dim, CProgressSink* progress);
  // Wants valueStatistics_. After the walk through the search that is no longer partitioned. Fewer than two spatial
  // dims have no search: their pairs are walked without, and stations with a null co-ordinate have no part in that.
  virtual bool CalcLagGrid(CStats_Data* data, int dim, CProgressSink* progress);
  // Over the stations with a value and both co-ordinates.
  virtual bool CalcSurfaceFit(CStats_Data* data, int dim, CProgressSink* progress);

  // Gestures: add one (what was undone before is dropped), undo the last active, redo the first undone, undo all.
  void AddSelRegion(std::unique_ptr<CStats_Rgn> region);
  void ClearLastSelRegion();
  void RestoreLastSelRegion();
  void ClearAllSelRegion();

 protected:
  // Basic figures of the field and of x and y while a computation that needs them runs; null otherwise.
  CStats_Univariate* valueStatistics_ = nullptr;
  CStats_Univariate* xStatistics_ = nullptr;
  CStats_Univariate* yStatistics_ = nullptr;

  // Whether these are two or three columns of the table.
  static bool HasDims(CStats_Data* data, const int* dims, int dimCount);
  // The data set's search, built on these columns; null if the table doesn't have them or they are fewer than two.
  static CStats_PointSearch* PrepareSearch(CStats_Data* data, const int* dims, int dimCount, CProgressSink* progress);

 private:
  class Selector;
  class PairCollector;

  bool FillLagGrid(int item, CProgressSink* progress);
  bool FitSurface(int item, CProgressSink* progress);
  void Reselect(bool incremental);
  std::vector<int> ListFirstStations(CStats_Data* data, CStats_PointSearch& search);
  bool ExtractCells(CStats_Data* data, CProgressSink* progress);
  bool ExtractRegions(CStats_Data* data, CProgressSink* progress);

  int dims_[3] = {-1, -2, -3};
  int dimCount_ = 2;
};

}  // namespace tallyscope
