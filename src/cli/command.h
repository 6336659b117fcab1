#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <stdexcept>
#include <string>
#include <vector>

#include "files/filefault.h"

namespace spectrane {

/// Ends a command with exit status 1 and one line on standard error: the last part of `path`, and why; or,
/// where no file is to blame, these words.
class Refusal : public std::runtime_error {
 public:
  explicit Refusal(const std::string& words);
  Refusal(const std::string& path, const std::string& reason);
  Refusal(const std::string& path, const FileFault& fault);
};

/// What a command works with while it runs.
struct BatchContext {
  std::istream& In;
  std::ostream& Err;
  /// The JSON document of the command; goes to standard output when the command is done.
  std::string Result;
  /// The exit status when the command ends without a Refusal.
  int Status = 0;
  /// The command that was chosen; set through RunsAs().
  std::function<void(BatchContext&)> Chosen;
};

/// Adds the commands of one group below `root`.
using AddCommands = void (*)(CLI::App& root, BatchContext& context);

/// `run` is what `command` does. Its arguments live in `run` itself (a shared pointer), for they are filled
/// while the line is read and `run` comes after that. `check` sees the arguments as a whole and throws a
/// CLI::ParseError for wrong usage.
void RunsAs(CLI::App* command, BatchContext& context, std::function<void(BatchContext&)> run,
            std::function<void()> check = {});

/// Arguments. `name` without a dash is a positional one. A value of the wrong form is wrong usage.
CLI::Option* AddText(CLI::App* command, const std::string& name, std::string& value,
                     const std::string& description);
CLI::Option* AddNumber(CLI::App* command, const std::string& name, double& value,
                       const std::string& description);
/// One number or more.
CLI::Option* AddNumbers(CLI::App* command, const std::string& name, std::vector<double>& values,
                        const std::string& description);
/// A whole number of 32 bits; decimals are rounded half to even.
CLI::Option* AddLong(CLI::App* command, const std::string& name, std::int32_t& value,
                     const std::string& description);

/// Numbers in one argument, commas between them.
CLI::Option* AddNumberList(CLI::App* command, const std::string& name, std::vector<double>& values,
                           const std::string& description);

/// Checks of arguments; each gives what is wrong, or nothing.
std::string CheckWhole(const std::string& text, std::int32_t lowest, std::int32_t highest);
std::string CheckPath(const std::string& text);

/// What stands before a negative number that the argument reader would take for an option (-.5).
inline constexpr char kValueMark = '\x1F';
/// The text of an argument as it was typed.
std::string PlainArgument(const std::string& text);

}  // namespace spectrane
