#include "modes/windows/frmts.h"

#include <QApplication>

#include "app/ground/commands.h"
#include "app/ground/dialogparts.h"
#include "app/ground/frmdatatabel.h"
#include "app/ground/words.h"
#include "base/numbers.h"
#include "base/numericfault.h"
#include "modes/windows/frmtsconfig.h"
#include "output/foundmarks.h"
#include "output/plottexts.h"
#include "output/timescanoutput.h"
#include "output/windows/piccurve.h"
#include "spectrum/windows/frmpeakheight.h"

namespace spectrane {
namespace {

constexpr int kTimeScanType = 2;
constexpr int kTimeScanFilter = 980;
constexpr int kTimeTableTitle = 973;
constexpr int kTimeRecordTab = 974;
constexpr int kTimePeakTab = 975;
constexpr int kTimeColumn = 714;
constexpr int kFullEnergyColumn = 710;
constexpr int kDarkEnergyColumn = 711;
constexpr int kGainColumn = 707;
constexpr int kPeakTab = 1;
constexpr const char* kPointTimeFormat = "0.0 s";
/// A rectangle that is smaller was a click [pixels].
constexpr int kLeastRectangle = 5;

/// The value as it stands in a text of that pattern.
double AsShown(double value, const std::string& pattern) {
  return Val(Format(value, pattern));
}

}  // namespace

FrmTS::FrmTS(MainWindow& frame)
    : CurveWindow(frame),
      source_{document_, points_, found_, settings_, Formats()},
      test_(BenchOf(frame), document_, frame.Link().Time, frame.Link().Loop) {
  setObjectName(QStringLiteral("FrmTS"));
  SetCaption(Words(kNewTS).trimmed());
  const InstrumentState& state = frame.Link().State;
  if (state.InstrumentConnected) document_.SetBlank(state.FullEnergy, state.DarkEnergy, state.GainIndex);
  BuildTables();
  ConnectTest();
  TimeScanSettings settings;
  LoadSettings<TimeScanSettings>(frame.Settings(), kTimeScanSettingRows, settings);
  TakeSettings(settings);
  // Whoever comes back to the window may have lost its blank elsewhere.
  connect(qApp, &QApplication::focusChanged, this, [this] {
    if (!Curve().View().Caption.endsWith(NextStep())) ShowPicture();
  });
}

FrmTS::~FrmTS() {
  // The focus goes from a window that goes.
  disconnect(qApp, nullptr, this, nullptr);
  if (test_.TestRunning) FrmTS::StopTest();
  delete curveDataTabel_;
}

std::vector<PointColumn> FrmTS::Columns() const {
  const auto figure = [](double value, const std::string& pattern) {
    return QString::fromStdString(Format(value, pattern));
  };
  const auto ofAll = [this](int title, std::int32_t TSOption::*field, const char* widest) {
    return PointColumn{Words(title),
                       [this, field](std::int32_t) { return QString::number(document_.Option().*field); },
                       QLatin1String(widest)};
  };
  const auto at = [](const auto& values, std::int32_t point) {
    return values[static_cast<std::size_t>(point)];
  };
  return {{Words(kNumberTitle), {}, QStringLiteral("00000")},
          {Words(kTimeColumn),
           [=, this](std::int32_t point) { return figure(at(points_.Time, point), kPointTimeFormat); },
           QStringLiteral("10000.0 s")},
          {Words(kAbsTitle),
           [=, this](std::int32_t point) { return figure(at(points_.Abs, point), Formats().AbsFormat); },
           QStringLiteral("-0.0000")},
          {Words(kTransTitle),
           [=, this](std::int32_t point) { return figure(at(points_.Trans, point), Formats().TransFormat); },
           QStringLiteral("200.00")},
          {Words(kEnergyTitle),
           [=, this](std::int32_t point) { return QString::number(at(points_.Energy, point)); },
           QStringLiteral("000000")},
          ofAll(kFullEnergyColumn, &TSOption::FullEnergy, "000000"),
          ofAll(kDarkEnergyColumn, &TSOption::DarkEnergy, "000000"),
          ofAll(kGainColumn, &TSOption::GainNo, "00")};
}

void FrmTS::BuildTables() {
  recordTable_ = new PointTable(Columns(), this);
  peakTable_ = new PointTable(Columns(), this);
  peakTable_->ShowSome({});
  curveDataTabel_ = new FrmDataTabel(
      Words(kTimeTableTitle), QStringLiteral("FrmDataTabel%1").arg(kTimeScanType),
      {{Words(kTimeRecordTab), recordTable_}, {Words(kTimePeakTab), peakTable_}}, Frame().Layout());
}

QString FrmTS::PointText(std::size_t /*line*/, std::size_t point) const {
  if (point >= points_.Time.size()) return {};
  return QStringLiteral("No. %1    %2    %3 Abs    %4 %T")
      .arg(point + 1)
      .arg(QString::fromStdString(Format(points_.Time[point], kPointTimeFormat)),
           QString::fromStdString(Format(points_.Abs[point], Formats().AbsFormat)),
           QString::fromStdString(Format(points_.Trans[point], Formats().TransFormat)));
}

CurveView FrmTS::MakeView() const {
  CurveView view = TimeScanCurve(source_, view_, Caption());
  view.Caption += NextStep();
  return view;
}

QString FrmTS::NextStep() const {
  if (points_.Count() > 0 || RunsNow()) return {};
  return test_.BlankHolds() ? tr("     No points yet. The blank is set: Start Test (F5).")
                            : tr("     No points yet: first Set Blank (F8), then Start Test (F5).");
}

void FrmTS::ShowTables() {
  recordTable_->ShowAll(points_.Count());
  peakTable_->ShowSome(FoundPoints(found_));
}

void FrmTS::TakeSettings(const TimeScanSettings& settings) {
  settings_ = settings;
  TSOption option = settings.Option;
  option.DisplayMode = static_cast<std::int16_t>(settings.DisplayMode);
  document_.Configure(option, settings.StartSecond, settings.EndSecond);
  view_ = HomeView(document_);
  if (!settings.PeakEnable) found_.PeakIndex.clear();
  if (!settings.ValleyEnable) found_.ValleyIndex.clear();
  ShowPicture();
  ShowTables();
  Frame().DataTableChanged(this);
}

void FrmTS::ShowConfigWindow() {
  if (RunsNow()) return;
  TimeScanSettings settings = settings_;
  settings.Option = document_.Option();
  settings.DisplayMode = document_.ShowsTrans() ? 2 : 1;
  settings.StartSecond = document_.StartSecond();
  settings.EndSecond = document_.EndSecond();
  const QPointer<FrmTS> self(this);
  FrmTSConfig dialog(Frame(), settings);
  if (dialog.exec() != QDialog::Accepted || !self) return;
  TakeSettings(dialog.Settings());
  DocumentChanged();
  const double next = document_.Option().WorkWL;
  if (document_.PointWavelength() == next) return;
  const auto words = [this](double wavelength) {
    return Format(wavelength, Formats().WavelengthFormat) + " nm";
  };
  Frame().Display().SetRemark("These points were measured at " + words(document_.PointWavelength()) +
                              "; the next test goes to " + words(next) + ".");
}

void FrmTS::FindPeak() {
  if (RunsNow()) return;
  // A point that a stop has dropped is none to be found.
  points_.TakeAll(document_);
  found_ = FindPeaks(document_, settings_);
  ShowTables();
  ShowPicture();
  curveDataTabel_->SelectTab(kPeakTab);
  Frame().Display().SetRemark(FoundWords(found_, settings_.PeakHeight));
}

void FrmTS::mmuSetPeakHeight() {
  const QPointer<FrmTS> self(this);
  FrmPeakHeight dialog(Frame(), settings_.PeakHeight);
  if (dialog.exec() != QDialog::Accepted || !self) return;
  settings_.PeakHeight = dialog.PeakHeight();
  if (!Frame().Settings().PutSetting(kTimeScanSection, kPeakHeightKey, ShortestText(settings_.PeakHeight))) {
    RemarkOnSettings(Frame());
  }
}

// ---- What is seen ----

void FrmTS::TakeView(const CurveScale& scale) {
  view_.Time = {scale.X.Low, scale.X.High};
  view_.Of(document_.ShowsTrans()) = {scale.Y.Low, scale.Y.High};
}

void FrmTS::TakeHomeView() {
  view_ = HomeView(document_);
}

CurveScale FrmTS::SeenScale() const {
  return TimeScanScale(document_, view_);
}

void FrmTS::LookAtRectangle(const CurveScale& scale, const QSize& pixels) {
  if (pixels.width() < kLeastRectangle || pixels.height() < kLeastRectangle) return;
  const std::string& pattern = document_.ShowsTrans() ? Formats().TransFormat : Formats().AbsFormat;
  const CurveScale chosen{{AsShown(scale.X.Low, "0"), AsShown(scale.X.High, "0")},
                          {AsShown(scale.Y.Low, pattern), AsShown(scale.Y.High, pattern)}};
  if (!chosen.Drawable()) {
    Frame().Display().SetRemark(scale.X.Low < scale.X.High && chosen.X.Low >= chosen.X.High
                                    ? "The view ends at whole seconds; this one has none inside."
                                    : "The ends of this view are one figure in the format of its axis.");
  }
  LookAt(chosen);
}

void FrmTS::mmuZoomOut() {
  Curve().SetZoomSelecting(!Curve().ZoomSelecting());
}

void FrmTS::mmuZoomIn() {
  try {
    view_ = Widened(view_, document_);
    Curve().SetScale(SeenScale());
  } catch (const NumericFault& fault) {
    Frame().Display().SetRemark(std::string("Overflow: ") + fault.what() + ". The view stays as it is.");
  }
}

void FrmTS::FormatsChanged() {
  recordTable_->FiguresChanged();
  peakTable_->FiguresChanged();
  ShowPicture();
}

// ---- File and papers ----

bool FrmTS::mmuOpenFile(const QString& path) {
  return !RunsNow() && DocumentWindow::mmuOpenFile(path);
}

int FrmTS::CheckFileType() const {
  return kTimeScanType;
}

QString FrmTS::OpenFileName() const {
  return QString::fromStdString(document_.FileName());
}

FrmDataTabel* FrmTS::DataTable() const {
  return settings_.DataTableEnable ? curveDataTabel_.data() : nullptr;
}

FileKindWords FrmTS::FileWords() const {
  return {.FilterTextId = kTimeScanFilter,
          .Ending = ".tis",
          .Section = kTimeScanSection,
          .KeepsFolder = false,
          .OffersCaption = true};
}

bool FrmTS::IsModified() const {
  // A test that was ended before its first point left nothing to save.
  return document_.IsModified() && document_.DataCount() > 0;
}

bool FrmTS::SavesElsewhere() const {
  return document_.IsHalfLoaded() ||
         !OpenFileName().endsWith(QLatin1String(FileWords().Ending), Qt::CaseInsensitive);
}

bool FrmTS::WriteDocument(const QString& path, QString& fault) {
  if (document_.SaveFile(path.toStdString())) return true;
  fault = QString::fromStdString(FaultWords(document_.LastFault()));
  return false;
}

bool FrmTS::ReadDocument(const QString& path, QString& fault) {
  const bool whole = document_.OpenFile(path.toStdString());
  if (!whole) fault = QString::fromStdString(FaultWords(document_.LastFault()));
  ShowReplaced();
  return whole;
}

void FrmTS::ShowReplaced() {
  found_ = {};
  view_ = HomeView(document_);
  points_.TakeAll(document_);
  ShowPicture();
  ShowTables();
}

bool FrmTS::TakeImage(const Journal& journal) {
  if (!document_.TakeJournal(journal)) return false;
  ShowReplaced();
  return true;
}

std::optional<Report> FrmTS::MakeReport() {
  return TimeScanReport(source_, OutputHead(), view_);
}

std::optional<ExportSheet> FrmTS::MakeSheet() {
  return TimeScanSheet(source_, OutputHead());
}

}  // namespace spectrane
