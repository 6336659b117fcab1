#include <QMdiSubWindow>

#include "app/framefixture.h"
#include "app/ground/commandicon.h"
#include "app/ground/words.h"
#include "spectrum/spectrumsupport.h"
#include "spectrum/windows/frmcaculate.h"
#include "spectrum/windows/frmdev.h"
#include "spectrum/windows/frmsmooth.h"
#include "spectrum/windows/frmwls.h"
#include "spectrum/windows/frmwlscompare.h"
#include "spectrum/windows/frmwlsver2.h"

namespace spectrane::testing_windows {
namespace {

class FrmMainSpectra : public FrameFixture {
 protected:
  void CloseOptions(const char* name, Qt::Key key = Qt::Key_Escape) {
    InDialog(name, [key](QWidget& dialog) { QTest::keyClick(&dialog, key); });
  }
  /// The active child, which must be of that kind.
  template <typename T>
  T& Child() {
    return dynamic_cast<T&>(*Main->ActiveForm());
  }
  void OpenMeasured() {
    SaveSpectrum(WLSModule(), Folder.Path("a.wls"), OtherOption(), MeasuredPoints({100, 50, 10, 50, 100}));
    ASSERT_TRUE(Main->OpenDataFile(PathOf("a.wls")));
  }
};

TEST_F(FrmMainSpectra, FiveCommandsOpenAnEmptyWindowWithItsOptions) {
  Start();
  CloseOptions("FrmWLSCompareConfig");
  Choose(kSpectrumCompare);
  EXPECT_EQ(Child<FrmWLSCompare>().Caption(), QStringLiteral("Spectrum Compare"));
  int operation = 1;
  for (const int command : {kSpectrumAdd, kSpectrumSubtraction, kSpectrumMultiplication, kSpectrumDivision}) {
    CloseOptions("FrmCaculateConfig");
    Choose(command);
    EXPECT_EQ(static_cast<int>(Child<FrmCaculate>().Operation()), operation++);
    const auto* const frame = dynamic_cast<QMdiSubWindow*>(Main->ActiveForm()->parentWidget());
    EXPECT_EQ(frame->windowIcon().pixmap(32).toImage(), CommandIcon(command).pixmap(32).toImage());
  }
  EXPECT_EQ(WindowCount(), 5);
}

TEST_F(FrmMainSpectra, SmoothingTakesTheActiveSpectrumAndShowsItsOptions) {
  Start();
  EXPECT_FALSE(IsEnabled(kSpectrumSmooth));
  OpenMeasured();
  CloseOptions("FrmSmoothConfig", Qt::Key_Return);
  Choose(kSpectrumSmooth);
  EXPECT_EQ(Child<FrmSmooth>().Caption(), QStringLiteral("Spectrum Smooth-a.wls"));
  EXPECT_EQ(Child<FrmSmooth>().GetRecordNo(), 5);
  Choose(kSpectrumDerivative);
  EXPECT_EQ(Child<FrmDev>().Caption(), QStringLiteral("Spectrum Derivative-Spectrum Smooth-a.wls"));
  EXPECT_TRUE(IsEnabled(kSpectrumDerivative));
  EXPECT_FALSE(IsEnabled(kPrint));
  // Windows of results are in nobody's way at the end.
  EXPECT_EQ(WindowCount(), 3);
  EXPECT_TRUE(Main->mmuFileCloseAll());
}

// While another window measured, the commands of a window in the middle of its own export were offered.
TEST_F(FrmMainSpectra, AWindowThatExportsBesideARunHasItsCommandsGrey) {
  Start();
  ConnectNow();
  DocumentWindow* const measures = NewPhotometry();
  OpenMeasured();
  Choose(kSpectrumDerivative);
  DocumentWindow* const exports = Main->ActiveForm();
  auto* const workspace = Main->findChild<Workspace*>();
  workspace->Activate(measures);
  Choose(kSetBlank);
  bool exported = false;
  Loop.OnYield = [&] {
    if (!measures->RunsNow() || std::exchange(exported, true)) return;
    workspace->Activate(exports);
    EXPECT_TRUE(IsEnabled(kTestOption));
    Boxes.ExpectSaveName(Words(921), PathOf("no/such/folder.txt"));
    Boxes.ExpectWords(Words(1213), [&] {
      EXPECT_TRUE(exports->RunsNow());
      EXPECT_FALSE(IsEnabled(kTestOption));
      EXPECT_FALSE(IsEnabled(kSpectrumDerivative));
      EXPECT_TRUE(IsEnabled(kZoomIn));
      workspace->Activate(measures);
      EXPECT_FALSE(IsEnabled(kTestOption));
      workspace->Activate(exports);
    });
    Choose(kOutputText);
    EXPECT_TRUE(IsEnabled(kTestOption)) << "as soon as its own export is over";
  };
  Choose(kStartTest);
  Loop.OnYield = nullptr;
  Main->SampleTimer().stop();
  EXPECT_TRUE(exported);
  EXPECT_TRUE(Boxes.AllAsked());
  for (DocumentWindow* document : Main->findChildren<DocumentWindow*>()) document->AllowClose();
}

TEST_F(FrmMainSpectra, ASpectrumWithoutPointsIsNotProcessed) {
  Start();
  InDialog("FrmWLSConfig", [](QWidget& dialog) { dialog.close(); });
  Choose(kNewWLS);
  EXPECT_FALSE(IsEnabled(kSpectrumSmooth));
  EXPECT_FALSE(IsEnabled(kSpectrumDerivative));
}

TEST_F(FrmMainSpectra, WhatWasSavedOpensInItsWindowAndGoesOn) {
  Start();
  OpenMeasured();
  Choose(kSpectrumDerivative);
  Boxes.ExpectSaveName(Words(928), PathOf("first.wls"));
  Choose(kSave);
  // The same file in two windows: the one that made it does not stand for it.
  ASSERT_TRUE(Main->OpenDataFile(PathOf("first.wls")));
  EXPECT_EQ(Child<FrmWLSVer2>().GetRecordNo(), 5);
  Choose(kSpectrumDerivative);
  EXPECT_EQ(Child<FrmDev>().Caption(), QStringLiteral("Spectrum Derivative-first.wls"));
}

TEST_F(FrmMainSpectra, TheStatusBarSaysWhyThereIsNoResult) {
  Start();
  SaveSpectrum(WLSModule(), Folder.Path("b.wls"), OtherOption(), MeasuredPoints({100, 50, 10}));
  ASSERT_TRUE(Main->OpenDataFile(PathOf("b.wls")));
  CloseOptions("FrmSmoothConfig");
  Choose(kSpectrumSmooth);
  EXPECT_EQ(Remark(), "No result: too few points.");
}

}  // namespace
}  // namespace spectrane::testing_windows
