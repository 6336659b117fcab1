#include "spectrum/spectrum.h"

namespace spectrane {

const char* WordsOf(NoResult reason) {
  switch (reason) {
    case NoResult::None:
      return "";
    case NoResult::NoSource:
      return "no points";
    case NoResult::TooFewPoints:
      return "too few points";
    case NoResult::EqualWavelengths:
      return "two neighbouring points with the same wavelength";
    case NoResult::NoOverlap:
      return "the two spectra have no wavelengths in common";
  }
  return "";
}

}  // namespace spectrane
