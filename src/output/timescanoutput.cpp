#include "output/timescanoutput.h"

#include "base/language.h"
#include "base/numbers.h"
#include "output/curvereport.h"
#include "output/foundmarks.h"

namespace spectrane {
namespace {

constexpr int kTimeScanReport = 981;
constexpr int kScanTime = 987;
constexpr int kScanInterval = 988;
constexpr int kTimeScanMode = 989;
/// Columns of a report: without the energies.
constexpr std::size_t kReportColumns = 4;

std::vector<TableColumn> TimeColumns(const DisplayFormats& formats) {
  return {{"No.", "0", 6},
          {"Time(s)", "0.0", 12},
          {"Abs", formats.AbsFormat, 12},
          {"Trans(%T)", formats.TransFormat, 12},
          {"Energy", "0", 10},
          {"Energy(100%T)", "0", 16},
          {"Energy(0%T)", "0", 14}};
}

/// The seven cells of a point; `number` counts from 1.
TableCell TimedCell(const TimeScanDocument& document, std::int32_t number, std::int32_t point,
                    std::size_t column) {
  switch (column) {
    case 0:
      return static_cast<double>(number);
    case 1:
      return document.Point(point).Time;
    case 2:
      return document.PointAbs(point);
    case 3:
      return document.PointTrans(point);
    case 4:
      return static_cast<double>(document.Point(point).Energy);
    case 5:
      return static_cast<double>(document.Option().FullEnergy);
    default:
      return static_cast<double>(document.Option().DarkEnergy);
  }
}

/// What stands above the rows and in the place of rows that there are not.
struct TableWords {
  const char* Heading;
  const char* Empty;
};

DataTable FoundTable(const TimeScanSource& scan, const TableWords& words, std::size_t columns) {
  DataTable table;
  table.Heading = words.Heading;
  table.EmptyWords = words.Empty;
  table.Columns = TimeColumns(scan.Formats);
  table.Columns.resize(columns);
  const std::vector<std::int32_t> points = FoundPoints(scan.Found);
  table.RowCount = static_cast<std::int32_t>(points.size());
  table.CellAt = [&document = scan.Document, points](std::int32_t row, std::size_t column) {
    return TimedCell(document, row + 1, points[static_cast<std::size_t>(row)], column);
  };
  return table;
}

DataTable AllTable(const TimeScanSource& scan, const TableWords& words, std::size_t columns) {
  DataTable table;
  table.Heading = words.Heading;
  table.EmptyWords = words.Empty;
  table.Columns = TimeColumns(scan.Formats);
  table.Columns.resize(columns);
  table.RowCount = scan.Document.DataCount();
  table.CellAt = [&document = scan.Document](std::int32_t row, std::size_t column) {
    return TimedCell(document, row + 1, row, column);
  };
  return table;
}

std::string ModeRange(const TimeScanSource& scan) {
  const TSOption& option = scan.Document.Option();
  if (scan.Document.ShowsTrans()) {
    return "Trans%(" + Format(option.TransBottom, scan.Formats.TransFormat) + "%T - " +
           Format(option.TransTop, scan.Formats.TransFormat) + "%T)";
  }
  return "Abs(" + Format(option.AbsBottom, scan.Formats.AbsFormat) + "Abs - " +
         Format(option.AbsTop, scan.Formats.AbsFormat) + "Abs)";
}

std::string IntervalWords(std::int32_t index) {
  const bool known = index >= 0 && index < static_cast<std::int32_t>(kIntervalNames.size());
  // Their names begin with a blank.
  return known ? kIntervalNames[static_cast<std::size_t>(index)] + 1
               : ShortestText(IntervalMs(index) / 1000.0) + " Second";
}

}  // namespace

ExportSheet TimeScanSheet(const TimeScanSource& scan, const DocumentHead& head) {
  const TimeScanDocument& document = scan.Document;
  ExportSheet sheet;
  sheet.Lines = {head.Name(),
                 "Wavelength: " + Format(document.PointWavelength(), "0.0") + " nm   Time: " +
                     Format(document.StartSecond(), "0.0") + "s-" + Format(document.EndSecond(), "0.0") +
                     "s" + (document.ShowsTrans() ? " Test Mode: Trans.(%T) Mode" : "  Test Mode: Abs Mode") +
                     head.TimeWords()};
  sheet.TextOnlyLines = 1;
  const std::size_t columns = TimeColumns(scan.Formats).size();
  sheet.Tables = {FoundTable(scan, {"PeaK/Valley Data Record", "No Peak Data."}, columns),
                  AllTable(scan, {"Time Scan Data Record", "Error: No Time Scan Data Record!"}, columns)};
  return sheet;
}

Report TimeScanReport(const TimeScanSource& scan, const DocumentHead& head, const TimeScanView& seen) {
  const TimeScanDocument& document = scan.Document;
  Report report = ReportOf(head, kTimeScanReport);
  const auto fact = [&report](int label, const std::string& value) {
    report.Facts.push_back({QString::fromStdString(Text(label)), QString::fromStdString(value)});
  };
  fact(kScanTime, ShortestText(document.StartSecond()) + "s - " + ShortestText(document.EndSecond()) + "s");
  fact(kScanInterval, IntervalWords(document.PointInterval()));
  fact(kTimeScanMode, ModeRange(scan));
  const TimeScanSettings& parts = scan.Settings;
  if (parts.PrintCurve) report.Blocks.emplace_back(CurveReportPicture(TimeScanCurve(scan, seen, {})));
  if (parts.PrintPeakValley) {
    report.Blocks.emplace_back(
        FoundTable(scan, {"Peak/Valley Data List", "No Peak/Valley Data"}, kReportColumns));
  }
  if (parts.PrintDataList)
    report.Blocks.emplace_back(AllTable(scan, {"Data List", "No Data"}, kReportColumns));
  return report;
}

}  // namespace spectrane
