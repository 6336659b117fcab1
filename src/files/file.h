#pragma once

#include <cstdint>
#include <string>

#include "files/filefault.h"

namespace spectrane {

/// The number of a data file's kind; any number passes. False: no data file of this system, `fileType` is
/// left alone and `fault` (when given) says why.
bool GetFileType(const std::string& path, std::int32_t& fileType, FileFault* fault = nullptr);

}  // namespace spectrane
