#include "spectrum/windows/processconfig.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

#include "app/ground/colourbutton.h"
#include "app/ground/dialogparts.h"
#include "app/ground/words.h"
#include "output/colours.h"
#include "spectrum/windows/scalefields.h"
#include "spectrum/windows/spectrumrows.h"

namespace spectrane {
namespace {

constexpr int kSpectrumFilter = 928;
constexpr int kResultText = 1167;
constexpr int kColoursTitle = 1168;
constexpr int kFileText = 1175;

/// Of what was handed over the name stands there; files can be chosen.
SpectrumRowsPlan RowsOf(const ProcessPlan& plan) {
  if (plan.Sources == 1) return {1, false, "LabelFile", "PictureCurve", Caption(kFileText), {}};
  return {plan.Sources, true, "LabelFile", "PictureCurve", Caption(kFileText), Words(kSpectrumFilter)};
}

}  // namespace

ProcessConfig::ProcessConfig(MainWindow& frame, const ProcessPlan& plan, const ProcessSettings& settings)
    : QDialog(&frame.Frame()),
      frame_(frame),
      plan_(plan),
      settings_(settings),
      rows_(new SpectrumRows(frame, *this, RowsOf(plan))),
      scale_(new ScaleFields(frame, *this, settings.Shown.Option)) {
  DialogParts parts(*this, plan.ConfigName, Caption(plan.ConfigTitleTextId));
  auto* const all = new QVBoxLayout(this);
  all->addWidget(rows_->Build(parts, settings.FileName, settings.SourceColor));
  auto* const columns = new QHBoxLayout;
  auto* const left = new QVBoxLayout;
  left->addWidget(scale_->BuildMode(parts));
  left->addWidget(scale_->BuildScale(parts));
  left->addWidget(scale_->BuildRange(parts));
  left->addStretch();
  auto* const right = new QVBoxLayout;
  right->addWidget(BuildColours(parts));
  right->addWidget(BuildPeaks(parts));
  right->addStretch();
  columns->addLayout(left);
  columns->addLayout(right);
  all->addLayout(columns);
  all->addWidget(scale_->Remark());
  all->addLayout(parts.OKAndCancel());
  all->setSizeConstraint(QLayout::SetFixedSize);
  if (plan.Sources == 1) scale_->SetFocus();
}

QGroupBox* ProcessConfig::BuildColours(DialogParts& parts) {
  struct Row {
    const char* Name;
    const char* LabelName;
    int TextId;
    std::int32_t ScanSettings::*Field;
  };
  constexpr Row kRows[] = {{"PictureResult", "LabelResultColor", kResultText, &ScanSettings::CurveColor},
                           {"PictureScale", "LabelScaleColor", 960, &ScanSettings::ScaleColor},
                           {"PictureMark", "LabelMarkColor", 1197, &ScanSettings::MarkColor},
                           {"PicturePeak", "LabelPeakColor", 1198, &ScanSettings::PeakColor},
                           {"PictureValley", "LabelValleyColor", 1199, &ScanSettings::ValleyColor}};
  auto* const group = new QGroupBox(Caption(kColoursTitle), this);
  group->setObjectName(QStringLiteral("FrameDisplay"));
  auto* const column = new QVBoxLayout(group);
  AddCheck(parts, *column, "CheckGrid", 959, &ScanSettings::GridEnable);
  AddCheck(parts, *column, "CheckDataTable", 1205, &ScanSettings::DataTableEnable);
  auto* const form = new QFormLayout;
  for (const Row& row : kRows) {
    auto* const button = new ColourButton(frame_, Caption(row.TextId), group);
    button->SetColour(ColourOf(settings_.Shown.*row.Field));
    QLabel* const label =
        parts.Finish(static_cast<QWidget&>(*button), row.Name, row.LabelName, Caption(row.TextId));
    form->addRow(label, button);
    colours_.push_back({button, row.Field});
  }
  column->addLayout(form);
  return group;
}

QGroupBox* ProcessConfig::BuildPeaks(DialogParts& parts) {
  auto* const group = new QGroupBox(Caption(1200), this);
  group->setObjectName(QStringLiteral("FramePeak"));
  auto* const column = new QVBoxLayout(group);
  AddCheck(parts, *column, "CheckPeak", 1201, &ScanSettings::PeakEnable);
  AddCheck(parts, *column, "CheckValley", 1202, &ScanSettings::ValleyEnable);
  AddCheck(parts, *column, "CheckDetailPeak", 1203, &ScanSettings::PeakDetailEnable);
  AddCheck(parts, *column, "CheckDetailValley", 1204, &ScanSettings::ValleyDetailEnable);
  return group;
}

void ProcessConfig::AddCheck(DialogParts& parts, QVBoxLayout& column, const char* name, int textId,
                             bool ScanSettings::*field) {
  auto* const box = new QCheckBox(this);
  parts.Finish(*box, name, Caption(textId));
  box->setChecked(settings_.Shown.*field);
  column.addWidget(box);
  checks_.push_back({box, field});
}

void ProcessConfig::accept() {
  if (!scale_->Take(settings_.Shown.Option)) return;
  for (const Check& check : checks_) settings_.Shown.*check.Field = check.Box->isChecked();
  for (const Colour& colour : colours_) settings_.Shown.*colour.Field = NumberOf(colour.Button->Colour());
  rows_->Take(settings_.FileName, settings_.SourceColor);
  QDialog::accept();
}

}  // namespace spectrane
