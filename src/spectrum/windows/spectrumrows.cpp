#include "spectrum/windows/spectrumrows.h"

#include <QDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

#include <utility>

#include "app/ground/colourbutton.h"
#include "app/ground/dialogparts.h"
#include "app/ground/mainwindow.h"
#include "app/ground/words.h"
#include "output/colours.h"
#include "spectrum/windows/spectrumfield.h"

namespace spectrane {
namespace {

constexpr int kSelectFileTitle = 1206;
constexpr int kOpenText = 1176;
constexpr int kRowColourText = 961;

}  // namespace

SpectrumRows::SpectrumRows(MainWindow& frame, QDialog& dialog, SpectrumRowsPlan plan)
    : QObject(&dialog), frame_(frame), dialog_(dialog), plan_(std::move(plan)) {}

QByteArray SpectrumRows::NameOf(const char* name, std::size_t number) const {
  return plan_.Count == 1 ? QByteArray(name) : QByteArray(name) + QByteArray::number(number);
}

QGroupBox* SpectrumRows::Build(DialogParts& parts, std::span<const std::string> names,
                               std::span<const std::int32_t> colours) {
  auto* const group = new QGroupBox(Caption(kSelectFileTitle), &dialog_);
  group->setObjectName(QStringLiteral("FrameFile"));
  auto* const grid = new QGridLayout(group);
  for (std::size_t i = 0; i < plan_.Count; ++i) {
    const auto row = static_cast<int>(i);
    const QString number = QString::number(row + 1);
    auto* const field = new SpectrumField(group);
    field->SetFile(QString::fromStdString(names[i]));
    field->setReadOnly(!plan_.Open);
    const bool numbered = plan_.Caption.isEmpty();
    const QString caption = numbered           ? number
                            : plan_.Count == 1 ? plan_.Caption
                                               : plan_.Caption + u' ' + number;
    QLabel* const label = parts.Finish(*field, NameOf("TextFileName", i).constData(),
                                       NameOf(plan_.LabelName, numbered ? i + 1 : i).constData(), caption);
    grid->addWidget(label, row, 0);
    grid->addWidget(field, row, 1);
    fields_.push_back(field);
    if (plan_.Open) AddOpen(parts, group, i);
    auto* const colour = new ColourButton(frame_, Caption(kRowColourText), group);
    colour->SetColour(ColourOf(colours[i]));
    colour->setAutoDefault(false);
    colour->setObjectName(QLatin1String(NameOf(plan_.ColourName, i)));
    colour->setAccessibleName(PlainWords(kRowColourText) + u' ' + number);
    grid->addWidget(colour, row, 3);
    colours_.push_back(colour);
  }
  return group;
}

void SpectrumRows::AddOpen(DialogParts& parts, QGroupBox* group, std::size_t row) {
  SpectrumField* const field = fields_[row];
  auto* const open = new QPushButton(group);
  // Return in a field confirms the dialog.
  open->setAutoDefault(false);
  parts.Finish(*open, NameOf("CmdOpen", row).constData(), Caption(kOpenText));
  open->setAccessibleName(PlainWords(kOpenText) + u' ' + QString::number(row + 1));
  static_cast<QGridLayout*>(group->layout())->addWidget(open, static_cast<int>(row), 2);
  connect(open, &QPushButton::clicked, field, [this, field] { field->Choose(frame_, plan_.Filter); });
  connect(field, &SpectrumField::Dropped, this, [this, row](const QStringList& paths) { Fill(row, paths); });
}

void SpectrumRows::Fill(std::size_t first, const QStringList& paths) {
  for (const QString& path : paths) {
    if (first >= fields_.size()) return;
    fields_[first++]->SetFile(path);
  }
}

void SpectrumRows::Take(std::span<std::string> names, std::span<std::int32_t> colours) const {
  for (std::size_t i = 0; i < plan_.Count; ++i) {
    if (plan_.Open) names[i] = fields_[i]->File().toStdString();
    colours[i] = NumberOf(colours_[i]->Colour());
  }
}

}  // namespace spectrane
