#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QMenu>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QUrl>

#include "app/frmmain.h"
#include "app/ground/documentwindow.h"
#include "app/ground/words.h"
#include "app/messageboxes.h"
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
constexpr qsizetype kRecentCount = 9;
constexpr qsizetype kWaitingCount = 32;
constexpr int kBoxPollMs = 200;
const QString kRecentName = QStringLiteral("Recent");

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

bool FrmMain::CanCreate(int newFileType) const {
  const DocumentKind* kind = KindOfNewFile(newFileType);
  return kind && kind->Make;
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
  if (!kind || !kind->Make) return;
  DocumentWindow* document =
      ShowNew(*kind, Words(kind->CaptionTextId) + QString::number(counters_.Next(*kind)));
  if (ActiveForm() == document) document->ShowConfigWindow();
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
  boxes_->ShowWords(Words(kOpenError), details.isEmpty() ? path : path + u'\n' + details);
  return false;
}

bool FrmMain::OpenDataFile(const QString& path, bool chosen) {
  if (path.isEmpty() || !QFileInfo::exists(path))
    return RefuseToOpen(path, tr("There is no file of that name."));
  if (const QWidget* dialog = OpenDialog()) {
    boxes_->ShowWords(Bracketed(path) + Words(kOpenError) + u'\n' + Words(kCloseDialogFirst) + u'[' +
                      dialog->windowTitle() + QStringLiteral("]!"));
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
  if (!kind->Make) return RefuseToOpen(path, tr("This program has no window for this kind of file."));
  if (DocumentWindow* open = WindowOfFile(*kind, path)) {
    workspace_->Activate(open);
    boxes_->ShowWords(Bracketed(path) + Words(kAlreadyOpen));
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
  if (waitingFiles_.size() >= kWaitingCount) return;
  waitingFiles_.append(path);
  QTimer::singleShot(0, this, [this] { OpenWaiting(); });
}

void FrmMain::ComeForward() {
  setWindowState(windowState() & ~Qt::WindowMinimized);
  raise();
  activateWindow();
}

void FrmMain::OpenWaitingLater() {
  if (!waitingFiles_.isEmpty()) QTimer::singleShot(0, this, [this] { OpenWaiting(); });
}

void FrmMain::OpenWaiting() {
  if (opening_) return;
  const QWidget* modal = QApplication::activeModalWidget();
  if (modal && modal->objectName() == QLatin1String(kMessageBoxName)) {
    QTimer::singleShot(kBoxPollMs, this, [this] { OpenWaiting(); });
    return;
  }
  // A run in progress, a question and an open box are not disturbed; their ends, or the clock, call again.
  const QScopedValueRollback<bool> opening(opening_, true);
  while (!waitingFiles_.isEmpty() && runs_ == 0 && !locked_ && !closing_) {
    const QString path = waitingFiles_.takeFirst();
    Guarded([&] { OpenDataFile(path); });
  }
}

void FrmMain::OnTimerFileOpen() {
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
    if (document && document->IsWorkUnsaved()) workspace_->Activate(document);
    if (document && document->parentWidget() && !document->parentWidget()->close()) return false;
  }
  return true;
}

QStringList FrmMain::RecentFiles() const {
  return layout_.List(kRecentName);
}

void FrmMain::NoteFile(const QString& path) {
  QStringList files = RecentFiles();
  const QString absolute = QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath());
  files.removeAll(absolute);
  files.prepend(absolute);
  layout_.Store(kRecentName, files.mid(0, kRecentCount));
}

void FrmMain::FillRecentFiles(QMenu& menu) {
  // Made when the menu opens: files come and go without this program.
  QAction* place = menu.addSeparator();
  connect(&menu, &QMenu::aboutToShow, this, [this, &menu, place] {
    for (QAction* old : menu.actions()) {
      if (old->property("recent").toBool()) delete old;
    }
    const QList<QAction*> actions = menu.actions();
    QAction* before = actions.value(actions.indexOf(place) + 1);
    int number = 0;
    for (const QString& path : RecentFiles()) {
      const QFileInfo file(path);
      auto* action = new QAction(&menu);
      action->setProperty("recent", true);
      action->setObjectName(QStringLiteral("Recent%1").arg(++number));
      action->setText(
          QStringLiteral("&%1  %2").arg(number).arg(file.fileName().replace(u'&', QStringLiteral("&&"))));
      action->setToolTip(path);
      action->setEnabled(file.isFile());
      connect(action, &QAction::triggered, this, [this, path] { OpenLater(path); });
      menu.insertAction(before, action);
    }
    menu.setToolTipsVisible(true);
  });
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
