#include <QAbstractButton>
#include <QAction>
#include <QDir>
#include <QFile>
#include <QListWidget>
#include <QTableView>
#include <QTabWidget>

#include <cmath>

#include "app/ground/commands.h"
#include "app/ground/frmdatatabel.h"
#include "files/wlsfile.h"
#include "journey/journeysupport.h"
#include "output/windows/piccurve.h"
#include "spectrum/windows/frmcaculate.h"
#include "spectrum/windows/frmdev.h"
#include "spectrum/windows/frmsmooth.h"
#include "spectrum/windows/frmwls.h"
#include "spectrum/windows/frmwlscompare.h"
#include "spectrum/windows/frmwlsver2.h"

namespace spectrane::testing_journey {
namespace {

class ProcessingJourney : public Journey {
 protected:
  void Begin() {
    QDir().mkpath(QString::fromStdString(Path("home")));
    Settings().PutSetting(kScanSection, "Smooth Enable", "False");
    StartProgram(Copied("holmium.wls"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return frame_->ActiveForm() != nullptr; }, kPatienceMs));
  }
  QString File(const char* name) { return QString::fromStdString(Path(name)); }
  QString Copied(const char* name) {
    EXPECT_TRUE(QFile::copy(QStringLiteral(SPECTRANE_SOURCE "/examples/") + QLatin1String(name), File(name)));
    return File(name);
  }
  /// A spectrum from 600 to 400 nm, downward, of one transmittance [%T].
  QString Flat(const char* name, int percent) {
    const WLSOption option{400, 600, 2, 0, 120, 0, 65535, 0, 0, 0, 0, 3, 0, 1};
    SaveDataFile(WLSModule(), Path(name), option, 201, [percent](std::int32_t i) {
      return WLSRecord{percent * 100 + 50, 10050, 50, 600.0 - i, 3};
    });
    return File(name);
  }
  void Do(int command) {
    ASSERT_TRUE(frame_->ActionOf(command)->isEnabled()) << command;
    frame_->ActionOf(command)->trigger();
  }
  static void Put(QWidget& dialog, const QString& field, const QString& text) {
    auto* const line = dialog.findChild<QLineEdit*>(field);
    ASSERT_TRUE(line) << field.toStdString();
    line->setFocus();
    line->selectAll();
    QTest::keyClicks(line, text);
  }
  static void Press(QWidget& dialog, const char* button) {
    auto* const found = dialog.findChild<QAbstractButton*>(QLatin1String(button));
    ASSERT_TRUE(found) << button;
    QTest::mouseClick(found, Qt::LeftButton, {}, QPoint(8, found->height() / 2));
  }
  const CurveView& Seen() { return frame_->ActiveForm()->findChild<PicCurve*>()->View(); }
  QString Cell(int tab, int row, int column) {
    return frame_->ActiveForm()->DataTable()->Grid(tab)->model()->index(row, column).data().toString();
  }
  void Leave() {
    hands_.ExpectBox(QStringLiteral("Are you sure to QUIT the program?"), QMessageBox::Yes);
    Journey::Press(Qt::Key_Q, Qt::ControlModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !frame_->isVisible(); }, kPatienceMs));
    EXPECT_TRUE(hands_.Done());
  }
};

TEST_F(ProcessingJourney, ASecondDerivativeIsSavedAndOpenedAgain) {
  Begin();
  const std::span<const double> source = Child<FrmWLS>().Document().Abs();
  const std::vector<double> y(source.begin(), source.end());
  hands_.Expect("FrmSmoothConfig", [this](QWidget& dialog) {
    Photograph("processing-1-smooth-options");
    Press(dialog, "OKCmd");
  });
  Do(kSpectrumSmooth);
  ASSERT_TRUE(hands_.Done());
  auto& smoothed = Child<FrmSmooth>();
  ASSERT_EQ(smoothed.GetRecordNo(), 861);
  const double fifth = (-3 * y[398] + 12 * y[399] + 17 * y[400] + 12 * y[401] - 3 * y[402]) / 35;
  EXPECT_NEAR(smoothed.Document().Abs()[400], fifth, 1e-12);
  EXPECT_TRUE(smoothed.DataTable()->isVisible());
  Photograph("processing-2-smoothed");

  Do(kSpectrumDerivative);
  EXPECT_EQ(Child<FrmDev>().Caption(), QStringLiteral("Spectrum Derivative-Spectrum Smooth-holmium.wls"));
  hands_.Expect("FrmDevConfig", [this](QWidget& dialog) {
    Put(dialog, QStringLiteral("ScaleTopText"), QStringLiteral("0.2"));
    Put(dialog, QStringLiteral("ScaleBottomText"), QStringLiteral("-0.2"));
    Photograph("processing-3-derivative-options");
    Press(dialog, "OKCmd");
  });
  Journey::Press(Qt::Key_F4);
  ASSERT_TRUE(hands_.Done());
  EXPECT_EQ(Seen().Scale, (CurveScale{{230, 660}, {-0.2, 0.2}}));
  Photograph("processing-4-derivative");

  Do(kSpectrumDerivative);
  auto& second = Child<FrmDev>();
  const std::span<const double> first = second.SourcePoints().Abs;
  EXPECT_NEAR(second.Document().Abs()[400], (first[401] - first[400]) / 0.5, 1e-9);
  Do(kSearchPeak);
  EXPECT_GT(second.Document().Found().PeakIndex.size(), 10U);
  Photograph("processing-5-second-derivative");
  hands_.ExpectFileDialog(File("second.wls"));
  Journey::Press(Qt::Key_S, Qt::ControlModifier);
  ASSERT_TRUE(
      QTest::qWaitFor([this] { return QFile::exists(File("second.wls")) && hands_.Done(); }, kPatienceMs));
  const std::span<const double> saved = second.Document().Abs();
  const std::vector<double> expected(saved.begin(), saved.end());
  Do(kCloseAll);
  ASSERT_TRUE(QTest::qWaitFor([this] { return frame_->ActiveForm() == nullptr; }, kPatienceMs));

  ASSERT_TRUE(frame_->OpenDataFile(File("second.wls")));
  const std::span<const double> read = Child<FrmWLSVer2>().Document().Abs();
  EXPECT_EQ(std::vector<double>(read.begin(), read.end()), expected);
  EXPECT_EQ(Seen().Scale, (CurveScale{{230, 660}, {-0.2, 0.2}}));
  Photograph("processing-6-reopened");
  Do(kSpectrumDerivative);
  EXPECT_EQ(Child<FrmDev>().SourcePoints().Abs, expected);
  Leave();
}

TEST_F(ProcessingJourney, TwoFilesThroughAllOperationsInBothModes) {
  Begin();
  const QString first = Flat("first one.wls", 50);
  const QString second = Flat("second.wls", 20);
  struct Row {
    int Command;
    double OnAbs, OnTrans;
  };
  const double a = std::log10(2.0);
  const double b = std::log10(5.0);
  const Row kRows[] = {{kSpectrumAdd, a + b, 70},
                       {kSpectrumSubtraction, a - b, 30},
                       {kSpectrumMultiplication, a * b, 1000},
                       {kSpectrumDivision, a / b, 2.5}};
  for (const Row& row : kRows) {
    hands_.Expect("FrmCaculateConfig", [&](QWidget& dialog) {
      Put(dialog, QStringLiteral("TextFileName0"), first);
      Put(dialog, QStringLiteral("TextFileName1"), second);
      Press(dialog, "OptionAbs");
      Put(dialog, QStringLiteral("ScaleBottomText"), QStringLiteral("-0.5"));
      if (row.Command == kSpectrumAdd) Photograph("processing-7-calculation-options");
      Press(dialog, "OKCmd");
    });
    Do(row.Command);
    ASSERT_TRUE(hands_.Done());
    auto& window = Child<FrmCaculate>();
    ASSERT_EQ(window.GetRecordNo(), 201);
    EXPECT_NEAR(window.Document().Abs()[100], row.OnAbs, 1e-12) << row.Command;
    EXPECT_EQ(Cell(0, 100, 1), QStringLiteral("500.0"));
    if (row.Command == kSpectrumAdd) Photograph("processing-8-sum");
    hands_.Expect("FrmCaculateConfig", [](QWidget& dialog) {
      Press(dialog, "OptionTrans");
      Press(dialog, "OKCmd");
    });
    Journey::Press(Qt::Key_F4);
    ASSERT_TRUE(hands_.Done());
    EXPECT_NEAR(window.Document().Trans()[100], row.OnTrans, 1e-9) << row.Command;
    EXPECT_EQ(Seen().Y.Kind, AxisKind::Trans);
  }
  Leave();
}

TEST_F(ProcessingJourney, TenFilesAreComparedOneOfThemMissing) {
  Begin();
  QStringList paths;
  for (int i = 0; i < 10; ++i) {
    const QByteArray name = "file " + QByteArray::number(i) + ".wls";
    paths.append(i == 5 ? File("missing.wls") : Flat(name.constData(), 90 - 8 * i));
  }
  hands_.Expect("FrmWLSCompareConfig", [&](QWidget& dialog) {
    for (int i = 0; i < 10; ++i) Put(dialog, QStringLiteral("TextFileName%1").arg(i), paths[i]);
    Press(dialog, "OptionTrans");
    Put(dialog, QStringLiteral("StartWLText"), QStringLiteral("400"));
    Put(dialog, QStringLiteral("EndWLText"), QStringLiteral("600"));
    Photograph("processing-9-compare-options");
    Press(dialog, "OKCmd");
  });
  Do(kSpectrumCompare);
  ASSERT_TRUE(hands_.Done()) << "no box for the missing one";
  auto& window = Child<FrmWLSCompare>();
  EXPECT_EQ(window.LoadedFiles(), 9);
  const QColor kColours[] = {{255, 128, 128}, {255, 255, 128}, {128, 255, 128}, {255, 255, 128},
                             {255, 128, 0},   {255, 128, 255}, {128, 0, 128},   {0, 128, 0},
                             {255, 0, 128},   {0, 128, 255}};
  for (std::size_t i = 0; i < 10; ++i) {
    EXPECT_EQ(Seen().Lines[i].Colour, kColours[i]) << i;
    EXPECT_EQ(Seen().Lines[i].Count(), i == 5 ? 0U : 201U) << i;
  }
  EXPECT_NE(Seen().Lines[1].Pattern, Seen().Lines[3].Pattern) << "one colour";
  auto* const tabs = window.DataTable()->findChild<QTabWidget*>(QStringLiteral("DataTabs"));
  EXPECT_FALSE(tabs->isTabVisible(5));
  EXPECT_TRUE(tabs->isTabVisible(9));
  EXPECT_NE(frame_->findChild<MainStatus*>()->Remark().toStdString().find("missing.wls"), std::string::npos);
  Photograph("processing-10-compared");
  // What is on the screen has the colours: each flat curve lies at its own height.
  const QImage picture = window.findChild<PicCurve*>()->Image();
  const CurveGeometry geometry = window.findChild<PicCurve*>()->Geometry();
  for (std::size_t i = 0; i < 10; ++i) {
    if (i == 5) continue;
    const int y = qRound(geometry.YAt(90.0 - 8.0 * static_cast<double>(i)) / 15);
    int seen = 0;
    for (int x = 100; x < picture.width() - 60; ++x) {
      for (int dy = -1; dy <= 1; ++dy) seen += picture.pixelColor(x, y + dy) == kColours[i] ? 1 : 0;
    }
    EXPECT_GT(seen, 50) << i;
  }
  auto* const legend = window.findChild<QListWidget*>(QStringLiteral("CompareLegend"));
  legend->item(0)->setCheckState(Qt::Unchecked);
  EXPECT_FALSE(Seen().Lines[0].Visible);
  Leave();
}

}  // namespace
}  // namespace spectrane::testing_journey
