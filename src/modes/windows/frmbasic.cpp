#include "modes/windows/frmbasic.h"

#include <QAction>
#include <QHeaderView>
#include <QPointer>
#include <QVBoxLayout>

#include "app/ground/busycursor.h"
#include "app/ground/commands.h"
#include "app/ground/words.h"
#include "modes/photometry/basicsettings.h"
#include "modes/windows/basictable.h"
#include "modes/windows/frmbasicconfig.h"
#include "modes/windows/notegrid.h"
#include "output/photometryoutput.h"

namespace spectrane {
namespace {

constexpr int kFileType = 11;
constexpr int kNoPicture = 969;
constexpr int kFileFilter = 1193;

const QString kGridLayout = QStringLiteral("FrmBasic/DataGrid");
}  // namespace

FrmBasic::FrmBasic(MainWindow& frame)
    : DocumentWindow(frame),
      test_(BenchOf(frame), document_),
      grid_(new NoteGrid(QStringLiteral("EditText"), this)),
      table_(new BasicTable(document_, frame.Link().Formats, this)),
      columns_(frame.Layout(), *grid_) {
  setObjectName(QStringLiteral("FrmBasic"));
  SetCaption(Words(kNewBasic).trimmed());
  LoadSettings();
  BuildGrid();
  BuildActions();
  test_.OnRow = [this](std::int32_t row) { ShowNewRow(row); };
  test_.StopWanted = [this] { return StopWanted(); };
  UpdateOffers();
}

FrmBasic::~FrmBasic() {
  // An editor that is still open would hand its text to what is no longer there.
  table_->disconnect(this);
  grid_->disconnect(this);
  grid_->CommitEditor();
  columns_.Keep();
}

void FrmBasic::LoadSettings() {
  BasicSettings settings;
  spectrane::LoadSettings<BasicSettings>(Frame().Settings(), kBasicSettingRows, settings);
  test_.WaveLength = settings.WaveLength;
}

void FrmBasic::BuildGrid() {
  grid_->setObjectName(QStringLiteral("DataGrid"));
  grid_->setAccessibleName(PlainWords(kNewBasic));
  grid_->setModel(table_);
  grid_->Hint = [this] { return NextStep(); };
  connect(grid_, &NoteGrid::RowSelectionChanged, this, &FrmBasic::UpdateOffers);
  connect(table_, &QAbstractItemModel::dataChanged, this, &FrmBasic::DocumentChanged);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(grid_);
  setFocusProxy(grid_);
  FitColumns();
  columns_.Restore(kGridLayout);
}

void FrmBasic::FitColumns() {
  // Room for the heading and for the widest figure of the column.
  constexpr const char* kWidest[] = {"00000", "1000.0", "-0.0000", "200.00", "000000"};
  grid_->ensurePolished();
  QHeaderView& header = *grid_->horizontalHeader();
  header.setMinimumSectionSize(grid_->fontMetrics().averageCharWidth() * 5);
  for (int column = 0; column < BasicTable::kNote; ++column) {
    const int figure = grid_->fontMetrics().horizontalAdvance(QLatin1String(kWidest[column])) +
                       grid_->fontMetrics().averageCharWidth() * 3;
    header.resizeSection(column, std::max(header.sectionSizeHint(column), figure));
  }
}

void FrmBasic::BuildActions() {
  copyAction_ = new QAction(QStringLiteral("&Copy"), this);
  copyAction_->setObjectName(QStringLiteral("GridCopy"));
  copyAction_->setShortcut(QKeySequence::Copy);
  copyAction_->setShortcutContext(Qt::WidgetShortcut);
  connect(copyAction_, &QAction::triggered, grid_, [this] { grid_->Copy(); });
  QSet<QChar> used = {u'C'};
  deleteAction_ = new QAction(WithAccessKey(Words(kDeleteRecord), used), this);
  deleteAction_->setObjectName(QStringLiteral("GridDelete"));
  connect(deleteAction_, &QAction::triggered, this, [this] { mmuDeleteReport(); });
  grid_->addActions({copyAction_, deleteAction_});
  grid_->setContextMenuPolicy(Qt::ActionsContextMenu);
}

void FrmBasic::SetWaveLength(double wavelength) {
  test_.WaveLength = wavelength;
  grid_->viewport()->update();
}

void FrmBasic::mmuStartTest() {
  if (RunsNow()) return;
  CommitEditors();
  {
    const Run run(*this);
    const BusyCursor busy(*this);
    UpdateOffers();
    test_.mmuStartTest();
  }
  DocumentChanged();
  UpdateOffers();
}

void FrmBasic::mmuOperationRezero() {
  if (RunsNow()) return;
  CommitEditors();
  {
    const Run run(*this);
    const BusyCursor busy(*this);
    UpdateOffers();
    test_.mmuOperationRezero();
  }
  grid_->viewport()->update();
  UpdateOffers();
}

void FrmBasic::ShowNewRow(int row) {
  table_->RowAdded();
  // Somebody who is typing a note goes on typing it; it belongs to its own row.
  if (!grid_->EditorIsOpen()) grid_->ShowRow(row);
  DocumentChanged();
}

void FrmBasic::mmuDeleteReport() {
  if (RunsNow()) return;
  CommitEditors();
  const int number = grid_->SelectedRow() + 1;
  const QPointer<FrmBasic> self(this);
  if (!AskToRemoveRecord(number, document_.RecordCount()) || !self) return;
  if (!document_.DeleteRecord(number)) return;
  table_->RowRemoved(number - 1);
  grid_->ShowRow(std::min(number, document_.RecordCount()) - 1);
  DocumentChanged();
  UpdateOffers();
}

void FrmBasic::mmuFileOutputBMP() {
  Frame().Boxes().Show(kNoPicture);
}

void FrmBasic::ShowConfigWindow() {
  if (RunsNow()) return;
  CommitEditors();
  const QPointer<FrmBasic> self(this);
  FrmBasicConfig dialog(Frame(), WaveLength());
  if (dialog.exec() == QDialog::Accepted && self) SetWaveLength(dialog.WaveLength());
}

int FrmBasic::CheckFileType() const {
  return kFileType;
}

QString FrmBasic::OpenFileName() const {
  return QString::fromStdString(document_.FileName());
}

bool FrmBasic::Offers(int command) const {
  switch (command) {
    case kClose:
      return true;
    case kStartTest:
    case kSetBlank:
    case kTestOption:
    case kOutputPicture:  // with the words that refuse it
    case kOutputWorkbook:
    case kOutputText:
    case kPrint:
    case kPrintPreview:
      return !RunsNow();
    case kSave:
    case kSaveAs:
      return !RunsNow() && document_.RecordCount() > 0;
    case kDeleteRecord:
      return !RunsNow() && grid_->SelectedRow() >= 0;
    default:
      return false;
  }
}

void FrmBasic::UpdateOffers() {
  copyAction_->setEnabled(document_.RecordCount() > 0);
  deleteAction_->setEnabled(Offers(kDeleteRecord));
  Frame().Display().UpdateCommands();
}

void FrmBasic::FormatsChanged() {
  table_->FormatsChanged();
}

void FrmBasic::CommitEditors() {
  grid_->CommitEditor();
}

FileKindWords FrmBasic::FileWords() const {
  return {kFileFilter, ".bas", kBasicSection};
}

bool FrmBasic::IsModified() const {
  // A document without rows has nothing to save; the file of one that was emptied keeps its rows.
  return document_.IsModified() && document_.RecordCount() > 0;
}

bool FrmBasic::SavesElsewhere() const {
  return document_.IsHalfLoaded();
}

std::optional<Report> FrmBasic::MakeReport() {
  return PhotometryReport(document_, Frame().Link().Formats, OutputHead());
}

std::optional<ExportSheet> FrmBasic::MakeSheet() {
  return PhotometrySheet(document_, Frame().Link().Formats, OutputHead());
}

bool FrmBasic::WriteDocument(const QString& path, QString& fault) {
  if (!document_.SaveFile(path.toStdString())) {
    fault = QString::fromStdString(FaultWords(document_.LastFault()));
    return false;
  }
  if (document_.TextWasLost()) {
    Frame().Display().SetRemark("Saved. Characters that the file has no place for stand there as \"?\".");
  }
  return true;
}

bool FrmBasic::ReadDocument(const QString& path, QString& fault) {
  const bool whole = document_.OpenFile(path.toStdString());
  if (!whole) fault = QString::fromStdString(FaultWords(document_.LastFault()));
  table_->RowsReplaced();
  grid_->ShowRow(0);
  UpdateOffers();
  return whole;
}

QString FrmBasic::NextStep() const {
  const bool connected = test_.IsConnected();
  if (!connected) {
    return QStringLiteral("No readings yet. Connect the instrument, insert the blank and choose %1.")
        .arg(PlainWords(kSetBlank));
  }
  if (!test_.BlankHolds())
    return QStringLiteral("Insert the blank and choose %1.").arg(PlainWords(kSetBlank));
  return QStringLiteral("Insert a sample and choose %1.").arg(PlainWords(kStartTest));
}

}  // namespace spectrane
