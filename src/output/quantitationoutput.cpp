#include "output/quantitationoutput.h"

#include "base/language.h"
#include "base/numbers.h"
#include "output/plottexts.h"
#include "output/quantitationpicture.h"

namespace spectrane {
namespace {

constexpr int kQuantitationReport = 1049;
constexpr int kCoefficients = 1056;
constexpr int kStandardSample = 1058;
constexpr int kRecordList = 1059;
constexpr const char* kNoSamples = "No Quantitation Test Record!";

/// Between the picture's right edge and its plot [twips].
constexpr double kPictureRight = 300;

std::string WavelengthsOf(const QuaOption& option) {
  std::string list;
  const std::size_t count = option.WaveLengthNumber == 1 ? 1 : 2;
  for (std::size_t i = 0; i < count; ++i)
    list += (list.empty() ? "" : ", ") + Format(option.WaveLengthList[i], "0.0nm");
  return list;
}

std::string EquationOf(const QuantitationDocument& document, const DisplayFormats& formats) {
  return FormulaText(document.Formula(formats));
}

/// The columns that both tables have, without rows.
DataTable EmptyTable(const QuaOption& option, const DisplayFormats& formats, int heading) {
  DataTable table;
  table.Heading = Text(heading);
  table.Columns = {{Text(kNumberTitle), "0", 6}, {Text(kNameTitle), "", 20}};
  for (std::size_t place = 0; place < AbsColumnsOf(option); ++place)
    table.Columns.push_back({AbsTitleOf(option, place), formats.AbsFormat, 18});
  table.Columns.push_back({ConcTitleOf(option), kBySize, 16});
  table.Columns.push_back({Text(kNoteTitle), "", 30});
  table.EmptyWords = Text(kNoRecords);
  return table;
}

/// What a row of either table has.
struct RowValues {
  const std::string& Name;
  const double* Abs;
  bool AbsSet;
  double Conc;
  bool ConcSet;
  const std::string& Note;
};

TableCell CellOf(const RowValues& values, std::int32_t row, std::size_t column, std::size_t absColumns) {
  if (column == 0) return row + 1.0;
  if (column == 1) return values.Name;
  const std::size_t place = column - 2;
  if (place < absColumns) return values.AbsSet ? TableCell(values.Abs[place]) : TableCell();
  if (place == absColumns) return values.ConcSet ? TableCell(values.Conc) : TableCell();
  return values.Note;
}

}  // namespace

std::size_t AbsColumnsOf(const QuaOption& option) {
  return option.WaveLengthNumber == 1 ? 1 : 3;
}

std::string AbsTitleOf(const QuaOption& option, std::size_t place) {
  if (AbsColumnsOf(option) == 1 || place == 2) return Text(kAbsTitle);
  return Format(option.WaveLengthList[place], "0.0nm");
}

std::string ConcTitleOf(const QuaOption& option) {
  return Text(kConcTitle) + "(" + option.ConcUnit + ")";
}

DataTable StandardsTable(const QuantitationDocument& document, const DisplayFormats& formats) {
  const QuaOption& option = document.Option();
  DataTable table = EmptyTable(option, formats, kStandardSample);
  table.RowCount = document.FitsStandards() ? document.StandardRows() : 0;
  table.CellAt = [&option](std::int32_t row, std::size_t column) {
    const auto r = static_cast<std::size_t>(row);
    const RowValues values{option.StandardName[r], option.StandardAbs[r].data(), option.StandardAbsSet[r],
                           option.StandardConc[r], option.StandardConcSet[r],    option.StandardNote[r]};
    return CellOf(values, row, column, AbsColumnsOf(option));
  };
  return table;
}

DataTable RecordsTable(const QuantitationDocument& document, const DisplayFormats& formats) {
  DataTable table = EmptyTable(document.Option(), formats, kRecordList);
  table.RowCount = document.RecordCount();
  table.CellAt = [&document](std::int32_t row, std::size_t column) {
    const QuaRecord& record = document.Record(row);
    const RowValues values{record.Name, record.Abs.data(), true, record.Conc, true, record.Note};
    return CellOf(values, row, column, AbsColumnsOf(document.Option()));
  };
  return table;
}

ExportSheet QuantitationSheet(const QuantitationDocument& document, const DisplayFormats& formats,
                              const DocumentHead& head) {
  ExportSheet sheet;
  sheet.Lines = {head.Name(), Text(kQuantitationReport) + head.TimeWords(),
                 Text(kWavelengthWord) + ": " + WavelengthsOf(document.Option()),
                 Text(kCoefficients) + ": " + EquationOf(document, formats)};
  sheet.Tables = {StandardsTable(document, formats), RecordsTable(document, formats)};
  sheet.Tables.back().EmptyWords = kNoSamples;
  return sheet;
}

Report QuantitationReport(const QuantitationDocument& document, const DisplayFormats& formats,
                          const DocumentHead& head) {
  Report report = ReportOf(head, kQuantitationReport);
  const auto words = [](const std::string& text) { return QString::fromStdString(text); };
  report.Facts.push_back({words(Text(kWavelengthWord)) + u':', words(WavelengthsOf(document.Option()))});
  report.Blocks.emplace_back(ReportText{words(Text(kCoefficients)), words(EquationOf(document, formats))});
  const QFont font = report.Font;
  ReportPicture picture;
  picture.RightMargin = kPictureRight;
  picture.Paint = [&document, formats, font](QPainter& painter, const QRectF& surface, double twipsPerUnit) {
    QuantitationPictureOptions options;
    options.TwipsPerUnit = twipsPerUnit;
    options.Font = font;
    PaintQuantitation(painter, surface, document.Option(), formats, options);
  };
  report.Blocks.emplace_back(std::move(picture));
  report.Blocks.emplace_back(StandardsTable(document, formats));
  report.Blocks.emplace_back(RecordsTable(document, formats));
  return report;
}

}  // namespace spectrane
