#pragma once

#include <random>

#include "reentrancy/yieldyard.h"

namespace spectrane::testing_reentrancy {

/// What the names of the files begin with that such a person saves.
inline constexpr const char* kSavedName = "saved";

/// Of the files that have a window.
const QStringList& DataFilePatterns();

/// A person who answers at random; the same seed gives the same answers.
class RandomPerson : public Questions {
 public:
  using Questions::ShowWords;
  RandomPerson(WatchedLoop& loop, QString folder) : loop_(loop), folder_(std::move(folder)) {}

  void Show(int, const std::string&) override { Ask(); }
  void ShowWords(const QString&, const QString&, int) override { Ask(); }
  Answer AskYesNo(const QString& words, int) override;
  Answer AskYesNoCancel(const QString& words, int) override;
  QString OpenFileName(const QString& filter, const QString& path) override;
  QString SaveFileName(const QString& filter, const QString& path) override;
  QColor AskColour(const QColor& now, const QString& title) override;

  /// One of the folder; empty when there is none.
  QString AnyFile(const QStringList& patterns);

  int Number(int below) { return std::uniform_int_distribution<int>(0, below - 1)(Random); }
  bool Chance(int ofHundred) { return Number(100) < ofHundred; }

  std::mt19937 Random;
  /// Said to everything from now on.
  std::optional<Answer> Always;
  int Asked = 0;

 private:
  bool Ask();
  WatchedLoop& loop_;
  QString folder_;
};

/// Presses what can be pressed, and things that cannot.
class RandomHand {
 public:
  /// All must outlive the hand.
  RandomHand(YieldYard& yard, RandomPerson& person);

  /// One thing, which may lead to others inside it.
  void Act();
  /// Things done so far, also inside others.
  int Count = 0;
  /// The last things, for a person who looks for a fault.
  QStringList Trace;

 private:
  struct Deed;
  static const std::vector<Deed>& Deeds();

  void Note(const QString& what);
  void ActInYield();
  void LookForDialogs();
  void ActInDialog();
  void UseDialog(QDialog& dialog);
  void Command();
  void Save();
  void Key(QWindow* window);
  void Click();
  void EditCell();
  void TurnWheel();
  void Resize();
  void Line();
  void Timer();
  void Outside();
  void Select();
  QWidget* AnyOf(const QList<QWidget*>& widgets);

  YieldYard& yard_;
  RandomPerson& person_;
  QObject inDialogs_;
  int depth_ = 0;
  int dialogSteps_ = 0;
  int yieldsOfCommand_ = 0;
};

}  // namespace spectrane::testing_reentrancy
