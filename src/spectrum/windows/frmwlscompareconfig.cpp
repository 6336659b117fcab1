#include "spectrum/windows/frmwlscompareconfig.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

#include "app/ground/colourbutton.h"
#include "app/ground/dialogparts.h"
#include "app/ground/mainwindow.h"
#include "app/ground/words.h"
#include "output/colours.h"
#include "spectrum/windows/scalefields.h"
#include "spectrum/windows/spectrumrows.h"

namespace spectrane {
namespace {

constexpr int kCompareConfigTitle = 1140;
constexpr int kDisplayTitle = 1207;
constexpr int kGridText = 959;
constexpr int kScaleColourText = 960;
constexpr int kDataTableText = 1205;
constexpr int kCompareOKText = 1149;
constexpr int kCompareCancelText = 1150;

/// The same in every language.
QString CompareFilter() {
  return QString::fromUtf8("波长扫描文档(*.wls)|*.wls|所有文件(*.*)|*.*");
}

}  // namespace

FrmWLSCompareConfig::FrmWLSCompareConfig(MainWindow& frame, const CompareSettings& settings)
    : QDialog(&frame.Frame()),
      frame_(frame),
      settings_(settings),
      rows_(new SpectrumRows(frame, *this, {kMostCompared, true, "Label", "PicColor", {}, CompareFilter()})),
      scale_(new ScaleFields(frame, *this, settings.Option)) {
  DialogParts parts(*this, "FrmWLSCompareConfig", Caption(kCompareConfigTitle));
  auto* const columns = new QHBoxLayout;
  columns->addWidget(rows_->Build(parts, settings.FileName, settings.CurveColor));
  auto* const right = new QVBoxLayout;
  right->addWidget(scale_->BuildMode(parts));
  right->addWidget(scale_->BuildScale(parts));
  right->addWidget(scale_->BuildRange(parts));
  right->addWidget(BuildDisplay(parts));
  right->addStretch();
  columns->addLayout(right);
  auto* const all = new QVBoxLayout(this);
  all->addLayout(columns);
  all->addWidget(scale_->Remark());
  all->addLayout(parts.OKAndCancel(kCompareOKText, kCompareCancelText));
  all->setSizeConstraint(QLayout::SetFixedSize);
}

QGroupBox* FrmWLSCompareConfig::BuildDisplay(DialogParts& parts) {
  auto* const group = new QGroupBox(Caption(kDisplayTitle), this);
  group->setObjectName(QStringLiteral("FrameDisplay"));
  auto* const column = new QVBoxLayout(group);
  grid_ = new QCheckBox(group);
  parts.Finish(*grid_, "CheckGrid", Caption(kGridText));
  grid_->setChecked(settings_.GridEnable);
  column->addWidget(grid_);
  dataTable_ = new QCheckBox(group);
  parts.Finish(*dataTable_, "CheckDataTable", Caption(kDataTableText));
  dataTable_->setChecked(settings_.DataTableEnable);
  column->addWidget(dataTable_);
  scaleColour_ = new ColourButton(frame_, Caption(kScaleColourText), group);
  scaleColour_->SetColour(ColourOf(settings_.ScaleColor));
  auto* const form = new QFormLayout;
  form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
  QLabel* const label = parts.Finish(static_cast<QWidget&>(*scaleColour_), "PictureScale", "LabelScaleColor",
                                     Caption(kScaleColourText));
  form->addRow(label, scaleColour_);
  column->addLayout(form);
  return group;
}

void FrmWLSCompareConfig::accept() {
  if (!scale_->Take(settings_.Option)) return;
  rows_->Take(settings_.FileName, settings_.CurveColor);
  settings_.GridEnable = grid_->isChecked();
  settings_.DataTableEnable = dataTable_->isChecked();
  settings_.ScaleColor = NumberOf(scaleColour_->Colour());
  QDialog::accept();
}

}  // namespace spectrane
