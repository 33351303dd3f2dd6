// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "plots/StationStyles.h"
#include "plots/UPlotX_Tallyscope.h"

namespace tallyscope {

class CStats_PointSearch;

// Base of the plots that show stations as marks in the plane of two fields: marks with modulation and selection, the
// nearest station under the pointer, selection by rectangle and polygon. The table's point search answers which
// stations are in view; those without a value in either field are not in it, so neither drawn nor picked.
class CUPlotX_Scatter : public CUPlotX_Tallyscope {
 public:
  // The station nearest to a place of the world, in pixels, of those within the tolerance on each axis; of equally near
  // ones the first that the search yields. -1 for none.
  int GetClosestStation(const XVector& world, CSize tolerance);

  bool Prepare(CProgressSink* progress) override;  // the search too
  void RenderHover(CDC& dc) override;
  CString GetEmptyReason() override { return emptyReason_; }
  bool Select(CPoint& point, bool include) override;
  bool SelectMove(CPoint& point, bool include) override;
  bool CancelSelect(CPoint& point, bool include) override;
  bool Select(CRect& rect, bool include) override;
  bool Select(bool include) override;

  int PickAt(CPoint point) override;
  int GetHoverCount() const override;
  void SetHover(int index) override;
  bool GetPlace(int station, double& x, double& y) override;
  CString Describe(int station) override;
  CString GetDataText() override;

 protected:
  struct Fields {
    int x = 0;  // dims
    int y = 0;
    bool operator==(const Fields&) const = default;
  };

  // The fields of the plane; false while there are none. Both are columns of the table then.
  virtual bool GetFields(Fields& fields) const = 0;
  virtual int GetStationCount() const;
  virtual StationStyles::Nulls GetNulls() const = 0;  // what a null does in a modulation's field
  // Whether a pick puts the hover position on the station that it has found.
  virtual bool SnapsToStation() const = 0;

  bool HasColumns(const Fields& fields) const;
  void RenderStations(CDC& dc);
  // Where there is no plane.
  virtual CString GetNoPlaneReason() const { return {}; }

 private:
  // What has been looked through for a station with a place.
  struct Looked {
    CStats_Data* data = nullptr;
    Fields fields;
    int stations = -1;
    bool operator==(const Looked&) const = default;
  };

  CStats_PointSearch* PrepareSearch(CProgressSink* progress);
  CStats_PointSearch* GetPreparedSearch() const;  // null where it isn't there, or answers for another plane
  CString FindEmptyReason(const Fields& fields) const;
  void Pick(CPoint point);
  void RenderPlus(CDC& dc, double x, double y, double width);
  bool AddRegion(std::unique_ptr<CStats_Rgn> region, bool include);

  Looked looked_;
  CString emptyReason_;
};

}  // namespace tallyscope
