#include "tools/windows/frmbaseline.h"

#include <QTableView>

#include <fstream>
#include <limits>

#include "files/datafile.h"
#include "files/filesupport.h"
#include "output/workbook/workbooksupport.h"
#include "tools/windows/toolfixture.h"
#include "windowsupport/badplaces.h"

namespace spectrane::testing_windows {
namespace {

using testing::HasSubstr;

QString OutputFilters() {
  return Words(921) + u'|' + Words(935);
}

/// A baseline file, written field by field; record i is at 190 + i nm with gain i % 8 + 1 and 1000 + i
/// counts.
std::string BaselineBytes(double start, double end, int records) {
  std::string bytes = HeaderBytes(6) + DoubleBytes(end) + DoubleBytes(start) + DoubleBytes(45000.5) + Long(0);
  for (int i = 0; i < records; ++i) bytes += DoubleBytes(start + i) + Long(i % 8 + 1) + Long(1000 + i);
  return bytes;
}

class MeasuringBaseLine : public FrmBaseLine {
 public:
  using FrmBaseLine::FrmBaseLine;
  using FrmBaseLine::SetTestRunning;
  using FrmBaseLine::TestRunning;
};

class BaseLine : public ToolFixture {
 protected:
  void Ask(std::function<void(QWidget&)> act) { Open<FrmBaseLine>("CloseCmd", std::move(act), Baseline); }
  QString WriteBaseline(const char* name, const std::string& bytes) {
    std::ofstream(Folder.Path(name), std::ios::binary) << bytes;
    return PathOf(name);
  }
  /// Chooses Open in the dialog, and the file in its dialog.
  void Load(QWidget& dialog, const QString& path) {
    if (Baseline.BaselinePresent()) Boxes.ExpectYesNo(Words(1195), Answer::Yes);
    Boxes.ExpectOpenName(Words(920), path);
    Click(dialog, "LoadCmd");
  }
  void Save(QWidget& dialog, const QString& path) {
    Boxes.ExpectSaveName(Words(920), path);
    Click(dialog, "SaveCmd");
  }
  static std::string ContentOf(const QString& path) {
    std::ifstream file(path.toStdString(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  static const QAbstractItemModel& Grid(QWidget& dialog) {
    return *Find<QTableView>(dialog, "BaseLineDataGrid")->model();
  }
  static std::string Row(QWidget& dialog, int row) {
    std::string cells;
    for (int column = 0; column < 4; ++column)
      cells += Grid(dialog).index(row, column).data().toString().toStdString() + "|";
    return cells;
  }

  SystemBaseline Baseline;
};

TEST_F(BaseLine, BeginsEmptyWithItsWordsAndTheRange) {
  Connect();
  Ask([this](QWidget& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Create System Baseline"));
    EXPECT_EQ(Find<QLabel>(dialog, "BaseLineInforLabel")->text(), QStringLiteral("190.0nm-1100.0nm"));
    QStringList titles;
    for (int i = 0; i < 4; ++i)
      titles << Grid(dialog).headerData(i, Qt::Horizontal, Qt::DisplayRole).toString();
    EXPECT_EQ(titles.join(u'|'), QStringLiteral("No|WL.(nm)|Amp|Energy"));
    EXPECT_EQ(Grid(dialog).rowCount(), 0);
    EXPECT_FALSE(IsEnabled(dialog, "StartCmd"));
    EXPECT_FALSE(IsEnabled(dialog, "StopCmd"));
    EXPECT_TRUE(IsEnabled(dialog, "LoadCmd"));
    EXPECT_FALSE(IsEnabled(dialog, "SaveCmd"));
    EXPECT_FALSE(IsEnabled(dialog, "OutputCmd"));
    EXPECT_FALSE(Display.TimerOn);
    ExpectNamesEverywhere(dialog);
    EXPECT_EQ(AccessKeys(dialog).size(), 6);
  });
  EXPECT_TRUE(Display.TimerOn);
  EXPECT_EQ(Commands, std::vector<std::string>());
}

TEST_F(BaseLine, LoadShowsEveryRecordAndKeepsThePath) {
  const QString path = WriteBaseline("own.bsl", BaselineBytes(190, 1100, 911));
  Ask([&](QWidget& dialog) {
    Load(dialog, path);
    ASSERT_EQ(Grid(dialog).rowCount(), 911);
    EXPECT_EQ(Row(dialog, 0), "1|190.0|1|1000|");
    EXPECT_EQ(Row(dialog, 910), "911|1100.0|7|1910|");
    EXPECT_EQ(State(dialog), "own.bsl: 911 records");
    EXPECT_TRUE(IsEnabled(dialog, "SaveCmd"));
    EXPECT_TRUE(IsEnabled(dialog, "OutputCmd"));
  });
  EXPECT_EQ(Boxes.BeganWith.toStdString(), Folder.Path("Baseline.bsl"));
  EXPECT_EQ(Stored("Base Line", "File Path"), path.toStdString());
  EXPECT_TRUE(Baseline.BaselinePresent());
  EXPECT_EQ(Baseline.BaselineFileName(), "own.bsl");
  // It is there again when the dialog comes back, and its path is where the next choice begins.
  Ask([&](QWidget& dialog) {
    EXPECT_EQ(Row(dialog, 910), "911|1100.0|7|1910|");
    Boxes.ExpectYesNo(Words(1195), Answer::Yes);
    Boxes.ExpectOpenName(Words(920), {});
    Click(dialog, "LoadCmd");
    EXPECT_EQ(Boxes.BeganWith, path);
    Boxes.ExpectYesNo(Words(1195), Answer::No);
    Click(dialog, "LoadCmd");
    EXPECT_EQ(Grid(dialog).rowCount(), 911);
  });
}

TEST_F(BaseLine, FilesThatAreNoBaselineChangeNothing) {
  Ask([&](QWidget& dialog) {
    Load(dialog, WriteBaseline("own.bsl", BaselineBytes(190, 1100, 911)));
    const std::pair<const char*, std::string> files[] = {
        {"empty.bsl", ""},
        {"short.bsl", BaselineBytes(190, 1100, 0).substr(0, 131)},
        {"header.bsl", HeaderBytes(6)},
        {"photometry.bsl", BasicFileBytes(3, 3)},
        {"scan.bsl", HeaderBytes(3) + BaselineBytes(190, 1100, 911).substr(104)},
        {"foreign.bsl", std::string(20'000, 'x')},
        {"none.bsl", BaselineBytes(190, 1100, 0)},
        {"backward.bsl", BaselineBytes(1100, 190, 911)},
        {"nan.bsl", BaselineBytes(190, std::numeric_limits<double>::infinity(), 911)},
        {"huge.bsl", BaselineBytes(190, 1e9, 911)},
    };
    for (const auto& [name, bytes] : files) {
      const QString path = WriteBaseline(name, bytes);
      Boxes.ExpectYesNo(Words(1195), Answer::Yes);
      Boxes.ExpectOpenName(Words(920), path);
      Boxes.ExpectWords(Words(1214));
      Click(dialog, "LoadCmd");
      EXPECT_TRUE(Boxes.AllAsked()) << name;
      EXPECT_THAT(Boxes.Details.toStdString(), HasSubstr(name));
      EXPECT_EQ(Row(dialog, 910), "911|1100.0|7|1910|") << name;
      EXPECT_EQ(State(dialog), "own.bsl: 911 records") << name;
    }
    Boxes.ExpectYesNo(Words(1195), Answer::Yes);
    Boxes.ExpectOpenName(Words(920), PathOf("nothing.bsl"));
    Boxes.ExpectWords(Words(1214));
    Click(dialog, "LoadCmd");
  });
  EXPECT_EQ(Baseline.BaselineFileName(), "own.bsl");
}

TEST_F(BaseLine, AFileThatEndsInARecordIsTakenUpToItsLastWholeOne) {
  const std::string whole = BaselineBytes(190, 1100, 911);
  const QString path = WriteBaseline("cut.bsl", whole.substr(0, 132 + 16 * 500 + 15));
  Ask([&](QWidget& dialog) {
    Boxes.ExpectOpenName(Words(920), path);
    Boxes.ExpectWords(Words(1214));
    Click(dialog, "LoadCmd");
    EXPECT_EQ(Row(dialog, 499), "500|689.0|4|1499|");
    EXPECT_EQ(Row(dialog, 500), "||||");
    EXPECT_EQ(State(dialog), "cut.bsl: 500 records");
    // The rest of the file must not be lost to what is here.
    Boxes.ExpectSaveName(Words(920), path);
    Boxes.ExpectYesNo(path + QStringLiteral(" is exist, are you want to overwrite this file?"), Answer::Yes);
    Boxes.ExpectWords(Words(1213));
    Click(dialog, "SaveCmd");
  });
  EXPECT_EQ(ContentOf(path), whole.substr(0, 132 + 16 * 500 + 15));
}

TEST_F(BaseLine, OfMoreRecordsThanHaveAPlaceTheFirstAreTaken) {
  Ask([&](QWidget& dialog) {
    Load(dialog, WriteBaseline("wide.bsl", BaselineBytes(190, 1300, 1111)));
    EXPECT_EQ(Baseline.Count(), 912);
    EXPECT_EQ(Baseline.BaselineWavelength(911), 1101.0);
    EXPECT_EQ(Grid(dialog).rowCount(), 911) << "the instrument's range";
    EXPECT_EQ(State(dialog), "wide.bsl: 912 records, 199 more have no place");
  });
}

TEST_F(BaseLine, AFileOfANarrowerInstrumentLeavesRowsBlank) {
  Ask([&](QWidget& dialog) {
    Load(dialog, WriteBaseline("own.bsl", BaselineBytes(190, 1100, 911)));
    Load(dialog, WriteBaseline("narrow.bsl", BaselineBytes(325, 1000, 676)));
    EXPECT_EQ(Grid(dialog).rowCount(), 911);
    EXPECT_EQ(Row(dialog, 675), "676|1000.0|4|1675|");
    EXPECT_EQ(Row(dialog, 676), "||||") << "nothing is left of the baseline before";
    EXPECT_EQ(State(dialog), "narrow.bsl: 676 records");
  });
  EXPECT_EQ(Baseline.BaselineEnergy(676), 0);
}

TEST_F(BaseLine, SaveWritesTheFileAndItsMoment) {
  const std::string bytes = BaselineBytes(190, 1100, 911);
  const QString path = WriteBaseline("own.bsl", bytes);
  Ask([&](QWidget& dialog) {
    Load(dialog, path);
    Save(dialog, PathOf("copy"));
    EXPECT_EQ(State(dialog), "Saved: 911 records.");
  });
  const std::string saved = ContentOf(PathOf("copy.bsl"));
  ASSERT_EQ(saved.size(), 132u + 16 * 911);
  EXPECT_EQ(saved.substr(0, 4), Long(6));
  EXPECT_EQ(saved.substr(104, 16), DoubleBytes(1100) + DoubleBytes(190));
  EXPECT_NE(saved.substr(120, 8), DoubleBytes(45000.5));
  EXPECT_EQ(saved.substr(132), bytes.substr(132));
  EXPECT_EQ(Stored("Base Line", "File Path"), Folder.Path("copy.bsl"));
}

TEST_F(BaseLine, ANarrowerInstrumentStoresFewerRecords) {
  SimulatedLine other(NarrowInstrument());
  Ports.Put(1, other);
  ConnectNow();
  const std::string bytes = BaselineBytes(190, 1100, 911);
  Ask([&](QWidget& dialog) {
    EXPECT_EQ(Find<QLabel>(dialog, "BaseLineInforLabel")->text(), QStringLiteral("325.0nm-1000.0nm"));
    Load(dialog, WriteBaseline("own.bsl", bytes));
    EXPECT_EQ(Grid(dialog).rowCount(), 676);
    Save(dialog, PathOf("copy.bsl"));
  });
  const std::string saved = ContentOf(PathOf("copy.bsl"));
  ASSERT_EQ(saved.size(), 132u + 16 * 676);
  EXPECT_EQ(saved.substr(104, 16), DoubleBytes(1000) + DoubleBytes(325));
  EXPECT_EQ(saved.substr(132), bytes.substr(132, 16 * 676));
}

TEST_F(BaseLine, RecordsThatAreNotThereAreSavedAsZeros) {
  Ask([&](QWidget& dialog) {
    Load(dialog, WriteBaseline("narrow.bsl", BaselineBytes(325, 1000, 676)));
    Save(dialog, PathOf("copy.bsl"));
    EXPECT_EQ(State(dialog), "Saved: 911 records, the last 235 without figures.");
  });
  const std::string saved = ContentOf(PathOf("copy.bsl"));
  ASSERT_EQ(saved.size(), 132u + 16 * 911);
  EXPECT_EQ(saved.substr(132 + 16 * 676), std::string(16 * 235, '\0'));
}

TEST_F(BaseLine, AnExistingFileGoesOnlyOnAYes) {
  const QString path = WriteBaseline("own.bsl", BaselineBytes(190, 1100, 911));
  const QString old = WriteBaseline("old.bsl", "something older");
  const QString question = old + QStringLiteral(" is exist, are you want to overwrite this file?");
  Ask([&](QWidget& dialog) {
    Load(dialog, path);
    Boxes.ExpectSaveName(Words(920), old);
    Boxes.ExpectYesNo(question, Answer::No);
    Click(dialog, "SaveCmd");
    EXPECT_EQ(ContentOf(old), "something older");
    Boxes.ExpectSaveName(Words(920), old);
    Boxes.ExpectYesNo(question, Answer::Yes);
    Click(dialog, "SaveCmd");
    Boxes.ExpectSaveName(Words(920), {});
    Click(dialog, "SaveCmd");
  });
  EXPECT_EQ(ContentOf(old).size(), 132u + 16 * 911);
}

TEST_F(BaseLine, APlaceThatCannotBeWrittenKeepsTheOldFile) {
  const QString path = WriteBaseline("own.bsl", BaselineBytes(190, 1100, 911));
  std::filesystem::create_directory(Folder.Path("folder.bsl"));
  Ask([&](QWidget& dialog) {
    Load(dialog, path);
    for (const char* name : {"missing/own.bsl", "folder.bsl"}) {
      Boxes.ExpectSaveName(Words(920), PathOf(name));
      if (QString::fromLatin1(name).startsWith(QLatin1String("folder"))) {
        Boxes.ExpectYesNo(PathOf(name) + QStringLiteral(" is exist, are you want to overwrite this file?"),
                          Answer::Yes);
      }
      Boxes.ExpectWords(Words(1213));
      Click(dialog, "SaveCmd");
      EXPECT_TRUE(Boxes.AllAsked()) << name;
      EXPECT_THAT(Boxes.Details.toStdString(), HasSubstr(name));
    }
    EXPECT_TRUE(IsEnabled(dialog, "SaveCmd"));
  });
  EXPECT_TRUE(std::filesystem::is_directory(Folder.Path("folder.bsl")));
  EXPECT_EQ(Stored("Base Line", "File Path"), path.toStdString());
}

#ifndef _WIN32
TEST_F(BaseLine, AReadOnlyFolderKeepsItsFileAndGetsNoOther) {
  std::filesystem::create_directory(Folder.Path("locked"));
  const QString old = WriteBaseline("locked/old.bsl", "something older");
  std::filesystem::permissions(Folder.Path("locked"), std::filesystem::perms{0555});
  Ask([&](QWidget& dialog) {
    Load(dialog, WriteBaseline("own.bsl", BaselineBytes(190, 1100, 911)));
    const NoPrivileges nobody;
    Boxes.ExpectSaveName(Words(920), old);
    Boxes.ExpectYesNo(old + QStringLiteral(" is exist, are you want to overwrite this file?"), Answer::Yes);
    Boxes.ExpectWords(Words(1213));
    Click(dialog, "SaveCmd");
    Boxes.ExpectSaveName(OutputFilters(), PathOf("locked/table.txt"));
    Boxes.ExpectWords(Words(1213));
    Click(dialog, "OutputCmd");
  });
  EXPECT_EQ(ContentOf(old), "something older");
  const std::filesystem::directory_iterator files(Folder.Path("locked"));
  EXPECT_EQ(std::distance(begin(files), end(files)), 1);
  std::filesystem::permissions(Folder.Path("locked"), std::filesystem::perms{0755});
}
#endif

TEST_F(BaseLine, OutputWritesATableOfText) {
  Ask([&](QWidget& dialog) {
    Load(dialog, WriteBaseline("narrow.bsl", BaselineBytes(1098, 1100, 3)));
    Boxes.ExpectSaveName(OutputFilters(), PathOf("table"));
    Click(dialog, "OutputCmd");
    EXPECT_EQ(State(dialog), "Written: table.txt");
    const QString question =
        PathOf("table.txt") + QStringLiteral(" is exist, are you want to overwrite this file?");
    Boxes.ExpectSaveName(OutputFilters(), PathOf("table.txt"));
    Boxes.ExpectYesNo(question, Answer::No);
    Click(dialog, "OutputCmd");
    Boxes.ExpectSaveName(OutputFilters(), PathOf("missing/table.txt"));
    Boxes.ExpectWords(Words(1213));
    Click(dialog, "OutputCmd");
    Boxes.ExpectSaveName(OutputFilters(), {});
    Click(dialog, "OutputCmd");
  });
  EXPECT_EQ(ContentOf(PathOf("table.txt")),
            "No\tWL.(nm)\tAmp\tEnergy\n1\t1098.0\t1\t1000\n2\t1099.0\t2\t1001\n3\t1100.0\t3\t1002\n");
}

TEST_F(BaseLine, OutputWritesASpreadsheetOfNumbers) {
  Ask([&](QWidget& dialog) {
    Load(dialog, WriteBaseline("narrow.bsl", BaselineBytes(1098, 1100, 3)));
    Boxes.ExpectSaveName(OutputFilters(), PathOf("table.xls"));
    Click(dialog, "OutputCmd");
    EXPECT_EQ(State(dialog), "Written: table.xls");
    Boxes.ExpectSaveName(OutputFilters(), PathOf("missing/table.xls"));
    Boxes.ExpectWords(Words(1213));
    Click(dialog, "OutputCmd");
  });
  const std::string listing = testing_workbook::WorkbookListing(PathOf("table.xls").toStdString());
  EXPECT_THAT(listing, HasSubstr("sheet sheet1 4 4\n"));
  EXPECT_THAT(listing, HasSubstr("cell 0 0 text 'No' @ Verdana"));
  EXPECT_THAT(listing, HasSubstr("cell 0 3 text 'Energy' @ Verdana"));
  EXPECT_THAT(listing, HasSubstr("cell 1 0 number 1.0 0 Verdana"));
  EXPECT_THAT(listing, HasSubstr("cell 1 1 number 1098.0 0.0 Verdana"));
  EXPECT_THAT(listing, HasSubstr("cell 2 2 number 2.0 0 Verdana"));
  EXPECT_THAT(listing, HasSubstr("cell 2 3 number 1001.0 0 Verdana"));
}

TEST_F(BaseLine, TheProgramsOwnSettingsAreNeverWrittenOver) {
  std::filesystem::create_symlink(Folder.Path("config.ini"), Folder.Path("link.txt"));
  const std::string before = ContentOf(PathOf("config.ini"));
  ASSERT_NE(before, "");
  Ask([&](QWidget& dialog) {
    const QString path = WriteBaseline("own.bsl", BaselineBytes(190, 1100, 911));
    Boxes.ExpectOpenName(Words(920), path);
    Click(dialog, "LoadCmd");
    Boxes.ExpectSaveName(OutputFilters(), PathOf("link.txt"));
    Boxes.ExpectWords(Words(1213));
    Click(dialog, "OutputCmd");
  });
  EXPECT_THAT(ContentOf(PathOf("config.ini")), HasSubstr("[Base Line]"));
}

TEST_F(BaseLine, AMeasuringRunIsStoppedByItsButtonAndKeepsTheDialog) {
  Open<MeasuringBaseLine>(
      "CloseCmd",
      [this](QWidget& widget) {
        auto& dialog = dynamic_cast<MeasuringBaseLine&>(widget);
        dialog.SetTestRunning(true);
        EXPECT_FALSE(IsEnabled(dialog, "LoadCmd"));
        EXPECT_FALSE(dialog.close());
        Press(dialog, Qt::Key_Escape);
        Click(dialog, "CloseCmd");
        EXPECT_TRUE(dialog.isVisible());
        Boxes.ExpectYesNo(Words(1211), Answer::No);
        Click(dialog, "StopCmd");
        EXPECT_TRUE(dialog.TestRunning());
        Boxes.ExpectYesNo(Words(1211), Answer::Yes);
        Click(dialog, "StopCmd");
        EXPECT_FALSE(dialog.TestRunning());
        EXPECT_TRUE(IsEnabled(dialog, "LoadCmd"));
      },
      Baseline);
}

}  // namespace
}  // namespace spectrane::testing_windows
