#pragma once

#include <QMainWindow>
#include <QTimer>

#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "app/commandbars.h"
#include "app/datadisplay.h"
#include "app/documentkinds.h"
#include "app/filequeue.h"
#include "app/framecommands.h"
#include "app/frameplace.h"
#include "app/ground/layoutstore.h"
#include "app/ground/reportprinter.h"
#include "app/inputlock.h"
#include "app/mainstatus.h"
#include "app/recentfiles.h"
#include "app/workspace.h"
#include "tools/systembaseline.h"

namespace spectrane {

class DataDock;
struct LeftJournal;
struct CommandRow;

/// What the main window works with; all of it outlives the window.
struct ProgramParts {
  PortList& Ports;
  Clock& Time;
  MessageLoop& Loop;
  Exclusion& Turn;
  Setting& Settings;
  /// In UTF-8.
  std::string ApplicationFolder;
  /// Null: boxes and dialogs on the screen.
  Questions* Boxes = nullptr;
  /// Path of a data file to open at the start; empty for none.
  QString CommandLineFile = {};
};

/// The frame of all windows: commands and their routing, status bar, command bars, timers, live reading.
class FrmMain : public QMainWindow, public FrameCommands, public MainDisplay {
  Q_OBJECT

 public:
  explicit FrmMain(const ProgramParts& parts);
  ~FrmMain() override;

  /// Shows the window in the size and state that the settings have, and starts its timers.
  void ShowStored();

  // What other windows see.
  InstrumentLink& Link() override { return *link_; }
  Setting& Settings() override { return parts_.Settings; }
  WindowSettings& Window() override { return window_; }
  MainDisplay& Display() override { return *this; }
  Questions& Boxes() override { return *boxes_; }
  QWidget& Frame() override { return *this; }
  LayoutStore& Layout() override { return layout_; }
  ReportPrinter& Printer() override { return printer_; }
  DocumentWindow* ActiveForm() const override;
  void NewFile(int newFileType) override;
  QString NextCaption(int captionTextId) override;
  void ShowChild(DocumentWindow* window) override;
  bool ShowsFile(const QString& path, const DocumentWindow* besides) const override;
  void NoteFile(const QString& path) override;
  void SetMenuStyle(int style) override;
  void FormatsChanged() override;
  void DataTableChanged(DocumentWindow* document) override;
  QAction* ActionOf(int command) const override { return bars_->Action(command); }
  void ShowReadout(const QString& text) override;
  std::string JournalFolder() const override;
  void JournalFailed(const std::string& reason) override;
  void RunBegins(DocumentWindow* window) override;
  void RunEnds() override;

  // What the logic sees.
  void SetWavelengthField(const std::string& text) override;
  void SetAbsField(const std::string& text) override;
  void SetTransField(const std::string& text) override;
  void SetStatus(StatusPane pane, const std::string& text) override;
  void SetRemark(const std::string& text) override;
  bool DataDisplayShown() const override { return window_.DataDisplayToolbar; }
  void EnableSampleTimer(bool on) override;
  void Lock(bool locked) override;
  void UpdateCommands() override;

  // What the command table asks for.
  void mmuFileNew() override;
  void mmuFileOpen() override;
  void mmuFileCloseOne() override;
  bool mmuFileCloseAll() override;
  void ConnectCommand() override;
  void ReleaseCommand() override;
  void mmuOperationRezero() override;
  void SwitchLamp(int command) override;
  void mmuBaseLine() override;
  void ShowTool(int command) override;
  void CompareSpectra() override;
  void SmoothSpectrum() override;
  void CombineSpectra(int command) override;
  void ToggleBar(int viewCommand) override;
  void ToggleDataTable() override;
  void ResetLayout() override;
  void FocusNextPane() override;
  void Arrange(int windowCommand) override;
  void ShowOption() override;
  void ShowAbout() override;
  void ShowHelpBook() override;
  void ShowHelpFor(const QWidget* widget) override;

  /// What a menu, a button or a key does; nothing when it may not be chosen now. Yields.
  void RunCommand(int command);
  void mmuOperationConnect();
  /// Opens a data file in the window that its type calls for; every refusal has its own words. `chosen`: in
  /// the Open dialog, where a system baseline is refused. True when a window shows it.
  bool OpenDataFile(const QString& path, bool chosen = false);
  /// The same from outside (a drop, another copy of the program): waits for the end of a run.
  void OpenLater(const QString& path);
  /// To the front, out of the task bar.
  void ComeForward();
  /// A fault ended a command, or what a click in a dialog began: the window stays usable and says so.
  void CommandEndedEarly(const std::exception& fault);

  QTimer& SampleTimer() { return sampleTimer_; }

  /// Size and place of the window and its bars, for the next start.
  void StoreWindowState();
  /// The system ends the program: runs end at their next step, nobody is asked; what no file has stays in the
  /// journals.
  void EndRuns();
  /// Gives the instrument free, unless a command is under way. Yields.
  void LetGoOfInstrument();

 signals:
  /// The window stands on the screen for the first time: what the person does not wait for may begin.
  void FirstPainted();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void changeEvent(QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  QMenu* createPopupMenu() override;

 private:
  // Building (frmmain.cpp).
  void SetFrmMainFont();
  void LoadWindowSettings();
  void BuildBars();
  void BuildDataDock();
  void BuildTimers();
  void RestoreLayout();
  void ApplyBarFlags();
  void OnTimerFileOpen();
  void OnSampleTimer();
  void RunWaitingCommands();
  /// Runs what a timer or a command starts; a fault of it ends there and leaves the window usable.
  void Guarded(const std::function<void()>& work);

  // Commands (frmmaincommands.cpp).
  bool IsEnabled(const CommandRow& row) const;
  void ShowHelpPage(const QString& page);
  QString IdleHint() const;
  void ShowRemarkLine();
  bool QueryUnload();
  bool ChildrenMayClose();
  bool LinkMayClose();

  // Tools (frmmaintools.cpp).
  bool OpenBaseline(const QString& path);
  void ClearLampMarks();

  // What an earlier program left behind (frmmainjournals.cpp).
  void OfferLeftWork();
  void BringBack(LeftJournal left);

  // Documents (frmmainfiles.cpp).
  DocumentWindow* ShowNew(const DocumentKind& kind, const QString& caption);
  DocumentWindow* WindowOfFile(const DocumentKind& kind, const QString& path) const;
  QWidget* OpenDialog() const;
  bool RefuseToOpen(const QString& path, const QString& details);
  bool MayOpenFile() const;
  void TellRefusedFiles(qsizetype count, const QStringList& names);

  ProgramParts parts_;
  WindowSettings window_;
  LayoutStore layout_;
  FramePlace place_{*this, layout_};
  RecentFiles recent_{layout_};
  FileQueue files_{[this] { return MayOpenFile(); },
                   [this](const QString& path) { Guarded([&] { OpenDataFile(path); }); },
                   [this](qsizetype count, const QStringList& names) { TellRefusedFiles(count, names); }};
  InputLock inputLock_{*this};
  ReportPrinter printer_{*this};
  std::unique_ptr<Questions> ownBoxes_;
  Questions* boxes_;
  QString title_;
  Workspace* workspace_ = nullptr;
  MainStatus* status_ = nullptr;
  DataDisplay* display_ = nullptr;
  DataDock* dock_ = nullptr;
  std::unique_ptr<CommandBars> bars_;
  std::unique_ptr<InstrumentLink> link_;
  DocumentCounters counters_;
  SystemBaseline baseline_;
  QTimer timerFileOpen_{this};
  QTimer timerConnect_{this};
  QTimer sampleTimer_{this};
  QByteArray firstLayout_;
  std::string remark_;
  QString readout_;
  // Whose runs are under way, the first one in front; null: the main window's own.
  std::vector<DocumentWindow*> runs_;
  bool closing_ = false;
  // The last close was refused, as the instrument did not answer.
  bool closeRefused_ = false;
  bool painted_ = false;
  bool ticking_ = false;
  bool waitingRun_ = false;
  bool journalTold_ = false;
  std::int64_t lastTickMs_ = 0;
  // Chosen inside a live reading.
  std::deque<int> waitingCommands_;
};

}  // namespace spectrane
