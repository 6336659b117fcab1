// A cell editor that is open while something else happens to its window.

#include <QAbstractItemView>
#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QPointer>
#include <QTest>

#include "app/ground/words.h"
#include "app/workspace.h"
#include "reentrancy/yieldyard.h"

namespace spectrane::testing_reentrancy {
namespace {

constexpr const char* kTyped = "8642";
constexpr const char* kEditedFiles[] = {"photometry.bas", "dye.qua", "multi.mul", "nucleic.dna"};

struct Disturbance {
  const char* Name;
  /// The window is still there afterwards.
  bool Stays;
  std::function<void(YieldYard&)> Do;
};

const std::vector<Disturbance>& Disturbances() {
  const auto command = [](int number) {
    return [number](YieldYard& yard) { yard.Main().RunCommand(number); };
  };
  static const std::vector<Disturbance> all = {
      {"Save", true, command(kSave)},
      {"Save as", true, command(kSaveAs)},
      {"text export", true, command(kOutputText)},
      {"workbook export", true, command(kOutputWorkbook)},
      {"Print", true, command(kPrint)},
      {"delete record, No", true, command(kDeleteRecord)},
      {"options", true, command(kTestOption)},
      {"Start", true, command(kStartTest)},
      {"Set Blank", true, command(kSetBlank)},
      {"new figures", true, [](YieldYard& yard) { yard.Main().FormatsChanged(); }},
      {"tabs", true, command(kTabWorkspace)},
      {"hand-over", true,
       [](YieldYard& yard) {
         yard.HandOver();
         yard.Settle();
       }},
      {"close, Cancel", true, [](YieldYard& yard) { yard.Main().mmuFileCloseOne(); }},
      {"Close All, Cancel", true, command(kCloseAll)},
      {"Exit, No", true, [](YieldYard& yard) { yard.Main().close(); }},
      {"close, saved", false,
       [](YieldYard& yard) {
         yard.Person.Says = {{Words(1210), Answer::Yes}};
         yard.Main().mmuFileCloseOne();
       }},
      {"delete record, Yes", false,
       [](YieldYard& yard) {
         const QString words = Words(1216) + QStringLiteral("<1>") + Words(1217);
         yard.Person.Says = {{words, Answer::Yes}};
         yard.Main().RunCommand(kDeleteRecord);
       }},
  };
  return all;
}

class OpenCells : public YieldYard {
 protected:
  OpenCells() {
    Start();
    Connect();
  }

  /// Begins to type into a cell; false when there is no such cell.
  bool TypeInto(const QModelIndex& cell, QAbstractItemView& grid) {
    if (!cell.flags().testFlag(Qt::ItemIsEditable)) return false;
    grid.setFocus();
    grid.setCurrentIndex(cell);
    grid.edit(cell);
    Settle();
    editor_ = grid.findChild<QLineEdit*>();
    if (!editor_) return false;
    editor_->selectAll();
    QTest::keyClicks(editor_.data(), QLatin1String(kTyped));
    return true;
  }
  void Disturb(const char* file, const Disturbance& disturbance, int column, int& cells) {
    CloseWindows();
    const QString path = PathOf(file);
    QFile::remove(path);
    ASSERT_TRUE(QFile::copy(QStringLiteral(SPECTRANE_SOURCE "/examples/") + QLatin1String(file), path));
    ASSERT_TRUE(Main().OpenDataFile(path));
    const QPointer<DocumentWindow> window(Main().ActiveForm());
    Person.Says.clear();
    Person.SavePath = PathOf("other");
    for (auto* grid : window->findChildren<QAbstractItemView*>()) {
      if (!grid->isVisible() || column >= grid->model()->columnCount()) continue;
      const QPersistentModelIndex cell(grid->model()->index(0, column));
      if (!TypeInto(cell, *grid)) continue;
      ++cells;
      Guard.start();
      disturbance.Do(*this);
      Settle();
      Guard.stop();
      // An editor may stay where it is, and what is typed in it counts all the same.
      if (window) window->CommitEditors();
      EXPECT_TRUE(window || !disturbance.Stays);
      if (!window || !disturbance.Stays) return;
      EXPECT_TRUE(cell.data().toString().contains(QLatin1String(kTyped)))
          << cell.data().toString().toStdString();
      ExpectIdle();
      return;
    }
  }

 private:
  QPointer<QLineEdit> editor_;
};

TEST_F(OpenCells, W07_WhatIsTypedIsKeptWhateverComes) {
  int cells = 0;
  for (const char* file : kEditedFiles) {
    const int first = cells;
    for (int column = 0; column < 8; ++column) {
      for (const Disturbance& disturbance : Disturbances()) {
        SCOPED_TRACE(std::string(file) + ", " + disturbance.Name + ", column " + std::to_string(column));
        const int before = cells;
        Disturb(file, disturbance, column, cells);
        if (HasFatalFailure()) return;
        // A column that takes no text.
        if (cells == before) break;
      }
      if (cells > first && !IsLongForm()) break;
    }
  }
  EXPECT_GE(cells, static_cast<int>(std::size(kEditedFiles) * Disturbances().size()));
}

}  // namespace
}  // namespace spectrane::testing_reentrancy
