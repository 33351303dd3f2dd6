// SPDX-License-Identifier: MIT
#pragma once

#include "outside/plot/AxisMap.h"
#include "platform/ui/Dialog.h"

namespace tallyscope {

// The range and the map of one axis.
class CDlg_Axis : public CDialog {
 public:
  explicit CDlg_Axis(CWnd* parent = nullptr);

  CString axisTitle;
  double from = 0;
  double to = 1;
  int mapping = AxisMap::kLinear;
  double band = 1;  // half width of the linear band of a logarithmic axis

 protected:
  void CreateControls() override;
  bool OnInitDialog() override;
  void OnOK() override;
  void DoDataExchange(CDataExchange* exchange) override;

 private:
  void OnLinear() { OnMapping(); }
  void OnLog() { OnMapping(); }
  void OnMapping();
  void EnableBand();
};

}  // namespace tallyscope
