#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/brand.h"
#include "link/displays.h"
#include "link/instrumentstate.h"
#include "link/interface.h"
#include "link/livereading.h"

namespace spectrane {

/// What the connection sequence learned, query by query; for those who report it.
struct ConnectionReport {
  bool HasWavelength = false;
  bool HasDark = false;
  bool HasReference = false;
  std::int32_t FullEnergy = 0;
  std::int32_t Gain = 0;
  std::int32_t SamplerKind = 0;
};

/// Brings the instrument from unknown to ready, and back.
class Connection {
 public:
  /// All must outlive this object.
  Connection(Interface& instrument, InstrumentState& state, LiveReading& live, MainDisplay& display,
             Messages& messages, const Brand& brand);

  /// The connection sequence, with its messages. True when the instrument counts as connected. Yields.
  bool mmuOperationConnect();
  /// The menu's Connect and Release: nothing when already so. Yield.
  void ConnectCommand();
  void ReleaseCommand();
  /// `quit`, then the port is closed. Yields.
  void ReleaseConnection();

  /// The stored dark energies and a new reference for what stands in the beam. True: both came, reference and
  /// dark energy are theirs, and the fields show them. Otherwise the reference values stay. Yields.
  bool ReadReference();

  const ConnectionReport& Report() const { return report_; }

 private:
  bool Refused(int textId, const std::string& details);
  void ReadWavelength();
  void ReadSampler();
  void ReadSlit();
  void ReadRange();

  Interface& instrument_;
  InstrumentState& state_;
  LiveReading& live_;
  MainDisplay& display_;
  Messages& messages_;
  const Brand& brand_;
  ConnectionReport report_;
};

/// Pane text of a slit code: "Slip width " and the width; an unknown code gives the caption alone.
std::string SlipWidthText(std::int32_t code);

/// What the search met on each port, a line each: no such port, no rights (with the owning group), in use, no
/// answer. Port numbers that no device stands behind are summed up in one line.
std::string DescribeAttempts(const std::vector<PortAttempt>& attempts);

}  // namespace spectrane
