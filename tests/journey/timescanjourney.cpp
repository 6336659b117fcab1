#include <QComboBox>
#include <QElapsedTimer>
#include <QTableView>

#include "app/ground/frmdatatabel.h"
#include "app/ground/words.h"
#include "journey/journeysupport.h"
#include "modes/windows/frmts.h"
#include "output/windows/piccurve.h"

namespace spectrane::testing_journey {
namespace {

/// Twelve seconds in steps of a fifth, both ends included.
constexpr int kPoints = 61;

class TimeScanJourney : public Journey {
 protected:
  FrmTS& Window() { return Child<FrmTS>(); }
  const TimeScanDocument& Document() { return Window().Document(); }
  PicCurve& Curve() { return *Window().findChild<PicCurve*>(QStringLiteral("PicCurve")); }
  QAbstractItemModel& Table() { return *Window().DataTable()->Grid(0)->model(); }
  /// 340 nm, five readings a second from 1 s on; the scale is that of the reaction.
  static void FillOptions(QWidget& options) {
    Type(options, "WLText", "340");
    Type(options, "StartTimeText", "1");
    Type(options, "EndTimeText", "13");
    options.findChild<QComboBox*>(QStringLiteral("InternalTimeCombo"))->setCurrentIndex(1);
    Type(options, "ScaleTopText", "1.3");
    Type(options, "ScaleBottomText", "1.1");
    QTest::mouseClick(options.findChild<QPushButton*>(QStringLiteral("OKCmd")), Qt::LeftButton);
  }
  /// Looks at the test at its moments: how many points it has then.
  void Watch() {
    if (moments_.empty() || !Window().Test().TestRunning || Document().DataCount() < moments_.front()) return;
    const int moment = moments_.front();
    moments_.pop_front();
    EXPECT_GE(Curve().View().Lines[0].Count(), static_cast<std::size_t>(moment)) << "the curve grows";
    EXPECT_EQ(Table().rowCount(), Document().DataCount());
    EXPECT_FALSE(frame_->ActionOf(304)->isEnabled());
    EXPECT_TRUE(frame_->ActionOf(305)->isEnabled());
    EXPECT_TRUE(frame_->ActionOf(331)->isEnabled()) << "one may look closer meanwhile";
    EXPECT_FALSE(frame_->ActionOf(316)->isEnabled());
    Photograph(("ts-1-at-" + std::to_string(moment)).c_str());
  }

  std::deque<int> moments_{0, 5, 30, 55};
};

TEST_F(TimeScanJourney, AnEnzymeReactionIsWatchedSavedAndShownAgain) {
  QDir().mkpath(QString::fromStdString(Path("home")));
  StartSimulator({"--speed", "20"});
  ChooseInGuide("TimeScanOption");
  hands_.Expect("FrmTSConfig", &FillOptions);
  StartProgram();
  ASSERT_TRUE(
      QTest::qWaitFor([this] { return frame_->ActiveForm() != nullptr && hands_.Done(); }, kPatienceMs));
  EXPECT_EQ(Window().Caption(), QStringLiteral("Kinetics 1"));
  EXPECT_EQ(Document().PointTotal(), kPoints);
  ASSERT_TRUE(QTest::qWaitFor([this] { return Connected() && frame_->isEnabled(); }, kPatienceMs));

  hands_.ExpectBox(Words(978), QMessageBox::Ok);
  Press(Qt::Key_F8);
  ASSERT_TRUE(
      QTest::qWaitFor([this] { return Window().Test().BlankHolds() && !Window().RunsNow(); }, kPatienceMs));
  ASSERT_TRUE(Tell("beam enzyme"));
  const QString path = QString::fromStdString(Path("reaction.tis"));
  hands_.ExpectBox(Words(926), QMessageBox::Yes);
  hands_.ExpectFileDialog(path);
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, &Window(), [this] { Watch(); });
  watch.start(20);
  QElapsedTimer clock;
  clock.start();
  // The key comes back when the test is over; what happens meanwhile is for those who watch.
  Press(Qt::Key_F5);
  watch.stop();
  ASSERT_TRUE(QFile::exists(path) && hands_.Done() && !Window().RunsNow());
  EXPECT_TRUE(moments_.empty()) << "moments that nobody saw";
  EXPECT_GE(clock.elapsed(), 1000 + kPoints * 200) << "the start delay and an interval after each point";
  ASSERT_EQ(Document().DataCount(), kPoints);
  EXPECT_EQ(Document().Point(0).Time, 1);
  EXPECT_DOUBLE_EQ(Document().Point(kPoints - 1).Time, 13);
  // 1.244 Abs at first, falling to a tenth with 300 s.
  EXPECT_NEAR(Document().PointAbs(0), 1.23, 0.03);
  const double fall = Document().PointAbs(0) - Document().PointAbs(kPoints - 1);
  EXPECT_GT(fall, 0.03);
  EXPECT_LT(fall, 0.09);
  EXPECT_FALSE(Window().isWindowModified());
  const QStringList cells = CellsOf(Table());
  const QImage picture = Curve().Image();
  Photograph("ts-2-saved");
  CloseAndQuit();
  StartAgainWith(path);
  EXPECT_EQ(CellsOf(Table()), cells);
  EXPECT_FALSE(Window().isWindowModified());
  ASSERT_EQ(Curve().Image().size(), picture.size());
  EXPECT_TRUE(Curve().Image() == picture) << "the same picture, dot by dot";
  Photograph("ts-3-reopened");
}

}  // namespace
}  // namespace spectrane::testing_journey
