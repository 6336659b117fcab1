#include "app/ground/dialogparts.h"

#include <QAbstractItemView>
#include <QButtonGroup>
#include <QComboBox>
#include <QDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

#include <algorithm>

#include "app/ground/languagefont.h"
#include "app/ground/mainwindow.h"
#include "app/ground/words.h"
#include "base/numbers.h"

namespace spectrane {

DialogParts::DialogParts(QDialog& dialog, const char* name, const QString& title) : dialog_(dialog) {
  ApplyLanguageFont(dialog);
  dialog.setObjectName(QLatin1String(name));
  dialog.setWindowTitle(title);
  dialog.setAccessibleName(title);
}

void DialogParts::Finish(QAbstractButton& button, const char* name, const QString& caption) {
  button.setObjectName(QLatin1String(name));
  button.setAccessibleName(PlainCaption(caption));
  button.setText(Keyed(caption));
}

QLabel* DialogParts::Finish(QWidget& field, const char* name, const char* labelName, const QString& caption) {
  field.setObjectName(QLatin1String(name));
  field.setAccessibleName(PlainCaption(caption));
  if (auto* const list = qobject_cast<QComboBox*>(&field)) {
    list->view()->setObjectName(list->objectName() + QStringLiteral("View"));
    list->view()->setAccessibleName(list->accessibleName());
  }
  auto* const label = new QLabel(Keyed(caption), &dialog_);
  label->setObjectName(QLatin1String(labelName));
  label->setBuddy(&field);
  return label;
}

QString DialogParts::Keyed(const QString& caption) {
  return WithAccessKey(caption, usedKeys_);
}

QGroupBox* DialogParts::Group(const char* name, int titleTextId) {
  auto* const group = new QGroupBox(Caption(titleTextId), &dialog_);
  group->setObjectName(QLatin1String(name));
  return group;
}

void DialogParts::AddRow(QGridLayout& grid, QWidget& field, const char* name, const char* labelName,
                         int textId, QLabel* unit) {
  // A grid without any has a first row all the same.
  const int row = grid.count() == 0 ? 0 : grid.rowCount();
  grid.addWidget(Finish(field, name, labelName, Caption(textId)), row, 0);
  grid.addWidget(&field, row, 1);
  grid.addWidget(unit, row, 2);
  // The groups of a column end their fields at one place, whatever units they have or change to.
  unit->setMinimumWidth(unit->fontMetrics().horizontalAdvance(QStringLiteral("Abs")));
}

void DialogParts::AddOptions(QBoxLayout& column, QButtonGroup& options,
                             std::initializer_list<ButtonWords> words, int firstId) {
  for (const ButtonWords& each : words) {
    auto* const option = new QRadioButton(column.parentWidget());
    Finish(*option, each.Name, Caption(each.TextId));
    options.addButton(option, firstId++);
    column.addWidget(option);
  }
}

QHBoxLayout* DialogParts::OKAndCancel(int okText, int cancelText) {
  QPushButton* const ok = MakeButton("OKCmd", okText);
  QPushButton* const cancel = MakeButton("CancelCmd", cancelText);
  ok->setDefault(true);
  QObject::connect(ok, &QPushButton::clicked, &dialog_, &QDialog::accept);
  QObject::connect(cancel, &QPushButton::clicked, &dialog_, &QDialog::reject);
  return RightAligned({ok, cancel});
}

QHBoxLayout* DialogParts::OKAlone() {
  QPushButton* const ok = MakeButton("OKCmd", kOKText);
  ok->setDefault(true);
  QObject::connect(ok, &QPushButton::clicked, &dialog_, &QDialog::accept);
  return RightAligned({ok});
}

QPushButton* DialogParts::MakeButton(const char* name, int textId) {
  auto* const button = new QPushButton(&dialog_);
  Finish(*button, name, Caption(textId));
  return button;
}

QHBoxLayout* DialogParts::ButtonRow(std::initializer_list<ButtonWords> buttons) {
  QList<QPushButton*> made;
  for (const ButtonWords& words : buttons) made.append(MakeButton(words.Name, words.TextId));
  made.first()->setDefault(true);
  return RightAligned(made);
}

QHBoxLayout* DialogParts::RightAligned(const QList<QPushButton*>& buttons) {
  int width = 0;
  for (QPushButton* button : buttons) {
    button->ensurePolished();
    width = std::max(width, button->sizeHint().width());
  }
  auto* const row = new QHBoxLayout;
  row->addStretch();
  for (QPushButton* button : buttons) {
    button->setMinimumWidth(width);
    row->addWidget(button);
  }
  return row;
}

QHBoxLayout* GroupColumns(std::initializer_list<std::vector<QGroupBox*>> columns) {
  auto* const all = new QHBoxLayout;
  for (const std::vector<QGroupBox*>& groups : columns) {
    auto* const column = new QVBoxLayout;
    for (QGroupBox* group : groups) column->addWidget(group);
    column->addStretch();
    all->addLayout(column);
  }
  return all;
}

void FillList(QComboBox& list, const QStringList& rows, int row) {
  list.addItems(rows);
  list.setCurrentIndex(row >= 0 && row < list.count() ? row : -1);
}

void LetTabReachChosen(std::span<QRadioButton* const> options) {
  for (QRadioButton* option : options)
    option->setFocusPolicy(option->isChecked() ? Qt::StrongFocus : Qt::ClickFocus);
}

void KeepRoomFor(QLabel& label, const QStringList& texts, int characters) {
  label.setWordWrap(true);
  label.ensurePolished();
  const QFontMetrics metrics = label.fontMetrics();
  const int width = metrics.averageCharWidth() * characters;
  QSize room(width, 0);
  for (const QString& text : texts) {
    // A word that is wider than the line widens it.
    const QRect needed = metrics.boundingRect(QRect(0, 0, width, 0), Qt::TextWordWrap, text);
    room = room.expandedTo(needed.size());
  }
  const int frame = 2 * (label.margin() + label.frameWidth());
  label.setMinimumSize(room + QSize(frame, frame + metrics.lineSpacing() / 2));
}

QString WavelengthRangeText(double lowest, double highest) {
  constexpr const char* kRangeFormat = "0.0";
  return QString::fromStdString(Format(lowest, kRangeFormat)) + QStringLiteral(" \u2013 ") +
         QString::fromStdString(Format(highest, kRangeFormat)) + QStringLiteral(" nm");
}

void RemarkOnSettings(MainWindow& frame) {
  const std::string& problem = frame.Settings().Problem();
  if (!problem.empty()) frame.Display().SetRemark(problem);
}

}  // namespace spectrane
