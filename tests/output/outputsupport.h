#pragma once

#include <QDateTime>

#include "base/basesupport.h"
#include "base/notfinite.h"
#include "files/wlsfile.h"
#include "modes/photometry/photometrydocument.h"
#include "modes/quantitation/quantitationdocument.h"
#include "output/documenthead.h"
#include "output/scanoutput.h"

namespace spectrane::testing_output {

/// 29 February 2024, five minutes past one in the afternoon.
inline DocumentHead HeadFor(const std::string& path) {
  return {path,         "Photometry 1", QDateTime(QDate(2024, 2, 29), QTime(13, 5, 9)), "M\xC3\xBCller",
          "Laboratory", false};
}

/// Half of the light, all of it, and a row without a blank.
inline PhotometryDocument ThreeReadings() {
  PhotometryDocument document;
  document.Append({5000, 10000, 0, 546, "half"});
  document.Append({10000, 10000, 0, 620.5, "=1+1\t\xCE\xBCg\nnext"});
  document.Append({50, 50, 50, 546, ""});
  return document;
}

/// Conc. = 10 A through two standards, and one sample.
inline QuantitationDocument RedDye() {
  QuantitationDocument document;
  document.SetStandardName(0, "weak");
  document.SetStandardConc(0, 1);
  document.SetStandardReadings(0, 0.1);
  document.SetStandardConc(1, 10);
  document.SetStandardReadings(1, 1.0);
  document.Append(document.MakeRecord("sample \xE6\xB5\x8B", 0.5));
  return document;
}

/// Five points from 500 nm on; the third is a peak of the transmittances' own making.
struct SmallScan {
  WLSOption Option{500, 502, 3, 0, 100, 0, 65535, 0, 1, 1, 1, 1, 5, 1};
  std::vector<double> Wavelength = {500, 500.5, 501, 501.5, 502};
  std::vector<double> Trans = {100, 50, 10, 50, 100};
  std::vector<double> Abs = {0, 0.30103, 1, 0.30103, kNaN};
  std::vector<std::int32_t> Peaks = {2};
  std::vector<std::int32_t> Valleys = {1, 3};

  ScanSource Source() const {
    return {Option,
            ScanModeOf(Option.DisplayMode),
            {Wavelength, Trans, Abs},
            [](std::int32_t i) {
              return WLSRecord{1000 + i, 20000, 60, 0, 3};
            },
            Peaks,
            Valleys};
  }
};

}  // namespace spectrane::testing_output
