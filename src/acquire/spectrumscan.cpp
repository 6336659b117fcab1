#include "acquire/spectrumscan.h"

namespace spectrane {

AcquisitionEnd ScanReferences(AcquisitionSteps& steps, const ScanGrid& grid,
                              std::vector<BSLRecord>& references) {
  const auto count = static_cast<std::int32_t>(grid.Count());
  references.reserve(references.size() + static_cast<std::size_t>(count));
  return steps.RunAlone([&] {
    return steps.ForEach(count, [&](std::int32_t i) {
      BSLRecord reference;
      reference.Wavelength = grid.At(i);
      if (!steps.MoveTo(reference.Wavelength) || !steps.TakeReference(reference.Energy, reference.Amp))
        return false;
      references.push_back(reference);
      return true;
    });
  });
}

AcquisitionEnd ScanSpectrum(AcquisitionSteps& steps, std::span<const BSLRecord> references,
                            std::int32_t samples, std::vector<WLSRecord>& points) {
  points.reserve(points.size() + references.size());
  return steps.RunAlone([&] {
    return steps.ForEach(static_cast<std::int32_t>(references.size()), [&](std::int32_t i) {
      const BSLRecord& reference = references[static_cast<std::size_t>(i)];
      WLSRecord point{0, reference.Energy, steps.DarkOf(reference.Amp), reference.Wavelength, reference.Amp};
      if (!steps.MoveTo(point.Wavelength) || !steps.UseGain(point.Gain) ||
          !steps.Read(samples, point.SampleEnergy))
        return false;
      points.push_back(point);
      return true;
    });
  });
}

}  // namespace spectrane
