// The table of a text file; declared beside the other import.
#include <algorithm>
#include <limits>
#include <optional>
#include <vector>

#include "base/numbers.h"
#include "exchange/importedspectrum.h"

namespace spectrane {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

using Cells = std::vector<std::string>;

char SeparatorOf(std::string_view line) {
  for (const char separator : {'\t', ';'}) {
    if (line.find(separator) != std::string_view::npos) return separator;
  }
  return ',';
}

Cells CellsOf(std::string_view line, char separator) {
  Cells cells(1);
  bool quoted = false;
  for (const char c : line) {
    if (c == '"') {
      quoted = !quoted;
    } else if (c == separator && !quoted) {
      cells.emplace_back();
    } else {
      cells.back() += c;
    }
  }
  return cells;
}

std::optional<double> CellNumber(std::string cell, char separator) {
  if (separator != ',') std::replace(cell.begin(), cell.end(), ',', '.');
  return ParseNumber(cell);
}

std::string Lower(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

bool Says(const std::string& title, std::initializer_list<std::string_view> words) {
  return std::any_of(words.begin(), words.end(),
                     [&](std::string_view word) { return title.find(word) != std::string::npos; });
}

/// Which columns a table has, by its titles.
struct Columns {
  std::optional<std::size_t> Abs;
  std::optional<std::size_t> Trans;
  std::string Reason;
};

Columns ColumnsOf(const Cells& titles, std::size_t count) {
  Columns columns;
  if (!titles.empty() && Says(Lower(titles[0]), {"(s)", "second", "time", "cm-1", "1/cm", "wavenumber"})) {
    columns.Reason = "its first column is no wavelength: " + titles[0];
    return columns;
  }
  for (std::size_t i = 1; i < std::min(titles.size(), count); ++i) {
    const std::string title = Lower(titles[i]);
    const bool trans = Says(title, {"%t", "trans", "t%", "t (%)", "t(%)", "t [%]", "t[%]"});
    const bool abs = !trans && (Says(title, {"abs"}) || title == "a");
    if (!trans && !abs && Says(title, {"%", "refl", "energy", "counts", "intensity"})) {
      columns.Reason = "a column of it is neither absorbance nor transmittance: " + titles[i];
      return columns;
    }
    if ((trans && columns.Trans) || (abs && columns.Abs)) {
      columns.Reason = "it has several curves: " + titles[i];
      return columns;
    }
    if (trans) columns.Trans = i;
    if (abs) columns.Abs = i;
  }
  if (!columns.Abs && !columns.Trans) columns.Abs = 1;
  return columns;
}

/// A line of the table as numbers; "-" stands for a value that is none. Nothing for a line that is no row.
std::optional<std::vector<double>> RowOf(const Cells& cells, char separator) {
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  std::vector<double> row;
  for (const std::string& cell : cells) {
    const auto number = CellNumber(cell, separator);
    if (!number && row.empty()) return std::nullopt;
    row.push_back(number.value_or(kNone));
  }
  if (row.size() < 2 || (!(row[1] == row[1]) && cells[1] != "-")) return std::nullopt;
  return row;
}

std::string_view NextLine(std::string_view& rest) {
  const std::size_t end = std::min(rest.find_first_of("\r\n"), rest.size());
  const std::string_view line = rest.substr(0, end);
  const bool pair = rest.substr(end, 2) == "\r\n";
  rest.remove_prefix(std::min(rest.size(), end + (pair ? 2 : 1)));
  return line;
}

void TakeRow(const std::vector<double>& row, const Columns& columns, Spectrum& points) {
  const auto at = [&row](std::size_t column) {
    return column < row.size() ? row[column] : std::numeric_limits<double>::quiet_NaN();
  };
  if (columns.Abs && columns.Trans) {
    points.Add(row[0], at(*columns.Trans), at(*columns.Abs));
  } else if (columns.Abs) {
    AddAbs(points, row[0], at(*columns.Abs));
  } else {
    AddTrans(points, row[0], at(*columns.Trans));
  }
}

}  // namespace

ImportedSpectrum ImportCsv(std::string_view text) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  ImportedSpectrum spectrum;
  Columns columns;
  Cells titles;
  std::size_t passedOver = 0;
  bool ended = false;
  while (!text.empty()) {
    const std::string_view line = NextLine(text);
    const bool blank = line.find_first_not_of(" \t,;") == std::string_view::npos;
    const char separator = SeparatorOf(line);
    const Cells cells = CellsOf(line, separator);
    const auto row = ended || blank ? std::nullopt : RowOf(cells, separator);
    if (row) {
      if (spectrum.Points.Empty()) columns = ColumnsOf(titles, row->size());
      if (!columns.Reason.empty()) return NoSpectrum(columns.Reason);
      TakeRow(*row, columns, spectrum.Points);
    } else if (spectrum.Points.Empty()) {
      if (!blank) titles = cells;
    } else {
      ended = true;
      if (!blank) ++passedOver;
    }
  }
  spectrum.ShowsTrans = !spectrum.Points.Empty() && !columns.Abs;
  AddRemark(spectrum, passedOver, "line", "behind the table");
  return Arranged(std::move(spectrum));
}

}  // namespace spectrane
