#include "spectrum/windows/frmwlsver2.h"

#include "app/ground/commands.h"
#include "app/ground/words.h"

namespace spectrane {
namespace {

constexpr int kProcessedTableTitle = 1164;
constexpr int kProcessedListTab = 924;
/// Processed spectra are searched more coarsely [Abs].
constexpr double kProcessedPeakHeight = 0.01;

}  // namespace

FrmWLSVer2::FrmWLSVer2(MainWindow& frame) : SpectrumWindow(frame, SpectrumDocument::Kind::Processed) {
  setObjectName(QStringLiteral("FrmWLSVer2"));
  BuildTables("FrmDataTabel12", {Words(kProcessedTableTitle), Words(kProcessedListTab), {}, {}});
  SetCaption(Words(kNewWLS).trimmed());
  ScanSettings settings;
  LoadSettings<ScanSettings>(Frame().Settings(), kScanSettingRows, settings);
  settings.PeakHeight = kProcessedPeakHeight;
  TakeSettings(settings);
}

bool FrmWLSVer2::SetWLSRecord(std::int32_t index, double wavelength, double trans, double abs) {
  return ChangedDocument().SetPoint(index, {wavelength, trans, abs});
}

bool FrmWLSVer2::SetWLSRecordNo(std::int32_t count) {
  if (!ChangedDocument().SetPointCount(count)) return false;
  ShowPicture();
  DisplayRecordTable();
  DocumentChanged();
  return true;
}

void FrmWLSVer2::SetDisplayMode(std::int32_t mode) {
  ChangedDocument().SetMode(ScanModeOf(mode));
  ShowPicture();
}

}  // namespace spectrane
