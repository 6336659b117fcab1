#include "modes/windows/frmqua.h"

#include <QAction>
#include <QHeaderView>
#include <QLabel>
#include <QPointer>
#include <QVBoxLayout>

#include <utility>

#include "app/ground/busycursor.h"
#include "app/ground/commands.h"
#include "app/ground/keptsplitter.h"
#include "app/ground/words.h"
#include "base/numbers.h"
#include "link/function.h"
#include "modes/quantitation/quantitationsettings.h"
#include "modes/windows/frmquaconfig.h"
#include "modes/windows/frmselectsampler.h"
#include "modes/windows/qualinepic.h"
#include "modes/windows/quatable.h"
#include "modes/windows/sheetgrid.h"
#include "output/quantitationoutput.h"

namespace spectrane {
namespace {

constexpr int kQuaType = 1;
constexpr int kNoQuaPicture = 1046;
constexpr int kQuaFilter = 1047;
constexpr int kStandardsTitle = 1058;
constexpr int kRecordsTitle = 1059;
constexpr int kCurveError = 1209;

/// Shares of the window [%]: most of its width for the standards, and the height of standards and curve.
constexpr int kMostForStandards = 60;
constexpr int kForCurve = 60;
/// Characters of a note that are in sight at least.
constexpr int kLeastNote = 14;

/// A grid with its heading above it.
QWidget* Titled(QWidget* grid, const QString& title, QWidget* parent) {
  auto* const box = new QWidget(parent);
  auto* const layout = new QVBoxLayout(box);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  auto* const label = new QLabel(title, box);
  label->setContentsMargins(6, 4, 6, 0);
  layout->addWidget(label);
  layout->addWidget(grid, 1);
  return box;
}

}  // namespace

FrmQua::FrmQua(MainWindow& frame)
    : RecordWindow(frame, kNoQuaPicture),
      test_(BenchOf(frame), document_),
      standards_(new SheetGrid(QStringLiteral("QuaConfigText"), this)),
      standardTable_(new StandardTable(document_, frame.Link().Formats, this)),
      records_(new SheetGrid(QStringLiteral("RecordText"), this)),
      recordTable_(new RecordTable(document_, frame.Link().Formats, this)),
      picture_(new QuaLinePic(document_, frame.Link().Formats, this)),
      standardColumns_(frame.Layout(), *standards_),
      recordColumns_(frame.Layout(), *records_) {
  setObjectName(QStringLiteral("FrmQua"));
  SetCaption(Words(kNewQua).trimmed());
  QuantitationSettings settings;
  LoadSettings<QuantitationSettings>(frame.Settings(), kQuantitationSettingRows, settings);
  document_.Begin(settings);
  BuildStandards();
  BuildRecords();
  BuildLayout();
  BuildActions();
  ConnectTest();
  ConnectPicture();
  FitColumns();
  UpdateOffers();
}

FrmQua::~FrmQua() {
  // An editor that is still open would hand its text to what is no longer there.
  for (SheetGrid* const grid : {standards_, records_}) {
    grid->model()->disconnect(this);
    grid->disconnect(this);
    grid->CommitEditor();
  }
  standardColumns_.Keep();
  recordColumns_.Keep();
  columns_->Keep();
  rows_->Keep();
  // A window that is still on show lays its grids out once more while it goes.
  for (SheetGrid* const grid : {standards_, records_}) grid->setModel(nullptr);
}

void FrmQua::TellFitLater(FitOutcome outcome) {
  ShowCurve();
  // Cells that are filled in one go have one outcome.
  const bool awaited = fitToTell_.has_value();
  fitToTell_ = outcome;
  if (awaited) return;
  // The box must not come up while the editor is still closing. A run that closed it fits anew, or refuses to
  // start without a curve: it tells by itself.
  QMetaObject::invokeMethod(
      this,
      [this] {
        const FitOutcome last = *std::exchange(fitToTell_, {});
        if (!RunsNow()) TellFit(last);
      },
      Qt::QueuedConnection);
}

void FrmQua::BuildStandards() {
  standards_->setObjectName(QStringLiteral("QuaConfigGrid"));
  standards_->setAccessibleName(PlainWords(kStandardsTitle));
  standards_->setModel(standardTable_);
  standards_->Hint = [this] { return StandardsHint(); };
  standardTable_->CurveInUse = [this] { return RunsNow(); };
  connect(standardTable_, &StandardTable::Fitted, this, &FrmQua::TellFitLater);
  connect(standards_, &SheetGrid::RowSelectionChanged, this,
          [this] { picture_->ShowSelected(standards_->SelectedRow()); });
  connect(standards_, &QTableView::clicked, this, [this](const QModelIndex& cell) {
    const bool abs =
        cell.column() >= standardTable_->FirstAbsColumn() && cell.column() < standardTable_->ConcColumn();
    if (!abs) return;
    const int row = cell.row();
    QMetaObject::invokeMethod(
        this, [this, row] { MeasureStandard(row); }, Qt::QueuedConnection);
  });
}

void FrmQua::BuildRecords() {
  records_->setObjectName(QStringLiteral("RecordGrid"));
  records_->setAccessibleName(PlainWords(kRecordsTitle));
  records_->setModel(recordTable_);
  records_->Hint = [this] { return NextStep(); };
  for (QuaTable* const table :
       {static_cast<QuaTable*>(standardTable_), static_cast<QuaTable*>(recordTable_)}) {
    connect(table, &QAbstractItemModel::dataChanged, this, &FrmQua::DocumentChanged);
    connect(table, &QuaTable::TextRefused, this, [this](const QString& text) {
      Frame().Display().SetRemark((u'"' + text + QStringLiteral("\" is no number.")).toStdString());
    });
  }
}

void FrmQua::BuildLayout() {
  LayoutStore& store = Frame().Layout();
  columns_ = new KeptSplitter(
      Qt::Horizontal, store, QStringLiteral("FrmQua/QuaColumns"),
      [this](int whole) { return std::min(StandardsWidth(), whole * kMostForStandards / 100); }, this);
  columns_->addWidget(Titled(standards_, PlainWords(kStandardsTitle), columns_));
  columns_->addWidget(picture_);
  rows_ = new KeptSplitter(
      Qt::Vertical, store, QStringLiteral("FrmQua/QuaRows"),
      [](int whole) { return whole * kForCurve / 100; }, this);
  rows_->addWidget(columns_);
  rows_->addWidget(Titled(records_, PlainWords(kRecordsTitle), rows_));
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(rows_);
  setFocusProxy(standards_);
  picture_->setObjectName(QStringLiteral("QuaLinePic"));
}

void FrmQua::BuildActions() {
  AddCopyAction(*standards_);
  Keeps(document_, *records_);
  auto* const measure = new QAction(QStringLiteral("&Measure"), this);
  measure->setObjectName(QStringLiteral("MeasureStandard"));
  measure->setShortcut(Qt::CTRL | Qt::Key_M);
  measure->setShortcutContext(Qt::WidgetShortcut);
  measure->setAutoRepeat(false);
  connect(measure, &QAction::triggered, this, [this] { MeasureStandard(standards_->SelectedRow()); });
  auto* const paste = new QAction(QStringLiteral("&Paste"), this);
  paste->setObjectName(QStringLiteral("GridPaste"));
  paste->setShortcut(QKeySequence::Paste);
  paste->setShortcutContext(Qt::WidgetShortcut);
  connect(paste, &QAction::triggered, standards_, [this] { standards_->Paste(); });
  standards_->addActions({paste, measure});
}

void FrmQua::ConnectTest() {
  test_.StopWanted = [this] { return StopWanted(); };
  test_.SelectSampler = [this] { return SelectSampler(); };
  test_.OnSampleBegun = [this](const std::string& name) {
    recordTable_->Begin(QString::fromStdString(name));
    if (!records_->EditorIsOpen()) records_->scrollToBottom();
  };
  test_.OnReading = [this](std::size_t wavelength, double abs) {
    recordTable_->ShowReading(wavelength, abs);
  };
  test_.OnSampleDropped = [this] { recordTable_->Drop(); };
  test_.OnRecord = [this](std::int32_t row) {
    recordTable_->Finish();
    // Somebody who is typing goes on typing in the row that it belongs to.
    if (!records_->EditorIsOpen()) records_->ShowCell(row, recordTable_->NameColumn());
    DocumentGrown(row);
  };
}

void FrmQua::ConnectPicture() {
  connect(picture_, &QuaLinePic::MarkChosen, this,
          [this](std::int32_t row) { standards_->ShowCell(row, standardTable_->ConcColumn()); });
  connect(picture_, &QuaLinePic::PointedAt, this, [this](double absorbance, double concentration) {
    if (RunsNow() || Frame().Link().Live.LinkLost()) return;
    Frame().Display().SetRemark(Format(absorbance, Frame().Link().Formats.AbsFormat) + " Abs   " +
                                FormatValue(concentration) + " " + document_.Option().ConcUnit);
  });
  connect(picture_, &QuaLinePic::PointedAway, this, [this] {
    if (!RunsNow() && !Frame().Link().Live.LinkLost()) Frame().Display().SetRemark({});
  });
}

void FrmQua::FitColumns() {
  const auto fit = [](SheetGrid& grid, KeptColumns& kept) {
    const auto& table = *static_cast<QuaTable*>(grid.model());
    grid.ensurePolished();
    QHeaderView& header = *grid.horizontalHeader();
    const int character = grid.fontMetrics().averageCharWidth();
    header.setMinimumSectionSize(character * 5);
    // The note is stretched, but never below the width it has before.
    header.setStretchLastSection(false);
    header.resizeSection(table.NoteColumn(), character * kLeastNote);
    for (int column = 0; column < table.NoteColumn(); ++column) {
      const int least = column == table.NumberColumn() ? 5 : column == table.NameColumn() ? 16 : 11;
      header.resizeSection(column, std::max(header.sectionSizeHint(column), character * least));
    }
    // With two wavelengths there are other columns.
    kept.Restore(QStringLiteral("FrmQua/%1%2").arg(grid.objectName()).arg(table.AbsColumns()));
  };
  fit(*standards_, standardColumns_);
  fit(*records_, recordColumns_);
  columns_->Arrange();
}

/// Room for the standards up to their concentrations and the begin of a note.
int FrmQua::StandardsWidth() const {
  const int note = standards_->fontMetrics().averageCharWidth() * kLeastNote;
  return standards_->horizontalHeader()->sectionPosition(standardTable_->NoteColumn()) + note +
         2 * standards_->frameWidth();
}

void FrmQua::ShowEverything() {
  standardColumns_.Keep();
  recordColumns_.Keep();
  standardTable_->Replaced();
  recordTable_->Replaced();
  FitColumns();
  ShowCurve();
}

void FrmQua::ShowCurve() {
  standardTable_->RowsChanged();
  recordTable_->RowsChanged();
  picture_->Redraw();
  records_->viewport()->update();
  UpdateOffers();
}

void FrmQua::RunOf(const std::function<void()>& work) {
  if (RunsNow()) return;
  CommitEditors();
  {
    const Run run(*this);
    const BusyCursor busy(*this);
    UpdateOffers();
    work();
  }
  ShowCurve();
  DocumentChanged();
}

void FrmQua::mmuStartTest() {
  RunOf([this] { test_.mmuStartTest(); });
}

void FrmQua::mmuOperationRezero() {
  RunOf([this] { test_.mmuOperationRezero(); });
}

void FrmQua::MeasureStandard(int row) {
  if (row < 0 || row >= document_.StandardRows() || !document_.FitsStandards()) return;
  RunOf([this, row] { test_.MeasureStandard(row); });
}

bool FrmQua::SelectSampler() {
  FrmSelectSampler dialog(Frame());
  return dialog.exec() == QDialog::Accepted;
}

void FrmQua::TellFit(FitOutcome outcome) {
  if (outcome == FitOutcome::Rejected) Frame().Boxes().ShowError(kCurveError);
}

void FrmQua::ShowConfigWindow() {
  if (RunsNow()) return;
  CommitEditors();
  const QPointer<FrmQua> self(this);
  FrmQuaConfig dialog(Frame(), document_.Settings(), [this](const QuantitationSettings& settings) {
    return document_.RecordCount() > 0 && document_.WouldChange(settings);
  });
  if (dialog.exec() != QDialog::Accepted || !self) return;
  const bool hadFile = !document_.FileName().empty();
  const FitOutcome outcome = document_.Configure(dialog.Settings());
  if (hadFile && document_.FileName().empty()) SetCaption(Frame().NextCaption(kNewQua));
  ShowEverything();
  DocumentChanged();
  TellFit(outcome);
}

int FrmQua::CheckFileType() const {
  return kQuaType;
}

bool FrmQua::Offers(int command) const {
  switch (command) {
    case kStartTest:
    case kSetBlank:
    case kCopyPicture:
      return !RunsNow();
    default:
      return RecordWindow::Offers(command);
  }
}

void FrmQua::FormatsChanged() {
  standardTable_->FormatsChanged();
  recordTable_->FormatsChanged();
  picture_->Redraw();
}

void FrmQua::CommitEditors() {
  standards_->CommitEditor();
  records_->CommitEditor();
}

FileKindWords FrmQua::FileWords() const {
  return {kQuaFilter, ".qua", kQuantitationSection};
}

bool FrmQua::IsModified() const {
  // Options alone are in config.ini already.
  return document_.IsModified() && document_.HoldsWork();
}

std::optional<Report> FrmQua::MakeReport() {
  return QuantitationReport(document_, Frame().Link().Formats, OutputHead());
}

std::optional<ExportSheet> FrmQua::MakeSheet() {
  return QuantitationSheet(document_, Frame().Link().Formats, OutputHead());
}

QImage FrmQua::MakePicture() {
  return picture_->grab().toImage();
}

bool FrmQua::HasWork() const {
  return document_.IsModified() || !document_.FileName().empty();
}

void FrmQua::RecordRemoved(int row) {
  recordTable_->Replaced();
  records_->ShowCell(std::min(row, document_.RecordCount() - 1), recordTable_->NameColumn());
}

void FrmQua::RecordsReplaced() {
  test_.ForgetBlank();
  ShowEverything();
  records_->ShowCell(0, recordTable_->NameColumn());
}

void FrmQua::CopyPicture() {
  CopyToClipboard(MakePicture());
}

QString FrmQua::StandardsHint() const {
  return QStringLiteral("The coefficients are typed in: no standards are measured. %1 changes that.")
      .arg(PlainWords(kTestOption));
}

QString FrmQua::NextStep() const {
  if (!test_.IsConnected()) {
    return QStringLiteral("No samples yet. Connect the instrument, insert the blank and choose %1.")
        .arg(PlainWords(kSetBlank));
  }
  if (!test_.BlankHolds())
    return QStringLiteral("Insert the blank and choose %1.").arg(PlainWords(kSetBlank));
  if (!document_.CurveHolds()) {
    return QStringLiteral(
        "Type the concentration of each standard, insert it and click its absorbance to measure it.");
  }
  return QStringLiteral("Insert a sample and choose %1.").arg(PlainWords(kStartTest));
}

}  // namespace spectrane
