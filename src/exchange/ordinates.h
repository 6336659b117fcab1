#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace spectrane {

/// The whole numbers of an XYDATA table, in any of the forms that may stand mixed in it: plain, packed,
/// squeezed, differences, and repeats of each.
struct Ordinates {
  /// In steps of the file's factor; a value that the file does not know is NaN.
  std::vector<double> Values;
  /// Abscissa at the head of each line, in steps of the file's factor.
  std::vector<double> LineX;
  /// Index of the value that each line begins with.
  std::vector<std::size_t> LineBegins;
  /// What is wrong with the table; empty when nothing is.
  std::string Reason;
};

/// `lines`: the table without its label, comments taken out. A line of differences repeats the last value at
/// the head of the next line, where it is compared.
Ordinates ReadOrdinates(std::string_view lines);

}  // namespace spectrane
