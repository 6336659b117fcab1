#pragma once

#include <QTimer>

#include <memory>
#include <utility>

#include "app/frmmain.h"
#include "faults/bench/haste.h"
#include "faults/bench/person.h"
#include "faults/bench/requestlog.h"
#include "faults/bench/simulatorbeside.h"

namespace spectrane::campaign {

/// Of the scripts' clock: a time-out of 15 s takes 1.5 s. What a seed draws does not depend on the speed that
/// a script is run at in the end, but on this one.
inline constexpr int kNominalHaste = 10;

/// Where a campaign takes place.
struct Place {
  /// Of the programs that are started beside this one.
  QString Programs;
  /// Of this campaign alone; exists.
  QString Folder;
  /// How many times faster the program's clock runs.
  int Haste = 1;
};

/// The whole program, with its windows, its real port and a person at it, in this process, and the simulator
/// beside it. To be used outside of any event loop: windows that close are gone after the next Pause().
class Operator {
 public:
  explicit Operator(const Place& place);
  ~Operator();
  Operator(const Operator&) = delete;
  Operator& operator=(const Operator&) = delete;

  SimulatorBeside& Simulator() { return simulator_; }
  FrmMain& Frame() { return *frame_; }
  Setting& Settings() { return *settings_; }
  Person& Hands() { return person_; }
  int Haste() const { return place_.Haste; }
  QString PathOf(const char* name) const { return place_.Folder + u'/' + QLatin1String(name); }

  /// Shows the main window; the guide that comes up is closed.
  void StartProgram();
  bool Connected() const { return frame_->Link().State.InstrumentConnected; }
  /// As a click on a menu row does; a row that cannot be chosen does nothing.
  void Choose(int command) { frame_->RunCommand(command); }
  /// Lets the program do what it does by itself for so long, or until that is so.
  void Pause(int ms);
  bool PauseUntil(const std::function<bool()>& reached, int ms);

  /// The active child, which must be of that kind.
  template <typename T>
  T& Child() {
    return dynamic_cast<T&>(*frame_->ActiveForm());
  }
  /// Saves the active child as that, closes it; false when nothing was saved.
  bool SaveAs(const QString& path);
  void CloseAll();
  /// Runs the batch command with its own connection; its exit status.
  int Batch(const QStringList& arguments) { return EndOf(*BeginBatch(arguments)); }
  /// The same in two halves: while other things happen, and what it came to.
  std::unique_ptr<QProcess> BeginBatch(const QStringList& arguments) const;
  static int EndOf(QProcess& process);

  /// Something went over the wire of this program since TakeWire(), or is under way.
  bool HasSent() const { return !ports_.Wire.empty(); }
  /// What went over the wire of this program since the last call.
  std::vector<WireRecord> TakeWire() { return std::exchange(ports_.Wire, {}); }
  /// What the instrument was asked since the last call, in the log of the running simulator.
  std::vector<LoggedRequest> News();
  std::int64_t Exchanges() const { return earlier_ + (log_ ? log_->Seen() : 0); }
  /// Starts the simulator (anew); its log begins anew too.
  bool StartSimulator(const std::vector<std::string>& options);

 private:
  void LookAtDialogs();

  Place place_;
  SimulatorBeside simulator_;
  Person person_;
  HastyClock time_;
  HastyLoop loop_;
  HastyPorts ports_;
  QString turnName_;
  std::unique_ptr<Exclusion> turn_;
  std::unique_ptr<Setting> settings_;
  std::unique_ptr<FrmMain> frame_;
  std::unique_ptr<RequestLog> log_;
  std::int64_t earlier_ = 0;
  QTimer look_;
};

}  // namespace spectrane::campaign
