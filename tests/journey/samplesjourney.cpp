#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QRadioButton>
#include <QTableView>

#include "app/ground/commands.h"
#include "app/ground/words.h"
#include "base/basesupport.h"
#include "journey/journeysupport.h"
#include "modes/windows/frmdna.h"
#include "modes/windows/frmmulti.h"

namespace spectrane::testing_journey {
namespace {

/// Tables of samples from the examples, without an instrument.
class SamplesJourney : public Journey {
 protected:
  /// A copy of an example, which the journey may write.
  QString ExampleCopy(const char* name) {
    QDir().mkpath(QString::fromStdString(Path("home")));
    const QString path = QString::fromStdString(Path(name));
    EXPECT_TRUE(QFile::copy(QStringLiteral(SPECTRANE_SOURCE "/examples/") + QLatin1String(name), path));
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    return path;
  }
  void StartWith(const QString& path) {
    StartProgram(path);
    ASSERT_TRUE(QTest::qWaitFor([&] { return frame_->ActiveForm() != nullptr; }, kPatienceMs));
  }
  QTableView& Grid() {
    return dynamic_cast<QTableView&>(
        *frame_->ActiveForm()->findChild<QTableView*>(QStringLiteral("DataGrid")));
  }
  QString Cell(int row, int column) { return Grid().model()->index(row, column).data().toString(); }
  int Rows() { return Grid().model()->rowCount(); }
  void TypeInto(int row, int column, const char* text) {
    const QPoint place = Grid().visualRect(Grid().model()->index(row, column)).center();
    QTest::mouseClick(Grid().viewport(), Qt::LeftButton, Qt::NoModifier, place);
    auto* const editor = Grid().findChild<QLineEdit*>(QStringLiteral("EditText"));
    ASSERT_TRUE(editor && editor->isVisible());
    editor->selectAll();
    QTest::keyClicks(editor, QLatin1String(text));
    QTest::keyClick(editor, Qt::Key_Return);
  }
  void Choose(int command) {
    ASSERT_TRUE(frame_->ActionOf(command)->isEnabled()) << command;
    frame_->ActionOf(command)->trigger();
  }
  /// What comes of a command that asks for a file.
  std::string FileOf(int command, const char* name) {
    const QString path = QString::fromStdString(Path(name));
    hands_.ExpectFileDialog(path);
    Choose(command);
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFile::exists(path) && hands_.Done(); }, kPatienceMs)) << name;
    return ReadBytes(path.toStdString());
  }
  void SaveAs(const QString& path) {
    hands_.ExpectFileDialog(path);
    Choose(kSaveAs);
    ASSERT_TRUE(QTest::qWaitFor([&] { return QFile::exists(path) && hands_.Done(); }, kPatienceMs));
    EXPECT_FALSE(frame_->ActiveForm()->isWindowModified());
  }
};

TEST_F(SamplesJourney, DichromateAtFourWavelengths) {
  StartWith(ExampleCopy("multi.mul"));
  ASSERT_EQ(Rows(), 5);
  ASSERT_EQ(Grid().model()->columnCount(), 7);
  for (int row = 0; row < 5; ++row)
    EXPECT_NEAR(Cell(row, 6).toDouble(), 20.0 * (row + 1), 1.0) << "mg/L, by the names of the rows";
  EXPECT_FALSE(frame_->ActionOf(kStartTest)->isEnabled());
  EXPECT_TRUE(frame_->ActionOf(kStartTest)->toolTip().contains(QStringLiteral("come from files")));
  Photograph("multi-1-opened");

  TypeInto(0, 1, "dilution 1");
  Grid().selectRow(4);
  hands_.ExpectBox(QStringLiteral("Are you sure to remove Record <5>from this file?"), QMessageBox::Yes);
  Press(Qt::Key_Delete, Qt::ControlModifier);
  ASSERT_TRUE(QTest::qWaitFor([this] { return Rows() == 4 && hands_.Done(); }, kPatienceMs));
  Press(Qt::Key_S, Qt::ControlModifier);
  EXPECT_FALSE(frame_->ActiveForm()->isWindowModified());

  // Twice the coefficients are twice the results, for which the file has no table.
  hands_.Expect("FrmMultiConfig", [this](QWidget& options) {
    for (int i = 1; i <= 4; ++i) {
      auto* const field = options.findChild<QLineEdit*>(QStringLiteral("ParaText%1").arg(i));
      ASSERT_TRUE(field);
      const double parameter = field->text().toDouble();
      field->selectAll();
      QTest::keyClicks(field, QString::number(2 * parameter, 'f', 3));
    }
    Photograph("multi-2-options");
    hands_.ExpectBox(QStringLiteral("Parameter don't match the current test,please create a new test."),
                     QMessageBox::Ok);
    QTest::mouseClick(options.findChild<QPushButton*>(QStringLiteral("OKCmd")), Qt::LeftButton);
  });
  const double before = Child<FrmMulti>().Document().Record(0).Result;
  Choose(kTestOption);
  ASSERT_TRUE(QTest::qWaitFor([this] { return hands_.Done(); }, kPatienceMs));
  EXPECT_NEAR(Child<FrmMulti>().Document().Record(0).Result, 2 * before, 1e-9);
  EXPECT_TRUE(frame_->ActiveForm()->isWindowModified());
  Photograph("multi-3-doubled");
  const QString doubled = QString::fromStdString(Path("doubled.mul"));
  SaveAs(doubled);

  const std::string text = FileOf(kOutputText, "table.txt");
  EXPECT_NE(text.find("Result = 40.376×Abs(235.0nm)+34.682×Abs(257.0nm)+"), std::string::npos);
  EXPECT_NE(text.find("\n1\tdilution 1\t"), std::string::npos);
  EXPECT_EQ(FileOf(kOutputWorkbook, "table.xls").substr(0, 4), "\xD0\xCF\x11\xE0");
  hands_.ExpectBox(Words(1015), QMessageBox::Ok);
  Choose(kOutputPicture);
  ASSERT_TRUE(QTest::qWaitFor([this] { return hands_.Done(); }, kPatienceMs));
  const QString shown = Cell(3, 6);
  CloseAndQuit();

  StartWith(doubled);
  EXPECT_EQ(Rows(), 4);
  EXPECT_EQ(Cell(0, 1), QStringLiteral("dilution 1"));
  EXPECT_EQ(Cell(3, 6), shown);
  CloseAndQuit();
}

TEST_F(SamplesJourney, NucleicAcidInTheOtherMode) {
  const QString example = ExampleCopy("nucleic.dna");
  const std::string bytes = ReadBytes(example.toStdString());
  StartWith(example);
  ASSERT_EQ(Rows(), 7);
  EXPECT_EQ(Grid().model()->columnCount(), 9);
  EXPECT_NEAR(Cell(0, 7).toDouble(), 1.86, 0.03) << "pure";
  EXPECT_NEAR(Cell(6, 7).toDouble(), 0.57, 0.01) << "protein alone";
  Photograph("dna-1-opened");

  TypeInto(0, 8, "fresh");
  hands_.Expect("FrmDNAConfig", [this](QWidget& options) {
    QTest::mouseClick(options.findChild<QRadioButton*>(QStringLiteral("Item2Option")), Qt::LeftButton);
    Photograph("dna-2-options");
    QTest::mouseClick(options.findChild<QPushButton*>(QStringLiteral("OKCmd")), Qt::LeftButton);
  });
  Choose(kTestOption);
  ASSERT_TRUE(QTest::qWaitFor([this] { return hands_.Done(); }, kPatienceMs));
  const DNARecord& row = Child<FrmDNA>().Document().Record(2);
  const double first = row.Abs[0] - row.Abs[2];
  const double second = row.Abs[1] - row.Abs[2];
  EXPECT_DOUBLE_EQ(row.DNA, first * 49.1 - second * 3.48);
  EXPECT_DOUBLE_EQ(row.Protein, second * 183.0 - first * 75.8);
  EXPECT_EQ(ReadBytes(example.toStdString()), bytes) << "the file is as it was";
  Photograph("dna-3-other-mode");
  const QString other = QString::fromStdString(Path("other.dna"));
  SaveAs(other);

  const std::string text = FileOf(kOutputText, "table.txt");
  EXPECT_NE(text.find("Analysis Mode: Mode 2\nConc.(DNA) = [Abs(260.0nm)-Abs(320.0nm)]×(49.1)-"),
            std::string::npos);
  EXPECT_NE(text.find("\tfresh\n"), std::string::npos);
  CloseAndQuit();
  StartWith(other);
  EXPECT_EQ(Rows(), 7);
  EXPECT_EQ(Cell(0, 8), QStringLiteral("fresh"));
  EXPECT_EQ(Child<FrmDNA>().GetWaveLength(1), 230.0);
  CloseAndQuit();
}

}  // namespace
}  // namespace spectrane::testing_journey
