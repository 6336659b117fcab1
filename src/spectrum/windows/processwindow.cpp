#include "spectrum/windows/processwindow.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "app/ground/commandicon.h"
#include "app/ground/commands.h"
#include "app/ground/dialogparts.h"
#include "app/ground/words.h"
#include "base/numbers.h"
#include "output/colours.h"
#include "spectrum/windows/processconfig.h"
#include "spectrum/windows/spectrumcolumns.h"

namespace spectrane {
namespace {

constexpr int kRecordTab = 924;
constexpr int kResultListTitle = 1164;

}  // namespace

ProcessWindow::ProcessWindow(MainWindow& frame, const ProcessPlan& plan, const ProcessSettings& first)
    : SpectrumWindow(frame, SpectrumDocument::Kind::Processed), plan_(plan) {
  setObjectName(QLatin1String(plan.Name));
  const QString title = Words(kResultListTitle);
  BuildTables(plan.LayoutName, {title, Words(plan.ResultTextId), {}, SourceTabs()});
  connect(this, &QWidget::windowTitleChanged, this, [this, title] {
    if (FrmDataTabel* const tables = Tables()) tables->SetTitle(title + u'-' + Caption());
  });
  SetCaption(Words(plan.Command));
  setWindowIcon(CommandIcon(plan.Command));
  ProcessSettings settings = first;
  LoadSettings<ProcessSettings>(frame.Settings(), plan.Rows, settings);
  TakeAll(settings);
}

std::vector<DataTab> ProcessWindow::SourceTabs() {
  std::vector<DataTab> tabs;
  const QString caption = Words(kRecordTab).trimmed();
  for (std::size_t i = 0; i < plan_.Sources; ++i) {
    sourceTables_[i] =
        new PointTable(SpectrumColumns(Formats(), [this, i] { return PointsOf(sources_[i]); }), this);
    tabs.push_back(
        {plan_.Sources == 1 ? caption : caption + u' ' + QString::number(i + 1), sourceTables_[i]});
  }
  return tabs;
}

bool ProcessWindow::SetWLSRecord(std::int32_t index, double wavelength, double trans, double abs) {
  if (index < 0 || index >= kMostSpectrumPoints) return false;
  const auto i = static_cast<std::size_t>(index);
  Spectrum& source = sources_[0];
  if (i >= source.Size() && !SetWLSRecordNo(index + 1)) return false;
  source.WL[i] = wavelength;
  source.Trans[i] = trans;
  source.Abs[i] = abs;
  return true;
}

bool ProcessWindow::SetWLSRecordNo(std::int32_t count) {
  if (count < 0 || count > kMostSpectrumPoints) return false;
  // What is drawn meanwhile keeps its place.
  sources_[0].Reserve(static_cast<std::size_t>(kMostSpectrumPoints));
  sources_[0].Resize(static_cast<std::size_t>(count));
  return true;
}

void ProcessWindow::SetSource(std::size_t source, const QString& name, Spectrum points) {
  fileName_.at(source) = name;
  sources_.at(source) = std::move(points);
}

void ProcessWindow::GetResultData() {
  static const Spectrum kNone;
  std::vector<const Spectrum*> sources;
  for (std::size_t i = 0; i < plan_.Sources; ++i)
    sources.push_back(fileName_[i].isEmpty() ? &kNone : &sources_[i]);
  const ProcessedSpectrum processed = Calculate(sources);
  reason_ = processed.Reason;
  if (plan_.Sources > 1 &&
      std::ranges::any_of(sources, [](const Spectrum* source) { return source == &kNone; }))
    reason_ = NoResult::MissingFile;
  const Spectrum& result = processed.Result;
  SpectrumDocument& document = ChangedDocument();
  document.SetPointCount(static_cast<std::int32_t>(result.Size()));
  for (std::size_t i = 0; i < result.Size(); ++i)
    document.SetPoint(static_cast<std::int32_t>(i), {result.WL[i], result.Trans[i], result.Abs[i]});
  Tables()->SelectTab(static_cast<int>(plan_.Sources));
  if (reason_ != NoResult::None) {
    Frame().Display().SetRemark("No result: " + std::string(WordsOf(reason_)) + '.');
  } else if (processed.Skipped > 0) {
    const bool one = processed.Skipped == 1;
    Frame().Display().SetRemark(
        std::to_string(processed.Skipped) +
        (one ? " point of the first spectrum has no partner in the second; the result "
               "leaves it out."
             : " points of the first spectrum have no partner in the second; the result "
               "leaves them out."));
  }
  DocumentChanged();
}

void ProcessWindow::TakeLook(const SpectrumWindow& from) {
  ProcessSettings settings = AllSettings();
  const std::int32_t mode = settings.Shown.Option.DisplayMode;
  settings.Shown.Option = from.Document().Option();
  settings.Shown.Option.DisplayMode = mode;
  settings.Shown.ScaleColor = from.Settings().ScaleColor;
  settings.Shown.MarkColor = from.Settings().MarkColor;
  settings.Shown.PeakColor = from.Settings().PeakColor;
  settings.Shown.ValleyColor = from.Settings().ValleyColor;
  settings.SourceColor[0] = from.ColourAsSource();
  if (const auto* const processed = qobject_cast<const ProcessWindow*>(&from))
    settings.Shown.CurveColor = processed->Settings().CurveColor;
  TakeAll(settings);
  ChangedDocument().SetView(from.Document().View());
}

void ProcessWindow::SetDisplayMode(std::int32_t mode) {
  ChangedDocument().SetMode(mode == 2 ? ScanMode::Trans : ScanMode::Abs);
}

ProcessSettings ProcessWindow::AllSettings() const {
  ProcessSettings settings;
  settings.Shown = Settings();
  settings.Shown.Option = Document().Option();
  settings.SourceColor = sourceColor_;
  for (std::size_t i = 0; i < kMostSources; ++i) settings.FileName[i] = fileName_[i].toStdString();
  return settings;
}

void ProcessWindow::TakeAll(const ProcessSettings& settings) {
  sourceColor_ = settings.SourceColor;
  for (std::size_t i = 0; i < kMostSources; ++i) fileName_[i] = QString::fromStdString(settings.FileName[i]);
  TakeSettings(settings.Shown);
}

void ProcessWindow::StoreAll() {
  ProcessSettings settings = AllSettings();
  if (!StoreSettings<ProcessSettings>(Frame().Settings(), plan_.Rows, settings)) RemarkOnSettings(Frame());
}

void ProcessWindow::ShowConfigWindow() {
  // An export that runs holds on to the sources that stand.
  if (RunsNow()) return;
  const QPointer<ProcessWindow> self(this);
  ProcessConfig dialog(Frame(), plan_, AllSettings());
  const bool confirmed = dialog.exec() == QDialog::Accepted;
  if (!self) return;
  // Without an OK the values are the old ones; the home view comes back all the same.
  TakeAll(confirmed ? dialog.Settings() : AllSettings());
  if (confirmed) OptionsChanged();
  if (!self) return;
  StoreAll();
  DocumentChanged();
}

void ProcessWindow::DisplayRecordTable() {
  for (std::size_t i = 0; i < plan_.Sources; ++i)
    sourceTables_[i]->ShowAll(static_cast<std::int32_t>(sources_[i].Size()));
  SpectrumWindow::DisplayRecordTable();
}

CurveView ProcessWindow::MakeView() const {
  CurveView view = SpectrumWindow::MakeView();
  view.Room.Either = plan_.RoomInEither;
  AxisRange reach = view.FarthestX.value_or(view.Scale.X);
  std::vector<CurveLine> lines;
  for (std::size_t i = 0; i < plan_.Sources; ++i) {
    const Spectrum& source = sources_[i];
    CurveLine line;
    line.X = source.WL;
    line.Y = Document().Mode() == ScanMode::Trans ? source.Trans : source.Abs;
    line.Colour = ColourOf(sourceColor_[i]);
    line.Name = fileName_[i];
    line.Visible = !fileName_[i].isEmpty();
    lines.push_back(line);
    for (const double wavelength : source.WL) {
      if (std::isfinite(wavelength))
        reach = {std::min(reach.Low, wavelength), std::max(reach.High, wavelength)};
    }
  }
  view.FarthestX = reach;
  view.Lines.insert(view.Lines.begin(), lines.begin(), lines.end());
  return view;
}

QString ProcessWindow::EmptyHint() const {
  return tr("No result: %1.").arg(QString::fromUtf8(WordsOf(reason_)));
}

QString ProcessWindow::PointText(std::size_t line, std::size_t point) const {
  if (line < plan_.Sources) return PointLine(Formats(), PointsOf(sources_[line]), point);
  return SpectrumWindow::PointText(line, point);
}

void ProcessWindow::PeakHeightChanged() {
  if (!Frame().Settings().PutSetting(plan_.Section, kPeakHeightKey, ShortestText(Settings().PeakHeight)))
    RemarkOnSettings(Frame());
}

bool ProcessWindow::Offers(int command) const {
  if (command == kPrint || command == kPrintPreview) return false;
  return command == kTestOption ? !RunsNow() : SpectrumWindow::Offers(command);
}

void ProcessWindow::FormatsChanged() {
  for (std::size_t i = 0; i < plan_.Sources; ++i) sourceTables_[i]->FiguresChanged();
  SpectrumWindow::FormatsChanged();
}

FileKindWords ProcessWindow::FileWords() const {
  FileKindWords words = SpectrumWindow::FileWords();
  words.OffersCaption = true;
  words.SavedSection = kSmoothSection;
  return words;
}

bool ProcessWindow::ReadDocument(const QString& /*path*/, QString& fault) {
  fault = tr("This window shows results only.");
  return false;
}

}  // namespace spectrane
