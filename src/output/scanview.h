#pragma once

#include "base/displayformats.h"
#include "output/curveview.h"
#include "spectrum/scansettings.h"
#include "spectrum/spectrumdocument.h"

namespace spectrane {

/// What the curve of a spectrum shows as the document stands: its view, its mode, the marks of the last
/// search. `document` must outlive it. `name` is the curve's, for those who hear it.
CurveView ScanView(const SpectrumDocument& document, const ScanSettings& settings,
                   const DisplayFormats& formats, const QString& name);

/// The part of wavelengths and values that is seen in a mode; of the document's view; and the other way.
CurveScale SeenOf(const ScanScale& scale, ScanMode mode);
CurveScale ScanViewScale(const SpectrumDocument& document);
void LookThrough(ScanScale& scale, ScanMode mode, const CurveScale& seen);
/// What a wavelength axis and the value axis of a mode (absorbance or %T, or energy) say.
CurveAxis WavelengthAxis();
CurveAxis ValueAxis(ScanMode mode, const DisplayFormats& formats);
AxisKind ScanAxis(ScanMode mode);
/// A point's value in the mode that is shown, with its unit.
QString ScanValueText(const SpectrumDocument& document, const DisplayFormats& formats, std::int32_t point);

}  // namespace spectrane
