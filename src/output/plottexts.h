#pragma once

namespace spectrane {

/// Text numbers of quantities, for axes and columns.
inline constexpr int kAbsTitle = 703;
inline constexpr int kConcTitle = 1043;

}  // namespace spectrane
