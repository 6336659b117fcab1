#include <QTableView>

#include "files/basicfile.h"
#include "journey/journeysupport.h"
#include "modes/windows/frmbasic.h"

namespace spectrane::testing_journey {
namespace {

/// The absorbances and notes of a photometry file.
std::vector<BasicRecord> RowsOf(const QString& path) {
  std::vector<BasicRecord> rows;
  int number = 0;
  BasicOption option;
  EXPECT_TRUE(OpenBasicFile(path.toStdString(), number, option));
  for (std::int32_t i = 0; i < option.RecordCount; ++i) {
    BasicRecord record;
    EXPECT_TRUE(ReadBasicRecord(number, record, i));
    rows.push_back(record);
  }
  CloseBasicFile(number);
  return rows;
}

class PhotometryJourney : public Journey {
 protected:
  FrmBasic& Window() { return Child<FrmBasic>(); }
  int Rows() { return Window().Document().RecordCount(); }
  void MeasureSample(const char* sample) {
    ASSERT_TRUE(Tell(std::string("beam ") + sample));
    const int before = Rows();
    Press(Qt::Key_F5);
    ASSERT_TRUE(QTest::qWaitFor([&] { return Rows() == before + 1 && !Window().RunsNow(); }, kPatienceMs));
  }
  QTableView& Grid() { return *Window().findChild<QTableView*>(QStringLiteral("DataGrid")); }

  // The parts of the day, in their order.
  void BeginAndConnect() {
    // The guide comes up by itself; photometry is its first option.
    hands_.Expect("FrmNew", [this](QWidget& guide) {
      Photograph("1-guide");
      QTest::keyClick(&guide, Qt::Key_Return);
    });
    hands_.Expect("FrmBasicConfig", [this](QWidget& options) {
      Photograph("2-options");
      auto* wavelength = options.findChild<QLineEdit*>(QStringLiteral("WavelengthText"));
      ASSERT_TRUE(wavelength);
      wavelength->selectAll();
      QTest::keyClicks(wavelength, QStringLiteral("546.0"));
      QTest::keyClick(wavelength, Qt::Key_Return);
    });
    StartProgram();
    ASSERT_TRUE(
        QTest::qWaitFor([this] { return frame_->ActiveForm() != nullptr && hands_.Done(); }, kPatienceMs));
    EXPECT_EQ(Window().Caption(), QStringLiteral("Photometry 1"));

    // It connects by itself.
    ASSERT_TRUE(QTest::qWaitFor([this] { return Connected() && frame_->isEnabled(); }, kPatienceMs));
    QTest::qWait(800);
    Photograph("3-connected");
  }
  void MeasureASeries() {
    Press(Qt::Key_F8);
    ASSERT_TRUE(
        QTest::qWaitFor([this] { return Window().Test().BlankDone && !Window().RunsNow(); }, kPatienceMs));
    MeasureSample("dye-2");
    MeasureSample("dye-4");
    MeasureSample("dye-6");
    EXPECT_EQ(Window().WaveLength(), 546.0);
    EXPECT_TRUE(Window().isWindowModified());
  }
  void WriteANote() {
    Grid().setFocus();
    Grid().setCurrentIndex(Grid().model()->index(1, 5));
    QTest::keyClick(&Grid(), Qt::Key_F2);
    auto* editor = Window().findChild<QLineEdit*>(QStringLiteral("EditText"));
    ASSERT_TRUE(editor && editor->isVisible());
    QTest::keyClicks(editor, QStringLiteral("middle of the series"));
    QTest::keyClick(editor, Qt::Key_Return);
    Photograph("4-rows");
  }
  void SaveAndQuit() {
    hands_.ExpectFileDialog(first_);
    Press(Qt::Key_S, Qt::ControlModifier);
    ASSERT_TRUE(QTest::qWaitFor([&] { return QFile::exists(first_) && hands_.Done(); }, kPatienceMs));
    EXPECT_FALSE(Window().isWindowModified());
    EXPECT_EQ(Window().Caption(), QStringLiteral("dye.bas"));
    CloseAndQuit();
    EXPECT_EQ(Requests().back(), "quit");
    const std::vector<BasicRecord> saved = RowsOf(first_);
    ASSERT_EQ(saved.size(), 3u);
    EXPECT_EQ(saved[1].Note, "middle of the series");
    EXPECT_EQ(saved[2].Wavelength, 546.0);
    EXPECT_LT(saved[2].SampleEnergy, saved[1].SampleEnergy);
    EXPECT_LT(saved[1].SampleEnergy, saved[0].SampleEnergy);
  }
  void OpenAgainAndRemoveARow() {
    // Again, with the file on the command line: nothing is sent to the instrument.
    const std::size_t requests = Requests().size();
    StartProgram(first_);
    ASSERT_TRUE(QTest::qWaitFor([this] { return frame_->ActiveForm() != nullptr; }, kPatienceMs));
    QTest::qWait(2500);
    EXPECT_FALSE(Connected());
    EXPECT_EQ(Requests().size(), requests);
    EXPECT_EQ(Rows(), 3);
    Photograph("5-reopened");

    QTest::mouseClick(Grid().viewport(), Qt::LeftButton, Qt::NoModifier,
                      Grid().visualRect(Grid().model()->index(0, 0)).center());
    hands_.ExpectBox(QStringLiteral("Are you sure to remove Record <1>from this file?"), QMessageBox::Yes);
    Press(Qt::Key_Delete, Qt::ControlModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return Rows() == 2; }, kPatienceMs));
  }
  void SaveOverAnotherFile() {
    QFile other(second_);
    ASSERT_TRUE(other.open(QIODevice::WriteOnly));
    other.write("something older");
    other.close();
    hands_.ExpectFileDialog(second_);
    hands_.ExpectBox(second_ + QStringLiteral(" is exist, are you want to overwrite this file?"),
                     QMessageBox::Yes);
    Press(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_TRUE(
        QTest::qWaitFor([this] { return hands_.Done() && !Window().isWindowModified(); }, kPatienceMs));
    EXPECT_EQ(RowsOf(second_).size(), 2u);
    EXPECT_EQ(RowsOf(first_).size(), 3u);
  }
  void QuitOnTheSecondThought() {
    hands_.ExpectBox(QStringLiteral("Are you sure to QUIT the program?"), QMessageBox::No);
    Press(Qt::Key_Q, Qt::ControlModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return hands_.Done(); }, kPatienceMs));
    EXPECT_TRUE(frame_->isVisible());
    hands_.ExpectBox(QStringLiteral("Are you sure to QUIT the program?"), QMessageBox::Yes);
    Press(Qt::Key_Q, Qt::ControlModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !frame_->isVisible(); }, kPatienceMs));
    EXPECT_TRUE(hands_.Done());
  }

  const QString first_ = QString::fromStdString(Path("dye.bas"));
  const QString second_ = QString::fromStdString(Path("other.bas"));
};

TEST_F(PhotometryJourney, ADayWithPhotometry) {
  QDir().mkpath(QString::fromStdString(Path("home")));
  StartSimulator({"--speed", "20"});
  ASSERT_NO_FATAL_FAILURE(BeginAndConnect());
  ASSERT_NO_FATAL_FAILURE(MeasureASeries());
  ASSERT_NO_FATAL_FAILURE(WriteANote());
  ASSERT_NO_FATAL_FAILURE(SaveAndQuit());
  ASSERT_NO_FATAL_FAILURE(OpenAgainAndRemoveARow());
  ASSERT_NO_FATAL_FAILURE(SaveOverAnotherFile());
  QuitOnTheSecondThought();
}

}  // namespace
}  // namespace spectrane::testing_journey
