#pragma once

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include <algorithm>

#include "app/dialogfixture.h"
#include "app/ground/words.h"
#include "modes/windows/frmquaconfig.h"

namespace spectrane::testing_windows {

/// All number fields of the quantitation options, in reading order.
inline const char* const kNumberFields[] = {"K0Text",          "K1Text",
                                            "K2Text",          "K3Text",
                                            "WaveLength1Text", "WaveLengthPara1Text",
                                            "WaveLength2Text", "WaveLengthPara2Text",
                                            "WaveLength3Text", "WaveLengthPara3Text"};

/// The options of the quantitation over settings of a test.
class QuaConfig : public DialogFixture {
 protected:
  /// Opens the options on Given, does something in them, and gives whether they were confirmed; what they say
  /// then is in Result.
  bool Open(const std::function<void(QWidget& dialog)>& act) {
    bool opened = false;
    InDialog("FrmQuaConfig", [&](QWidget& dialog) {
      opened = true;
      act(dialog);
    });
    FrmQuaConfig dialog(Main, Given, Stake);
    const int result = dialog.exec();
    Result = dialog.Settings();
    EXPECT_TRUE(opened);
    return result == QDialog::Accepted;
  }
  /// Opens, does something, and confirms by the button; the dialog has to accept.
  void Confirm(const std::function<void(QWidget& dialog)>& act) {
    EXPECT_TRUE(Open([&](QWidget& dialog) {
      act(dialog);
      Click(dialog, "OKCmd");
    }));
  }
  static void Type(QWidget& dialog, const char* name, const char* text) {
    auto* const field = Find<QLineEdit>(dialog, name);
    ASSERT_TRUE(field->isEnabled()) << name;
    QTest::mouseClick(field, Qt::LeftButton);
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(field, Qt::Key_Delete);
    for (const QChar c : QString::fromUtf8(text)) {
      if (c.unicode() < 0x80) {
        QTest::keyClick(field, c.toLatin1());
      } else {
        QTest::sendKeyEvent(QTest::Click, field, Qt::Key_unknown, QString(c), Qt::NoModifier);
      }
    }
  }
  static void Choose(QWidget& dialog, const char* name, int row) {
    auto* const list = Find<QComboBox>(dialog, name);
    ASSERT_TRUE(list->isEnabled()) << name;
    list->setFocus();
    // Home and End belong to the text of an editable list.
    while (list->currentIndex() > row) QTest::keyClick(list, Qt::Key_Up);
    while (list->currentIndex() < row) QTest::keyClick(list, Qt::Key_Down);
  }
  static int Row(QWidget& dialog, const char* name) { return Find<QComboBox>(dialog, name)->currentIndex(); }
  static std::string TextOf(QWidget& dialog, const char* name) {
    return Find<QLineEdit>(dialog, name)->text().toStdString();
  }
  static QString Formula(QWidget& dialog) { return Find<QLabel>(dialog, "LabelFormula")->text(); }
  static std::string EnabledNumbers(QWidget& dialog) {
    std::string names;
    for (const char* name : kNumberFields) {
      const auto* const field = Find<QLineEdit>(dialog, name);
      const auto labels = dialog.findChildren<QLabel*>();
      const auto label = std::ranges::find_if(labels, [&](QLabel* one) { return one->buddy() == field; });
      EXPECT_TRUE(label != labels.end() && (*label)->isEnabled() == field->isEnabled()) << name;
      if (field->isEnabled()) names += std::string(names.empty() ? "" : " ") + name;
    }
    return names;
  }
  std::string StoredHere(const char* key) const { return Stored(kQuantitationSection, key); }

  QuantitationSettings Given;
  QuantitationSettings Result;
  FrmQuaConfig::RecordsAtStake Stake;
};

/// Two wavelengths and typed coefficients of the highest order: most fields are in use.
inline QuantitationSettings Typed() {
  QuantitationSettings settings;
  settings.FittingMethod = 3;
  settings.CurveItem = 2;
  settings.InputK = {-0.5, 0.1, 1e-7, 123456789.125};
  settings.SampleNumber = 7;
  settings.WaveLengthNumber = 2;
  settings.WaveLengthList = {260.0, 280.04, 320.0};
  settings.WaveLengthPara = {1.55, -0.76, 0.25};
  settings.ConcUnit = "ppm";
  return settings;
}

}  // namespace spectrane::testing_windows
