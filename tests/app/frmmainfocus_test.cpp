#include <QTest>
#include <QToolButton>

#include "app/framefixture.h"

namespace spectrane {
namespace {

using testing_windows::WhenDialog;

/// Where the focus is while and after the window is locked for a connection.
class FrmMainFocus : public testing_windows::FrameFixture {
 protected:
  void Activate() {
    Main->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(Main.get()));
  }
  void StartActive() {
    Start();
    Activate();
  }
  /// The table of a new photometry window, with the focus.
  QWidget* NewGrid() {
    NewPhotometry();
    Activate();
    auto* grid = Main->findChild<QWidget*>(QStringLiteral("DataGrid"));
    grid->setFocus();
    EXPECT_EQ(QApplication::focusWidget(), grid);
    return grid;
  }
  /// Connects while the dialog of `command` is open; `during` runs while the window is locked.
  void ConnectBehind(int command, const char* name, std::function<void(QWidget&)> during = {}) {
    bool locked = false;
    WhenDialog(name, [&](QWidget& dialog) {
      ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
      Loop.OnYield = [&] {
        if (Main->isEnabled()) return;
        if (during) during(dialog);
        locked = true;
      };
      Main->mmuOperationConnect();
      Main->SampleTimer().stop();
      Loop.OnYield = nullptr;
      dialog.close();
    });
    Choose(command);
    EXPECT_TRUE(locked);
    EXPECT_TRUE(Main->isEnabled());
    Activate();
  }
};

TEST_F(FrmMainFocus, IsBackAfterAConnection) {
  Start();
  QWidget* grid = NewGrid();
  Main->mmuOperationConnect();
  EXPECT_EQ(QApplication::focusWidget(), grid);
}

TEST_F(FrmMainFocus, IsInTheDocumentAfterADialogThatWasOpenDuringAConnection) {
  Start();
  QWidget* grid = NewGrid();
  ConnectBehind(kProgramOption, "FrmOption");
  EXPECT_EQ(QApplication::focusWidget(), grid);
}

TEST_F(FrmMainFocus, IsInTheEmptyWorkspaceAfterADialogThatWasOpenDuringAConnection) {
  StartActive();
  ConnectBehind(kNewFileGuide, "FrmNew");
  EXPECT_EQ(QApplication::focusWidget(), Main->findChild<Workspace*>());
}

TEST_F(FrmMainFocus, IsInTheDocumentAfterADialogThatWasClosedDuringAConnection) {
  Start();
  QWidget* grid = NewGrid();
  ConnectBehind(kNewFileGuide, "FrmNew", [](QWidget& guide) { guide.close(); });
  EXPECT_EQ(QApplication::focusWidget(), grid);
}

TEST_F(FrmMainFocus, StaysInADialogThatIsOpenDuringAConnection) {
  StartActive();
  QWidget* before = nullptr;
  ConnectBehind(kNewFileGuide, "FrmNew", [&](QWidget& guide) {
    EXPECT_TRUE(guide.isEnabled());
    before = QApplication::focusWidget();
    ASSERT_TRUE(before);
    EXPECT_EQ(before->window(), &guide);
    QTest::keyClick(before, Qt::Key_Down);
    EXPECT_TRUE(guide.isVisible());
  });
  EXPECT_TRUE(before);
}

TEST_F(FrmMainFocus, GoesToTheBarsByKeyAfterAConnectionBehindADialog) {
  Start();
  NewGrid();
  ConnectBehind(kProgramOption, "FrmOption");
  Choose(kNextPane);
  EXPECT_TRUE(qobject_cast<QToolButton*>(QApplication::focusWidget()));
}

}  // namespace
}  // namespace spectrane
