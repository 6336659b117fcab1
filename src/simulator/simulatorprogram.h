#pragma once

#include <QObject>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/clock.h"
#include "simulator/compartment.h"
#include "simulator/console.h"
#include "simulator/controlserver.h"
#include "simulator/exchangelog.h"
#include "simulator/linedriver.h"
#include "simulator/simulatedline.h"
#include "simulator/standardinput.h"

namespace spectrane {

/// What the command line of the simulator asks for.
struct ProgramOptions {
  InstrumentOptions Instrument;
  std::vector<std::pair<int, std::string>> Cells;
  std::string Link;
  std::string Device;  ///< a serial device instead of a pseudo-terminal
  bool Paced = false;
  double ReopenSeconds = -1.0;  ///< below 0: a broken line waits for `plug`
  std::string FaultFile;
  std::optional<std::uint64_t> FaultSeed;
  double FaultRate = 0.0;
  std::string LogFile;
  std::string ControlPath;
  bool Headless = false;  ///< without a window
  bool Prompt = false;
  bool UntilEof = false;
};

/// The program: an instrument, its wire, its log and its operator's doors.
class SimulatorProgram : public QObject {
  Q_OBJECT

 public:
  explicit SimulatorProgram(const ProgramOptions& options);

  /// Opens everything and prints the ready line; the result says what failed.
  std::optional<std::string> Start();

  /// The instrument as a window shows it; lives as long as the program.
  Compartment& View() { return compartment_; }

 private:
  std::optional<std::string> LoadFaults();
  std::optional<std::string> OpenLog();
  void StartPrompt();
  void TakeLine(const QByteArray& line);

  ProgramOptions options_;
  SteadyClock clock_;
  SimulatedLine line_;
  std::unique_ptr<Transport> transport_;
  LineDriver driver_;
  Console console_;
  Compartment compartment_;
  ControlServer control_;
  ExchangeLog log_;
  bool logging_ = false;
  StandardInput* input_ = nullptr;
  bool interactive_ = false;
  QString announced_;
};

}  // namespace spectrane
