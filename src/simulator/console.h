#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/clock.h"
#include "simulator/simulatedline.h"

namespace spectrane {

/// What the operator's commands need of the program around the instrument. Each may be empty: the command
/// then says that it is not there.
struct ConsoleHooks {
  std::function<void()> Unplug;
  std::function<std::optional<std::string>()> Plug;  ///< the result says why it failed
  std::function<bool()> Plugged;
  std::function<void(const Deliveries&)> Play;     ///< sends bytes unasked
  std::function<void(const std::string&)> Remark;  ///< for the log
};

/// Answer to one line of the operator.
struct ConsoleAnswer {
  std::vector<std::string> Lines;
  std::string Error;  ///< empty: done
  bool Quit = false;

  /// All lines, ended by "ok" or "error: …"; every line ends with a line feed.
  std::string Text() const;
};

/// The operator's hands: changes the beam, the sampler, the lamps, the cable. Serves the prompt and the
/// control socket alike.
class Console {
 public:
  Console(SimulatedLine& line, const Clock& clock, ConsoleHooks hooks = {});

  ConsoleAnswer Execute(std::string_view text);

 private:
  using Arguments = std::vector<std::string>;
  struct Command {
    std::string_view Name;
    std::string_view Usage;
    std::size_t Least;
    std::size_t Most;
    void (Console::*Run)(const Arguments& arguments, ConsoleAnswer& answer);
    std::string_view Purpose;
  };
  static const std::vector<Command>& Commands();

  void Help(const Arguments& arguments, ConsoleAnswer& answer);
  void Beam(const Arguments& arguments, ConsoleAnswer& answer);
  void Cell(const Arguments& arguments, ConsoleAnswer& answer);
  void Sampler(const Arguments& arguments, ConsoleAnswer& answer);
  void Samples(const Arguments& arguments, ConsoleAnswer& answer);
  void State(const Arguments& arguments, ConsoleAnswer& answer);
  void AddFault(const Arguments& arguments, ConsoleAnswer& answer);
  void Faults(const Arguments& arguments, ConsoleAnswer& answer);
  void Noise(const Arguments& arguments, ConsoleAnswer& answer);
  void Stray(const Arguments& arguments, ConsoleAnswer& answer);
  void LampState(const Arguments& arguments, ConsoleAnswer& answer);
  void Jam(const Arguments& arguments, ConsoleAnswer& answer);
  void Busy(const Arguments& arguments, ConsoleAnswer& answer);
  void Restart(const Arguments& arguments, ConsoleAnswer& answer);
  void Unplug(const Arguments& arguments, ConsoleAnswer& answer);
  void Plug(const Arguments& arguments, ConsoleAnswer& answer);
  void Quit(const Arguments& arguments, ConsoleAnswer& answer);

  SimulatedLine& line_;
  InstrumentModel& model_;
  const Clock& clock_;
  ConsoleHooks hooks_;
};

}  // namespace spectrane
