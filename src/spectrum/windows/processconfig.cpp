#include "spectrum/windows/processconfig.h"

#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

#include "app/ground/dialogparts.h"
#include "app/ground/words.h"
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
      shown_(frame, settings_.Shown),
      rows_(new SpectrumRows(frame, *this, RowsOf(plan))),
      scale_(new ScaleFields(frame, *this, settings.Shown.Option)) {
  DialogParts parts(*this, plan.ConfigName, Caption(plan.ConfigTitleTextId));
  auto* const all = new QVBoxLayout(this);
  all->addWidget(rows_->Build(parts, settings.FileName, settings.SourceColor));
  all->addLayout(
      GroupColumns({{scale_->BuildMode(parts), scale_->BuildScale(parts), scale_->BuildRange(parts)},
                    {BuildColours(parts), shown_.PeakGroup(parts)}}));
  all->addWidget(scale_->Remark());
  all->addLayout(parts.OKAndCancel());
  all->setSizeConstraint(QLayout::SetFixedSize);
  if (plan.Sources == 1) scale_->SetFocus();
}

QGroupBox* ProcessConfig::BuildColours(DialogParts& parts) {
  QGroupBox* const group = parts.Group("FrameDisplay", kColoursTitle);
  auto* const column = new QVBoxLayout(group);
  shown_.AddCheck(parts, *column, "CheckGrid", 959, &ScanSettings::GridEnable);
  shown_.AddCheck(parts, *column, "CheckDataTable", 1205, &ScanSettings::DataTableEnable);
  shown_.AddCurveColours(parts, *column,
                         {{"PictureResult", "LabelResultColor", kResultText, &ScanSettings::CurveColor},
                          {"PictureScale", "LabelScaleColor", 960, &ScanSettings::ScaleColor}},
                         group);
  return group;
}

void ProcessConfig::accept() {
  if (!scale_->Take(settings_.Shown.Option)) return;
  shown_.Take(settings_.Shown);
  rows_->Take(settings_.FileName, settings_.SourceColor);
  QDialog::accept();
}

}  // namespace spectrane
