#include "spectrum/windows/frmwlscompare.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <utility>

#include "app/ground/commandicon.h"
#include "app/ground/commands.h"
#include "app/ground/dialogparts.h"
#include "app/ground/frmdatatabel.h"
#include "app/ground/pointtable.h"
#include "app/ground/words.h"
#include "output/colours.h"
#include "output/scanview.h"
#include "output/windows/piccurve.h"
#include "spectrum/spectrumfiles.h"
#include "spectrum/windows/frmwlscompareconfig.h"
#include "spectrum/windows/spectrumcolumns.h"

namespace spectrane {
namespace {

constexpr int kCompareCaption = 404;
constexpr int kComparedTab = 924;
constexpr int kComparedFilter = 928;
constexpr int kHeaderRefused = 1151;
constexpr int kNoWorkbook = 1152;
constexpr int kNoText = 1153;

/// Rows whose first colours are equal have different patterns.
constexpr Qt::PenStyle kPatterns[] = {Qt::SolidLine, Qt::DashLine, Qt::DotLine, Qt::DashDotLine,
                                      Qt::DashDotDotLine};

QString PathAt(const CompareSettings& settings, std::size_t row) {
  return QString::fromStdString(settings.FileName.at(row));
}

}  // namespace

FrmWLSCompare::FrmWLSCompare(MainWindow& frame) : CurveWindow(frame), legend_(new CompareLegend(this)) {
  setObjectName(QStringLiteral("FrmWLSCompare"));
  setWindowIcon(CommandIcon(kSpectrumCompare));
  SetCaption(Words(kCompareCaption));
  LoadSettings<CompareSettings>(frame.Settings(), kCompareSettingRows, settings_);
  FrmWLSCompare::TakeHomeView();
  PutBeside(legend_);
  connect(legend_, &CompareLegend::Ticked, this, [this](std::size_t row, bool shown) { Hide(row, !shown); });
  BuildTables();
  ShowPicture();
}

FrmWLSCompare::~FrmWLSCompare() {
  delete curveDataTabel_;
}

ScanMode FrmWLSCompare::Mode() const {
  return settings_.Option.DisplayMode == 2 ? ScanMode::Trans : ScanMode::Abs;
}

void FrmWLSCompare::BuildTables() {
  std::vector<DataTab> tabs;
  for (std::size_t i = 0; i < kMostCompared; ++i) {
    tables_[i] =
        new PointTable(SpectrumColumns(Formats(), [this, i] { return PointsOf(compared_[i]); }), this);
    tabs.push_back({Words(kComparedTab).trimmed(), tables_[i]});
  }
  curveDataTabel_ = new FrmDataTabel(Caption(), QStringLiteral("FrmWLSCompareTabel"), tabs, Frame().Layout());
  for (int i = 0; i < curveDataTabel_->TabCount(); ++i) curveDataTabel_->SetTabCaption(i, {});
}

void FrmWLSCompare::ShowConfigWindow() {
  if (RunsNow()) return;
  const QPointer<FrmWLSCompare> self(this);
  FrmWLSCompareConfig dialog(Frame(), settings_);
  if (dialog.exec() != QDialog::Accepted || !self) return;
  for (std::size_t i = 0; i < kMostCompared; ++i)
    hidden_[i] = hidden_[i] && dialog.Settings().FileName[i] == settings_.FileName[i];
  settings_ = dialog.Settings();
  TakeHomeView();
  LoadAll();
  if (!StoreSettings<CompareSettings>(Frame().Settings(), kCompareSettingRows, settings_))
    RemarkOnSettings(Frame());
  TellFaults();
}

bool FrmWLSCompare::LoadCompareFile(const QString& path, std::size_t index) {
  if (index >= kMostCompared || path.isEmpty()) return false;
  StoredSpectrum spectrum;
  asked_[index] = true;
  faults_[index] = LoadMeasuredSpectrum(path.toStdString(), false, spectrum);
  compared_[index] = std::move(spectrum.Points);
  return !faults_[index] || !compared_[index].Empty();
}

void FrmWLSCompare::LoadAll() {
  for (std::size_t i = 0; i < kMostCompared; ++i) {
    compared_[i] = {};
    faults_[i] = {};
    asked_[i] = false;
    LoadCompareFile(PathAt(settings_, i), i);
  }
  ShowAll();
}

void FrmWLSCompare::ShowAll() {
  int first = -1;
  for (std::size_t i = 0; i < kMostCompared; ++i) {
    tables_[i]->ShowAll(static_cast<std::int32_t>(compared_[i].Size()));
    const auto tab = static_cast<int>(i);
    const QString name = QFileInfo(PathAt(settings_, i)).completeBaseName();
    const bool loaded = IsLoaded(i);
    curveDataTabel_->SetTabCaption(tab, loaded ? Words(kComparedTab).trimmed() + u' ' + name : QString());
    if (loaded && first < 0) first = tab;
  }
  if (first >= 0) curveDataTabel_->SelectTab(first);
  legend_->Show(LegendEntries());
  ShowPicture();
  Frame().DataTableChanged(this);
  DocumentChanged();
}

bool FrmWLSCompare::IsLoaded(std::size_t row) const {
  return asked_.at(row) && (!faults_[row] || !compared_[row].Empty());
}

int FrmWLSCompare::LoadedFiles() const {
  int loaded = 0;
  for (std::size_t i = 0; i < kMostCompared; ++i) loaded += IsLoaded(i) ? 1 : 0;
  return loaded;
}

std::vector<LegendEntry> FrmWLSCompare::LegendEntries() const {
  std::vector<LegendEntry> entries;
  for (std::size_t i = 0; i < kMostCompared; ++i) {
    if (settings_.FileName[i].empty()) continue;
    LegendEntry entry;
    entry.Row = i;
    entry.Path = PathAt(settings_, i);
    entry.Name = QFileInfo(entry.Path).fileName();
    entry.Colour = ColourOf(settings_.CurveColor[i]);
    entry.Pattern = kPatterns[i % std::size(kPatterns)];
    entry.Shown = !hidden_[i];
    entry.HasCurve = !compared_[i].Empty();
    if (faults_[i]) entry.Fault = QString::fromStdString(FaultWords(faults_[i]));
    entries.push_back(std::move(entry));
  }
  return entries;
}

void FrmWLSCompare::TellFaults() {
  QStringList told;
  QStringList refused;
  for (std::size_t i = 0; i < kMostCompared; ++i) {
    if (!faults_[i]) continue;
    const QString path = PathAt(settings_, i);
    const QString words = QString::fromStdString(FaultWords(faults_[i]));
    told.append(QFileInfo(path).fileName() + QStringLiteral(" (") + words + u')');
    if (!IsLoaded(i) && faults_[i].Error != FileError::Missing)
      refused.append(path + QStringLiteral(": ") + words);
  }
  if (!told.isEmpty())
    Frame().Display().SetRemark("Not shown whole: " + told.join(QStringLiteral(", ")).toStdString());
  if (!refused.isEmpty())
    Frame().Boxes().ShowWords(Words(kHeaderRefused), refused.join(u'\n'), kHeaderRefused);
}

void FrmWLSCompare::Hide(std::size_t row, bool hidden) {
  if (hidden_.at(row) == hidden) return;
  hidden_.at(row) = hidden;
  ShowPicture();
}

CurveView FrmWLSCompare::MakeView() const {
  CurveView view;
  view.X = WavelengthAxis();
  view.Y = ValueAxis(Mode(), Formats());
  view.Scale = SeenScale();
  view.Room = {4200, 2000, false};
  view.Grid = settings_.GridEnable;
  view.Colours.Scale = ColourOf(settings_.ScaleColor);
  AxisRange reach{settings_.Option.StartWavelength, settings_.Option.EndWavelength};
  for (std::size_t i = 0; i < kMostCompared; ++i) {
    const Spectrum& points = compared_[i];
    CurveLine line;
    line.X = points.WL;
    line.Y = Mode() == ScanMode::Trans ? points.Trans : points.Abs;
    line.Colour = ColourOf(settings_.CurveColor[i]);
    line.Pattern = kPatterns[i % std::size(kPatterns)];
    line.Visible = !hidden_[i];
    line.Name = QFileInfo(PathAt(settings_, i)).fileName();
    view.Lines.push_back(line);
    for (const double wavelength : points.WL) {
      if (std::isfinite(wavelength))
        reach = {std::min(reach.Low, wavelength), std::max(reach.High, wavelength)};
    }
  }
  view.FarthestX = reach;
  if (LoadedFiles() == 0)
    view.Caption = tr("Up to ten files are compared here: Operate, Option (F4) names them.");
  return view;
}

CurveScale FrmWLSCompare::SeenScale() const {
  return SeenOf(view_, Mode());
}

void FrmWLSCompare::TakeView(const CurveScale& scale) {
  LookThrough(view_, Mode(), scale);
}

QString FrmWLSCompare::PointText(std::size_t line, std::size_t point) const {
  return QFileInfo(PathAt(settings_, line)).fileName() + QStringLiteral("    ") +
         PointLine(Formats(), PointsOf(compared_.at(line)), point);
}

QImage FrmWLSCompare::MakePicture() {
  return WithLegend(CurveWindow::MakePicture(), LegendEntries(), font());
}

void FrmWLSCompare::mmuFileOutputXLS() {
  Frame().Boxes().Show(kNoWorkbook);
}

void FrmWLSCompare::mmuFileOutputTXT() {
  Frame().Boxes().Show(kNoText);
}

bool FrmWLSCompare::Offers(int command) const {
  if (command == kPrint || command == kPrintPreview) return false;
  return command == kTestOption ? !RunsNow() : CurveWindow::Offers(command);
}

void FrmWLSCompare::FormatsChanged() {
  for (PointTable* table : tables_) table->FiguresChanged();
  ShowPicture();
}

FrmDataTabel* FrmWLSCompare::DataTable() const {
  // Without files there is nothing but empty room to show.
  return settings_.DataTableEnable && LoadedFiles() > 0 ? curveDataTabel_.data() : nullptr;
}

FileKindWords FrmWLSCompare::FileWords() const {
  return {kComparedFilter, ".wls", kScanSection, true};
}

bool FrmWLSCompare::WriteDocument(const QString& /*path*/, QString& fault) {
  fault = tr("A comparison has nothing to save.");
  return false;
}

bool FrmWLSCompare::ReadDocument(const QString& /*path*/, QString& fault) {
  fault = tr("Files that are compared are named in the options.");
  return false;
}

}  // namespace spectrane
