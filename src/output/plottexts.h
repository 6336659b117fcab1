#pragma once

namespace spectrane {

/// Text numbers of quantities, for axes and columns.
inline constexpr int kAbsTitle = 703;
inline constexpr int kConcTitle = 1043;
inline constexpr int kWavelengthTitle = 701;
inline constexpr int kTransTitle = 705;
inline constexpr int kNumberTitle = 706;
inline constexpr int kEnergyTitle = 708;
inline constexpr int kNoteTitle = 709;
inline constexpr int kNameTitle = 1042;
inline constexpr int kSampleNameTitle = 1008;
inline constexpr int kResultTitle = 1009;
inline constexpr int kWavelengthWord = 1055;
/// In the place of an empty table.
inline constexpr int kNoRecords = 1060;

}  // namespace spectrane
