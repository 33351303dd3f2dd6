// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "workbench/FigurePanel.h"
#include "workbench/PP_BaseTS.h"

namespace tallyscope {

// Base of the "Statistics" pages: copies of a calculator's figures, renewed each time the page is shown, in groups that
// scroll when they don't fit, with one Copy for the page.
class CPP_Stats : public CPP_BaseTS {
 public:
  explicit CPP_Stats(int templateId);

  virtual CString GetText() const;  // what Copy copies: lines with tabs

 protected:
  // One row of AxisRangeGroup.
  struct Range {
    double minimum = 0;
    double maximum = 0;
    double mean = 0;
  };
  static void DDX_Range(CDataExchange* exchange, int firstId, Range& range);

  void CreateControls() override;
  virtual std::vector<FigureGroup> GetGroups() const = 0;
  virtual QWidget* CreateBeside() { return nullptr; }  // what stands to the right of the figures

  FigurePanel* figures_ = nullptr;

 private:
  void CopyText() const;
};

}  // namespace tallyscope
