#include "app/frmnew.h"

#include <QButtonGroup>
#include <QGroupBox>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <algorithm>
#include <vector>

#include "app/documentkinds.h"
#include "app/ground/commandicon.h"
#include "app/ground/dialogparts.h"
#include "app/ground/words.h"

namespace spectrane {
namespace {

constexpr int kNewTitle = 1079;
constexpr int kOptionsCaption = 1080;
constexpr int kDescriptionCaption = 1081;
constexpr int kNewText = 1082;
constexpr int kCloseText = 1083;

constexpr int kOptionIcon = 24;  // [logical pixels]
constexpr int kLargePicture = 64;
constexpr int kDescriptionCharacters = 42;

/// The kinds of which a new document can be made.
std::vector<DocumentKind> NewKinds() {
  std::vector<DocumentKind> kinds;
  for (const DocumentKind& kind : DocumentKinds()) {
    if (kind.NewFileType != 0) kinds.push_back(kind);
  }
  return kinds;
}

const SettingRow<WindowSettings>& TypeRow() {
  return WindowSettingRow("New File", "File Type");
}

}  // namespace

FrmNew::FrmNew(MainWindow& frame)
    : QDialog(&frame.Frame()),
      frame_(frame),
      options_(new QButtonGroup(this)),
      picture_(new QLabel(this)),
      description_(new QLabel(this)) {
  DialogParts parts(*this, "FrmNew", Caption(kNewTitle));
  auto* const kinds = new QGroupBox(Caption(kOptionsCaption), this);
  kinds->setObjectName(QStringLiteral("FrameOption"));
  kinds->setLayout(MakeOptions(parts));
  auto* const about = new QGroupBox(Caption(kDescriptionCaption), this);
  about->setObjectName(QStringLiteral("FrameDescription"));
  about->setLayout(MakeDescription());
  auto* const upper = new QHBoxLayout;
  upper->addWidget(kinds);
  upper->addWidget(about);

  auto* const all = new QVBoxLayout(this);
  all->addLayout(upper);
  all->addLayout(parts.OKAndCancel(kNewText, kCloseText));
  all->setSizeConstraint(QLayout::SetFixedSize);

  connect(options_, &QButtonGroup::idToggled, this, [this](int fileType, bool chosen) {
    if (chosen) Describe(fileType);
  });
  SelectStored();
  connect(options_, &QButtonGroup::idClicked, this, &FrmNew::Store);
}

void FrmNew::Run(MainWindow& frame) {
  int fileType = 0;
  {
    FrmNew guide(frame);
    if (guide.exec() != QDialog::Accepted) return;
    fileType = guide.FileType();
  }
  frame.NewFile(fileType);
}

int FrmNew::FileType() const {
  return std::max(options_->checkedId(), 0);
}

QBoxLayout* FrmNew::MakeOptions(DialogParts& parts) {
  auto* const column = new QVBoxLayout;
  for (const DocumentKind& kind : NewKinds()) {
    auto* const option = new QRadioButton(this);
    parts.Finish(*option, kind.OptionName, Caption(kind.Command));
    option->setAccessibleDescription(Words(kind.DescriptionTextId));
    option->setIcon(CommandIcon(kind.Command));
    option->setIconSize(QSize(kOptionIcon, kOptionIcon));
    option->installEventFilter(this);
    options_->addButton(option, kind.NewFileType);
    column->addWidget(option);
  }
  return column;
}

QBoxLayout* FrmNew::MakeDescription() {
  QStringList texts;
  for (const DocumentKind& kind : NewKinds()) texts.append(Words(kind.DescriptionTextId));
  KeepRoomFor(*description_, texts, kDescriptionCharacters);
  description_->setObjectName(QStringLiteral("LabelDescription"));
  description_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  picture_->setObjectName(QStringLiteral("PicKind"));
  picture_->setMinimumSize(kLargePicture, kLargePicture);
  auto* const column = new QVBoxLayout;
  column->addWidget(picture_, 0, Qt::AlignLeft);
  column->addWidget(description_);
  column->addStretch();
  return column;
}

void FrmNew::SelectStored() {
  WindowSettings& window = frame_.Window();
  TakeSetting(TypeRow(), frame_.Settings().GetSetting(TypeRow().Section, TypeRow().Key), window);
  QAbstractButton* option = options_->button(window.NewFileType);
  if (option == nullptr) option = options_->buttons().constFirst();
  option->setChecked(true);
  option->setFocus();
}

void FrmNew::Describe(int fileType) {
  const DocumentKind* const kind = KindOfNewFile(fileType);
  description_->setText(Words(kind->DescriptionTextId));
  picture_->setPixmap(
      CommandIcon(kind->Command).pixmap(QSize(kLargePicture, kLargePicture), devicePixelRatioF()));
}

void FrmNew::Store(int fileType) {
  frame_.Window().NewFileType = fileType;
  if (!StoreWindowSetting(frame_.Settings(), TypeRow().Section, TypeRow().Key, frame_.Window())) {
    RemarkOnSettings(frame_);
  }
}

bool FrmNew::eventFilter(QObject* watched, QEvent* event) {
  // The first of the two clicks has chosen the option.
  if (event->type() == QEvent::MouseButtonDblClick &&
      static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton &&
      static_cast<QWidget*>(watched)->isEnabled()) {
    accept();
    return true;
  }
  return QDialog::eventFilter(watched, event);
}

}  // namespace spectrane
