// What drawing a curve of 10001 points at 1200 by 700 pixels takes: the whole picture, calm and noisy, beside
// a plotting library in turns; cursor and rectangle over the finished picture; one point more; thousands of
// marks. QT_QPA_PLATFORM=offscreen build/release/bin/curve_bench
#include <QApplication>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <random>
#include <vector>

#include "curvepeer.h"
#include "output/windows/piccurve.h"

namespace {

using namespace spectrane;

constexpr QSize kSurface(1200, 700);
constexpr std::size_t kPoints = 10001;

/// Processor time of this thread [us], so that what else the machine does is left out; elsewhere than on Unix
/// the time on the clock.
double NowUs() {
#ifdef CLOCK_THREAD_CPUTIME_ID
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
#else
  return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
#endif
}

double UsSince(double from) {
  return NowUs() - from;
}

double Report(const char* what, std::vector<double> us) {
  std::sort(us.begin(), us.end());
  std::printf("%-52s median %9.2f us   best %9.2f us   p90 %9.2f us\n", what, us[us.size() / 2], us.front(),
              us[us.size() * 9 / 10]);
  return us[us.size() / 2];
}

struct Spectrum {
  std::vector<double> X;
  std::vector<double> Y;
  CurveView View;

  /// Two bands on a slope, with that much noise [Abs].
  explicit Spectrum(double noise) {
    std::mt19937 random(7);
    std::normal_distribution<double> spread(0, 1);
    for (std::size_t i = 0; i < kPoints; ++i) {
      const double x = 190 + 0.091 * static_cast<double>(i);
      X.push_back(x);
      Y.push_back(0.4 + 1.1 * std::exp(-std::pow((x - 450) / 60, 2)) +
                  0.5 * std::exp(-std::pow((x - 720) / 90, 2)) + noise * spread(random));
    }
    View.Lines.resize(1);
    View.Lines[0].X = X;
    View.Lines[0].Y = Y;
    View.Scale = {{190, 1100}, {0, 2}};
    View.X.Title = QStringLiteral("WL.(nm)");
    View.Y.Title = QStringLiteral("Absorbance(Abs)");
    for (std::size_t i = 500; i < kPoints; i += 1000)
      View.Marks.push_back({X[i], Y[i], false, QStringLiteral("%1").arg(View.Marks.size() + 1)});
  }
};

void MeasurePicture(const char* name, const Spectrum& spectrum) {
  QPixmap surface(kSurface);
  const CurvePictureOptions options;
  const auto draw = [&](const CurveView& view) {
    QPainter painter(&surface);
    PaintCurve(painter, QRectF(QPointF(), QSizeF(kSurface)), view, options);
  };
  CurveView bare = spectrum.View;
  bare.Lines.clear();
  bare.Marks.clear();
  std::vector<double> ours;
  std::vector<double> frame;
  std::vector<double> peer;
  std::vector<double> peerSmooth;
#ifdef SPECTRANE_CURVE_PEER
  const std::function<void()> replot = MakeCurvePeer(spectrum.View, false);
  const std::function<void()> replotSmooth = MakeCurvePeer(spectrum.View, true);
#endif
  const auto time = [](std::vector<double>& times, const auto& what) {
    const double from = NowUs();
    what();
    times.push_back(UsSince(from));
  };
  for (int i = 0; i < 300; ++i) {
    time(ours, [&] { draw(spectrum.View); });
    time(frame, [&] { draw(bare); });
#ifdef SPECTRANE_CURVE_PEER
    time(peer, replot);
    time(peerSmooth, replotSmooth);
#endif
  }
  std::printf("-- %s\n", name);
  const double mine = Report("whole picture", ours);
  Report("  of which frame, grid, numbers, titles", frame);
  if (peer.empty()) return;
  const double its = Report("plotting library", peer);
  Report("plotting library, antialiased", peerSmooth);
  std::printf("%-52s %.2f\n", "whole picture / plotting library", mine / its);
}

void MeasureMarks(Spectrum spectrum) {
  spectrum.View.Lines[0].X = spectrum.X;
  spectrum.View.Lines[0].Y = spectrum.Y;
  spectrum.View.Marks.clear();
  for (std::size_t i = 1; i < 5600; i += 2)
    spectrum.View.Marks.push_back({spectrum.X[i], spectrum.Y[i], i % 4 == 1, QStringLiteral("%1").arg(i)});
  QPixmap surface(kSurface);
  std::vector<double> times;
  for (int i = 0; i < 50; ++i) {
    const double from = NowUs();
    QPainter painter(&surface);
    PaintCurve(painter, QRectF(QPointF(), QSizeF(kSurface)), spectrum.View, {});
    times.push_back(UsSince(from));
  }
  Report("whole picture with 2800 marks", times);
}

void MeasureHands(const Spectrum& spectrum) {
  PicCurve surface;
  surface.resize(kSurface);
  surface.SetView(spectrum.View);
  surface.show();
  QCoreApplication::processEvents();
  QImage screen(kSurface, QImage::Format_RGB32);
  surface.render(&screen);
  const auto send = [&](QEvent::Type type, const QPointF& at, Qt::MouseButton button) {
    QMouseEvent event(type, at, surface.mapToGlobal(at), button, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&surface, &event);
  };
  for (const bool rectangle : {false, true}) {
    surface.SetZoomSelecting(rectangle);
    send(QEvent::MouseButtonPress, {200, 200}, Qt::LeftButton);
    std::vector<double> times;
    for (int i = 0; i < 300; ++i) {
      const double from = NowUs();
      send(QEvent::MouseMove, {300.0 + i, 250.0 + i}, Qt::NoButton);
      surface.repaint();
      times.push_back(UsSince(from));
    }
    Report(rectangle ? "rectangle follows the pointer, shown" : "cursor follows the pointer, shown", times);
  }
  send(QEvent::MouseButtonRelease, {800, 600}, Qt::LeftButton);

  const std::span<const double> x = spectrum.X;
  const std::span<const double> y = spectrum.Y;
  CurveView view = spectrum.View;
  view.Marks.clear();
  view.Lines[0].X = x.first(1);
  view.Lines[0].Y = y.first(1);
  surface.SetView(view);
  surface.repaint();
  std::vector<double> times;
  for (std::size_t n = 2; n <= kPoints; ++n) {
    const double from = NowUs();
    surface.Extend(0, x.first(n), y.first(n));
    times.push_back(UsSince(from));
    if (n % 100 == 0) QCoreApplication::processEvents();
  }
  Report("one point more", times);
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  const Spectrum calm(0.003);
  const Spectrum noisy(0.15);
#ifndef SPECTRANE_CURVE_PEER
  std::puts("Built without the plotting library (libqcustomplot-dev): no comparison.");
#endif
  MeasurePicture("calm", calm);
  MeasurePicture("noisy", noisy);
  std::puts("--");
  MeasureMarks(noisy);
  MeasureHands(calm);
  return 0;
}
