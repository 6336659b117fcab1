#pragma once

#include <cstdint>
#include <string>

#include "files/datafile.h"

namespace spectrane {

/// Option block of a photometry file (.bas).
struct BasicOption {
  /// Version of the writer, as in the header.
  std::string Version;
  /// Local date and time of writing: "yyyy-MM-dd  hh:mm:ss".
  std::string Written;
  std::int32_t RecordCount = 0;

  bool operator==(const BasicOption&) const = default;
};

/// One reading of a photometry file.
struct BasicRecord {
  /// Energies [counts].
  std::int32_t SampleEnergy = 0;
  std::int32_t ReferenceEnergy = 0;
  std::int32_t DarkEnergy = 0;
  /// [nm]
  double Wavelength = 0;
  std::string Note;

  bool operator==(const BasicRecord&) const = default;
};

const FileModule<BasicOption, BasicRecord>& BasicModule();

/// Creates a file that does not exist yet and leaves it open under `fileNumber`. False: it existed, and stays
/// as it was, or could not be created.
bool CreateBasicFile(const std::string& path, int& fileNumber, const BasicOption& option);
/// Opens a file and reads its option block. False: no photometry file; what was opened stays open under
/// `fileNumber`, the caller closes it.
bool OpenBasicFile(const std::string& path, int& fileNumber, BasicOption& option);
/// Record `index` from 0. False, with nothing read, when it does not lie wholly inside the file.
bool ReadBasicRecord(int fileNumber, BasicRecord& record, std::int32_t index);
/// Always true; FaultOf() tells after the close whether everything was written.
bool WriteBasicRecord(int fileNumber, const BasicRecord& record, std::int32_t index);
void CloseBasicFile(int fileNumber);

}  // namespace spectrane
