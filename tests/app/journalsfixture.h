#pragma once

#include <QAbstractItemView>

#include <filesystem>
#include <map>
#include <string>

#include "app/framefixture.h"
#include "files/filesupport.h"
#include "modes/windows/frmbasic.h"

namespace spectrane::testing_windows {

/// The main window, a program that dies, and the next start.
class FrmMainJournals : public FrameFixture {
 protected:
  using Kept = std::map<std::string, std::string>;

  std::string JournalFolder() const { return Folder.Path("journal"); }
  /// The journals as they lie on the disk.
  Kept Journals() const {
    Kept kept;
    if (std::filesystem::exists(JournalFolder())) {
      for (const auto& file : std::filesystem::directory_iterator(JournalFolder()))
        kept[file.path().string()] = ReadBytes(file.path().string());
    }
    return kept;
  }
  /// What a program leaves behind that was killed when the disk had these journals.
  void DieWith(const Kept& kept) {
    Main.reset();
    std::filesystem::remove_all(JournalFolder());
    std::filesystem::create_directories(JournalFolder());
    for (const auto& [path, bytes] : kept) WriteBytes(path, bytes);
  }
  void Die() { DieWith(Journals()); }
  /// The only document that a journal names.
  static Journal Only(const Kept& kept) {
    Journal journal;
    EXPECT_EQ(kept.size(), 1u);
    EXPECT_TRUE(!kept.empty() && ReadJournal(kept.begin()->second, journal));
    return journal;
  }
  /// The next start; the question names this, and is answered so.
  void StartAgain(const QString& lines, Answer answer, const QString& file = {},
                  ScriptedQuestions::Meanwhile meanwhile = {}) {
    const bool one = lines.count(u'\n') == 1;
    const QString question =
        one ? QStringLiteral(
                  "The program ended before this was saved:\n\n%1\n"
                  "Bring it back? No gives it up, Cancel asks again at the next start.")
            : QStringLiteral(
                  "The program ended before these were saved:\n\n%1\n"
                  "Bring them back? No gives them up, Cancel asks again at the next start.");
    Boxes.ExpectYesNoCancel(question.arg(lines), answer, std::move(meanwhile));
    Start(file, answer != Answer::Yes);
  }
  void Measure(int rows) {
    for (int i = 0; i < rows; ++i) Choose(kStartTest);
  }
  FrmBasic* Photometry(int rows) {
    Start();
    ConnectNow();
    auto* window = dynamic_cast<FrmBasic*>(NewPhotometry());
    Choose(kSetBlank);
    Measure(rows);
    return window;
  }
  FrmBasic& Basic() { return dynamic_cast<FrmBasic&>(*Main->ActiveForm()); }
  QString CopyOfExample(const char* name) {
    const QString path = PathOf(name);
    EXPECT_TRUE(QFile::copy(QStringLiteral(SPECTRANE_SOURCE "/examples/") + QLatin1String(name), path));
    return path;
  }
  void Type(const char* grid, int row, int column, const char* text) {
    auto* view = Main->ActiveForm()->findChild<QAbstractItemView*>(QLatin1String(grid));
    ASSERT_TRUE(view);
    ASSERT_TRUE(view->model()->setData(view->model()->index(row, column), QString::fromUtf8(text)));
  }
  void CloseActive() { Main->ActiveForm()->parentWidget()->close(); }
};

}  // namespace spectrane::testing_windows
