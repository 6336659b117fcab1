#pragma once

#include <string>
#include <vector>

#include "base/displayformats.h"
#include "modes/dna/dnadocument.h"
#include "output/documenthead.h"
#include "output/exportsheet.h"

namespace spectrane {

/// How DNA, protein and their ratio come about, a line each.
std::vector<std::string> DNAFormulas(const DNAOption& option);

/// The samples, in the columns of the window's grid. What these give refers to the document.
DataTable DNASampleTable(const DNADocument& document, const DisplayFormats& formats);
ExportSheet DNASheet(const DNADocument& document, const DisplayFormats& formats, const DocumentHead& head);
Report DNAReport(const DNADocument& document, const DisplayFormats& formats, const DocumentHead& head);

}  // namespace spectrane
