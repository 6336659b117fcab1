#pragma once

#include <iosfwd>
#include <string>

namespace spectrane {

/// The person at the terminal: presses Enter, or stops the run with an interrupt signal. While one lives, the
/// first interrupt asks for a stop and the second one ends the program.
class Operator {
 public:
  explicit Operator(std::istream& in);
  ~Operator();
  Operator(const Operator&) = delete;
  Operator& operator=(const Operator&) = delete;

  /// Waits for Enter. False when the input ended or a stop was asked for.
  bool PressesEnter();
  bool AsksToStop() const;
  /// A person sits at the input, as far as a terminal tells.
  bool IsThere() const;

  /// Standard error is a terminal.
  static bool SeesErrors();
  /// The program may make files in `folder` (UTF-8), as far as the platform tells before it is tried.
  static bool MayWrite(const std::string& folder);

 private:
  std::istream& in_;
};

}  // namespace spectrane
