#pragma once

#include <string>

#include "fuzz/checks/filetable.h"

namespace spectrane::fuzz {

/// The settings file, read, changed and read again. The input is the file; behind a NUL follow the section,
/// key and value of up to four changes, each ended by a NUL. A settings file has no NUL in it: with 0xFF
/// before the first one, that one stands in the file and makes it no text. Words about the first answer that
/// is wrong; empty when all are right.
std::string CheckConfig(Bytes input);

}  // namespace spectrane::fuzz
