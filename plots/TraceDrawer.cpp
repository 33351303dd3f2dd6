// SPDX-License-Identifier: MIT
#include "plots/TraceDrawer.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "outside/plot/UPlotX.h"
#include "plots/TracePath.h"
#include "plots/TraceRaster.h"
#include "statistics/bvector.h"

namespace tallyscope {

namespace {

constexpr double kFarthest = 1e12;  // pixels

// A station by itself.
TraceStretch MakeStretch(int station, double value) {
  return {station, station, value, value, value, value};
}

}  // namespace

TraceDrawer::TraceDrawer(const CUPlotX& plot, CDC& dc, TraceReducer& reducer, TraceColourMeans& means, const Look& look)
    : plot_(plot), reducer_(reducer), means_(means), look_(look), dc_(dc), scale_(dc.GetScale()) {}

// A value far beyond a view that has been zoomed into may have no number in pixels.
DrawPoint TraceDrawer::Place(double number, double value) const {
  const auto device = plot_.World2Device(number, value);
  return {device[0], std::clamp(device[1], -kFarthest, kFarthest)};
}

// To the device's whole pixels: a level trace stays level over its middles.
DrawPoint TraceDrawer::Snap(DrawPoint point) const {
  return {std::round(point.x * scale_) / scale_, std::round(point.y * scale_) / scale_};
}

DrawPoint TraceDrawer::Middle(DrawPoint a, DrawPoint b) const {
  return Snap({(a.x + b.x) * 0.5, (a.y + b.y) * 0.5});
}

DrawPoint TraceDrawer::Start(const TraceStretch& stretch, double previous) const {
  const double value = stretch.firstValue;
  if (std::isnan(previous)) return Snap(Place(stretch.first + 0.5, value));
  return Middle(Place(stretch.first, previous), Place(stretch.first + 1, value));
}

DrawPoint TraceDrawer::End(const TraceStretch& stretch, double next) const {
  const double value = stretch.lastValue;
  if (std::isnan(next)) return Snap(Place(stretch.last + 1.5, value));
  return Middle(Place(stretch.last + 1, value), Place(stretch.last + 2, next));
}

bool TraceDrawer::IsSelected(int station) const {
  return look_.selection != nullptr && look_.selection->Get(station);
}

COLORREF TraceDrawer::GetColour(double colourValue) const {
  return std::isnan(colourValue) ? look_.plain : look_.modulation.GetColour(colourValue);
}

void TraceDrawer::DrawStations(int begin, int end) {
  if (end <= begin) return;
  const auto count = static_cast<std::size_t>(end - begin);
  std::vector<double> values(count + 2);  // with the neighbours
  reducer_.Read(begin - 1, static_cast<int>(count) + 2, values.data());
  std::vector<double> colours(look_.modulation.IsOn() ? count : 0);
  if (!colours.empty()) means_.Read(begin, static_cast<int>(count), colours.data());
  TracePath path(dc_, plot_.Clip2Data());
  for (std::size_t i = 0; i < count; ++i) {
    const double value = values[i + 1];
    if (std::isnan(value)) continue;
    const int station = begin + static_cast<int>(i);
    COLORREF colour = colours.empty() ? look_.plain : GetColour(colours[i]);
    if (IsSelected(station)) colour = look_.selected;
    const auto stretch = MakeStretch(station, value);
    path.Add(colour, {Start(stretch, values[i]), Snap(Place(station + 1, value)), End(stretch, values[i + 2])});
  }
}

double TraceDrawer::GetColumn(int station) const {
  return std::round(plot_.World2Device(station + 1, 0)[0] * scale_);
}

double TraceDrawer::CountColumns(int begin, int end) const {
  return GetColumn(end) - GetColumn(begin);
}

// The first station that isn't in the column of `begin`.
int TraceDrawer::FindColumnEnd(int begin, int end) const {
  const double column = GetColumn(begin);
  const double guess = plot_.Device2World((column + 0.5) / scale_, 0)[0] - 1;
  int found = guess > begin + 1 ? (guess < end ? static_cast<int>(guess) : end) : begin + 1;
  while (found > begin + 1 && GetColumn(found - 1) > column) --found;
  while (found < end && GetColumn(found) <= column) ++found;
  return found;
}

template <class Draw>
void TraceDrawer::VisitColumns(int begin, int end, Draw draw) {
  for (int at = begin; at < end;) {
    const int next = FindColumnEnd(at, end);
    draw(at, next);
    at = next;
  }
}

void TraceDrawer::DrawColumns(int begin, int end) {
  TraceRaster raster(dc_, plot_.Clip2Data());
  VisitColumns(begin, end, [&](int first, int next) {
    const auto stretch = reducer_.Reduce(first, next);
    if (stretch.IsEmpty()) return;
    const bool modulates = look_.modulation.IsOn();
    DrawStretch(raster, modulates ? GetColour(means_.GetMean(first, next)) : look_.plain, stretch);
  });
  if (look_.selection == nullptr) return;
  VisitColumns(begin, end, [&](int first, int next) {
    const auto stretch = reducer_.ReduceSelected(first, next, *look_.selection, plot_.maps[1]);
    if (!stretch.IsEmpty()) DrawStretch(raster, look_.selected, stretch);
  });
}

void TraceDrawer::DrawStretch(TraceRaster& raster, COLORREF colour, const TraceStretch& stretch) {
  const DrawPoint first = Snap(Place(stretch.first + 1, stretch.firstValue));
  raster.MoveTo(colour, Start(stretch, reducer_.ReadOne(stretch.first - 1)));
  raster.LineTo(first);
  raster.LineTo({first.x, Place(stretch.first + 1, stretch.lowest).y});
  raster.LineTo({first.x, Place(stretch.first + 1, stretch.highest).y});
  raster.LineTo(Snap(Place(stretch.last + 1, stretch.lastValue)));
  raster.LineTo(End(stretch, reducer_.ReadOne(stretch.last + 1)));
}

}  // namespace tallyscope
