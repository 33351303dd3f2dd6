// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "spatial/PointSearch.h"
#include "spatial/StationQuery.h"

namespace tallyscope {

class CProgressSink;
class CStats_Data;

// The spatial search over a table, with any three of its columns as co-ordinates, and one query at a time; what was
// built may be shared for further queries (Share, StationQuery.h):
//   CStats_PointSearch* search = table.GetPointSearch();
//   search->SetFields(-1, -2, -3, 2);
//   if (!table.PreparePointSearch(nullptr) || !search->IsPartitioned()) return false;
//   search->SearchSphere({x, y, 0}, 250);
//   for (int station; search->GetNext(station, 1);) ...
// Co-ordinates are those of the last build. A table with one axis is never partitioned. A query ends when the fields
// change or the tree is built anew; stations with a co-ordinate that is null or not finite are never found.
class CStats_PointSearch : public CPointSearch {
 public:
  explicit CStats_PointSearch(CStats_Data* data);  // not owned; may be null

  void SetPartitioned(bool partitioned) override;
  bool IsPointValid(int index) override;
  int GetPointCount() override;
  double GetX(int index) override;
  double GetY(int index) override;
  double GetZ(int index) override;
  int GetDimensions() override { return dimensions_; }
  void ReadPoints(int first, int count, double* const* coordinates, unsigned char* valid) override;
  void ReadPointsAt(const int* indices, int count, double* const* coordinates) override;

  // Columns by dim (see Stats_Data.h), and how many of them count, 1 to 3. A change ends the partitioned state.
  virtual void SetFields(int fieldX, int fieldY, int fieldZ, int dimensions);
  virtual void SetDefaultFields();  // the table's axes
  virtual int GetFieldX() { return fields_[0]; }
  virtual int GetFieldY() { return fields_[1]; }
  virtual int GetFieldZ() { return fields_[2]; }
  virtual CStats_Data* GetData() { return data_; }
  // Builds the tree over these columns, unless it stands. True as well, with nothing built, when they are fewer than
  // two. False when the sink cancels, or without a table.
  bool Prepare(CProgressSink* progress);

  virtual void SearchAll();
  virtual void SearchBox(const Box& box);  // faces included
  // A rectangle with a corner at `origin` that runs size x along the angle, in degrees from +x towards +y, and size y
  // to the left of it. In three dimensions z runs from that of the origin over size z.
  virtual void SearchRotatedRectangle(const Point3& origin, const Point3& size, double angleDegrees);
  virtual void SearchBetweenBoxes(const Box& outer, const Box& inner);  // the faces of both included
  virtual void SearchSphere(const Point3& centre, double radius);
  // A ring in all dimensions; in two also the angles from start to end, in radians from +x towards +y, end at or above
  // start and start at or above 0. In three dimensions the whole ring.
  virtual void SearchSector(const Point3& centre, double outerRadius, double innerRadius, double startAngle,
                            double endAngle);
  // All stations of the leaves that the ray, or any of the rays, pierces. Three dimensions only.
  virtual void SearchRay(const Point3& origin, const Point3& direction);
  virtual void SearchRays(const std::vector<Point3>& origins, const std::vector<Point3>& directions);

  virtual int GetLeafCount() { return static_cast<int>(query_.GetLeaves().size()); }
  // The next station that passes; after a station that fails the walk goes on `step` positions further (less than 1
  // counts as 1). False at the end, with `index` -1; a further call starts the same query again.
  virtual bool GetNext(int& index, int step) { return query_.GetNext(index, step); }

  const StationQuery::Leaves& GetLeaves() const { return query_.GetLeaves(); }  // of the last query

 private:
  bool FindBounds(int axis, Box& box, CProgressSink* progress);
  StationQuery& StartQuery();

  CStats_Data* data_;
  int dimensions_ = 2;
  int fields_[3] = {-1, -2, -3};
  StationQuery query_;  // of the index that stands
};

}  // namespace tallyscope
