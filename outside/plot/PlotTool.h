// SPDX-License-Identifier: MIT
#pragma once

namespace tallyscope {

// What the mouse does on a plot. One kind is always on. A container keeps its tool; pages and settings ask it.
struct PlotTool {
  enum Kind : int { kZoomIn = 0, kZoomOut = 1, kPan = 2, kPointer = 3, kRectangle = 4, kPolygon = 5 };

  Kind kind = kPointer;
  bool exclude = false;  // rectangle and polygon take stations out

  bool Selects() const { return kind == kRectangle || kind == kPolygon; }
  bool IsExcluding() const { return exclude && Selects(); }

  // The tool as a number: the kind, three more where it takes stations out (7 and 8).
  int GetMode() const { return kind + (IsExcluding() ? kExclusion : 0); }
  // The tool of a number. One that doesn't select leaves `exclude` for the next that does.
  PlotTool WithMode(int mode) const {
    if (mode == kRectangle + kExclusion || mode == kPolygon + kExclusion) {
      return {static_cast<Kind>(mode - kExclusion), true};
    }
    const PlotTool tool{static_cast<Kind>(mode), exclude};
    return tool.Selects() ? PlotTool{tool.kind, false} : tool;
  }
  // A button of a kind that is pressed or let go. The pointer takes the place of a tool that goes off.
  PlotTool WithButton(Kind button, bool on) const {
    if (on) return {button, exclude};
    return kind == button ? PlotTool{kPointer, exclude} : *this;
  }

  bool operator==(const PlotTool&) const = default;

 private:
  static constexpr int kExclusion = 3;
};

}  // namespace tallyscope
