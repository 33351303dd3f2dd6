// SPDX-License-Identifier: MIT
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "bands/BandWalk.h"
#include "bands/DSPFillNull.h"
#include "bands/DSPProcess.h"
#include "bands/PlaneFiller.h"

namespace tallyscope {

namespace {

// The planes of one band pair of an overlap, spanned by two axes. A plane is as large as the input's; what of it the
// output has room for is written.
class BandPlanes {
 public:
  BandPlanes(const DSPOverlap& overlap, const DSPBandPair& pair, std::size_t columnAxis, std::size_t rowAxis)
      : overlap_(overlap), pair_(pair), columnAxis_(columnAxis), rowAxis_(rowAxis) {
    columns_ = overlap.input->GetCount(static_cast<int>(columnAxis));
    rows_ = overlap.input->GetCount(static_cast<int>(rowAxis));
    const auto size = static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_);
    samples_.resize(size);
    nulls_.Resize(static_cast<int>(size), false);
  }

  // The plane through the overlap's sample `at`.
  void Fill(PlaneFiller& filler, std::array<int, 3> at) {
    Read(at);
    filler.Fill(samples_, nulls_, columns_, rows_);
    Write(at);
  }

 private:
  template <class Visit>
  void EachSample(std::array<int, 3> at, int columns, int rows, Visit visit) const {
    for (int row = 0; row < rows; ++row) {
      for (int column = 0; column < columns; ++column) {
        at[columnAxis_] = column;
        at[rowAxis_] = row;
        visit(row * columns_ + column, at);
      }
    }
  }

  void Read(const std::array<int, 3>& at) {
    WithSamples(*pair_.in, overlap_.input->data->elementType, 0, [&](const auto* from) {
      EachSample(at, columns_, rows_, [&](int sample, const std::array<int, 3>& place) {
        const int in = overlap_.InIndex(place[0], place[1], place[2]);
        samples_[static_cast<std::size_t>(sample)] = static_cast<double>(from[in]);
        nulls_.Set(sample, pair_.in->IsNull(in));
      });
    });
  }

  void Write(const std::array<int, 3>& at) {
    WithSamples(*pair_.out, overlap_.output->data->elementType, 0, [&]<class Out>(Out* to) {
      EachSample(at, overlap_.count[columnAxis_], overlap_.count[rowAxis_],
                 [&](int sample, const std::array<int, 3>& place) {
                   const int out = overlap_.OutIndex(place[0], place[1], place[2]);
                   to[out] = static_cast<Out>(samples_[static_cast<std::size_t>(sample)]);
                   pair_.out->mask->Set(out, false);
                 });
    });
  }

  const DSPOverlap& overlap_;
  const DSPBandPair& pair_;
  std::size_t columnAxis_;
  std::size_t rowAxis_;
  int columns_ = 0;
  int rows_ = 0;
  std::vector<double> samples_;
  bvector nulls_;
};

}  // namespace

bool CDSPFillNull::FillPlanes(CDSPProgress* progress) {
  const std::size_t columnAxis = axes == 6 ? 1 : 0;
  const std::size_t rowAxis = axes == 5 || axes == 6 ? 2 : 1;
  const std::size_t across = 3 - columnAxis - rowAxis;
  PlaneFiller filler({pinEnds, endValue, removeTrend, normalise, enlarge, iterations, convergence});
  const std::vector<DSPOverlap> overlaps = GetOverlaps(*this);
  std::int64_t total = 0;
  for (const auto& overlap : overlaps) {
    total += overlap.count[across] * static_cast<std::int64_t>(overlap.bands.size());
  }
  std::int64_t done = 0;
  for (const auto& overlap : overlaps) {
    for (const auto& pair : overlap.bands) {
      BandPlanes planes(overlap, pair, columnAxis, rowAxis);
      for (int plane = 0; plane < overlap.count[across]; ++plane) {
        std::array<int, 3> at{};
        at[across] = plane;
        planes.Fill(filler, at);
        if (progress != nullptr && !progress->Report(++done, total)) return false;
      }
    }
  }
  return true;
}

// The masks are remembered here, not by the operation that fills the planes.
bool CDSPFillNull::FillCube(CDSPProgress* progress) {
  CDSPFillNull planes(*this);
  planes.dimension = 2;
  planes.axes = 3;
  planes.rememberNulls = false;
  planes.storage = nullptr;
  CDSPProcess process;
  process.WorkFor(*this);
  process.AppendPart(planes);
  return process.Run(progress);
}

}  // namespace tallyscope
