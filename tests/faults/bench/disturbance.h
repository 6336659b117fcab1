#pragma once

#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "faults/bench/operator.h"

namespace spectrane::campaign {

/// What goes wrong in one act.
enum class Trouble {
  None,
  /// One answer is spoiled in one of the 18 ways.
  Answer,
  /// The cable is pulled before the act, or at some moment of it.
  Unplug,
  UnplugInside,
  /// The simulator is killed before the act, or at some moment of it.
  Kill,
  KillInside,
  /// Another program tries for the same line while an answer of the act is under way.
  OtherProgram,
};

/// Draws troubles, makes them and takes them away again. The same generator draws the same ones, whatever the
/// speed of the program's clock; only what has to lie beyond a time-out is moved with it.
class Disturbance {
 public:
  Disturbance(Operator& person, std::mt19937_64& random) : operator_(person), random_(random) {}
  ~Disturbance();
  Disturbance(const Disturbance&) = delete;
  Disturbance& operator=(const Disturbance&) = delete;

  /// One for an act that sends these verbs, each at most so many times. To be called right before the act.
  void Begin(const std::vector<std::string>& verbs, int times);
  /// After the act: nothing is spoiled any more, the cable is in, the simulator runs, and what was on its way
  /// has arrived. What the instrument was asked must have been read from its log before.
  void End();

  Trouble Kind() const { return kind_; }
  /// What the other program came to, after End(): one that did not get the line was refused.
  bool OtherWasRefused() const { return otherStatus_ == 1; }
  /// For people; a fault as the simulator's prompt takes it.
  const std::string& Description() const { return description_; }
  /// The act leaves the line alone once a command was given up: a restart may speak only after that.
  bool MaySpeakLater = false;
  /// Options of the simulator's next start.
  std::vector<std::string> Options;

 private:
  int Below(int limit) { return static_cast<int>(random_() % static_cast<std::uint64_t>(limit)); }
  std::string DrawFault(const std::string& verb, int times, bool repeats);
  std::string ParametersOf(const std::string& kind, const std::string& verb);
  /// Of a verb's answer, as the machine's clock goes [ms].
  static int TimeoutMs(const std::string& verb, int haste);
  void BesideAnAnswer(const std::vector<std::string>& verbs);
  void Later(int ms, const std::function<void()>& act);

  Operator& operator_;
  std::mt19937_64& random_;
  Trouble kind_ = Trouble::None;
  std::string description_;
  int settleMs_ = 0;
  std::thread later_;
  std::unique_ptr<QProcess> other_;
  int otherStatus_ = 0;
};

}  // namespace spectrane::campaign
