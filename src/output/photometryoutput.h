#pragma once

#include "base/displayformats.h"
#include "modes/photometry/photometrydocument.h"
#include "output/documenthead.h"
#include "output/exportsheet.h"

namespace spectrane {

/// The readings, in the columns of the window's grid. What these give refers to the document.
DataTable PhotometryTable(const PhotometryDocument& document, const DisplayFormats& formats);
ExportSheet PhotometrySheet(const PhotometryDocument& document, const DisplayFormats& formats,
                            const DocumentHead& head);
Report PhotometryReport(const PhotometryDocument& document, const DisplayFormats& formats,
                        const DocumentHead& head);

}  // namespace spectrane
