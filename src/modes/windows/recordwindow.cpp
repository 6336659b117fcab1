#include "modes/windows/recordwindow.h"

#include <QAction>
#include <QPointer>

#include "app/ground/commands.h"
#include "app/ground/editgrid.h"
#include "app/ground/words.h"

namespace spectrane {

RecordWindow::RecordWindow(MainWindow& frame, int noPictureText)
    : DocumentWindow(frame), noPictureText_(noPictureText) {}

void RecordWindow::Keeps(RecordDocument& document, EditGrid& records) {
  document_ = &document;
  records_ = &records;
  copyAction_ = AddCopyAction(records);
  QSet<QChar> used = {u'C'};
  deleteAction_ = new QAction(WithAccessKey(Words(kDeleteRecord), used), this);
  deleteAction_->setObjectName(QStringLiteral("GridDelete"));
  connect(deleteAction_, &QAction::triggered, this, [this] { mmuDeleteReport(); });
  records.addAction(deleteAction_);
  connect(records_, &EditGrid::RowSelectionChanged, this, [this] { UpdateOffers(); });
}

QAction* RecordWindow::AddCopyAction(EditGrid& grid) {
  auto* const action = new QAction(QStringLiteral("&Copy"), this);
  action->setObjectName(QStringLiteral("GridCopy"));
  action->setShortcut(QKeySequence::Copy);
  action->setShortcutContext(Qt::WidgetShortcut);
  connect(action, &QAction::triggered, &grid, [&grid] { grid.Copy(); });
  grid.addAction(action);
  grid.setContextMenuPolicy(Qt::ActionsContextMenu);
  return action;
}

void RecordWindow::UpdateOffers() {
  copyAction_->setEnabled(document_->RecordCount() > 0);
  deleteAction_->setEnabled(Offers(kDeleteRecord));
  Frame().Display().UpdateCommands();
}

void RecordWindow::mmuDeleteReport() {
  if (RunsNow()) return;
  CommitEditors();
  const int number = records_->SelectedRow() + 1;
  const QPointer<RecordWindow> self(this);
  if (!AskToRemoveRecord(number, document_->RecordCount()) || !self) return;
  if (!document_->DeleteRecord(number)) return;
  RecordRemoved(number - 1);
  DocumentChanged();
  UpdateOffers();
}

void RecordWindow::mmuFileOutputBMP() {
  Frame().Boxes().Show(noPictureText_);
}

QString RecordWindow::OpenFileName() const {
  return QString::fromStdString(document_->FileName());
}

bool RecordWindow::Offers(int command) const {
  switch (command) {
    case kTestOption:
      return !RunsNow();
    case kDeleteRecord:
      return !RunsNow() && records_->SelectedRow() >= 0;
    default:
      return DocumentWindow::Offers(command);
  }
}

bool RecordWindow::HasWork() const {
  return document_->RecordCount() > 0;
}

bool RecordWindow::IsModified() const {
  // A document without rows has nothing to save; the file of one that was emptied keeps its rows.
  return document_->IsModified() && document_->RecordCount() > 0;
}

bool RecordWindow::SavesElsewhere() const {
  return document_->IsHalfLoaded();
}

bool RecordWindow::WriteDocument(const QString& path, QString& fault) {
  if (!document_->SaveFile(path.toStdString())) {
    fault = QString::fromStdString(FaultWords(document_->LastFault()));
    return false;
  }
  if (document_->TextWasLost()) {
    Frame().Display().SetRemark("Saved. Characters that the file has no place for stand there as \"?\".");
  }
  return true;
}

bool RecordWindow::ReadDocument(const QString& path, QString& fault) {
  const bool whole = document_->OpenFile(path.toStdString());
  if (!whole) fault = QString::fromStdString(FaultWords(document_->LastFault()));
  RecordsReplaced();
  UpdateOffers();
  return whole;
}

bool RecordWindow::TakeImage(const Journal& journal) {
  if (!document_->TakeJournal(journal)) return false;
  RecordsReplaced();
  UpdateOffers();
  return true;
}

}  // namespace spectrane
