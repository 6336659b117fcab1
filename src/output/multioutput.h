#pragma once

#include <string>

#include "base/displayformats.h"
#include "modes/multi/multidocument.h"
#include "output/documenthead.h"
#include "output/exportsheet.h"

namespace spectrane {

/// "Result = 1.000×Abs(546.0nm)+..."; with a table that cannot be used the words for it.
std::string MultiFormula(const MultiOption& option);

/// The samples, in the columns of the window's grid. What these give refers to the document.
DataTable MultiSampleTable(const MultiDocument& document, const DisplayFormats& formats);
ExportSheet MultiSheet(const MultiDocument& document, const DisplayFormats& formats,
                       const DocumentHead& head);
Report MultiReport(const MultiDocument& document, const DisplayFormats& formats, const DocumentHead& head);

}  // namespace spectrane
