#pragma once

#include "files/dnafile.h"

namespace spectrane {

/// Computes DNA, protein [ug/ml] and ratio of `record` from its absorbances at wavelength 1, wavelength 2 and
/// the reference (A1, A2, Ar) with the factors F1 to F4:
///     DNA = (A1 - Ar) F1 - (A2 - Ar) F2,  Protein = (A2 - Ar) F3 - (A1 - Ar) F4,
///     Ratio = (A1 - Ar) / (A2 - Ar).
/// Where A2 equals Ar the ratio stays what it was.
void ComputeDNA(const DNAOption& option, DNARecord& record);

}  // namespace spectrane
