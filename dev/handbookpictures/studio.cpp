#include "studio.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QImage>
#include <QSet>
#include <QTimer>

#include <stdexcept>

#include "app/ground/documentwindow.h"

namespace spectrane {
namespace {

constexpr int kMostColours = 256;
/// Of the data table below a curve [px].
constexpr int kTableHeight = 190;

[[noreturn]] void Fail(const QString& words) {
  throw std::runtime_error(words.toStdString());
}

/// With a palette when there are few enough colours, which makes a picture of a window three times smaller.
QImage Slim(const QImage& picture) {
  const QImage plain = picture.convertToFormat(QImage::Format_RGB32);
  QList<QRgb> colours;
  QSet<QRgb> seen;
  for (int y = 0; y < plain.height(); ++y) {
    const QRgb* const line = reinterpret_cast<const QRgb*>(plain.constScanLine(y));
    for (int x = 0; x < plain.width(); ++x) {
      if (seen.contains(line[x])) continue;
      if (colours.size() == kMostColours) return plain;
      seen.insert(line[x]);
      colours.append(line[x]);
    }
  }
  return plain.convertToFormat(QImage::Format_Indexed8, colours, Qt::AvoidDither | Qt::ThresholdDither);
}

}  // namespace

void Studio::Loop::RunOnce() {
  QCoreApplication::processEvents();
}

void Studio::Loop::RunUntil(const Clock& /*clock*/, std::int64_t deadlineMs) {
  RunOnce();
  if (deadlineMs > clock_.NowMs()) clock_.Set(deadlineMs);
}

InstrumentOptions Studio::QuietInstrument() {
  InstrumentOptions options;
  options.Noise = 0.0;
  return options;
}

Studio::Studio(QString folder, QString files)
    : folder_(std::move(folder)), files_(std::move(files)), home_(PathOf("settings").toStdString()) {
  QDir().mkpath(PathOf("settings"));
  main_ = std::make_unique<FrmMain>(ProgramParts{ports_, time_, loop_, turn_, settings_, home_});
  main_->findChild<QTimer*>(QStringLiteral("TimerFileOpen"))->disconnect();
  // Simulated time must not depend on how long this machine takes.
  main_->SampleTimer().disconnect();
  main_->ShowStored();
  main_->showNormal();
  main_->findChild<QTimer*>(QStringLiteral("TimerConnect"))->stop();
  Settle();
}

Studio::~Studio() = default;

void Studio::Settle() {
  for (int i = 0; i < 5; ++i) {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

void Studio::Take(QWidget& widget, const char* name) {
  Settle();
  const QString path = folder_ + u'/' + QLatin1String(name) + QStringLiteral(".png");
  // 0: the smallest file.
  if (!Slim(widget.grab().toImage()).save(path, "PNG", 0)) Fail(QStringLiteral("cannot write ") + path);
}

void Studio::TakeMain(const char* name) {
  // The live reading as it is when it has settled, however long the way here took.
  main_->SampleTimer().stop();
  for (std::int32_t i = 0; i < kEnergyRingUsed; ++i) main_->Link().Live.SampleTimerTick();
  if (auto* const tables = main_->findChild<QDockWidget*>(QStringLiteral("DockingTable")))
    main_->resizeDocks({tables}, {kTableHeight}, Qt::Vertical);
  Take(*main_, name);
}

void Studio::InDialog(const std::function<void()>& open, const char* dialog,
                      const std::function<void(QWidget&)>& act) {
  QString trouble = QStringLiteral("no dialog ") + QLatin1String(dialog);
  QTimer look;
  QObject::connect(&look, &QTimer::timeout, main_.get(), [&] {
    QWidget* const modal = QApplication::activeModalWidget();
    if (!modal || modal->objectName() == QLatin1String("FrmWait")) return;
    look.stop();
    trouble.clear();
    if (modal->objectName() == QLatin1String(dialog)) {
      act(*modal);
    } else {
      trouble = QStringLiteral("%1 instead of %2").arg(modal->objectName(), QLatin1String(dialog));
    }
    if (modal->isVisible()) modal->close();
  });
  look.start(1);
  open();
  Settle();
  if (!trouble.isEmpty()) Fail(trouble);
}

void Studio::Choose(int command) {
  QAction* const action = main_->ActionOf(command);
  if (!action || !action->isEnabled()) Fail(QStringLiteral("command %1 cannot be chosen").arg(command));
  action->trigger();
  Settle();
}

void Studio::ChooseAndConfirm(int command, const char* dialog) {
  InDialog([&] { Choose(command); }, dialog,
           [](QWidget& widget) { widget.findChild<QAbstractButton*>(QStringLiteral("OKCmd"))->click(); });
}

void Studio::TakeDialogOf(int command, const char* dialog, const char* name,
                          const std::function<void(QWidget&)>& prepare) {
  InDialog([&] { Choose(command); }, dialog,
           [&](QWidget& widget) {
             if (prepare) prepare(widget);
             Take(widget, name);
           });
}

void Studio::Open(const char* file) {
  if (!main_->OpenDataFile(PathOf(file))) Fail(QStringLiteral("cannot open ") + PathOf(file));
  Settle();
}

void Studio::CloseAll() {
  for (DocumentWindow* const document : main_->findChildren<DocumentWindow*>()) document->AllowClose();
  main_->mmuFileCloseAll();
  Settle();
}

void Studio::Resize(int width, int height) {
  main_->resize(width, height);
  Settle();
}

void Studio::PutInBeam(const char* sample) {
  if (!instrument_.Model().PutInBeam(sample, time_.NowMs())) Fail(QLatin1String(sample));
}

void Studio::FitSampler(bool fitted) {
  instrument_.Model().FitSampler(fitted, time_.NowMs());
}

}  // namespace spectrane
