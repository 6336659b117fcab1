// What a document window keeps for the start after a crash.

#include <exception>
#include <utility>

#include "app/ground/documentwindow.h"

namespace spectrane {

void DocumentWindow::KeepJournal(std::int32_t first) {
  if (closed_) return;
  if (!NeedsJournal()) {
    if (journal_) journal_->Drop();
    return;
  }
  const std::string folder = frame_.JournalFolder();
  // Whatever goes wrong here, the work goes on.
  try {
    std::optional<JournalImage> image = folder.empty() ? std::nullopt : MakeImage();
    if (!image) return;
    image->Head.Caption = caption_.toStdString();
    image->Head.Path = OpenFileName().toStdString();
    image->Head.FileSize = image->Head.Path.empty() ? -1 : file_.Size;
    image->Head.FileTime = image->Head.Path.empty() ? 0 : file_.ModifiedMs();
    if (!journal_) journal_ = std::make_unique<JournalKeeper>(folder);
    if (!journal_->Keep(*image, first, runs_ == 0)) frame_.JournalFailed(journal_->LastFault());
  } catch (const std::exception& fault) {
    frame_.JournalFailed(fault.what());
  }
}

bool DocumentWindow::BringBack(LeftJournal left) {
  const JournalHead& head = left.Content.Head;
  SetCaption(QString::fromStdString(head.Caption));
  // As it was then: Save asks when somebody has written the file since.
  file_ = FileState::Rough(head.FileSize, head.FileTime);
  // Before the document comes, which is a change like any other: it is not to begin another journal.
  journal_ = std::make_unique<JournalKeeper>(std::move(left.File), left.Content);
  if (!TakeImage(left.Content)) {
    journal_.reset();
    return false;
  }
  DocumentChanged();
  return true;
}

void DocumentWindow::EndRun() {
  stopWanted_ = true;
  if (HoldsTest()) StopTest();
}

}  // namespace spectrane
