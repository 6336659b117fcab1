#pragma once

#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

#include "app/ground/words.h"
#include "files/filesupport.h"
#include "files/samplefiles.h"
#include "modes/windows/frmdna.h"
#include "modes/windows/frmmulti.h"
#include "windowsupport/windowfixture.h"

namespace spectrane::testing_windows {

/// A window of samples on show.
template <typename WindowT>
class SamplesWindow : public WindowFixture {
 protected:
  void Open() {
    delete Window.data();
    Window = new WindowT(Main);
    Present(*Window);
    Grid = Find<QTableView>(*Window, "DataGrid");
  }
  ~SamplesWindow() override { delete Window.data(); }

  int Rows() const { return Grid->model()->rowCount(); }
  int Columns() const { return Grid->model()->columnCount(); }
  QString Cell(int row, int column) const { return Grid->model()->index(row, column).data().toString(); }
  std::string RowText(int row) const {
    QStringList cells;
    for (int column = 0; column < Columns(); ++column) cells += Cell(row, column);
    return cells.join(u'|').toStdString();
  }
  std::string Headings() const {
    QStringList titles;
    for (int column = 0; column < Columns(); ++column)
      titles += Grid->model()->headerData(column, Qt::Horizontal).toString();
    return titles.join(u'|').toStdString();
  }
  QLineEdit* Editor() const {
    for (QLineEdit* editor : Grid->findChildren<QLineEdit*>(QStringLiteral("EditText")))
      if (editor->isVisible()) return editor;
    return nullptr;
  }
  /// Clicks a cell and types over what the editor has.
  void TypeInto(int row, int column, const char* text) {
    const QPoint place = Grid->visualRect(Grid->model()->index(row, column)).center();
    QTest::mouseClick(Grid->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    ASSERT_NE(Editor(), nullptr);
    Editor()->selectAll();
    QTest::keyClicks(Editor(), QString::fromUtf8(text));
  }
  /// Opens the options of the window and does something there.
  void Options(const char* name, std::function<void(QWidget& dialog)> act) {
    bool opened = false;
    InDialog(name, [&opened, act = std::move(act)](QWidget& dialog) {
      opened = true;
      act(dialog);
    });
    Window->ShowConfigWindow();
    EXPECT_TRUE(opened);
  }
  static void Click(QWidget& dialog, const char* button) {
    QTest::mouseClick(Find<QAbstractButton>(dialog, button), Qt::LeftButton);
  }
  static void Type(QWidget& dialog, const char* field, const char* text) {
    auto* const line = Find<QLineEdit>(dialog, field);
    line->setFocus();
    line->selectAll();
    QTest::keyClick(line, Qt::Key_Delete);
    QTest::keyClicks(line, QString::fromUtf8(text));
  }
  static std::string Shown(QWidget& dialog, const char* field) {
    return Find<QLineEdit>(dialog, field)->text().toStdString();
  }
  std::string Stored(const char* section, const char* key) { return Settings.GetSetting(section, key); }

  QPointer<WindowT> Window;
  QTableView* Grid = nullptr;
};

class MultiWindow : public SamplesWindow<FrmMulti> {
 protected:
  /// Opens a file with two samples; the results in it are its own.
  void OpenTable(std::int32_t wavelengths) { OpenTable(MultiTable(wavelengths)); }
  void OpenTable(const MultiOption& option) {
    ASSERT_TRUE(WriteSamples(MultiModule(), Folder.Path("run.mul"), option,
                             std::vector{MultiSample("one", 0.5, 71.25), MultiSample("two", 1.0, 7.125)}));
    Open();
    ASSERT_TRUE(Window->mmuOpenFile(PathOf("run.mul")));
  }
};

class DNAWindow : public SamplesWindow<FrmDNA> {
 protected:
  void OpenTable(const DNAOption& option = DNATable()) {
    ASSERT_TRUE(WriteSamples(DNAModule(), Folder.Path("run.dna"), option,
                             std::vector{DNASample("a", 0.5, 0.3, 0.05), DNASample("b", 0.5, 0.25, 0.25)}));
    Open();
    ASSERT_TRUE(Window->mmuOpenFile(PathOf("run.dna")));
  }
};

}  // namespace spectrane::testing_windows
