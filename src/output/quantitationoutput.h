#pragma once

#include "base/displayformats.h"
#include "modes/quantitation/quantitationdocument.h"
#include "output/documenthead.h"
#include "output/exportsheet.h"

namespace spectrane {

/// Columns of the two tables: one absorbance, or one for each wavelength and the combined one.
std::size_t AbsColumnsOf(const QuaOption& option);
std::string AbsTitleOf(const QuaOption& option, std::size_t place);
/// With the unit.
std::string ConcTitleOf(const QuaOption& option);

/// The standards (none with typed coefficients), and the samples, in the columns of the window's grids. What
/// these give refers to the document.
DataTable StandardsTable(const QuantitationDocument& document, const DisplayFormats& formats);
DataTable RecordsTable(const QuantitationDocument& document, const DisplayFormats& formats);
ExportSheet QuantitationSheet(const QuantitationDocument& document, const DisplayFormats& formats,
                              const DocumentHead& head);
Report QuantitationReport(const QuantitationDocument& document, const DisplayFormats& formats,
                          const DocumentHead& head);

}  // namespace spectrane
