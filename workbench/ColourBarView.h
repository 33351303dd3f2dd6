// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "plots/ModulationLegend.h"

namespace tallyscope {

// The legend of colours and sizes in the row below a plot.
class ColourBarView : public QWidget {
 public:
  using QWidget::QWidget;

  // `nulls` says what becomes of stations without a value, for the tool tip.
  void SetLegend(const ModulationLegend& legend, const CString& nulls);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  ModulationLegend legend_;
};

}  // namespace tallyscope
