// SPDX-License-Identifier: MIT
#include "workbench/PP_Stats.h"

#include <QApplication>
#include <QClipboard>
#include <QPushButton>
#include <QScrollArea>
#include <QStyle>
#include <QVBoxLayout>

#include "platform/ui/DataExchange.h"
#include "platform/ui/Icon.h"
#include "workbench/ControlIds.h"

namespace tallyscope {

CPP_Stats::CPP_Stats(int templateId) : CPP_BaseTS(templateId, "Statistics") {}

void CPP_Stats::CreateControls() {
  figures_ = new FigurePanel(*this, GetGroups());
  auto* area = new QScrollArea;
  area->setWidgetResizable(true);
  area->setFrameShape(QFrame::NoFrame);
  area->setFocusPolicy(Qt::NoFocus);
  area->setWidget(figures_);

  auto* body = new QHBoxLayout;
  body->addWidget(area, 1);
  if (auto* beside = CreateBeside()) body->addWidget(beside);

  auto* copy = new QPushButton(MakeIcon("copy"), "&Copy");
  copy->setToolTip("Copy all figures of this page");
  AddControl(kControlCopy, copy, "Copy");
  QObject::connect(copy, &QPushButton::clicked, this, [this] { CopyText(); });
  auto* row = new QHBoxLayout;
  row->addStretch(1);
  row->addWidget(copy);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, style()->pixelMetric(QStyle::PM_LayoutTopMargin, nullptr, this), 0, 0);
  layout->addLayout(body, 1);
  layout->addLayout(row);
}

CString CPP_Stats::GetText() const {
  return figures_->GetText();
}

void CPP_Stats::CopyText() const {
  QApplication::clipboard()->setText(ToQString(GetText()));
}

void CPP_Stats::DDX_Range(CDataExchange* exchange, int firstId, Range& range) {
  DDX_Number(exchange, firstId, range.minimum);
  DDX_Number(exchange, firstId + 1, range.maximum);
  DDX_Number(exchange, firstId + 2, range.mean);
}

}  // namespace tallyscope
