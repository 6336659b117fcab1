#include "modes/windows/frmmulti.h"

#include <QPointer>

#include "app/ground/commands.h"
#include "modes/windows/frmmulticonfig.h"
#include "output/multioutput.h"

namespace spectrane {
namespace {

constexpr int kMultiFileType = 4;
constexpr int kMultiFilter = 1014;
constexpr int kNoMultiPicture = 1015;

}  // namespace

FrmMulti::FrmMulti(MainWindow& frame) : SampleWindow(frame, "FrmMulti", kNewMulti, kNoMultiPicture) {
  MultiSettings settings;
  LoadSettings<MultiSettings>(frame.Settings(), kMultiSettingRows, settings);
  document_.Begin(settings);
  BuildOn(document_);
}

FrmMulti::~FrmMulti() {
  LetGo();
}

double FrmMulti::GetWorkWaveLength(int index) const {
  return document_.Option().WorkWaveLength.at(static_cast<std::size_t>(index));
}

double FrmMulti::GetParameter(int index) const {
  return document_.Option().Parameter.at(static_cast<std::size_t>(index));
}

void FrmMulti::ShowConfigWindow() {
  if (RunsNow()) return;
  CommitEditors();
  const QPointer<FrmMulti> self(this);
  FrmMultiConfig dialog(Frame(), document_.Settings(), [self](const MultiSettings& settings) {
    return self && self->document_.RecordCount() > 0 && self->document_.WouldChange(settings);
  });
  if (dialog.exec() != QDialog::Accepted || !self) return;
  const bool hadFile = !document_.FileName().empty();
  document_.Configure(dialog.Settings());
  ShowSettings(hadFile);
}

int FrmMulti::CheckFileType() const {
  return kMultiFileType;
}

FileKindWords FrmMulti::FileWords() const {
  return {kMultiFilter, ".mul", kMultiFileSection};
}

std::optional<Report> FrmMulti::MakeReport() {
  return MultiReport(document_, Frame().Link().Formats, OutputHead());
}

std::optional<ExportSheet> FrmMulti::MakeSheet() {
  return MultiSheet(document_, Frame().Link().Formats, OutputHead());
}

spectrane::DataTable FrmMulti::MakeTable() {
  return MultiSampleTable(document_, Frame().Link().Formats);
}

void FrmMulti::TakeText(int row, int, const std::string& text) {
  document_.SetRecordName(row, text);
}

}  // namespace spectrane
