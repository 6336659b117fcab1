#include "spectrum/windows/spectrumwindow.h"

#include "app/ground/commands.h"
#include "app/ground/words.h"
#include "base/numbers.h"
#include "output/foundmarks.h"
#include "output/plottexts.h"
#include "output/scanview.h"
#include "spectrum/windows/frmpeakheight.h"
#include "spectrum/windows/spectrumcolumns.h"

namespace spectrane {
namespace {

constexpr int kFileFilter = 928;
constexpr int kPeakTab = 925;

}  // namespace

SpectrumWindow::SpectrumWindow(MainWindow& frame, SpectrumDocument::Kind kind)
    : CurveWindow(frame), document_(kind) {}

SpectrumWindow::~SpectrumWindow() {
  delete curveDataTabel_;
}

void SpectrumWindow::BuildTables(const char* layoutName, const TablePlan& plan) {
  std::vector<PointColumn> columns = SpectrumColumns(Formats(), [this] {
    return SpectrumPoints{document_.Wavelength(), document_.Trans(), document_.Abs()};
  });
  columns.insert(columns.end(), plan.MoreColumns.begin(), plan.MoreColumns.end());
  recordTable_ = new PointTable(columns, this);
  peakTable_ = new PointTable(columns, this);
  peakTable_->ShowSome({});
  std::vector<DataTab> tabs = plan.Before;
  tabs.push_back({plan.PointsCaption, recordTable_});
  tabs.push_back({Words(kPeakTab), peakTable_});
  curveDataTabel_ = new FrmDataTabel(plan.Title, QLatin1String(layoutName), tabs, Frame().Layout());
}

CurveView SpectrumWindow::MakeView() const {
  CurveView view = ScanView(document_, settings_, Formats(), Caption());
  if (document_.PointCount() == 0) view.Caption = EmptyHint();
  return view;
}

QString SpectrumWindow::EmptyHint() const {
  return tr("No points yet. Stored spectra open by File, Open (Ctrl+O).");
}

void SpectrumWindow::TakeView(const CurveScale& scale) {
  ScanScale view = document_.View();
  LookThrough(view, document_.Mode(), scale);
  document_.SetView(view);
}

CurveScale SpectrumWindow::SeenScale() const {
  return ScanViewScale(document_);
}

QString SpectrumWindow::PointText(std::size_t /*line*/, std::size_t point) const {
  QString text = PointLine(Formats(), {document_.Wavelength(), document_.Trans(), document_.Abs()}, point);
  if (!text.isEmpty() && document_.Mode() == ScanMode::Energy) {
    text += QStringLiteral("    %1 ").arg(QString::fromStdString(Format(document_.Energy()[point], "0"))) +
            Words(kEnergyTitle);
  }
  return text;
}

void SpectrumWindow::DisplayRecordTable() {
  recordTable_->ShowAll(document_.PointCount());
  peakTable_->ShowSome(FoundPoints(document_.Found()));
}

void SpectrumWindow::TakeSettings(const ScanSettings& settings) {
  settings_ = settings;
  const bool otherValues = settings.SmoothEnable != document_.Smooth();
  document_.SetSmooth(settings.SmoothEnable);
  document_.SetOption(settings.Option);
  // Marks of other values would stand beside the curve.
  if (document_.IsSearched() && otherValues)
    document_.FindPeak({settings.PeakHeight, settings.PeakEnable, settings.ValleyEnable});
  if (!settings.PeakEnable) document_.ForgetPeaks();
  if (!settings.ValleyEnable) document_.ForgetValleys();
  if (!settings.PeakEnable && !settings.ValleyEnable) document_.ForgetSearch();
  ShowPicture();
  DisplayRecordTable();
  Frame().DataTableChanged(this);
}

void SpectrumWindow::FindPeak() {
  // An export that runs holds on to the peaks that stand.
  if (RunsNow()) return;
  document_.FindPeak({settings_.PeakHeight, settings_.PeakEnable, settings_.ValleyEnable});
  curveDataTabel_->SelectTab(curveDataTabel_->TabCount() - 1);
  DisplayRecordTable();
  ShowPicture();
  Frame().Display().SetRemark(FoundWords(document_.Found(), settings_.PeakHeight));
}

void SpectrumWindow::mmuSetPeakHeight() {
  const QPointer<SpectrumWindow> self(this);
  FrmPeakHeight dialog(Frame(), settings_.PeakHeight);
  if (dialog.exec() != QDialog::Accepted || !self) return;
  settings_.PeakHeight = dialog.PeakHeight();
  PeakHeightChanged();
}

QString SpectrumWindow::OpenFileName() const {
  return QString::fromStdString(document_.FileName());
}

QString SpectrumWindow::NameAsSource() const {
  return OpenFileName().isEmpty() ? Caption() : OpenFileName();
}

bool SpectrumWindow::Offers(int command) const {
  switch (command) {
    case kSearchPeak:
    case kPeakValueSetup:
      return !RunsNow();
    case kSpectrumSmooth:
    case kSpectrumDerivative:
      return HasWork();
    default:
      return CurveWindow::Offers(command);
  }
}

bool SpectrumWindow::HasWork() const {
  return document_.PointCount() > 0;
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

bool SpectrumWindow::TakeImage(const Journal& journal) {
  if (!document_.TakeJournal(journal)) return false;
  ShowPicture();
  DisplayRecordTable();
  return true;
}

}  // namespace spectrane
