#include "modes/windows/frmdna.h"

#include <QPointer>

#include "app/ground/commands.h"
#include "modes/windows/frmdnaconfig.h"
#include "output/dnaoutput.h"

namespace spectrane {
namespace {

constexpr int kDNAFileType = 5;
constexpr int kDNAFilter = 1027;
constexpr int kNoDNAPicture = 1025;
constexpr int kDNANameColumn = 1;

constexpr const char* kComputedAnew =
    "The results were computed anew from the stored absorbances; the file stays as it was.";

}  // namespace

FrmDNA::FrmDNA(MainWindow& frame) : SampleWindow(frame, "FrmDNA", kNewDNA, kNoDNAPicture) {
  DNASettings settings;
  LoadSettings<DNASettings>(frame.Settings(), kDNASettingRows, settings);
  document_.Begin(settings);
  BuildOn(document_);
}

FrmDNA::~FrmDNA() {
  LetGo();
}

double FrmDNA::GetWaveLength(int index) const {
  return document_.Option().WaveLength.at(static_cast<std::size_t>(index));
}

void FrmDNA::ShowConfigWindow() {
  if (RunsNow()) return;
  CommitEditors();
  const QPointer<FrmDNA> self(this);
  FrmDNAConfig dialog(Frame(), document_.Settings());
  if (dialog.exec() != QDialog::Accepted || !self) return;
  const bool hadFile = !document_.FileName().empty();
  const bool computed = document_.Configure(dialog.Settings());
  ShowSettings(hadFile);
  if (computed) {
    Frame().Display().SetRemark(kComputedAnew);
  } else if (hadFile && document_.FileName().empty()) {
    Frame().Display().SetRemark("The options are no longer those of the file; Save asks for another name.");
  }
}

int FrmDNA::CheckFileType() const {
  return kDNAFileType;
}

FileKindWords FrmDNA::FileWords() const {
  return {kDNAFilter, ".dna", kDNASection};
}

std::optional<Report> FrmDNA::MakeReport() {
  return DNAReport(document_, Frame().Link().Formats, OutputHead());
}

std::optional<ExportSheet> FrmDNA::MakeSheet() {
  return DNASheet(document_, Frame().Link().Formats, OutputHead());
}

spectrane::DataTable FrmDNA::MakeTable() {
  return DNASampleTable(document_, Frame().Link().Formats);
}

void FrmDNA::TakeText(int row, int column, const std::string& text) {
  if (column == kDNANameColumn) {
    document_.SetRecordName(row, text);
  } else {
    document_.SetRecordNote(row, text);
  }
}

}  // namespace spectrane
