#include "views/everyview.h"

#include <QAbstractButton>
#include <QAction>
#include <QLineEdit>
#include <QTableView>
#include <QTabWidget>

#include "app/ground/documentwindow.h"
#include "app/messageboxes.h"
#include "tools/windows/frmwait.h"

namespace spectrane::testing_windows {

QStringList EveryView::Tour(const Look& look) {
  look_ = look;
  seen_.clear();
  Start();
  Main->showNormal();
  Main->resize(1120, 720);
  VisitFrame();
  VisitBoxes();
  ConnectNow();
  VisitPhotometry();
  VisitModes();
  VisitSpectra();
  VisitTools();
  VisitSampler();
  return seen_;
}

void EveryView::VisitFrame() {
  Window("Nothing");
  DialogOf(kNewFileGuide, "FrmNew");
  DialogOf(kAbout, "FrmAbout");
  for (int page = 0; page < 4; ++page) {
    DialogOf(
        kProgramOption, "FrmOption",
        [page](QWidget& dialog) { Find<QTabWidget>(dialog, "TabStripOption")->setCurrentIndex(page); },
        ("FrmOption" + std::to_string(page + 1)).c_str());
  }
}

void EveryView::VisitBoxes() {
  MessageBoxes boxes(*Main, QStringLiteral("Spectrane Basic"));
  Dialog(
      kMessageBoxName, [&] { boxes.Show(1097, "COM1: no answer\nCOM2: missing"); }, {}, "BoxWithDetails");
  Dialog(
      kMessageBoxName, [&] { boxes.ShowError(1096); }, {}, "BoxOfAnError");
  Dialog(
      kMessageBoxName, [&] { boxes.AskYesNo(QStringLiteral("Are you sure?"), 1103); }, {}, "BoxYesNo");
  Dialog(
      kMessageBoxName, [&] { boxes.AskYesNoCancel(QStringLiteral("Save?"), 1210); }, {}, "BoxYesNoCancel");
}

void EveryView::VisitPhotometry() {
  DialogOf(kNewBasic, "FrmBasicConfig");
  Window("FrmBasicEmpty");
  Choose(kSetBlank);
  for (const char* sample : {"dye-2", "dye-4"}) {
    ASSERT_TRUE(Instrument.Model().PutInBeam(sample, Time.NowMs()));
    Choose(kStartTest);
  }
  Window("FrmBasic");
  DialogOf(kPrintPreview, "ReportPreview");
  CloseWindows();
}

void EveryView::VisitModes() {
  const std::pair<const char*, const char*> modes[] = {
      {"dye.qua", "FrmQua"}, {"enzyme.tis", "FrmTS"}, {"multi.mul", "FrmMulti"}, {"nucleic.dna", "FrmDNA"}};
  for (const auto& [file, name] : modes) {
    OpenExample(file);
    Window(name);
    DialogOf(kTestOption, (std::string(name) + "Config").c_str());
    CloseWindows();
  }
  const std::pair<int, const char*> empty[] = {{kNewQua, "FrmQua"},
                                               {kNewTS, "FrmTS"},
                                               {kNewWLS, "FrmWLS"},
                                               {kNewMulti, "FrmMulti"},
                                               {kNewDNA, "FrmDNA"}};
  for (const auto& [command, name] : empty) {
    Confirm(command, (std::string(name) + "Config").c_str());
    Window((std::string(name) + "Empty").c_str());
    CloseWindows();
  }
}

void EveryView::VisitSpectra() {
  OpenExample("holmium.wls");
  Choose(kSearchPeak);
  Window("FrmWLS");
  DialogOf(kTestOption, "FrmWLSConfig");
  DialogOf(kPeakValueSetup, "FrmPeakHeight");
  DialogOf(kMaxMinAverage, "FrmMaxMinAverage");
  DialogOf(kSpectrumSmooth, "FrmSmoothConfig");
  Window("FrmSmooth");
  Choose(kSpectrumDerivative);
  Window("FrmDev");
  DialogOf(kTestOption, "FrmDevConfig");
  CloseWindows();
  OpenExample("holmium-processed.wls");
  Window("FrmWLSVer2");
  CloseWindows();
  DialogOf(kSpectrumSubtraction, "FrmCaculateConfig");
  Window("FrmCaculateEmpty");
  CloseWindows();
  const QString file = QStringLiteral(SPECTRANE_SOURCE "/examples/holmium.wls");
  Dialog(
      "FrmWLSCompareConfig", [this] { Choose(kSpectrumCompare); },
      [&file](QWidget& dialog) { Find<QLineEdit>(dialog, "TextFileName0")->setText(file); });
  Window("FrmWLSCompareEmpty");
  CloseWindows();
}

void EveryView::VisitTools() {
  DialogOf(kSetWavelength, "FrmSetupWL");
  DialogOf(kLampSwitchWavelength, "FrmLampSwitch");
  DialogOf(kDarkCurrent, "FrmDarkEnergy",
           [](QWidget& dialog) { Find<QAbstractButton>(dialog, "CmdTest")->click(); });
  DialogOf(kResetWavelength, "FrmResetWaveLength");
  DialogOf(kSetupSlit, "FrmSlip");
  DialogOf(kSetupSampler, "FrmAutoSampler");
  DialogOf(kSystemBaseline, "FrmBaseLine", {}, "FrmBaseLineEmpty");
  const QString file = QStringLiteral(SPECTRANE_SOURCE "/examples/baseline.bsl");
  Dialog("FrmBaseLine", [&] { Main->OpenDataFile(file); });
  FrmWait wait(*Main, 30);
  seen_.append(QStringLiteral("FrmWait"));
  look_(wait, seen_.last());
}

// A sampler is seen at the connection.
void EveryView::VisitSampler() {
  Choose(kRelease);
  Instrument.Model().FitSampler(true, Time.NowMs());
  ConnectNow();
  Confirm(kNewQua, "FrmQuaConfig");
  Choose(kSetBlank);
  auto* const standards = Find<QTableView>(*Main, "QuaConfigGrid");
  standards->setCurrentIndex(standards->model()->index(0, 0));
  Dialog("FrmSelectSampler", [this] { Find<QAction>(*Main, "MeasureStandard")->trigger(); });
  CloseWindows();
}

void EveryView::Window(const char* view) {
  Settle();
  seen_.append(QLatin1String(view));
  look_(*Main, seen_.last());
}

void EveryView::Dialog(const char* name, const std::function<void()>& open,
                       const std::function<void(QWidget&)>& prepare, const char* view) {
  bool came = false;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
    QWidget* const dialog = QApplication::activeModalWidget();
    if (!dialog || dialog->objectName() == QLatin1String("FrmWait")) return;
    timer.stop();
    EXPECT_EQ(dialog->objectName(), QLatin1String(name));
    if (prepare) prepare(*dialog);
    Settle();
    came = true;
    seen_.append(QLatin1String(view ? view : name));
    look_(*dialog, seen_.last());
    if (dialog->isVisible()) dialog->close();
  });
  timer.start(1);
  open();
  Settle();
  EXPECT_TRUE(came) << "no dialog " << name;
}

void EveryView::DialogOf(int command, const char* name, const std::function<void(QWidget&)>& prepare,
                         const char* view) {
  Dialog(
      name, [this, command] { Choose(command); }, prepare, view);
}

void EveryView::Confirm(int command, const char* name) {
  WhenDialog(name, [](QWidget& dialog) { Find<QAbstractButton>(dialog, "OKCmd")->click(); });
  Choose(command);
  Settle();
}

void EveryView::OpenExample(const char* file) {
  ASSERT_TRUE(Main->OpenDataFile(QStringLiteral(SPECTRANE_SOURCE "/examples/") + QLatin1String(file)));
  Settle();
}

void EveryView::CloseWindows() {
  for (DocumentWindow* const document : Main->findChildren<DocumentWindow*>()) document->AllowClose();
  Main->mmuFileCloseAll();
  Settle();
}

void EveryView::Settle() {
  for (int i = 0; i < 5; ++i) {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

}  // namespace spectrane::testing_windows
