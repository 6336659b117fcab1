#include "app/datadock.h"

#include <QAction>
#include <QClipboard>
#include <QFile>
#include <QMimeData>
#include <QTableView>

#include "app/framefixture.h"
#include "app/ground/frmdatatabel.h"

namespace spectrane::testing_windows {
namespace {

class DataDockTest : public FrameFixture {
 protected:
  DataDock& Dock() const { return *Main->findChild<DataDock*>(); }
  DocumentWindow* OpenSpectrum(const char* name) {
    EXPECT_TRUE(QFile::copy(QStringLiteral(SPECTRANE_SOURCE "/examples/holmium.wls"), PathOf(name)));
    EXPECT_TRUE(Main->OpenDataFile(PathOf(name)));
    return Main->ActiveForm();
  }
  /// Keys reach the window that the person works in.
  void ComeToTheFront() {
    Main->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(Main.get()));
  }
  void Activate(DocumentWindow* window) { Main->findChild<Workspace*>()->Activate(window); }
};

TEST_F(DataDockTest, IsNotThereWithoutADocumentThatHasTables) {
  Start();
  EXPECT_FALSE(Dock().isVisible());
  NewPhotometry();
  EXPECT_FALSE(Dock().isVisible());
  EXPECT_TRUE(Main->ActionOf(kDataTable)->isChecked());
}

TEST_F(DataDockTest, FollowsTheActiveDocument) {
  Start();
  DocumentWindow* const first = OpenSpectrum("a.wls");
  EXPECT_TRUE(Dock().isVisible());
  EXPECT_EQ(Dock().Table(), first->DataTable());
  EXPECT_TRUE(first->DataTable()->isVisible());
  EXPECT_EQ(Dock().windowTitle(), QStringLiteral("Wavelength Scan Record List"));
  DocumentWindow* const second = OpenSpectrum("b.wls");
  EXPECT_EQ(Dock().Table(), second->DataTable());
  EXPECT_FALSE(first->DataTable()->isVisible());
  DocumentWindow* const photometry = NewPhotometry();
  EXPECT_FALSE(Dock().isVisible());
  Activate(first);
  EXPECT_TRUE(Dock().isVisible());
  EXPECT_EQ(Dock().Table(), first->DataTable());
  Activate(photometry);
  EXPECT_FALSE(Dock().isVisible());
}

TEST_F(DataDockTest, GoesWithItsDocument) {
  Start();
  const QPointer<FrmDataTabel> table = OpenSpectrum("a.wls")->DataTable();
  Choose(kClose);
  QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_FALSE(table);
  EXPECT_FALSE(Dock().isVisible());
  EXPECT_TRUE(Dock().IsWanted()) << "the next document shows it again";
  OpenSpectrum("b.wls");
  EXPECT_TRUE(Dock().isVisible());
}

TEST_F(DataDockTest, ClosedByThePersonItStaysAwayUntilAskedFor) {
  Start();
  OpenSpectrum("a.wls");
  Dock().close();
  EXPECT_FALSE(Dock().isVisible());
  EXPECT_FALSE(Main->ActionOf(kDataTable)->isChecked());
  OpenSpectrum("b.wls");
  EXPECT_FALSE(Dock().isVisible());
  Restart();
  OpenSpectrum("c.wls");
  EXPECT_FALSE(Dock().isVisible()) << "remembered";
  Choose(kDataTable);
  EXPECT_TRUE(Dock().isVisible());
  EXPECT_TRUE(Main->ActionOf(kDataTable)->isChecked());
  Choose(kDataTable);
  EXPECT_FALSE(Dock().isVisible());
  Choose(kResetLayout);
  EXPECT_TRUE(Dock().isVisible());
}

TEST_F(DataDockTest, FloatsAndComesBack) {
  Start();
  DocumentWindow* const first = OpenSpectrum("a.wls");
  Dock().setFloating(true);
  EXPECT_TRUE(Dock().isVisible());
  EXPECT_TRUE(Dock().isWindow());
  NewPhotometry();
  EXPECT_FALSE(Dock().isVisible());
  Activate(first);
  EXPECT_TRUE(Dock().isVisible());
  EXPECT_TRUE(Dock().isFloating());
  Dock().setFloating(false);
  EXPECT_FALSE(Dock().isWindow());
}

TEST_F(DataDockTest, ThousandsOfRowsAreCopiedAsTheyStand) {
  Start();
  DocumentWindow* const window = OpenSpectrum("a.wls");
  ComeToTheFront();
  QTableView* const grid = window->DataTable()->Grid(0);
  grid->setFocus();
  grid->selectRow(1);
  QTest::keyClick(grid, Qt::Key_C, Qt::ControlModifier);
  const QString text = QGuiApplication::clipboard()->mimeData()->text();
  EXPECT_EQ(text.section(u'\n', 0, 0).count(u'\t'), 7);
  EXPECT_TRUE(text.section(u'\n', 1, 1).startsWith(QStringLiteral("2\t230.5\t"))) << text.toStdString();
  EXPECT_EQ(text.count(u'\n'), 2);
  grid->clearSelection();
  QTest::keyClick(grid, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->mimeData()->text().count(u'\n'), 862);
}

TEST_F(DataDockTest, TheKeyForTheNextBarReachesTheFigures) {
  Start();
  DocumentWindow* const window = OpenSpectrum("a.wls");
  ComeToTheFront();
  QTableView* const grid = window->DataTable()->Grid(0);
  for (int i = 0; i < 8 && QApplication::focusWidget() != grid; ++i) Choose(kNextPane);
  EXPECT_EQ(QApplication::focusWidget(), grid);
  Choose(kNextPane);
  EXPECT_TRUE(window->isAncestorOf(QApplication::focusWidget()));
}

TEST_F(DataDockTest, WidthsOfColumnsAreRemembered) {
  Start();
  OpenSpectrum("a.wls")->DataTable()->Grid(0)->setColumnWidth(2, 177);
  Restart();
  EXPECT_EQ(OpenSpectrum("b.wls")->DataTable()->Grid(0)->columnWidth(2), 177);
  Choose(kResetLayout);
}

TEST_F(DataDockTest, TheReadoutComesAndGoesInTheStatusBar) {
  Start();
  Main->SetRemark("Something went wrong.");
  Main->ShowReadout(QStringLiteral("No. 1"));
  EXPECT_EQ(Remark(), "No. 1");
  Main->ShowReadout({});
  EXPECT_EQ(Remark(), "Something went wrong.");
}

}  // namespace
}  // namespace spectrane::testing_windows
