// SPDX-License-Identifier: MIT
#pragma once

namespace tallyscope {

// Who shows the plots of a container and is told what happens on them. What isn't overridden is ignored.
class CPlotListener {
 public:
  virtual ~CPlotListener() = default;
  virtual void OnRedraw(bool /*all*/) {}    // all, or only what lies over the layer that is kept between repaints
  virtual void OnViewChanged() {}           // the user has zoomed or panned
  virtual void OnHovered(int /*index*/) {}  // the hover mark stands on another index of the plot; below 0 on none
  virtual void OnSelectionMade() {}         // through a plot; its figures are up to date
};

}  // namespace tallyscope
