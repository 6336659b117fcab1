#include "spectrum/spectrum.h"

namespace spectrane {

const char* WordsOf(NoResult reason) {
  switch (reason) {
    case NoResult::None:
      return "";
    case NoResult::NoSource:
      return "no points";
    case NoResult::MissingFile:
      return "the second file is missing";
    case NoResult::TooFewPoints:
      return "too few points";
    case NoResult::EqualWavelengths:
      return "two neighbouring points with the same wavelength";
    case NoResult::NoOverlap:
      return "the two spectra have no wavelengths in common";
    case NoResult::NoPartner:
      return "no point of the second spectrum stands beside one of the first";
  }
  return "";
}

}  // namespace spectrane
