#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/instrumentmodel.h"

namespace spectrane {

/// Answer to a text that is no command.
inline constexpr std::string_view InvalidCommand = "Invalid Command.";

/// What a command sends behind its echo, and how long the instrument works for it at normal speed.
struct CommandResult {
  std::vector<std::string> Lines;
  int DurationMs = 0;
};

/// Work of one command. `SampleMs` is the time between two readings of one command.
struct CommandCall {
  InstrumentModel& Model;
  double Argument;
  std::int64_t NowMs;
  double SampleMs;
};

enum class ArgumentKind { None, Whole, Wavelength };

struct CommandEntry {
  std::string_view Verb;
  ArgumentKind Argument;
  int TimeoutMs;  ///< how long the program at the other end waits for the reply
  /// False: the argument is out of place, nothing was done.
  bool (*Run)(const CommandCall& call, CommandResult& result);
};

/// Every command of the instrument.
std::span<const CommandEntry> Commands();

/// First word of a command text.
std::string_view VerbOf(std::string_view command);

/// Time-out of the program for this command text; 3000 for texts that are no command [ms].
int ProgramTimeoutMs(std::string_view command);

/// Carries out one command text (without its CR). A text that is no command, or has an argument the command
/// cannot take, gives `InvalidCommand` and changes nothing. `timeScale` is 1 at normal speed and 0 when
/// nothing takes time.
CommandResult RunCommand(InstrumentModel& model, std::string_view command, std::int64_t nowMs,
                         double timeScale);

}  // namespace spectrane
