// The live reading of the whole main window: its three fields.

#include <QAbstractButton>
#include <QTest>

#include "app/framefixture.h"
#include "app/ground/words.h"

namespace spectrane::testing_windows {
namespace {

using Field = DataDisplay::Field;

class FrmMainLive : public FrameFixture {
 protected:
  void Fail(const char* verb) { ASSERT_EQ(Instrument.Faults().Add(verb, "1", "no-reply", {}), std::nullopt); }
  std::vector<std::string> Fields() const {
    return {FieldText(Field::Wavelength), FieldText(Field::Abs), FieldText(Field::Trans)};
  }
  /// Confirms the options of the program, with the precision of that button.
  void ConfirmOptions(const char* precision) {
    InDialog("FrmOption", [precision](QWidget& dialog) {
      Find<QAbstractButton>(dialog, precision)->click();
      Find<QAbstractButton>(dialog, "OKCmd")->click();
    });
    Choose(kProgramOption);
  }
  void ExpectFieldsOfAConnectionInNewFormats() {
    EXPECT_EQ(Fields(), (std::vector<std::string>{" 546.0nm", " 0.000Abs", "100.0%T"}));
    ConfirmOptions("OptionStandard");
    EXPECT_EQ(Fields(), (std::vector<std::string>{" 546.0nm", " 0.000Abs", "100.0%T"}));
    ConfirmOptions("OptionHighPrecise");
    EXPECT_EQ(Fields(), (std::vector<std::string>{" 546.0nm", " 0.0000Abs", "100.00%T"}));
  }
};

// The figures of the last reading stood there instead: 0.0%T, though nothing was read yet.
TEST_F(FrmMainLive, NewFormatsLeaveWhatAConnectionWithoutAReferenceShows) {
  Start();
  Fail("rezero");
  Main->mmuOperationConnect();
  ASSERT_FALSE(Main->SampleTimer().isActive());
  ExpectFieldsOfAConnectionInNewFormats();
}

TEST_F(FrmMainLive, NewFormatsBringBackNoReadingOfAnEarlierConnection) {
  Start();
  ConnectNow();
  ASSERT_TRUE(Instrument.Model().PutInBeam("filter-0.3", Time.NowMs()));
  // 100 * 10^-0.3 = 50.12 %T.
  for (int i = 0; i < 20; ++i) Main->Link().Live.SampleTimerTick();
  EXPECT_EQ(FieldText(Field::Trans), " 50.1%T");
  ConfirmOptions("OptionStandard");
  EXPECT_EQ(FieldText(Field::Trans), " 50.1%T");
  Choose(kRelease);
  ConfirmOptions("OptionStandard");
  EXPECT_EQ(Fields(), std::vector<std::string>(3)) << "nothing to show without an instrument";
  Fail("rezero");
  Main->mmuOperationConnect();
  ASSERT_FALSE(Main->SampleTimer().isActive());
  ExpectFieldsOfAConnectionInNewFormats();
}

TEST_F(FrmMainLive, NewFormatsLeaveFieldsWithoutAValueAlone) {
  Start();
  ConnectNow();
  for (int i = 0; i < 20; ++i) Main->Link().Live.SampleTimerTick();
  WhenDialog("FrmResetWaveLength", [&](QWidget& dialog) {
    Fail("adjustwl");
    Boxes.ExpectMessage(1125);
    Find<QAbstractButton>(dialog, "CmdStart")->click();
    dialog.close();
  });
  Choose(kResetWavelength);
  ASSERT_FALSE(Main->SampleTimer().isActive());
  const std::vector<std::string> none(3, "------");
  EXPECT_EQ(Fields(), none);
  ConfirmOptions("OptionHighPrecise");
  EXPECT_EQ(Fields(), none);
}

}  // namespace
}  // namespace spectrane::testing_windows
