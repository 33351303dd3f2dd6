// SPDX-License-Identifier: MIT
#pragma once

#include "outside/plot/PlotCanvas.h"
#include "outside/plot/PlotListener.h"
#include "plots/UPlotX_Container_Tallyscope.h"
#include "plots/ViewRule.h"
#include "workbench/GraphControls.h"
#include "workbench/PP_BaseTS.h"

class QKeyEvent;
class QToolButton;

namespace tallyscope {

class ColourBarView;
class CUPlotX_Tallyscope;

// Base of every page that holds a plot: the canvas, its column of tools, the modulation fields, the rule for coming
// back to the view that was left. A concrete page holds its plot by value and, in Initialise after this class's, hides
// what it has no use for, sets the zoom axes, titles and extents of the plot, and ends with FinishInitialise.
class CPP_Base_Graph : public CPP_BaseTS, public CPlotInput, public CPlotListener {
 public:
  CPP_Base_Graph(int templateId, const CString& caption);
  ~CPP_Base_Graph() override;

  int colourField = 0;  // indices of the combo boxes; 0 is none
  int sizeField = 0;

  bool resetView = true;  // the view that was left isn't restored
  ViewChange viewChange;  // why

  // It has the tool and the axes of zooming.
  CUPlotX_Container_Tallyscope& GetContainer() { return container_; }

  virtual CUPlotX* GetActivePlot();
  virtual CUPlotX_Tallyscope* GetPlot() = 0;
  virtual int GetSSCol();  // the spreadsheet's column of the key field
  virtual void SetZoomH(int on, bool force);
  virtual void SetZoomIn(int on, bool force);
  virtual void SetZoomOut(int on, bool force);
  virtual void SetPan(int on, bool force);
  virtual void SetZoomFit(bool force);
  virtual void SetSelect(int on, bool force);
  virtual void SetSelectRect(int on, bool force);
  virtual void SetSelectPoly(int on, bool force);
  virtual void SetSelectExclude(int on, bool force);
  virtual CString GetRegistryID() = 0;  // prefix of the page's settings

  void Initialise() override;
  void PrePSFinalise() override;
  void Write2Registry() override;
  void EnableControls() override;
  bool OnSetActive() override;
  using CPP_BaseTS::DoDataExchange;
  void DoDataExchange(unsigned control, CDataExchange* exchange) override;

  // The colour table of modulation: blue to red, or one that is even in lightness. Kept for all pages.
  bool IsPerceptual() const;
  void SetPerceptual(bool on);

  // What the container tells: the spreadsheet, the status line and the controls follow.
  void OnRedraw(bool all) override;
  void OnViewChanged() override;
  void OnHovered(int index) override;
  void OnSelectionMade() override;

  // The canvas's input.
  void OnLButtonDown(CPoint point) override;
  void OnMouseMove(CPoint point, bool pressed) override;
  void OnLButtonUp(CPoint point) override;
  void OnLButtonDblClk(CPoint point) override;
  void OnRButtonDown(CPoint point) override;
  void OnWheel(CPoint point, double steps) override;
  void OnLeave() override;
  bool OnKey(QKeyEvent* event) override;

 protected:
  void CreateControls() override;
  std::intptr_t OnMessage(unsigned message, std::uintptr_t wParam, std::intptr_t lParam) override;

  void HideColour();  // no colour modulation on this page
  void HideSize();
  // What a page's Initialise ends with: members to controls, and PrePSFinalise if the sheet is ready.
  void FinishInitialise();
  // A tool tip of a control in place of the usual one.
  void SetTip(int id, const CString& text);

  // What becomes of stations without a colour or size value: a sentence.
  virtual CString GetNullNote() const { return {}; }

  CPlotCanvas* canvas_ = nullptr;

 private:
  QWidget* MakeTools();
  void ConnectPlot();
  ViewSubject GetViewSubject() const;
  void ApplyViewRule();
  void RestoreView();
  void ShowTools(CDataExchange* exchange);
  void PutTool(PlotTool::Kind kind, bool on);
  void UseTool(int id, void (CPP_Base_Graph::*set)(int, bool));

  void OnZoomH() { UseTool(kGraphZoomH, &CPP_Base_Graph::SetZoomH); }
  void OnZoomIn() { UseTool(kGraphZoomIn, &CPP_Base_Graph::SetZoomIn); }
  void OnZoomOut() { UseTool(kGraphZoomOut, &CPP_Base_Graph::SetZoomOut); }
  void OnPan() { UseTool(kGraphPan, &CPP_Base_Graph::SetPan); }
  void OnFit() { SetZoomFit(true); }
  void OnSelect() { UseTool(kGraphSelect, &CPP_Base_Graph::SetSelect); }
  void OnSelectRect() { UseTool(kGraphSelectRect, &CPP_Base_Graph::SetSelectRect); }
  void OnSelectPoly() { UseTool(kGraphSelectPoly, &CPP_Base_Graph::SetSelectPoly); }
  void OnExclude();
  void OnClearSelection();
  void OnClearLastSelection();
  void OnInvertSelection();
  void OnRestoreLastSelection();
  void OnSelectAll();
  void OnSelchangeFieldCol();
  void OnSelchangeFieldSize();

  void ShowGlance(CPoint point);
  void ClearGlance();
  void StepHover(int by);
  void GoToFirst();
  void GoToNext(int index, int direction);
  void GoToHover(int index);
  void SelectHover();
  void RunAxisDialog(std::size_t axis);
  void ShowLegend();

  CUPlotX_Container_Tallyscope container_;
  ColourBarView* bar_ = nullptr;
};

}  // namespace tallyscope
