#include <limits>

#include "modes/windows/quaconfigfixture.h"

namespace spectrane::testing_windows {
namespace {

TEST_F(QuaConfig, ControlsHaveTheirWords) {
  Open([](QWidget& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Quantitation Option"));
    const std::pair<const char*, const char*> labels[] = {{"LabelFittingMethod", "Fitting Methods"},
                                                          {"LabelConcUnit", "Conc.Unit"},
                                                          {"LabelSampleNumber", "Sample No."},
                                                          {"LabelK0Text", "K0"},
                                                          {"LabelK3Text", "K3"},
                                                          {"LabelWaveLengthNumber", "Wavelength No."},
                                                          {"LabelWaveLength1Text", "WL. 1 ="},
                                                          {"LabelWaveLength2Text", "WL. 2 ="},
                                                          {"LabelWaveLength3Text", "WL. 3 ="},
                                                          {"LabelWaveLengthPara1Text", "Parameter 1"},
                                                          {"LabelWaveLengthPara3Text", "Parameter 3"}};
    for (const auto& [name, text] : labels) {
      EXPECT_EQ(Find<QLabel>(dialog, name)->text().remove(u'&').toStdString(), text);
    }
    EXPECT_EQ(Find<QRadioButton>(dialog, "OptionStandardSample")->text().remove(u'&'), Words(1064));
    EXPECT_EQ(Find<QRadioButton>(dialog, "OptionCoefficients")->text().remove(u'&'), Words(1066));
    const auto* const methods = Find<QComboBox>(dialog, "ComboFittingMethod");
    ASSERT_EQ(methods->count(), 4);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(methods->itemText(i), Words(1073 + i));
    const auto* const numbers = Find<QComboBox>(dialog, "ComboSampleNumber");
    ASSERT_EQ(numbers->count(), 20);
    for (int i = 0; i < 20; ++i) EXPECT_EQ(numbers->itemText(i), QString::number(i + 1));
    const auto* const wavelengths = Find<QComboBox>(dialog, "ComboWaveLengthNumber");
    ASSERT_EQ(wavelengths->count(), 3);
    EXPECT_EQ(wavelengths->itemText(0), QStringLiteral("1  (Single Wavelength)"));
    EXPECT_EQ(wavelengths->itemText(2), QStringLiteral("3"));
    ExpectNamesEverywhere(dialog);
    EXPECT_EQ(AccessKeys(dialog).size(), 18);
    Press(dialog, Qt::Key_Escape);
  });
}

TEST_F(QuaConfig, DefaultsOfAFirstStart) {
  Open([](QWidget& dialog) {
    EXPECT_EQ(FocusName(), QStringLiteral("ComboFittingMethod"));
    EXPECT_EQ(Row(dialog, "ComboFittingMethod"), 0);
    EXPECT_TRUE(Find<QRadioButton>(dialog, "OptionStandardSample")->isChecked());
    EXPECT_EQ(Row(dialog, "ComboSampleNumber"), 1);
    EXPECT_EQ(TextOf(dialog, "ConcUnitText"), "mg/ml");
    EXPECT_EQ(Row(dialog, "ComboWaveLengthNumber"), 0);
    EXPECT_EQ(TextOf(dialog, "WaveLength1Text"), "546.0");
    EXPECT_EQ(TextOf(dialog, "WaveLengthPara1Text"), "1");
    EXPECT_EQ(EnabledNumbers(dialog), "WaveLength1Text WaveLengthPara1Text");
    EXPECT_TRUE(Find<QComboBox>(dialog, "ComboSampleNumber")->isEnabled());
    for (const char* name : kNumberFields) {
      EXPECT_TRUE(Find<QLineEdit>(dialog, name)->alignment().testFlag(Qt::AlignRight)) << name;
    }
    Press(dialog, Qt::Key_Escape);
  });
}

TEST_F(QuaConfig, GivenValuesComeUpAndAMereOKChangesNone) {
  Given = Typed();
  EXPECT_TRUE(Open([](QWidget& dialog) {
    EXPECT_EQ(Row(dialog, "ComboFittingMethod"), 3);
    EXPECT_TRUE(Find<QRadioButton>(dialog, "OptionCoefficients")->isChecked());
    EXPECT_FALSE(Find<QComboBox>(dialog, "ComboSampleNumber")->isEnabled());
    EXPECT_EQ(Row(dialog, "ComboSampleNumber"), 6);
    const std::pair<const char*, const char*> texts[] = {{"K0Text", "-0.5"},
                                                         {"K1Text", "0.1"},
                                                         {"K3Text", "123456789.125"},
                                                         {"WaveLength1Text", "260.0"},
                                                         {"WaveLength2Text", "280.0"},
                                                         {"WaveLength3Text", "320.0"},
                                                         {"WaveLengthPara1Text", "1.55"},
                                                         {"WaveLengthPara2Text", "-0.76"},
                                                         {"WaveLengthPara3Text", "0.25"},
                                                         {"ConcUnitText", "ppm"}};
    for (const auto& [name, text] : texts) EXPECT_EQ(TextOf(dialog, name), text) << name;
    EXPECT_EQ(Row(dialog, "ComboWaveLengthNumber"), 1);
    Press(dialog, Qt::Key_Return);
  }));
  EXPECT_EQ(Result, Given);
}

TEST_F(QuaConfig, OKTakesAndStoresEveryField) {
  Confirm([](QWidget& dialog) {
    Choose(dialog, "ComboFittingMethod", 3);
    Choose(dialog, "ComboConcUnit", 6);
    Choose(dialog, "ComboSampleNumber", 19);
    Click(dialog, "OptionCoefficients");
    Type(dialog, "K0Text", " -1.5 ");
    Type(dialog, "K1Text", "2e-3");
    Type(dialog, "K2Text", "0.1");
    Type(dialog, "K3Text", "+4");
    Choose(dialog, "ComboWaveLengthNumber", 2);
    Type(dialog, "WaveLength1Text", "190");
    Type(dialog, "WaveLengthPara1Text", "1.55");
    Type(dialog, "WaveLength2Text", "1100.0");
    Type(dialog, "WaveLengthPara2Text", "-0.76");
    Type(dialog, "WaveLength3Text", "320.26");
    Type(dialog, "WaveLengthPara3Text", "7");
  });
  QuantitationSettings expected;
  expected.FittingMethod = 3;
  expected.ConcUnit = "ppm";
  expected.SampleNumber = 20;
  expected.CurveItem = 2;
  expected.InputK = {-1.5, 0.002, 0.1, 4.0};
  expected.WaveLengthNumber = 3;
  expected.WaveLengthList = {190.0, 1100.0, 320.3};
  expected.WaveLengthPara = {1.55, -0.76, 7.0};
  EXPECT_EQ(Result, expected);
  const std::pair<const char*, const char*> stored[] = {
      {"Fitting Line", "3"},      {"Conc Unit", "ppm"},          {"Custom Conc Unit", ""},
      {"Sample Number", "20"},    {"Curve Item", "2"},           {"Curve K0", "-1.5"},
      {"Curve K1", "0.002"},      {"Curve K2", "0.1"},           {"Curve K3", "4"},
      {"WaveLength Number", "3"}, {"WaveLength 1", "190"},       {"WaveLength 2", "1100"},
      {"WaveLength 3", "320.3"},  {"WaveLength Para 1", "1.55"}, {"WaveLength Para 2", "-0.76"},
      {"WaveLength Para 3", "7"}};
  for (const auto& [key, value] : stored) EXPECT_EQ(StoredHere(key), value) << key;
  QuantitationSettings next;
  Setting again(Folder.Path());
  LoadSettings<QuantitationSettings>(again, kQuantitationSettingRows, next);
  EXPECT_EQ(next, expected);
}

TEST_F(QuaConfig, EverySampleNumberAndMethodCanBeChosen) {
  for (int i = 0; i < 20; ++i) {
    Confirm([&](QWidget& dialog) {
      Choose(dialog, "ComboSampleNumber", i);
      Choose(dialog, "ComboFittingMethod", i % 4);
    });
    EXPECT_EQ(Result.SampleNumber, i + 1);
    EXPECT_EQ(Result.FittingMethod, i % 4);
  }
}

TEST_F(QuaConfig, OnlyTheCoefficientsOfTheMethodAreEnabled) {
  const char* const used[] = {"K1Text", "K0Text K1Text", "K0Text K1Text K2Text",
                              "K0Text K1Text K2Text K3Text"};
  const char* const equations[] = {"Conc. = K1 × A", "Conc. = K1 × A + K0", "Conc. = K2 × A² + K1 × A + K0",
                                   "Conc. = K3 × A³ + K2 × A² + K1 × A + K0"};
  Open([&](QWidget& dialog) {
    for (const int method : {0, 1, 2, 3, 2, 1, 0}) {
      Choose(dialog, "ComboFittingMethod", method);
      Click(dialog, "OptionStandardSample");
      EXPECT_EQ(EnabledNumbers(dialog), "WaveLength1Text WaveLengthPara1Text");
      EXPECT_TRUE(Find<QComboBox>(dialog, "ComboSampleNumber")->isEnabled());
      Click(dialog, "OptionCoefficients");
      EXPECT_EQ(EnabledNumbers(dialog), std::string(used[method]) + " WaveLength1Text WaveLengthPara1Text");
      EXPECT_FALSE(Find<QComboBox>(dialog, "ComboSampleNumber")->isEnabled());
      EXPECT_FALSE(Find<QLabel>(dialog, "LabelSampleNumber")->isEnabled());
      EXPECT_TRUE(Formula(dialog).split(u'\n').contains(QString::fromUtf8(equations[method])))
          << Formula(dialog).toStdString();
    }
    Press(dialog, Qt::Key_Escape);
  });
}

TEST_F(QuaConfig, OnlyTheWavelengthsInUseAreEnabled) {
  const char* const used[] = {
      "WaveLength1Text WaveLengthPara1Text",
      "WaveLength1Text WaveLengthPara1Text WaveLength2Text WaveLengthPara2Text",
      "WaveLength1Text WaveLengthPara1Text WaveLength2Text WaveLengthPara2Text WaveLength3Text "
      "WaveLengthPara3Text"};
  const char* const formulas[] = {
      "Absorbance A = Parameter 1 × A(WL. 1)\nConc. = K1 × A",
      "Absorbance A = Parameter 1 × A(WL. 1) + Parameter 2 × A(WL. 2)\nConc. = K1 × A",
      "Absorbance A = Parameter 1 × A(WL. 1) + Parameter 2 × A(WL. 2)\nConc. = K1 × A\nThe third wavelength "
      "is kept but not measured."};
  Open([&](QWidget& dialog) {
    for (const int row : {0, 1, 2, 1, 0}) {
      Choose(dialog, "ComboWaveLengthNumber", row);
      EXPECT_EQ(EnabledNumbers(dialog), used[row]);
      EXPECT_EQ(Formula(dialog).toStdString(), formulas[row]);
    }
    Press(dialog, Qt::Key_Escape);
  });
}

TEST_F(QuaConfig, FieldsOutOfUseKeepTheirValuesAndAreNotChecked) {
  Given = Typed();
  Confirm([](QWidget& dialog) {
    Type(dialog, "K3Text", "no number");
    Type(dialog, "K2Text", "99");
    Choose(dialog, "ComboFittingMethod", 1);
    Type(dialog, "K1Text", "8");
    Type(dialog, "WaveLength2Text", "50");
    Type(dialog, "WaveLengthPara2Text", "?");
    Choose(dialog, "ComboWaveLengthNumber", 0);
  });
  QuantitationSettings expected = Given;
  expected.FittingMethod = 1;
  expected.InputK[1] = 8.0;
  expected.WaveLengthNumber = 1;
  EXPECT_EQ(Result, expected);
}

TEST_F(QuaConfig, CancelEscAndTheCloseBoxChangeNothing) {
  const std::function<void(QWidget&)> ways[] = {[](QWidget& dialog) { Click(dialog, "CancelCmd"); },
                                                [](QWidget& dialog) { Press(dialog, Qt::Key_Escape); },
                                                [](QWidget& dialog) { dialog.close(); }};
  Given = Typed();
  Stake = [](const QuantitationSettings&) { return true; };
  for (const auto& leave : ways) {
    EXPECT_FALSE(Open([&](QWidget& dialog) {
      Choose(dialog, "ComboFittingMethod", 2);
      Type(dialog, "K0Text", "nothing that fits");
      Type(dialog, "ConcUnitText", "drops");
      leave(dialog);
    }));
    EXPECT_EQ(Result, Given);
  }
  EXPECT_FALSE(std::filesystem::exists(Folder.Path("config.ini")));
}

// ---- Refusals ----

struct Refusal {
  const char* Field;
  std::vector<const char*> Texts;
  /// Empty: the box with the words of a wavelength error.
  const char* Words;
};

TEST_F(QuaConfig, WrongTextIsToldAndStaysInItsField) {
  ConnectNow();
  Link.State.WavelengthMin = 200.0;
  Link.State.WavelengthMax = 1000.0;
  Given = Typed();
  Given.WaveLengthNumber = 3;
  const std::vector<const char*> noNumbers = {"", "abc", "1,5", "1 5", "nan", "inf", "1e999", "0x10", "1.5e"};
  const std::vector<const char*> noWavelengths = {"",       "abc",  "546,5", "199.9",
                                                  "1000.1", "-546", "1e9",   "nan"};
  const Refusal refusals[] = {
      {"K0Text", noNumbers, "K0: a number is needed here, such as 0.25 or 1.5e-3."},
      {"K1Text", noNumbers, "K1: a number is needed here, such as 0.25 or 1.5e-3."},
      {"K2Text", noNumbers, "K2: a number is needed here, such as 0.25 or 1.5e-3."},
      {"K3Text", noNumbers, "K3: a number is needed here, such as 0.25 or 1.5e-3."},
      {"WaveLength1Text", noWavelengths, ""},
      {"WaveLength2Text", noWavelengths, ""},
      {"WaveLength3Text", noWavelengths, ""},
      {"WaveLengthPara1Text", noNumbers, "Parameter 1: a number is needed here, such as 0.25 or 1.5e-3."},
      {"WaveLengthPara2Text", noNumbers, "Parameter 2: a number is needed here, such as 0.25 or 1.5e-3."},
      {"WaveLengthPara3Text", noNumbers, "Parameter 3: a number is needed here, such as 0.25 or 1.5e-3."}};
  for (const Refusal& refusal : refusals) {
    for (const char* const wrong : refusal.Texts) {
      SCOPED_TRACE(std::string(refusal.Field) + " '" + wrong + "'");
      if (*refusal.Words == '\0') {
        Boxes.ExpectMessage(1006);
      } else {
        Boxes.ExpectWords(QString::fromUtf8(refusal.Words));
      }
      EXPECT_FALSE(Open([&](QWidget& dialog) {
        auto* const field = Find<QLineEdit>(dialog, refusal.Field);
        Type(dialog, refusal.Field, wrong);
        Click(dialog, "OKCmd");
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(field->text(), QLatin1String(wrong));
        EXPECT_EQ(field->selectedText(), field->text());
        EXPECT_TRUE(field->hasFocus());
        EXPECT_EQ(TextOf(dialog, "ConcUnitText"), "ppm");
        Click(dialog, "CancelCmd");
      }));
      EXPECT_TRUE(Boxes.AllAsked());
      EXPECT_EQ(Result, Given);
    }
  }
  EXPECT_FALSE(std::filesystem::exists(Folder.Path("config.ini")) &&
               !StoredHere("WaveLength Number").empty());
}

TEST_F(QuaConfig, TheDetailsOfAWavelengthErrorNameFieldAndRange) {
  Boxes.ExpectMessage(1006);
  Open([this](QWidget& dialog) {
    Type(dialog, "WaveLength1Text", "1200");
    Click(dialog, "OKCmd");
    EXPECT_EQ(Boxes.Details, QStringLiteral("WL. 1 = 1200 (190.0 \u2013 1100.0 nm)"));
    Press(dialog, Qt::Key_Escape);
  });
}

TEST_F(QuaConfig, TheFirstWrongFieldIsPointedToAndTheRestIsNotLost) {
  Given = Typed();
  Boxes.ExpectWords(QStringLiteral("K1: a number is needed here, such as 0.25 or 1.5e-3."));
  Boxes.ExpectMessage(1006);
  EXPECT_TRUE(Open([](QWidget& dialog) {
    Type(dialog, "ConcUnitText", "drops");
    Type(dialog, "K1Text", "x");
    Type(dialog, "WaveLength2Text", "y");
    Click(dialog, "OKCmd");
    EXPECT_EQ(FocusName(), QStringLiteral("K1Text"));
    EXPECT_EQ(TextOf(dialog, "WaveLength2Text"), "y");
    // The text is selected: what is typed takes its place.
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("3"));
    Press(dialog, Qt::Key_Return);
    EXPECT_EQ(FocusName(), QStringLiteral("WaveLength2Text"));
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("300"));
    Press(dialog, Qt::Key_Return);
  }));
  EXPECT_EQ(Result.InputK[1], 3.0);
  EXPECT_EQ(Result.WaveLengthList[1], 300.0);
  EXPECT_EQ(Result.ConcUnit, "drops");
}

TEST_F(QuaConfig, ADamagedDocumentComesUpWithTheUsualAndItsNumbersAreRefused) {
  Given.FittingMethod = 9;
  Given.CurveItem = -1;
  Given.SampleNumber = 99;
  Given.WaveLengthNumber = 0;
  Given.WaveLengthList = {1e300, std::numeric_limits<double>::quiet_NaN(), 0.0};
  Given.WaveLengthPara = {std::numeric_limits<double>::infinity(), 0.0, 0.0};
  Boxes.ExpectMessage(1006);
  Boxes.ExpectWords(QStringLiteral("Parameter 1: a number is needed here, such as 0.25 or 1.5e-3."));
  EXPECT_TRUE(Open([](QWidget& dialog) {
    EXPECT_EQ(Row(dialog, "ComboFittingMethod"), 0);
    EXPECT_TRUE(Find<QRadioButton>(dialog, "OptionStandardSample")->isChecked());
    EXPECT_EQ(Row(dialog, "ComboSampleNumber"), 1);
    EXPECT_EQ(Row(dialog, "ComboWaveLengthNumber"), 0);
    Click(dialog, "OKCmd");
    EXPECT_EQ(FocusName(), QStringLiteral("WaveLength1Text"));
    Type(dialog, "WaveLength1Text", "500");
    Click(dialog, "OKCmd");
    EXPECT_EQ(FocusName(), QStringLiteral("WaveLengthPara1Text"));
    Type(dialog, "WaveLengthPara1Text", "1");
    Click(dialog, "OKCmd");
  }));
  EXPECT_EQ(Result.FittingMethod, 0);
  EXPECT_EQ(Result.CurveItem, 1);
  EXPECT_EQ(Result.SampleNumber, 2);
  EXPECT_EQ(Result.WaveLengthNumber, 1);
  EXPECT_EQ(Result.WaveLengthList[0], 500.0);
}

TEST_F(QuaConfig, SettingsThatTheFileRefusesHoldAndTheStatusBarSaysSo) {
  BlockSettings();
  Confirm([](QWidget& dialog) { Type(dialog, "WaveLength1Text", "500"); });
  EXPECT_EQ(Result.WaveLengthList[0], 500.0);
  EXPECT_NE(Display.Remark, "");
}

// ---- The question before records go ----

TEST_F(QuaConfig, NoLeavesTheDialogAsTypedAndYesTakesIt) {
  QuantitationSettings asked;
  Stake = [&](const QuantitationSettings& settings) {
    asked = settings;
    return true;
  };
  Boxes.ExpectYesNo(Words(1072), Answer::No);
  Boxes.ExpectYesNo(Words(1072), Answer::Yes);
  EXPECT_TRUE(Open([&](QWidget& dialog) {
    Choose(dialog, "ComboFittingMethod", 2);
    Type(dialog, "WaveLength1Text", "600.5");
    Type(dialog, "ConcUnitText", "drops");
    Click(dialog, "OKCmd");
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(TextOf(dialog, "WaveLength1Text"), "600.5");
    EXPECT_EQ(TextOf(dialog, "ConcUnitText"), "drops");
    EXPECT_EQ(Row(dialog, "ComboFittingMethod"), 2);
    EXPECT_EQ(StoredHere("WaveLength 1"), "") << "nothing is stored before the Yes";
    EXPECT_EQ(static_cast<FrmQuaConfig&>(dialog).Settings(), Given);
    Click(dialog, "OKCmd");
  }));
  EXPECT_EQ(asked, Result);
  EXPECT_EQ(Result.WaveLengthList[0], 600.5);
  EXPECT_EQ(StoredHere("WaveLength 1"), "600.5");
}

TEST_F(QuaConfig, NothingIsAskedWhenNoRecordsGo) {
  int asked = 0;
  Stake = [&](const QuantitationSettings&) {
    ++asked;
    return false;
  };
  Confirm([](QWidget& dialog) { Choose(dialog, "ComboFittingMethod", 2); });
  EXPECT_EQ(asked, 1);
  Stake = {};
  Confirm([](QWidget& dialog) { Choose(dialog, "ComboFittingMethod", 1); });
  EXPECT_EQ(Result.FittingMethod, 1);
}

TEST_F(QuaConfig, TheQuestionComesAfterTheFieldsWereFound) {
  Stake = [](const QuantitationSettings&) {
    ADD_FAILURE() << "asked with a field that is refused";
    return true;
  };
  Boxes.ExpectMessage(1006);
  Open([](QWidget& dialog) {
    Type(dialog, "WaveLength1Text", "x");
    Click(dialog, "OKCmd");
    Press(dialog, Qt::Key_Escape);
  });
}

// ---- Keys ----

TEST_F(QuaConfig, TabGoesInReadingOrder) {
  Given = Typed();
  Given.WaveLengthNumber = 3;
  Open([](QWidget& dialog) {
    QStringList order = {FocusName()};
    for (int i = 0; i < 30; ++i) {
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
      if (FocusName() == order.front()) break;
      order.append(FocusName());
    }
    EXPECT_EQ(order.join(u' ').toStdString(),
              "ComboFittingMethod ComboConcUnit OptionCoefficients K0Text K1Text K2Text K3Text "
              "ComboWaveLengthNumber WaveLength1Text WaveLengthPara1Text WaveLength2Text WaveLengthPara2Text "
              "WaveLength3Text WaveLengthPara3Text OKCmd CancelCmd");
    Press(dialog, Qt::Key_Escape);
  });
  Given = {};
  Open([](QWidget& dialog) {
    QStringList order = {FocusName()};
    for (int i = 0; i < 3; ++i) {
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
      order.append(FocusName());
    }
    EXPECT_EQ(order.join(u' ').toStdString(),
              "ComboFittingMethod ComboConcUnit OptionStandardSample ComboSampleNumber");
    Press(dialog, Qt::Key_Escape);
  });
}

TEST_F(QuaConfig, NoTextIsClipped) {
  Given = Typed();
  Given.WaveLengthNumber = 3;
  Open([](QWidget& dialog) {
    for (const QLabel* label : dialog.findChildren<QLabel*>()) {
      const QSize needed =
          label->wordWrap() ? QSize(0, label->heightForWidth(label->width())) : label->sizeHint();
      EXPECT_GE(label->width(), needed.width()) << label->text().toStdString();
      EXPECT_GE(label->height(), needed.height()) << label->text().toStdString();
    }
    for (const QLineEdit* field : dialog.findChildren<QLineEdit*>()) {
      EXPECT_GT(field->width(), field->fontMetrics().horizontalAdvance(field->text()))
          << field->text().toStdString();
    }
    Press(dialog, Qt::Key_Escape);
  });
}

}  // namespace
}  // namespace spectrane::testing_windows
