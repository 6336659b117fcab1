#include "app/frmmain.h"

#include <QApplication>
#include <QDialog>
#include <QFileInfo>
#include <QMenu>
#include <QScreen>
#include <QShowEvent>
#include <QStyle>
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
constexpr const char* kWindowSection = "Main Window";
constexpr QSize kFirstSize(1120, 720);
/// So much of a window must be on a screen [px].
constexpr int kVisible = 80;
/// At the sides and below a window [px].
constexpr int kFrameWidth = 4;

const QString kBarsName = QStringLiteral("FrmMain/Bars");
const QString kDataTableName = QStringLiteral("FrmMain/DataTable");
const QString kPlaceName = QStringLiteral("FrmMain/Place");

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
  window_.WindowHeight = kFirstSize.height();
  window_.WindowWidth = kFirstSize.width();
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
  bars_->BuildMenus([this](QMenu& menu) { FillRecentFiles(menu); });
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
  connect(&sampleTimer_, &QTimer::timeout, this, [this] { OnSampleTimer(); });
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
  for (const CommandRow& row : CommandRows()) {
    const char* key = nullptr;
    const bool* flag = FlagOf(row.Number, &key);
    if (!flag) continue;
    bars_->Action(row.Number)->setChecked(*flag);
    if (QToolBar* bar = bars_->Bar(row.Number)) bar->setVisible(*flag);
  }
  display_->setVisible(window_.DataDisplayToolbar);
  status_->setVisible(window_.StatusToolbar);
  workspace_->SetTabs(window_.TabWorkspace);
  bars_->ShowExpandButtons(window_.ExpandButton);
  bars_->SetBigIcons(window_.BigIcon);
  bars_->Action(kDataTable)->setChecked(dock_->IsWanted());
  DataTableChanged(ActiveForm());
}

bool* FrmMain::FlagOf(int viewCommand, const char** key) {
  struct Flag {
    int Command;
    const char* Key;
    bool WindowSettings::*Field;
  };
  static constexpr Flag kFlags[] = {
      {kMainBar, "Main toolsbar", &WindowSettings::MainToolbar},
      {kSpectrumBar, "spectrum toolsbar", &WindowSettings::SpectrumToolbar},
      {kOperateBar, "Operate toolsbar", &WindowSettings::OperateToolbar},
      {kDataViewBar, "data display toolsbar", &WindowSettings::DataDisplayToolbar},
      {kExpandButton, "Expand Button", &WindowSettings::ExpandButton},
      {kTabWorkspace, "TabWorkspace", &WindowSettings::TabWorkspace},
      {kBigIcon, "Big Icon", &WindowSettings::BigIcon},
      {kStatusBar, "status toolsbar", &WindowSettings::StatusToolbar},
  };
  for (const Flag& flag : kFlags) {
    if (flag.Command != viewCommand) continue;
    *key = flag.Key;
    return &(window_.*flag.Field);
  }
  return nullptr;
}

void FrmMain::ToggleBar(int viewCommand) {
  const char* key = nullptr;
  bool* flag = FlagOf(viewCommand, &key);
  if (!flag) return;
  *flag = !*flag;
  StoreWindowSetting(parts_.Settings, kWindowSection, key, window_);
  ApplyBarFlags();
}

void FrmMain::ResetLayout() {
  layout_.Reset();
  for (const CommandRow& row : CommandRows()) {
    const char* key = nullptr;
    bool* flag = FlagOf(row.Number, &key);
    if (!flag) continue;
    *flag = row.Number != kBigIcon;
    StoreWindowSetting(parts_.Settings, kWindowSection, key, window_);
  }
  restoreState(firstLayout_, kLayoutVersion);
  dock_->SetWanted(true);
  ApplyBarFlags();
  showNormal();
  normal_ = QRect(screen()->availableGeometry().topLeft() + QPoint(40, 40), kFirstSize);
  resize(normal_.size().boundedTo(screen()->availableGeometry().size()));
  showMaximized();
}

QRect FrmMain::PlaceOnScreen() const {
  const QSize size(window_.WindowWidth, window_.WindowHeight);
  const QByteArray stored = layout_.Bytes(kPlaceName);
  const QScreen* screen = QGuiApplication::primaryScreen();
  QRect place(QPoint(), size);
  if (const QList<QByteArray> parts = stored.split(','); parts.size() == 2) {
    place.moveTopLeft(QPoint(parts[0].toInt(), parts[1].toInt()));
    for (const QScreen* each : QGuiApplication::screens()) {
      const QRect shown = each->availableGeometry().intersected(place);
      if (shown.width() >= kVisible && shown.height() >= kVisible &&
          each->availableGeometry().top() <= place.top()) {
        screen = each;
      }
    }
  } else {
    place.moveCenter(screen->availableGeometry().center());
  }
  // The window's frame needs room as well, above all its title bar.
  const int title = style()->pixelMetric(QStyle::PM_TitleBarHeight);
  const QRect area = screen->availableGeometry().adjusted(kFrameWidth, title, -kFrameWidth, -kFrameWidth);
  place.setSize(place.size().boundedTo(area.size()).expandedTo(minimumSizeHint().boundedTo(area.size())));
  place.moveLeft(std::clamp(place.left(), area.left(), area.right() - place.width() + 1));
  place.moveTop(std::clamp(place.top(), area.top(), area.bottom() - place.height() + 1));
  return place;
}

void FrmMain::ShowStored() {
  normal_ = PlaceOnScreen();
  setGeometry(normal_);
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
  window_.WindowHeight = normal_.height();
  window_.WindowWidth = normal_.width();
  std::vector<SettingValue> values;
  for (const char* key : {"Windows States", "Windows Height", "Windows Width"}) {
    values.push_back(StoredSetting(WindowSettingRow(kWindowSection, key), window_));
  }
  parts_.Settings.PutSettings(values);
  layout_.Store(kBarsName, saveState(kLayoutVersion));
  layout_.Store(kPlaceName, QByteArray::number(normal_.x()) + ',' + QByteArray::number(normal_.y()));
}

void FrmMain::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  if (isVisible() && !isMaximized() && !isMinimized() && !isFullScreen()) normal_.setSize(size());
}

void FrmMain::moveEvent(QMoveEvent* event) {
  QMainWindow::moveEvent(event);
  if (isVisible() && !isMaximized() && !isMinimized() && !isFullScreen())
    normal_.moveTopLeft(geometry().topLeft());
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
  const InstrumentState& state = link_->State;
  if (!state.InstrumentConnected || display_->FieldText(DataDisplay::Field::Trans).isEmpty()) return;
  link_->Live.ToolsBarWaveLength(state.CurrentWavelength);
  link_->Live.ToolsBarAbsData(state.CurrentAbs);
  link_->Live.ToolsBarTransData(state.CurrentTrans);
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
  if (locked == locked_) return;
  locked_ = locked;
  if (locked) {
    // A window that is disabled forgets which of its widgets has the focus, its dialogs do so with it. The
    // next time it becomes active it would give the focus to the first button of a bar.
    focusBeforeLock_ = focusWidget();
    QList<std::pair<QDialog*, QPointer<QWidget>>> dialogs;
    for (QDialog* dialog : findChildren<QDialog*>()) dialogs.append({dialog, dialog->focusWidget()});
    setEnabled(false);
    // A dialog is a window of its own: what is typed into one that is open must not get lost.
    for (const auto& [dialog, focus] : dialogs) {
      dialog->setEnabled(true);
      if (focus) focus->setFocus();
    }
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    return;
  }
  setEnabled(true);
  QGuiApplication::restoreOverrideCursor();
  QWidget* focus = focusBeforeLock_;
  if (!focus) focus = ActiveForm();
  (focus ? focus : workspace_)->setFocus();
  OpenWaitingLater();
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
