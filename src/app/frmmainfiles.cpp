#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QUrl>

#include <algorithm>

#include "app/frmmain.h"
#include "app/ground/documentwindow.h"
#include "app/ground/words.h"
#include "files/file.h"

namespace spectrane {
namespace {

constexpr int kOpenFilter = 1104;
constexpr int kBaselineRefused = 1105;
constexpr int kUnknownFormat = 1106;
constexpr int kOpenError = 1214;
constexpr int kAlreadyOpen = 1218;
constexpr int kCloseDialogFirst = 1219;
constexpr const char* kFileSection = "File";
constexpr const char* kOpenPathKey = "Open File Path";

QString Bracketed(const QString& path) {
  return u'<' + path + u'>';
}

bool IsSameFile(const QString& a, const QString& b) {
  if (a.isEmpty() || b.isEmpty()) return false;
  if (a == b) return true;
  const QString canonical = QFileInfo(a).canonicalFilePath();
  return !canonical.isEmpty() && canonical == QFileInfo(b).canonicalFilePath();
}

}  // namespace

DocumentWindow* FrmMain::ActiveForm() const {
  return workspace_ ? workspace_->Active() : nullptr;
}

DocumentWindow* FrmMain::ShowNew(const DocumentKind& kind, const QString& caption) {
  DocumentWindow* document = kind.Make(*this);
  document->SetCaption(caption);
  ShowChild(document);
  return document;
}

void FrmMain::ShowChild(DocumentWindow* window) {
  connect(window, &DocumentWindow::FrameCloseWanted, this, [this] { close(); });
  connect(window, &QObject::destroyed, this, [this] {
    if (closing_) return;
    QTimer::singleShot(0, this, [this] {
      DataTableChanged(ActiveForm());
      UpdateCommands();
    });
  });
  workspace_->Add(window);
  UpdateCommands();
}

void FrmMain::NewFile(int newFileType) {
  const DocumentKind* kind = KindOfNewFile(newFileType);
  if (!kind) return;
  DocumentWindow* document = ShowNew(*kind, NextCaption(kind->CaptionTextId));
  if (ActiveForm() == document) document->ShowConfigWindow();
}

QString FrmMain::NextCaption(int captionTextId) {
  const std::span<const DocumentKind> kinds = DocumentKinds();
  const auto kind = std::ranges::find(kinds, captionTextId, &DocumentKind::CaptionTextId);
  if (kind == kinds.end()) return Caption(captionTextId);
  QString caption;
  // One that came back has its old name.
  const auto taken = [&caption](const DocumentWindow* each) { return each->Caption() == caption; };
  do {
    caption = Words(captionTextId) + QString::number(counters_.Next(*kind));
  } while (std::ranges::any_of(workspace_->Documents(), taken));
  return caption;
}

void FrmMain::mmuFileOpen() {
  const QString last = QString::fromStdString(window_.OpenFilePath);
  const QString path = boxes_->OpenFileName(Words(kOpenFilter), last.isEmpty() ? QDir::homePath() : last);
  if (path.isEmpty()) return;
  window_.OpenFilePath = path.toStdString();
  StoreWindowSetting(parts_.Settings, kFileSection, kOpenPathKey, window_);
  OpenDataFile(path, true);
}

QWidget* FrmMain::OpenDialog() const {
  if (QWidget* modal = QApplication::activeModalWidget()) return modal;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible() && qobject_cast<QDialog*>(window)) return window;
  }
  return nullptr;
}

DocumentWindow* FrmMain::WindowOfFile(const DocumentKind& kind, const QString& path) const {
  for (DocumentWindow* document : workspace_->Documents()) {
    if (document->objectName() == QLatin1String(kind.ClassName) &&
        IsSameFile(document->OpenFileName(), path)) {
      return document;
    }
  }
  return nullptr;
}

bool FrmMain::ShowsFile(const QString& path, const DocumentWindow* besides) const {
  for (const DocumentWindow* document : workspace_->Documents()) {
    if (document != besides && IsSameFile(document->OpenFileName(), path)) return true;
  }
  return false;
}

bool FrmMain::RefuseToOpen(const QString& path, const QString& details) {
  boxes_->ShowWords(Words(kOpenError), details.isEmpty() ? path : path + u'\n' + details, kOpenError);
  return false;
}

bool FrmMain::OpenDataFile(const QString& path, bool chosen) {
  if (path.isEmpty() || !QFileInfo::exists(path))
    return RefuseToOpen(path, tr("There is no file of that name."));
  if (const QWidget* dialog = OpenDialog()) {
    boxes_->ShowWords(Bracketed(path) + Words(kOpenError) + u'\n' + Words(kCloseDialogFirst) + u'[' +
                          dialog->windowTitle() + QStringLiteral("]!"),
                      {}, kCloseDialogFirst);
    return false;
  }
  std::int32_t type = 0;
  FileFault fault;
  if (!GetFileType(path.toStdString(), type, &fault))
    return RefuseToOpen(path, QString::fromStdString(FaultWords(fault)));
  if (type == kBaselineHeaderType) {
    if (chosen) {
      boxes_->Show(kBaselineRefused);
      return false;
    }
    if (!OpenBaseline(path)) return false;
    window_.OpenFilePath = path.toStdString();
    StoreWindowSetting(parts_.Settings, kFileSection, kOpenPathKey, window_);
    return true;
  }
  const DocumentKind* kind = KindOfHeader(type);
  if (!kind) {
    boxes_->Show(kUnknownFormat);
    return false;
  }
  if (DocumentWindow* open = WindowOfFile(*kind, path)) {
    workspace_->Activate(open);
    boxes_->ShowWords(Bracketed(path) + Words(kAlreadyOpen), {}, kAlreadyOpen);
    return false;
  }
  DocumentWindow* document = ShowNew(*kind, QFileInfo(path).fileName());
  // An empty window under the file's name would only mislead.
  const auto close = [document] {
    document->AllowClose();
    if (document->parentWidget()) document->parentWidget()->close();
  };
  bool whole = false;
  try {
    whole = document->mmuOpenFile(path);
  } catch (...) {
    close();
    throw;
  }
  if (document->OpenFileName().isEmpty()) {
    close();
    return false;
  }
  window_.OpenFilePath = path.toStdString();
  StoreWindowSetting(parts_.Settings, kFileSection, kOpenPathKey, window_);
  NoteFile(path);
  UpdateCommands();
  return whole;
}

void FrmMain::OpenLater(const QString& path) {
  files_.Add(path);
}

void FrmMain::TellRefusedFiles(qsizetype count, const QStringList& names) {
  SetRemark((tr("%1 not opened, since %2 others were waiting: ")
                 .arg(count == 1 ? tr("One file was") : tr("%1 files were").arg(count))
                 .arg(FileQueue::kMost) +
             names.join(QStringLiteral(", ")) + (count > names.size() ? QStringLiteral(" ...") : QString()))
                .toStdString());
}

void FrmMain::ComeForward() {
  setWindowState(windowState() & ~Qt::WindowMinimized);
  raise();
  activateWindow();
}

bool FrmMain::MayOpenFile() const {
  return runs_.empty() && !inputLock_.IsOn() && !closing_ && !ticking_;
}

void FrmMain::OnTimerFileOpen() {
  Guarded([this] { OfferLeftWork(); });
  if (!parts_.CommandLineFile.isEmpty()) {
    // Who opens a stored file did not ask for the instrument.
    timerConnect_.stop();
    OpenDataFile(parts_.CommandLineFile);
  }
  if (!ActiveForm()) mmuFileNew();
}

void FrmMain::mmuFileCloseOne() {
  DocumentWindow* active = ActiveForm();
  if (active && active->parentWidget()) active->parentWidget()->close();
}

bool FrmMain::mmuFileCloseAll() {
  const QList<DocumentWindow*> present = workspace_->Documents();
  for (const QPointer<DocumentWindow>& document :
       QList<QPointer<DocumentWindow>>(present.begin(), present.end())) {
    if (!document || !document->parentWidget() || document->ClosesAfterRun()) continue;
    if (document->IsWorkUnsaved()) workspace_->Activate(document);
    if (!document->parentWidget()->close() && !(document && document->ClosesAfterRun())) return false;
  }
  return true;
}

void FrmMain::NoteFile(const QString& path) {
  recent_.Note(path);
}

void FrmMain::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void FrmMain::dropEvent(QDropEvent* event) {
  for (const QUrl& url : event->mimeData()->urls()) {
    if (url.isLocalFile()) OpenLater(url.toLocalFile());
  }
  event->acceptProposedAction();
}

}  // namespace spectrane
