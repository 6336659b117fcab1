#include "app/ground/documentwindow.h"

#include <QCloseEvent>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QScopedValueRollback>
#include <QTimer>

#include "app/ground/commands.h"
#include "app/ground/filequestions.h"
#include "app/ground/languagefont.h"
#include "app/ground/words.h"

namespace spectrane {
namespace {

constexpr int kSaveRecordQuestion = 1210;
constexpr int kStopTestQuestion = 1211;
constexpr int kOverwriteQuestion = 1212;
constexpr int kSaveError = 1213;
constexpr int kOpenError = 1214;

constexpr const char* kFilePathKey = "File Path";

}  // namespace

DocumentWindow::Run::Run(DocumentWindow& window) : window_(window), notice_(window.frame_, &window) {
  if (window_.runs_++ == 0) window_.stopWanted_ = false;
}

DocumentWindow::Run::~Run() {
  if (--window_.runs_ > 0) return;
  // What could not close in the middle of the run closes from the message loop, when nothing of it is left.
  if (window_.frameCloseWanted_) {
    QTimer::singleShot(0, &window_, [w = &window_] { emit w->FrameCloseWanted(); });
  } else if (window_.closeWanted_) {
    QTimer::singleShot(0, &window_,
                       [w = &window_] { w->parentWidget() ? w->parentWidget()->close() : w->close(); });
  }
  window_.closeWanted_ = window_.frameCloseWanted_ = false;
}

DocumentWindow::DocumentWindow(MainWindow& frame) : frame_(frame) {
  ApplyLanguageFont(*this);
}

bool DocumentWindow::Offers(int command) const {
  switch (command) {
    case kClose:
      return true;
    case kOutputPicture:  // a window without one has words that refuse it
    case kOutputWorkbook:
    case kOutputText:
    case kPrint:
    case kPrintPreview:
      return !RunsNow();
    case kSave:
    case kSaveAs:
      return !RunsNow() && HasWork();
    default:
      return false;
  }
}

void DocumentWindow::SetCaption(const QString& caption) {
  caption_ = caption;
  setWindowTitle(QString(caption).replace(QStringLiteral("[*]"), QStringLiteral("[*][*]")) +
                 QStringLiteral("[*]"));
  setAccessibleName(caption);
}

bool DocumentWindow::AskToRemoveRecord(int number, int count) {
  constexpr int kRemoveError = 1215;
  constexpr int kRemoveQuestion = 1216;
  constexpr int kRemoveQuestionEnd = 1217;
  if (number < 1 || number > count) {
    frame_.Boxes().Show(kRemoveError);
    return false;
  }
  const QString question =
      Words(kRemoveQuestion) + u'<' + QString::number(number) + u'>' + Words(kRemoveQuestionEnd);
  return frame_.Boxes().AskYesNo(question, kRemoveQuestion) == Answer::Yes;
}

void DocumentWindow::DocumentChanged() {
  DocumentGrown(0);
}

void DocumentWindow::DocumentGrown(std::int32_t first) {
  KeepJournal(first);
  setWindowModified(IsModified());
  frame_.Display().UpdateCommands();
}

bool DocumentWindow::QueryClose(bool withFrame) {
  if (asking_ || saving_) return false;
  if (runs_ > 0 || HoldsTest()) {
    if (!AskToStop()) return false;
    StopTest();
  }
  // A run has to come to its end first, and closes the window then.
  if (runs_ == 0) return AskToSave();
  StopRun(withFrame);
  return false;
}

bool DocumentWindow::AskToStop() {
  if (asking_) return false;
  const QScopedValueRollback<bool> asking(asking_, true);
  return frame_.Boxes().AskYesNo(Words(kStopTestQuestion), kStopTestQuestion) == Answer::Yes;
}

void DocumentWindow::StopRun(bool withFrame) {
  stopWanted_ = true;
  closeWanted_ = true;
  frameCloseWanted_ = frameCloseWanted_ || withFrame;
}

bool DocumentWindow::AskToSave() {
  CommitEditors();
  if (!IsModified()) return true;
  const QScopedValueRollback<bool> asking(asking_, true);
  const Answer answer = frame_.Boxes().AskYesNoCancel(Words(kSaveRecordQuestion), kSaveRecordQuestion);
  return answer == Answer::No || (answer == Answer::Yes && mmuSaveFile());
}

void DocumentWindow::closeEvent(QCloseEvent* event) {
  // A fault in the question or in the save must not count as a Yes.
  event->ignore();
  // During a run QueryClose() asks for its end and refuses.
  if ((closeAllowed_ && runs_ == 0) || QueryClose(false)) {
    event->accept();
    // On purpose: what was not saved was not wanted.
    if (journal_) journal_->Drop();
    closed_ = true;
  }
}

void DocumentWindow::changeEvent(QEvent* event) {
  // The frame of the window shows the mark of unsaved work for its child.
  if (event->type() == QEvent::ModifiedChange && parentWidget())
    parentWidget()->setWindowModified(isWindowModified());
  QWidget::changeEvent(event);
}

bool DocumentWindow::mmuOpenFile(const QString& path) {
  // As it is before it is read: what happens to it from now on counts as somebody else's.
  const FileState asFound = FileStateOf(path.toStdString());
  QString fault;
  const bool whole = ReadDocument(path, fault);
  if (OpenFileName() == path) file_ = asFound;
  if (whole && (FileWords().KeepsFolder || FileWords().OffersCaption)) StoreFilePath(path);
  if (!whole) frame_.Boxes().ShowWords(path + Words(kOpenError), fault, kOpenError);
  DocumentChanged();
  return whole;
}

bool DocumentWindow::mmuSaveFile() {
  if (saving_) return false;
  const QScopedValueRollback<bool> saving(saving_, true);
  CommitEditors();
  if (OpenFileName().isEmpty() || SavesElsewhere()) return SaveUnderNewName();
  if (FileWasChanged()) {
    // Somebody else has written the file since; what they wrote goes only on a Yes.
    if (frame_.Boxes().AskYesNo(OpenFileName() + u' ' + Words(kOverwriteQuestion), kOverwriteQuestion) !=
        Answer::Yes)
      return false;
  }
  return SaveTo(OpenFileName());
}

QString DocumentWindow::PathToBeginWith() const {
  if (!OpenFileName().isEmpty()) return OpenFileName();
  const QString last =
      QString::fromStdString(frame_.Settings().GetSetting(FileWords().Section, kFilePathKey));
  if (last.isEmpty()) return QDir::homePath();
  // A window that keeps folders may meet a file that another one has left.
  return FileWords().KeepsFolder && QFileInfo(last).isDir() ? last : QFileInfo(last).absolutePath();
}

QString DocumentWindow::CaptionAsName() const {
  QString name = caption_.simplified();
  for (QChar& c : name) {
    if (QStringLiteral("/\\:*?\"<>|").contains(c)) c = u'_';
  }
  return name;
}

QString DocumentWindow::ProposedPath() {
  const FileKindWords words = FileWords();
  QString begin = PathToBeginWith();
  if (!words.OffersCaption) return begin;
  if (!OpenFileName().isEmpty()) return WithEnding(begin, words.Ending);
  QString path = QDir(begin).filePath(WithEnding(CaptionAsName(), words.Ending));
  frame_.Settings().PutSetting(words.Section, kFilePathKey, path.toStdString());
  return path;
}

void DocumentWindow::StoreFilePath(const QString& path) {
  const FileKindWords words = FileWords();
  const QString stored = words.KeepsFolder && !words.SavedSection ? QFileInfo(path).absolutePath() : path;
  frame_.Settings().PutSetting(words.SavedSection ? words.SavedSection : words.Section, kFilePathKey,
                               stored.toStdString());
}

bool DocumentWindow::mmuSaveAsFile() {
  if (saving_) return false;
  const QScopedValueRollback<bool> saving(saving_, true);
  return SaveUnderNewName();
}

bool DocumentWindow::SaveUnderNewName() {
  CommitEditors();
  const FileKindWords words = FileWords();
  const QString chosen = frame_.Boxes().SaveFileName(Words(words.FilterTextId), ProposedPath());
  if (chosen.isEmpty()) return false;
  const QString path = WithEnding(chosen, words.Ending);
  if (!MayWriteTo(frame_, path, this)) return false;
  return SaveTo(path);
}

bool DocumentWindow::SaveTo(const QString& path) {
  QString fault;
  if (!WriteDocument(path, fault)) {
    frame_.Boxes().ShowWords(Words(kSaveError), fault, kSaveError);
    DocumentChanged();
    return false;
  }
  file_ = FileStateOf(path.toStdString());
  StoreFilePath(path);
  frame_.NoteFile(path);
  SetCaption(QFileInfo(path).fileName());
  DocumentChanged();
  return true;
}

bool DocumentWindow::FileWasChanged() const {
  const FileState now = FileStateOf(OpenFileName().toStdString());
  return now.Size >= 0 && !IsSameState(now, file_);
}

}  // namespace spectrane
