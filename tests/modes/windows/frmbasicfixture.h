#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QTableView>

#include "app/ground/words.h"
#include "modes/windows/frmbasic.h"
#include "windowsupport/windowfixture.h"

namespace spectrane::testing_windows {

/// A photometry window on show, with the instrument connected unless the test starts without.
class BasicWindow : public WindowFixture {
 protected:
  void Open() {
    Window = new FrmBasic(Main);
    Present(*Window);
    Grid = Find<QTableView>(*Window, "DataGrid");
  }
  void OpenConnected() {
    ConnectNow();
    Open();
  }
  void OpenWithBlank() {
    OpenConnected();
    Window->mmuOperationRezero();
    ASSERT_TRUE(Window->Test().BlankDone);
  }
  void Measure(int rows) {
    for (int i = 0; i < rows; ++i) Window->mmuStartTest();
  }
  ~BasicWindow() override { delete Window.data(); }

  int Rows() const { return Grid->model()->rowCount(); }
  QString Cell(int row, int column) const { return Grid->model()->index(row, column).data().toString(); }
  QLineEdit* Editor() const {
    // One that was closed is there, hidden, until the next round of the message loop.
    for (QLineEdit* editor : Grid->findChildren<QLineEdit*>(QStringLiteral("EditText")))
      if (editor->isVisible()) return editor;
    return nullptr;
  }
  /// Opens the note of a row by F2 and types over it.
  void TypeNote(int row, const char* text) {
    Grid->selectRow(row);
    QTest::keyClick(Grid, Qt::Key_F2);
    ASSERT_NE(Editor(), nullptr);
    Editor()->selectAll();
    QTest::keyClicks(Editor(), QString::fromUtf8(text));
  }
  void SaveTo(const QString& path) {
    Boxes.ExpectSaveName(Words(1193), path);
    ASSERT_TRUE(Window->mmuSaveFile());
  }

  QPointer<FrmBasic> Window;
  QTableView* Grid = nullptr;
};

}  // namespace spectrane::testing_windows
