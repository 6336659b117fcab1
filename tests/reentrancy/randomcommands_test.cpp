// Commands, keys, clicks, cells and answers at random, in the whole main window.

#include <QApplication>
#include <QDir>

#include <cstdlib>
#include <iostream>

#include "app/workspace.h"
#include "files/file.h"
#include "reentrancy/randomhand.h"

namespace spectrane::testing_reentrancy {
namespace {

constexpr int kPresses = 600;
/// Fewest kinds of files that have to be saved on the way.
constexpr qsizetype kSavedKinds = 3;
/// After so many the program is begun anew.
constexpr int kMostWindows = 12;

class RandomCommands : public YieldYard {
 protected:
  /// Answers what a measuring person would see to it: files of every kind.
  void PutFiles() {
    for (const char* name : {"photometry.bas", "dye.qua", "enzyme.tis", "holmium.wls",
                             "holmium-processed.wls", "multi.mul", "nucleic.dna", "baseline.bsl"}) {
      ASSERT_TRUE(
          QFile::copy(QStringLiteral(SPECTRANE_SOURCE "/examples/") + QLatin1String(name), PathOf(name)));
    }
  }
  /// Something of each kind to work on.
  void Begin() {
    Start();
    for (const QString& name : QDir(PathOf("")).entryList(DataFilePatterns(), QDir::Files)) {
      if (!name.startsWith(QLatin1String(kSavedName))) Main().OpenLater(QDir(PathOf("")).filePath(name));
    }
    Settle();
  }
  void Press(unsigned seed, int presses) {
    RandomPerson person(Loop, PathOf(""));
    person.Random.seed(seed);
    Asks = &person;
    Begin();
    RandomHand hand(*this, person);
    while (hand.Count < presses && !HasFailure()) {
      hand.Act();
      QCoreApplication::processEvents();
      QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
      if (Main().isVisible() && WindowCount() > kMostWindows) CloseWindows();
      if (!Main().isVisible() || WindowCount() == 0) Begin();
    }
    if (HasFailure()) std::cout << hand.Trace.join(u'\n').toStdString() << std::endl;
    Loop.Look = {};
    person.Always = Answer::No;
    Settle();
  }
  /// Every data file that stands in the folder is whole; some of several kinds were saved.
  void ExpectFilesOpen() {
    Asks = &Person;
    Start();
    int files = 0;
    QStringList saved;
    for (const QString& name : QDir(PathOf("")).entryList(DataFilePatterns(), QDir::Files)) {
      std::int32_t type = 0;
      FileFault fault;
      const QString path = QDir(PathOf("")).filePath(name);
      EXPECT_TRUE(GetFileType(path.toStdString(), type, &fault)) << name.toStdString() << FaultWords(fault);
      EXPECT_TRUE(Main().OpenDataFile(path))
          << name.toStdString() << ": " << Person.Asked.join(u' ').toStdString();
      CloseWindows();
      ++files;
      if (name.startsWith(QLatin1String(kSavedName))) saved.append(QFileInfo(name).suffix());
    }
    const qsizetype savedFiles = saved.size();
    saved.removeDuplicates();
    std::cout << "files: " << files << ", saved: " << savedFiles << " of " << saved.size() << " kinds"
              << std::endl;
    EXPECT_GE(saved.size(), kSavedKinds) << "files of too few kinds to say anything of";
  }
};

TEST_F(RandomCommands, W10_AfterThousandsOfThemTheProgramLivesAndEverySavedFileOpens) {
  const char* const pressesText = std::getenv("SPECTRANE_PRESSES");
  const char* const seedText = std::getenv("SPECTRANE_SEED");
  const auto seed = static_cast<unsigned>(seedText ? std::atoi(seedText) : 1);
  const int presses = pressesText ? std::atoi(pressesText) : kPresses;
  std::cout << "seed " << seed << ", " << presses << " presses" << std::endl;
  PutFiles();
  Press(seed, presses);
  ASSERT_FALSE(HasFailure());
  ExpectIdle();
  ExpectFilesOpen();
  // And it measures.
  SetSampler(false);
  Connect();
  Open(6);
  Choose(kSetBlank);
  Choose(kStartTest);
  EXPECT_TRUE(Main().ActiveForm()->IsWorkUnsaved());
  ExpectIdle();
}

}  // namespace
}  // namespace spectrane::testing_reentrancy
