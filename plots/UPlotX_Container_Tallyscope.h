// SPDX-License-Identifier: MIT
#pragma once

#include "outside/plot/UPlotX_Container.h"

namespace tallyscope {

// The container of the workbench's plots: with cursors of its own, and settings.
class CUPlotX_Container_Tallyscope : public CUPlotX_Container {
 public:
  QCursor ShowZoomInCursor() const override;
  QCursor ShowZoomOutCursor() const override;
  QCursor ShowPanCursor() const override;

  // The same of every plot, in their order.
  virtual void Write2Registry(const CString& prefix);
  virtual void ReadFromRegistry(const CString& prefix);
};

}  // namespace tallyscope
