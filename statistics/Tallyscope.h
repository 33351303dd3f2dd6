// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

#include "spatial/Stats_ModelVariogram.h"
#include "spatial/Stats_SampleVariogram.h"
#include "statistics/DataChange.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

class CStats_Bivariate;
class CStats_Multivariate;
class CStats_Spatial;

// A session: one data set under analysis, the mode, the fields chosen for it, and the calculators and per-field caches
// that belong to the data set. Fields are named by dims (see Stats_Data.h), which are not checked.
//
// When the data set says that it has changed, the session drops what it had computed from the columns concerned, and
// replays the selection. Pointers to its calculators stay good, those to caches as long as the number of columns is the
// same. Models stay as they are, unless dims name other columns than before.
class CTallyscope {
 public:
  enum eAnalysisMode : int { eUnivariate = 0, eBivariate = 1, eMultivariate = 2, eSpatial = 3, eVariogram = 4 };

  // How the spreadsheet shows the session's table. Lives here, so that it comes back when a selection is popped.
  struct SpreadsheetSort {
    bool sorted = false;
    int field = 0;  // dim
    int descending = 0;
    int column = -1;         // grid column that shows the arrow
    std::vector<int> ranks;  // station to sorted position
  };

  CTallyscope();
  CTallyscope(const CTallyscope&) = delete;
  CTallyscope& operator=(const CTallyscope&) = delete;
  virtual ~CTallyscope();

  // Takes the data set as working table and spreadsheet table, and sizes and fills the per-field caches. A session that
  // was filled before ends its calculators, caches and selection first, and the table if it owns it and this is
  // another.
  void Fill(CStats_Data* data, bool owns);

  // The mode alone: calculators are made, and fields chosen, by the calls below (CAnalysis does it all).
  void SetMode(eAnalysisMode mode) { mode_ = mode; }
  eAnalysisMode GetMode() const { return mode_; }
  // Sets working and spreadsheet table; ownership and caches stay, so an owned table that is replaced goes back to the
  // caller.
  void SetData(CStats_Data* data);
  CStats_Data* GetData() const { return data_; }
  CStats_Data* GetSSData() const { return spreadsheetData_; }
  void SetSSData(CStats_Data* data) { spreadsheetData_ = data; }
  // Tells sessions apart on the plots that belong to them; two sessions made in the same second may share it.
  int GetLevelID() const { return levelId_; }

  // Choose the field of a mode, which the session remembers for it, as the current one. The two of bivariate mode are
  // set one by one; the other is then 0, or what it was.
  void SetUniDim(int dim);
  void SetSPDim(int dim);
  void SetVarDim(int dim);
  void SetBiDim1(int dim);
  void SetBiDim2(int dim);
  int GetUniDim() const { return uniDim_; }
  int GetSPDim() const { return spDim_; }
  int GetVarDim() const { return varDim_; }
  int GetBiDim1() const { return biDim1_; }
  int GetBiDim2() const { return biDim2_; }
  // The first and the last of the current fields: the same one in modes of one field.
  int GetKeyDim() const { return dims_.front(); }
  int GetAncDim() const { return dims_.back(); }
  const std::vector<int>& GetDims() const { return dims_; }

  // Makes the calculator of a mode that has one of its own (CStats_Bivariate for two fields, CStats_Multivariate for
  // many and for the axes), unless one exists.
  void CreateCalculator();
  // In modes with a calculator of their own only: the others leave it for the next start of such a mode.
  void DestroyCalculator();
  // The calculator that holds the selection, on the working table and its axes; made unless one exists.
  void CreateSpatialCalculator();
  void DestroySpatialCalculator();  // with the selection
  CStats_Spatial* GetSpatialCalculator() const { return spatial_.get(); }

  // The calculator of the mode, for use after Fill. Null where the mode has none.
  CStats_Calculator* GetCalculator();
  // The one that CreateCalculator made, whatever the mode is now; null without.
  CStats_Calculator* GetOwnCalculator() const;
  // The same by its type; null unless it is of that.
  CStats_Bivariate* GetBivariate() const { return bivariate_.get(); }
  CStats_Multivariate* GetMultivariate() const { return multivariate_.get(); }

  // The caches, for dims that the table has. What was computed for a field stays when modes and fields change.
  CStats_Univariate* GetUniStats(int dim);
  // The host's own object where its data set keeps one, the cached one otherwise.
  CStats_SampleVariogram* GetVariogram(int dim);
  CStats_ModelVariogram* GetVariogramModel(int dim);

  SpreadsheetSort sort;

 private:
  class Listener;

  void MakeCaches();
  void FillCaches(int dim);
  void DropResults(const DataChange& change);
  void DropFigures(int dim);
  void DropSelection();
  std::size_t GetCacheIndex(int dim) const;

  int levelId_;
  CStats_Data* data_ = nullptr;
  CStats_Data* spreadsheetData_ = nullptr;
  eAnalysisMode mode_ = eUnivariate;
  int uniDim_ = -1;
  int biDim1_ = -1;
  int biDim2_ = 0;
  std::vector<int> dims_{-1};
  int spDim_ = -1;
  int varDim_ = 0;
  int axes_ = 0;  // when the caches were made
  // Destroyed from the last to the first: calculators before the data set that they read.
  std::vector<CStats_SampleVariogram> variograms_;
  std::vector<CStats_ModelVariogram> variogramModels_;
  std::vector<CStats_Univariate> uniStats_;
  bool ownsData_ = false;
  std::unique_ptr<CStats_Data> ownedData_;
  std::shared_ptr<CDataListener> listener_;
  std::unique_ptr<CStats_Spatial> spatial_;
  std::unique_ptr<CStats_Bivariate> bivariate_;  // one of the two at most
  std::unique_ptr<CStats_Multivariate> multivariate_;
};

}  // namespace tallyscope
