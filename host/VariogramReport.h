// SPDX-License-Identifier: MIT
#pragma once

#include <iosfwd>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "host/VariogramRequest.h"
#include "spatial/Stats_Spatial.h"
#include "spatial/VariogramCurve.h"
#include "statistics/Tallyscope.h"

namespace tallyscope {

class CHostTable;
class CProgressSink;
class CStats_ModelVariogram;
class CStats_SampleVariogram;

// The sample variogram of a column and the model beside it, as the program prints them.
class CVariogramReport {
 public:
  // The request must outlive the report.
  CVariogramReport(CHostTable& table, int dim, const VariogramRequest& request);

  CStats_ModelVariogram& UseModel();        // the model that stands beside the sample
  bool Calculate(CProgressSink* progress);  // false when it was cancelled, or the stations can't be searched

  void PrintText(std::ostream& out);
  // Numbers with the digits that read back to the same double; what can't be told is null.
  void PrintJson(std::ostream& out);

 private:
  struct Curve {
    CurveRequest request;
    VariogramCurve sample;
    std::vector<double> modelMoment;  // at the same lags; empty without a model
    std::vector<double> modelCovariance;
  };

  bool HasModel() const { return request_.fit || !request_.modelFile.empty(); }
  void MakeCurve(const CurveRequest& request, Curve& curve);
  bool CalculateMap(CProgressSink* progress);
  long long CountPairs();
  void PrintCurve(const CurveRequest& request, std::ostream& out);
  void PrintGrid(std::ostream& out);
  nlohmann::ordered_json DescribeGrid();
  const LagGrid& UseGrid() const;  // the one that was asked for

  CHostTable& table_;
  int dim_;
  const VariogramRequest& request_;
  CTallyscope session_;
  CStats_SampleVariogram& sample_;  // the session's
  CStats_Spatial map_;              // the Cartesian grid, when it is asked for
};

}  // namespace tallyscope
