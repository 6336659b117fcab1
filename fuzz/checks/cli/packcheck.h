#pragma once

#include <string>

#include "fuzz/checks/filetable.h"

namespace spectrane::fuzz {

/// A JSON document that is packed into a data file, and what dump tells of that file. Words about the first
/// answer that is wrong; empty when all are right.
std::string CheckPack(Bytes input);

}  // namespace spectrane::fuzz
