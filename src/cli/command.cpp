#include "cli/command.h"

#include <cmath>
#include <optional>
#include <utility>

#include "base/numbers.h"
#include "base/numericfault.h"

namespace spectrane {
namespace {

/// A line must stay one line, whatever the name of the file.
std::string OneLine(std::string text) {
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < 0x20 || c == '\x7F') c = '?';
  }
  return text;
}

std::string LastPart(const std::string& path) {
#ifdef _WIN32
  constexpr const char* kSeparators = "/\\";
#else
  constexpr const char* kSeparators = "/";
#endif
  const std::size_t last = path.find_last_of(kSeparators);
  if (last == std::string::npos || last + 1 == path.size()) return path;
  return path.substr(last + 1);
}

double NumberOf(const std::string& name, const std::string& argument) {
  const std::string text = PlainArgument(argument);
  const std::optional<double> number = ParseNumber(text);
  if (!number) throw CLI::ConversionError(name + ": " + text + " is no number");
  return *number;
}

}  // namespace

Refusal::Refusal(const std::string& words) : std::runtime_error(OneLine(words)) {}

Refusal::Refusal(const std::string& path, const std::string& reason)
    : std::runtime_error(OneLine((path.empty() ? "empty path" : LastPart(path)) + ": " + reason)) {}

Refusal::Refusal(const std::string& path, const FileFault& fault) : Refusal(path, FaultWords(fault)) {}

void RunsAs(CLI::App* command, BatchContext& context, std::function<void(BatchContext&)> run,
            std::function<void()> check) {
  command->callback([&context, run = std::move(run), check = std::move(check)] {
    if (check) check();
    context.Chosen = run;
  });
}

std::string PlainArgument(const std::string& text) {
  return !text.empty() && text.front() == kValueMark ? text.substr(1) : text;
}

CLI::Option* AddText(CLI::App* command, const std::string& name, std::string& value,
                     const std::string& description) {
  return command
      ->add_option_function<std::string>(
          name, [&value](const std::string& text) { value = PlainArgument(text); }, description)
      ->type_name("");
}

CLI::Option* AddNumber(CLI::App* command, const std::string& name, double& value,
                       const std::string& description) {
  const auto take = [&value, name](const std::string& argument) { value = NumberOf(name, argument); };
  return command->add_option_function<std::string>(name, take, description)->type_name("NUMBER");
}

CLI::Option* AddNumbers(CLI::App* command, const std::string& name, std::vector<double>& values,
                        const std::string& description) {
  const auto take = [&values, name](const std::vector<std::string>& arguments) {
    values.clear();
    for (const std::string& argument : arguments) values.push_back(NumberOf(name, argument));
  };
  return command->add_option_function<std::vector<std::string>>(name, take, description)->type_name("NUMBER");
}

CLI::Option* AddLong(CLI::App* command, const std::string& name, std::int32_t& value,
                     const std::string& description) {
  const auto take = [&value, name](const std::string& argument) {
    const std::string text = PlainArgument(argument);
    try {
      value = ParseLong(text);
    } catch (const NumericFault&) {
      throw CLI::ConversionError(name + ": " + text + " is no whole number of 32 bits");
    }
  };
  return command->add_option_function<std::string>(name, take, description)->type_name("INTEGER");
}

CLI::Option* AddNumberList(CLI::App* command, const std::string& name, std::vector<double>& values,
                           const std::string& description) {
  const auto take = [&values, name](const std::string& argument) {
    values.clear();
    const std::string text = PlainArgument(argument) + ",";
    for (std::size_t begin = 0, end; (end = text.find(',', begin)) != std::string::npos; begin = end + 1) {
      values.push_back(NumberOf(name, text.substr(begin, end - begin)));
    }
  };
  return command->add_option_function<std::string>(name, take, description)->type_name("NUMBER,NUMBER,...");
}

std::string CheckWhole(const std::string& text, std::int32_t lowest, std::int32_t highest) {
  const auto value = ParseNumber(PlainArgument(text));
  if (!value || (*value >= lowest && *value <= highest && *value == std::floor(*value)))
    return {};  // another check tells what is no number
  return "not a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest);
}

std::string CheckPath(const std::string& text) {
  return text.empty() ? "the path is empty" : "";
}

}  // namespace spectrane
