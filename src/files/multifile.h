#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "files/datafile.h"

namespace spectrane {

/// Option block of a multi wavelength file (.mul).
struct MultiOption {
  /// [nm]; entries 0 to 14 are used.
  std::array<double, 16> WorkWaveLength{};
  /// Coefficients of the wavelengths; entries 0 to 14 are used.
  std::array<double, 16> Parameter{};
  /// Number of wavelengths.
  std::int32_t WorkWLNo = 0;
  std::int32_t RecordCount = 0;

  bool operator==(const MultiOption&) const = default;
};

/// One sample of a multi wavelength file.
struct MultiRecord {
  /// By wavelength; all entries are stored, whatever the number of wavelengths.
  std::array<double, 16> Abs{};
  double Result = 0;
  std::string Name;

  bool operator==(const MultiRecord&) const = default;
};

const FileModule<MultiOption, MultiRecord>& MultiModule();

/// Creates a file that does not exist yet and leaves it open under `fileNumber`. False: it existed, and stays
/// as it was, or could not be created.
bool CreateMultiFile(const std::string& path, int& fileNumber, const MultiOption& option);
/// Opens a file and reads its option block. False: no multi wavelength file; what was opened stays open under
/// `fileNumber`, the caller closes it.
bool OpenMultiFile(const std::string& path, int& fileNumber, MultiOption& option);
/// Record `index` from 0. False, with nothing read, when it does not lie wholly inside the file.
bool ReadMultiRecord(int fileNumber, MultiRecord& record, std::int32_t index);
/// Always true; FaultOf() tells after the close whether everything was written.
bool WriteMultiRecord(int fileNumber, const MultiRecord& record, std::int32_t index);
void CloseMultiFile(int fileNumber);

}  // namespace spectrane
