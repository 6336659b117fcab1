// Ten files of 10001 points in the comparison, in the running program: read and drawn after the options were
// confirmed, then drawn anew. QT_QPA_PLATFORM=offscreen build/release/bin/compare_bench
#include <QApplication>
#include <QDialog>
#include <QTimer>

#include <cmath>
#include <random>

#include "files/wlsfile.h"
#include "output/windows/piccurve.h"
#include "spectrum/windows/frmwlscompare.h"
#include "windows/benchframe.h"
#include "windows/windowreport.h"

namespace {

using namespace spectrane;

/// Bands with a little noise, each file moved against the others.
void WriteComparedFile(const QString& path, int number) {
  std::mt19937 random(static_cast<std::uint32_t>(number));
  std::uniform_int_distribution<int> noise(-40, 40);
  const WLSOption option{190, 1100, 3, 0, 100, 0, 65535, 0, 1, 1, 1, 0, 0, 1};
  SaveDataFile(WLSModule(), path.toStdString(), option, kMostSpectrumPoints, [&](std::int32_t i) {
    const double wavelength = 190 + 0.091 * i;
    const double trans = 0.5 + 0.3 * std::sin(wavelength / 15 + number * 0.3);
    return WLSRecord{static_cast<std::int32_t>(60 + 30000 * trans) + noise(random), 30060, 60, wavelength, 3};
  });
}

/// Confirms the options as soon as they are open; from then on the clock runs.
void ConfirmOptions(Wall::time_point& from) {
  QTimer::singleShot(0, qApp, [&from] {
    auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (!dialog) return;
    from = Wall::now();
    dialog->accept();
  });
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  BenchFrame bench;
  for (int i = 0; i < 10; ++i) {
    const QString path = bench.Folder().filePath(QStringLiteral("%1.wls").arg(i));
    WriteComparedFile(path, i);
    bench.Settings().PutSetting(kCompareSection, "File name " + std::to_string(i), path.toStdString());
  }
  FrmMain& frame = bench.Show();

  std::vector<double> loaded;
  std::vector<double> drawn;
  std::vector<double> worked;
  Wall::time_point from;
  ConfirmOptions(from);
  frame.CompareSpectra();
  for (int i = 0; i < 20; ++i) {
    ConfirmOptions(from);
    frame.ActiveForm()->ShowConfigWindow();
    QCoreApplication::processEvents();
    loaded.push_back(MsSince(from));
  }
  auto* const window = dynamic_cast<FrmWLSCompare*>(frame.ActiveForm());
  auto* const curve = window->findChild<PicCurve*>();
  for (int i = 0; i < 100; ++i) {
    const auto start = Wall::now();
    const double cpu = CpuMs();
    window->ShowPicture();
    curve->repaint();
    worked.push_back(CpuMs() - cpu);
    drawn.push_back(MsSince(start));
  }
  std::printf("%d files, surface %d x %d\n", window->LoadedFiles(), curve->width(), curve->height());
  ReportTimes("ten files read and drawn", loaded);
  ReportTimes("ten curves drawn anew", drawn);
  ReportTimes("  of it processor time", worked);
  return 0;
}
