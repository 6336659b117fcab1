#pragma once

#include <optional>
#include <string>

namespace spectrane {

/// The value of an environment variable in UTF-8; nothing when it is unset or empty.
std::optional<std::string> EnvironmentText(const char* name);

}  // namespace spectrane
