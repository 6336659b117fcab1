#pragma once

#include <cstdint>
#include <string>

#include "files/datafile.h"

namespace spectrane {

/// Option block of a time scan file (.tis).
struct TSOption {
  /// Wavelength of the test [nm].
  double WorkWL = 0;
  /// Home view of the time axis [s], rounded.
  std::int32_t StartSecond = 0;
  std::int32_t EndSecond = 0;
  /// Index 0 to 9 of the table of intervals, not a time.
  std::int32_t IntervalSecond = 0;
  /// 1 Abs, 2 %T.
  std::int16_t DisplayMode = 0;
  /// Scales of the home view [Abs], [%T].
  double AbsBottom = 0;
  double AbsTop = 0;
  double TransBottom = 0;
  double TransTop = 0;
  /// Number of points.
  std::int32_t DataCount = 0;
  /// Gain number of the whole test.
  std::int32_t GainNo = 0;
  /// Energies of the blank (100 %T) and without light (0 %T) [counts].
  std::int32_t FullEnergy = 0;
  std::int32_t DarkEnergy = 0;

  bool operator==(const TSOption&) const = default;
};

/// One point of a time scan; Abs and %T follow from the energies of the option block.
struct TSRecord {
  /// [counts]
  std::int32_t Energy = 0;
  /// Nominal time of the point [s].
  double Time = 0;

  bool operator==(const TSRecord&) const = default;
};

/// Most points of a time scan file; a test itself stops at 10000.
inline constexpr std::int32_t kMostTimeScanPoints = 10001;

const FileModule<TSOption, TSRecord>& TSModule();

/// Creates a file that does not exist yet and leaves it open under `fileNumber`. False: it existed, and stays
/// as it was, or could not be created.
bool CreateTSFile(const std::string& path, int& fileNumber, const TSOption& option);
/// Opens a file and reads its option block. False: no time scan; what was opened stays open under
/// `fileNumber`, the caller closes it.
bool OpenTSFile(const std::string& path, int& fileNumber, TSOption& option);
/// Record `index` from 0. False, with nothing read, when it does not lie wholly inside the file.
bool ReadTSRecord(int fileNumber, TSRecord& record, std::int32_t index);
/// Always true; FaultOf() tells after the close whether everything was written.
bool WriteTSRecord(int fileNumber, const TSRecord& record, std::int32_t index);
void CloseTSFile(int fileNumber);

}  // namespace spectrane
