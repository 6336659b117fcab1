#pragma once

#include <cstdint>
#include <string>

#include "files/datafile.h"

namespace spectrane {

/// Option block of a system baseline file (.bsl).
struct BSLOption {
  /// [nm]
  double EndWavelength = 0;
  double StartWavelength = 0;
  /// Moment of saving: days since 1899-12-30, local time.
  double CreateDate = 0;
  /// Has no reader; kept as it was read.
  std::int32_t Reserved = 0;

  bool operator==(const BSLOption&) const = default;
};

/// The baseline at one wavelength.
struct BSLRecord {
  /// [nm]
  double Wavelength = 0;
  /// Gain number used at this wavelength.
  std::int32_t Amp = 0;
  /// [counts]
  std::int32_t Energy = 0;

  bool operator==(const BSLRecord&) const = default;
};

/// Most records of a baseline file; the program's own baselines have up to 912.
inline constexpr std::int32_t kMostBaselineRecords = 10001;

/// The number of records follows from the range: its length, rounded half to even, and one more.
const FileModule<BSLOption, BSLRecord>& BSLModule();

/// Creates a file that does not exist yet and leaves it open under `fileNumber`. False: it existed, and stays
/// as it was, or could not be created.
bool CreateBaselineFile(const std::string& path, int& fileNumber, const BSLOption& option);
/// Opens a file and reads its option block. False: no baseline file; what was opened stays open under
/// `fileNumber`, the caller closes it.
bool OpenBaselineFile(const std::string& path, int& fileNumber, BSLOption& option);
/// Record `index` from 0. False, with nothing read, when it does not lie wholly inside the file.
bool ReadBaselineRecord(int fileNumber, BSLRecord& record, std::int32_t index);
/// Always true; FaultOf() tells after the close whether everything was written.
bool WriteBaselineRecord(int fileNumber, const BSLRecord& record, std::int32_t index);
void CloseBaselineFile(int fileNumber);

}  // namespace spectrane
