// SPDX-License-Identifier: MIT
// Any lines as the steps of a selection: a letter for the kind of step (w where, r rows, v invert, i inside; a capital
// takes stations out), then its text. Behind an i all that follows is the polygon's table. What a plan makes of the
// steps is written as steps again and makes the same; the selection is that of a plain replay.
#include <sys/mman.h>
#include <unistd.h>

#include <cctype>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/Demand.h"
#include "fuzz/Lines.h"
#include "host/OpenTable.h"
#include "host/SelectionPlan.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_RgnDataRange.h"
#include "statistics/Stats_RgnIndexRange.h"
#include "tests/support/TableText.h"

namespace tallyscope {
namespace {

constexpr std::string_view kTable =
    "x,y,zinc,lead in soil,rock\n0,0,1.5,-3,a\n1,0,,7,b\n2,0,500,1e300,a\n0,1,0.1,-0.0,\n1,1,-2.25,,c\n2,1,1e-300,7,a\n"
    "0,2,1022,8,b\n,2,3,9,a\n2,2,200,-1e300,d\n";

std::unique_ptr<CHostTable> MakeTable() {
  return OpenTableText(kTable, "stations", {}, nullptr).table;
}

// A polygon's file without a place on the disk, gone with the object.
class MemoryFile {
 public:
  explicit MemoryFile(std::string_view text) : file_(::memfd_create("polygon", 0)) {
    Demand(file_ >= 0 && ::write(file_, text.data(), text.size()) == static_cast<ssize_t>(text.size()),
           "a file is at hand");
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { ::close(file_); }
  CString GetPath() const { return "/proc/self/fd/" + std::to_string(file_); }

 private:
  int file_;
};

// The regions of a plan on a table of its own.
struct Selection {
  std::unique_ptr<CHostTable> table = MakeTable();
  CStats_Spatial spatial;

  Selection() {
    spatial.Add(table.get(), 0);
    spatial.ResetSpatialDims();
    spatial.extractFlags = CStats_Spatial::kBitmaps | CStats_Spatial::kExtractX | CStats_Spatial::kExtractY;
  }
  bool Build(const CSelectionPlan& plan) {
    std::ostringstream sentence;
    const bool built = plan.Build(*table, "stations", spatial, sentence);
    Demand(built == sentence.str().empty(), "there are regions or a sentence");
    return built;
  }
};

CString EndText(double end) {
  return std::isinf(end) ? CString() : ShortestText(end);
}

// The step that makes a region, for those that are written as one.
bool WriteStep(CStats_Rgn& region, const CHostTable& table, SelectionStep& step) {
  step.takes = region.include;
  if (const auto* values = dynamic_cast<CStats_RgnDataRange*>(&region)) {
    step.kind = SelectionStep::kWhere;
    step.text =
        table.GetColumn(values->field).name + " in " + EndText(values->box.min[0]) + ".." + EndText(values->box.max[0]);
    return true;
  }
  if (const auto* rows = dynamic_cast<CStats_RgnIndexRange*>(&region)) {
    step.kind = SelectionStep::kRows;
    step.text = std::to_string(static_cast<long>(rows->box.min[0]) + 1) + ".." +
                std::to_string(static_cast<long>(rows->box.max[0]) + 1);
    return true;
  }
  step.kind = SelectionStep::kInvert;
  return region.GetType() == CStats_Rgn::kInvert;
}

bool IsIn(CStats_Rgn& region, CHostTable& table, int station) {
  double value = station;
  if (const auto* values = dynamic_cast<CStats_RgnDataRange*>(&region)) {
    if (!table.GetValue(values->field, station, value)) return false;
  } else if (region.GetType() != CStats_Rgn::kIndexRange) {
    return true;  // everything
  }
  return value >= region.GetPoint(0)[0] && value <= region.GetPoint(1)[0];
}

std::vector<bool> Replay(const CStats_RgnList& regions, CHostTable& table) {
  std::vector<bool> bits(static_cast<std::size_t>(table.GetSize()));
  for (int i = 0; i < regions.GetCount(); ++i) {
    auto& region = regions.Get(i);
    for (int station = 0; station < table.GetSize(); ++station) {
      const auto at = static_cast<std::size_t>(station);
      if (region.GetType() == CStats_Rgn::kInvert) {
        bits[at] = !bits[at];
      } else if (IsIn(region, table, station)) {
        bits[at] = region.include;
      }
    }
  }
  return bits;
}

// The plan, and whether it holds a polygon.
bool ReadSteps(std::string_view text, std::vector<std::unique_ptr<MemoryFile>>& files, CSelectionPlan& plan) {
  while (!text.empty()) {
    const auto line = TakeLine(text);
    if (line.empty()) continue;
    const bool takes = std::islower(static_cast<unsigned char>(line[0])) != 0;
    const CString rest(line.substr(1));
    switch (std::tolower(static_cast<unsigned char>(line[0]))) {
      case 'w':
        plan.Add(SelectionStep::kWhere, rest, takes);
        break;
      case 'r':
        plan.Add(SelectionStep::kRows, rest, takes);
        break;
      case 'v':
        plan.Add(SelectionStep::kInvert, {}, takes);
        break;
      case 'i':
        files.push_back(std::make_unique<MemoryFile>(text));
        plan.Add(SelectionStep::kInside, files.back()->GetPath(), takes);
        return true;
      default:
        break;
    }
  }
  return false;
}

void CheckRegions(Selection& first) {
  CSelectionPlan written;
  int steps = 0;
  for (int i = 0; i < first.spatial.regions.GetCount(); ++i) {
    SelectionStep step{};
    auto& region = first.spatial.regions.Get(i);
    if (region.GetType() == CStats_Rgn::kSelAll && i == 0) continue;  // a plan that starts by taking out brings it
    Demand(WriteStep(region, *first.table, step), "each region is one that a step makes");
    written.Add(step.kind, step.text, step.takes);
    ++steps;
  }
  Demand(written.Check().empty(), "what was written is a plan");
  Selection again;
  Demand(steps == 0 || again.Build(written), "it fits the table");
  for (int i = 0; i < again.spatial.regions.GetCount(); ++i) {
    auto& a = first.spatial.regions.Get(i);
    auto& b = again.spatial.regions.Get(i);
    Demand(a.GetType() == b.GetType() && a.include == b.include && a.GetPointCount() == b.GetPointCount(),
           "the regions are of the same kinds");
    for (int corner = 0; corner < a.GetPointCount(); ++corner) {
      Demand(a.GetPoint(corner)[0] == b.GetPoint(corner)[0], "their ends are the same");
    }
  }
  const auto bits = Replay(first.spatial.regions, *first.table);
  for (std::size_t i = 0; i < bits.size(); ++i) {
    Demand(first.spatial.bitmaps.front().Get(static_cast<int>(i)) == bits[i], "the selection is that of the steps");
  }
}

}  // namespace
}  // namespace tallyscope

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tallyscope;
  CSelectionPlan plan;
  std::vector<std::unique_ptr<MemoryFile>> files;
  const bool hasPolygon = ReadSteps({reinterpret_cast<const char*>(data), size}, files, plan);
  Selection selection;
  if (plan.IsEmpty() || !plan.Check().empty() || !selection.Build(plan)) return 0;
  Demand(selection.spatial.Calculate(1, nullptr), "the steps can be replayed");
  if (!hasPolygon) CheckRegions(selection);
  return 0;
}
