#include "app/framefixture.h"
#include "app/ground/words.h"
#include "files/filesupport.h"
#include "files/samplefiles.h"

namespace spectrane::testing_windows {
namespace {

/// The main window with windows whose samples come from files.
class FrmMainSamples : public FrameFixture {
 protected:
  void NewMulti() {
    InDialog("FrmMultiConfig", [](QWidget& dialog) { dialog.close(); });
    Choose(kNewMulti);
  }
  QString TipOf(int command) const { return Main->ActionOf(command)->toolTip(); }
};

constexpr const char* kFromFiles = "\nThis window measures nothing: its rows come from files.";

TEST_F(FrmMainSamples, NewDocumentsComeUpWithTheirOptions) {
  Start();
  NewMulti();
  EXPECT_EQ(Main->ActiveForm()->objectName(), QStringLiteral("FrmMulti"));
  EXPECT_EQ(Main->ActiveForm()->Caption(), QStringLiteral("Multi Wavelength 1"));
  InDialog("FrmDNAConfig", [](QWidget& dialog) { dialog.close(); });
  Choose(kNewDNA);
  EXPECT_EQ(Main->ActiveForm()->objectName(), QStringLiteral("FrmDNA"));
  EXPECT_EQ(Main->ActiveForm()->Caption(), QStringLiteral("DNA_Protein 1"));
}

TEST_F(FrmMainSamples, StartAndBlankAreDisabledAndTheirTipsSayWhy) {
  Start();
  ConnectNow();
  NewPhotometry();
  EXPECT_TRUE(IsEnabled(kStartTest));
  EXPECT_EQ(TipOf(kStartTest), QStringLiteral("Start Test (F5)"));
  NewMulti();
  for (const int command : {kStartTest, kSetBlank, kStopTest}) EXPECT_FALSE(IsEnabled(command)) << command;
  EXPECT_EQ(TipOf(kStartTest), QStringLiteral("Start Test (F5)") + QLatin1String(kFromFiles));
  EXPECT_TRUE(TipOf(kSetBlank).endsWith(QLatin1String(kFromFiles)));
  EXPECT_FALSE(TipOf(kSave).contains(u'\n'));
  Choose(kClose);
  QCoreApplication::processEvents();
  EXPECT_TRUE(IsEnabled(kStartTest)) << "the photometry is active again";
  EXPECT_EQ(TipOf(kStartTest), QStringLiteral("Start Test (F5)"));
}

TEST_F(FrmMainSamples, FilesOpenInTheirOwnWindows) {
  ASSERT_TRUE(WriteSamples(MultiModule(), Folder.Path("a.mul"), MultiTable(2), {MultiSample("one", 0.5, 1)}));
  ASSERT_TRUE(WriteSamples(DNAModule(), Folder.Path("a.dna"), DNATable(), {DNASample("one", 0.5, 0.3, 0)}));
  Start(PathOf("a.mul"));
  EXPECT_EQ(Main->ActiveForm()->CheckFileType(), 4);
  EXPECT_EQ(Main->ActiveForm()->Caption(), QStringLiteral("a.mul"));
  Main->OpenLater(PathOf("a.dna"));
  QCoreApplication::processEvents();
  EXPECT_EQ(Main->ActiveForm()->CheckFileType(), 5);
  EXPECT_EQ(Main->ActiveForm()->Caption(), QStringLiteral("a.dna"));
  Main->OpenLater(PathOf("a.mul"));
  Boxes.ExpectWords(u'<' + PathOf("a.mul") + QStringLiteral(">") + Words(1218));
  QCoreApplication::processEvents();
  EXPECT_EQ(Main->ActiveForm()->CheckFileType(), 4) << "opened once, shown again";
  EXPECT_EQ(WindowCount(), 2);
}

TEST_F(FrmMainSamples, AFileWithoutItsOptionsLeavesNoWindow) {
  Start();
  for (const int type : {4, 5}) {
    const QString path = WriteFile("table", QByteArray::fromStdString(HeaderBytes(type)));
    Boxes.ExpectWords(path + QStringLiteral(" Open File Error!"));
    EXPECT_FALSE(Main->OpenDataFile(path)) << type;
    QCoreApplication::processEvents();
    EXPECT_EQ(WindowCount(), 0) << type;
  }
}

}  // namespace
}  // namespace spectrane::testing_windows
