// A JCAMP-DX file: labelled records, and the table in one of them.
#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <optional>

#include "base/numbers.h"
#include "exchange/importedspectrum.h"
#include "exchange/ordinates.h"

namespace spectrane {
namespace {

/// Labels without blanks, dashes, slashes and underscores, in capitals, as they are to be compared.
std::string Label(std::string_view text) {
  std::string label;
  for (const char c : text) {
    if (c == ' ' || c == '-' || c == '/' || c == '_' || c == '\t') continue;
    label += c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  }
  return label;
}

std::string Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1));
}

/// The text without its comments, which go from "$$" to the end of a line.
std::string WithoutComments(std::string_view text) {
  std::string plain;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text.substr(at, 2) == "$$") {
      at = std::min(text.find_first_of("\r\n", at), text.size());
      if (at == text.size()) break;
    }
    plain += text[at];
  }
  return plain;
}

/// One data block.
struct JcampBlock {
  std::map<std::string, std::string> Records;

  std::string Text(const std::string& label) const {
    const auto found = Records.find(label);
    return found == Records.end() ? std::string() : found->second;
  }
  std::optional<double> Number(const std::string& label) const {
    std::string text = Text(label);
    for (char& c : text) {
      if (c == 'D' || c == 'd') c = 'E';
    }
    return ParseNumber(text);
  }
  bool HasCurve() const { return Records.contains("XYDATA") || Records.contains("XYPOINTS"); }
};

/// The blocks with a curve. Blocks inside a block of links are found as they come.
std::vector<JcampBlock> BlocksOf(const std::string& text) {
  std::vector<JcampBlock> blocks;
  JcampBlock block;
  std::size_t at = text.starts_with("##") ? 0 : text.find("\n##");
  while (at != std::string::npos) {
    if (text[at] == '\n') ++at;
    std::size_t next = text.find("\n##", at);
    const std::string_view record = std::string_view(text).substr(at + 2, next - at - 2);
    const std::size_t equals = record.find('=');
    if (equals != std::string_view::npos) {
      const std::string label = Label(record.substr(0, equals));
      if (label == "TITLE") block = {};
      block.Records.emplace(label, Trimmed(record.substr(equals + 1)));
      if (label == "END") {
        if (block.HasCurve()) blocks.push_back(block);
        block = {};
      }
    }
    at = next;
  }
  if (block.HasCurve()) blocks.push_back(block);  // the last one lacks its end
  return blocks;
}

/// How abscissas become nanometres.
enum class XUnit { Nanometres, Micrometres, Wavenumbers };

std::optional<XUnit> XUnitOf(const std::string& text) {
  const std::string unit = Label(text);
  if (unit == "NANOMETERS" || unit == "NANOMETRES" || unit == "NM" || unit == "WAVELENGTH(NM)")
    return XUnit::Nanometres;
  if (unit == "MICROMETERS" || unit == "MICROMETRES" || unit == "UM") return XUnit::Micrometres;
  if (unit == "1CM" || unit == "CM1" || unit == "CM^1") return XUnit::Wavenumbers;
  return std::nullopt;
}

double WavelengthOf(double x, XUnit unit) {
  const double nm = unit == XUnit::Nanometres ? x : unit == XUnit::Micrometres ? x * 1e3 : 1e7 / x;
  return std::round(nm * 1e6) / 1e6;  // abscissas are reckoned from the ends, with their last digits
}

/// How ordinates are to be taken.
enum class YUnit { Absorbance, Transmittance, PercentTransmittance };

std::optional<YUnit> YUnitOf(const std::string& text) {
  const std::string unit = Label(text);
  if (unit == "ABSORBANCE" || unit == "ABS" || unit == "AU" || unit == "A" || unit == "OPTICALDENSITY")
    return YUnit::Absorbance;
  if (unit == "TRANSMITTANCE" || unit == "T") return YUnit::Transmittance;
  if (unit == "PERCENTTRANSMITTANCE" || unit == "%TRANSMITTANCE" || unit == "%T" ||
      unit == "TRANSMITTANCE(%)" || unit == "TRANSMITTANCEPERCENT" || unit == "PERCENTTRANSMISSION")
    return YUnit::PercentTransmittance;
  return std::nullopt;
}

struct Curve {
  std::vector<double> X;
  std::vector<double> Y;
  std::string Reason;
};

/// Every line tells where it begins; a line that begins elsewhere means that points were lost.
std::string MisplacedLine(const JcampBlock& block, const Ordinates& table, double first, double step) {
  const double factor = block.Number("XFACTOR").value_or(1.0);
  for (std::size_t i = 0; i < table.LineX.size(); ++i) {
    const double expected = first + step * static_cast<double>(table.LineBegins[i]);
    const double off = std::abs(table.LineX[i] * factor - expected);
    if (!(off <= std::abs(step) * 0.75 + std::abs(factor))) return "its lines do not begin where they say";
  }
  return {};
}

Curve EvenCurve(const JcampBlock& block) {
  Curve curve;
  const std::string table = block.Text("XYDATA");
  const std::size_t lines = table.find_first_of("\r\n");
  if (Label(table.substr(0, lines)) != "(X++(Y..Y))") return {{}, {}, "its table has another form"};
  Ordinates ordinates = ReadOrdinates(std::string_view(table).substr(std::min(lines, table.size())));
  if (!ordinates.Reason.empty()) return {{}, {}, ordinates.Reason};
  const auto first = block.Number("FIRSTX");
  const auto last = block.Number("LASTX");
  const auto yFactor = block.Number("YFACTOR");
  if (!first || !last || !yFactor) return {{}, {}, "FIRSTX, LASTX or YFACTOR is missing"};
  const std::size_t count = ordinates.Values.size();
  if (const auto stated = block.Number("NPOINTS"); stated && *stated != static_cast<double>(count)) {
    return {{}, {}, "states " + ShortestText(*stated) + " points and has " + std::to_string(count)};
  }
  const double step = count > 1 ? (*last - *first) / static_cast<double>(count - 1) : 0.0;
  curve.Reason = count > 1 ? MisplacedLine(block, ordinates, *first, step) : "";
  for (std::size_t i = 0; i < count; ++i) {
    curve.X.push_back(*first + step * static_cast<double>(i));
    curve.Y.push_back(ordinates.Values[i] * *yFactor);
  }
  return curve;
}

Curve PointCurve(const JcampBlock& block) {
  Curve curve;
  const std::string table = block.Text("XYPOINTS");
  const std::size_t lines = table.find_first_of("\r\n");
  if (Label(table.substr(0, lines)) != "(XY..XY)") return {{}, {}, "its table has another form"};
  const double xFactor = block.Number("XFACTOR").value_or(1.0);
  const double yFactor = block.Number("YFACTOR").value_or(1.0);
  std::string_view rest = std::string_view(table).substr(std::min(lines, table.size()));
  constexpr std::string_view kBetween = " \t\r\n,;";
  bool isX = true;
  for (std::size_t at; (at = rest.find_first_not_of(kBetween)) != std::string_view::npos; isX = !isX) {
    rest.remove_prefix(at);
    const std::size_t end = std::min(rest.find_first_of(kBetween), rest.size());
    const std::string word(rest.substr(0, end));
    const auto number =
        word == "?" ? std::optional(std::numeric_limits<double>::quiet_NaN()) : ParseNumber(word);
    if (!number) return {{}, {}, "a value that is no number"};
    (isX ? curve.X : curve.Y).push_back(*number * (isX ? xFactor : yFactor));
    rest.remove_prefix(end);
  }
  if (!isX) return {{}, {}, "its last point has no ordinate"};
  if (const auto stated = block.Number("NPOINTS"); stated && *stated != static_cast<double>(curve.X.size())) {
    return {{}, {}, "states " + ShortestText(*stated) + " points and has " + std::to_string(curve.X.size())};
  }
  return curve;
}

}  // namespace

ImportedSpectrum ImportJcamp(std::string_view text) {
  const std::vector<JcampBlock> blocks = BlocksOf(WithoutComments(text));
  if (blocks.empty()) return NoSpectrum("has no curve of JCAMP-DX");
  if (blocks.size() > 1) return NoSpectrum("has " + std::to_string(blocks.size()) + " curves, not one");
  const JcampBlock& block = blocks.front();
  const auto xUnit = XUnitOf(block.Text("XUNITS"));
  const auto yUnit = YUnitOf(block.Text("YUNITS"));
  if (!xUnit) return NoSpectrum("its abscissa is no wavelength: " + block.Text("XUNITS"));
  if (!yUnit) return NoSpectrum("its ordinate is no absorbance: " + block.Text("YUNITS"));
  const Curve curve = block.Records.contains("XYDATA") ? EvenCurve(block) : PointCurve(block);
  if (!curve.Reason.empty()) return NoSpectrum(curve.Reason);
  ImportedSpectrum spectrum;
  spectrum.ShowsTrans = *yUnit != YUnit::Absorbance;
  for (std::size_t i = 0; i < curve.X.size(); ++i) {
    const double wavelength = WavelengthOf(curve.X[i], *xUnit);
    if (*yUnit == YUnit::Absorbance) {
      AddAbs(spectrum.Points, wavelength, curve.Y[i]);
    } else {
      AddTrans(spectrum.Points, wavelength, curve.Y[i] * (*yUnit == YUnit::Transmittance ? 100.0 : 1.0));
    }
  }
  return Arranged(std::move(spectrum));
}

}  // namespace spectrane
