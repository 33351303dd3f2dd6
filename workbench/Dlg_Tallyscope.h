// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

#include <QPointer>

#include "platform/core/Colour.h"
#include "platform/ui/Dialog.h"
#include "workbench/SessionController.h"
#include "workbench/WaitingActs.h"

class QSplitter;

namespace tallyscope {

class CMenu;
class CPS_BaseTS;
class CStats_Data;
class CStats_Spatial;
class CTSSelectGridCtrl;
struct GV_DISPINFO;

// Analyses on offer: bits of EnableShow.
inline constexpr unsigned long kShowUnivariate = 1;
inline constexpr unsigned long kShowBivariate = 2;
inline constexpr unsigned long kShowSpatial = 8;
inline constexpr unsigned long kShowVariogram = 0x10;
inline constexpr unsigned long kShowVariogramModel = 0x20;

// The workbench's window: a spreadsheet of the working table on top, the property sheet of the current analysis below
// it. It owns a stack of sessions, the top one being the working table, through a SessionController that does what
// needs no window, and one sheet at a time, built anew on each change of mode, field or table. It holds no statistics
// of its own. A host reaches it through CDlg_Tallyscope_Ext; PushData must have been called before DoModal.
//
// What takes the sheet or a session down (a push, a pop, another mode or field, RefreshDialog, the end) waits while a
// menu or a dialog is open on top of the window: see WaitingActs.
class CDlg_Tallyscope : public CDialog {
 public:
  explicit CDlg_Tallyscope(CWnd* parent = nullptr);
  ~CDlg_Tallyscope() override;

  // The session on top and what it answers. Null before the first PushData; the others are for use after it.
  CTallyscope* GetTallyscope() const { return sessions_.GetTop(); }
  int GetLevelID() const { return GetTallyscope()->GetLevelID(); }
  int GetDimension() const;
  void SetData(CStats_Data* data) { GetTallyscope()->SetData(data); }
  CStats_Data* GetData() const { return GetTallyscope()->GetData(); }
  CStats_Data* GetSSData() const { return GetTallyscope()->GetSSData(); }
  void SetMode(CTallyscope::eAnalysisMode mode) { GetTallyscope()->SetMode(mode); }
  CTallyscope::eAnalysisMode GetMode() const { return GetTallyscope()->GetMode(); }
  void SetUniDim(int dim) { GetTallyscope()->SetUniDim(dim); }
  void SetBiDim1(int dim) { GetTallyscope()->SetBiDim1(dim); }
  void SetBiDim2(int dim) { GetTallyscope()->SetBiDim2(dim); }
  void SetSPDim(int dim) { GetTallyscope()->SetSPDim(dim); }
  void SetVarDim(int dim) { GetTallyscope()->SetVarDim(dim); }
  int GetKeyDim() const { return GetTallyscope()->GetKeyDim(); }
  int GetAncDim() const { return GetTallyscope()->GetAncDim(); }
  CStats_Calculator* GetCalculator() const { return GetTallyscope()->GetCalculator(); }
  CStats_Spatial* GetSpatialCalculator() const { return GetTallyscope()->GetSpatialCalculator(); }
  void CreateSpatialCalculator() { GetTallyscope()->CreateSpatialCalculator(); }
  void DestroyCalculator() { GetTallyscope()->DestroyCalculator(); }
  void DestroySpatialCalculator() { GetTallyscope()->DestroySpatialCalculator(); }
  CStats_Univariate* GetUniStats(int dim) const { return GetTallyscope()->GetUniStats(dim); }
  CStats_SampleVariogram* GetVariogram(int dim) const { return GetTallyscope()->GetVariogram(dim); }
  CStats_ModelVariogram* GetVariogramModel(int dim) const { return GetTallyscope()->GetVariogramModel(dim); }

  // Stacks a session on a table, and takes it over when `owns`. Touches no window.
  void PushData(CStats_Data* data, bool owns) { sessions_.Push(data, owns); }
  void PopData();  // back to the session below; nothing when there is none

  void RefreshDialog(bool save);  // builds the sheet anew, on the same page

  void EnableShow(unsigned long mask) { showMask_ |= mask; }
  void DisableShow(unsigned long mask) { showMask_ &= ~mask; }
  bool IsEnabledShow(unsigned long mask) const { return (showMask_ & mask) != 0; }
  bool IsModeOffered(CTallyscope::eAnalysisMode mode) const;  // by the mask, the table's axes and fields
  void EnableControls();
  virtual void Destroy();  // ends all sessions

  // The spreadsheet. `row` is a station number plus 1, `col` a grid column: axes first, then fields, from 1.
  void ConnectSpreadsheet(CStats_Data* data, bool highlightKey);
  void EnsureVisibleSS(int row, int col);
  void UpdateSortFlag();
  bool GetAllowSSSelection() const { return sessions_.allowSelection; }
  void SetAllowSSSelection(bool allow) { sessions_.allowSelection = allow; }
  // Whether the station is selected, as far as the spreadsheet shows the table that the selection is of.
  bool IsSelectedRow(int station) const { return sessions_.IsSelected(station); }
  CTSSelectGridCtrl* GetGrid() const { return grid_; }

  // What the status line says while the pointer is on nothing.
  void SetIdleStatus(const CString& text);
  void ShowStatus(const CString& text);  // empty: the idle text

  CPS_BaseTS* GetSheet() const { return sheet_.get(); }
  bool IsSpreadsheetShown() const { return spreadsheetShown_; }
  int GetHoverStation() const { return hoverStation_; }
  void SetHoverStation(int station) { hoverStation_ = station; }

 protected:
  bool OnInitDialog() override;
  void OnOK() override;
  void OnCancel() override;
  void OnDestroy() override;
  void CreateControls() override;
  void DoDataExchange(CDataExchange* exchange) override;
  std::intptr_t OnMessage(unsigned message, std::uintptr_t wParam, std::intptr_t lParam) override;
  bool OnNotify(NMHDR* header) override;
  void keyPressEvent(QKeyEvent* event) override;  // Esc and Enter never end the window
  void showEvent(QShowEvent* event) override;     // the key field's column comes into view
  bool eventFilter(QObject* watched, QEvent* event) override;

  // Modes whose sheet this build has; the mode box offers no other.
  virtual bool HasSheet(CTallyscope::eAnalysisMode mode) const;
  virtual void CreatePS(int startPage);
  virtual void Start_Univariate(int startPage);
  virtual void Start_Bivariate(int startPage);
  virtual void Start_Spatial(int startPage);
  virtual void CreateSC_Univariate();
  virtual void CreateSC_Bivariate();
  virtual void CreateSC_Spatial();
  virtual void CreateSC_Variogram();
  virtual void CreatePS_Univariate(int wizard, int startPage);
  virtual void CreatePS_Bivariate(int wizard, int startPage);
  virtual void CreatePS_Spatial(int wizard, int startPage);
  void DestroyPSheet();
  void ResetDialog();
  void HandleSpreadsheetCE(bool show);

  void OnSelchangeMode();
  void OnSelchangeKeyField();
  void OnSelchangeAncField();
  void OnPushData();
  void OnPopData();
  void OnBnClickedButtonCeSpreadsheet();
  void OnHelp();

  virtual void ShowSelectedCount();  // at each EnableControls

  virtual void SelectRow(int position, int shift, int control);
  virtual void SelectCol(int column, int shift, int control);
  virtual int ComposeMenu(CMenu* menu, int row, int col);
  virtual int ProcessMenu(int row, int col, int id);
  virtual void SortGridByCol(int ascending, int col, int shift, int control);

  // Help is off until a subclass sets both before the dialog opens.
  CString helpFile_;
  CString helpProduct_;

 private:
  // The window's layout (Dlg_Tallyscope_Window.cpp).
  void EmbedSheet();
  QWidget* MakeHeader();
  QWidget* MakeFooter();
  void MakeTips();
  void RestoreLayout();
  void SaveLayout() const;
  QWidget* GetFocusPlace() const;
  void FocusPage();

  void FillModes();
  void FillBoxes();
  void Pop();
  void Push();
  void ShowKeyColumn();

  // The sheet (Dlg_Tallyscope_Sheets.cpp).
  struct SheetRow;
  static const SheetRow& GetSheetRow(CTallyscope::eAnalysisMode mode);
  void StartSession();  // makes the calculators of the mode
  void StartSheet(std::unique_ptr<CPS_BaseTS> sheet, int wizard, int startPage);

  // The selection (Dlg_Tallyscope_Selection.cpp).
  void OnSelectionChanged();
  void RefreshPage();

  // The spreadsheet (Dlg_Tallyscope_Spreadsheet.cpp).
  bool IsSortedSS();  // the spreadsheet shows the session's table and sort; brings a stale sort table back first
  void RestoreWidths();
  bool IsDimInUse(int dim) const;
  bool SupplyCell(GV_DISPINFO* info);
  COLORREF GetCellColour(int dim, int station) const;
  void OnGridRClick(int row, int col);
  void OnGridDblClick(int row, int col);
  void ShowSummary(int col);
  void FindValue(int col);
  void ShowCellStatus(int row);

  SessionController sessions_;
  std::unique_ptr<CPS_BaseTS> sheet_;
  CTSSelectGridCtrl* grid_ = nullptr;
  QSplitter* splitter_ = nullptr;
  QWidget* sheetArea_ = nullptr;
  QWidget* ancLabel_ = nullptr;
  QPointer<QWidget> parkedFocus_;  // where the focus of a page that went waits for the next page
  WaitingActs acts_{*this};

  COLORREF normalColour_ = 0xffffff;
  COLORREF nullColour_ = 0x80c0ff;
  COLORREF keyColour_ = 0xffc0c0;
  COLORREF selectedColour_ = 0xc0c0ff;
  bool highlightKey_ = true;
  bool spreadsheetShown_ = true;
  bool pageEnablesControls_ = false;  // the window's follow when the page's are done
  int hiddenHeight_ = 0;              // what the window shrank by
  unsigned long showMask_ = kShowUnivariate | kShowBivariate | kShowSpatial | kShowVariogram;
  std::vector<CTallyscope::eAnalysisMode> modes_;
  int keyIndex_ = 0;
  int ancIndex_ = -1;
  int modeIndex_ = -1;
  int hoverStation_ = -1;
  std::vector<int> workingWidths_;  // columns of the working table while the spreadsheet shows another
  CString savedTitle_;
  CString idleStatus_;
};

}  // namespace tallyscope
