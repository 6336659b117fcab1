#pragma once

#include <cstdio>
#include <string>

namespace spectrane {

/// Creates `path` (UTF-8), which must not exist, for reading and writing. `ownerOnly`: nobody else may read
/// it, where the platform has permission bits. Null: errno says why.
std::FILE* OpenNewFile(const std::string& path, bool ownerOnly);

}  // namespace spectrane
