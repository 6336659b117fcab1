#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "acquire/acquisition.h"
#include "acquire/scangrid.h"
#include "files/bslfile.h"
#include "files/wlsfile.h"

namespace spectrane {

/// The light of what stands in the beam: at each wavelength a move and a `rezero`. Energy and gain of each
/// come behind those in `references`.
AcquisitionEnd ScanReferences(AcquisitionSteps& steps, const ScanGrid& grid,
                              std::vector<BSLRecord>& references);

/// A spectrum of what stands in the beam: at each wavelength of `references` a move, its gain and a reading
/// out of `samples` samples. The points come behind those in `points`, with the dark energies of the state.
/// The gains have to be those of the instrument.
AcquisitionEnd ScanSpectrum(AcquisitionSteps& steps, std::span<const BSLRecord> references,
                            std::int32_t samples, std::vector<WLSRecord>& points);

}  // namespace spectrane
