#include "acquire/baselinereferences.h"

#include <algorithm>

#include "base/numbers.h"

namespace spectrane {
namespace {

std::string Nanometres(double wavelength) {
  return ShortestText(wavelength) + " nm";
}

}  // namespace

BaselineReferences FindReferences(const std::string& path, const ScanGrid& grid, std::int32_t gainCount) {
  BSLOption option;
  std::vector<BSLRecord> records;
  if (const FileFault fault = LoadDataFile(BSLModule(), path, option, records))
    return {{}, FaultWords(fault)};
  if (!grid.IsWhole()) return {{}, "a baseline has whole nanometres only"};
  std::erase_if(records, [&](const BSLRecord& record) {
    return record.Amp < 1 || record.Amp > gainCount || record.Energy <= 0;
  });
  const auto before = [](const BSLRecord& record, double wavelength) {
    return record.Wavelength < wavelength;
  };
  std::sort(records.begin(), records.end(),
            [](const BSLRecord& a, const BSLRecord& b) { return a.Wavelength < b.Wavelength; });
  BaselineReferences found;
  for (std::int32_t i = 0; i < static_cast<std::int32_t>(grid.Count()); ++i) {
    const double wavelength = grid.At(i);
    if (wavelength < option.StartWavelength || wavelength > option.EndWavelength) {
      return {
          {},
          "it goes from " + Nanometres(option.StartWavelength) + " to " + Nanometres(option.EndWavelength)};
    }
    const auto record = std::lower_bound(records.begin(), records.end(), wavelength, before);
    if (record == records.end() || record->Wavelength != wavelength)
      return {{}, "it has nothing at " + Nanometres(wavelength)};
    found.References.push_back(*record);
  }
  return found;
}

FileFault SaveBaseline(const std::string& path, const std::vector<BSLRecord>& references, double now) {
  const BSLOption option{references.back().Wavelength, references.front().Wavelength, now, 0};
  return SaveDataFile(
      BSLModule(), path, option, static_cast<std::int32_t>(references.size()),
      [&](std::int32_t i) -> const BSLRecord& { return references[static_cast<std::size_t>(i)]; });
}

}  // namespace spectrane
