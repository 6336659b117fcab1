#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "link/memoryport.h"
#include "simulator/exchangelog.h"
#include "simulator/faultscript.h"
#include "simulator/faultyanswer.h"
#include "simulator/instrumentmodel.h"

namespace spectrane {

/// A whole simulated instrument behind a line: bytes in, timed answers out. Requests that come while one is
/// still being answered wait their turn, as in an instrument with one thread of control.
class SimulatedLine : public LinePeer {
 public:
  /// Longest command; longer ones are thrown away up to their CR.
  static constexpr std::size_t MaximumCommand = 256;

  explicit SimulatedLine(const InstrumentOptions& options = {});

  std::vector<Delivery> Receive(std::string_view bytes, std::int64_t nowMs) override;

  /// The line was broken or joined anew: a half-received command and the wait behind a running one are
  /// forgotten.
  void ForgetInput();
  /// Power off and on by the operator; the result is what the instrument says then.
  std::vector<Delivery> Restart(std::int64_t nowMs);

  InstrumentModel& Model() { return model_; }
  FaultScript& Faults() { return faults_; }
  /// When the answer to the last request will be complete.
  std::int64_t BusyUntilMs() const { return busyUntilMs_; }
  std::int64_t Requests() const { return requests_; }

  /// Called for each request, before its answer is on the wire.
  std::function<void(const ExchangeRecord&)> OnExchange;

 private:
  Deliveries Respond(const std::string& command, std::int64_t startMs);
  std::string Banner() const;

  InstrumentModel model_;
  FaultScript faults_;
  SeededNoise random_;
  double timeScale_;
  std::string command_;
  bool overlong_ = false;
  std::string previousAnswer_;
  std::int64_t busyUntilMs_ = 0;
  std::int64_t requests_ = 0;
};

}  // namespace spectrane
