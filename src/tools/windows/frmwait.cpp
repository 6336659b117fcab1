#include "tools/windows/frmwait.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>

#include "app/ground/languagefont.h"
#include "app/ground/words.h"

namespace spectrane {
namespace {

constexpr int kWaitText = 1300;
constexpr int kPointSize = 10;
/// A window system that has not shown the box by then is not waited for.
constexpr int kPatienceMs = 300;

}  // namespace

FrmWait::FrmWait(MainWindow& frame) : QWidget(&frame.Frame(), Qt::Dialog | Qt::FramelessWindowHint) {
  ApplyLanguageFont(*this);
  setObjectName(QStringLiteral("FrmWait"));
  setWindowTitle(Caption(kWaitText));
  setAccessibleName(Caption(kWaitText));
  setWindowModality(Qt::ApplicationModal);

  auto* const picture = new QLabel(Caption(kWaitText), this);
  picture->setObjectName(QStringLiteral("PicInfor"));
  QFont font = LanguageFont();
  font.setPointSize(kPointSize);
  picture->setFont(font);
  // Black on white, whatever the palette of the desktop.
  QPalette colours = picture->palette();
  colours.setColor(QPalette::Window, Qt::white);
  colours.setColor(QPalette::WindowText, Qt::black);
  picture->setPalette(colours);
  picture->setAutoFillBackground(true);
  picture->setAlignment(Qt::AlignCenter);
  picture->setFrameShape(QFrame::Box);
  picture->setMargin(2 * picture->fontMetrics().lineSpacing());
  auto* const all = new QVBoxLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  all->addWidget(picture);
  all->setSizeConstraint(QLayout::SetFixedSize);

  PlaceOver(frame.Frame());
  activeBefore_ = QApplication::activeWindow();
  show();
  WaitUntilPainted();
}

FrmWait::~FrmWait() {
  // Not every window system does that by itself.
  const bool tookFocus = isActiveWindow();
  hide();
  if (tookFocus && activeBefore_ != nullptr) activeBefore_->activateWindow();
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
