// SPDX-License-Identifier: MIT
#include "plots/PlotSettings.h"

#include <cmath>

#include "platform/core/Profile.h"

namespace tallyscope {

namespace {

// The six ends of a box under a prefix and these letters.
struct BoxKey {
  const char* key;
  std::size_t axis;
  Point3 Box::*corner;
};
constexpr BoxKey kBoxKeys[] = {{"L", 0, &Box::min}, {"R", 0, &Box::max}, {"B", 1, &Box::min},
                               {"T", 1, &Box::max}, {"N", 2, &Box::min}, {"F", 2, &Box::max}};
constexpr const char* kAxisKeys[] = {"X", "Y", "Z"};

struct ToolKey {
  const char* key;
  PlotTool::Kind kind;
};
constexpr ToolKey kToolKeys[] = {{"ZOOM_IN", PlotTool::kZoomIn},        {"ZOOM_OUT", PlotTool::kZoomOut},
                                 {"ZOOM_PAN", PlotTool::kPan},          {"SELECT", PlotTool::kPointer},
                                 {"SELECT_RECT", PlotTool::kRectangle}, {"SELECT_POLY", PlotTool::kPolygon}};
constexpr const char* kExcludeKey = "SELECT_EXCLUDE";

void WriteBox(CProfile& profile, const CString& prefix, const Box& box) {
  for (const auto& each : kBoxKeys) {
    profile.WriteProfileDouble(kPlotSection, prefix + each.key, (box.*each.corner)[each.axis]);
  }
}

void ReadBox(const CProfile& profile, const CString& prefix, Box& box) {
  for (const auto& each : kBoxKeys) {
    auto& end = (box.*each.corner)[each.axis];
    const double stored = profile.GetProfileDouble(kPlotSection, prefix + each.key, end);
    if (std::isfinite(stored)) end = stored;
  }
}

}  // namespace

void PlotView::Write(CProfile& profile, const CString& prefix) const {
  WriteBox(profile, prefix + "DATAZOOM_", axisRange);
  WriteBox(profile, prefix + "DATAZOOMEXTENT_", window);
  for (std::size_t axis = 0; axis < 3; ++axis) {
    profile.WriteProfileInt(kPlotSection, prefix + "MAPPING_" + kAxisKeys[axis], maps[axis].mapping);
    profile.WriteProfileDouble(kPlotSection, prefix + "LOGLININT_" + kAxisKeys[axis], maps[axis].band);
  }
}

void PlotView::Read(const CProfile& profile, const CString& prefix) {
  ReadBox(profile, prefix + "DATAZOOM_", axisRange);
  ReadBox(profile, prefix + "DATAZOOMEXTENT_", window);
  for (std::size_t axis = 0; axis < 3; ++axis) {
    auto& map = maps[axis];
    map.mapping = profile.GetProfileInt(kPlotSection, prefix + "MAPPING_" + kAxisKeys[axis], map.mapping);
    const double band = profile.GetProfileDouble(kPlotSection, prefix + "LOGLININT_" + kAxisKeys[axis], map.band);
    map.band = band > 0 && std::isfinite(band) ? band : 1.0;
  }
}

PlotTool ReadTool(const CProfile& profile, const CString& prefix, PlotTool tool) {
  for (const auto& [key, kind] : kToolKeys) {
    tool = tool.WithButton(kind, profile.GetProfileInt(kPlotSection, prefix + key, tool.kind == kind ? 1 : 0) != 0);
  }
  tool.exclude = profile.GetProfileInt(kPlotSection, prefix + kExcludeKey, tool.exclude ? 1 : 0) != 0;
  return tool;
}

void WriteTool(CProfile& profile, const CString& prefix, const PlotTool& tool) {
  for (const auto& [key, kind] : kToolKeys) profile.WriteProfileInt(kPlotSection, prefix + key, tool.kind == kind);
  profile.WriteProfileInt(kPlotSection, prefix + kExcludeKey, tool.exclude);
}

}  // namespace tallyscope
