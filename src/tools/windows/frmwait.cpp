#include "tools/windows/frmwait.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>
#include <utility>

#ifdef _WIN32
#include "base/windowsheader.h"
#endif

#include "app/ground/languagefont.h"
#include "app/ground/words.h"

namespace spectrane {
namespace {

constexpr int kWaitText = 1300;
constexpr int kPointSize = 10;
/// A window system that has not shown the box by then is not waited for.
constexpr int kPatienceMs = 300;

/// Between the edge of the box and its text, and between its lines [lines].
constexpr int kMarginLines = 2;

QString TimeText(std::int64_t seconds, int longestSeconds) {
  return QStringLiteral("%1 s of at most %2 s").arg(seconds).arg(longestSeconds);
}

/// A window that takes no messages for some seconds is replaced by a dead picture of itself on Windows; what
/// is painted here would no longer be seen. Elsewhere it stays as it is.
void KeepPicturesAlive() {
#ifdef _WIN32
  DisableProcessWindowsGhosting();
#endif
}

}  // namespace

int LongestSeconds(std::initializer_list<std::string_view> commands) {
  int seconds = 0;
  for (const std::string_view command : commands) seconds += Interface::TimeoutFor(command);
  return seconds;
}

FrmWait::FrmWait(MainWindow& frame, int longestSeconds)
    : QWidget(&ParentFor(frame), Qt::Dialog | Qt::FramelessWindowHint),
      line_(frame.Link().Transport),
      longestSeconds_(longestSeconds),
      startMs_(line_.NowMs()) {
  ApplyLanguageFont(*this);
  setObjectName(QStringLiteral("FrmWait"));
  setWindowTitle(Caption(kWaitText));
  setAccessibleName(Caption(kWaitText));
  setWindowModality(Qt::ApplicationModal);
  // Black on white, whatever the palette of the desktop.
  QPalette colours = palette();
  colours.setColor(QPalette::Window, Qt::white);
  colours.setColor(QPalette::WindowText, Qt::black);
  setPalette(colours);
  setAutoFillBackground(true);

  auto* const lines = new QVBoxLayout;
  lines->addWidget(MakeLine("PicInfor", Caption(kWaitText)));
  if (longestSeconds_ > 0) {
    time_ = MakeLine("LabelTime", TimeText(longestSeconds_, longestSeconds_));
    time_->setMinimumWidth(time_->sizeHint().width());
    time_->setText(TimeText(0, longestSeconds_));
    lines->addWidget(time_);
  }
  const int margin = kMarginLines * fontMetrics().lineSpacing();
  lines->setContentsMargins(margin, margin, margin, margin);
  auto* const box = new QFrame(this);
  box->setFrameShape(QFrame::Box);
  box->setLayout(lines);
  auto* const all = new QVBoxLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  all->addWidget(box);
  all->setSizeConstraint(QLayout::SetFixedSize);

  PlaceOver(*parentWidget());
  activeBefore_ = QApplication::activeWindow();
  KeepPicturesAlive();
  show();
  WaitUntilPainted();
  if (time_ != nullptr) {
    watchedBefore_ = std::exchange(line_.OnWaiting, [this] { ShowTime(); });
  }
}

FrmWait::~FrmWait() {
  if (time_ != nullptr) line_.OnWaiting = std::move(watchedBefore_);
  // Not every window system does that by itself.
  const bool tookFocus = isActiveWindow();
  hide();
  if (tookFocus && activeBefore_ != nullptr) activeBefore_->activateWindow();
}

QWidget& FrmWait::ParentFor(MainWindow& frame) {
  QWidget* const dialog = QApplication::activeModalWidget();
  return dialog != nullptr ? *dialog : frame.Frame();
}

QLabel* FrmWait::MakeLine(const char* name, const QString& text) {
  auto* const line = new QLabel(text, this);
  line->setObjectName(QLatin1String(name));
  QFont font = LanguageFont();
  font.setPointSize(kPointSize);
  line->setFont(font);
  line->setAlignment(Qt::AlignCenter);
  // A style sheet of the main window would come between the box and what its lines inherit.
  line->setPalette(palette());
  line->setAutoFillBackground(true);
  return line;
}

void FrmWait::ShowTime() {
  const std::int64_t seconds = std::max<std::int64_t>((line_.NowMs() - startMs_) / 1000, 0);
  if (seconds == shownSeconds_) return;
  shownSeconds_ = seconds;
  time_->setText(TimeText(seconds, longestSeconds_));
  // At once: the exchange in whose middle this is keeps the message loop from running.
  time_->repaint();
}

void FrmWait::closeEvent(QCloseEvent* event) {
  event->ignore();
}

void FrmWait::PlaceOver(const QWidget& frame) {
  const QRect around = frame.isVisible() ? frame.frameGeometry() : frame.screen()->availableGeometry();
  QRect box(QPoint(), sizeHint());
  box.moveCenter(around.center());
  move(box.topLeft());
}

void FrmWait::WaitUntilPainted() {
  QTimer patience;
  patience.setSingleShot(true);
  patience.start(kPatienceMs);
  while (!windowHandle()->isExposed() && patience.isActive()) {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
  }
  repaint();
  // What was painted has to leave this process before it is busy.
  QGuiApplication::sync();
}

}  // namespace spectrane
