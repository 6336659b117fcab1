#pragma once

#include <QProcess>
#include <QString>

#include <string>
#include <vector>

namespace spectrane::campaign {

/// The simulator as a program of its own, on a pseudo-terminal in a folder. It can be told things, ended as
/// asked, and killed; the link to its line keeps its name over a new start.
class SimulatorBeside {
 public:
  /// `program` is the path of the simulator.
  SimulatorBeside(QString program, QString folder);
  ~SimulatorBeside();
  SimulatorBeside(const SimulatorBeside&) = delete;
  SimulatorBeside& operator=(const SimulatorBeside&) = delete;

  /// Begins a new log. False: it did not come up.
  bool Start(const std::vector<std::string>& options);
  /// As `kill -9` does: nothing is tidied up.
  void Kill();
  /// The same from another thread than the one that started it; Kill() has to follow there.
  void KillFromOutside() const;
  void End();

  /// Whether a command of its prompt was answered by "ok".
  bool Tell(const std::string& command) { return Ask(command).endsWith("ok\n"); }
  QByteArray Ask(const std::string& command);

  /// What SPECTRANE_PORTS has to name.
  QString Line() const { return folder_ + QStringLiteral("/line"); }
  /// Of the last start.
  QString LogPath() const;

 private:
  QString program_;
  QString folder_;
  int starts_ = 0;
  qint64 id_ = 0;
  QProcess process_;
};

}  // namespace spectrane::campaign
