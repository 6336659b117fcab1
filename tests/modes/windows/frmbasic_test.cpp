#include <QClipboard>
#include <QHeaderView>
#include <QMenu>
#include <QMimeData>
#include <QVBoxLayout>

#include <cmath>
#include <cstdio>

#include "app/ground/commands.h"
#include "modes/windows/frmbasicfixture.h"
#include "modes/windows/notegrid.h"

namespace spectrane::testing_windows {
namespace {

QString Figure(double value, int decimals) {
  char text[32];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return QString::fromLatin1(text);
}

TEST_F(BasicWindow, BeginsEmptyWithTheHeadingsOfTheTable) {
  Open();
  EXPECT_EQ(Window->objectName(), QStringLiteral("FrmBasic"));
  EXPECT_EQ(Window->windowTitle(), QStringLiteral("Photometry[*]"));
  EXPECT_FALSE(Window->isWindowModified());
  EXPECT_EQ(Rows(), 0);
  const char* const headings[] = {"No.", "Wavelength(nm)", "Absorbance(Abs)", "Transmittance(%T)", "Energy",
                                  "Note"};
  ASSERT_EQ(Grid->model()->columnCount(), 6);
  for (int i = 0; i < 6; ++i)
    EXPECT_EQ(Grid->model()->headerData(i, Qt::Horizontal).toString(), QLatin1String(headings[i]));
  EXPECT_EQ(Window->CheckFileType(), 11);
  EXPECT_EQ(Window->OpenFileName(), QString());
}

TEST_F(BasicWindow, BlankAndThreeSamplesGiveThreeRows) {
  OpenWithBlank();
  for (const char* sample : {"filter-0.3", "filter-1.0", "closed"}) {
    Insert(sample);
    Window->mmuStartTest();
  }
  ASSERT_EQ(Rows(), 3);
  const double expected[] = {0.3, 1.0, 3.0};
  for (int row = 0; row < 3; ++row) {
    const PhotometryDocument& document = Window->Document();
    const double trans = 100.0 * (document.RecordEnergy(row) - document.RecordDarkEnergy(row)) /
                         (document.RecordFullEnergy(row) - document.RecordDarkEnergy(row));
    EXPECT_EQ(Cell(row, 0), QString::number(row + 1));
    EXPECT_EQ(Cell(row, 1), QStringLiteral("546.0"));
    if (row < 2) {
      EXPECT_NEAR(-std::log10(trans / 100.0), expected[row], 0.01) << "the filter's own absorbance";
      EXPECT_EQ(Cell(row, 2), Figure(-std::log10(trans / 100.0), 3));
      EXPECT_EQ(Cell(row, 3), Figure(trans, 1));
    }
    EXPECT_EQ(Cell(row, 4), QString::number(document.RecordEnergy(row)));
    EXPECT_EQ(Cell(row, 5), QString());
  }
  EXPECT_EQ(Cell(2, 2), QStringLiteral("3.000")) << "a closed beam";
  EXPECT_TRUE(Window->isWindowModified());
  EXPECT_EQ(Main.RunDepth, 0);
  EXPECT_EQ(Main.Runs, 4) << "the blank and three samples";
  EXPECT_TRUE(Display.TimerOn);
}

TEST_F(BasicWindow, TheNewRowIsSelectedAndInSight) {
  OpenWithBlank();
  Measure(30);
  EXPECT_EQ(Grid->currentIndex().row(), 29);
  ASSERT_EQ(Grid->selectionModel()->selectedRows().size(), 1);
  EXPECT_EQ(Grid->selectionModel()->selectedRows()[0].row(), 29);
  EXPECT_TRUE(Grid->viewport()->rect().contains(Grid->visualRect(Grid->model()->index(29, 0))));
}

TEST_F(BasicWindow, StartWithoutAnInstrument) {
  Open();
  Boxes.ExpectMessage(970);
  Window->mmuStartTest();
  EXPECT_EQ(Rows(), 0);
  EXPECT_EQ(Main.RunDepth, 0);
}

TEST_F(BasicWindow, StartWithoutABlankSendsNothing) {
  OpenConnected();
  const std::int64_t before = Instrument.Requests();
  Boxes.ExpectMessage(971);
  Window->mmuStartTest();
  EXPECT_EQ(Instrument.Requests(), before);
  EXPECT_EQ(Rows(), 0);
}

TEST_F(BasicWindow, StartTwiceAtOnceTakesOneMeasurement) {
  OpenWithBlank();
  Loop.OnYield = [this] {
    EXPECT_TRUE(Window->RunsNow());
    Window->mmuStartTest();
    Window->mmuOperationRezero();
    Window->ShowConfigWindow();
    Window->mmuDeleteReport();
  };
  Window->mmuStartTest();
  EXPECT_GT(Loop.Yields, 0);
  EXPECT_EQ(Rows(), 1);
  EXPECT_EQ(Main.Runs, 2) << "the blank and one sample";
}

TEST_F(BasicWindow, AWaitShowsTheBusyCursor) {
  OpenWithBlank();
  Qt::CursorShape during = Qt::ArrowCursor;
  Loop.OnYield = [&] { during = Window->cursor().shape(); };
  Window->mmuStartTest();
  EXPECT_EQ(during, Qt::BusyCursor);
  EXPECT_EQ(Window->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(BasicWindow, ACableThatIsPulledInARunKeepsTheRows) {
  FitSampler({1, 2, 3, 4});
  OpenWithBlank();
  Loop.OnYield = [this] {
    if (Rows() == 2 && Ports.Current->IsOpen()) PullCable();
  };
  Boxes.ExpectMessage(972);
  Window->mmuStartTest();
  EXPECT_EQ(Rows(), 2);
  EXPECT_EQ(Cell(1, 5), QStringLiteral("Sampler Position 2"));
  EXPECT_TRUE(Window->isWindowModified());
  EXPECT_FALSE(Window->RunsNow());
  EXPECT_FALSE(Link.State.InstrumentBusy);
}

TEST_F(BasicWindow, AReadingThatFailsGivesNoRow) {
  OpenWithBlank();
  for (const char* fault : {"no-reply", "fewer-lines", "bad-number"}) {
    ASSERT_EQ(Instrument.Faults().Add("ge", "1", fault, {}), std::nullopt);
    Boxes.ExpectMessage(972);
    Window->mmuStartTest();
    EXPECT_TRUE(Boxes.AllAsked()) << fault;
  }
  EXPECT_EQ(Rows(), 0);
  EXPECT_FALSE(Window->isWindowModified());
}

TEST_F(BasicWindow, StopHasNothingToStopHere) {
  FitSampler({1, 2, 3, 4});
  OpenWithBlank();
  Loop.OnYield = [this] { Window->mmuStopTest(); };
  Window->mmuStartTest();
  EXPECT_EQ(Rows(), 4);
}

TEST_F(BasicWindow, OffersWhatMakesSense) {
  struct Case {
    const char* Name;
    Command What;
    bool Empty, Filled, Running;
  };
  const Case cases[] = {
      {"start", kStartTest, true, true, false},
      {"stop", kStopTest, false, false, false},
      {"blank", kSetBlank, true, true, false},
      {"delete", kDeleteRecord, false, true, false},
      {"save", kSave, false, true, false},
      {"save as", kSaveAs, false, true, false},
      {"close", kClose, true, true, true},
      {"option", kTestOption, true, true, false},
      {"print", kPrint, true, true, false},
      {"picture", kOutputPicture, true, true, false},
      {"workbook", kOutputWorkbook, true, true, false},
      {"text", kOutputText, true, true, false},
      {"copy picture", kCopyPicture, false, false, false},
      {"zoom", kZoomIn, false, false, false},
      {"peak", kSearchPeak, false, false, false},
  };
  OpenWithBlank();
  for (const Case& c : cases) EXPECT_EQ(Window->Offers(c.What), c.Empty) << c.Name << " of an empty window";
  Measure(1);
  for (const Case& c : cases) EXPECT_EQ(Window->Offers(c.What), c.Filled) << c.Name;
  Loop.OnYield = [&] {
    for (const Case& c : cases) EXPECT_EQ(Window->Offers(c.What), c.Running) << c.Name << " in a run";
  };
  Measure(1);
  Grid->clearSelection();
  EXPECT_FALSE(Window->Offers(kDeleteRecord)) << "no row is selected";
}

TEST_F(BasicWindow, AChangedWavelengthAsksForANewBlank) {
  OpenWithBlank();
  Measure(1);
  Window->SetWaveLength(600.0);
  Boxes.ExpectMessage(971);
  Window->mmuStartTest();
  EXPECT_EQ(Rows(), 1);
  Window->mmuOperationRezero();
  Window->mmuStartTest();
  ASSERT_EQ(Rows(), 2);
  EXPECT_EQ(Cell(0, 1), QStringLiteral("546.0")) << "rows keep their own wavelength";
  EXPECT_EQ(Cell(1, 1), QStringLiteral("600.0"));
}

TEST_F(BasicWindow, ABlankHoldsWhenTheWavelengthComesBack) {
  OpenWithBlank();
  Window->SetWaveLength(600.0);
  Window->SetWaveLength(546.0);
  Window->mmuStartTest();
  EXPECT_EQ(Rows(), 1);
}

TEST_F(BasicWindow, TheWavelengthComesFromTheSettings) {
  Open();
  EXPECT_EQ(Window->WaveLength(), 546.0);
  EXPECT_EQ(Settings.GetSetting("Basic Test", "Wavelength"), "546") << "the default is written back";
  Settings.PutSetting("Basic Test", "Wavelength", "500.5");
  const FrmBasic second(Main);
  EXPECT_EQ(second.WaveLength(), 500.5);
}

TEST_F(BasicWindow, FormatsThatChangeShowAtOnce) {
  OpenWithBlank();
  Insert("filter-0.3");
  Measure(1);
  const QString before = Cell(0, 2);
  Link.Formats.ApplyOption(1);
  int told = 0;
  QObject::connect(Grid->model(), &QAbstractItemModel::dataChanged, Window, [&] { ++told; });
  Window->FormatsChanged();
  EXPECT_EQ(told, 1);
  EXPECT_EQ(Cell(0, 2).size(), before.size() + 1);
  EXPECT_EQ(Cell(0, 3).section(u'.', 1).size(), 2);
}

TEST_F(BasicWindow, DeleteAsksForTheRowByItsNumber) {
  OpenWithBlank();
  Measure(3);
  TypeNote(1, "middle");
  QTest::keyClick(Editor(), Qt::Key_Return);
  Grid->selectRow(1);
  const QString question = QStringLiteral("Are you sure to remove Record <2>from this file?");
  Boxes.ExpectYesNo(question, Answer::No);
  Window->mmuDeleteReport();
  EXPECT_EQ(Rows(), 3);
  Boxes.ExpectYesNo(question, Answer::Yes);
  Window->mmuDeleteReport();
  ASSERT_EQ(Rows(), 2);
  EXPECT_EQ(Cell(1, 0), QStringLiteral("2")) << "later rows move up";
  EXPECT_EQ(Cell(1, 5), QString());
  EXPECT_EQ(Grid->currentIndex().row(), 1);
}

TEST_F(BasicWindow, DeleteWithoutASelectedRowIsAnError) {
  Open();
  Boxes.ExpectMessage(1215);
  Window->mmuDeleteReport();
}

TEST_F(BasicWindow, RowsTakenAndRemovedLeaveNothingToSave) {
  OpenWithBlank();
  Measure(1);
  Boxes.ExpectYesNo(QStringLiteral("Are you sure to remove Record <1>from this file?"), Answer::Yes);
  Window->mmuDeleteReport();
  EXPECT_FALSE(Window->isWindowModified());
  EXPECT_TRUE(Window->close()) << "and nothing is asked";
}

TEST_F(BasicWindow, NoPictureOfATable) {
  Open();
  Boxes.ExpectMessage(969);
  Window->mmuFileOutputBMP();
}

TEST_F(BasicWindow, CopyTakesTheSelectedRowsOrAll) {
  OpenWithBlank();
  Measure(3);
  TypeNote(0, "=1+1 <b>");
  QTest::keyClick(Editor(), Qt::Key_Return);
  Grid->setFocus();
  Grid->selectRow(0);
  QTest::keyClick(Grid, Qt::Key_C, Qt::ControlModifier);
  const QMimeData* data = QGuiApplication::clipboard()->mimeData();
  const QString head =
      QStringLiteral("No.\tWavelength(nm)\tAbsorbance(Abs)\tTransmittance(%T)\tEnergy\tNote\n");
  EXPECT_EQ(data->text(),
            head + QStringLiteral("1\t546.0\t0.000\t100.0\t") + Cell(0, 4) + QStringLiteral("\t'=1+1 <b>\n"));
  EXPECT_TRUE(data->html().contains(QStringLiteral("<th>Energy</th>")));
  EXPECT_TRUE(data->html().contains(QStringLiteral(">=1+1 &lt;b&gt;</td>")));
  Grid->clearSelection();
  QTest::keyClick(Grid, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text().count(u'\n'), 4) << "the headings and all rows";
}

TEST_F(BasicWindow, TheMenuOfTheGridFollowsTheSelection) {
  OpenWithBlank();
  auto* const copy = Find<QAction>(*Window, "GridCopy");
  auto* const remove = Find<QAction>(*Window, "GridDelete");
  EXPECT_FALSE(copy->isEnabled());
  EXPECT_FALSE(remove->isEnabled());
  Measure(1);
  EXPECT_TRUE(copy->isEnabled());
  EXPECT_TRUE(remove->isEnabled());
  EXPECT_EQ(PlainCaption(remove->text()), QStringLiteral("Delete Record"));
  EXPECT_EQ(Grid->actions(), (QList<QAction*>{copy, remove}));
  Boxes.ExpectYesNo(QStringLiteral("Are you sure to remove Record <1>from this file?"), Answer::No);
  remove->trigger();
}

TEST_F(BasicWindow, ColumnWidthsComeBackInTheNextWindow) {
  Open();
  const int width = Grid->columnWidth(2) + 37;
  const int untouched = Grid->columnWidth(1);
  Grid->horizontalHeader()->resizeSection(2, width);
  delete Window.data();
  Open();
  EXPECT_EQ(Grid->columnWidth(2), width);
  EXPECT_EQ(Grid->columnWidth(1), untouched);
  Main.Layout().Reset();
  delete Window.data();
  EXPECT_TRUE(Main.Layout().Bytes(QStringLiteral("FrmBasic/DataGrid")).isEmpty()) << "nothing was changed";
}

TEST_F(BasicWindow, TheNoteTakesTheRestOfTheWidth) {
  Open();
  const int before = Grid->columnWidth(5);
  Window->resize(Window->width() + 200, Window->height());
  QCoreApplication::processEvents();
  EXPECT_EQ(Grid->columnWidth(5), before + 200);
}

TEST_F(BasicWindow, FiguresStandAtTheRightWithTheirHeadings) {
  OpenWithBlank();
  Measure(1);
  for (int column = 0; column < 6; ++column) {
    const int wanted = (column == 5 ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter;
    EXPECT_EQ(Grid->model()->index(0, column).data(Qt::TextAlignmentRole).toInt(), wanted);
    EXPECT_EQ(Grid->model()->headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).toInt(), wanted);
  }
}

TEST_F(BasicWindow, TabLeavesTheGrid) {
  QWidget outside;
  Open();
  QLineEdit next;
  auto* const holder = new QWidget;
  auto* const layout = new QVBoxLayout(holder);
  layout->addWidget(Window);
  layout->addWidget(&next);
  holder->show();
  holder->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(holder));
  Grid->setFocus();
  QTest::keyClick(Grid, Qt::Key_Tab);
  EXPECT_TRUE(next.hasFocus());
  Window->setParent(nullptr);
  next.setParent(nullptr);
  delete holder;
}

TEST_F(BasicWindow, AnEmptyGridSaysWhatComesNext) {
  Open();
  const auto& hint = Find<NoteGrid>(*Window, "DataGrid")->Hint;
  EXPECT_TRUE(hint().contains(QStringLiteral("Connect the instrument"))) << hint().toStdString();
  ConnectNow();
  EXPECT_TRUE(hint().contains(QStringLiteral("Set Blank"))) << hint().toStdString();
  Window->mmuOperationRezero();
  EXPECT_TRUE(hint().contains(QStringLiteral("Start Test"))) << hint().toStdString();
  Window->SetWaveLength(600.0);
  EXPECT_TRUE(hint().contains(QStringLiteral("Set Blank"))) << "the blank was of another wavelength";
  Window->SetWaveLength(546.0);
  const QImage empty = Grid->viewport()->grab().toImage();
  Measure(1);
  Boxes.ExpectYesNo(QStringLiteral("Are you sure to remove Record <1>from this file?"), Answer::Yes);
  Window->mmuDeleteReport();
  EXPECT_EQ(Grid->viewport()->grab().toImage(), empty) << "the hint is back with the empty grid";
}

TEST_F(BasicWindow, EveryControlHasItsNames) {
  OpenWithBlank();
  Measure(1);
  TypeNote(0, "x");
  ExpectNamesEverywhere(*Window);
}

}  // namespace
}  // namespace spectrane::testing_windows
