// SPDX-License-Identifier: MIT
#pragma once

#include "outside/plot/UPlotX_Container.h"

namespace tallyscope {

class CPP_Base_Graph;

// The container of the workbench's plots: with settings, and with the page that its plots tell of changes.
class CUPlotX_Container_Tallyscope : public CUPlotX_Container {
 public:
  CPP_Base_Graph* page = nullptr;  // null where a picture is drawn without a window

  QCursor ShowZoomInCursor() const override;
  QCursor ShowZoomOutCursor() const override;
  QCursor ShowPanCursor() const override;

  // The same of every plot, in their order.
  virtual void Write2Registry(const CString& prefix);
  virtual void ReadFromRegistry(const CString& prefix);
};

}  // namespace tallyscope
