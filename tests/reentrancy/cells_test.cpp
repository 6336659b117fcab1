// A cell editor that is open while something else happens to its window.

#include <QAbstractItemView>
#include <QApplication>
#include <QDir>
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
constexpr double kTypedNumber = 8642;
constexpr const char* kOther = "other";
constexpr const char* kEditedFiles[] = {"photometry.bas", "dye.qua", "multi.mul", "nucleic.dna"};

enum class Into { NoFile, OwnFile, OtherFile };

struct Disturbance {
  const char* Name;
  /// The window is still there afterwards.
  bool Stays;
  /// Where it puts what is typed.
  Into Writes;
  std::function<void(YieldYard&)> Do;
};

const std::vector<Disturbance>& Disturbances() {
  const auto command = [](int number) {
    return [number](YieldYard& yard) { yard.Main().RunCommand(number); };
  };
  static const std::vector<Disturbance> all = {
      {"Save", true, Into::OwnFile, command(kSave)},
      {"Save as", true, Into::OtherFile, command(kSaveAs)},
      {"text export", true, Into::OtherFile, command(kOutputText)},
      {"workbook export", true, Into::OtherFile, command(kOutputWorkbook)},
      {"Print", true, Into::NoFile, command(kPrint)},
      {"delete record, No", true, Into::NoFile, command(kDeleteRecord)},
      {"options", true, Into::NoFile, command(kTestOption)},
      {"Start", true, Into::NoFile, command(kStartTest)},
      {"Set Blank", true, Into::NoFile, command(kSetBlank)},
      {"new figures", true, Into::NoFile, [](YieldYard& yard) { yard.Main().FormatsChanged(); }},
      {"tabs", true, Into::NoFile, command(kTabWorkspace)},
      {"hand-over", true, Into::NoFile,
       [](YieldYard& yard) {
         yard.HandOver();
         yard.Settle();
       }},
      {"close, Cancel", true, Into::NoFile, [](YieldYard& yard) { yard.Main().mmuFileCloseOne(); }},
      {"Close All, Cancel", true, Into::NoFile, command(kCloseAll)},
      {"Exit, No", true, Into::NoFile, [](YieldYard& yard) { yard.Main().close(); }},
      {"close, saved", false, Into::OwnFile,
       [](YieldYard& yard) {
         yard.Person.Says = {{Words(1210), Answer::Yes}};
         yard.Main().mmuFileCloseOne();
       }},
      {"delete record, Yes", false, Into::NoFile,
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
  QStringList Others() {
    return QDir(PathOf("")).entryList({QLatin1String(kOther) + QStringLiteral(".*")}, QDir::Files);
  }
  void RemoveOthers() {
    for (const QString& name : Others()) QFile::remove(QDir(PathOf("")).filePath(name));
  }
  /// The file has what is typed, as text or as a number.
  void ExpectTypedIn(const Disturbance& disturbance, const QString& own) {
    QString path = own;
    if (disturbance.Writes == Into::OtherFile) {
      ASSERT_EQ(Others().size(), 1);
      path = QDir(PathOf("")).filePath(Others().first());
    }
    const std::string bytes = ReadBytes(path.toStdString());
    const std::string number(reinterpret_cast<const char*>(&kTypedNumber), sizeof(kTypedNumber));
    EXPECT_TRUE(bytes.find(kTyped) != std::string::npos || bytes.find(number) != std::string::npos)
        << path.toStdString() << " without it";
  }
  void Disturb(const char* file, const Disturbance& disturbance, int column, int& cells) {
    CloseWindows();
    const QString path = PathOf(file);
    QFile::remove(path);
    RemoveOthers();
    ASSERT_TRUE(QFile::copy(QStringLiteral(SPECTRANE_SOURCE "/examples/") + QLatin1String(file), path));
    ASSERT_TRUE(Main().OpenDataFile(path));
    const QPointer<DocumentWindow> window(Main().ActiveForm());
    Person.Says.clear();
    Person.SavePath = PathOf(kOther);
    for (auto* grid : window->findChildren<QAbstractItemView*>()) {
      if (!grid->isVisible() || column >= grid->model()->columnCount()) continue;
      const QPersistentModelIndex cell(grid->model()->index(0, column));
      if (!TypeInto(cell, *grid)) continue;
      ++cells;
      Guard.start();
      disturbance.Do(*this);
      Settle();
      Guard.stop();
      if (disturbance.Writes != Into::NoFile) ExpectTypedIn(disturbance, path);
      // An editor may stay where it is, and what is typed in it counts all the same.
      if (window) window->CommitEditors();
      EXPECT_EQ(!window.isNull(), disturbance.Stays || disturbance.Writes == Into::NoFile);
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
