#pragma once

#include <string>

#include "fuzz/checks/filetable.h"

namespace spectrane::fuzz {

/// One reply of the instrument in pieces of any size, and the lines and numbers in it. The input is a recipe:
/// the length of the command (low four bits), how the text is cut, the command, the text that comes. With
/// both of the first two bytes 0xFF, a text of 16 n + 1 bytes is repeated until it bursts the buffer. Words
/// about the first answer that is wrong; empty when all are right.
std::string CheckReply(Bytes input);

}  // namespace spectrane::fuzz
