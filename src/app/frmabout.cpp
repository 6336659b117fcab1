#include "app/frmabout.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

#include "app/ground/commandicon.h"
#include "app/ground/dialogparts.h"
#include "app/ground/words.h"
#include "base/version.h"

namespace spectrane {
namespace {

constexpr int kEditionText = 904;
constexpr int kEMailText = 908;
constexpr int kPhoneText = 909;
constexpr int kWebSiteText = 910;

constexpr int kPictureMs = 1000;
constexpr int kPictureCount = 3;
constexpr QSize kPictureRoom(384, 168);  // [logical pixels]
constexpr int kIconSize = 40;
constexpr double kAboutTitleScale = 1.4;

QLabel* MakeLabel(const char* name, QWidget* parent) {
  auto* const label = new QLabel(parent);
  label->setObjectName(QLatin1String(name));
  return label;
}

}  // namespace

FrmAbout::FrmAbout(MainWindow& frame, const Brand& brand)
    : QDialog(&frame.Frame()),
      brand_(brand),
      logo_(MakeLabel("LogoPic", this)),
      icon_(new QToolButton(this)) {
  DialogParts parts(*this, "FrmAbout", QStringLiteral("About..."));
  title_ = MakeLabel("LabelTitle", this);
  company_ = MakeLabel("LabelCompany", this);
  edition_ = MakeLabel("LabelEdition", this);
  toolkit_ = MakeLabel("LabelToolkit", this);
  folder_ = MakeLabel("LabelFolder", this);
  const QString settings = QStringLiteral("Settings: ") + QString::fromStdString(frame.Settings().Path());
  folder_->setText(folder_->fontMetrics().elidedText(settings, Qt::ElideMiddle, kPictureRoom.width()));
  folder_->setToolTip(settings);
  folder_->setAccessibleName(settings);
  folder_->setTextFormat(Qt::PlainText);
  folder_->setForegroundRole(QPalette::PlaceholderText);
  QFont large = title_->font();
  large.setPointSizeF(large.pointSizeF() * kAboutTitleScale);
  large.setBold(true);
  title_->setFont(large);
  toolkit_->setForegroundRole(QPalette::PlaceholderText);

  logo_->setFixedSize(kPictureRoom);
  logo_->setAlignment(Qt::AlignCenter);
  icon_->setObjectName(QStringLiteral("ImageIcon"));
  icon_->setIcon(ApplicationIcon());
  icon_->setIconSize(QSize(kIconSize, kIconSize));
  icon_->setAutoRaise(true);
  connect(icon_, &QToolButton::clicked, this, &FrmAbout::Load);

  auto* const names = new QVBoxLayout;
  names->addWidget(title_);
  names->addWidget(company_);
  auto* const head = new QHBoxLayout;
  head->addWidget(icon_, 0, Qt::AlignTop);
  head->addLayout(names, 1);
  auto* const text = new QVBoxLayout;
  text->addLayout(head);
  text->addSpacing(fontMetrics().lineSpacing() / 2);
  text->addWidget(edition_);
  text->addLayout(MakeContacts());
  text->addSpacing(fontMetrics().lineSpacing() / 2);
  text->addWidget(toolkit_);
  text->addWidget(folder_);
  auto* const all = new QVBoxLayout(this);
  all->addWidget(logo_, 0, Qt::AlignHCenter);
  all->addLayout(text);
  all->addLayout(parts.OKAlone());
  all->setSizeConstraint(QLayout::SetFixedSize);

  timer_.setObjectName(QStringLiteral("TimerPic"));
  connect(&timer_, &QTimer::timeout, this, [this] { ShowPicture((picture_ + 1) % kPictureCount); });
  Load();
  findChild<QPushButton*>(QStringLiteral("OKCmd"))->setFocus();
}

QFormLayout* FrmAbout::MakeContacts() {
  struct Row {
    int TextId;
    const char* Name;
    const char* Value;
  };
  const Row rows[] = {{kEMailText, "LabelEMail", brand_.Contact.EMail},
                      {kPhoneText, "LabelPhone", brand_.Contact.Phone},
                      {kWebSiteText, "LabelWebSite", brand_.Contact.WebSite}};
  auto* const form = new QFormLayout;
  form->setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  form->setHorizontalSpacing(2 * fontMetrics().averageCharWidth());
  for (const Row& row : rows) {
    QLabel* const value = MakeLabel(row.Name, this);
    value->setText(QString::fromUtf8(row.Value));
    value->setTextFormat(Qt::PlainText);
    value->setAccessibleName(Caption(row.TextId));
    value->setAccessibleDescription(value->text());
    value->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    form->addRow(new QLabel(Caption(row.TextId), this), value);
  }
  return form;
}

void FrmAbout::Load() {
  title_->setText(QString::fromUtf8(brand_.Title) + u' ' + QString::fromStdString(VersionText()));
  company_->setText(Words(brand_.CompanyTextId));
  company_->setHidden(company_->text().isEmpty());
  edition_->setText(Words(kEditionText));
  edition_->setHidden(edition_->text().isEmpty());
  toolkit_->setText(QStringLiteral("Qt ") + QString::fromLatin1(qVersion()));
  logo_->setAccessibleName(QString::fromUtf8(brand_.Title));
  icon_->setAccessibleName(title_->text());
  timer_.start(kPictureMs);
  ShowPicture(0);
}

void FrmAbout::ShowPicture(int index) {
  picture_ = index;
  const QString name = QStringLiteral("about%1").arg(index + 1);
  logo_->setPixmap(Picture(name, kPictureRoom, devicePixelRatioF()));
}

}  // namespace spectrane
