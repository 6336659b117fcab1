#include <QComboBox>
#include <QTableView>

#include "app/ground/words.h"
#include "journey/journeysupport.h"
#include "modes/windows/frmqua.h"
#include "modes/windows/qualinepic.h"

namespace spectrane::testing_journey {
namespace {

constexpr int kAbsColumn = 2;
constexpr int kConcColumn = 3;

class QuantitationJourney : public Journey {
 protected:
  FrmQua& Window() { return Child<FrmQua>(); }
  const QuantitationDocument& Document() { return Window().Document(); }
  QTableView& Grid(const char* name) {
    auto* const grid = Window().findChild<QTableView*>(QLatin1String(name));
    return dynamic_cast<QTableView&>(*grid);
  }
  static void Click(QTableView& grid, int row, int column) {
    const QPoint place = grid.visualRect(grid.model()->index(row, column)).center();
    QTest::mouseMove(grid.viewport(), place);
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, Qt::NoModifier, place);
  }
  /// Types a concentration, puts the solution into the beam and measures it.
  void MeasureStandard(int row, const char* solution, const char* conc) {
    QTableView& standards = Grid("QuaConfigGrid");
    Click(standards, row, kConcColumn);
    auto* const editor = standards.findChild<QLineEdit*>(QStringLiteral("QuaConfigText"));
    ASSERT_TRUE(editor && editor->isVisible());
    QTest::keyClicks(editor, QLatin1String(conc));
    QTest::keyClick(editor, Qt::Key_Return);
    ASSERT_TRUE(Tell(std::string("beam ") + solution));
    Click(standards, row, kAbsColumn);
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
          return Document().Option().StandardAbsSet[static_cast<std::size_t>(row)] && !Window().RunsNow();
        },
        kPatienceMs));
  }
  void MeasureSample(const char* solution) {
    ASSERT_TRUE(Tell(std::string("beam ") + solution));
    const int before = Document().RecordCount();
    Press(Qt::Key_F5);
    ASSERT_TRUE(QTest::qWaitFor([&] { return Document().RecordCount() == before + 1 && !Window().RunsNow(); },
                                kPatienceMs));
  }
  /// What both grids show, row by row.
  QStringList Cells() {
    return CellsOf(*Grid("QuaConfigGrid").model()) + CellsOf(*Grid("RecordGrid").model());
  }
  /// The curve without a standard that is stressed.
  QImage Picture() {
    Grid("QuaConfigGrid").clearSelection();
    auto* const picture = Window().findChild<QuaLinePic*>(QStringLiteral("QuaLinePic"));
    return picture->grab().toImage();
  }
  /// Chooses a straight line through five standards in the option dialog.
  void ExpectOptions() {
    hands_.Expect("FrmQuaConfig", [this](QWidget& options) {
      options.findChild<QComboBox*>(QStringLiteral("ComboFittingMethod"))->setCurrentIndex(1);
      options.findChild<QComboBox*>(QStringLiteral("ComboSampleNumber"))->setCurrentIndex(4);
      auto* const units = options.findChild<QComboBox*>(QStringLiteral("ComboConcUnit"));
      ASSERT_TRUE(units);
      units->setCurrentIndex(units->findText(QStringLiteral("mg/L")));
      auto* const wavelength = options.findChild<QLineEdit*>(QStringLiteral("WaveLength1Text"));
      ASSERT_TRUE(wavelength);
      wavelength->selectAll();
      QTest::keyClicks(wavelength, QStringLiteral("546.0"));
      Photograph("qua-1-options");
      QTest::keyClick(wavelength, Qt::Key_Return);
    });
  }
  void BeginWithANewQuantitation() {
    QDir().mkpath(QString::fromStdString(Path("home")));
    StartSimulator({"--speed", "20"});
    ChooseInGuide("QuaOption");
    ExpectOptions();
    StartProgram();
    ASSERT_TRUE(
        QTest::qWaitFor([this] { return frame_->ActiveForm() != nullptr && hands_.Done(); }, kPatienceMs));
    ASSERT_TRUE(QTest::qWaitFor([this] { return Connected() && frame_->isEnabled(); }, kPatienceMs));
  }
};

TEST_F(QuantitationJourney, ADyeSeriesFromStandardsToUnknownsAndBackFromItsFile) {
  BeginWithANewQuantitation();
  EXPECT_EQ(Window().Caption(), QStringLiteral("Quantitation 1"));
  EXPECT_EQ(Document().StandardRows(), 5);
  Photograph("qua-2-connected");

  Press(Qt::Key_F8);
  ASSERT_TRUE(
      QTest::qWaitFor([this] { return Window().Test().BlankHolds() && !Window().RunsNow(); }, kPatienceMs));
  const struct {
    const char* Solution;
    const char* Conc;  // [mg/L]
  } standards[] = {{"dye-1", "1"}, {"dye-3", "4"}, {"dye-5", "8"}, {"dye-7", "15"}, {"dye-8", "20"}};
  for (int row = 0; row < 5; ++row) {
    EXPECT_FALSE(Document().Option().CurveValid) << "no curve before the last standard";
    MeasureStandard(row, standards[row].Solution, standards[row].Conc);
  }
  ASSERT_TRUE(Document().Option().CurveValid);
  EXPECT_GT(Document().Option().CurveR, 0.999);
  EXPECT_LE(Document().Option().CurveR, 1.0);

  for (const char* solution : {"dye-2", "dye-4", "dye-6"}) MeasureSample(solution);
  const double weighed[] = {2, 6, 10};  // [mg/L]
  for (int row = 0; row < 3; ++row) {
    // 0.005 Abs of noise and baseline are 0.05 mg/L.
    EXPECT_NEAR(Document().Record(row).Conc, weighed[row], 0.05);
    EXPECT_NEAR(Grid("RecordGrid").model()->index(row, kConcColumn).data().toString().toDouble(),
                weighed[row], 0.05);
  }
  EXPECT_TRUE(Window().isWindowModified());
  Photograph("qua-3-measured");

  const QString path = QString::fromStdString(Path("series.qua"));
  hands_.ExpectFileDialog(path);
  Press(Qt::Key_S, Qt::ControlModifier);
  ASSERT_TRUE(QTest::qWaitFor([&] { return QFile::exists(path) && hands_.Done(); }, kPatienceMs));
  EXPECT_FALSE(Window().isWindowModified());
  const QStringList cells = Cells();
  ASSERT_EQ(cells.size(), 5 * 5 + 3 * 5);
  const QuaOption option = Document().Option();
  const QImage picture = Picture();
  CloseAndQuit();
  StartAgainWith(path);
  EXPECT_EQ(Cells(), cells);
  EXPECT_EQ(Document().Option(), option);
  EXPECT_FALSE(Window().isWindowModified());
  const QImage again = Picture();
  ASSERT_EQ(again.size(), picture.size());
  EXPECT_TRUE(again == picture) << "the same picture, dot by dot";
  Photograph("qua-4-reopened");
}

}  // namespace
}  // namespace spectrane::testing_journey
