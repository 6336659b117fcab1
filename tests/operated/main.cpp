// The real program with an operator inside: what stands on standard input is done, a line each, and answered
// by a line.
//   do COMMAND        chooses a command by its number; the answer does not wait for its end
//   close             closes the dialog that is open
//   box               the words of the message box that is open, or "none"
//   answer BUTTON     Yes, No, Cancel or OK in that box
//   name PATH         the path in the file dialog that is open
//   state             the documents: number, and of the active one caption, modified, records, file

#include <unistd.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSocketNotifier>
#include <QTimer>

#include <cstdio>

#include "app/frmmain.h"
#include "app/ground/documentwindow.h"
#include "app/program.h"
#include "modes/windows/frmbasic.h"
#include "modes/windows/frmts.h"

namespace {

using namespace spectrane;

FrmMain* Frame() {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (auto* const frame = qobject_cast<FrmMain*>(window)) return frame;
  }
  return nullptr;
}

int RecordsOf(const DocumentWindow* window) {
  if (const auto* const basic = qobject_cast<const FrmBasic*>(window)) return basic->Document().RecordCount();
  if (const auto* const scan = qobject_cast<const FrmTS*>(window)) return scan->Document().DataCount();
  return -1;
}

QString State(const FrmMain& frame) {
  const DocumentWindow* const window = frame.ActiveForm();
  return QStringLiteral("%1|%2|%3|%4|%5|%6")
      .arg(frame.findChild<Workspace*>()->Documents().size())
      .arg(window ? window->Caption() : QString())
      .arg(window && window->IsWorkUnsaved() ? 1 : 0)
      .arg(RecordsOf(window))
      .arg(window ? window->OpenFileName() : QString())
      .arg(frame.isEnabled() && const_cast<FrmMain&>(frame).Link().State.InstrumentConnected ? 1 : 0);
}

/// What is to be done after the answer, so that a box it opens does not hold the operator up.
void Later(QObject* context, std::function<void()> work) {
  QTimer::singleShot(0, context, std::move(work));
}

/// What was chosen before may have begun meanwhile: then the command waits until it can be chosen again.
void Trigger(QAction* action) {
  if (action->isEnabled()) return action->trigger();
  QTimer::singleShot(10, action, [action] { Trigger(action); });
}

QString Press(const QString& button) {
  auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
  if (!box) return QStringLiteral("no box");
  for (QAbstractButton* each : box->buttons()) {
    if (each->text().remove(u'&') != button) continue;
    Later(each, [each] { each->click(); });
    return QStringLiteral("done");
  }
  return QStringLiteral("no such button");
}

QString Name(const QString& path) {
  auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
  if (!dialog) return QStringLiteral("no file dialog");
  dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(path);
  QAbstractButton* const save = dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save);
  Later(save, [save] { save->click(); });
  return QStringLiteral("done");
}

QString Answer(const QString& line) {
  FrmMain* const frame = Frame();
  if (!frame) return QStringLiteral("no window");
  const QString verb = line.section(u' ', 0, 0);
  const QString rest = line.section(u' ', 1);
  if (verb == QStringLiteral("state")) return State(*frame);
  if (verb == QStringLiteral("answer")) return Press(rest);
  if (verb == QStringLiteral("name")) return Name(rest);
  QWidget* const modal = QApplication::activeModalWidget();
  if (verb == QStringLiteral("box")) {
    const auto* const box = qobject_cast<QMessageBox*>(modal);
    return box ? box->text().replace(u'\n', u'|') : QStringLiteral("none");
  }
  if (verb == QStringLiteral("close")) {
    if (!modal) return QStringLiteral("no dialog");
    Later(modal, [modal] { modal->close(); });
    return QStringLiteral("done");
  }
  if (verb != QStringLiteral("do")) return QStringLiteral("what?");
  QAction* const action = frame->ActionOf(rest.toInt());
  if (!action || !action->isEnabled() || !frame->isEnabled() || modal) return QStringLiteral("not now");
  Later(action, [action] { Trigger(action); });
  return QStringLiteral("done");
}

void Listen() {
  auto* const input = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, qApp);
  QObject::connect(input, &QSocketNotifier::activated, qApp, [input] {
    static QByteArray waiting;
    char bytes[4096];
    const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
    if (count <= 0) {
      input->setEnabled(false);
      return;
    }
    waiting.append(bytes, static_cast<qsizetype>(count));
    for (qsizetype end = waiting.indexOf('\n'); end >= 0; end = waiting.indexOf('\n')) {
      const QString line = QString::fromUtf8(waiting.first(end));
      waiting.remove(0, end + 1);
      std::printf("%s\n", Answer(line).toUtf8().constData());
      std::fflush(stdout);
    }
  });
}

}  // namespace

// The platform's bus library keeps a block of its own to the end of the process.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libdbus-1.so";
}

int main(int argc, char** argv) {
  qAddPreRoutine([] { QTimer::singleShot(0, qApp, &Listen); });
  return spectrane::Main(argc, argv);
}
