#pragma once

namespace spectrane {

/// Rows of the text table that more than one part of the program shows.
inline constexpr int kNoInstrument = 1090;
inline constexpr int kCommunicationError = 1096;

}  // namespace spectrane
