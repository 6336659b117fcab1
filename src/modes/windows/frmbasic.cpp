#include "modes/windows/frmbasic.h"

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
    : RecordWindow(frame, kNoPicture),
      test_(BenchOf(frame), document_),
      grid_(new NoteGrid(QStringLiteral("EditText"), this)),
      table_(new BasicTable(document_, frame.Link().Formats, this)),
      columns_(frame.Layout(), *grid_) {
  setObjectName(QStringLiteral("FrmBasic"));
  SetCaption(Words(kNewBasic).trimmed());
  LoadSettings();
  BuildGrid();
  Keeps(document_, *grid_);
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
  grid_->setModel(nullptr);
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
  DocumentGrown(row);
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

bool FrmBasic::Offers(int command) const {
  if (command == kStartTest || command == kSetBlank) return !RunsNow();
  return RecordWindow::Offers(command);
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

std::optional<Report> FrmBasic::MakeReport() {
  return PhotometryReport(document_, Frame().Link().Formats, OutputHead());
}

std::optional<ExportSheet> FrmBasic::MakeSheet() {
  return PhotometrySheet(document_, Frame().Link().Formats, OutputHead());
}

void FrmBasic::RecordRemoved(int row) {
  table_->RowRemoved(row);
  grid_->ShowRow(std::min(row, document_.RecordCount() - 1));
}

void FrmBasic::RecordsReplaced() {
  table_->RowsReplaced();
  grid_->ShowRow(0);
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
