#pragma once

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "cli/batch.h"
#include "files/filesupport.h"

namespace spectrane {

/// What one command line gave.
struct BatchOutcome {
  int Status = -1;
  std::string Out;
  std::string Err;
};

/// Runs a command line inside the test program.
inline BatchOutcome Batch(const std::vector<std::string>& arguments, const std::string& input = {}) {
  std::vector<const char*> argv = {"spectrane-cli"};
  for (const std::string& argument : arguments) argv.push_back(argument.c_str());
  std::istringstream in(input);
  std::ostringstream out;
  std::ostringstream err;
  BatchOutcome outcome;
  outcome.Status = RunBatch(static_cast<int>(argv.size()), argv.data(), in, out, err);
  outcome.Out = out.str();
  outcome.Err = err.str();
  return outcome;
}

/// A refusal: status 1, nothing on the output, one line that begins with `name` and holds `reason`.
inline void ExpectRefused(const BatchOutcome& outcome, const std::string& name, const std::string& reason) {
  EXPECT_EQ(outcome.Status, 1);
  EXPECT_EQ(outcome.Out, "");
  EXPECT_EQ(outcome.Err.find('\n'), outcome.Err.size() - 1) << "one line: " << outcome.Err;
  EXPECT_EQ(outcome.Err.substr(0, name.size() + 2), name + ": ");
  EXPECT_NE(outcome.Err.find(reason), std::string::npos) << outcome.Err;
}

/// Wrong usage: status 2, nothing on the output, the usage on the error stream.
inline void ExpectWrongUsage(const BatchOutcome& outcome) {
  EXPECT_EQ(outcome.Status, 2);
  EXPECT_EQ(outcome.Out, "");
  EXPECT_NE(outcome.Err.find("Usage: spectrane-cli"), std::string::npos) << outcome.Err;
}

}  // namespace spectrane
