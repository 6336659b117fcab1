#pragma once

#include <string>

#include "fuzz/checks/filetable.h"

namespace spectrane::fuzz {

/// A journal as a crash may have left it, as it is and with its check sums mended. Words about the first
/// answer that is wrong; empty when all are right.
std::string CheckJournal(Bytes input);

}  // namespace spectrane::fuzz
