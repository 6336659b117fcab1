#include "tools/windows/frmbaseline.h"

#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <vector>

#include "app/ground/dialogparts.h"
#include "app/ground/editgrid.h"
#include "app/ground/filequestions.h"
#include "app/ground/words.h"
#include "base/dateserial.h"
#include "base/filereplacement.h"
#include "base/numbers.h"
#include "base/utf8path.h"
#include "tools/windows/baselinetable.h"

namespace spectrane {
namespace {

constexpr int kBaselineTitle = 911;
constexpr int kBaselineGrid = 912;
constexpr int kRangeCaption = 913;
constexpr int kOutputCaption = 914;
constexpr int kLoadCaption = 915;
constexpr int kSaveCaption = 916;
constexpr int kStartCaption = 917;
constexpr int kStopCaption = 918;
constexpr int kCloseCaption = 919;
constexpr int kBaselineFilter = 920;
constexpr int kTextFilter = 921;
constexpr int kSpreadsheetFilter = 935;
constexpr int kBaselineExists = 1195;
constexpr int kStopRunQuestion = 1211;
constexpr int kBaselineSaveError = 1213;
constexpr int kBaselineOpenError = 1214;
constexpr const char* kBaselineEnding = ".bsl";
constexpr const char* kBaselineSection = "Base Line";
constexpr const char* kBaselinePathKey = "File Path";
constexpr const char* kLowestFormat = "0.0nm-";
constexpr const char* kHighestFormat = "0.0nm";
constexpr int kGridRows = 18;

/// A form in which the table can be written out, chosen by the ending of the name.
struct OutputForm {
  const char* Ending;
  /// Text number of its dialog filter.
  int FilterTextId;
  std::string (*Bytes)(const ExportSheet& sheet);
};

// The first is the form of a name without any of the endings.
constexpr OutputForm kOutputForms[] = {
    {".txt", kTextFilter, [](const ExportSheet& sheet) { return ExportText(sheet); }},
    {".xls", kSpreadsheetFilter, [](const ExportSheet& sheet) { return ExportWorkbook(sheet, {})->Bytes(); }},
};

const OutputForm& FormOf(const QString& path) {
  for (const OutputForm& form : kOutputForms) {
    if (path.endsWith(QLatin1String(form.Ending), Qt::CaseInsensitive)) return form;
  }
  return kOutputForms[0];
}

QString OutputFilter() {
  QStringList filters;
  for (const OutputForm& form : kOutputForms) filters.append(Words(form.FilterTextId));
  return filters.join(u'|');
}

QString RecordsText(const SystemBaseline& baseline) {
  if (!baseline.BaselinePresent()) return {};
  QString text = QStringLiteral("%1: %2 records")
                     .arg(QString::fromStdString(baseline.BaselineFileName()))
                     .arg(baseline.Count());
  if (baseline.LeftOut() > 0) text += QStringLiteral(", %1 more have no place").arg(baseline.LeftOut());
  return text;
}

}  // namespace

FrmBaseLine::FrmBaseLine(MainWindow& frame, SystemBaseline& baseline)
    : ToolDialog(frame, Live::Stands),
      baseline_(baseline),
      grid_(new EditGrid({}, this)),
      table_(new BaselineTable(baseline, Rows(), this)) {
  BuildControls();
  UpdateControls();
}

std::int32_t FrmBaseLine::Rows() {
  const InstrumentState& state = Link().State;
  return SystemBaseline::RecordsOfRange(state.WavelengthMin, state.WavelengthMax);
}

void FrmBaseLine::BuildControls() {
  DialogParts parts(*this, "FrmBaseLine", Caption(kBaselineTitle));
  const InstrumentState& state = Link().State;
  auto* const range = new QLabel(QString::fromStdString(Format(state.WavelengthMin, kLowestFormat) +
                                                        Format(state.WavelengthMax, kHighestFormat)),
                                 this);
  range->setObjectName(QStringLiteral("BaseLineInforLabel"));
  auto* const head = new QHBoxLayout;
  head->addWidget(new QLabel(Words(kRangeCaption), this));
  head->addWidget(range);
  head->addStretch();

  grid_->setObjectName(QStringLiteral("BaseLineDataGrid"));
  grid_->setAccessibleName(PlainWords(kBaselineGrid));
  grid_->setModel(table_);
  grid_->Hint = [] { return QStringLiteral("No baseline yet. Choose %1.").arg(PlainWords(kLoadCaption)); };
  grid_->ensurePolished();
  const int column = grid_->fontMetrics().averageCharWidth() * 13;
  for (int i = 0; i < table_->columnCount(); ++i) grid_->setColumnWidth(i, column);
  grid_->setMinimumWidth(column * (table_->columnCount() + 1));
  grid_->setMinimumHeight(grid_->verticalHeader()->defaultSectionSize() * kGridRows / 2);

  auto* const middle = new QHBoxLayout;
  middle->addWidget(grid_, 1);
  middle->addLayout(MakeButtons(parts));
  auto* const all = new QVBoxLayout(this);
  all->addLayout(head);
  all->addLayout(middle, 1);
  all->addWidget(MakeStateLine({}));
  resize(sizeHint().expandedTo(QSize(0, grid_->verticalHeader()->defaultSectionSize() * (kGridRows + 5))));
  Button("LoadCmd")->setFocus();
}

QLayout* FrmBaseLine::MakeButtons(DialogParts& parts) {
  struct Control {
    const char* Name;
    int TextId;
    void (FrmBaseLine::*Command)();
  };
  constexpr Control kControls[] = {
      {"StartCmd", kStartCaption, nullptr},
      {"StopCmd", kStopCaption, &FrmBaseLine::StopTest},
      {"LoadCmd", kLoadCaption, &FrmBaseLine::LoadFile},
      {"SaveCmd", kSaveCaption, &FrmBaseLine::SaveFile},
      {"OutputCmd", kOutputCaption, &FrmBaseLine::Output},
      {"CloseCmd", kCloseCaption, nullptr},
  };
  auto* const buttons = new QVBoxLayout;
  for (const Control& control : kControls) {
    auto* const button = new QPushButton(this);
    parts.Finish(*button, control.Name, Caption(control.TextId));
    if (control.Command != nullptr)
      connect(button, &QPushButton::clicked, this, [this, command = control.Command] { (this->*command)(); });
    buttons->addWidget(button);
  }
  buttons->addStretch();
  connect(Button("CloseCmd"), &QPushButton::clicked, this, &QDialog::reject);
  Button("StartCmd")->setToolTip(QStringLiteral("A baseline comes from a file; it is not measured here."));
  Button("LoadCmd")->setDefault(true);
  return buttons;
}

QPushButton* FrmBaseLine::Button(const char* name) const {
  return findChild<QPushButton*>(QLatin1String(name));
}

void FrmBaseLine::UpdateControls() {
  Button("StartCmd")->setEnabled(false);
  Button("StopCmd")->setEnabled(testRunning_);
  Button("LoadCmd")->setEnabled(!testRunning_);
  for (const char* name : {"SaveCmd", "OutputCmd"})
    Button(name)->setEnabled(!testRunning_ && baseline_.BaselinePresent());
  Tell(RecordsText(baseline_));
}

void FrmBaseLine::SetTestRunning(bool running) {
  testRunning_ = running;
  UpdateControls();
}

void FrmBaseLine::StopTest() {
  if (testRunning_ && Frame().Boxes().AskYesNo(Words(kStopRunQuestion), kStopRunQuestion) == Answer::Yes)
    SetTestRunning(false);
}

void FrmBaseLine::done(int result) {
  if (!testRunning_) ToolDialog::done(result);
}

QString FrmBaseLine::StoredPath() {
  return QString::fromStdString(Frame().Window().BaselinePath);
}

void FrmBaseLine::StorePath(const QString& path) {
  WindowSettings& window = Frame().Window();
  window.BaselinePath = path.toStdString();
  if (!StoreWindowSetting(Frame().Settings(), kBaselineSection, kBaselinePathKey, window))
    RemarkOnSettings(Frame());
}

void FrmBaseLine::LoadFile() {
  if (baseline_.BaselinePresent() &&
      Frame().Boxes().AskYesNo(Words(kBaselineExists), kBaselineExists) != Answer::Yes)
    return;
  const QString path = Frame().Boxes().OpenFileName(Words(kBaselineFilter), StoredPath());
  if (path.isEmpty()) return;
  StorePath(path);
  mmuOpenFile(path);
}

bool FrmBaseLine::mmuOpenFile(const QString& path) {
  FileFault fault;
  const bool taken = baseline_.Load(path.toStdString(), fault);
  table_->Refill();
  UpdateControls();
  if (fault) {
    Frame().Boxes().ShowWords(Words(kBaselineOpenError),
                              path + u'\n' + QString::fromStdString(FaultWords(fault)), kBaselineOpenError);
  }
  if (taken) Frame().NoteFile(path);
  return taken;
}

void FrmBaseLine::SaveFile() {
  if (!baseline_.BaselinePresent()) return;
  const QString chosen = Frame().Boxes().SaveFileName(Words(kBaselineFilter), StoredPath());
  if (chosen.isEmpty()) return;
  const QString path = WithEnding(chosen, kBaselineEnding);
  if (!MayWriteTo(Frame(), path, nullptr)) return;
  const InstrumentState& state = Link().State;
  const FileFault fault = baseline_.Save(path.toStdString(), state.WavelengthMin, state.WavelengthMax, Now());
  if (fault) {
    Frame().Boxes().ShowWords(Words(kBaselineSaveError),
                              path + u'\n' + QString::fromStdString(FaultWords(fault)), kBaselineSaveError);
    return;
  }
  StorePath(path);
  Frame().NoteFile(path);
  const std::int32_t blank = Rows() - baseline_.Count();
  Tell(blank <= 0 ? QStringLiteral("Saved: %1 records.").arg(Rows())
                  : QStringLiteral("Saved: %1 records, the last %2 without figures.").arg(Rows()).arg(blank));
}

void FrmBaseLine::Output() {
  if (!baseline_.BaselinePresent()) return;
  const QString folder = QFileInfo(StoredPath()).absolutePath();
  const QString chosen = Frame().Boxes().SaveFileName(OutputFilter(), folder);
  if (chosen.isEmpty()) return;
  const OutputForm& form = FormOf(chosen);
  const QString path = WithEnding(chosen, form.Ending);
  if (!MayWriteTo(Frame(), path, nullptr)) return;
  std::string reason;
  const ExportSheet sheet{.Lines = {}, .Tables = {BaselineDataTable(baseline_, Rows())}};
  if (!ReplaceFileContent(path.toStdString(), form.Bytes(sheet), &reason)) {
    Frame().Boxes().ShowWords(Words(kBaselineSaveError), path + u'\n' + QString::fromStdString(reason),
                              kBaselineSaveError);
    return;
  }
  Tell(QStringLiteral("Written: %1").arg(QFileInfo(path).fileName()));
}

}  // namespace spectrane
