#include <QApplication>
#include <QCloseEvent>
#include <QPointer>
#include <QScopedValueRollback>
#include <QScopeGuard>

#include <algorithm>
#include <exception>
#include <iterator>

#include "app/commandtable.h"
#include "app/datadock.h"
#include "app/frmabout.h"
#include "app/frmmain.h"
#include "app/frmnew.h"
#include "app/frmoption.h"
#include "app/ground/documentwindow.h"
#include "app/ground/frmdatatabel.h"
#include "app/ground/simulated.h"
#include "app/ground/words.h"
#include "app/handbook.h"
#include "base/language.h"
#include "base/textnumbers.h"
#include "tools/windows/tooldialog.h"

namespace spectrane {
namespace {

constexpr int kQuitQuestion = 1103;
constexpr std::int64_t kLostLinkPauseMs = 3000;
constexpr const char* kBusyNow = "The instrument is busy. Close again in a moment.";

/// What the window that measures may still be asked for: the end, and another look.
bool GoesWithRun(int command) {
  constexpr int kWithRun[] = {kStopTest, kZoomOut, kZoomIn, kZoomWindow, kCopyPicture};
  return std::ranges::find(kWithRun, command) != std::end(kWithRun);
}

/// Be it below a box of its own.
bool IsToolOpen() {
  return std::ranges::any_of(QApplication::topLevelWidgets(), [](const QWidget* window) {
    return window->isVisible() && qobject_cast<const ToolDialog*>(window);
  });
}

}  // namespace

bool FrmMain::IsEnabled(const CommandRow& row) const {
  const DocumentWindow* active = ActiveForm();
  const bool connected = link_->State.InstrumentConnected;
  const bool idle = runs_.empty() && !link_->State.RunUnderWay;
  // A run of the main window's own is short, and a dialog of a child would hold it up.
  const bool measures = std::ranges::any_of(
      runs_, [active](const DocumentWindow* window) { return !window || window == active; });
  const bool offered = active && active->Offers(row.Number) && (!measures || GoesWithRun(row.Number));
  switch (row.When) {
    case EnabledWhen::Always:
      return true;
    case EnabledWhen::NoRun:
      return idle;
    case EnabledWhen::NotConnected:
      return !connected && idle;
    case EnabledWhen::Connected:
      return connected && idle;
    case EnabledWhen::Document:
      return offered;
    case EnabledWhen::ConnectedDocument:
      return offered && connected && idle;
    case EnabledWhen::BlankTarget:
      return connected && idle && (!active || offered);
    case EnabledWhen::Children:
      return active != nullptr;
    case EnabledWhen::Kind:
      return idle && std::ranges::any_of(DocumentKinds(), [&row](const DocumentKind& kind) {
               return kind.Command == row.Number;
             });
  }
  return false;
}

void FrmMain::UpdateCommands() {
  if (!bars_ || !link_ || !workspace_) return;
  const DocumentWindow* const active = ActiveForm();
  for (const CommandRow& row : CommandRows()) {
    bars_->Action(row.Number)->setEnabled(IsEnabled(row));
    bars_->Explain(row.Number, active ? active->WhyNot(row.Number) : QString());
  }
  const InstrumentState& state = link_->State;
  status_->ShowSimulated(IsSimulated(*link_));
  if (remark_.empty()) ShowRemarkLine();
  const QString connectStep =
      state.InstrumentConnected
          ? tr("1.  The instrument is connected.")
          : tr("1.  Switch the instrument on, plug in its cable, then choose Operate, Connect (F9).");
  workspace_->SetWelcome(title_,
                         {connectStep, tr("2.  Choose File, New File guide (Ctrl+N) and what to measure."),
                          tr("3.  Put the blank into the beam and choose Set Blank (F8)."),
                          tr("4.  Put a sample into the beam and choose Start Test (F5).")});
}

QString FrmMain::IdleHint() const {
  if (!runs_.empty()) return tr("Measuring ...");
  if (const std::string& problem = parts_.Settings.Problem(); !problem.empty()) {
    return tr("Settings hold until the end of this run only (%1).").arg(QString::fromStdString(problem));
  }
  if (!link_->State.InstrumentConnected)
    return tr("Next: Operate, Connect (F9). Saved files open without an instrument.");
  if (!ActiveForm()) return tr("Next: File, New File guide (Ctrl+N).");
  return {};
}

void FrmMain::RunCommand(int command) {
  const CommandRow& row = CommandRowOf(command);
  if (ticking_) {
    // Inside a live reading a dialog would keep the reading from its end. Pressed again meanwhile, it is the
    // same wish.
    if (std::ranges::find(waitingCommands_, command) == waitingCommands_.end()) {
      waitingCommands_.push_back(command);
    } else if (row.Checkable) {
      bars_->Action(command)->toggle();
    }
    return;
  }
  if (closing_ || inputLock_.IsOn() || !IsEnabled(row)) {
    // The click has moved the mark already.
    if (row.Checkable) bars_->Action(command)->toggle();
    ApplyBarFlags();
    return;
  }
  SetRemark({});
  Guarded([&] {
    if (row.OnFrame) {
      row.OnFrame(*this);
    } else if (DocumentWindow* active = ActiveForm(); active && row.OnDocument) {
      row.OnDocument(*active);
    }
  });
  UpdateCommands();
}

void FrmMain::Guarded(const std::function<void()>& work) {
  try {
    work();
  } catch (const std::exception& fault) {
    CommandEndedEarly(fault);
  }
}

void FrmMain::CommandEndedEarly(const std::exception& fault) {
  // What goes on around it keeps the instrument and the lock.
  if (!link_->State.RunUnderWay && !ticking_) {
    Lock(false);
    link_->State.InstrumentBusy = false;
    if (link_->State.InstrumentConnected) link_->Live.SampleTimerStart();
  }
  SetRemark("The command ended early: " + std::string(fault.what()));
  UpdateCommands();
}

void FrmMain::OnSampleTimer() {
  // One that was on its way when the readings stopped comes to nothing.
  if (ticking_ || !sampleTimer_.isActive()) return;
  // After a reading that failed the next one may block for long: the window gets time in between.
  if (link_->Live.LinkLost() && parts_.Time.NowMs() - lastTickMs_ < kLostLinkPauseMs) return;
  Guarded([this] {
    const QScopedValueRollback<bool> ticking(ticking_, true);
    link_->Live.SampleTimerTick();
    if (!link_->Live.LinkLost()) closeRefused_ = false;
  });
  lastTickMs_ = parts_.Time.NowMs();
  files_.LookAgain();
  RunWaitingCommands();
}

void FrmMain::RunWaitingCommands() {
  // Readings go on behind the dialog of one; it comes to its end before the next one begins.
  if (waitingRun_) return;
  const QScopedValueRollback<bool> run(waitingRun_, true);
  while (!waitingCommands_.empty() && !QApplication::activeModalWidget()) {
    const int command = waitingCommands_.front();
    waitingCommands_.pop_front();
    RunCommand(command);
  }
}

void FrmMain::RunBegins(DocumentWindow* window) {
  runs_.push_back(window);
  UpdateCommands();
}

void FrmMain::RunEnds() {
  // Each lies within the one before.
  runs_.pop_back();
  UpdateCommands();
  if (runs_.empty()) files_.LookAgain();
}

void FrmMain::mmuFileNew() {
  FrmNew::Run(*this);
}

void FrmMain::ShowOption() {
  FrmOption options(*this);
  options.exec();
}

void FrmMain::ShowAbout() {
  FrmAbout about(*this);
  about.exec();
}

void FrmMain::ShowHelpBook() {
  ShowHelpPage(QString::fromLatin1(kHandbookFirstPage));
}

void FrmMain::ShowHelpFor(const QWidget* widget) {
  ShowHelpPage(HandbookPageOf(widget ? widget : this));
}

void FrmMain::ShowHelpPage(const QString& page) {
  const QStringList folders = HandbookFolders(QCoreApplication::applicationDirPath());
  const QString refusal = ShowHandbook(page, folders, QString::fromStdString(parts_.ApplicationFolder));
  // No box: a test may be running.
  if (!refusal.isEmpty()) SetRemark(refusal.toStdString());
}

void FrmMain::mmuOperationConnect() {
  timerConnect_.stop();
  if (closing_ || IsToolOpen()) {
    // Somebody thinks about leaving, or has a dialog open in which the live reading stands: the connection
    // comes later.
    timerConnect_.start();
    return;
  }
  link_->Connect.mmuOperationConnect();
  if (remark_.starts_with("Looking for")) SetRemark({});
  UpdateCommands();
}

void FrmMain::ConnectCommand() {
  if (!link_->State.InstrumentConnected) mmuOperationConnect();
}

void FrmMain::ReleaseCommand() {
  {
    const RunNotice notice(*this, nullptr);
    link_->Connect.ReleaseCommand();
  }
  for (const StatusPane pane :
       {StatusPane::Sampler, StatusPane::Slit, StatusPane::Wavelength, StatusPane::Percent}) {
    if (!link_->State.InstrumentConnected) SetStatus(pane, {});
  }
  if (!link_->State.InstrumentConnected) ClearLampMarks();
  SetRemark({});
}

void FrmMain::mmuOperationRezero() {
  DocumentWindow* active = ActiveForm();
  if (active) {
    link_->Live.mmuOperationRezero(active);
    return;
  }
  const RunNotice notice(*this, nullptr);
  link_->Live.mmuOperationRezero(nullptr);
}

void FrmMain::Arrange(int windowCommand) {
  // Free windows can be arranged, tabs cannot: the command takes the tabs apart.
  if (workspace_->HasTabs()) ToggleBar(kTabWorkspace);
  if (windowCommand == kCascade) {
    workspace_->CascadeAll();
  } else {
    workspace_->TileAll(windowCommand == kTileVertically);
  }
}

void FrmMain::FocusNextPane() {
  // Round the visible bars, then back to the children.
  QList<QWidget*> panes = bars_->Entrances();
  if (dock_->isVisible()) panes.append(dock_->Table());
  DocumentWindow* active = ActiveForm();
  panes.append(active ? static_cast<QWidget*>(active) : workspace_);
  QWidget* focus = QApplication::focusWidget();
  qsizetype at = panes.size() - 1;
  for (qsizetype i = 0; i + 1 < panes.size(); ++i) {
    if (focus && panes[i]->parentWidget()->isAncestorOf(focus)) at = i;
  }
  QWidget* next = panes[(at + 1) % panes.size()];
  if (next == active) workspace_->Activate(active);
  next->setFocus(Qt::TabFocusReason);
}

void FrmMain::closeEvent(QCloseEvent* event) {
  // A fault in what follows must not count as a Yes.
  event->ignore();
  if (closing_ || !QueryUnload()) return;
  closing_ = true;
  for (DocumentWindow* document : workspace_->Documents()) document->AllowClose();
  workspace_->closeAllSubWindows();
  event->accept();
}

bool FrmMain::QueryUnload() {
  if (!runs_.empty() || link_->State.RunUnderWay) {
    if (!runs_.empty() && runs_.front()) {
      runs_.front()->QueryClose(true);
    } else {
      SetRemark(kBusyNow);
    }
    return false;
  }
  bool may = false;
  {
    const QScopedValueRollback<bool> closing(closing_, true);
    may = ChildrenMayClose() && LinkMayClose();
  }
  if (may) StoreWindowState();
  UpdateCommands();
  files_.LookAgain();
  return may;
}

bool FrmMain::ChildrenMayClose() {
  // A child may go by itself while a question is open.
  const QList<DocumentWindow*> present = workspace_->Documents();
  const QList<QPointer<DocumentWindow>> documents(present.begin(), present.end());
  if (documents.isEmpty()) return true;
  if (boxes_->AskYesNo(Words(kQuitQuestion), kQuitQuestion) != Answer::Yes) return false;
  for (const QPointer<DocumentWindow>& document : documents) {
    if (document && document->IsWorkUnsaved()) workspace_->Activate(document);
    if (document && !document->QueryClose(false)) return false;
  }
  return true;
}

bool FrmMain::LinkMayClose() {
  timerConnect_.stop();
  link_->Live.SampleTimerStop();
  if (!link_->State.InstrumentConnected) return true;
  // What has been asked about is not changed any more while the instrument answers.
  workspace_->setEnabled(false);
  auto stays = qScopeGuard([this] { workspace_->setEnabled(true); });
  double wavelength = 0.0;
  if (!link_->Instrument.GetWavelength(wavelength)) {
    // A program that lost its instrument in mid-air stays until the link is back or is released.
    closeRefused_ = true;
    SetRemark(Text(kCommunicationError));
    link_->Live.SampleTimerStart();
    return false;
  }
  link_->Connect.ReleaseConnection();
  stays.dismiss();
  return true;
}

}  // namespace spectrane
