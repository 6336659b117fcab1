#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "faults/bench/haste.h"
#include "faults/bench/requestlog.h"

namespace spectrane::campaign {

/// One request with both its ends: what the program had in its hands, and what the instrument said to it.
struct Exchanged {
  std::string Request;
  std::string Collected;
  /// The prompt came in time.
  bool Ended = false;
  /// The request reached the instrument.
  bool Logged = false;
  std::string Answer;
  std::string Fault;

  /// "ge" of "ge 10".
  std::string Verb() const { return Request.substr(0, Request.find(' ')); }
  /// An instrument that restarts breaks off and says its banner.
  bool Restarted() const { return Ended && Collected.ends_with("\r\nready.\r\n>"); }
  bool Passed() const { return Ended && Collected.starts_with(Request) && !Restarted(); }
  /// Passed, and holds the numbers that were asked for.
  bool Sound() const;
  /// A healthy answer that came too late all the same: the machine has other things to do.
  bool Slow() const;
};

/// Requests of the wire with those of the log, which are in the same order; some may not have arrived.
std::vector<Exchanged> Together(const std::vector<WireRecord>& wire, const std::vector<LoggedRequest>& log);

/// A reading that may stand in a document, or must.
struct Reading {
  std::int32_t Energy = 0;
  /// Of the blank and without light, as they held for it.
  std::int32_t Reference = 0;
  std::int32_t Dark = 0;
  /// Its own answer was in the program's hands; with another one the program may have seen that, and refused.
  bool Required = true;
};

/// Absorbance of a reading, reckoned from what the words mean: how many powers of ten it has lost against the
/// blank, from -0.30103 (twice its light) to 3 (no light to speak of, or a blank without light).
double AbsorbanceOf(const Reading& reading);
/// Whether a stored absorbance is that of the reading; the last bits of a double may differ.
bool IsAbsorbanceOf(double stored, const Reading& reading);

/// The readings that `request` was answered with, in their order.
std::vector<Reading> ReadingsOf(const std::vector<Exchanged>& exchanges, const std::string& request,
                                std::int32_t reference, std::int32_t dark);
/// Whether `count` stored ones are all that were required, and none that was not answered so. `same` compares
/// the stored one of that index.
bool Fit(const std::vector<Reading>& readings, std::size_t count,
         const std::function<bool(std::size_t, const Reading&)>& same);

}  // namespace spectrane::campaign
