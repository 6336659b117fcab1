#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "files/datafile.h"

namespace spectrane {

/// Rows of the table of standards, and absorbance columns of each.
inline constexpr std::size_t kStandardRows = 21;
inline constexpr std::size_t kStandardColumns = 6;

/// Option block of a quantitation file (.qua).
struct QuaOption {
  /// The table of standards. The flags tell which rows were measured and which have a concentration.
  std::array<std::string, kStandardRows> StandardName;
  std::array<std::array<double, kStandardColumns>, kStandardRows> StandardAbs{};
  std::array<bool, kStandardRows> StandardAbsSet{};
  std::array<double, kStandardRows> StandardConc{};
  std::array<bool, kStandardRows> StandardConcSet{};
  std::array<std::string, kStandardRows> StandardNote;
  /// 0 first order through zero, 1 first order, 2 second order, 3 third order.
  std::int32_t FittingMethod = 0;
  std::int32_t SampleNumber = 0;
  /// Fitted coefficients, lowest power first, and the correlation coefficient.
  std::array<double, 4> CurveK{};
  double CurveR = 0;
  bool CurveValid = false;
  /// 1 fitted by standards, 2 typed coefficients.
  std::int32_t CurveItem = 0;
  std::array<double, 4> InputK{};
  std::string ConcUnit;
  std::int32_t WaveLengthNumber = 0;
  /// [nm]; entries 0 to 2 are used.
  std::array<double, 4> WaveLengthList{};
  /// The blank by wavelength: energies [counts] and gain number.
  std::array<std::int32_t, 4> BlankFullEnergy{};
  std::array<std::int32_t, 4> BlankDarkEnergy{};
  std::array<std::int32_t, 4> BlankGain{};
  bool BlankDone = false;
  std::array<double, 4> WaveLengthPara{};
  std::int32_t TestRecordCount = 0;

  bool operator==(const QuaOption&) const = default;
};

/// One measured sample.
struct QuaRecord {
  std::string Name;
  /// Entries 0 and 1 are the readings, 2 and 3 the combined absorbance of the two-wavelength form.
  std::array<double, 4> Abs{};
  double Conc = 0;
  std::string Note;

  bool operator==(const QuaRecord&) const = default;
};

/// Two bytes between option block and first record belong to no field.
const FileModule<QuaOption, QuaRecord>& QuaModule();

/// Creates a file that does not exist yet and leaves it open under `fileNumber`. False: it existed, and stays
/// as it was, or could not be created.
bool CreateQuaFile(const std::string& path, int& fileNumber, const QuaOption& option);
/// Opens a file and reads its option block. False: no quantitation; what was opened stays open under
/// `fileNumber`, the caller closes it.
bool OpenQuaFile(const std::string& path, int& fileNumber, QuaOption& option);
/// Record `index` from 0. False, with nothing read, when it does not lie wholly inside the file.
bool ReadQuaRecord(int fileNumber, QuaRecord& record, std::int32_t index);
/// Always true; FaultOf() tells after the close whether everything was written.
bool WriteQuaRecord(int fileNumber, const QuaRecord& record, std::int32_t index);
void CloseQuaFile(int fileNumber);

}  // namespace spectrane
