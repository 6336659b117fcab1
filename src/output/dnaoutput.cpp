#include "output/dnaoutput.h"

#include "base/language.h"
#include "base/numbers.h"
#include "output/plottexts.h"

namespace spectrane {
namespace {

constexpr int kModeHeading = 1031;
constexpr int kFirstModeName = 1032;
constexpr const char* kDNAReport = "DNA/Protein Test Report";
constexpr const char* kNoDNASamples = "No DNA/Protein Test Record!";
constexpr const char* kDNATitle = "DNA(ug/ml)";
constexpr const char* kProteinTitle = "Protein(ug/ml)";
constexpr const char* kRatioTitle = "Radio";

/// "[Abs(260.0nm)-Abs(320.0nm)]".
std::string Corrected(double wavelength, double reference) {
  return "[" + AbsAt(wavelength) + "-" + AbsAt(reference) + "]";
}

std::string TimesFactor(double factor) {
  const std::string text = ShortestText(factor);
  return "×(" + (text.empty() ? "-" : text) + ")";
}

std::string ModeWords(const DNADocument& document) {
  return Text(kModeHeading) + ": " + Text(kFirstModeName + static_cast<int>(ModeOf(document.Settings())) - 1);
}

}  // namespace

std::vector<std::string> DNAFormulas(const DNAOption& option) {
  const std::string first = Corrected(option.WaveLength[0], option.WaveLength[2]);
  const std::string second = Corrected(option.WaveLength[1], option.WaveLength[2]);
  const auto& factor = option.Factor;
  return {"Conc.(DNA) = " + first + TimesFactor(factor[0]) + "-" + second + TimesFactor(factor[1]),
          "Conc.(Protein) = " + second + TimesFactor(factor[2]) + "-" + first + TimesFactor(factor[3]),
          "Radio = " + first + "/" + second};
}

DataTable DNASampleTable(const DNADocument& document, const DisplayFormats& formats) {
  const auto& wavelength = document.Option().WaveLength;
  DataTable table;
  table.Columns = {{Text(kNumberTitle), "0", 6},
                   {Text(kSampleNameTitle), "", 24},
                   {AbsAt(wavelength[0]), formats.AbsFormat, 14},
                   {AbsAt(wavelength[1]), formats.AbsFormat, 14},
                   {AbsAt(wavelength[2]), formats.AbsFormat, 14},
                   {kDNATitle, kBySize, 14},
                   {kProteinTitle, kBySize, 16},
                   {kRatioTitle, kBySize, 10},
                   {Text(kNoteTitle), "", 30}};
  table.RowCount = document.RecordCount();
  table.EmptyWords = kNoDNASamples;
  table.CellAt = [&document](std::int32_t row, std::size_t column) -> TableCell {
    const DNARecord& record = document.Record(row);
    switch (column) {
      case 0:
        return row + 1.0;
      case 1:
        return record.Name;
      case 5:
        return record.DNA;
      case 6:
        return record.Protein;
      case 7:
        return record.Ratio;
      case 8:
        return record.Note;
      default:
        return record.Abs[column - 2];
    }
  };
  return table;
}

ExportSheet DNASheet(const DNADocument& document, const DisplayFormats& formats, const DocumentHead& head) {
  ExportSheet sheet;
  sheet.Lines = {head.Name(), kDNAReport + head.TimeWords(), ModeWords(document)};
  for (const std::string& formula : DNAFormulas(document.Option())) sheet.Lines.push_back(formula);
  sheet.Tables = {DNASampleTable(document, formats)};
  return sheet;
}

Report DNAReport(const DNADocument& document, const DisplayFormats& formats, const DocumentHead& head) {
  Report report = ReportOf(head, kDNAReport);
  QStringList lines;
  for (const std::string& formula : DNAFormulas(document.Option()))
    lines.append(QString::fromStdString(formula));
  report.Blocks.emplace_back(ReportText{QString::fromStdString(ModeWords(document)), lines.join(u'\n')});
  report.Blocks.emplace_back(DNASampleTable(document, formats));
  return report;
}

}  // namespace spectrane
