#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "files/datafile.h"

namespace spectrane {

/// Option block of a DNA/protein file (.dna).
struct DNAOption {
  /// The two wavelengths, the reference wavelength and a spare entry [nm].
  std::array<double, 4> WaveLength{};
  /// F1 to F4.
  std::array<double, 4> Factor{};
  /// 1 Mode 1, 2 Mode 2, 3 Custom Mode.
  std::int32_t Option = 0;
  /// Stored and restored as it stands.
  std::int32_t Spare = 0;
  std::int32_t RecordCount = 0;

  bool operator==(const DNAOption&) const = default;
};

/// One sample of a DNA/protein file.
struct DNARecord {
  std::string Name;
  /// At the three wavelengths, and a spare entry.
  std::array<double, 4> Abs{};
  /// Concentrations of DNA and protein.
  double DNA = 0;
  double Protein = 0;
  double Ratio = 0;
  std::string Note;

  bool operator==(const DNARecord&) const = default;
};

const FileModule<DNAOption, DNARecord>& DNAModule();

/// Creates a file that does not exist yet and leaves it open under `fileNumber`. False: it existed, and stays
/// as it was, or could not be created.
bool CreateDNAFile(const std::string& path, int& fileNumber, const DNAOption& option);
/// Opens a file and reads its option block. False: no DNA/protein file; what was opened stays open under
/// `fileNumber`, the caller closes it.
bool OpenDNAFile(const std::string& path, int& fileNumber, DNAOption& option);
/// Record `index` from 0. False, with nothing read, when it does not lie wholly inside the file.
bool ReadDNARecord(int fileNumber, DNARecord& record, std::int32_t index);
/// Always true; FaultOf() tells after the close whether everything was written.
bool WriteDNARecord(int fileNumber, const DNARecord& record, std::int32_t index);
void CloseDNAFile(int fileNumber);

}  // namespace spectrane
