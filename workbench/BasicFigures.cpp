// SPDX-License-Identifier: MIT
#include "workbench/BasicFigures.h"

#include "platform/ui/DataExchange.h"
#include "statistics/Stats_Univariate.h"
#include "workbench/ControlIds.h"

namespace tallyscope {

void ExchangeBasicFigures(CDataExchange* exchange, UnivariateFigures& figures) {
  DDX_Text(exchange, kControlTotal, figures.total);
  DDX_Text(exchange, kControlValid, figures.valid);
  DDX_Text(exchange, kControlInvalid, figures.invalid);
  DDX_Number(exchange, kControlMinimum, figures.minimum);
  DDX_Number(exchange, kControlMaximum, figures.maximum);
  DDX_Number(exchange, kControlMean, figures.mean);
  DDX_Number(exchange, kControlVariance, figures.variance);
  DDX_Number(exchange, kControlStdDeviation, figures.standardDeviation);
  DDX_Number(exchange, kControlRatio, figures.ratio);
}

}  // namespace tallyscope
