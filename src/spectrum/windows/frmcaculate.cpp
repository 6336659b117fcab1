#include "spectrum/windows/frmcaculate.h"

#include <utility>

#include "app/ground/commands.h"
#include "app/ground/words.h"
#include "output/plottexts.h"
#include "spectrum/spectrumfiles.h"

namespace spectrane {
namespace {

constexpr int kCaculateConfigTitle = 1165;
constexpr int kCaculateTab = 1313;
constexpr int kReadError = 1177;
constexpr int kSheetWavelength = 702;

/// The commands have the captions and the icons of the windows; they follow each other as the operations do.
int CommandOf(SpectrumOperation operation) {
  return kSpectrumAdd + static_cast<int>(operation) - static_cast<int>(SpectrumOperation::Add);
}

DataTable SourceTable(const Spectrum& source, const DisplayFormats& formats) {
  DataTable table;
  table.LinesBefore = 3;
  table.Columns = {{"No", "0", 6},
                   {Words(kSheetWavelength).toStdString(), "0.0", 16},
                   {Words(kAbsTitle).toStdString(), formats.AbsFormat, 16},
                   {Words(kTransTitle).toStdString(), formats.TransFormat, 18}};
  table.RowCount = static_cast<std::int32_t>(source.Size());
  table.EmptyWords = "Error: No Wavelength Scan Data Record!";
  table.CellAt = [&source](std::int32_t row, std::size_t column) -> TableCell {
    const auto i = static_cast<std::size_t>(row);
    switch (column) {
      case 0:
        return row + 1.0;
      case 1:
        return source.WL[i];
      case 2:
        return source.Abs[i];
      default:
        return source.Trans[i];
    }
  };
  return table;
}

}  // namespace

SpectrumOperation OperationOfCommand(int command) {
  return static_cast<SpectrumOperation>(command - kSpectrumAdd + static_cast<int>(SpectrumOperation::Add));
}

FrmCaculate::FrmCaculate(MainWindow& frame, SpectrumOperation operation)
    : ProcessWindow(frame,
                    {"FrmCaculate", "FrmCaculateTabel", CommandOf(operation), kCaculateTab, 2,
                     kCaculateSection, kCaculateSettingRows, "FrmCaculateConfig", kCaculateConfigTitle},
                    FirstCaculateSettings()),
      operation_(operation) {
  // With the words of this kind of window.
  ShowPicture();
}

FileFault FrmCaculate::LoadSource(const QString& path, std::size_t index) {
  StoredSpectrum spectrum;
  FileFault fault = LoadMeasuredSpectrum(path.toStdString(), false, spectrum);
  if (fault) {
    SetSource(index, {}, {});
  } else {
    SetSource(index, path, FromHighestWavelength(std::move(spectrum.Points)));
  }
  return fault;
}

void FrmCaculate::OptionsChanged() {
  std::vector<std::pair<QString, FileFault>> faults;
  for (std::size_t i = 0; i < kMostSources; ++i) {
    const QString path = SourceFileName(i);
    SetSource(i, path, {});
    if (path.isEmpty()) continue;
    if (const FileFault fault = LoadSource(path, i)) faults.emplace_back(path, fault);
  }
  GetResultData();
  DisplayRecordTable();
  ShowPicture();
  // Only now: while a box is open the window is painted.
  Questions& boxes = Frame().Boxes();
  for (const auto& [path, fault] : faults)
    boxes.ShowWords(Words(kReadError) + path, QString::fromStdString(FaultWords(fault)), kReadError);
}

ProcessedSpectrum FrmCaculate::Calculate(const std::vector<const Spectrum*>& sources) const {
  return CombineSpectra(*sources[0], *sources[1], operation_, Document().Mode() == ScanMode::Trans);
}

QString FrmCaculate::EmptyHint() const {
  if (Reason() != NoResult::MissingFile) return ProcessWindow::EmptyHint();
  return tr("Two files are combined here: Operate, Option (F4) names them.");
}

std::optional<ExportSheet> FrmCaculate::MakeSheet() {
  std::optional<ExportSheet> sheet = ProcessWindow::MakeSheet();
  for (std::size_t i = 0; i < kMostSources; ++i)
    sheet->Tables.push_back(SourceTable(SourcePoints(i), Formats()));
  return sheet;
}

}  // namespace spectrane
