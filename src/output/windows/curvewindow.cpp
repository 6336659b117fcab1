#include "output/windows/curvewindow.h"

#include <QHBoxLayout>

#include <algorithm>
#include <iterator>
#include <utility>

#include "app/ground/commands.h"
#include "output/quantitationplot.h"
#include "output/windows/piccurve.h"

namespace spectrane {
namespace {

/// A rectangle that is smaller was a click [pixels].
constexpr int kSmallestRectangle = 4;

}  // namespace

CurveWindow::CurveWindow(MainWindow& frame)
    : DocumentWindow(frame), formats_(frame.Link().Formats), curve_(new PicCurve(this)) {
  curve_->setObjectName(QStringLiteral("PicCurve"));
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(curve_, 1);
  setFocusProxy(curve_);
  ConnectCurve();
}

CurveWindow::~CurveWindow() {
  // What the pointer was over is gone with the window.
  Frame().ShowReadout({});
}

bool CurveWindow::Offers(int command) const {
  constexpr int kOfAView[] = {kCopyPicture, kZoomOut, kZoomIn, kZoomWindow};
  return std::ranges::find(kOfAView, command) != std::end(kOfAView) || DocumentWindow::Offers(command);
}

void CurveWindow::PutBeside(QWidget* widget) {
  layout()->addWidget(widget);
}

void CurveWindow::ConnectCurve() {
  curve_->SetPopup([this](int command) { return Frame().ActionOf(command); });
  connect(curve_, &PicCurve::PointedAt, this,
          [this](std::size_t line, std::size_t point) { Frame().ShowReadout(PointText(line, point)); });
  connect(curve_, &PicCurve::PointedAway, this, [this] { Frame().ShowReadout({}); });
  connect(curve_, &PicCurve::ZoomSelectingChanged, this, [this](bool on) {
    Frame().ShowReadout(on ? tr("Draw a rectangle around what you want to see. Esc leaves the view as it is.")
                           : QString());
  });
  connect(curve_, &PicCurve::ScaleChosen, this, [this](const CurveScale& scale) { LookAt(scale); });
  connect(curve_, &PicCurve::RectangleSelected, this,
          [this](const CurveScale& scale, const QSize& pixels) { LookAtRectangle(scale, pixels); });
  connect(curve_, &PicCurve::HomeWanted, this, [this] { mmuZoomWindow(); });
}

void CurveWindow::LookAt(const CurveScale& scale) {
  if (!scale.Drawable()) return;
  TakeView(scale);
  curve_->SetScale(scale);
}

void CurveWindow::LookAtRectangle(const CurveScale& scale, const QSize& pixels) {
  if (pixels.width() >= kSmallestRectangle && pixels.height() >= kSmallestRectangle) LookAt(scale);
}

void CurveWindow::ShowPicture() {
  curve_->SetView(MakeView());
}

void CurveWindow::mmuZoomIn() {
  const CurveScale seen = SeenScale();
  LookAt({RoundedOutward(curve_->View().X.Kind, seen.X), RoundedOutward(curve_->View().Y.Kind, seen.Y)});
  curve_->SetZoomSelecting(true);
}

void CurveWindow::mmuZoomWindow() {
  TakeHomeView();
  curve_->SetScale(SeenScale());
}

void CurveWindow::mmuZoomOut() {
  curve_->HideCursor();
}

void CurveWindow::CopyPicture() {
  CopyToClipboard(MakePicture());
}

QImage CurveWindow::MakePicture() {
  return curve_->Image();
}

void CurveWindow::mmuFileOutputBMP() {
  OutputPicture(MakePicture());
}

}  // namespace spectrane
