#include "app/frmmain.h"

#include <QApplication>
#include <QMenu>
#include <QPaintEvent>
#include <utility>

#include "app/barlooks.h"
#include "app/commandtable.h"
#include "app/datadock.h"
#include "app/ground/commandicon.h"
#include "app/ground/documentwindow.h"
#include "app/ground/languagefont.h"
#include "app/ground/words.h"
#include "app/handbook.h"
#include "app/messageboxes.h"
#include "app/viewflags.h"
#include "base/language.h"
#include "base/textnumbers.h"

namespace spectrane {
namespace {

constexpr int kNormal = 0;
constexpr int kMaximised = 2;
constexpr int kFileOpenMs = 1;
constexpr int kUnpaintedMs = 400;
constexpr int kConnectMs = 2000;
constexpr int kSampleMs = 100;
constexpr int kLayoutVersion = 2;
constexpr const char* kReleaseToClose = " Release (Shift+F9) lets the program close.";
const QString kBarsName = QStringLiteral("FrmMain/Bars");
const QString kDataTableName = QStringLiteral("FrmMain/DataTable");

}  // namespace

FrmMain::FrmMain(const ProgramParts& parts)
    : parts_(parts), layout_(QString::fromStdString(parts.ApplicationFolder)) {
  setObjectName(QStringLiteral("FrmMain"));
  SetFrmMainFont();
  const Brand& brand = BuildBrand();
  title_ = QString::fromLatin1(brand.Title);
  setWindowTitle(title_);
  setWindowIcon(ApplicationIcon());
  setAcceptDrops(true);
  if (!parts_.Boxes) ownBoxes_ = std::make_unique<MessageBoxes>(*this, title_);
  boxes_ = parts_.Boxes ? parts_.Boxes : ownBoxes_.get();
  link_ = std::make_unique<InstrumentLink>(LinkSurroundings{
      parts_.Ports, parts_.Time, parts_.Loop, parts_.Turn, parts_.Settings, *this, *boxes_, brand});
  LoadWindowSettings();
  BuildBars();
  BuildDataDock();
  BuildTimers();
  new DialogHelpKey(this, [this](const QWidget* widget) { ShowHelpFor(widget); });
  RestoreLayout();
  SetMenuStyle(window_.MenuStyle);
  SetStatus(StatusPane::Connection, Text(kNoInstrument));
  // The end of the session may still be called off: nothing is asked and nothing ends.
  connect(
      qGuiApp, &QGuiApplication::commitDataRequest, this, [this] { StoreWindowState(); },
      Qt::DirectConnection);
  UpdateCommands();
}

FrmMain::~FrmMain() {
  // Children talk to this window to their very end; what the toolkit still reports then goes nowhere.
  closing_ = true;
  workspace_->disconnect(this);
  dock_ = nullptr;
  delete std::exchange(workspace_, nullptr);
}

void FrmMain::SetFrmMainFont() {
  ApplyLanguageFont(*this);
}

void FrmMain::LoadWindowSettings() {
  window_.WindowHeight = FramePlace::kFirstSize.height();
  window_.WindowWidth = FramePlace::kFirstSize.width();
  spectrane::LoadWindowSettings(parts_.Settings, parts_.ApplicationFolder, window_);
  link_->Apply(window_);
}

void FrmMain::BuildBars() {
  workspace_ = new Workspace(this);
  setCentralWidget(workspace_);
  connect(workspace_, &Workspace::ActiveChanged, this, [this] {
    DataTableChanged(ActiveForm());
    UpdateCommands();
  });
  connect(workspace_, &Workspace::PopupWanted, this,
          [this](const QPoint& at) { bars_->PopupMenu()->popup(at); });
  status_ = new MainStatus(this);
  setStatusBar(status_);
  bars_ = std::make_unique<CommandBars>(*this, [this](int command) { RunCommand(command); });
  bars_->BuildMenus(
      [this](QMenu& menu) { recent_.KeepIn(menu, *this, [this](const QString& path) { OpenLater(path); }); });
  bars_->BuildToolBars();
  insertToolBarBreak(bars_->Bar(kSpectrumBar));
  display_ = new DataDisplay(this, bars_->Action(kSetWavelength));
  addToolBar(display_);
  bars_->Adopt(display_);
}

void FrmMain::BuildDataDock() {
  dock_ = new DataDock(this);
  addDockWidget(Qt::BottomDockWidgetArea, dock_);
  connect(dock_, &DataDock::WantedChanged, this, [this](bool wanted) {
    bars_->Action(kDataTable)->setChecked(wanted);
    layout_.Store(kDataTableName, wanted ? QByteArray("1") : QByteArray("0"));
  });
}

void FrmMain::DataTableChanged(DocumentWindow* document) {
  // In the middle of its making a window is not active yet; it asks again when it is.
  if (dock_ && document == ActiveForm()) dock_->Follow(document ? document->DataTable() : nullptr);
}

void FrmMain::ToggleDataTable() {
  dock_->SetWanted(!dock_->IsWanted());
}

void FrmMain::BuildTimers() {
  timerFileOpen_.setObjectName(QStringLiteral("TimerFileOpen"));
  timerFileOpen_.setSingleShot(true);
  connect(&timerFileOpen_, &QTimer::timeout, this, [this] { Guarded([this] { OnTimerFileOpen(); }); });
  timerConnect_.setObjectName(QStringLiteral("TimerConnect"));
  timerConnect_.setSingleShot(true);
  timerConnect_.setInterval(kConnectMs);
  connect(&timerConnect_, &QTimer::timeout, this, [this] { Guarded([this] { mmuOperationConnect(); }); });
  sampleTimer_.setObjectName(QStringLiteral("SampleTimer"));
  sampleTimer_.setTimerType(Qt::PreciseTimer);
  sampleTimer_.setInterval(kSampleMs);
  // Not from the timer's own event: it gets no other one while that is handled, and a command that waited for
  // the reading may open a dialog.
  connect(&sampleTimer_, &QTimer::timeout, this, &FrmMain::OnSampleTimer, Qt::QueuedConnection);
  link_->Instrument.OnProbe = [this](int port) {
    SetRemark("Looking for the instrument: port " + std::to_string(port) + " ...");
  };
}

void FrmMain::RestoreLayout() {
  firstLayout_ = saveState(kLayoutVersion);
  if (const QByteArray bars = layout_.Bytes(kBarsName); !bars.isEmpty()) restoreState(bars, kLayoutVersion);
  dock_->SetWanted(layout_.Bytes(kDataTableName) != "0");
  ApplyBarFlags();
}

void FrmMain::ApplyBarFlags() {
  for (const ViewFlag& flag : ViewFlags()) {
    const bool on = window_.*flag.Field;
    bars_->Action(flag.Command)->setChecked(on);
    if (QToolBar* bar = bars_->Bar(flag.Command)) bar->setVisible(on);
  }
  display_->setVisible(window_.DataDisplayToolbar);
  status_->setVisible(window_.StatusToolbar);
  workspace_->SetTabs(window_.TabWorkspace);
  bars_->ShowExpandButtons(window_.ExpandButton);
  bars_->SetBigIcons(window_.BigIcon);
  bars_->Action(kDataTable)->setChecked(dock_->IsWanted());
  DataTableChanged(ActiveForm());
}

void FrmMain::ToggleBar(int viewCommand) {
  const ViewFlag* const flag = ViewFlagOf(viewCommand);
  if (!flag) return;
  window_.*flag->Field = !(window_.*flag->Field);
  StoreWindowSetting(parts_.Settings, kWindowSection, flag->Key, window_);
  ApplyBarFlags();
}

void FrmMain::ResetLayout() {
  layout_.Reset();
  for (const ViewFlag& flag : ViewFlags()) {
    window_.*flag.Field = flag.Command != kBigIcon;
    StoreWindowSetting(parts_.Settings, kWindowSection, flag.Key, window_);
  }
  restoreState(firstLayout_, kLayoutVersion);
  dock_->SetWanted(true);
  ApplyBarFlags();
  showNormal();
  place_.Reset();
  showMaximized();
}

void FrmMain::ShowStored() {
  place_.Restore(QSize(window_.WindowWidth, window_.WindowHeight));
  window_.WindowState == kMaximised ? showMaximized() : showNormal();
  workspace_->setFocus();
  timerConnect_.start();
  // The picture of the window comes first. One that is never painted (behind others, minimised) goes on too.
  timerFileOpen_.start(kUnpaintedMs);
}

void FrmMain::paintEvent(QPaintEvent* event) {
  QMainWindow::paintEvent(event);
  if (painted_) return;
  painted_ = true;
  if (timerFileOpen_.isActive()) timerFileOpen_.start(kFileOpenMs);
  QTimer::singleShot(kFileOpenMs, this, &FrmMain::FirstPainted);
}

void FrmMain::StoreWindowState() {
  window_.WindowState = isMaximized() ? kMaximised : kNormal;
  window_.WindowHeight = place_.Size().height();
  window_.WindowWidth = place_.Size().width();
  std::vector<SettingValue> values;
  for (const char* key : {"Windows States", "Windows Height", "Windows Width"}) {
    values.push_back(StoredSetting(WindowSettingRow(kWindowSection, key), window_));
  }
  parts_.Settings.PutSettings(values);
  layout_.Store(kBarsName, saveState(kLayoutVersion));
  place_.Store();
}

void FrmMain::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  place_.Resized();
}

void FrmMain::moveEvent(QMoveEvent* event) {
  QMainWindow::moveEvent(event);
  place_.Moved();
}

void FrmMain::SetMenuStyle(int style) {
  window_.MenuStyle = style;
  setStyleSheet(BarLookSheet(style, QApplication::palette()));
  update();
}

void FrmMain::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  // The looks are mixed from the palette.
  if (event->type() == QEvent::ApplicationPaletteChange && bars_) SetMenuStyle(window_.MenuStyle);
}

void FrmMain::FormatsChanged() {
  for (DocumentWindow* document : workspace_->Documents()) {
    // A grid that is written anew takes the text out of an editor that is open in it.
    document->CommitEditors();
    document->FormatsChanged();
  }
  link_->Live.FormatsChanged();
}

void FrmMain::SetWavelengthField(const std::string& text) {
  display_->SetField(DataDisplay::Field::Wavelength, QString::fromStdString(text));
}

void FrmMain::SetAbsField(const std::string& text) {
  display_->SetField(DataDisplay::Field::Abs, QString::fromStdString(text));
}

void FrmMain::SetTransField(const std::string& text) {
  display_->SetField(DataDisplay::Field::Trans, QString::fromStdString(text));
}

void FrmMain::SetStatus(StatusPane pane, const std::string& text) {
  status_->SetPane(pane, QString::fromStdString(text));
}

void FrmMain::SetRemark(const std::string& text) {
  remark_ = text;
  // Said with every reading that fails: it holds as long as the link is dead.
  if (closeRefused_ && link_->State.InstrumentConnected && text == Text(kCommunicationError))
    remark_ += kReleaseToClose;
  ShowRemarkLine();
}

void FrmMain::ShowReadout(const QString& text) {
  if (text == readout_) return;
  readout_ = text;
  ShowRemarkLine();
}

void FrmMain::ShowRemarkLine() {
  if (!readout_.isEmpty()) {
    status_->SetRemark(readout_, false);
  } else {
    status_->SetRemark(remark_.empty() ? IdleHint() : QString::fromStdString(remark_), !remark_.empty());
  }
}

void FrmMain::EnableSampleTimer(bool on) {
  on ? sampleTimer_.start() : sampleTimer_.stop();
}

void FrmMain::Lock(bool locked) {
  if (locked == inputLock_.IsOn()) return;
  if (locked) {
    inputLock_.Take();
    return;
  }
  QWidget* focus = inputLock_.Release();
  if (!focus) focus = ActiveForm();
  (focus ? focus : workspace_)->setFocus();
  files_.LookAgain();
}

QMenu* FrmMain::createPopupMenu() {
  auto* menu = new QMenu(this);
  for (const int command :
       {kMainBar, kOperateBar, kSpectrumBar, kDataViewBar, kExpandButton, kBigIcon, kStatusBar}) {
    menu->addAction(bars_->Action(command));
  }
  menu->addSeparator();
  menu->addAction(bars_->Action(kResetLayout));
  return menu;
}

}  // namespace spectrane
