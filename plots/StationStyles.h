// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "outside/colour/Modulation.h"
#include "platform/core/Colour.h"
#include "statistics/bvector.h"

namespace tallyscope {

class CStats_Data;
class CUPlotX_Tallyscope;

// How the stations of a plot look in this drawing: colour and half size by modulation, red when selected (black where
// colours mean values). Read in blocks.
class StationStyles {
 public:
  enum class Nulls {
    kPlain,  // a null in a modulation's field: black, half size 1
    kHidden  // it isn't drawn
  };

  // The plot has its data and is prepared, and will be asked for about `expected` stations: for many, the fields are
  // read from end to end at once.
  StationStyles(const CUPlotX_Tallyscope& plot, Nulls nulls, long long expected);
  StationStyles(const StationStyles&) = delete;
  StationStyles& operator=(const StationStyles&) = delete;

  static constexpr int kBlock = 512;

  struct Style {
    COLORREF colour;
    int half;
    bool shown;
    bool selected;
  };

  // At most kBlock of them, which Get tells by their place.
  void Read(const int* stations, int count);
  Style Get(int i) const {
    const Code code = codes_[static_cast<std::size_t>(i)];
    const bool selected = (code & kSelected) != 0;
    return {selected ? chosen_ : table_[code & kColour], code >> kHalfShift & kHalfMask, (code & kHidden) == 0,
            selected};
  }

 private:
  // A style in two bytes: so those of a million stations are at hand in the cache, in whatever order they are asked
  // for.
  using Code = std::uint16_t;
  static constexpr Code kColour = 0x1ff;  // place in the table, where black follows the 256 colours
  static constexpr Code kBlack = 0x100;
  static constexpr int kHalfShift = 9;
  static constexpr Code kHalfMask = 7;
  static constexpr Code kHidden = 0x1000;
  static constexpr Code kSelected = 0x2000;
  static constexpr Code kPlain = kBlack | 1 << kHalfShift;

  bool IsModulated() const { return colours_.IsOn() || sizes_.IsOn(); }
  void ReadAll();
  void AddColours(Code* codes, int count);
  void AddSizes(Code* codes, int count);
  void AddIndices(Code* codes, int count, Code place, int shift) const;

  CStats_Data& data_;
  bool hidesNulls_;
  int colourDim_;
  int sizeDim_;
  ColourModulation colours_;
  SizeModulation sizes_;
  std::vector<COLORREF> table_;  // as the paper shows it
  const bvector* selection_;
  COLORREF chosen_;

  std::vector<Code> all_;  // of every station by modulation alone; empty where that isn't worth it
  std::array<Code, kBlock> codes_;
  std::array<double, kBlock> values_;
  std::array<unsigned char, kBlock> valid_;
  std::array<int, kBlock> indices_;
};

}  // namespace tallyscope
