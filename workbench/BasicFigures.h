// SPDX-License-Identifier: MIT
#pragma once

namespace tallyscope {

class CDataExchange;
struct UnivariateFigures;

// Moves the figures of the three basic groups (FigurePanel.h) to their controls or back.
void ExchangeBasicFigures(CDataExchange* exchange, UnivariateFigures& figures);

}  // namespace tallyscope
