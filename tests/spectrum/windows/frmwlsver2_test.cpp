#include "spectrum/windows/frmwlsver2.h"

#include "app/ground/commands.h"
#include "spectrum/windows/scanfixture.h"

namespace spectrane::testing_windows {
namespace {

class ProcessedWindow : public WindowFixture {
 protected:
  void Open() {
    Window = std::make_unique<FrmWLSVer2>(Main);
    Present(*Window);
    Curve = Find<PicCurve>(*Window, "PicCurve");
  }
  std::unique_ptr<FrmWLSVer2> Window;
  PicCurve* Curve = nullptr;
};

TEST_F(ProcessedWindow, ShowsAProcessedFile) {
  Open();
  EXPECT_EQ(Window->CheckFileType(), 12);
  SaveSpectrum(WLS2Module(), Folder.Path("b.wls"), OtherOption(),
               std::vector<WLS2Record>{{500, 12.5, 0.9}, {501, 13, 0.8}});
  ASSERT_TRUE(Window->mmuOpenFile(PathOf("b.wls")));
  const QAbstractItemModel& records = *Window->DataTable()->Grid(0)->model();
  EXPECT_EQ(records.columnCount(), 4);
  EXPECT_EQ(RowText(records, 1), QStringLiteral("2|501.0|0.800|13.0"));
  EXPECT_EQ(Curve->View().Scale, (CurveScale{{490.5, 520}, {10, 120}}));
  SaveSpectrum(WLSModule(), Folder.Path("a.wls"), OtherOption(), MeasuredPoints({100}));
  Boxes.ExpectWords(PathOf("a.wls") + QStringLiteral(" Open File Error!"));
  EXPECT_FALSE(Window->mmuOpenFile(PathOf("a.wls"))) << "a measured spectrum is another kind";
  EXPECT_EQ(Window->GetRecordNo(), 2);
}

TEST_F(ProcessedWindow, IsFilledPointByPointAndSaved) {
  Open();
  for (std::int32_t i = 0; i < 3; ++i) EXPECT_TRUE(Window->SetWLSRecord(i, 500.0 + i, 10.0 * i, 0.1 * i));
  EXPECT_TRUE(Window->SetWLSRecordNo(3));
  EXPECT_FALSE(Window->SetWLSRecord(10001, 1, 1, 1));
  EXPECT_FALSE(Window->SetWLSRecordNo(10002));
  Window->SetDisplayMode(2);
  Window->ShowPicture();
  EXPECT_TRUE(Window->isWindowModified());
  EXPECT_EQ(Window->DataTable()->Grid(0)->model()->rowCount(), 3);
  EXPECT_EQ(Curve->View().Y.Kind, AxisKind::Trans);
  Boxes.ExpectSaveName(Words(928), PathOf("c"));
  ASSERT_TRUE(Window->mmuSaveFile());
  WLSOption option;
  std::vector<WLS2Record> points;
  ASSERT_FALSE(LoadDataFile(WLS2Module(), Folder.Path("c.wls"), option, points));
  EXPECT_EQ(points, (std::vector<WLS2Record>{{500, 0, 0}, {501, 10, 0.1}, {502, 20, 0.2}}));
  EXPECT_EQ(option.DisplayMode, 2);
}

TEST_F(ProcessedWindow, ListsTheBandsOfAFallingSpectrumByRisingWavelength) {
  Open();
  const double abs[] = {0, 1, 0, 2, 0, 1, 0};
  for (std::int32_t i = 0; i < 7; ++i) EXPECT_TRUE(Window->SetWLSRecord(i, 706.0 - i, 50, abs[i]));
  EXPECT_TRUE(Window->SetWLSRecordNo(7));
  Window->FindPeak();
  const QAbstractItemModel& peaks = *Window->DataTable()->Grid(1)->model();
  ASSERT_EQ(peaks.rowCount(), 5);
  EXPECT_EQ(RowText(peaks, 0), QStringLiteral("1|701.0|1.000|50.0"));
  EXPECT_EQ(RowText(peaks, 1), QStringLiteral("2|703.0|2.000|50.0"));
  EXPECT_EQ(RowText(peaks, 2), QStringLiteral("3|705.0|1.000|50.0"));
  EXPECT_EQ(RowText(peaks, 3), QStringLiteral("4|702.0|0.000|50.0")) << "valleys too";
  EXPECT_EQ(Curve->View().Marks[0].X, 701);
  EXPECT_EQ(Curve->View().Marks[0].Text, QStringLiteral("1"));
}

TEST_F(ProcessedWindow, SearchesMoreCoarselyAndStoresNoPeakValue) {
  Settings.PutSetting(kScanSection, "Peak Height", "0.5");
  Open();
  EXPECT_EQ(Window->Settings().PeakHeight, 0.01);
  InDialog("FrmPeakHeight", [](QWidget& dialog) {
    TypeInto(dialog, "PeakHeightText", "0.2");
    QTest::keyClick(&dialog, Qt::Key_Return);
  });
  Window->mmuSetPeakHeight();
  EXPECT_EQ(Window->Settings().PeakHeight, 0.2);
  EXPECT_EQ(Settings.GetSetting(kScanSection, "Peak Height"), "0.5");
  EXPECT_FALSE(Window->Offers(kTestOption)) << "it has no options of its own";
}

}  // namespace
}  // namespace spectrane::testing_windows
