// SPDX-License-Identifier: MIT
#include "bands/DSPHistogram.h"

#include <map>
#include <utility>

#include "bands/BandWalk.h"
#include "bands/Stats_DSPData.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

namespace {

constexpr int kSortedMade = 4;
constexpr int kSortedOrBinned = 16;
constexpr int kBinned = 32;

CStats_Histogram MakeHistogram(CDSPData& data, int band, bool sorted) {
  CStats_DSPData table(&data);
  CStats_Univariate figures;
  figures.Add(&table, band);
  figures.Calculate(sorted ? kSortedOrBinned : kBinned, nullptr);
  return sorted && (figures.GetFlags(0) & kSortedMade) != 0 ? figures.sortedHistogram : figures.binnedHistogram;
}

}  // namespace

bool CDSPHistogram::ProcessAny(CDSPProgress* progress) {
  std::map<std::pair<int, int>, CStats_Histogram> histograms;  // by input and band
  for (const DSPOverlap& overlap : GetOverlaps(*this)) {
    for (const DSPBandPair& pair : overlap.bands) {
      histograms[{overlap.index, pair.band}] = MakeHistogram(*overlap.input->data, pair.band, sorted);
    }
  }
  return WalkLines(*this, 0, progress, [&](const DSPLine& line) {
    CStats_Histogram& histogram = histograms[{line.overlap->index, line.pair->band}];
    MapLine(line, [&](double x) { return histogram.GetCumulative(x); });
  });
}

}  // namespace tallyscope
