#pragma once

#include <iosfwd>
#include <string>

namespace spectrane {

/// Runs the connection sequence, releases, and prints what was learned. 0, or 1 with the window's words on
/// `err`.
int ProbeInstrument(const std::string& folder, std::ostream& out, std::ostream& err);

/// Finds the instrument's port, makes one exchange of `text` and closes the port. `timeoutSeconds` 0: the
/// command's own time-out.
int SendToInstrument(const std::string& folder, const std::string& text, int timeoutSeconds,
                     std::ostream& out, std::ostream& err);

struct MeasureOrder {
  /// Test wavelength [nm]; held inside the instrument's range.
  double Wavelength = 546.0;
  /// How often a measurement is started: one row each by hand, one row for each position in use with a
  /// sampler.
  int Count = 1;
  /// The .bas file to write.
  std::string Out;
  /// No waiting for Enter before the blank and the samples.
  bool Yes = false;
  /// An existing file may be replaced.
  bool Force = false;
};

/// Connects, takes the blank, measures, releases, writes the file and prints its rows. A run that fails or is
/// stopped (Ctrl+C, end of input) saves the rows it has, says how many, and gives 1.
int MeasureWithInstrument(const std::string& folder, const MeasureOrder& order, std::istream& in,
                          std::ostream& out, std::ostream& err);

}  // namespace spectrane
