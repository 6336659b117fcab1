#pragma once

#include <string>

#include "fuzz/checks/filetable.h"

namespace spectrane::fuzz {

/// One reply of the instrument in pieces of any size, and the lines and numbers in it. The input is a recipe:
/// how long the command is (low four bits; all bits: the text is repeated until it bursts the buffer), how
/// the text is cut, the command, the text that comes. Words about the first answer that is wrong; empty when
/// all are right.
std::string CheckReply(Bytes input);

}  // namespace spectrane::fuzz
