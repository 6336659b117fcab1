#pragma once

#include <cstdint>
#include <string>

#include "files/datafile.h"
#include "files/wlsoption.h"

namespace spectrane {

/// One point of a processed spectrum.
struct WLS2Record {
  /// [nm]
  double Wavelength = 0;
  /// [%T]
  double Trans = 0;
  double Abs = 0;

  bool operator==(const WLS2Record&) const = default;
};

/// Spectra that smoothing, derivative and calculation made: the same ending, block and record size as a
/// measured spectrum, another file type and another record. The energy fields of the option block are 0.
const FileModule<WLSOption, WLS2Record>& WLS2Module();

/// Creates a file that does not exist yet and leaves it open under `fileNumber`. False: it existed, and stays
/// as it was, or could not be created.
bool CreateWLS2File(const std::string& path, int& fileNumber, const WLSOption& option);
/// Opens a file and reads its option block. False: no processed spectrum; what was opened stays open under
/// `fileNumber`, the caller closes it.
bool OpenWLS2File(const std::string& path, int& fileNumber, WLSOption& option);
/// Record `index` from 0. False, with nothing read, when it does not lie wholly inside the file.
bool ReadWLS2Record(int fileNumber, WLS2Record& record, std::int32_t index);
/// Always true; FaultOf() tells after the close whether everything was written.
bool WriteWLS2Record(int fileNumber, const WLS2Record& record, std::int32_t index);
void CloseWLS2File(int fileNumber);

}  // namespace spectrane
