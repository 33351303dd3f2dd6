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
#include "statistics/Analysis.h"

namespace tallyscope {

namespace {

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

// The session that a page of the workbench would have, and the plot on it.
class RenderJob {
 public:
  RenderJob(CHostTable& table, const RenderRequest& request) : table_(table), request_(request) {
    session_.Fill(&table, false);
  }

  bool Start(std::ostream& err) {
    CAnalysis analysis(session_);
    const auto mode = GetRenderPageKind(request_.page).mode;
    if (!analysis.Start(mode, request_.field, request_.field2, nullptr)) {
      Say(err, request_.file + " has too few columns of numbers for this plot.");
      return false;
    }
    if (request_.selection.IsEmpty()) return true;
    CStats_Spatial& selection = *analysis.GetSelection();
    if (!request_.selection.Build(table_, request_.file, selection, err)) return false;
    selection.extractFlags = CStats_Spatial::kBitmaps | CStats_Spatial::kExtractX | CStats_Spatial::kExtractY;
    return selection.Calculate(1, nullptr);
  }

  CUPlotX_Tallyscope& MakePlot() {
    switch (request_.page) {
      case RenderPage::kUniScatter:
        return Make<CUPlotX_Uni_Scatter>();
      case RenderPage::kUniHistogram: {
        auto& plot = Make<CUPlotX_Uni_Histogram>();
        plot.ResetSelCount();
        return plot;
      }
      case RenderPage::kBiScatter:
        return Make<CUPlotX_Bi_Scatter>();
      default:
        return Make<CUPlotX_St_Scatter>();
    }
  }

 private:
  template <class Plot>
  Plot& Make() {
    auto plot = std::make_unique<Plot>();
    plot->calculator = session_.GetCalculator();
    plot->spatial = session_.GetSpatialCalculator();
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
  CTallyscope session_;
  std::unique_ptr<CUPlotX_Tallyscope> plot_;
};

}  // namespace

int RunRender(CHostTable& table, const RenderRequest& request, std::ostream& err) {
  const auto application = MakeApplication();
  RenderJob job(table, request);
  if (!job.Start(err)) return kExitBadInput;
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
