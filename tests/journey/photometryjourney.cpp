#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <deque>

#include "app/frmmain.h"
#include "app/ground/documentwindow.h"
#include "app/ground/words.h"
#include "cli/processes.h"
#include "files/basicfile.h"
#include "link/portlist.h"
#include "modes/windows/frmbasic.h"

namespace spectrane {
namespace {

constexpr int kPatienceMs = 30000;

/// Hands at the dialogs: each that comes up must be the next one expected, and is dealt with.
class Hands : public QObject {
 public:
  using Act = std::function<void(QWidget&)>;

  Hands() {
    connect(&look_, &QTimer::timeout, this, [this] { Look(); });
    look_.start(20);
  }
  void Expect(const char* name, Act act) { expected_.push_back({QLatin1String(name), std::move(act)}); }
  /// A box with these words, answered by a button.
  void ExpectBox(const QString& words, QMessageBox::StandardButton answer) {
    Expect("MessageBox", [words, answer](QWidget& widget) {
      auto& box = dynamic_cast<QMessageBox&>(widget);
      EXPECT_EQ(box.text().toStdString(), words.toStdString());
      EXPECT_EQ(box.windowTitle(), QStringLiteral("Spectrane Basic"));
      EXPECT_EQ(box.icon(), QMessageBox::Information);
      QTest::mouseClick(box.button(answer), Qt::LeftButton);
    });
  }
  void ExpectFileDialog(const QString& path) {
    Expect("QFileDialog", [path](QWidget& widget) {
      auto* name = widget.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
      ASSERT_TRUE(name);
      name->setFocus();
      name->selectAll();
      QTest::keyClicks(name, path);
      QTest::keyClick(name, Qt::Key_Return);
    });
  }
  bool Done() const { return expected_.empty(); }

 private:
  void Look() {
    QWidget* dialog = QApplication::activeModalWidget();
    if (!dialog || !dialog->isVisible() || inside_) return;
    const QString name = dialog->objectName().isEmpty() || qobject_cast<QFileDialog*>(dialog)
                             ? QString::fromLatin1(dialog->metaObject()->className())
                             : dialog->objectName();
    inside_ = true;
    if (expected_.empty() || expected_.front().first != name) {
      ADD_FAILURE() << "not expected: " << name.toStdString() << " " << dialog->windowTitle().toStdString();
      dialog->close();
    } else {
      const Act act = std::move(expected_.front().second);
      expected_.pop_front();
      act(*dialog);
    }
    inside_ = false;
  }

  std::deque<std::pair<QString, Act>> expected_;
  QTimer look_;
  bool inside_ = false;
};

/// The whole program with real windows, a real clock and the simulator on a pseudo-terminal.
class Journey : public testing_processes::SimulatorProcess {
 protected:
  void StartProgram(const QString& file = {}) {
    qputenv("SPECTRANE_PORTS", QByteArray::fromStdString(Path("line")));
    frame_.reset();
    frame_ = std::make_unique<FrmMain>(
        ProgramParts{ports_, time_, loop_, *turn_, Settings(), Path("home"), nullptr, file});
    frame_->ShowStored();
    frame_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(frame_.get()));
  }
  Setting& Settings() {
    if (!settings_) settings_ = std::make_unique<Setting>(Path("home"));
    return *settings_;
  }
  FrmBasic& Window() { return dynamic_cast<FrmBasic&>(*frame_->ActiveForm()); }
  int Rows() { return Window().Document().RecordCount(); }
  bool Connected() const { return frame_->Link().State.InstrumentConnected; }
  void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(frame_.get(), key, modifiers);
  }
  /// Keeps what the screen shows, for people to look at.
  void Photograph(const char* name) {
    const QString folder = qEnvironmentVariable("SPECTRANE_PICTURES");
    if (folder.isEmpty()) return;
    QCoreApplication::processEvents();
    frame_->screen()->grabWindow(0).save(folder + u'/' + QString::fromLatin1(name) + QStringLiteral(".png"));
  }
  void MeasureSample(const char* sample) {
    ASSERT_TRUE(Tell(std::string("beam ") + sample));
    const int before = Rows();
    Press(Qt::Key_F5);
    ASSERT_TRUE(QTest::qWaitFor([&] { return Rows() == before + 1 && !Window().RunsNow(); }, kPatienceMs));
  }

  Hands hands_;
  std::unique_ptr<FrmMain> frame_;

 private:
  SteadyClock time_;
  QtMessageLoop loop_;
  std::unique_ptr<Exclusion> turn_ = MakeNamedExclusion("ex_sim_sci_journey");
  SerialPortList ports_;
  std::unique_ptr<Setting> settings_;
};

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

TEST_F(Journey, ADayWithPhotometry) {
  QDir().mkpath(QString::fromStdString(Path("home")));
  StartSimulator({"--speed", "20"});
  const QString first = QString::fromStdString(Path("dye.bas"));
  const QString second = QString::fromStdString(Path("other.bas"));

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

  Press(Qt::Key_F8);
  ASSERT_TRUE(
      QTest::qWaitFor([this] { return Window().Test().BlankDone && !Window().RunsNow(); }, kPatienceMs));
  MeasureSample("dye-2");
  MeasureSample("dye-4");
  MeasureSample("dye-6");
  EXPECT_EQ(Window().WaveLength(), 546.0);
  EXPECT_TRUE(Window().isWindowModified());

  auto* grid = Window().findChild<QTableView*>(QStringLiteral("DataGrid"));
  ASSERT_TRUE(grid);
  grid->setFocus();
  grid->setCurrentIndex(grid->model()->index(1, 5));
  QTest::keyClick(grid, Qt::Key_F2);
  auto* editor = Window().findChild<QLineEdit*>(QStringLiteral("EditText"));
  ASSERT_TRUE(editor && editor->isVisible());
  QTest::keyClicks(editor, QStringLiteral("middle of the series"));
  QTest::keyClick(editor, Qt::Key_Return);
  Photograph("4-rows");

  hands_.ExpectFileDialog(first);
  Press(Qt::Key_S, Qt::ControlModifier);
  ASSERT_TRUE(QTest::qWaitFor([&] { return QFile::exists(first) && hands_.Done(); }, kPatienceMs));
  EXPECT_FALSE(Window().isWindowModified());
  EXPECT_EQ(Window().Caption(), QStringLiteral("dye.bas"));
  Press(Qt::Key_W, Qt::ControlModifier);
  ASSERT_TRUE(QTest::qWaitFor([this] { return frame_->ActiveForm() == nullptr; }, kPatienceMs));
  Press(Qt::Key_Q, Qt::ControlModifier);
  ASSERT_TRUE(QTest::qWaitFor([this] { return !frame_->isVisible(); }, kPatienceMs));
  EXPECT_EQ(Requests().back(), "quit");
  const std::vector<BasicRecord> saved = RowsOf(first);
  ASSERT_EQ(saved.size(), 3u);
  EXPECT_EQ(saved[1].Note, "middle of the series");
  EXPECT_EQ(saved[2].Wavelength, 546.0);
  EXPECT_LT(saved[2].SampleEnergy, saved[1].SampleEnergy);
  EXPECT_LT(saved[1].SampleEnergy, saved[0].SampleEnergy);

  // Again, with the file on the command line: nothing is sent to the instrument.
  const std::size_t requests = Requests().size();
  StartProgram(first);
  ASSERT_TRUE(QTest::qWaitFor([this] { return frame_->ActiveForm() != nullptr; }, kPatienceMs));
  QTest::qWait(2500);
  EXPECT_FALSE(Connected());
  EXPECT_EQ(Requests().size(), requests);
  EXPECT_EQ(Rows(), 3);
  Photograph("5-reopened");

  grid = Window().findChild<QTableView*>(QStringLiteral("DataGrid"));
  grid->setFocus();
  grid->setCurrentIndex(grid->model()->index(0, 0));
  hands_.ExpectBox(QStringLiteral("Are you sure to remove Record <1>from this file?"), QMessageBox::Yes);
  Press(Qt::Key_Delete, Qt::ControlModifier);
  ASSERT_TRUE(QTest::qWaitFor([this] { return Rows() == 2; }, kPatienceMs));

  QFile other(second);
  ASSERT_TRUE(other.open(QIODevice::WriteOnly));
  other.write("something older");
  other.close();
  hands_.ExpectFileDialog(second);
  hands_.ExpectBox(second + QStringLiteral(" is exist, are you want to overwrite this file?"),
                   QMessageBox::Yes);
  Press(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
  ASSERT_TRUE(QTest::qWaitFor([this] { return hands_.Done() && !Window().isWindowModified(); }, kPatienceMs));
  EXPECT_EQ(RowsOf(second).size(), 2u);
  EXPECT_EQ(RowsOf(first).size(), 3u);

  hands_.ExpectBox(QStringLiteral("Are you sure to QUIT the program?"), QMessageBox::No);
  Press(Qt::Key_Q, Qt::ControlModifier);
  ASSERT_TRUE(QTest::qWaitFor([this] { return hands_.Done(); }, kPatienceMs));
  EXPECT_TRUE(frame_->isVisible());
  hands_.ExpectBox(QStringLiteral("Are you sure to QUIT the program?"), QMessageBox::Yes);
  Press(Qt::Key_Q, Qt::ControlModifier);
  ASSERT_TRUE(QTest::qWaitFor([this] { return !frame_->isVisible(); }, kPatienceMs));
  EXPECT_TRUE(hands_.Done());
}

}  // namespace
}  // namespace spectrane
