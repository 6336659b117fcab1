#include "exchange/ordinates.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "base/numbers.h"
#include "files/wlsoption.h"

namespace spectrane {
namespace {

constexpr double kUnknown = std::numeric_limits<double>::quiet_NaN();

/// The digit and the sign for which a letter stands at the head of a number.
struct Digit {
  enum class Kind { Squeezed, Difference, Repeat } Is;
  int Value;
  bool Negative;
};

std::optional<Digit> DigitOf(char c) {
  using Kind = Digit::Kind;
  if (c >= '@' && c <= 'I') return Digit{Kind::Squeezed, c - '@', false};
  if (c >= 'a' && c <= 'i') return Digit{Kind::Squeezed, c - 'a' + 1, true};
  if (c == '%') return Digit{Kind::Difference, 0, false};
  if (c >= 'J' && c <= 'R') return Digit{Kind::Difference, c - 'J' + 1, false};
  if (c >= 'j' && c <= 'r') return Digit{Kind::Difference, c - 'j' + 1, true};
  if (c >= 'S' && c <= 'Z') return Digit{Kind::Repeat, c - 'S' + 1, false};
  if (c == 's') return Digit{Kind::Repeat, 9, false};
  return std::nullopt;
}

bool IsPlain(char c) {
  return (c >= '0' && c <= '9') || c == '.';
}

/// Reads one line after the other.
class OrdinateReader {
 public:
  explicit OrdinateReader(Ordinates& result) : result_(result) {}

  bool ReadLine(std::string_view line) {
    line_ = line;
    at_ = 0;
    bool first = true;
    const bool checked = lastWasDifference_;
    lastWasDifference_ = false;
    const auto x = Number();
    if (!x) return Fail("a line without an abscissa");
    result_.LineX.push_back(*x);
    result_.LineBegins.push_back(result_.Values.size() - (checked ? 1 : 0));
    while (Skip()) {
      if (!ReadItem(first && checked)) return false;
      first = false;
      if (result_.Values.size() > static_cast<std::size_t>(kMostSpectrumPoints) + 1)
        return Fail("has more than " + std::to_string(kMostSpectrumPoints) + " points");
    }
    return true;
  }

 private:
  bool Fail(const std::string& reason) {
    result_.Reason = reason;
    return false;
  }

  bool Skip() {
    while (at_ < line_.size() && (line_[at_] == ' ' || line_[at_] == '\t' || line_[at_] == ',')) ++at_;
    return at_ < line_.size();
  }

  /// Digits, point and exponent from here on. An "E" is an exponent only in front of a sign: elsewhere it is
  /// a squeezed 5.
  std::string Digits() {
    std::string text;
    while (at_ < line_.size() && IsPlain(line_[at_])) text += line_[at_++];
    if (at_ + 1 < line_.size() && line_[at_] == 'E' && (line_[at_ + 1] == '+' || line_[at_ + 1] == '-')) {
      text += line_.substr(at_, 2);
      at_ += 2;
      while (at_ < line_.size() && IsPlain(line_[at_])) text += line_[at_++];
    }
    return text;
  }

  std::optional<double> Number() {
    if (!Skip()) return std::nullopt;
    std::string text;
    if (line_[at_] == '+' || line_[at_] == '-') {
      if (line_[at_] == '-') text = "-";
      ++at_;
    } else if (const auto digit = DigitOf(line_[at_]); digit && digit->Is == Digit::Kind::Squeezed) {
      text = (digit->Negative ? "-" : "") + std::to_string(digit->Value);
      ++at_;
    }
    return ParseNumber(text + Digits());
  }

  bool ReadItem(bool check) {
    if (line_[at_] == '?') {
      ++at_;
      result_.Values.push_back(kUnknown);
      lastWasDifference_ = false;
      return true;
    }
    const auto digit = DigitOf(line_[at_]);
    if (!digit || digit->Is == Digit::Kind::Squeezed) {
      const auto value = Number();
      if (!value) return Fail("a value that is no number");
      return Take(*value, check);
    }
    ++at_;
    const auto number = ParseNumber((digit->Negative ? "-" : "") + std::to_string(digit->Value) + Digits());
    if (!number) return Fail("a value that is no number");
    return digit->Is == Digit::Kind::Difference ? TakeDifference(*number) : Repeat(*number);
  }

  bool Take(double value, bool check) {
    lastWasDifference_ = false;
    if (!check) {
      result_.Values.push_back(value);
      return true;
    }
    if (value != result_.Values.back()) return Fail("its check values do not agree");
    return true;
  }

  bool TakeDifference(double difference) {
    if (result_.Values.empty()) return Fail("a difference without a value before it");
    difference_ = difference;
    lastWasDifference_ = true;
    result_.Values.push_back(result_.Values.back() + difference);
    return true;
  }

  /// The item before stands there so many times in all.
  bool Repeat(double times) {
    if (result_.Values.empty() || times < 1 || times > kMostSpectrumPoints)
      return Fail("a repeat that is none");
    const double step = lastWasDifference_ ? difference_ : 0.0;
    for (int i = 1; i < times; ++i) result_.Values.push_back(result_.Values.back() + step);
    return true;
  }

  Ordinates& result_;
  std::string_view line_;
  std::size_t at_ = 0;
  double difference_ = 0;
  bool lastWasDifference_ = false;
};

}  // namespace

Ordinates ReadOrdinates(std::string_view lines) {
  Ordinates result;
  OrdinateReader reader(result);
  while (!lines.empty() && result.Reason.empty()) {
    const std::size_t end = std::min(lines.find_first_of("\r\n"), lines.size());
    const std::string_view line = lines.substr(0, end);
    if (line.find_first_not_of(" \t") != std::string_view::npos) reader.ReadLine(line);
    lines.remove_prefix(std::min(lines.size(), end + 1));
  }
  return result;
}

}  // namespace spectrane
