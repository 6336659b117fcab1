#include <QRadioButton>

#include "modes/windows/frmdnaconfig.h"
#include "modes/windows/picformular.h"
#include "modes/windows/samplefixture.h"

namespace spectrane::testing_windows {
namespace {

constexpr const char* kFields[] = {
    "WaveLength1Text", "WaveLength2Text", "WaveLengthReferenceText", "F1Text", "F2Text", "F3Text", "F4Text"};

class DNAConfig : public DNAWindow {
 protected:
  void InOptions(std::function<void(QWidget& dialog)> act) { Options("FrmDNAConfig", std::move(act)); }
  static std::string AllShown(QWidget& dialog) {
    std::string all;
    for (const char* field : kFields) all += Shown(dialog, field) + " ";
    return all;
  }
  static void ExpectReadOnly(QWidget& dialog, bool readOnly) {
    for (const char* field : kFields)
      EXPECT_EQ(Find<QLineEdit>(dialog, field)->isReadOnly(), readOnly) << field;
  }
  static bool IsChosen(QWidget& dialog, const char* mode) {
    return Find<QRadioButton>(dialog, mode)->isChecked();
  }
};

constexpr const char* kMode1Text = "260.0 280.0 320.0 62.9 36.0 1552.0 757.3 ";
constexpr const char* kMode2Text = "260.0 230.0 320.0 49.1 3.48 183.0 75.8 ";

TEST_F(DNAConfig, BeginsInTheFirstMode) {
  Open();
  InOptions([](QWidget& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("DNA/Protein Option"));
    EXPECT_TRUE(IsChosen(dialog, "Item1Option"));
    EXPECT_EQ(AllShown(dialog), kMode1Text);
    ExpectReadOnly(dialog, true);
    ExpectNamesEverywhere(dialog);
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Window->Document().Settings(), DNASettings());
}

TEST_F(DNAConfig, AModeShowsItsValuesAtOnceAndTheWindowWaits) {
  OpenTable();
  InOptions([this](QWidget& dialog) {
    Click(dialog, "Item2Option");
    EXPECT_EQ(AllShown(dialog), kMode2Text);
    ExpectReadOnly(dialog, true);
    EXPECT_EQ(Window->GetWaveLength(1), 280.0);
    EXPECT_EQ(Cell(0, 5), QStringLiteral("1.5000"));
    Click(dialog, "CustomOption");
    EXPECT_EQ(AllShown(dialog), kMode2Text) << "what was shown is where typing begins";
    ExpectReadOnly(dialog, false);
    Click(dialog, "Item1Option");
    EXPECT_EQ(AllShown(dialog), kMode1Text);
    Click(dialog, "CancelCmd");
  });
  EXPECT_EQ(Window->OpenFileName(), PathOf("run.dna"));
  EXPECT_FALSE(Window->isWindowModified());
}

TEST_F(DNAConfig, WhatWasTypedComesBackWithCustomMode) {
  Open();
  InOptions([](QWidget& dialog) {
    Click(dialog, "CustomOption");
    Type(dialog, "F2Text", "-7.25");
    Click(dialog, "Item2Option");
    EXPECT_EQ(AllShown(dialog), kMode2Text);
    Click(dialog, "CustomOption");
    EXPECT_EQ(AllShown(dialog), "260.0 280.0 320.0 62.9 -7.25 1552.0 757.3 ");
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Window->Document().Option().Option, 3);
  EXPECT_EQ(Window->Document().Option().Factor[1], -7.25);
}

TEST_F(DNAConfig, OKComputesTheRowsInTheSecondMode) {
  OpenTable();
  const std::string file = ReadBytes(Folder.Path("run.dna"));
  Grid->selectRow(1);
  InOptions([](QWidget& dialog) {
    Click(dialog, "Item2Option");
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Grid->currentIndex().row(), 1) << "the row that was selected is still";
  // 0.45 * 49.1 - 0.25 * 3.48, 0.25 * 183 - 0.45 * 75.8, 0.45 / 0.25
  EXPECT_EQ(RowText(0), "1|a|0.500|0.300|0.050|21.225|11.640|1.8000|note of a");
  // 0.25 * 49.1, -0.25 * 75.8, and nothing to divide by: the ratio of the file
  EXPECT_EQ(RowText(1), "2|b|0.500|0.250|0.250|12.275|-18.950|3.5000|note of b");
  EXPECT_EQ(Grid->model()->headerData(3, Qt::Horizontal).toString(), QStringLiteral("Abs(230.0nm)"));
  EXPECT_TRUE(Window->isWindowModified());
  EXPECT_EQ(Window->OpenFileName(), QString());
  EXPECT_EQ(ReadBytes(Folder.Path("run.dna")), file);
  EXPECT_NE(Display.Remark.find("computed anew"), std::string::npos);
}

TEST_F(DNAConfig, OKComputesTheRowsInTheFirstMode) {
  DNAOption option = DNATable();
  option.Option = 2;
  OpenTable(option);
  InOptions([](QWidget& dialog) {
    EXPECT_TRUE(IsChosen(dialog, "CustomOption")) << "its values are not those of the second mode";
    EXPECT_EQ(AllShown(dialog), kMode1Text);
    Click(dialog, "Item2Option");
    Click(dialog, "OKCmd");
  });
  InOptions([](QWidget& dialog) {
    Click(dialog, "Item1Option");
    Click(dialog, "OKCmd");
  });
  // 0.45 * 62.9 - 0.25 * 36, 0.25 * 1552 - 0.45 * 757.3
  EXPECT_EQ(RowText(0), "1|a|0.500|0.300|0.050|19.305|47.215|1.8000|note of a");
}

TEST_F(DNAConfig, OKComputesTheRowsInCustomMode) {
  OpenTable();
  InOptions([](QWidget& dialog) {
    Click(dialog, "CustomOption");
    const char* const texts[] = {"250.04", "300", "350", "2", "4", "8e1", "16"};
    for (std::size_t i = 0; i < std::size(kFields); ++i) Type(dialog, kFields[i], texts[i]);
    Click(dialog, "OKCmd");
  });
  // 0.45 * 2 - 0.25 * 4, 0.25 * 80 - 0.45 * 16
  EXPECT_EQ(RowText(0), "1|a|0.500|0.300|0.050|-0.1000|12.800|1.8000|note of a");
  EXPECT_EQ(Window->GetWaveLength(0), 250.0);
  const struct {
    const char* Key;
    const char* Value;
  } keys[] = {{"Item Option", "3"},
              {"WaveLength 1", "250"},
              {"WaveLength 2", "300"},
              {"WaveLength Reference", "350"},
              {"F1", "2"},
              {"F2", "4"},
              {"F3", "80"},
              {"F4", "16"}};
  for (const auto& key : keys) EXPECT_EQ(Stored("DNA/Protein Test", key.Key), key.Value) << key.Key;
}

TEST_F(DNAConfig, AnOKWithoutAChangeChangesNothing) {
  DNAOption option = DNATable();
  option.Option = 7;
  option.WaveLength[0] = 260.04;
  option.Factor[2] = 1552.0000000000002;
  OpenTable(option);
  InOptions([](QWidget& dialog) {
    EXPECT_TRUE(IsChosen(dialog, "CustomOption"));
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Window->OpenFileName(), PathOf("run.dna"));
  EXPECT_FALSE(Window->isWindowModified());
  EXPECT_EQ(Window->Document().Option().Option, 7);
  EXPECT_EQ(Window->GetWaveLength(0), 260.04);
}

TEST_F(DNAConfig, AWavelengthOutsideTheInstrumentIsToldAndStays) {
  Link.State.WavelengthMin = 200.0;
  Link.State.WavelengthMax = 1000.0;
  Open();
  for (int i = 0; i < 3; ++i) {
    for (const char* wrong : {"", "199.9", "1000.1", "abc", "260,0", "1e9"}) {
      Boxes.ExpectMessage(1040);
      InOptions([&](QWidget& dialog) {
        Click(dialog, "CustomOption");
        Type(dialog, kFields[i], wrong);
        Click(dialog, "OKCmd");
        EXPECT_TRUE(dialog.isVisible()) << wrong;
        EXPECT_EQ(Shown(dialog, kFields[i]), wrong);
        EXPECT_TRUE(Find<QLineEdit>(dialog, kFields[i])->hasFocus()) << wrong;
        Click(dialog, "CancelCmd");
      });
      EXPECT_EQ(Window->Document().Settings(), DNASettings()) << wrong;
    }
  }
  EXPECT_EQ(Stored("DNA/Protein Test", "Item Option"), "1");
}

TEST_F(DNAConfig, AFixedModeThatTheInstrumentCannotReachIsToldAsWell) {
  Link.State.WavelengthMin = 270.0;
  Open();
  Boxes.ExpectMessage(1040);
  InOptions([](QWidget& dialog) {
    Click(dialog, "OKCmd");
    EXPECT_TRUE(dialog.isVisible());
    Click(dialog, "CancelCmd");
  });
}

TEST_F(DNAConfig, AFactorThatIsNoNumberIsToldAndStays) {
  Open();
  for (const char* field : {"F1Text", "F2Text", "F3Text", "F4Text"}) {
    Boxes.ExpectWords(QStringLiteral("%1: a number is needed here, such as 0.25 or 1.5e-3.")
                          .arg(QLatin1String(field).left(2)));
    InOptions([&](QWidget& dialog) {
      Click(dialog, "CustomOption");
      Type(dialog, field, "62,9");
      Click(dialog, "OKCmd");
      EXPECT_TRUE(dialog.isVisible());
      EXPECT_TRUE(Find<QLineEdit>(dialog, field)->hasFocus());
      Click(dialog, "CancelCmd");
    });
  }
}

TEST_F(DNAConfig, TheFormulasFollowWhatIsTyped) {
  Open();
  InOptions([](QWidget& dialog) {
    auto* const formula = Find<PicFormular>(dialog, "PicFormular");
    EXPECT_EQ(formula->PlainText(), QStringLiteral("DNA  =(Abs260.0-Abs320.0)xF1-(Abs280.0-Abs320.0)xF2\n"
                                                   "Protein=(Abs280.0-Abs320.0)xF3-(Abs260.0-Abs320.0)xF4"));
    EXPECT_EQ(formula->accessibleDescription(), formula->PlainText());
    const QImage before = formula->grab().toImage();
    Click(dialog, "Item2Option");
    EXPECT_TRUE(formula->PlainText().startsWith(QStringLiteral("DNA  =(Abs260.0-Abs320.0)xF1-(Abs230.0-")));
    EXPECT_NE(formula->grab().toImage(), before);
    Click(dialog, "CustomOption");
    Type(dialog, "WaveLengthReferenceText", "33x");
    EXPECT_TRUE(formula->PlainText().startsWith(QStringLiteral("DNA  =(Abs260.0-Abs?)xF1")));
    Click(dialog, "CancelCmd");
  });
}

TEST_F(DNAConfig, AWindowThatGoesWhileItsOptionsAreOpen) {
  Open();
  InOptions([this](QWidget& dialog) {
    Click(dialog, "Item2Option");
    delete Window.data();
    Click(dialog, "OKCmd");
  });
  EXPECT_TRUE(Window.isNull());
}

}  // namespace
}  // namespace spectrane::testing_windows
