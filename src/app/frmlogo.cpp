#include "app/frmlogo.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QLabel>

#include <utility>

#include "app/ground/commandicon.h"
#include "app/ground/languagefont.h"
#include "base/version.h"

namespace spectrane {
namespace {

constexpr int kShownMs = 3000;
constexpr QSize kBackgroundRoom(480, 280);  // [logical pixels]
constexpr QSize kLogoRoom(128, 128);
constexpr double kLogoTitleScale = 1.6;

}  // namespace

FrmLogo::FrmLogo(MainWindow& frame, LogoWork work, const Brand& brand)
    : QDialog(&frame.Frame(), Qt::Dialog | Qt::FramelessWindowHint), frame_(frame), work_(std::move(work)) {
  ApplyLanguageFont(*this);
  setObjectName(QStringLiteral("FrmLogo"));
  const QString title = QString::fromUtf8(brand.Title) + u' ' + QString::fromStdString(VersionText());
  setWindowTitle(title);
  setAccessibleName(title);

  auto* const background = new QLabel(this);
  background->setObjectName(QStringLiteral("PictureBackground"));
  background->setPixmap(Picture(QStringLiteral("background"), kBackgroundRoom, devicePixelRatioF()));
  auto* const logo = new QLabel(this);
  logo->setObjectName(QStringLiteral("PicLogo"));
  logo->setPixmap(Picture(QStringLiteral("logo"), kLogoRoom, devicePixelRatioF()));
  auto* const company = new QLabel(title, this);
  company->setObjectName(QStringLiteral("LabelCompany"));
  QFont large = company->font();
  large.setPointSizeF(large.pointSizeF() * kLogoTitleScale);
  large.setBold(true);
  company->setFont(large);
  // The picture behind it is dark on every desktop.
  QPalette colours = company->palette();
  colours.setColor(QPalette::WindowText, Qt::white);
  company->setPalette(colours);

  auto* const all = new QGridLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  all->addWidget(background, 0, 0, 2, 1);
  all->addWidget(logo, 0, 0, Qt::AlignCenter);
  all->addWidget(company, 1, 0, Qt::AlignHCenter | Qt::AlignTop);
  all->setSizeConstraint(QLayout::SetFixedSize);

  startTimer_.setObjectName(QStringLiteral("StartTimer"));
  startTimer_.setSingleShot(true);
  startTimer_.setInterval(kShownMs);
  connect(&startTimer_, &QTimer::timeout, this, &FrmLogo::close);
}

void FrmLogo::Load(const QString& commandLine) {
  if (HandOver(commandLine)) {
    work_.EndProcess();
  } else {
    startTimer_.start();
  }
}

bool FrmLogo::HandOver(const QString& commandLine) {
  // The desktop puts the path between quotation marks.
  const QString path = commandLine.mid(1, commandLine.size() - 2);
  return commandLine.size() > 2 && work_.SendToRunningCopy(path);
}

void FrmLogo::mousePressEvent(QMouseEvent*) {
  close();
}

void FrmLogo::keyPressEvent(QKeyEvent*) {
  close();
}

void FrmLogo::closeEvent(QCloseEvent* event) {
  event->accept();
  if (std::exchange(closed_, true)) return;
  startTimer_.stop();
  hide();
  if (frame_.ActiveForm() == nullptr) work_.FileNew();
}

}  // namespace spectrane
