#include "acquire/wavelengthtable.h"

#include <utility>

#include "link/function.h"

namespace spectrane {
namespace {

constexpr std::int32_t kTableSamples = 10;

}  // namespace

WavelengthTable::WavelengthTable(AcquisitionSteps& steps, std::vector<double> wavelengths)
    : steps_(steps), wavelengths_(std::move(wavelengths)) {}

AcquisitionEnd WavelengthTable::TakeBlanks() {
  blanks_.clear();
  return steps_.RunAlone([this] {
    return steps_.ForEach(static_cast<std::int32_t>(wavelengths_.size()), [this](std::int32_t i) {
      Blank blank;
      if (!steps_.MoveTo(wavelengths_[static_cast<std::size_t>(i)]) ||
          !steps_.TakeReference(blank.FullEnergy, blank.Gain))
        return false;
      blanks_.push_back(blank);
      return true;
    });
  });
}

AcquisitionEnd WavelengthTable::MeasureSample(std::vector<double>& abs) {
  std::vector<double> row;
  const AcquisitionEnd end = steps_.RunAlone([&] {
    return steps_.ForEach(static_cast<std::int32_t>(blanks_.size()), [&](std::int32_t i) {
      const Blank& blank = blanks_[static_cast<std::size_t>(i)];
      std::int32_t energy = 0;
      if (!steps_.MoveTo(wavelengths_[static_cast<std::size_t>(i)]) || !steps_.UseGain(blank.Gain) ||
          !steps_.Read(kTableSamples, energy))
        return false;
      row.push_back(AbsFromEnergy(energy, blank.FullEnergy, steps_.DarkOf(blank.Gain)));
      return true;
    });
  });
  if (end == AcquisitionEnd::Finished) abs = std::move(row);
  return end;
}

}  // namespace spectrane
