#include "modes/windows/samplewindow.h"

#include <QHeaderView>
#include <QVBoxLayout>

#include <algorithm>

#include "app/ground/commands.h"
#include "app/ground/words.h"
#include "modes/windows/sampletable.h"
#include "modes/windows/sheetgrid.h"

namespace spectrane {
namespace {

constexpr int kSampleNameColumn = 1;

/// Characters that a column has room for at least.
constexpr int kNumberCharacters = 5;
constexpr int kTextCharacters = 18;
constexpr int kFigureCharacters = 11;
/// Texts that are longer are cut in the grid.
constexpr int kMostTextCharacters = 40;

}  // namespace

SampleWindow::SampleWindow(MainWindow& frame, const char* name, int captionText, int noPictureText)
    : RecordWindow(frame, noPictureText),
      captionText_(captionText),
      grid_(new SheetGrid(QStringLiteral("EditText"), this)),
      columns_(frame.Layout(), *grid_) {
  setObjectName(QLatin1String(name));
  SetCaption(Words(captionText).trimmed());
}

void SampleWindow::BuildOn(RecordDocument& document) {
  table_ = new SampleTable(
      [this] { return MakeTable(); },
      [this](int row, int column, const std::string& text) { TakeText(row, column, text); }, this);
  grid_->setObjectName(QStringLiteral("DataGrid"));
  grid_->setAccessibleName(PlainWords(captionText_));
  grid_->setModel(table_);
  grid_->Hint = [] {
    return QStringLiteral("No samples. They come from files: choose %1.").arg(PlainWords(kOpen));
  };
  connect(table_, &QAbstractItemModel::dataChanged, this, &SampleWindow::DocumentChanged);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(grid_);
  setFocusProxy(grid_);
  FitColumns();
  Keeps(document, *grid_);
  UpdateOffers();
}

void SampleWindow::LetGo() {
  table_->disconnect(this);
  grid_->disconnect(this);
  grid_->CommitEditor();
  columns_.Keep();
  // A window that is still on show lays its grid out once more while it goes.
  grid_->setModel(nullptr);
}

void SampleWindow::FitColumns() {
  const int count = table_->columnCount();
  const auto holdsTexts = [this](int column) {
    return table_->Table().Columns[static_cast<std::size_t>(column)].HoldsTexts();
  };
  grid_->ensurePolished();
  QHeaderView& header = *grid_->horizontalHeader();
  const int character = grid_->fontMetrics().averageCharWidth();
  header.setMinimumSectionSize(character * kNumberCharacters);
  header.setStretchLastSection(false);
  for (int column = 0; column < count; ++column) {
    const int least = column == 0          ? kNumberCharacters
                      : holdsTexts(column) ? kTextCharacters
                                           : kFigureCharacters;
    int wanted = header.sectionSizeHint(column);
    if (holdsTexts(column)) {
      const int texts = static_cast<const QAbstractItemView*>(grid_)->sizeHintForColumn(column);
      wanted = std::max(wanted, std::min(texts, character * kMostTextCharacters));
    }
    header.resizeSection(column, std::max(wanted, character * least));
  }
  // With other wavelengths there are other columns.
  columns_.Restore(objectName() + QStringLiteral("/DataGrid%1").arg(count));
  // Notes take what is left of the width; figures stay together.
  header.setStretchLastSection(holdsTexts(count - 1));
}

void SampleWindow::ShowRow(int row) {
  grid_->ShowCell(row, kSampleNameColumn);
}

void SampleWindow::ShowEverything() {
  columns_.Keep();
  table_->Replaced();
  FitColumns();
  UpdateOffers();
}

void SampleWindow::ShowSettings(bool hadFile) {
  if (hadFile && OpenFileName().isEmpty()) SetCaption(Frame().NextCaption(captionText_));
  const int row = std::max(grid_->SelectedRow(), 0);
  ShowEverything();
  ShowRow(row);
  DocumentChanged();
}

void SampleWindow::RecordRemoved(int row) {
  table_->RowRemoved(row);
  ShowRow(std::min(row, table_->rowCount() - 1));
}

void SampleWindow::RecordsReplaced() {
  ShowEverything();
  ShowRow(0);
}

void SampleWindow::FormatsChanged() {
  table_->FormatsChanged();
}

void SampleWindow::CommitEditors() {
  grid_->CommitEditor();
}

QString SampleWindow::WhyNot(int command) const {
  if (command != kStartTest && command != kSetBlank) return {};
  return QStringLiteral("This window measures nothing: its rows come from files.");
}

}  // namespace spectrane
