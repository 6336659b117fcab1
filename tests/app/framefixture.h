#pragma once

#include <QDialog>
#include <QFile>
#include <QMdiSubWindow>

#include "app/frmmain.h"
#include "app/ground/commands.h"
#include "windowsupport/windowfixture.h"

namespace spectrane::testing_windows {

/// Does something in the dialog of that name once it is open; for dialogs that a timer brings up.
inline void WhenDialog(const char* name, std::function<void(QWidget&)> act) {
  auto* timer = new QTimer(qApp);
  QObject::connect(timer, &QTimer::timeout, timer, [timer, name = QLatin1String(name), act = std::move(act)] {
    QWidget* const dialog = QApplication::activeModalWidget();
    if (!dialog) return;
    timer->stop();
    timer->deleteLater();
    EXPECT_EQ(dialog->objectName(), name);
    act(*dialog);
    if (dialog->isVisible()) dialog->close();
  });
  timer->start(1);
}

/// The real main window with the simulated instrument on simulated time and a person with a script.
class FrameFixture : public ::testing::Test {
 protected:
  FrameFixture() { Ports.Put(1, Instrument); }
  ~FrameFixture() override { Main.reset(); }

  /// A program start; the connection that would come by itself waits for ConnectNow(). With `file` as on the
  /// command line; without one the New File guide comes up and is closed again, unless a document came back.
  void Start(const QString& file = {}, bool empty = true) {
    Main =
        std::make_unique<FrmMain>(ProgramParts{Ports, Time, Loop, Turn, Settings, Folder.Path(), Asks, file});
    if (file.isEmpty() && empty) WhenDialog("FrmNew", [](QWidget& guide) { guide.close(); });
    Main->ShowStored();
    auto* open = Main->findChild<QTimer*>(QStringLiteral("TimerFileOpen"));
    ASSERT_TRUE(QTest::qWaitFor([open] { return !open->isActive(); }));
    QCoreApplication::processEvents();
    connectWaits_ = ConnectTimer().isActive();
    ConnectTimer().stop();
  }
  void Restart(const QString& file = {}) {
    Main.reset();
    Start(file);
  }
  QTimer& ConnectTimer() { return *Main->findChild<QTimer*>(QStringLiteral("TimerConnect")); }
  /// Whether the start would have connected by itself.
  bool ConnectWaited() const { return connectWaits_; }
  void ConnectNow() {
    Main->mmuOperationConnect();
    Main->SampleTimer().stop();
    ASSERT_TRUE(Main->Link().State.InstrumentConnected);
  }
  /// Chooses a command as a menu does; fails the test when it is disabled.
  void Choose(int command) {
    QAction* action = Main->ActionOf(command);
    ASSERT_TRUE(action) << command;
    ASSERT_TRUE(action->isEnabled()) << command;
    action->trigger();
  }
  bool IsEnabled(int command) const { return Main->ActionOf(command)->isEnabled(); }
  /// A new photometry window whose option dialog is closed as it is.
  DocumentWindow* NewPhotometry() {
    InDialog("FrmBasicConfig", [](QWidget& dialog) { dialog.close(); });
    Choose(kNewBasic);
    return Main->ActiveForm();
  }
  std::string Pane(StatusPane pane) const {
    return Main->findChild<MainStatus*>()->PaneText(pane).toStdString();
  }
  std::string Remark() const { return Main->findChild<MainStatus*>()->Remark().toStdString(); }
  std::string FieldText(DataDisplay::Field field) const {
    return Main->findChild<DataDisplay*>()->FieldText(field).toStdString();
  }
  std::string Stored(const char* section, const char* key) {
    return Setting(Folder.Path()).GetSetting(section, key);
  }
  QString PathOf(const char* name) const { return QString::fromStdString(Folder.Path(name)); }
  QString WriteFile(const char* name, const QByteArray& bytes) {
    QFile file(PathOf(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    return file.fileName();
  }
  qsizetype WindowCount() const { return Main->findChild<Workspace*>()->Documents().size(); }

  TemporaryFolder Folder;
  ManualClock Time;
  YieldingLoop Loop{Time};
  NoExclusion Turn;
  SimulatedLine Instrument{QuietInstrument()};
  testing_link::MemoryPortList Ports{Time};
  Setting Settings{Folder.Path()};
  ScriptedQuestions Boxes;
  /// Whom the program asks from its next start on.
  Questions* Asks = &Boxes;
  std::unique_ptr<FrmMain> Main;

 private:
  bool connectWaits_ = false;
};

}  // namespace spectrane::testing_windows
