#pragma once

#include "modes/timescan/timescansettings.h"
#include "reentrancy/procedures.h"

namespace spectrane::testing_reentrancy {

/// A procedure to whom nothing happens.
struct Undisturbed {
  int Yields = 0;
  std::vector<std::string> Requests;
};

/// A program whose runs are short.
class QuickRuns : public YieldYard {
 protected:
  QuickRuns() {
    constexpr const char* kQua = "Quantitative Measurement";
    Settings.PutSetting(kQua, "Curve Item", "2");
    Settings.PutSetting(kQua, "Curve K1", "10");
    Settings.PutSetting(kQua, "Fitting Line", "1");
    Settings.PutSetting(kQua, "Sample Number", "2");
    Settings.PutSetting(kTimeScanSection, "Interval Second", "2");
    Settings.PutSetting(kTimeScanSection, "End Second", "1");
    Start();
  }

  /// An instrument as it is after its power-up, and what has to stand before the procedure.
  void Prepare(const Procedure& procedure) {
    Loop.Disarm();
    Person.Says.clear();
    Person.SavePath.clear();
    if (!Main().isVisible()) Start();
    Instrument.Model().Tungsten = {};
    Instrument.Model().Deuterium = {};
    Instrument.Model().SetLampSwitch(InstrumentModel::PowerUpLampSwitch);
    procedure.Prepare(*this);
    Settle();
    Requests.clear();
    Person.Asked.clear();
    Intruders.clear();
  }

  Undisturbed Alone(const Procedure& procedure) {
    Prepare(procedure);
    Loop.Arm(0, {});
    procedure.Run(*this);
    const Undisturbed seen{Loop.Yields, Requests};
    Settle();
    ExpectIdle();
    return seen;
  }
};

}  // namespace spectrane::testing_reentrancy
