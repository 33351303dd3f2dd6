// SPDX-License-Identifier: MIT
// Draws one plot of a table into a file. The plots are the workbench's own; only the window is missing.
#include <iostream>
#include <memory>

#include <QGuiApplication>

#include "host/Command.h"
#include "host/HostTable.h"
#include "host/RenderRequest.h"
#include "host/Sentences.h"
#include "outside/colour/ColourTables.h"
#include "outside/plot/PlotPicture.h"
#include "outside/plot/UPlotX_Container.h"
#include "plots/UPlotX_Bi_Scatter.h"
#include "plots/UPlotX_St_Scatter.h"
#include "plots/UPlotX_Uni_Histogram.h"
#include "plots/UPlotX_Uni_Scatter.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Bivariate.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

namespace {

constexpr int kUnivariateFigures = 11;
constexpr int kBivariateFigures = 15;

// Qt's remarks on a machine without a desktop are of no use to who draws a picture.
void ShowFailuresOnly(QtMsgType type, const QMessageLogContext&, const QString& text) {
  if (type == QtCriticalMsg || type == QtFatalMsg) std::cerr << text.toStdString() << "\n";
}

// Text needs Qt's fonts, and those an application; the offscreen one wants no display.
std::unique_ptr<QGuiApplication> MakeApplication() {
  if (qGuiApp != nullptr) return nullptr;
  static int argc = 1;
  static char name[] = "tallyscope";
  static char* argv[] = {name, nullptr};
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qInstallMessageHandler(ShowFailuresOnly);
  return std::make_unique<QGuiApplication>(argc, argv);
}

// The calculators that a page of the workbench would have, and the plot on them.
class RenderJob {
 public:
  RenderJob(CHostTable& table, const RenderRequest& request) : table_(table), request_(request) {}

  bool Select(std::ostream& err) {
    spatial_.Add(&table_, request_.field);
    spatial_.ResetSpatialDims();
    if (request_.selection.IsEmpty()) return true;
    if (!request_.selection.Build(table_, request_.file, spatial_, err)) return false;
    spatial_.extractFlags = CStats_Spatial::kBitmaps | CStats_Spatial::kExtractX | CStats_Spatial::kExtractY;
    return spatial_.Calculate(1, nullptr);
  }

  CUPlotX_Tallyscope& MakePlot() {
    switch (request_.page) {
      case RenderPage::kUniScatter:
        return Make<CUPlotX_Uni_Scatter>(MakeUnivariate());
      case RenderPage::kUniHistogram: {
        auto& plot = Make<CUPlotX_Uni_Histogram>(MakeUnivariate());
        plot.ResetSelCount();
        return plot;
      }
      case RenderPage::kBiScatter:
        return Make<CUPlotX_Bi_Scatter>(MakeBivariate());
      default:
        return Make<CUPlotX_St_Scatter>(MakeUnivariate());
    }
  }

 private:
  CStats_Calculator* MakeUnivariate() {
    univariate_.Add(&table_, request_.field);
    univariate_.Calculate(kUnivariateFigures, nullptr);
    return &univariate_;
  }
  CStats_Calculator* MakeBivariate() {
    univariate_.Add(&table_, request_.field);
    second_.Add(&table_, request_.field2);
    bivariate_.Add(&table_, request_.field);
    bivariate_.Add(&table_, request_.field2);
    bivariate_.xLink = &univariate_;
    bivariate_.yLink = &second_;
    bivariate_.Calculate(kBivariateFigures, nullptr);
    return &bivariate_;
  }

  template <class Plot>
  Plot& Make(CStats_Calculator* calculator) {
    auto plot = std::make_unique<Plot>();
    plot->calculator = calculator;
    plot->spatial = &spatial_;
    plot->data = &table_;
    plot->colourDim = request_.colour;
    plot->sizeDim = request_.size;
    if (request_.perceptual) plot->colourTable = MakePerceptual();
    plot->TakeExtents();
    Plot& made = *plot;
    plot_ = std::move(plot);
    return made;
  }

  CHostTable& table_;
  const RenderRequest& request_;
  CStats_Spatial spatial_;
  CStats_Univariate univariate_;
  CStats_Univariate second_;
  CStats_Bivariate bivariate_;
  std::unique_ptr<CUPlotX_Tallyscope> plot_;
};

}  // namespace

int RunRender(CHostTable& table, const RenderRequest& request, std::ostream& err) {
  const auto application = MakeApplication();
  RenderJob job(table, request);
  if (!job.Select(err)) return kExitBadInput;
  CUPlotX_Container container;
  container.AddPlot(&job.MakePlot(), true);
  container.SetClientSize({request.width, request.height});
  container.ZoomFit();
  const Status status = SavePicture(container, {request.width, request.height}, request.target);
  if (status.IsGood()) return kExitDone;
  Say(err, status.GetError());
  return kExitBadInput;
}

}  // namespace tallyscope
