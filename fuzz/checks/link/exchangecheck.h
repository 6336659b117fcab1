#pragma once

#include <string>

#include "fuzz/checks/filetable.h"

namespace spectrane::fuzz {

/// A day at a line: requests, one after the other, and what comes when, through SCI and Interface on
/// simulated time. The input is a script. First byte: bit 0, that answers may be forged (doubled, or replaced
/// by any bytes); bit 1, that somebody watches the waits. Then the steps, of four bytes: request (low half)
/// and fate of its answer (high half), delay, place in the answer, pause before it; behind a fate with a text
/// its length and its bytes. After the last step the line is quiet and clean. Words about the first answer
/// that is wrong; empty when all are right.
std::string CheckExchange(Bytes input);

}  // namespace spectrane::fuzz
