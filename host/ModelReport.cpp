// SPDX-License-Identifier: MIT
#include "host/ModelReport.h"

#include <ostream>

#include <nlohmann/json.hpp>

#include "host/Sentences.h"
#include "host/TextGrid.h"
#include "platform/core/NumberText.h"
#include "spatial/ModelVariogramFile.h"
#include "spatial/Stats_ModelVariogram.h"

namespace tallyscope {

namespace {

constexpr int kDigits = 10;

CString Figure(double value) {
  return FormatGeneral(value, kDigits);
}

struct Measure {
  const char* key;
  const char* heading;
  double CModelVariogram::*value;
};

// Those that every nest has.
constexpr Measure kMeasures[] = {{"primaryRange", "range", &CModelVariogram::primaryRange},
                                 {"minorRange", "minor", &CModelVariogram::minorRange},
                                 {"depthRange", "depth", &CModelVariogram::depthRange},
                                 {"strike", "strike", &CModelVariogram::strike},
                                 {"plunge", "plunge", &CModelVariogram::plunge},
                                 {"dip", "dip", &CModelVariogram::dip}};

}  // namespace

void PrintModel(const CStats_ModelVariogram& model, std::ostream& out) {
  out << "Isotropic nugget " << Figure(model.isotropicNugget.nugget) << "\n";
  for (const auto& nest : model.nests) {
    out << CModelVariogram::GetTypeName(nest.type) << ", " << nest.GetDescription() << "\n";
  }
  if (!model.nests.empty()) {
    CTextGrid grid;
    std::vector<CString> headings = {"", "nugget"};
    for (const auto& measure : kMeasures) headings.emplace_back(measure.heading);
    grid.AddRow(std::move(headings));
    for (const auto& nest : model.nests) {
      std::vector<CString> cells = {CModelVariogram::GetTypeName(nest.type), Figure(nest.nugget)};
      for (const auto& measure : kMeasures) cells.push_back(Figure(nest.*measure.value));
      grid.AddRow(std::move(cells));
    }
    out << "\n";
    grid.Print(out, "");
  }
  out << "\nTotal nugget " << Figure(model.totalNugget) << ", total sill " << Figure(model.totalSill) << "\n";
}

nlohmann::ordered_json DescribeModel(const CStats_ModelVariogram& model) {
  using Json = nlohmann::ordered_json;
  Json nests = Json::array();
  for (const auto& nest : model.nests) {
    Json row = {{"type", CModelVariogram::GetTypeName(nest.type)},
                {"nugget", nest.nugget},
                {"sill", nest.sill},
                {"power", nest.power},
                {"dampedRange", nest.dampedRange}};
    for (const auto& measure : kMeasures) row[measure.key] = nest.*measure.value;
    nests.push_back(std::move(row));
  }
  return {{"isotropicNugget", model.isotropicNugget.nugget},
          {"nests", std::move(nests)},
          {"totalNugget", model.totalNugget},
          {"totalSill", model.totalSill},
          {"dimension", model.dimension}};
}

bool ReadModelForCommand(const CString& file, int dimension, CStats_ModelVariogram& model, std::ostream& err) {
  ModelFileLines lines;
  CString error;
  if (!LoadFromFile(model, file, lines, error)) {
    Say(err, OnOneLine(error));
    return false;
  }
  const CString oddLine = file + ", line " + std::to_string(lines.firstOdd) + ": " + Quoted(lines.oddText);
  if (lines.good == 0) {
    Say(err, (lines.firstOdd > 0 ? oddLine + " is no line of a model variogram; " : file + " is no model variogram; ") +
                 "'Model Begin', 'IsotropicNugget = NUMBER' or 'Nest Begin' was expected.");
    return false;
  }
  if (lines.firstOdd > 0) Say(err, oddLine + " says nothing to a model variogram and is skipped.");
  model.Update(dimension);
  return true;
}

}  // namespace tallyscope
