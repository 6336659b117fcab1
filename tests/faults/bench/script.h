#pragma once

#include <QStringList>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "faults/bench/disturbance.h"
#include "faults/bench/exchanged.h"

namespace spectrane::campaign {

enum class Verdict {
  /// Nothing lost, nothing invented, the right words.
  Held,
  Violated,
  /// A healthy answer came too late for the hurried clock: nothing can be said.
  TooSlow,
};

/// One script: an operator at one document, whose acts are disturbed in ways that the seed draws. After each
/// disturbance a clean act has to work. At the end the document is saved, read with the readers of files, and
/// held against what went over the wire.
class Script {
 public:
  /// The program runs; the simulator was started with `simulatorOptions`.
  Script(Operator& person, std::uint64_t seed, const std::vector<std::string>& simulatorOptions);
  virtual ~Script() = default;
  Script(const Script&) = delete;
  Script& operator=(const Script&) = delete;

  Verdict Run();
  /// What was wrong, and what was done up to there.
  const QStringList& Problems() const { return problems_; }
  const QStringList& Story() const { return story_; }
  int Troubles() const { return troubles_; }

 protected:
  /// An act of the operator, with what went over the wire in it.
  struct Act {
    std::string Name;
    std::vector<Exchanged> Exchanges;
    /// Words of the boxes, and of the status bar afterwards.
    QStringList Told;
    std::string Remark;
    /// The line broke, now or before.
    bool LineGone = false;
    /// The first exchange that did not pass; null when all did.
    const Exchanged* Broken() const;
    /// The same, or the first whose numbers were not sound.
    const Exchanged* Unsound() const;
    int Count(const std::string& verb) const;
  };

  virtual int NewCommand() const = 0;
  virtual bool BlankHolds() = 0;
  /// Verbs of a measurement.
  virtual std::vector<std::string> MeasureVerbs() const = 0;
  /// Looks at a measurement: what was said, what was stored.
  virtual void JudgeMeasurement(const Act& act, bool disturbed) = 0;
  virtual void JudgeBlank(const Act& act) = 0;
  /// Saves, closes, reads and compares.
  virtual void JudgeFile() = 0;

  void Expect(bool holds, const std::string& what);
  /// At most one box, with these words; none when `textId` is 0. Where the line broke between two exchanges,
  /// `broken` may have been told as well: the run ended there, or had ended.
  void ExpectTold(const Act& act, int textId, int broken = 0);
  Operator& Person() { return operator_; }
  std::mt19937_64& Random() { return random_; }
  bool HasSampler() const { return sampler_; }
  /// What the document may hold, and must.
  std::vector<Reading> Expected;

 private:
  enum class Kind { Blank, Measure, Idle, Reconnect };

  Act Do(Kind kind);
  void Disturbed();
  void Clean();
  void Connect();
  void Judge(Kind kind, const Act& act, bool disturbed);
  /// Connected, and the line is up: a reading is due.
  bool ReadsLive() const;
  void WatchLiveReadings();
  void JudgeLiveReadings(const Act& act);
  void JudgeConnection(const Act& act);
  void Repair();
  std::vector<std::string> VerbsOf(Kind kind) const;

  Operator& operator_;
  std::mt19937_64 random_;
  Disturbance disturbance_;
  bool sampler_ = false;
  bool tooSlow_ = false;
  int troubles_ = 0;
  QStringList problems_;
  QStringList story_;
};

/// The script of a seed; the seed chooses its document.
std::unique_ptr<Script> MakeScript(Operator& person, std::uint64_t seed,
                                   const std::vector<std::string>& simulatorOptions);

}  // namespace spectrane::campaign
