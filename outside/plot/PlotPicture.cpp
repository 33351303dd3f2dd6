// SPDX-License-Identifier: MIT
#include "outside/plot/PlotPicture.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>

#include "outside/plot/UPlotX_Container.h"
#include "platform/core/AtomicFile.h"
#include "platform/ui/PainterDC.h"
#include "platform/ui/Wnd.h"

namespace tallyscope {

namespace {

constexpr int kPixelsPerInch = 96;
constexpr double kPointsPerPixel = 72.0 / kPixelsPerInch;
constexpr int kPaperResolution = 1200;

// The container as it was, once the picture is done. Hover marks and rubber bands have no place in a picture, so
// pictures show the kept layer.
class PictureSetting {
 public:
  PictureSetting(CUPlotX_Container& container, CSize size) : container_(container), colours_(container.colours) {
    const CRect client = container.GetClientRect();
    size_ = {client.Width(), client.Height()};
    container.colours = PlotColours();
    container.isPicture = true;
    container.SetClientSize(size);
    for (int i = 0; i < container.GetPlotCount(); ++i) container.GetPlot(i)->SetWindowExtent();
  }
  ~PictureSetting() {
    container_.colours = colours_;
    container_.isPicture = false;
    container_.SetClientSize(size_);
    for (int i = 0; i < container_.GetPlotCount(); ++i) container_.GetPlot(i)->SetWindowExtent();
    container_.Invalidate();
  }
  PictureSetting(const PictureSetting&) = delete;
  PictureSetting& operator=(const PictureSetting&) = delete;

 private:
  CUPlotX_Container& container_;
  PlotColours colours_;
  CSize size_;
};

void PaintAll(CUPlotX_Container& container, QPainter& painter, CSize size) {
  CPainterDC dc(painter, size);
  container.RenderKept(dc);
}

QByteArray MakePng(CUPlotX_Container& container, CSize size, double scale) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  MakePicture(container, size, scale).save(&buffer, "PNG");
  return bytes;
}

QByteArray MakeSvg(CUPlotX_Container& container, CSize size) {
  const PictureSetting setting(container, size);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  QSvgGenerator generator;
  generator.setOutputDevice(&buffer);
  generator.setSize(QSize(size.cx, size.cy));
  generator.setViewBox(QRect(0, 0, size.cx, size.cy));
  generator.setResolution(kPixelsPerInch);
  generator.setTitle(ToQString(container.GetActivePlot()->titleX));
  QPainter painter(&generator);
  PaintAll(container, painter, size);
  painter.end();
  return bytes;
}

QByteArray MakePdf(CUPlotX_Container& container, CSize size) {
  const PictureSetting setting(container, size);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QPdfWriter writer(&buffer);
  writer.setCreator("Tallyscope");
  writer.setPageSize(QPageSize(QSizeF(size.cx * kPointsPerPixel, size.cy * kPointsPerPixel), QPageSize::Point));
  writer.setPageMargins(QMarginsF(0, 0, 0, 0));
  writer.setResolution(kPaperResolution);
  QPainter painter(&writer);
  painter.scale(double(kPaperResolution) / kPixelsPerInch, double(kPaperResolution) / kPixelsPerInch);
  PaintAll(container, painter, size);
  painter.end();
  return bytes;
}

}  // namespace

QImage MakePicture(CUPlotX_Container& container, CSize size, double scale) {
  const PictureSetting setting(container, size);
  QImage image(static_cast<int>(size.cx * scale), static_cast<int>(size.cy * scale), QImage::Format_RGB32);
  image.setDevicePixelRatio(scale);
  CPainterDC dc(image);
  container.RenderKept(dc);
  return image;
}

bool SavePicture(CUPlotX_Container& container, CSize size, const CString& path, CString& error, double scale) {
  const QString ending = QFileInfo(ToQString(path)).suffix().toLower();
  QByteArray bytes;
  if (ending == "png") {
    bytes = MakePng(container, size, scale);
  } else if (ending == "svg") {
    bytes = MakeSvg(container, size);
  } else if (ending == "pdf") {
    bytes = MakePdf(container, size);
  } else {
    error = "A picture is a .png, .svg or .pdf file, which " + path + " is not.";
    return false;
  }
  CAtomicFile file(path);
  if (file.Write({bytes.constData(), static_cast<std::size_t>(bytes.size())}) && file.Commit()) return true;
  error = file.GetError();
  return false;
}

}  // namespace tallyscope
