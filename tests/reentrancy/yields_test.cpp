// Everything that can come in where a procedure yields: each procedure times each happening times each yield.

#include <cstdlib>
#include <iostream>
#include <random>

#include "app/ground/words.h"
#include "app/workspace.h"
#include "reentrancy/quickruns.h"

namespace spectrane::testing_reentrancy {
namespace {

/// Cells tried in the default tests, and after which a broken program is broken enough.
constexpr std::size_t kCells = 120;
constexpr int kMostFailures = 20;

using Effect = Happening::Effect;

struct Cell {
  const Procedure* What;
  const Undisturbed* Alone;
  int Yield;
  const Happening* Comes;
};

/// How things stood when it came, and how many windows are there afterwards.
struct Then {
  qsizetype Windows;
  bool InRun;
  bool WindowMeasures;
};

class YieldTimesEverything : public QuickRuns {
 protected:
  void Try(const Cell& cell) {
    Prepare(*cell.What);
    if (HasFatalFailure()) return;
    const qsizetype windows = WindowCount();
    Then then{0, false, false};
    bool came = false;
    Person.Says = cell.Comes->Says;
    Person.SavePath = PathOf("saved.dat");
    Loop.Arm(cell.Yield, [&](bool inBox) {
      came = true;
      then = {windows, State().RunUnderWay, Main().ActiveForm() && Main().ActiveForm()->RunsNow()};
      if (inBox && !cell.Comes->PassesBoxes) return;
      Guard.start();
      cell.Comes->Do(*this);
      if (cell.Comes->Name == "hand-over") ++then.Windows;
    });
    Loop.Look = [&] { EXPECT_LE(WindowCount(), windows) << "a window opened inside"; };
    cell.What->Run(*this);
    Loop.Look = {};
    Settle();
    Guard.stop();
    EXPECT_TRUE(came);
    EXPECT_LE(Loop.Deepest, 2);
    CheckEnd(cell, then);
  }

  void CheckEnd(const Cell& cell, const Then& then) {
    if (cell.Comes->What == Effect::None && then.InRun) {
      EXPECT_EQ(Requests, cell.Alone->Requests) << "other requests than without it";
      // A window that measures nothing and has nothing to save goes unasked.
      EXPECT_TRUE(WindowCount() == then.Windows || (cell.Comes->Closes && !then.WindowMeasures));
      EXPECT_TRUE(Intruders.isEmpty()) << Intruders.join(u' ').toStdString();
    }
    if (!Main().isVisible()) return;
    ExpectIdle();
    const bool reads = cell.Comes->What == Effect::None && State().InstrumentConnected;
    EXPECT_TRUE(!reads || Main().SampleTimer().isActive()) << "the live reading goes on";
  }
};

std::string NameOf(const Cell& cell) {
  return std::string(cell.What->Name) + ", yield " + std::to_string(cell.Yield) + ": " + cell.Comes->Name;
}

TEST_F(YieldTimesEverything, W01_W02_W03_W04_W08_H05_NothingBreaksAndTheNextRunIsWhole) {
  const char* const wanted = std::getenv("SPECTRANE_YIELD_CELLS");
  const char* const seedText = std::getenv("SPECTRANE_SEED");
  const char* const only = std::getenv("SPECTRANE_YIELD_ONLY");
  const unsigned seed = seedText ? static_cast<unsigned>(std::atoi(seedText)) : 1;
  std::vector<Undisturbed> alone;
  for (const Procedure& procedure : Procedures()) {
    SCOPED_TRACE(procedure.Name);
    alone.push_back(Alone(procedure));
    ASSERT_GT(alone.back().Yields, 0);
    if (HasFailure()) return;
  }
  std::vector<Cell> cells;
  for (std::size_t i = 0; i < alone.size(); ++i) {
    for (int yield = 1; yield <= alone[i].Yields; ++yield) {
      for (const Happening& happening : Happenings())
        cells.push_back({&Procedures()[i], &alone[i], yield, &happening});
    }
  }
  if (only)
    std::erase_if(cells, [&](const Cell& cell) { return NameOf(cell).find(only) == std::string::npos; });
  const std::size_t all = cells.size();
  std::mt19937 random(seed);
  std::ranges::shuffle(cells, random);
  if (!only && !IsLongForm()) cells.resize(std::min(all, wanted ? std::stoul(wanted) : kCells));
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
}

}  // namespace
}  // namespace spectrane::testing_reentrancy
