// SPDX-License-Identifier: MIT
// Any lines as what a profile holds, in the order in which a plot asks for it: the map that comes back has a view that
// is finite and wider than nothing, draws itself, and what it stores of that brings the same view again.
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string_view>

#include <QGuiApplication>

#include "fuzz/Demand.h"
#include "fuzz/Lines.h"
#include "platform/core/NumberText.h"
#include "platform/ui/WinApp.h"
#include "plots/UPlotX_Container_Tallyscope.h"
#include "plots/UPlotX_St_Scatter.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Univariate.h"
#include "tests/support/Made.h"
#include "tests/support/RecorderDC.h"

namespace tallyscope {
namespace {

constexpr const char* kPrefix = "Map_";
constexpr CSize kSize{640, 480};

// An entry that was not written is the input's next line, as long as there is one.
class LineProfile : public CProfile {
 public:
  explicit LineProfile(std::string_view lines) : lines_(lines) {}

  int GetProfileInt(const CString& section, const CString& key, int missing) const override {
    const auto* entry = Find(section, key);
    return entry != nullptr ? ParseLeadingInteger(*entry) : missing;
  }
  void WriteProfileInt(const CString& section, const CString& key, int value) override {
    entries_[section + key] = std::to_string(value);
  }
  CString GetProfileString(const CString& section, const CString& key, const CString& missing) const override {
    const auto* entry = Find(section, key);
    return entry != nullptr ? *entry : missing;
  }
  void WriteProfileString(const CString& section, const CString& key, const CString& value) override {
    entries_[section + key] = value;
  }

 private:
  const CString* Find(const CString& section, const CString& key) const {
    const auto found = entries_.find(section + key);
    if (found != entries_.end()) return &found->second;
    if (lines_.empty()) return nullptr;
    return &(entries_[section + key] = TakeLine(lines_));
  }

  mutable std::string_view lines_;
  mutable std::map<CString, CString> entries_;
};

// Labels are measured: that takes fonts, and those an application, which wants no display here.
void ProvideFonts() {
  static int argc = 1;
  static char name[] = "profile_fuzz";
  static char* argv[] = {name, nullptr};
  qputenv("QT_QPA_PLATFORM", "offscreen");
  static const QGuiApplication application(argc, argv);
}

// A map as its page has it, without the page.
class Map {
 public:
  Map() : table_(TableFrom("X Y Au Pb\n0 0 1.5 7\n3 1 - 8\n6 2 1e9 -\n1 9 -4 2\n")) {
    spatial_.Add(&table_, 0);
    spatial_.ResetSpatialDims();
    figures_.Add(&table_, 0);
    figures_.Calculate(1, nullptr);
    plot.calculator = &figures_;
    plot.spatial = &spatial_;
    plot.data = &table_;
    plot.TakeExtents();
    container.AddPlot(&plot, true);
    container.SetClientSize(kSize);
    container.ZoomFit();
  }

  // As a page does when it comes back.
  void Restore() {
    const auto& profile = GetProfile();
    container.ReadFromRegistry(kPrefix);
    plot.SetColourDim(profile.GetProfileInt("Page", "COLOUR_FIELD", 0));
    plot.SetSizeDim(profile.GetProfileInt("Page", "SIZE_FIELD", 0));
    container.InitialiseExtents();
    container.SetWindowExtent();
  }

  CUPlotX_St_Scatter plot;
  CUPlotX_Container_Tallyscope container;

 private:
  CMadeTable table_;
  CStats_Spatial spatial_;
  CStats_Univariate figures_;
};

bool IsApart(double low, double high) {
  return std::isfinite(low) && std::isfinite(high) && low < high;
}

void CheckView(Map& map) {
  const auto& window = map.plot.GetWindowExtent();
  const Box visible = map.plot.GetVisible();
  for (std::size_t axis = 0; axis < 2; ++axis) {
    Demand(IsApart(window.min[axis], window.max[axis]), "the view is finite and wider than nothing");
    // A steep map brings places that are apart to one value, and a far end of a logarithmic view is beyond all numbers.
    Demand(visible.min[axis] <= visible.max[axis], "what it shows of the world isn't turned round");
    Demand(map.plot.maps[axis].band > 0, "a linear band has a width");
  }
}

void CheckDrawing(Map& map) {
  RecorderDC dc(kSize);
  map.container.Render(dc);
  for (const auto& line : dc.lines) {
    for (const auto& point : line.points) Demand(std::isfinite(point.x) && std::isfinite(point.y), "lines have places");
  }
  Demand(dc.texts.size() < 200 && dc.lines.size() < 2000, "axes are no thicket");
}

void CheckNumber(double value) {
  auto& profile = GetProfile();
  profile.WriteProfileDouble("Number", "A", value);
  const double once = profile.GetProfileDouble("Number", "A", 0);
  Demand(std::abs(once - value) <= 1e-14 * std::abs(value) || !std::isfinite(value), "fifteen digits are kept");
  profile.WriteProfileDouble("Number", "B", once);
  const double twice = profile.GetProfileDouble("Number", "B", 0);
  Demand(twice == once || std::isnan(once), "and are final after one round");
}

}  // namespace
}  // namespace tallyscope

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tallyscope;
  ProvideFonts();
  SetProfile(std::make_unique<LineProfile>(std::string_view(reinterpret_cast<const char*>(data), size)));
  Map map;
  map.Restore();
  CheckView(map);
  CheckDrawing(map);
  for (const double factor : {1.25, 1e-3, 1e6}) {
    map.container.ZoomStep(factor);
    map.plot.Pan(40, -30, 3);
    CheckView(map);
  }
  map.container.Write2Registry(kPrefix);
  Map again;
  again.Restore();
  again.container.Write2Registry(kPrefix);
  Map last;
  last.Restore();
  CheckView(last);
  for (std::size_t axis = 0; axis < 2; ++axis) {
    Demand(last.plot.axisRange.min[axis] == again.plot.axisRange.min[axis] &&
               last.plot.axisRange.max[axis] == again.plot.axisRange.max[axis] &&
               last.plot.maps[axis] == again.plot.maps[axis],
           "the view that was stored comes back");
    CheckNumber(again.plot.axisRange.min[axis]);
  }
  return 0;
}
