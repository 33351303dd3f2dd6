// SPDX-License-Identifier: MIT
#include "outside/plot/PlotPicture.h"

#include <new>
#include <utility>

#include <QBuffer>
#include <QFileInfo>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>

#include "outside/plot/UPlotX_Container.h"
#include "platform/core/AtomicFile.h"
#include "platform/core/ShownText.h"
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

// False where the device doesn't take it.
bool Paint(CUPlotX_Container& container, QPainter& painter, CSize size) {
  if (!painter.isActive()) return false;
  {
    CPainterDC dc(painter, size);
    container.RenderKept(dc);
  }
  return painter.end();
}

QImage PaintImage(CUPlotX_Container& container, CSize size, double scale) {
  QImage image(static_cast<int>(size.cx * scale), static_cast<int>(size.cy * scale), QImage::Format_RGB32);
  if (image.isNull()) return image;
  image.setDevicePixelRatio(scale);
  const PictureSetting setting(container, size);
  CPainterDC dc(image);
  container.RenderKept(dc);
  return image;
}

bool WritePng(CUPlotX_Container& container, CSize size, double scale, QIODevice& device) {
  const QImage image = PaintImage(container, size, scale);
  return !image.isNull() && image.save(&device, "PNG");
}

// The writer takes a title for markup.
QString MakeTitle(const CUPlotX& plot) {
  return ToQString(WithoutControls(plot.titleX)).toHtmlEscaped();
}

bool WriteSvg(CUPlotX_Container& container, CSize size, QIODevice& device) {
  const PictureSetting setting(container, size);
  QSvgGenerator generator;
  generator.setOutputDevice(&device);
  generator.setSize(QSize(size.cx, size.cy));
  generator.setViewBox(QRect(0, 0, size.cx, size.cy));
  generator.setResolution(kPixelsPerInch);
  generator.setTitle(MakeTitle(*container.GetActivePlot()));
  QPainter painter(&generator);
  return Paint(container, painter, size);
}

bool WritePdf(CUPlotX_Container& container, CSize size, QIODevice& device) {
  const PictureSetting setting(container, size);
  QPdfWriter writer(&device);
  writer.setCreator("Tallyscope");
  writer.setPageSize(QPageSize(QSizeF(size.cx * kPointsPerPixel, size.cy * kPointsPerPixel), QPageSize::Point));
  writer.setPageMargins(QMarginsF(0, 0, 0, 0));
  writer.setResolution(kPaperResolution);
  QPainter painter(&writer);
  painter.scale(double(kPaperResolution) / kPixelsPerInch, double(kPaperResolution) / kPixelsPerInch);
  return Paint(container, painter, size);
}

// Without memory some of Qt's classes come back empty and others throw.
template <class Make>
Status MakeInMemory(CSize size, const char* what, Make make) {
  try {
    if (make()) return Status::Good();
  } catch (const std::bad_alloc&) {
  }
  return Status::Bad("A picture of " + std::to_string(size.cx) + " x " + std::to_string(size.cy) + " pixels can't be " +
                     what + ": there is not enough memory.");
}

}  // namespace

Status MakePicture(CUPlotX_Container& container, CSize size, double scale, QImage& image) {
  return MakeInMemory(size, "made", [&] {
    container.Prepare(nullptr);
    QImage made = PaintImage(container, size, scale);
    if (made.isNull()) return false;
    image = std::move(made);
    return true;
  });
}

Status SavePicture(CUPlotX_Container& container, CSize size, const CString& path, double scale) {
  const QString ending = QFileInfo(ToQString(path)).suffix().toLower();
  if (ending != "png" && ending != "svg" && ending != "pdf") {
    return Status::Bad("A picture is a .png, .svg or .pdf file, which " + path + " is not.");
  }
  QByteArray bytes;
  const Status made = MakeInMemory(size, "written", [&] {
    QBuffer device(&bytes);
    if (!device.open(QIODevice::WriteOnly)) return false;
    container.Prepare(nullptr);
    if (ending == "png") return WritePng(container, size, scale, device);
    return ending == "svg" ? WriteSvg(container, size, device) : WritePdf(container, size, device);
  });
  if (!made.IsGood()) return made;
  CAtomicFile file(path);
  if (file.Write({bytes.constData(), static_cast<std::size_t>(bytes.size())}) && file.Commit()) return Status::Good();
  return Status::Bad(file.GetError());
}

}  // namespace tallyscope
