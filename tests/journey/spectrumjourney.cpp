#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QTableView>
#include <QWheelEvent>

#include "app/ground/commands.h"
#include "app/ground/frmdatatabel.h"
#include "files/wlsfile.h"
#include "journey/journeysupport.h"
#include "output/windows/piccurve.h"
#include "spectrum/windows/frmwls.h"

namespace spectrane::testing_journey {
namespace {

class SpectrumJourney : public Journey {
 protected:
  FrmWLS& Spectrum() { return dynamic_cast<FrmWLS&>(*frame_->ActiveForm()); }
  PicCurve& Curve() { return *Spectrum().findChild<PicCurve*>(); }
  CurveScale Seen() { return Curve().View().Scale; }
  /// The place of a value on the widget [pixels].
  QPoint PixelOf(double x, double y) {
    const CurveGeometry geometry = Curve().Geometry();
    return {qRound(geometry.XAt(x) / 15), qRound(geometry.YAt(y) / 15)};
  }
  /// A menu row, as a click on it does.
  void Choose(int command) {
    ASSERT_TRUE(frame_->ActionOf(command)->isEnabled()) << command;
    frame_->ActionOf(command)->trigger();
  }
  std::string StatusLine() const { return frame_->findChild<MainStatus*>()->Remark().toStdString(); }
  static void Click(QWidget& dialog, const char* button) {
    auto* const found = dialog.findChild<QAbstractButton*>(QLatin1String(button));
    ASSERT_TRUE(found) << button;
    QTest::mouseClick(found, Qt::LeftButton, {}, QPoint(8, found->height() / 2));
  }
  /// Options: other ends, every check turned, another speed, and the list of intervals.
  static void FillOptions(QWidget& dialog) {
    Click(dialog, "OptionTrans");
    Type(dialog, "ScaleTopText", "110");
    Type(dialog, "ScaleBottomText", "-0.5");
    Click(dialog, "OptionAbs");
    Type(dialog, "ScaleTopText", "1.2");
    Type(dialog, "ScaleBottomText", "-0.1");
    Type(dialog, "StartWLText", "240");
    Type(dialog, "EndWLText", "650");
    for (const char* list :
         {"ComboInterval", "ComboGain", "ComboFilter", "ComboLamp", "ComboPrintInterval"}) {
      auto* const box = dialog.findChild<QComboBox*>(QLatin1String(list));
      ASSERT_TRUE(box) << list;
      box->setFocus();
      QTest::keyClick(box, Qt::Key_Home);
      QTest::keyClick(box, Qt::Key_Down);
    }
    for (const char* button : {"OptionQuick", "CheckDetailPeak", "CheckDetailValley", "CheckSmooth",
                               "CheckPrintAllData", "CheckPrintMaxMinAverage"}) {
      Click(dialog, button);
    }
    Click(dialog, "OKCmd");
  }
  void Drag(const QPoint& from, const QPoint& to) {
    QTest::mousePress(&Curve(), Qt::LeftButton, {}, from);
    QTest::mouseMove(&Curve(), (from + to) / 2);
    QTest::mouseMove(&Curve(), to);
    QTest::mouseRelease(&Curve(), Qt::LeftButton, {}, to);
  }
  FrmDataTabel& Table() { return *Spectrum().DataTable(); }

  // The parts of the evening, in their order.
  void OpenOnStart() {
    StartProgram(first_);
    ASSERT_TRUE(QTest::qWaitFor([this] { return frame_->ActiveForm() != nullptr; }, kPatienceMs));
    EXPECT_EQ(Spectrum().GetRecordNo(), 861);
    EXPECT_EQ(Seen(), (CurveScale{{230, 660}, {0, 1}}));
    EXPECT_TRUE(Table().isVisible());
    EXPECT_EQ(Table().Grid(0)->model()->rowCount(), 861);
    Photograph("spectrum-1-open");
  }
  void ChangeTheOptions() {
    hands_.Expect("FrmWLSConfig", [this](QWidget& dialog) {
      Photograph("spectrum-2-options");
      FillOptions(dialog);
    });
    Press(Qt::Key_F4);
    ASSERT_TRUE(hands_.Done());
    EXPECT_EQ(Seen(), kHome);
    EXPECT_TRUE(Spectrum().Settings().PeakDetailEnable);
    EXPECT_FALSE(Spectrum().Settings().SmoothEnable);
    EXPECT_EQ(Spectrum().Settings().QuickSpeed, 2);
    EXPECT_EQ(Spectrum().Settings().PrintInterval, 2);
    EXPECT_EQ(Spectrum().Document().Option().EnergyLamp, 1);
    EXPECT_TRUE(Spectrum().isWindowModified());
  }
  void FindTheBands() {
    Choose(kSearchPeak);
    const std::size_t many = Curve().View().Marks.size();
    EXPECT_GT(many, 14U) << "the noise has peaks of its own";
    hands_.Expect("FrmPeakHeight", [](QWidget& dialog) {
      Type(dialog, "PeakHeightText", "0.05");
      QTest::keyClick(&dialog, Qt::Key_Return);
    });
    Choose(kPeakValueSetup);
    ASSERT_TRUE(hands_.Done());
    Choose(kSearchPeak);
    EXPECT_EQ(Table().SelectedTab(), 1);
    const std::size_t bands = Curve().View().Marks.size();
    EXPECT_LT(bands, many);
    EXPECT_EQ(Table().Grid(1)->model()->rowCount(), static_cast<int>(bands));
    Photograph("spectrum-3-peaks");
  }
  void PointAtABand() {
    // The cursor follows the button, the status bar the pointer.
    const QPoint band = PixelOf(536.5, 0.4);
    QTest::mouseMove(&Curve(), band);
    EXPECT_NE(StatusLine().find("536."), std::string::npos) << StatusLine();
    EXPECT_NE(StatusLine().find("Abs"), std::string::npos);
    QTest::mousePress(&Curve(), Qt::LeftButton, {}, band);
    auto* const label = Spectrum().findChild<QLabel*>(QStringLiteral("WavelengthLabel"));
    ASSERT_TRUE(label);
    EXPECT_TRUE(label->isVisible());
    EXPECT_NEAR(label->text().toDouble(), 536.5, 1.0);
    Photograph("spectrum-4-cursor");
    QTest::mouseRelease(&Curve(), Qt::LeftButton, {}, band);
    EXPECT_FALSE(label->isVisible());
  }
  void LookCloserAndHomeAgain() {
    // By command and rectangle, by wheel, and home again by command and by double click.
    Press(Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_EQ(Seen(), (CurveScale{{200, 650}, {-0.2, 1.2}})) << "outward to 50 nm and 0.2 Abs";
    EXPECT_TRUE(Curve().ZoomSelecting());
    Drag(PixelOf(440, 0.8), PixelOf(500, 0.1));
    EXPECT_FALSE(Curve().ZoomSelecting());
    EXPECT_NEAR(Seen().X.Low, 440, 1.5);
    EXPECT_NEAR(Seen().X.High, 500, 1.5);
    EXPECT_NEAR(Seen().Y.High, 0.8, 0.02);
    Photograph("spectrum-5-rectangle");
    const double before = Seen().X.Length();
    const QPoint middle = PixelOf(460, 0.4);
    QWheelEvent turn(middle, Curve().mapToGlobal(middle), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                     Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&Curve(), &turn);
    EXPECT_LT(Seen().X.Length(), before);
    Press(Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(Seen(), kHome);
    QCoreApplication::sendEvent(&Curve(), &turn);
    EXPECT_NE(Seen(), kHome);
    QTest::mouseDClick(&Curve(), Qt::LeftButton, {}, middle);
    EXPECT_EQ(Seen(), kHome);
  }
  void SaveWhileZoomed() {
    // Saved while zoomed: the file has the home view.
    Press(Qt::Key_Plus, Qt::ControlModifier);
    Drag(PixelOf(300, 0.9), PixelOf(400, 0.1));
    hands_.ExpectFileDialog(second_);
    Press(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_TRUE(QTest::qWaitFor([&] { return QFile::exists(second_) && hands_.Done(); }, kPatienceMs));
    EXPECT_EQ(Spectrum().Caption(), QStringLiteral("mine.wls"));
    EXPECT_NE(Seen(), kHome) << "saving leaves what is seen";
    Press(Qt::Key_W, Qt::ControlModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return frame_->ActiveForm() == nullptr; }, kPatienceMs));
  }
  void OpenWhatWasSaved() {
    ASSERT_TRUE(frame_->OpenDataFile(second_));
    EXPECT_EQ(Seen(), kHome);
    EXPECT_EQ(Spectrum().GetRecordNo(), 861);
    EXPECT_TRUE(Curve().View().Marks.empty());
    EXPECT_EQ(Spectrum().Settings().PeakHeight, 0.05) << "remembered for every new window";
    Photograph("spectrum-6-reopened");
  }

  /// After the options.
  static constexpr CurveScale kHome{{240, 650}, {-0.1, 1.2}};
  const QString first_ = QString::fromStdString(Path("holmium.wls"));
  const QString second_ = QString::fromStdString(Path("mine.wls"));
};

TEST_F(SpectrumJourney, AnEveningWithHolmium) {
  QDir().mkpath(QString::fromStdString(Path("home")));
  ASSERT_TRUE(QFile::copy(QStringLiteral(SPECTRANE_SOURCE "/examples/holmium.wls"), first_));
  ASSERT_NO_FATAL_FAILURE(OpenOnStart());
  ASSERT_NO_FATAL_FAILURE(ChangeTheOptions());
  ASSERT_NO_FATAL_FAILURE(FindTheBands());
  ASSERT_NO_FATAL_FAILURE(PointAtABand());
  ASSERT_NO_FATAL_FAILURE(LookCloserAndHomeAgain());
  ASSERT_NO_FATAL_FAILURE(SaveWhileZoomed());
  ASSERT_NO_FATAL_FAILURE(OpenWhatWasSaved());
  hands_.ExpectBox(QStringLiteral("Are you sure to QUIT the program?"), QMessageBox::Yes);
  Press(Qt::Key_Q, Qt::ControlModifier);
  ASSERT_TRUE(QTest::qWaitFor([this] { return !frame_->isVisible(); }, kPatienceMs));
  EXPECT_TRUE(hands_.Done());
}

}  // namespace
}  // namespace spectrane::testing_journey
