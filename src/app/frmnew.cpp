#include "app/frmnew.h"

#include <QButtonGroup>
#include <QGroupBox>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

#include "app/ground/commandicon.h"
#include "app/ground/commands.h"
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

struct NewChoice {
  int FileType;
  const char* Option;
  int Command;  ///< its caption and icon are the option's
  int DescriptionText;
};

constexpr std::array kNewChoices{
    NewChoice{6, "BasicOption", kNewBasic, 1084}, NewChoice{1, "QuaOption", kNewQua, 1085},
    NewChoice{2, "TimeScanOption", kNewTS, 1086}, NewChoice{3, "WaveLengthOption", kNewWLS, 1087},
    NewChoice{4, "MultiOption", kNewMulti, 1088}, NewChoice{5, "DNAOption", kNewDNA, 1089},
};

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
  for (const NewChoice& choice : kNewChoices) {
    auto* const option = new QRadioButton(this);
    parts.Finish(*option, choice.Option, Caption(choice.Command));
    option->setAccessibleDescription(Words(choice.DescriptionText));
    option->setIcon(CommandIcon(choice.Command));
    option->setIconSize(QSize(kOptionIcon, kOptionIcon));
    option->setEnabled(frame_.CanCreate(choice.FileType));
    option->installEventFilter(this);
    options_->addButton(option, choice.FileType);
    column->addWidget(option);
  }
  return column;
}

QBoxLayout* FrmNew::MakeDescription() {
  QStringList texts;
  for (const NewChoice& choice : kNewChoices) texts.append(Words(choice.DescriptionText));
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
  if (option == nullptr || !option->isEnabled()) {
    const QList<QAbstractButton*> all = options_->buttons();
    const auto first =
        std::find_if(all.begin(), all.end(), [](const QAbstractButton* each) { return each->isEnabled(); });
    option = first == all.end() ? nullptr : *first;
  }
  if (option != nullptr) {
    option->setChecked(true);
    option->setFocus();
  } else {
    findChild<QPushButton*>(QStringLiteral("OKCmd"))->setEnabled(false);
  }
}

void FrmNew::Describe(int fileType) {
  const auto choice = std::find_if(kNewChoices.begin(), kNewChoices.end(),
                                   [fileType](const NewChoice& c) { return c.FileType == fileType; });
  description_->setText(Words(choice->DescriptionText));
  picture_->setPixmap(
      CommandIcon(choice->Command).pixmap(QSize(kLargePicture, kLargePicture), devicePixelRatioF()));
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
