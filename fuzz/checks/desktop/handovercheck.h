#pragma once

#include <string>

#include "fuzz/checks/filetable.h"

namespace spectrane::fuzz {

/// The bytes that another copy of the program sent so far, as a hand-over message. Words about the first
/// answer that is wrong; empty when all are right.
std::string CheckHandover(Bytes input);

}  // namespace spectrane::fuzz
