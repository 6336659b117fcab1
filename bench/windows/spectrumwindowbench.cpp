// A spectrum of 10001 points in the running program: from the path to the painted window with its tables, the
// search with thousands of marks and rows, and what ten such windows take of the memory.
// QT_QPA_PLATFORM=offscreen build/release/bin/spectrum_window_bench
#include <QApplication>
#include <QTableView>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "app/ground/frmdatatabel.h"
#include "files/wlsfile.h"
#include "spectrum/windows/frmwls.h"
#include "windows/benchframe.h"
#include "windows/windowreport.h"

namespace {

using namespace spectrane;

/// Bands with noise on them, so that a search finds thousands of peaks.
std::string WriteSpectrum(const QString& path) {
  std::mt19937 random(1);
  std::uniform_int_distribution<int> noise(-400, 400);
  const WLSOption option{350, 1100, 3, 0, 100, 0, 65535, 0, 1, 1, 1, 0, 0, 1};
  const auto point = [&](std::int32_t i) {
    const double wavelength = 350 + 0.075 * i;
    const double trans = 0.5 + 0.4 * std::sin(wavelength / 15);
    return WLSRecord{static_cast<std::int32_t>(60 + 30000 * trans) + noise(random), 30060, 60, wavelength, 3};
  };
  SaveDataFile(WLSModule(), path.toStdString(), option, kMostSpectrumPoints, point);
  return path.toStdString();
}

double ResidentMB() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmRSS:")) return std::stod(line.substr(6)) / 1024;
  }
  return 0;
}

/// Wall and processor time of what happens until everything is painted.
struct Times {
  std::vector<double> Waited;
  std::vector<double> Worked;

  template <typename Work>
  void Take(Work work) {
    const auto from = Wall::now();
    const double cpu = CpuMs();
    work();
    QCoreApplication::processEvents();
    Worked.push_back(CpuMs() - cpu);
    Waited.push_back(MsSince(from));
  }
  void Tell(const char* what) const {
    ReportTimes(what, Waited);
    ReportTimes("  of it processor time", Worked);
  }
};

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  BenchFrame bench;
  bench.Settings().PutSetting(kScanSection, "Smooth Enable", "False");
  FrmMain& frame = bench.Show();
  const double empty = ResidentMB();

  Times opened;
  Times searched;
  std::size_t marks = 0;
  for (int i = 0; i < 10; ++i) {
    const QString path = bench.Folder().filePath(QStringLiteral("%1.wls").arg(i));
    WriteSpectrum(path);
    opened.Take([&] { frame.OpenDataFile(path); });
  }
  std::printf("%-48s %7.1f MB\n", "ten documents above the empty program", ResidentMB() - empty);
  for (int i = 0; i < 20; ++i) {
    searched.Take([&] { frame.ActiveForm()->FindPeak(); });
    marks = static_cast<std::size_t>(frame.ActiveForm()->DataTable()->Grid(1)->model()->rowCount());
  }
  opened.Tell("opening 10001 points, to the painted window");
  searched.Tell("searching and showing marks and rows");
  std::printf("%-48s %7zu\n", "  marks", marks);
  return 0;
}
