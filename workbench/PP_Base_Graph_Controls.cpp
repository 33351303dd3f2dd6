// SPDX-License-Identifier: MIT
// The controls of a graph page and their places.
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

#include "platform/core/StringTable.h"
#include "platform/ui/Icon.h"
#include "workbench/ColourBarView.h"
#include "workbench/FieldBox.h"
#include "workbench/GraphControls.h"
#include "workbench/PP_Base_Graph.h"
#include "workbench/ToolColumn.h"

namespace tallyscope {

using Page = CPP_Base_Graph;

void CPP_Base_Graph::CreateControls() {
  canvas_ = new CPlotCanvas(container_, *this);
  AddControl(kGraphFrame, canvas_, GetCaption() + " plot");
  auto* row = new QHBoxLayout;
  row->addWidget(MakeTools());
  row->addWidget(canvas_, 1);

  auto* fields = new QHBoxLayout;
  const auto addBox = [&](int labelId, int id, const char* caption, int tip) {
    auto* label = new QLabel(caption);
    auto* box = MakeFieldBox();
    label->setBuddy(box);
    box->setToolTip(ToQString(LoadString(tip)));
    fields->addWidget(label);
    fields->addWidget(box);
    AddControl(labelId, label, caption);
    AddControl(id, box, LoadString(tip));
    return box;
  };
  auto* colour = addBox(kGraphColourLabel, kGraphColour, "C&olour", kStringTipColourField);
  auto* size = addBox(kGraphSizeLabel, kGraphSize, "Si&ze", kStringTipSizeField);
  bar_ = new ColourBarView;
  bar_->setAccessibleName("Legend of colours and sizes");
  fields->addWidget(bar_, 1);
  QObject::connect(colour, &QComboBox::activated, this, [this] { OnSelchangeFieldCol(); });
  QObject::connect(size, &QComboBox::activated, this, [this] { OnSelchangeFieldSize(); });

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(row, 1);
  layout->addLayout(fields);
}

QWidget* CPP_Base_Graph::MakeTools() {
  auto* column = new ToolColumn;
  const auto add = [&](int id, const char* icon, int tipId, const QKeySequence& keys, bool checkable, auto run) {
    auto* button = new QToolButton;
    button->setIcon(MakeIcon(icon));
    button->setAutoRaise(true);
    button->setCheckable(checkable);
    button->setShortcut(keys);
    button->setFocusPolicy(Qt::TabFocus);
    column->AddTool(button);
    AddControl(id, button, LoadString(tipId));
    SetTip(id, LoadString(tipId));
    QObject::connect(button, &QToolButton::clicked, this, [this, run] { (this->*run)(); });
  };
  const auto ctrl = [](int key) { return QKeySequence(Qt::CTRL | static_cast<Qt::Key>(key)); };
  add(kGraphZoomIn, "zoom-in", kStringTipZoomIn, ctrl(Qt::Key_5), true, &Page::OnZoomIn);
  add(kGraphZoomOut, "zoom-out", kStringTipZoomOut, ctrl(Qt::Key_6), true, &Page::OnZoomOut);
  add(kGraphPan, "pan", kStringTipPan, ctrl(Qt::Key_7), true, &Page::OnPan);
  add(kGraphFit, "fit", kStringTipFit, ctrl(Qt::Key_0), false, &Page::OnFit);
  add(kGraphZoomH, "horizontal", kStringTipHorizontal, ctrl(Qt::Key_8), true, &Page::OnZoomH);
  column->StartGroup();
  add(kGraphSelect, "pointer", kStringTipPointer, ctrl(Qt::Key_1), true, &Page::OnSelect);
  add(kGraphSelectRect, "rectangle", kStringTipRectangle, ctrl(Qt::Key_2), true, &Page::OnSelectRect);
  add(kGraphSelectPoly, "polygon", kStringTipPolygon, ctrl(Qt::Key_3), true, &Page::OnSelectPoly);
  add(kGraphExclude, "include-exclude", kStringTipExclude, ctrl(Qt::Key_4), true, &Page::OnExclude);
  column->StartGroup();
  add(kGraphUndoSelection, "undo", kStringTipUndo, ctrl(Qt::Key_Z), false, &Page::OnClearLastSelection);
  add(kGraphRedoSelection, "redo", kStringTipRedo, ctrl(Qt::Key_Y), false, &Page::OnRestoreLastSelection);
  add(kGraphSelectAll, "all", kStringTipSelectAll, ctrl(Qt::Key_A), false, &Page::OnSelectAll);
  add(kGraphClearSelection, "none", kStringTipUnselectAll, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_A), false,
      &Page::OnClearSelection);
  add(kGraphInvertSelection, "invert", kStringTipInvert, ctrl(Qt::Key_I), false, &Page::OnInvertSelection);
  return column;
}

void CPP_Base_Graph::SetTip(int id, const CString& text) {
  auto* button = GetControl<QToolButton>(id);
  if (button == nullptr) return;
  const QString keys = button->shortcut().toString(QKeySequence::NativeText);
  button->setToolTip(ToQString(text) + (keys.isEmpty() ? QString() : " (" + keys + ")"));
}

void CPP_Base_Graph::HideColour() {
  ShowDlgItem(kGraphColour, false);
  ShowDlgItem(kGraphColourLabel, false);
  bar_->setHidden(GetDlgItem(kGraphSize)->isHidden());
}

void CPP_Base_Graph::HideSize() {
  ShowDlgItem(kGraphSize, false);
  ShowDlgItem(kGraphSizeLabel, false);
  bar_->setHidden(GetDlgItem(kGraphColour)->isHidden());
}

}  // namespace tallyscope
