#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "simulator/faultscript.h"

namespace spectrane::testing_processes {

/// The kinds of faults the simulator knows, one case of a test each: those that are waited for run beside
/// others.
inline std::vector<std::string> FaultKindNames() {
  std::vector<std::string> names;
  for (const FaultKindEntry& kind : FaultKinds()) names.emplace_back(kind.Name);
  return names;
}

inline std::string FaultKindTestName(const ::testing::TestParamInfo<std::string>& kind) {
  std::string name = kind.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

}  // namespace spectrane::testing_processes
