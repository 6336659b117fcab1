#include "spectrum/windows/frmwls.h"

#include <QPointer>

#include "app/ground/commands.h"
#include "app/ground/dialogparts.h"
#include "app/ground/words.h"
#include "base/numbers.h"
#include "spectrum/windows/frmmaxminaverage.h"
#include "spectrum/windows/frmwlsconfig.h"

namespace spectrane {
namespace {

constexpr int kScanTableTitle = 923;
constexpr int kRecordListTab = 924;
constexpr int kGainColumn = 707;
constexpr int kEnergyColumn = 708;

/// What of a point only its file tells. `window` is looked at when a figure is shown, not before.
std::vector<PointColumn> EnergyColumns(const FrmWLS* window) {
  const auto column = [window](const QString& title, std::int32_t WLSRecord::*field, const char* widest) {
    return PointColumn{title,
                       [window, field](std::int32_t point) {
                         return QString::number(window->Document().Record(point).*field);
                       },
                       QLatin1String(widest)};
  };
  const QString energy = Words(kEnergyColumn);
  return {column(energy, &WLSRecord::SampleEnergy, "000000"),
          column(energy + QStringLiteral("(100%T)"), &WLSRecord::ReferenceEnergy, "000000"),
          column(energy + QStringLiteral("(0%T)"), &WLSRecord::DarkEnergy, "000000"),
          column(Words(kGainColumn), &WLSRecord::Gain, "00")};
}

}  // namespace

FrmWLS::FrmWLS(MainWindow& frame) : SpectrumWindow(frame, SpectrumDocument::Kind::Measured) {
  setObjectName(QStringLiteral("FrmWLS"));
  BuildTables("FrmDataTabel3", {Words(kScanTableTitle), Words(kRecordListTab), EnergyColumns(this), {}});
  SetCaption(Words(kNewWLS).trimmed());
  ScanSettings settings;
  LoadSettings<ScanSettings>(Frame().Settings(), kScanSettingRows, settings);
  TakeSettings(settings);
}

void FrmWLS::ShowConfigWindow() {
  if (RunsNow()) return;
  const QPointer<FrmWLS> self(this);
  ScanSettings settings = Settings();
  settings.Option = Document().Option();
  FrmWLSConfig dialog(Frame(), settings);
  if (dialog.exec() != QDialog::Accepted || !self) return;
  TakeSettings(dialog.Settings());
  DocumentChanged();
}

void FrmWLS::PeakHeightChanged() {
  if (!Frame().Settings().PutSetting(kScanSection, kPeakHeightKey, ShortestText(Settings().PeakHeight)))
    RemarkOnSettings(Frame());
}

void FrmWLS::ShowMaxMinAverageWindow() {
  const QPointer<FrmWLS> self(this);
  const auto keep = [self](const FrmMaxMinAverage::Range& range) {
    if (self) self->SetMaxRange(range.first, range.second);
  };
  FrmMaxMinAverage(Document(), Frame().Link().Formats, MaxRange(), keep, &Frame().Frame()).exec();
}

bool FrmWLS::Offers(int command) const {
  const bool own = command == kTestOption || command == kMaxMinAverage;
  return own ? !RunsNow() : SpectrumWindow::Offers(command);
}

}  // namespace spectrane
