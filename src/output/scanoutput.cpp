#include "output/scanoutput.h"

#include <algorithm>

#include "base/language.h"
#include "base/numbers.h"
#include "output/plottexts.h"

namespace spectrane {
namespace {

constexpr int kScanReport = 936;
constexpr int kScanRange = 942;
constexpr int kScanMode = 943;
constexpr int kStatisticsTitle = 412;
constexpr int kMaxRecord = 1314;
constexpr int kMinRecord = 1315;
constexpr int kAverageRecord = 1316;

constexpr const char* kWavelengthPattern = "0.0";
constexpr const char* kEnergyPattern = "0";

std::string ModeWords(ScanMode mode) {
  switch (mode) {
    case ScanMode::Trans:
      return " Test Mode: Trans.(%T) Mode";
    case ScanMode::Energy:
      return "  Test Mode: Energy Mode";
    case ScanMode::Abs:
      break;
  }
  return "  Test Mode: Abs Mode";
}

std::string ModeTitle(ScanMode mode) {
  return Text(mode == ScanMode::Trans ? kTransTitle : mode == ScanMode::Energy ? kEnergyTitle : kAbsTitle);
}

std::vector<TableColumn> SheetColumns(const DisplayFormats& formats) {
  return {{"No.", "0", 6},
          {"Wavelength(nm)", kWavelengthPattern, 16},
          {"Abs", formats.AbsFormat, 12},
          {"Trans(%T)", formats.TransFormat, 12},
          {"Energy", kEnergyPattern, 10},
          {"Energy(100%T)", kEnergyPattern, 16},
          {"Energy(0%T)", kEnergyPattern, 14}};
}

std::vector<TableColumn> ReportColumns(const DisplayFormats& formats) {
  std::vector<TableColumn> columns = SheetColumns(formats);
  columns.resize(4);
  return columns;
}

/// The seven cells of a point; `number` counts from 1.
TableCell PointCell(const ScanSource& scan, std::int32_t number, std::int32_t index, std::size_t column) {
  const auto i = static_cast<std::size_t>(index);
  switch (column) {
    case 0:
      return static_cast<double>(number);
    case 1:
      return scan.Points.Wavelength[i];
    case 2:
      return scan.Points.Abs[i];
    case 3:
      return scan.Points.Trans[i];
    case 4:
      return static_cast<double>(scan.RecordAt(index).SampleEnergy);
    case 5:
      return static_cast<double>(scan.RecordAt(index).ReferenceEnergy);
    default:
      return static_cast<double>(scan.RecordAt(index).DarkEnergy);
  }
}

/// Peaks, then valleys, numbered on.
DataTable PeakTable(const ScanSource& scan, std::vector<TableColumn> columns) {
  DataTable table;
  table.Heading = "Peak/Valley Data Record";
  table.Columns = std::move(columns);
  table.RowCount = static_cast<std::int32_t>(scan.PeakIndex.size() + scan.ValleyIndex.size());
  table.EmptyWords = "No Peak/Valley Data.";
  table.CellAt = [&scan](std::int32_t row, std::size_t column) {
    const auto r = static_cast<std::size_t>(row);
    const std::size_t peaks = scan.PeakIndex.size();
    const std::int32_t index = r < peaks ? scan.PeakIndex[r] : scan.ValleyIndex[r - peaks];
    return PointCell(scan, row + 1, index, column);
  };
  return table;
}

DataTable PointTable(const ScanSource& scan, std::vector<TableColumn> columns, std::int32_t interval) {
  DataTable table;
  table.Heading = "Wavelength Scan Data Record";
  table.Columns = std::move(columns);
  const auto count = static_cast<std::int32_t>(scan.Points.Wavelength.size());
  table.RowCount = (count + interval - 1) / interval;
  table.EmptyWords = "Error: No Wavelength Scan Data Record!";
  table.CellAt = [&scan, interval](std::int32_t row, std::size_t column) {
    return PointCell(scan, row * interval + 1, row * interval, column);
  };
  return table;
}

/// Maximum, minimum and means of a range, a row each.
DataTable StatisticsTable(const ScanSource& scan, const DisplayFormats& formats,
                          const ScanReportParts& parts) {
  const MaxMinAverage result =
      CaculateMaxMinAverage(scan.Points, parts.MaxStartWavelength, parts.MaxEndWavelength);
  DataTable table;
  table.Heading = Text(kStatisticsTitle) + "  " + Format(parts.MaxStartWavelength, "0.0nm") + " - " +
                  Format(parts.MaxEndWavelength, "0.0nm");
  table.Columns = ReportColumns(formats);
  table.Columns[0] = {Text(kNumberTitle), "", 16};
  table.RowCount = 3;
  table.CellAt = [result](std::int32_t row, std::size_t column) -> TableCell {
    constexpr int kNames[] = {kMaxRecord, kMinRecord, kAverageRecord};
    const SpectrumValues* const rows[] = {&result.Max, &result.Min, &result.Average};
    const SpectrumValues& values = *rows[row];
    switch (column) {
      case 0:
        return Text(kNames[row]);
      case 1:
        // Means belong to the whole range.
        return row == 2 ? TableCell() : TableCell(values.Wavelength);
      case 2:
        return values.Abs;
      default:
        return values.Trans;
    }
  };
  return table;
}

}  // namespace

ScanSource ScanSourceOf(const SpectrumDocument& document) {
  return {document.Option(),
          document.Mode(),
          {document.Wavelength(), document.Trans(), document.Abs()},
          [&document](std::int32_t index) { return document.Record(index); },
          document.Found().PeakIndex,
          document.Found().ValleyIndex};
}

ExportSheet ScanSheet(const ScanSource& scan, const DisplayFormats& formats, const DocumentHead& head) {
  ExportSheet sheet;
  sheet.Lines = {head.Name(), "Scan Wavelength: " + Format(scan.Option.StartWavelength, "0.0") + " nm - " +
                                  Format(scan.Option.EndWavelength, "0.0") + " nm" + head.TimeWords() +
                                  ModeWords(scan.Mode)};
  sheet.Tables = {PeakTable(scan, SheetColumns(formats)), PointTable(scan, SheetColumns(formats), 1)};
  return sheet;
}

Report ScanReport(const ScanSource& scan, const DisplayFormats& formats, const DocumentHead& head,
                  const ScanReportParts& parts, const ReportPicture& picture) {
  Report report = ReportOf(head, kScanReport);
  const auto words = [](const std::string& text) { return QString::fromStdString(text); };
  report.Facts.push_back(
      {words(Text(kScanRange)), words(Format(scan.Option.StartWavelength, "0.0nm") + " - " +
                                      Format(scan.Option.EndWavelength, "0.0nm"))});
  report.Facts.push_back({words(Text(kScanMode)), words(ModeTitle(scan.Mode))});
  if (parts.Curve) report.Blocks.emplace_back(picture);
  if (parts.PeakValley) {
    report.Blocks.emplace_back(PeakTable(scan, ReportColumns(formats)));
    std::get<DataTable>(report.Blocks.back()).EmptyWords = "No Peak Data!";
  }
  if (parts.MaxMinAverage) report.Blocks.emplace_back(StatisticsTable(scan, formats, parts));
  if (parts.DataList) {
    report.Blocks.emplace_back(PointTable(scan, ReportColumns(formats), std::max(parts.PrintInterval, 1)));
    std::get<DataTable>(report.Blocks.back()).EmptyWords = "No Data!";
  }
  return report;
}

}  // namespace spectrane
