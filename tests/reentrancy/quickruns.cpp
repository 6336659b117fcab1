#include "reentrancy/quickruns.h"

#include "modes/timescan/timescansettings.h"

namespace spectrane::testing_reentrancy {

QuickRuns::QuickRuns() {
  constexpr const char* kQua = "Quantitative Measurement";
  Settings.PutSetting(kQua, "Curve Item", "2");
  Settings.PutSetting(kQua, "Curve K1", "10");
  Settings.PutSetting(kQua, "Fitting Line", "1");
  Settings.PutSetting(kQua, "Sample Number", "2");
  Settings.PutSetting(kTimeScanSection, "Interval Second", "2");
  Settings.PutSetting(kTimeScanSection, "End Second", "1");
  Start();
}

void QuickRuns::Prepare(const Procedure& procedure) {
  Loop.Disarm();
  LampsDrift = false;
  Person.Says.clear();
  Person.SavePath.clear();
  if (!Main().isVisible()) Start();
  Instrument.Model().Tungsten = {};
  Instrument.Model().Deuterium = {};
  Instrument.Model().SetLampSwitch(InstrumentModel::PowerUpLampSwitch);
  if (procedure.OwnsRecords) CloseWindows();
  procedure.Prepare(*this);
  Settle();
  Measured = Main().ActiveForm();
  Before = RecordsOf(Measured);
  BlankBefore = BlankNow();
  Requests.clear();
  Person.Asked.clear();
  Intruders.clear();
  LampsDrift = true;
}

Undisturbed QuickRuns::Alone(const Procedure& procedure) {
  Prepare(procedure);
  Loop.Arm(0, {});
  procedure.Run(*this);
  Undisturbed seen;
  seen.Yields = Loop.Yields;
  seen.BoxYields = Loop.BoxYields;
  seen.Requests = Requests;
  Settle();
  const ShownRecords after = RecordsOf(Measured);
  EXPECT_TRUE(after.Records.starts_with(Before.Records)) << "earlier records";
  if (after.Option != Before.Option) seen.NewOption = after.Option;
  seen.Records = after.Records.substr(std::min(Before.Records.size(), after.Records.size()));
  if (BlankNow() != BlankBefore) seen.NewBlank = BlankNow();
  ExpectIdle();
  return seen;
}

void QuickRuns::ExpectWhole(const Procedure& procedure, const Undisturbed& alone) {
  SCOPED_TRACE("the next run");
  const Undisturbed next = Alone(procedure);
  EXPECT_EQ(next.Requests, alone.Requests);
  EXPECT_EQ(next.NewOption, alone.NewOption);
  EXPECT_EQ(next.Records, alone.Records);
  EXPECT_TRUE(BlankNow() == alone.NewBlank.value_or(BlankBefore)) << "another blank";
}

}  // namespace spectrane::testing_reentrancy
