#include "spectrum/windows/spectrumwindow.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QVBoxLayout>

#include <cmath>

#include "app/ground/commands.h"
#include "app/ground/frmdatatabel.h"
#include "app/ground/words.h"
#include "base/numbers.h"
#include "output/foundmarks.h"
#include "output/plottexts.h"
#include "output/scanview.h"
#include "output/windows/piccurve.h"
#include "spectrum/windows/frmpeakheight.h"

namespace spectrane {
namespace {

constexpr int kFileFilter = 928;
constexpr int kRecordTab = 924;
constexpr int kPeakTab = 925;
constexpr int kNumberColumn = 706;
constexpr int kWavelengthColumn = 702;

constexpr const char* kPointWavelengthFormat = "0.0";
constexpr const char* kCountsFormat = "0";
/// A rectangle that is smaller was a click [pixels].
constexpr int kSmallestRectangle = 4;
constexpr int kPeakListTab = 1;

QString Figure(double value, const std::string& pattern) {
  return QString::fromStdString(Format(value, pattern));
}

}  // namespace

SpectrumWindow::SpectrumWindow(MainWindow& frame, SpectrumDocument::Kind kind, const QString& tableTitle,
                               const std::vector<PointColumn>& columns)
    : DocumentWindow(frame), formats_(frame.Link().Formats), document_(kind), curve_(new PicCurve(this)) {
  curve_->setObjectName(QStringLiteral("PicCurve"));
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(curve_);
  setFocusProxy(curve_);
  BuildTables(tableTitle, columns);
  ConnectCurve();
}

SpectrumWindow::~SpectrumWindow() {
  // What the pointer was over is gone with the window.
  Frame().ShowReadout({});
  delete curveDataTabel_;
}

std::vector<PointColumn> SpectrumWindow::UsualColumns() const {
  const auto at = [](std::span<const double> values, std::int32_t point) {
    return values[static_cast<std::size_t>(point)];
  };
  return {
      {Words(kNumberColumn), {}, QStringLiteral("00000")},
      {Words(kWavelengthColumn),
       [this, at](std::int32_t point) {
         return Figure(at(document_.Wavelength(), point), kPointWavelengthFormat);
       },
       QStringLiteral("1000.0")},
      {Words(kAbsTitle),
       [this, at](std::int32_t point) { return Figure(at(document_.Abs(), point), formats_.AbsFormat); },
       QStringLiteral("-0.0000")},
      {Words(kTransTitle),
       [this, at](std::int32_t point) { return Figure(at(document_.Trans(), point), formats_.TransFormat); },
       QStringLiteral("200.00")}};
}

void SpectrumWindow::BuildTables(const QString& title, const std::vector<PointColumn>& more) {
  std::vector<PointColumn> columns = UsualColumns();
  columns.insert(columns.end(), more.begin(), more.end());
  recordTable_ = new PointTable(columns, this);
  peakTable_ = new PointTable(columns, this);
  peakTable_->ShowSome({});
  curveDataTabel_ =
      new FrmDataTabel(title, QStringLiteral("FrmDataTabel%1").arg(CheckFileType()),
                       {{Words(kRecordTab), recordTable_}, {Words(kPeakTab), peakTable_}}, Frame().Layout());
}

void SpectrumWindow::ConnectCurve() {
  curve_->SetPopup([this](int command) { return Frame().ActionOf(command); });
  connect(curve_, &PicCurve::PointedAt, this,
          [this](std::size_t, std::size_t point) { Frame().ShowReadout(PointText(point)); });
  connect(curve_, &PicCurve::PointedAway, this, [this] { Frame().ShowReadout({}); });
  connect(curve_, &PicCurve::ZoomSelectingChanged, this, [this](bool on) {
    if (!on) Frame().ShowReadout({});
  });
  connect(curve_, &PicCurve::ScaleChosen, this, [this](const CurveScale& scale) { LookAt(scale); });
  connect(curve_, &PicCurve::RectangleSelected, this, [this](const CurveScale& scale, const QSize& pixels) {
    if (pixels.width() >= kSmallestRectangle && pixels.height() >= kSmallestRectangle) LookAt(scale);
  });
  connect(curve_, &PicCurve::HomeWanted, this, [this] { mmuZoomWindow(); });
}

void SpectrumWindow::LookAt(const CurveScale& scale) {
  if (!scale.Drawable()) return;
  ScanScale view = document_.View();
  view.StartWavelength = scale.X.Low;
  view.EndWavelength = scale.X.High;
  view.Of(document_.Mode()) = {scale.Y.High, scale.Y.Low};
  document_.SetView(view);
  curve_->SetScale(scale);
}

QString SpectrumWindow::PointText(std::size_t point) const {
  if (point >= document_.Wavelength().size()) return {};
  QString text = QStringLiteral("No. %1    %2    %3 Abs    %4 %T")
                     .arg(point + 1)
                     .arg(Figure(document_.Wavelength()[point], "0.0 nm"),
                          Figure(document_.Abs()[point], formats_.AbsFormat),
                          Figure(document_.Trans()[point], formats_.TransFormat));
  if (document_.Mode() == ScanMode::Energy)
    text +=
        QStringLiteral("    %1 ").arg(Figure(document_.Energy()[point], kCountsFormat)) + Words(kEnergyTitle);
  return text;
}

void SpectrumWindow::ShowPicture() {
  CurveView view = ScanView(document_, settings_, formats_, Caption());
  if (document_.PointCount() == 0)
    view.Caption = tr("No points yet. Stored spectra open by File, Open (Ctrl+O).");
  curve_->SetView(std::move(view));
}

void SpectrumWindow::DisplayRecordTable() {
  recordTable_->ShowAll(document_.PointCount());
  peakTable_->ShowSome(FoundPoints(document_.Found()));
}

void SpectrumWindow::TakeSettings(const ScanSettings& settings) {
  settings_ = settings;
  const bool searched = !document_.Found().PeakIndex.empty() || !document_.Found().ValleyIndex.empty();
  const bool otherValues = settings.SmoothEnable != document_.Smooth();
  document_.SetSmooth(settings.SmoothEnable);
  document_.SetOption(settings.Option);
  // Marks of other values would stand beside the curve.
  if (searched && otherValues)
    document_.FindPeak({settings.PeakHeight, settings.PeakEnable, settings.ValleyEnable});
  if (!settings.PeakEnable) document_.ForgetPeaks();
  if (!settings.ValleyEnable) document_.ForgetValleys();
  ShowPicture();
  DisplayRecordTable();
  Frame().DataTableChanged(this);
}

void SpectrumWindow::mmuZoomIn() {
  const CurveScale seen = ScanViewScale(document_);
  LookAt({RoundedOutward(AxisKind::Wavelength, seen.X), RoundedOutward(ScanAxis(document_.Mode()), seen.Y)});
  curve_->SetZoomSelecting(true);
  Frame().ShowReadout(tr("Draw a rectangle around what you want to see. Esc leaves the view as it is."));
}

void SpectrumWindow::mmuZoomWindow() {
  document_.ShowHome();
  curve_->SetScale(ScanViewScale(document_));
}

void SpectrumWindow::mmuZoomOut() {
  curve_->HideCursor();
}

void SpectrumWindow::FindPeak() {
  // An export that runs holds on to the peaks that stand.
  if (RunsNow()) return;
  document_.FindPeak({settings_.PeakHeight, settings_.PeakEnable, settings_.ValleyEnable});
  curveDataTabel_->SelectTab(kPeakListTab);
  DisplayRecordTable();
  ShowPicture();
}

void SpectrumWindow::mmuSetPeakHeight() {
  const QPointer<SpectrumWindow> self(this);
  FrmPeakHeight dialog(Frame(), settings_.PeakHeight);
  if (dialog.exec() != QDialog::Accepted || !self) return;
  settings_.PeakHeight = dialog.PeakHeight();
  PeakHeightChanged();
}

void SpectrumWindow::CopyPicture() {
  QGuiApplication::clipboard()->setImage(curve_->Image());
}

QString SpectrumWindow::OpenFileName() const {
  return QString::fromStdString(document_.FileName());
}

bool SpectrumWindow::Offers(int command) const {
  switch (command) {
    case kClose:
    case kCopyPicture:
    case kZoomOut:
    case kZoomIn:
    case kZoomWindow:
      return true;
    case kSearchPeak:
    case kPeakValueSetup:
    case kOutputPicture:
    case kOutputWorkbook:
    case kOutputText:
    case kPrint:
    case kPrintPreview:
      return !RunsNow();
    case kSave:
    case kSaveAs:
      return document_.PointCount() > 0;
    default:
      return false;
  }
}

void SpectrumWindow::FormatsChanged() {
  recordTable_->FiguresChanged();
  peakTable_->FiguresChanged();
  ShowPicture();
}

FrmDataTabel* SpectrumWindow::DataTable() const {
  return settings_.DataTableEnable ? curveDataTabel_.data() : nullptr;
}

FileKindWords SpectrumWindow::FileWords() const {
  return {kFileFilter, ".wls", kScanSection, true};
}

bool SpectrumWindow::SavesElsewhere() const {
  return document_.IsHalfLoaded() ||
         !OpenFileName().endsWith(QLatin1String(FileWords().Ending), Qt::CaseInsensitive);
}

bool SpectrumWindow::WriteDocument(const QString& path, QString& fault) {
  if (document_.SaveFile(path.toStdString())) return true;
  fault = QString::fromStdString(FaultWords(document_.LastFault()));
  return false;
}

bool SpectrumWindow::ReadDocument(const QString& path, QString& fault) {
  const bool whole = document_.OpenFile(path.toStdString());
  if (!whole) fault = QString::fromStdString(FaultWords(document_.LastFault()));
  ShowPicture();
  DisplayRecordTable();
  return whole;
}

}  // namespace spectrane
