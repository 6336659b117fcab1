// Opens the windows and dialogs of the program on a simulated instrument and takes the handbook's pictures of
// them: handbookpictures EXAMPLES PICTURES, the folder of the example files and the one where the pictures
// go.
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QSplitter>
#include <QTableView>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTextStream>

#include <clocale>

#include "app/ground/colourbutton.h"
#include "app/ground/commands.h"
#include "app/ground/languagefont.h"
#include "app/ground/readablehints.h"
#include "base/language.h"
#include "examplefiles/examples.h"
#include "files/wlsfile.h"
#include "simulator/face/compartmentwindow.h"
#include "studio.h"

using namespace spectrane;

namespace {

/// Of the main window [px].
constexpr int kWidth = 960;
constexpr int kWidthForNotes = 1120;
constexpr int kHeight = 660;

/// A spectrum with the blank taken anew at each point.
void MakeSpectrum(const QString& folder, const char* sample, const char* file) {
  const QTemporaryDir scratch;
  ExampleBench bench(scratch.filePath(QStringLiteral("settings")).toStdString(), 7);
  std::vector<WLSRecord> points;
  for (double nm = 220.0; nm <= 460.0; nm += 1.0) {
    bench.MoveTo(nm);
    bench.PutInBeam("blank");
    const Blank blank = bench.TakeBlank();
    bench.PutInBeam(sample);
    WLSRecord point;
    point.SampleEnergy = bench.Read(20);
    point.ReferenceEnergy = blank.FullEnergy;
    point.DarkEnergy = blank.DarkEnergy;
    point.Wavelength = nm;
    point.Gain = blank.Gain;
    points.push_back(point);
  }
  WLSOption option;
  option.StartWavelength = 220.0;
  option.EndWavelength = 460.0;
  option.AbsTop = 1.6;
  option.TransTop = 100.0;
  option.IntervalWavelength = 3;
  option.DisplayMode = 1;
  Save(WLSModule(), (folder + u'/' + QLatin1String(file)).toStdString(), option, points);
}

void MakeFiles(const QString& examples, const QString& files) {
  QDir(files).removeRecursively();
  QDir().mkpath(files);
  for (const QFileInfo& file : QDir(examples).entryInfoList(QDir::Files))
    QFile::copy(file.filePath(), files + u'/' + file.fileName());
  MakeSpectrum(files, "dichromate-40", "dichromate-40.wls");
  MakeSpectrum(files, "dichromate-60", "dichromate-60.wls");
  MakeSpectrum(files, "dichromate-100", "dichromate-100.wls");
}

void TakeFrame(Studio& studio) {
  studio.Resize(kWidth, kHeight);
  studio.TakeMain("main-window");
  studio.TakeDialogOf(kNewFileGuide, "FrmNew", "new-file-guide");
  studio.TakeDialogOf(kAbout, "FrmAbout", "about");
  constexpr const char* kPages[] = {"option-information", "option-precision", "option-port", "option-style"};
  for (int page = 0; page < 4; ++page) {
    studio.TakeDialogOf(kProgramOption, "FrmOption", kPages[page], [page](QWidget& dialog) {
      dialog.findChild<QTabWidget*>(QStringLiteral("TabStripOption"))->setCurrentIndex(page);
    });
  }
  // Nothing answers yet.
  studio.Instrument().Faults().Load("* every no-reply");
  studio.InDialog([&] { studio.Main().mmuOperationConnect(); }, "MessageBox",
                  [&](QWidget& box) {
                    for (QPushButton* const button : box.findChildren<QPushButton*>()) {
                      if (button->text().contains(QStringLiteral("Details"))) button->click();
                    }
                    studio.Take(box, "no-instrument");
                  });
  studio.Instrument().Faults().Clear();
}

void TakePhotometry(Studio& studio) {
  studio.InDialog([&] { studio.Choose(kNewBasic); }, "FrmBasicConfig",
                  [&](QWidget& dialog) { studio.Take(dialog, "photometry-options"); });
  studio.PutInBeam("blank");
  studio.Choose(kSetBlank);
  for (const char* const sample : {"dye-2", "dye-4", "dye-6"}) {
    studio.PutInBeam(sample);
    studio.Choose(kStartTest);
  }
  studio.TakeMain("photometry");
  studio.InDialog([&] { studio.Choose(kPrintPreview); }, "ReportPreview",
                  [&](QWidget& dialog) { studio.Take(dialog, "print-preview"); });
  studio.CloseAll();
}

/// A file of that name in its window, its options, and what else `more` takes there.
void TakeMode(Studio& studio, const char* file, const char* dialog, const char* name,
              const std::function<void()>& more = {}) {
  studio.Open(file);
  if (more) more();
  studio.TakeMain(name);
  studio.TakeDialogOf(kTestOption, dialog, (std::string(name) + "-options").c_str());
}

void TakeModes(Studio& studio) {
  studio.Resize(kWidthForNotes, kHeight);
  TakeMode(studio, "dye.qua", "FrmQuaConfig", "quantitation", [&] {
    studio.Main().findChild<QSplitter*>(QStringLiteral("QuaColumns"))->setSizes({540, 580});
  });
  studio.CloseAll();
  studio.Resize(kWidth, kHeight);
  TakeMode(studio, "enzyme.tis", "FrmTSConfig", "kinetics");
  studio.CloseAll();
  TakeMode(studio, "multi.mul", "FrmMultiConfig", "multi-wavelength");
  studio.CloseAll();
  studio.Resize(kWidthForNotes, kHeight);
  TakeMode(studio, "nucleic.dna", "FrmDNAConfig", "dna-protein");
  studio.CloseAll();
  studio.Resize(kWidth, kHeight);
  TakeMode(studio, "holmium.wls", "FrmWLSConfig", "wavelength-scan", [&] { studio.Choose(kSearchPeak); });
  studio.TakeDialogOf(kPeakValueSetup, "FrmPeakHeight", "peak-value-setup");
  studio.TakeDialogOf(kMaxMinAverage, "FrmMaxMinAverage", "max-min-average");
}

/// Fields of a dialog by their object names.
void Fill(QWidget& dialog, std::initializer_list<std::pair<const char*, QString>> fields) {
  for (const auto& [name, text] : fields) dialog.findChild<QLineEdit*>(QLatin1String(name))->setText(text);
}

/// The view in which the dichromate spectra are seen whole.
void FillView(QWidget& dialog) {
  Fill(dialog, {{"ScaleTopText", QStringLiteral("1.6")},
                {"ScaleBottomText", QStringLiteral("0")},
                {"StartWLText", QStringLiteral("220")},
                {"EndWLText", QStringLiteral("460")}});
}

void Colour(QWidget& dialog, std::initializer_list<std::pair<const char*, Qt::GlobalColor>> buttons) {
  for (const auto& [name, colour] : buttons)
    dynamic_cast<ColourButton&>(*dialog.findChild<QPushButton*>(QLatin1String(name))).SetColour(colour);
}

/// The spectrum of the modes is still open.
void TakeProcessing(Studio& studio) {
  studio.InDialog([&] { studio.Choose(kSpectrumSmooth); }, "FrmSmoothConfig",
                  [&](QWidget& dialog) {
                    studio.Take(dialog, "processing-options");
                    dialog.findChild<QPushButton*>(QStringLiteral("OKCmd"))->click();
                  });
  studio.TakeMain("smooth");
  studio.Choose(kSpectrumDerivative);
  studio.InDialog([&] { studio.Choose(kTestOption); }, "FrmDevConfig",
                  [&](QWidget& dialog) {
                    Fill(dialog, {{"ScaleTopText", QStringLiteral("0.25")},
                                  {"ScaleBottomText", QStringLiteral("-0.25")}});
                    dialog.findChild<QPushButton*>(QStringLiteral("OKCmd"))->click();
                  });
  studio.TakeMain("derivative");
  studio.CloseAll();

  studio.InDialog([&] { studio.Choose(kSpectrumSubtraction); }, "FrmCaculateConfig",
                  [&](QWidget& dialog) {
                    Fill(dialog, {{"TextFileName0", studio.PathOf("dichromate-100.wls")},
                                  {"TextFileName1", studio.PathOf("dichromate-40.wls")}});
                    FillView(dialog);
                    Colour(dialog, {{"PictureCurve0", Qt::darkGreen}, {"PictureCurve1", Qt::darkCyan}});
                    studio.Take(dialog, "arithmetic-options");
                    dialog.findChild<QPushButton*>(QStringLiteral("OKCmd"))->click();
                  });
  studio.TakeMain("arithmetic");
  studio.CloseAll();
  studio.InDialog(
      [&] { studio.Choose(kSpectrumCompare); }, "FrmWLSCompareConfig",
      [&](QWidget& dialog) {
        Fill(dialog, {{"TextFileName0", studio.PathOf("dichromate-40.wls")},
                      {"TextFileName1", studio.PathOf("dichromate-60.wls")},
                      {"TextFileName2", studio.PathOf("dichromate-100.wls")}});
        FillView(dialog);
        Colour(dialog, {{"PicColor0", Qt::red}, {"PicColor1", Qt::darkGreen}, {"PicColor2", Qt::blue}});
        studio.Take(dialog, "compare-options");
        dialog.findChild<QPushButton*>(QStringLiteral("OKCmd"))->click();
      });
  studio.TakeMain("compare");
  studio.CloseAll();
}

void TakeTools(Studio& studio) {
  studio.TakeDialogOf(kSetWavelength, "FrmSetupWL", "set-wavelength");
  studio.TakeDialogOf(kLampSwitchWavelength, "FrmLampSwitch", "lamp-switch-wavelength");
  studio.TakeDialogOf(kDarkCurrent, "FrmDarkEnergy", "dark-current", [&](QWidget& dialog) {
    dialog.findChild<QPushButton*>(QStringLiteral("CmdTest"))->click();
  });
  studio.TakeDialogOf(kResetWavelength, "FrmResetWaveLength", "reset-wavelength");
  studio.TakeDialogOf(kSetupSlit, "FrmSlip", "slit");
  studio.TakeDialogOf(kSetupSampler, "FrmAutoSampler", "sampler");
  studio.InDialog([&] { studio.Main().OpenDataFile(studio.PathOf("baseline.bsl")); }, "FrmBaseLine",
                  [&](QWidget& dialog) { studio.Take(dialog, "system-baseline"); });
}

/// The position of a standard, which is asked for with a sampler only.
void TakeSamplerPosition(Studio& studio) {
  studio.Choose(kRelease);
  studio.FitSampler(true);
  studio.Main().mmuOperationConnect();
  studio.ChooseAndConfirm(kNewQua, "FrmQuaConfig");
  studio.Choose(kSetBlank);
  auto* const standards = studio.Main().findChild<QTableView*>(QStringLiteral("QuaConfigGrid"));
  standards->setCurrentIndex(standards->model()->index(0, 0));
  auto* const measure = studio.Main().findChild<QAction*>(QStringLiteral("MeasureStandard"));
  studio.InDialog([&] { measure->trigger(); }, "FrmSelectSampler",
                  [&](QWidget& dialog) { studio.Take(dialog, "sampler-position"); });
  studio.CloseAll();
}

/// The simulator's own window, with the sampler fitted.
void TakeCompartment(Studio& studio) {
  ManualClock time;
  SimulatedLine line;
  Console console(line, time);
  Compartment view(line, time, console, [] { return true; });
  line.Model().FitSampler(true, time.NowMs());
  line.Model().PutInBeam("dye-4", time.NowMs());
  view.NoteJoined("/tmp/instrument");
  CompartmentWindow window(view);
  window.show();
  window.Refresh();
  studio.Take(window, "sample-compartment");
}

void TakeAll(const QString& examples, const QString& pictures) {
  const QString files = QDir::tempPath() + QStringLiteral("/spectrane-handbook");
  MakeFiles(examples, files);
  QDir().mkpath(pictures);
  {
    Studio studio(pictures, files);
    TakeFrame(studio);
    studio.Main().mmuOperationConnect();
    TakePhotometry(studio);
    TakeModes(studio);
    TakeProcessing(studio);
    TakeTools(studio);
    TakeSamplerPosition(studio);
    TakeCompartment(studio);
  }
  QDir(files).removeRecursively();
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  // As in the program, whose application would hold back the faults of this one.
  QApplication::setPalette(WithReadableHints(QApplication::palette()));
  std::setlocale(LC_ALL, "C");
  QLocale::setDefault(QLocale::c());
  SelectLanguage();
  QApplication::setFont(LanguageFont());
  const QStringList arguments = QApplication::arguments();
  if (arguments.size() != 3) {
    QTextStream(stderr) << "handbookpictures EXAMPLES PICTURES\n";
    return 2;
  }
  try {
    TakeAll(arguments.at(1), arguments.at(2));
  } catch (const std::exception& fault) {
    QTextStream(stderr) << fault.what() << "\n";
    return 1;
  }
  return 0;
}
