// Everything that can come in where a procedure yields: each procedure times each happening times each yield.

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>

#include <cstdlib>
#include <iostream>
#include <random>

#include "app/ground/words.h"
#include "app/workspace.h"
#include "reentrancy/quickruns.h"

namespace spectrane::testing_reentrancy {
namespace {

/// Cells tried in the default tests, and after which a broken program is broken enough.
constexpr std::size_t kCells = 60;
constexpr int kMostFailures = 20;
constexpr int kSaveRecords = 1210;
constexpr int kCloseDialogFirst = 1219;

using Effect = Happening::Effect;

struct Cell {
  const Procedure* What;
  const Undisturbed* Alone;
  int Yield;
  const Happening* Comes;
};

/// How things stood when it came, and how many windows are there afterwards.
struct Then {
  qsizetype Windows = 0;
  bool InRun = false;
  bool WindowMeasures = false;
  std::string Records;
};

constexpr const char* kUnplugged = "unplugged";
constexpr const char* kSampleTimer = "SampleTimer";
constexpr const char* kConnectTimer = "TimerConnect";
constexpr const char* kHandOver = "hand-over";

/// Where there may be nothing for it to happen to: no line is open at some yields of what opens and closes
/// it, and everything else that asks the instrument stops the live reading.
bool MayFindNothing(const Cell& cell) {
  static const std::set<std::string> open = {"connect by command", "connect by the timer",
                                             "connect without an instrument", "release"};
  if (cell.Comes->Name == kUnplugged) return open.contains(cell.What->Name);
  return cell.Comes->Name == kSampleTimer && cell.What->Name != std::string_view("live reading");
}

class YieldTimesEverything : public QuickRuns {
 protected:
  void Try(const Cell& cell) {
    Prepare(*cell.What);
    if (HasFatalFailure()) return;
    const qsizetype windows = WindowCount();
    Then then;
    bool came = false;
    Person.Says = cell.Comes->Says;
    Person.SavePath = PathOf("saved" + std::to_string(++Cells) + ".dat");
    WasNothing = false;
    Loop.Arm(cell.Yield, [&](bool inBox) {
      came = !inBox || cell.Comes->PassesBoxes;
      then = {windows, State().RunUnderWay, Main().ActiveForm() && Main().ActiveForm()->RunsNow(),
              RecordsOf(Measured).Records};
      Guard.start();
      cell.Comes->Do(*this);
      if (cell.Comes->Name == kHandOver) ++then.Windows;
    });
    Loop.Look = [&] { EXPECT_LE(WindowCount(), windows) << "a window opened inside"; };
    cell.What->Run(*this);
    Loop.Look = {};
    Settle();
    Guard.stop();
    if (cell.Comes->Name == kHandOver) AwaitFile(then);
    EXPECT_TRUE(came);
    if (WasNothing) ++Nothings;
    EXPECT_TRUE(!WasNothing || MayFindNothing(cell)) << "it found nothing to happen to";
    EXPECT_LE(Loop.Deepest, 2);
    CheckEnd(cell, then);
    CheckRecords(cell, then);
    if (!HasFatalFailure()) ExpectWhole(*cell.What, *cell.Alone);
  }

  /// A file waits behind a box and is looked for by the clock; where the dialog of a tool is open then, words
  /// come in its place.
  void AwaitFile(Then& then) {
    constexpr int kLongestMs = 2000;
    const auto refused = [this] {
      return std::ranges::any_of(
          Person.Asked, [](const QString& words) { return words.contains(Words(kCloseDialogFirst)); });
    };
    const QDeadlineTimer end(kLongestMs);
    while (Main().isVisible() && WindowCount() < then.Windows && !refused() && !end.hasExpired()) Settle();
    if (refused()) --then.Windows;
  }

  void CheckEnd(const Cell& cell, const Then& then) {
    if (cell.Comes->What == Effect::None && then.InRun) {
      EXPECT_EQ(Requests, cell.Alone->Requests) << "other requests than without it";
      EXPECT_TRUE(BlankNow() == cell.Alone->NewBlank.value_or(BlankBefore))
          << "another blank than without it";
      // A window that measures nothing and has nothing to save goes unasked.
      EXPECT_TRUE(WindowCount() == then.Windows || (cell.Comes->Closes && !then.WindowMeasures));
      EXPECT_TRUE(Intruders.isEmpty()) << Intruders.join(u' ').toStdString();
    }
    if (!Main().isVisible()) return;
    ExpectIdle();
    const bool reads = cell.Comes->What == Effect::None && State().InstrumentConnected;
    EXPECT_TRUE(!reads || Main().SampleTimer().isActive()) << "the live reading goes on";
  }

  /// The document, or the file that is left of it, has what was measured, all of it or what came before the
  /// end.
  void CheckRecords(const Cell& cell, const Then& then) {
    const std::string whole = Before.Records + cell.Alone->Records;
    if (Measured) {
      const ShownRecords now = RecordsOf(Measured);
      if (cell.Comes->What == Effect::None && then.InRun) {
        EXPECT_EQ(now.Records, whole) << "other records than without it";
        EXPECT_EQ(now.Option, cell.Alone->NewOption.value_or(Before.Option))
            << "other options than without it";
      }
      EXPECT_TRUE(whole.starts_with(now.Records));
      EXPECT_GE(now.Records.size() + MayGo(cell, now), then.Records.size()) << "records are gone";
    }
    const auto said = cell.Comes->Says.find(Words(kSaveRecords));
    if (said == cell.Comes->Says.end() || said->second != Answer::Yes || !Person.Asked.contains(said->first))
      return;
    EXPECT_FALSE(Measured) << "a window that was to close when its work was saved";
    const ShownRecords saved = Saved();
    EXPECT_TRUE(whole.starts_with(saved.Records));
    EXPECT_GE(saved.Records.size() + MayGo(cell, saved), then.Records.size()) << "records are gone";
    ++Files;
  }

  /// A time scan that is stopped loses the point read last.
  static std::size_t MayGo(const Cell& cell, const ShownRecords& records) {
    return cell.What->OwnsRecords && cell.Comes->What == Effect::Ends ? records.RecordSize : 0;
  }

  /// What the program finds in the one file of this cell, which goes.
  ShownRecords Saved() {
    QDir folder(PathOf(""));
    const QStringList names = folder.entryList({QStringLiteral("saved%1.*").arg(Cells)}, QDir::Files);
    EXPECT_EQ(names.size(), 1) << "files of a close whose work was to be saved";
    if (names.size() != 1) return {};
    if (!Main().isVisible()) Start();
    EXPECT_TRUE(Main().OpenDataFile(folder.filePath(names[0])));
    ShownRecords saved = RecordsOf(Main().ActiveForm());
    CloseWindows();
    folder.remove(names[0]);
    return saved;
  }

  std::size_t Cells = 0;
  std::size_t Nothings = 0;
  std::size_t Files = 0;
};

std::string NameOf(const Cell& cell) {
  return std::string(cell.What->Name) + ", yield " + std::to_string(cell.Yield) + ": " + cell.Comes->Name;
}

/// Where a box is open, a person does not get at the windows behind it.
std::vector<Cell> CellsOf(const std::vector<Undisturbed>& alone) {
  std::vector<Cell> cells;
  for (std::size_t i = 0; i < alone.size(); ++i) {
    for (int yield = 1; yield <= alone[i].Yields; ++yield) {
      for (const Happening& happening : Happenings()) {
        if (alone[i].BoxYields.contains(yield) && !happening.PassesBoxes) continue;
        cells.push_back({&Procedures()[i], &alone[i], yield, &happening});
      }
    }
  }
  return cells;
}

/// A draw has one cell of each of these that has to come about.
void BringToTheFront(std::vector<Cell>& cells) {
  for (const char* name : {kUnplugged, kSampleTimer, kConnectTimer}) {
    const auto found = std::ranges::find_if(
        cells, [name](const Cell& cell) { return cell.Comes->Name == name && !MayFindNothing(cell); });
    if (found != cells.end()) std::rotate(cells.begin(), found, found + 1);
  }
}

std::size_t NumberFrom(const char* variable, std::size_t usual) {
  const char* const text = std::getenv(variable);
  return text ? std::stoul(text) : usual;
}

TEST_F(YieldTimesEverything, W01_W02_W03_W04_W08_H05_NothingBreaksAndTheNextRunIsWhole) {
  const char* const only = std::getenv("SPECTRANE_YIELD_ONLY");
  const std::size_t seed = NumberFrom("SPECTRANE_SEED", 1);
  std::vector<Undisturbed> alone;
  for (const Procedure& procedure : Procedures()) {
    SCOPED_TRACE(procedure.Name);
    alone.push_back(Alone(procedure));
    ASSERT_GT(alone.back().Yields, 0);
    ExpectWhole(procedure, alone.back());
    if (HasFailure()) return;
  }
  std::vector<Cell> cells = CellsOf(alone);
  if (only)
    std::erase_if(cells, [&](const Cell& cell) { return NameOf(cell).find(only) == std::string::npos; });
  const std::size_t all = cells.size();
  std::mt19937 random(static_cast<unsigned>(seed));
  std::ranges::shuffle(cells, random);
  BringToTheFront(cells);
  const std::size_t usual = only || IsLongForm() ? all : kCells;
  cells.resize(std::min(all, NumberFrom("SPECTRANE_YIELD_CELLS", usual)));
  // What has to stand before a procedure stands already after the one before.
  std::ranges::stable_sort(cells, {}, &Cell::What);
  std::cout << "cells: " << cells.size() << " of " << all << ", seed " << seed << std::endl;
  int failed = 0;
  for (const Cell& cell : cells) {
    SCOPED_TRACE(NameOf(cell));
    Try(cell);
    ASSERT_FALSE(HasFatalFailure());
    if (std::getenv("SPECTRANE_YIELD_NAMES")) std::cout << NameOf(cell) << std::endl;
    if (HasFailure() && ++failed > kMostFailures) break;
  }
  std::cout << "tried: " << Cells - Nothings << ", nothing to happen: " << Nothings << ", files: " << Files
            << std::endl;
}

}  // namespace
}  // namespace spectrane::testing_reentrancy
