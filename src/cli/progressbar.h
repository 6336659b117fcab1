#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>

#include "base/clock.h"

namespace spectrane {

/// One pass of a run on a terminal: a bar, so many of so many, and the time that is left. Shows nothing
/// anywhere else.
class ProgressBar {
 public:
  /// `planned`: how long the whole pass is expected to take [s]. With `hidden` nothing is shown on a terminal
  /// either. The clock and the stream must outlive this object.
  ProgressBar(std::ostream& out, const Clock& clock, std::string caption, std::int32_t total, double planned,
              bool hidden = false);
  /// Ends its line when one was begun.
  ~ProgressBar();
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  /// Repainted several times a second at most, and at the end.
  void Show(std::int32_t done);

  /// What a bar says: "[####    ] 12 of 30, 1 min 05 s left".
  static std::string Line(std::int32_t done, std::int32_t total, double secondsLeft);
  /// Time that is left: by the plan at the beginning, by the pace of what is done later on [s].
  static double SecondsLeft(std::int32_t done, std::int32_t total, double elapsed, double planned);

 private:
  std::ostream& out_;
  const Clock& clock_;
  std::string caption_;
  std::int32_t total_;
  double planned_;
  bool shown_;
  bool begun_ = false;
  std::size_t width_ = 0;
  std::int64_t startMs_;
  std::int64_t paintedMs_ = 0;
};

}  // namespace spectrane
