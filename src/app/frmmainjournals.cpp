// What is brought back after a crash, and what is done when the system ends the program.

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <utility>

#include "app/frmmain.h"
#include "app/ground/documentwindow.h"

namespace spectrane {
namespace {

/// So many documents are named in the question.
constexpr std::size_t kMostNamed = 8;

bool HasNewerFile(const JournalHead& head) {
  const QFileInfo file(QString::fromStdString(head.Path));
  return !head.Path.empty() && file.exists() &&
         (file.size() != head.FileSize || file.lastModified().toMSecsSinceEpoch() != head.FileTime);
}

/// A line about a document: its name and what it holds.
QString LineOf(const Journal& journal) {
  const JournalHead& head = journal.Head;
  const QString name = head.Path.empty() ? QString::fromStdString(head.Caption).simplified()
                                         : QDir::toNativeSeparators(QString::fromStdString(head.Path));
  const std::size_t count = journal.RecordCount();
  QString line = name + QStringLiteral(", %1 %2").arg(count).arg(count == 1 ? QStringLiteral("record")
                                                                            : QStringLiteral("records"));
  if (HasNewerFile(head)) line += QStringLiteral(" (the file has changed since)");
  return line;
}

QString LeftWorkQuestion(const std::vector<LeftJournal>& left) {
  QString list;
  for (std::size_t i = 0; i < left.size() && i < kMostNamed; ++i) list += LineOf(left[i].Content) + u'\n';
  if (left.size() > kMostNamed) list += QStringLiteral("and %1 more\n").arg(left.size() - kMostNamed);
  const bool one = left.size() == 1;
  return (one ? QStringLiteral("The program ended before this was saved:\n\n%1\n"
                               "Bring it back? No gives it up, Cancel asks again at the next start.")
              : QStringLiteral("The program ended before these were saved:\n\n%1\n"
                               "Bring them back? No gives them up, Cancel asks again at the next start."))
      .arg(list);
}

}  // namespace

std::string FrmMain::JournalFolder() const {
  return parts_.ApplicationFolder.empty() ? std::string() : parts_.ApplicationFolder + "/journal";
}

void FrmMain::JournalFailed(const std::string& reason) {
  if (!std::exchange(journalTold_, true))
    SetRemark("Unsaved work is not kept for the case of a crash: " + reason + '.');
}

void FrmMain::OfferLeftWork() {
  std::vector<LeftJournal> left = TakeLeftJournals(JournalFolder());
  // Another version may have a window for what this one does not know.
  std::erase_if(left,
                [](const LeftJournal& each) { return KindOfHeader(each.Content.Head.FileType) == nullptr; });
  if (left.empty()) return;
  // The search for the instrument has boxes of its own.
  const bool connects = timerConnect_.isActive();
  timerConnect_.stop();
  const Answer answer = boxes_->AskYesNoCancel(LeftWorkQuestion(left));
  if (connects) timerConnect_.start();
  for (LeftJournal& each : left) {
    if (answer == Answer::Yes) {
      BringBack(std::move(each));
    } else if (answer == Answer::No) {
      each.File->Remove();
    }
  }
  UpdateCommands();
}

void FrmMain::BringBack(LeftJournal left) {
  const JournalHead& head = left.Content.Head;
  DocumentWindow* const document =
      ShowNew(*KindOfHeader(head.FileType), QString::fromStdString(head.Caption));
  if (document->BringBack(std::move(left))) return;
  document->AllowClose();
  if (document->parentWidget()) document->parentWidget()->close();
}

void FrmMain::EndRuns() {
  for (DocumentWindow* document : workspace_->Documents()) document->EndRun();
}

void FrmMain::LetGoOfInstrument() {
  const InstrumentState& state = link_->State;
  if (state.InstrumentConnected && !state.InstrumentBusy && !state.RunUnderWay)
    link_->Connect.ReleaseConnection();
}

}  // namespace spectrane
