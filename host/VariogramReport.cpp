// SPDX-License-Identifier: MIT
#include "host/VariogramReport.h"

#include <ostream>

#include <nlohmann/json.hpp>

#include "host/HostTable.h"
#include "host/ModelReport.h"
#include "host/Sentences.h"
#include "host/TextGrid.h"
#include "platform/core/NumberText.h"
#include "spatial/DefaultModel.h"
#include "spatial/Stats_LagGridData.h"
#include "spatial/Stats_ModelVariogram.h"
#include "spatial/Stats_SampleVariogram.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

namespace {

using Json = nlohmann::ordered_json;

constexpr int kLagGrid = 4;
constexpr int kBasicFigures = 1;
constexpr int kMapCells = 40;  // along each axis
constexpr int kDigits = 8;

CString Figure(double value) {
  return FormatGeneral(value, kDigits);
}

CStats_SampleVariogram& StartSession(CTallyscope& session, CHostTable& table, int dim) {
  session.Fill(&table, false);
  session.SetMode(CTallyscope::eVariogram);
  session.SetVarDim(dim);
  return *session.GetVariogram(dim);
}

template <class Visit>
void ForEachCell(const LagGrid& grid, const Visit& visit) {
  for (const auto& level : grid) {
    for (const auto& row : level) {
      for (const auto& cell : row) visit(cell);
    }
  }
}

Json DescribeRequest(const CurveRequest& request) {
  return {{"direction", request.direction}, {"dip", request.dip}, {"width", request.width}};
}

}  // namespace

CVariogramReport::CVariogramReport(CHostTable& table, int dim, const VariogramRequest& request)
    : table_(table), dim_(dim), request_(request), sample_(StartSession(session_, table, dim)) {}

CStats_ModelVariogram& CVariogramReport::UseModel() {
  return *session_.GetVariogramModel(dim_);
}

bool CVariogramReport::Calculate(CProgressSink* progress) {
  if (!sample_.CalcVariogram(0, request_.range, request_.samples, progress)) return false;
  session_.GetUniStats(dim_)->Calculate(kBasicFigures, nullptr);
  if (request_.fit) MakeDefaultModel(sample_, table_.GetSpatialSize(), UseModel());
  if (request_.errorDistance && !sample_.CalcErrorVariance(0, *request_.errorDistance, progress)) return false;
  return request_.grid != GridKind::kCartesian || CalculateMap(progress);
}

bool CVariogramReport::CalculateMap(CProgressSink* progress) {
  map_.Add(&table_, dim_);
  map_.ResetSpatialDims();
  map_.lagFlags = sample_.lagFlags & ~static_cast<unsigned>(CStats_Spatial::kPolar);
  map_.lagRange = sample_.lagRange;
  map_.lagCount = {kMapCells, kMapCells, kMapCells};
  map_.sampleLimit = request_.samples;
  return map_.CalculateItem(0, kLagGrid, progress);
}

long long CVariogramReport::CountPairs() {
  long long count = 0;
  ForEachCell(sample_.grid, [&count](const LagCell& cell) { count += cell.pairs; });
  return count / 2;
}

void CVariogramReport::MakeCurve(const CurveRequest& request, Curve& curve) {
  curve.request = request;
  curve.sample = request.IsOmnidirectional() ? sample_.GetCurve()
                                             : sample_.GetCurve(request.direction, request.dip, request.width / 2);
  if (!HasModel()) return;
  const auto& model = UseModel();
  for (const double lag : curve.sample.lag) {
    const auto values = request.IsOmnidirectional() ? model.GetAveragedValues(lag)
                                                    : model.GetValues(request.direction, request.dip, lag);
    curve.modelMoment.push_back(values.variogram);
    curve.modelCovariance.push_back(values.covariance);
  }
}

void CVariogramReport::PrintCurve(const CurveRequest& request, std::ostream& out) {
  Curve curve;
  MakeCurve(request, curve);
  CTextGrid grid;
  std::vector<CString> headings = {"lag", "pair count", "moment of inertia"};
  if (HasModel()) headings.emplace_back("model");
  if (request_.covariance) headings.emplace_back("covariance");
  if (request_.covariance && HasModel()) headings.emplace_back("model");
  grid.AddRow(std::move(headings));
  for (std::size_t i = 0; i < curve.sample.lag.size(); ++i) {
    std::vector<CString> cells = {Figure(curve.sample.lag[i]), std::to_string(curve.sample.pairCount[i]),
                                  Figure(curve.sample.momentOfInertia[i])};
    if (HasModel()) cells.push_back(Figure(curve.modelMoment[i]));
    if (request_.covariance) cells.push_back(Figure(curve.sample.covariance[i]));
    if (request_.covariance && HasModel()) cells.push_back(Figure(curve.modelCovariance[i]));
    grid.AddRow(std::move(cells));
  }
  if (request.IsOmnidirectional()) {
    out << "\nAll directions\n";
  } else {
    out << "\nDirection " << Figure(request.direction);
    if (table_.GetSpatialSize() >= 3) out << ", dip " << Figure(request.dip);
    out << ", width " << request.width << "\n";
  }
  grid.Print(out, "");
}

void CVariogramReport::PrintText(std::ostream& out) {
  out << Quoted(table_.GetValueName(dim_)) << ": " << Counted(session_.GetUniStats(dim_)->valid, "station", "stations")
      << " of " << table_.GetSize() << " with a value, " << Counted(CountPairs(), "pair", "pairs") << " in "
      << sample_.lagCount[0] << " lags up to " << Figure(sample_.lagRange[0]) << "\n";
  if (request_.errorDistance) {
    out << "Error variance, from " << Counted(sample_.errorPairs, "pair", "pairs") << " of neighbours closer than "
        << Figure(*request_.errorDistance) << ": moment of inertia " << Figure(sample_.errorMoment) << ", covariance "
        << Figure(sample_.errorCovariance) << "\n";
  }
  if (HasModel()) {
    out << "\n";
    PrintModel(UseModel(), out);
  }
  PrintCurve({}, out);
  for (const auto& request : request_.curves) PrintCurve(request, out);
  if (request_.grid != GridKind::kNone) PrintGrid(out);
}

const LagGrid& CVariogramReport::UseGrid() const {
  return request_.grid == GridKind::kCartesian ? map_.grid : sample_.grid;
}

void CVariogramReport::PrintGrid(std::ostream& out) {
  const auto& lagGrid = UseGrid();
  int cells = 0;
  int filled = 0;
  ForEachCell(lagGrid, [&](const LagCell& cell) {
    ++cells;
    filled += cell.count > 0 ? 1 : 0;
  });
  const auto& count = lagGrid.GetSettings().count;
  const bool solid = table_.GetSpatialSize() >= 3;
  const bool polar = request_.grid == GridKind::kPolar;
  out << "\n"
      << (polar ? "Polar" : "Cartesian") << " grid: " << count[0] << (polar ? " lags x " : " x ") << count[1]
      << (polar ? " azimuths" : "");
  if (solid) out << " x " << count[2] << (polar ? " dips" : "");
  const auto [low, high] = GetLagGridColourRange(lagGrid, 0);
  out << " up to " << Figure(lagGrid.GetSettings().range[0]) << ", " << filled << " of "
      << Counted(cells, "cell", "cells") << " with pairs\nMoment of inertia from " << Figure(low) << " (5 %) to "
      << Figure(high) << " (95 %)\n";
}

Json CVariogramReport::DescribeGrid() {
  const auto& lagGrid = UseGrid();
  Json counts = Json::array(), moments = Json::array(), covariances = Json::array();
  for (const auto& level : lagGrid) {
    for (Json* values : {&counts, &moments, &covariances}) values->push_back(Json::array());
    for (const auto& row : level) {
      for (Json* values : {&counts, &moments, &covariances}) values->back().push_back(Json::array());
      for (const auto& cell : row) {
        counts.back().back().push_back(cell.pairs);
        moments.back().back().push_back(cell.moment);
        covariances.back().back().push_back(cell.covariance);
      }
    }
  }
  return {{"kind", request_.grid == GridKind::kPolar ? "polar" : "cartesian"},
          {"range", lagGrid.GetSettings().range[0]},
          {"colourRange", GetLagGridColourRange(lagGrid, 0)},
          {"pairCount", std::move(counts)},
          {"momentOfInertia", std::move(moments)},
          {"covariance", std::move(covariances)}};
}

void CVariogramReport::PrintJson(std::ostream& out) {
  Json curves = Json::array();
  Json modelCurves = Json::array();
  const auto add = [&](const CurveRequest& request) {
    Curve curve;
    MakeCurve(request, curve);
    Json row = DescribeRequest(request);
    row["lag"] = curve.sample.lag;
    row["pairCount"] = curve.sample.pairCount;
    row["momentOfInertia"] = curve.sample.momentOfInertia;
    row["covariance"] = curve.sample.covariance;
    curves.push_back(std::move(row));
    row = DescribeRequest(request);
    row["lag"] = curve.sample.lag;
    row["momentOfInertia"] = curve.modelMoment;
    row["covariance"] = curve.modelCovariance;
    modelCurves.push_back(std::move(row));
  };
  add({});
  for (const auto& request : request_.curves) add(request);
  Json model = nullptr;
  if (HasModel()) {
    model = DescribeModel(UseModel());
    model["curves"] = std::move(modelCurves);
  }
  Json report = {{"field", table_.GetValueName(dim_)},
                 {"stations", table_.GetSize()},
                 {"valid", session_.GetUniStats(dim_)->valid},
                 {"range", sample_.lagRange[0]},
                 {"lags", sample_.lagCount[0]},
                 {"azimuths", sample_.lagCount[1]},
                 {"dips", sample_.lagCount[2]},
                 {"pairs", CountPairs()},
                 {"curves", std::move(curves)},
                 {"model", std::move(model)}};
  if (request_.errorDistance) {
    report["errorVariance"] = {{"range", *request_.errorDistance},
                               {"pairCount", sample_.errorPairs},
                               {"momentOfInertia", sample_.errorMoment},
                               {"covariance", sample_.errorCovariance}};
  }
  if (request_.grid != GridKind::kNone) report["grid"] = DescribeGrid();
  out << report.dump(2, ' ', false, Json::error_handler_t::replace) << "\n";
}

}  // namespace tallyscope
