// What windows save and export while calls of the system fail below them: the file, and what is shown of it.

#include <QAbstractButton>
#include <QLineEdit>
#include <QTableView>

#include "app/documentkinds.h"
#include "faults/write/faultcells.h"
#include "faults/write/wholefiles.h"
#include "faults/write/willing.h"
#include "modes/windows/frmbasic.h"
#include "spectrum/windows/frmwlsver2.h"
#include "tools/windows/frmbaseline.h"
#include "windowsupport/windowfixture.h"

namespace spectrane::testing_faults {
namespace {

using namespace testing_windows;

/// A document window of each kind with an example in it, and work that its file does not have.
class WindowFaults : public WindowFixture {
 protected:
  ~WindowFaults() override { delete Window.data(); }

  /// A folder that has nothing but the files that are written.
  std::string Target(const std::string& name) {
    std::filesystem::create_directories(Folder.Path("target"));
    return Folder.Path("target/" + name);
  }
  SavedFile InTarget(const std::string& name, const std::string& old) {
    const std::string path = Target(name);
    return {Folder.Path("target"), path, old, {}, {}, true};
  }
  static std::string Example(const char* name) {
    return ReadBytes(std::string(SPECTRANE_SOURCE "/examples/") + name);
  }

  void Open(std::int32_t headerType, const std::string& path) {
    delete Window.data();
    Person.Told.clear();
    Window = KindOfHeader(headerType)->Make(Desk);
    Desk.Active = Window;
    ASSERT_TRUE(Window->mmuOpenFile(QString::fromStdString(path)));
  }
  /// The first row of the largest table goes.
  void RemoveRow() {
    QTableView* largest = nullptr;
    for (QTableView* grid : Window->findChildren<QTableView*>()) {
      if (largest == nullptr || grid->objectName().contains(QStringLiteral("Record"))) largest = grid;
    }
    ASSERT_NE(largest, nullptr);
    largest->selectRow(0);
    Window->mmuDeleteReport();
  }
  void MoveScale() {
    InDialog("FrmWLSConfig", [](QWidget& dialog) {
      auto* const field = Find<QLineEdit>(dialog, "ScaleTopText");
      field->setFocus();
      field->setText(QStringLiteral("2.5"));
      QTest::mouseClick(Find<QAbstractButton>(dialog, "OKCmd"), Qt::LeftButton);
    });
    Window->ShowConfigWindow();
  }
  void AddPoint() {
    auto* const window = qobject_cast<FrmWLSVer2*>(Window.data());
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->SetWLSRecord(0, 660, 50, 0.25));
    EXPECT_TRUE(window->SetWLSRecordNo(window->GetRecordNo()));
    window->ShowPicture();
  }
  void MeasureTime() {
    if (!Link.State.InstrumentConnected) {
      ConnectNow();
      Insert("blank");
    }
    Window->mmuOperationRezero();
    Window->mmuStartTest();
  }

  QPointer<DocumentWindow> Window;
  Willing Person;
  FakeMainWindow Desk{Link, Settings, Display, Person, QString::fromStdString(Folder.Path())};
};

struct WindowRow {
  const char* Name;
  std::int32_t HeaderType;
  const char* Example;
  void (WindowFaults::*Change)();
};

class SaveFaults : public WindowFaults, public testing::WithParamInterface<WindowRow> {
 public:
  static std::vector<WindowRow> Rows() {
    return {{"bas", 11, "photometry.bas", &SaveFaults::RemoveRow},
            {"qua", 1, "dye.qua", &SaveFaults::RemoveRow},
            {"tis", 2, "enzyme.tis", &SaveFaults::MeasureTime},
            {"wls", 3, "holmium.wls", &SaveFaults::MoveScale},
            {"mul", 4, "multi.mul", &SaveFaults::RemoveRow},
            {"dna", 5, "nucleic.dna", &SaveFaults::RemoveRow},
            {"wls2", 12, "holmium-processed.wls", &SaveFaults::AddPoint}};
  }
};

TEST_P(SaveFaults, D10_D11_TheFileIsOldOrNewAndTheWindowTellsWhich) {
  const WindowRow& row = GetParam();
  const SavedFile file = InTarget(row.Example, Example(row.Example));
  Person.Named = QString::fromStdString(file.Path);
  TryAll(
      row.Name, file,
      [&] {
        Open(row.HeaderType, file.Path);
        (this->*row.Change)();
        ASSERT_TRUE(Window->IsWorkUnsaved());
        ASSERT_TRUE(Window->isWindowModified());
        Person.Told.clear();
      },
      [&] { return Window->mmuSaveFile(); },
      [&](bool saved) {
        EXPECT_EQ(Window->IsWorkUnsaved(), !saved);
        EXPECT_EQ(Window->isWindowModified(), !saved);
        EXPECT_EQ(Person.Told, saved ? std::vector<QString>{} : std::vector<QString>{Words(1213)});
        if (saved) return;
        // The fault is over: the same document is saved as if nothing had been.
        Person.Told.clear();
        EXPECT_TRUE(Window->mmuSaveFile());
        EXPECT_NE(ReadBytes(file.Path), file.Old);
        EXPECT_FALSE(Window->isWindowModified());
        EXPECT_TRUE(Person.Told.empty());
      },
      Thorough());
}

void SetTimeOf(const std::string& path, std::filesystem::file_time_type time) {
  std::filesystem::last_write_time(path, time);
}

// Changed, cut short, replaced by a file with the old time, the same size or both: Save asks, and No keeps
// what somebody else has made.
TEST_P(SaveFaults, D09_WhatSomebodyElseHasMadeOfTheFileGoesOnlyOnAYes) {
  const WindowRow& row = GetParam();
  const SavedFile file = InTarget(row.Example, Example(row.Example));
  const std::string longer = file.Old + "more";
  const std::string shorter = file.Old.substr(0, 50);
  const std::string other(file.Old.size(), 'o');
  for (const std::string& theirs : {longer, shorter, std::string(), other}) {
    for (const bool sameTime : {false, true}) {
      SCOPED_TRACE(std::to_string(theirs.size()) + (sameTime ? " bytes, same time" : " bytes"));
      file.PutOld();
      const auto time = std::filesystem::last_write_time(file.Path);
      Open(row.HeaderType, file.Path);
      (this->*row.Change)();
      std::filesystem::remove(file.Path);
      WriteBytes(file.Path, theirs);
      SetTimeOf(file.Path, sameTime ? time : time + std::chrono::seconds(1));
      Person.Asked = 0;
      Person.Usual = Answer::No;
      EXPECT_FALSE(Window->mmuSaveFile());
      EXPECT_EQ(Person.Asked, 1);
      EXPECT_EQ(ReadBytes(file.Path), theirs);
      EXPECT_TRUE(Window->isWindowModified());
      Person.Usual = Answer::Yes;
      EXPECT_TRUE(Window->mmuSaveFile());
      EXPECT_EQ(Person.Asked, 2);
      EXPECT_NE(ReadBytes(file.Path), theirs);
      EXPECT_FALSE(Window->isWindowModified());
      EXPECT_TRUE(Window->mmuSaveFile());
      EXPECT_EQ(Person.Asked, 2) << "its own save is no reason to ask";
    }
  }
  // Nothing that stands there would be lost.
  std::filesystem::remove(file.Path);
  EXPECT_TRUE(Window->mmuSaveFile());
  EXPECT_EQ(Person.Asked, 2);
  EXPECT_TRUE(std::filesystem::exists(file.Path));
}

INSTANTIATE_TEST_SUITE_P(Kinds, SaveFaults, testing::ValuesIn(SaveFaults::Rows()), NameOfRow<WindowRow>);

TEST_F(WindowFaults, D10_D11_TheBaselineIsOldOrNewAndTheDialogTellsWhich) {
  ConnectNow();
  const SavedFile file = InTarget("baseline.bsl", "another baseline");
  Person.Named = QString::fromStdString(file.Path);
  SystemBaseline baseline;
  FileFault fault;
  ASSERT_TRUE(baseline.Load(SPECTRANE_SOURCE "/examples/baseline.bsl", fault));
  FrmBaseLine dialog(Desk, baseline);
  TryAll(
      "bsl", file, [&] { Person.Told.clear(); },
      [&] {
        QTest::mouseClick(Find<QAbstractButton>(dialog, "SaveCmd"), Qt::LeftButton);
        return Person.Told.empty();
      });
}

/// A table whose file somebody writes anew while it is being read.
class ChangedMeanwhile : public FrmBasic {
 public:
  using FrmBasic::FrmBasic;
  bool ReadDocument(const QString& path, QString& fault) override {
    const bool whole = FrmBasic::ReadDocument(path, fault);
    WriteBytes(path.toStdString(), "theirs");
    return whole;
  }
};

TEST_F(WindowFaults, D09_AChangeDuringTheReadingIsAskedFor) {
  const SavedFile file = InTarget("a.bas", Example("photometry.bas"));
  file.PutOld();
  Window = new ChangedMeanwhile(Desk);
  Desk.Active = Window;
  ASSERT_TRUE(Window->mmuOpenFile(QString::fromStdString(file.Path)));
  RemoveRow();
  Person.Asked = 0;
  Person.Usual = Answer::No;
  EXPECT_FALSE(Window->mmuSaveFile());
  EXPECT_EQ(Person.Asked, 1);
  EXPECT_EQ(ReadBytes(file.Path), "theirs");
}

struct ExportRow {
  const char* Name;
  std::int32_t HeaderType;
  const char* Example;
  void (DocumentWindow::*Export)();
};

class ExportFaults : public WindowFaults, public testing::WithParamInterface<ExportRow> {};

TEST_P(ExportFaults, E01_E02_TheOldExportStaysOrTheNewIsWhole) {
  const ExportRow& row = GetParam();
  const std::string source = Folder.Path(row.Example);
  WriteBytes(source, Example(row.Example));
  const std::string name = row.Name;
  const std::string ending = name.substr(name.find('_') + 1);
  SavedFile file = InTarget("export." + ending, "an export of yesterday");
  Person.Named = QString::fromStdString(file.Path);
  Open(row.HeaderType, source);
  const auto save = [&] {
    Display.Remark.clear();
    (Window->*row.Export)();
    EXPECT_EQ(Person.Told.empty(), Display.Remark.find(file.Path) != std::string::npos) << Display.Remark;
    return Person.Told.empty();
  };
  if (ending == "pdf") {
    file.IsNew = IsWholePdf;
  } else {
    file.PutOld();
    ASSERT_TRUE(save());
    const QByteArray whole = WithoutTimes(ReadBytes(file.Path));
    file.IsNew = [whole](const std::string& bytes) { return WithoutTimes(bytes) == whole; };
  }
  TryAll(
      row.Name, file, [&] { Person.Told.clear(); }, save,
      [&](bool saved) {
        EXPECT_EQ(Person.Told, saved ? std::vector<QString>{} : std::vector<QString>{Words(1213)});
        EXPECT_FALSE(Window->IsWorkUnsaved());
      });
  EXPECT_EQ(ReadBytes(source), Example(row.Example));
}

INSTANTIATE_TEST_SUITE_P(
    Exports, ExportFaults,
    testing::Values(ExportRow{"photometry_txt", 11, "photometry.bas", &DocumentWindow::mmuFileOutputTXT},
                    ExportRow{"photometry_xls", 11, "photometry.bas", &DocumentWindow::mmuFileOutputXLS},
                    ExportRow{"photometry_pdf", 11, "photometry.bas", &DocumentWindow::PrintReport},
                    ExportRow{"spectrum_txt", 3, "holmium.wls", &DocumentWindow::mmuFileOutputTXT},
                    ExportRow{"spectrum_xls", 3, "holmium.wls", &DocumentWindow::mmuFileOutputXLS},
                    ExportRow{"spectrum_bmp", 3, "holmium.wls", &DocumentWindow::mmuFileOutputBMP},
                    ExportRow{"spectrum_pdf", 3, "holmium.wls", &DocumentWindow::PrintReport}),
    NameOfRow<ExportRow>);

}  // namespace
}  // namespace spectrane::testing_faults
