#include "output/photometryoutput.h"

#include "base/language.h"
#include "output/plottexts.h"

namespace spectrane {
namespace {

constexpr int kPhotometryReport = 1317;
constexpr int kPhotometryOption = 1318;
constexpr const char* kNoReadings = "No Photometry Test Record!";

std::string OptionWords(const PhotometryDocument& document) {
  std::vector<double> wavelengths;
  for (std::int32_t row = 0; row < document.RecordCount(); ++row)
    wavelengths.push_back(document.RecordWavelength(row));
  return Text(kWavelengthWord) + ": " + WavelengthList(std::move(wavelengths));
}

}  // namespace

DataTable PhotometryTable(const PhotometryDocument& document, const DisplayFormats& formats) {
  DataTable table;
  table.Columns = {{Text(kNumberTitle), "0", 6},
                   {Text(kWavelengthTitle), formats.WavelengthFormat, 16},
                   {Text(kAbsTitle), formats.AbsFormat, 18},
                   {Text(kTransTitle), formats.TransFormat, 20},
                   {Text(kEnergyTitle), "0", 10},
                   {Text(kNoteTitle), "", 30}};
  table.RowCount = document.RecordCount();
  table.EmptyWords = kNoReadings;
  table.CellAt = [&document](std::int32_t row, std::size_t column) -> TableCell {
    switch (column) {
      case 0:
        return row + 1.0;
      case 1:
        return document.RecordWavelength(row);
      case 2:
        return document.RecordAbs(row);
      case 3:
        return document.RecordTrans(row);
      case 4:
        return static_cast<double>(document.RecordEnergy(row));
      default:
        return document.RecordNote(row);
    }
  };
  return table;
}

ExportSheet PhotometrySheet(const PhotometryDocument& document, const DisplayFormats& formats,
                            const DocumentHead& head) {
  ExportSheet sheet;
  sheet.Lines = {head.Name(), Text(kPhotometryReport) + head.TimeWords(),
                 Text(kPhotometryOption) + "  " + OptionWords(document)};
  sheet.Tables = {PhotometryTable(document, formats)};
  return sheet;
}

Report PhotometryReport(const PhotometryDocument& document, const DisplayFormats& formats,
                        const DocumentHead& head) {
  Report report = ReportOf(head, kPhotometryReport);
  report.Facts.push_back({QString::fromStdString(Text(kPhotometryOption)) + u':',
                          QString::fromStdString(OptionWords(document))});
  DataTable table = PhotometryTable(document, formats);
  table.EmptyWords = Text(kNoRecords);
  report.Blocks.emplace_back(std::move(table));
  return report;
}

}  // namespace spectrane
