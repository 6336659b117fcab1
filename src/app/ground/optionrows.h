#pragma once

#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

#include <cstdint>
#include <span>
#include <vector>

#include "app/ground/colourbutton.h"
#include "app/ground/dialogparts.h"
#include "app/ground/mainwindow.h"
#include "app/ground/words.h"
#include "base/curvesettings.h"
#include "output/colours.h"

namespace spectrane {

/// Check boxes and colours of an option dialog, each with the field of the settings that it stands for.
template <typename Settings>
class OptionRows {
 public:
  struct ColourRow {
    const char* Name;
    const char* LabelName;
    int TextId;
    std::int32_t Settings::*Field;
  };

  /// Both must outlive this object; `settings` is what the controls begin with.
  OptionRows(MainWindow& frame, const Settings& settings) : frame_(frame), settings_(settings) {}

  QCheckBox* AddCheck(DialogParts& parts, QVBoxLayout& column, const char* name, int textId,
                      bool Settings::*field) {
    auto* const box = new QCheckBox;
    column.addWidget(box);
    parts.Finish(*box, name, Caption(textId));
    box->setChecked(settings_.*field);
    checks_.push_back({box, field});
    return box;
  }
  void AddColours(DialogParts& parts, QVBoxLayout& column, std::span<const ColourRow> rows, QWidget* parent) {
    auto* const form = new QFormLayout;
    for (const ColourRow& row : rows) {
      auto* const button = new ColourButton(frame_, Caption(row.TextId), parent);
      button->SetColour(ColourOf(settings_.*row.Field));
      QLabel* const label =
          parts.Finish(static_cast<QWidget&>(*button), row.Name, row.LabelName, Caption(row.TextId));
      form->addRow(label, button);
      colours_.push_back({button, row.Field});
    }
    column.addLayout(form);
  }
  // Of the windows with a curve, whose Settings are derived from CurveSettings:
  /// `first`, then the colours of the marks.
  void AddCurveColours(DialogParts& parts, QVBoxLayout& column, std::vector<ColourRow> first,
                       QWidget* parent) {
    first.push_back({"PictureMark", "LabelMarkColor", 1197, &Settings::MarkColor});
    first.push_back({"PicturePeak", "LabelPeakColor", 1198, &Settings::PeakColor});
    first.push_back({"PictureValley", "LabelValleyColor", 1199, &Settings::ValleyColor});
    AddColours(parts, column, first, parent);
  }
  QGroupBox* PeakGroup(DialogParts& parts) {
    QGroupBox* const group = parts.Group("FramePeak", 1200);
    auto* const column = new QVBoxLayout(group);
    AddCheck(parts, *column, "CheckPeak", 1201, &Settings::PeakEnable);
    AddCheck(parts, *column, "CheckValley", 1202, &Settings::ValleyEnable);
    AddCheck(parts, *column, "CheckDetailPeak", 1203, &Settings::PeakDetailEnable);
    AddCheck(parts, *column, "CheckDetailValley", 1204, &Settings::ValleyDetailEnable);
    return group;
  }
  /// The first checks of what a report holds; its layout is a column, for those that follow.
  QGroupBox* PrintGroup(DialogParts& parts) {
    constexpr int kPeaksText = 1306;
    QGroupBox* const group = parts.Group("FramePrint", 1304);
    auto* const column = new QVBoxLayout(group);
    AddCheck(parts, *column, "CheckPrintPicture", 1305, &Settings::PrintCurve);
    // An "and", not an access key.
    AddCheck(parts, *column, "CheckPrintPeakData", kPeaksText, &Settings::PrintPeakValley)
        ->setText(Caption(kPeaksText).replace(u'&', QStringLiteral("&&")));
    return group;
  }
  /// Puts what the controls say into their fields.
  void Take(Settings& settings) const {
    for (const Check& check : checks_) settings.*check.Field = check.Box->isChecked();
    for (const Colour& colour : colours_) settings.*colour.Field = NumberOf(colour.Button->Colour());
  }

 private:
  struct Check {
    QCheckBox* Box;
    bool Settings::*Field;
  };
  struct Colour {
    ColourButton* Button;
    std::int32_t Settings::*Field;
  };

  MainWindow& frame_;
  const Settings& settings_;
  std::vector<Check> checks_;
  std::vector<Colour> colours_;
};

}  // namespace spectrane
