#pragma once

#include <cstdint>
#include <string>

#include "files/datafile.h"
#include "files/wlsoption.h"

namespace spectrane {

/// One point of a spectrum as it was measured; Abs and %T follow from the energies.
struct WLSRecord {
  /// Energies of the sample, of the blank and without light [counts].
  std::int32_t SampleEnergy = 0;
  std::int32_t ReferenceEnergy = 0;
  std::int32_t DarkEnergy = 0;
  /// [nm]
  double Wavelength = 0;
  /// Gain number at which the energies were read.
  std::int32_t Gain = 0;

  bool operator==(const WLSRecord&) const = default;
};

/// The spectra of the scan window; processed ones are another kind (files/wlsfile2.h).
const FileModule<WLSOption, WLSRecord>& WLSModule();

/// Creates a file that does not exist yet and leaves it open under `fileNumber`. False: it existed, and stays
/// as it was, or could not be created.
bool CreateWLSFile(const std::string& path, int& fileNumber, const WLSOption& option);
/// Opens a file and reads its option block. False: no measured spectrum; what was opened stays open under
/// `fileNumber`, the caller closes it.
bool OpenWLSFile(const std::string& path, int& fileNumber, WLSOption& option);
/// Record `index` from 0. False, with nothing read, when it does not lie wholly inside the file.
bool ReadWLSRecord(int fileNumber, WLSRecord& record, std::int32_t index);
/// Always true; FaultOf() tells after the close whether everything was written.
bool WriteWLSRecord(int fileNumber, const WLSRecord& record, std::int32_t index);
void CloseWLSFile(int fileNumber);

}  // namespace spectrane
