#include <QComboBox>
#include <QLabel>

#include "modes/windows/frmmulticonfig.h"
#include "modes/windows/samplefixture.h"

namespace spectrane::testing_windows {
namespace {

class MultiConfig : public MultiWindow {
 protected:
  void InOptions(std::function<void(QWidget& dialog)> act) { Options("FrmMultiConfig", std::move(act)); }
  static void Choose(QWidget& dialog, int wavelengths) {
    Find<QComboBox>(dialog, "WLNoCombo")->setCurrentIndex(wavelengths - 1);
  }
};

TEST_F(MultiConfig, ShowsTheTableOfTheWindow) {
  OpenTable(2);
  InOptions([](QWidget& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Multi Wavelength Option"));
    EXPECT_EQ(Find<QComboBox>(dialog, "WLNoCombo")->count(), 15);
    EXPECT_EQ(Find<QComboBox>(dialog, "WLNoCombo")->currentText(), QStringLiteral("2"));
    EXPECT_EQ(Shown(dialog, "WLText1"), "200.0");
    EXPECT_EQ(Shown(dialog, "ParaText1"), "1.0");
    EXPECT_EQ(Shown(dialog, "WLText15"), "900.0");
    EXPECT_EQ(Shown(dialog, "ParaText15"), "15.0");
    ExpectNamesEverywhere(dialog);
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Window->OpenFileName(), PathOf("run.mul")) << "an OK without a change changes nothing";
  EXPECT_FALSE(Window->isWindowModified());
  EXPECT_EQ(Stored("Multi WaveLength", "WaveLength No"), "2") << "it is stored for the next window";
  EXPECT_EQ(Stored("Multi WaveLength", "WaveLength 1"), "200");
}

TEST_F(MultiConfig, TheNumberChoosesWhatCanBeTyped) {
  Open();
  InOptions([](QWidget& dialog) {
    for (const int number : {1, 2, 15, 3}) {
      Choose(dialog, number);
      for (int i = 1; i <= 15; ++i) {
        const std::string digits = std::to_string(i);
        EXPECT_EQ(Find<QLineEdit>(dialog, ("WLText" + digits).c_str())->isEnabled(), i <= number) << i;
        EXPECT_EQ(Find<QLineEdit>(dialog, ("ParaText" + digits).c_str())->isEnabled(), i <= number) << i;
      }
    }
    Click(dialog, "CancelCmd");
  });
  EXPECT_EQ(Columns(), 4);
}

TEST_F(MultiConfig, OKTakesTheTableAndStoresAllOfIt) {
  Open();
  InOptions([](QWidget& dialog) {
    Choose(dialog, 15);
    for (int i = 1; i <= 15; ++i) {
      Type(dialog, ("WLText" + std::to_string(i)).c_str(), std::to_string(300 + i).c_str());
      Type(dialog, ("ParaText" + std::to_string(i)).c_str(), ("-0.5e" + std::to_string(i % 3)).c_str());
    }
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Columns(), 18);
  for (int i = 1; i <= 15; ++i) {
    EXPECT_EQ(Window->GetWorkWaveLength(i - 1), 300 + i);
    const std::string key = std::to_string(i);
    EXPECT_EQ(Stored("Multi WaveLength", ("WaveLength " + key).c_str()), std::to_string(300 + i));
  }
  EXPECT_EQ(Window->GetParameter(0), -5);
  EXPECT_EQ(Window->GetParameter(1), -50);
  EXPECT_EQ(Window->GetParameter(2), -0.5);
  EXPECT_EQ(Stored("Multi WaveLength", "WaveLength No"), "15");
  EXPECT_EQ(Stored("Multi WaveLength", "Parameter 2"), "-50");
  EXPECT_FALSE(Window->isWindowModified()) << "options alone need no file";
}

TEST_F(MultiConfig, AnEmptyFieldMeansTheUsualValue) {
  Open();
  InOptions([](QWidget& dialog) {
    Choose(dialog, 2);
    Type(dialog, "WLText2", "700");
    Type(dialog, "ParaText2", "3");
    Click(dialog, "OKCmd");
  });
  InOptions([](QWidget& dialog) {
    Type(dialog, "WLText2", "");
    Type(dialog, "ParaText2", " ");
    EXPECT_EQ(Find<QLineEdit>(dialog, "WLText2")->placeholderText(), QStringLiteral("546.0"));
    EXPECT_EQ(Find<QLineEdit>(dialog, "ParaText2")->placeholderText(), QStringLiteral("1.0"));
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Window->GetWorkWaveLength(1), 546.0);
  EXPECT_EQ(Window->GetParameter(1), 1.0);
}

TEST_F(MultiConfig, AWavelengthOutsideTheInstrumentIsToldAndStays) {
  Link.State.WavelengthMin = 200.0;
  Link.State.WavelengthMax = 1000.0;
  Open();
  for (const char* wrong : {"199.9", "1000.1", "abc", "546,5", "-546", "1e9", "nan"}) {
    Boxes.ExpectMessage(1006);
    InOptions([&](QWidget& dialog) {
      Choose(dialog, 2);
      Type(dialog, "WLText2", wrong);
      Click(dialog, "OKCmd");
      EXPECT_TRUE(dialog.isVisible()) << wrong;
      EXPECT_EQ(Shown(dialog, "WLText2"), wrong);
      EXPECT_TRUE(Find<QLineEdit>(dialog, "WLText2")->hasFocus()) << wrong;
      Click(dialog, "CancelCmd");
    });
    EXPECT_TRUE(Boxes.Details.contains(QStringLiteral("200.0 \u2013 1000.0 nm"))) << wrong;
    EXPECT_EQ(Columns(), 4) << wrong;
  }
  EXPECT_EQ(Stored("Multi WaveLength", "WaveLength No"), "1");
}

TEST_F(MultiConfig, BothEndsOfTheRangeAreTakenInTenths) {
  Open();
  InOptions([](QWidget& dialog) {
    Choose(dialog, 3);
    Type(dialog, "WLText1", "190");
    Type(dialog, "WLText2", "1100.0");
    Type(dialog, "WLText3", "500.26");
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Window->GetWorkWaveLength(0), 190.0);
  EXPECT_EQ(Window->GetWorkWaveLength(1), 1100.0);
  EXPECT_EQ(Window->GetWorkWaveLength(2), 500.3);
}

TEST_F(MultiConfig, WhatIsNotInUseIsNotLookedAt) {
  Open();
  InOptions([](QWidget& dialog) {
    Choose(dialog, 2);
    Type(dialog, "WLText2", "nonsense");
    Choose(dialog, 1);
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Window->GetWorkWaveLength(1), 546.0);
}

TEST_F(MultiConfig, AParameterThatIsNoNumberIsToldAndStays) {
  Open();
  Boxes.ExpectWords(QStringLiteral("Parameter 1: a number is needed here, such as 0.25 or 1.5e-3."));
  InOptions([](QWidget& dialog) {
    Type(dialog, "ParaText1", "1,5");
    Click(dialog, "OKCmd");
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_TRUE(Find<QLineEdit>(dialog, "ParaText1")->hasFocus());
    Click(dialog, "CancelCmd");
  });
  EXPECT_EQ(Window->GetParameter(0), 1.0);
}

TEST_F(MultiConfig, OptionsThatTheRowsDoNotMatchAreToldFirst) {
  OpenTable(2);
  const std::string file = ReadBytes(Folder.Path("run.mul"));
  Boxes.ExpectMessage(1020, [this] { EXPECT_EQ(Cell(0, 4), QStringLiteral("71.250")) << "not yet"; });
  InOptions([](QWidget& dialog) {
    Type(dialog, "ParaText1", "10");
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(RowText(0), "1|one|0.500|0.600|6.200");   // 10 * 0.5 + 2 * 0.6
  EXPECT_EQ(RowText(1), "2|two|1.000|1.100|12.200");  // 10 * 1.0 + 2 * 1.1
  EXPECT_TRUE(Window->isWindowModified());
  EXPECT_EQ(Window->OpenFileName(), QString());
  EXPECT_EQ(Window->Caption(), QStringLiteral("Multi Wavelength"));
  EXPECT_EQ(Stored("Multi WaveLength", "Parameter 1"), "10");
  EXPECT_EQ(ReadBytes(Folder.Path("run.mul")), file) << "the file is what was measured";
  Boxes.ExpectSaveName(Words(1014), {});
  EXPECT_FALSE(Window->mmuSaveFile());
}

TEST_F(MultiConfig, WithoutRowsNothingIsTold) {
  Open();
  InOptions([](QWidget& dialog) {
    Choose(dialog, 2);
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Columns(), 5);
}

TEST_F(MultiConfig, CancelAndEscChangeNothing) {
  OpenTable(2);
  InOptions([](QWidget& dialog) {
    Choose(dialog, 5);
    Click(dialog, "CancelCmd");
  });
  InOptions([](QWidget& dialog) {
    Choose(dialog, 5);
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  EXPECT_EQ(Columns(), 5);
  EXPECT_EQ(Stored("Multi WaveLength", "WaveLength No"), "1");
}

TEST_F(MultiConfig, ATableThatCannotBeBeginsWithTheFirstNumber) {
  for (const std::int32_t stated : {0, -1, 16}) {
    OpenTable(stated);
    InOptions([](QWidget& dialog) {
      EXPECT_EQ(Find<QComboBox>(dialog, "WLNoCombo")->currentText(), QStringLiteral("1"));
      EXPECT_EQ(Shown(dialog, "WLText1"), "200.0");
      Click(dialog, "CancelCmd");
    });
  }
}

TEST_F(MultiConfig, WhatAFieldDoesNotShowIsNotLost) {
  MultiOption option = MultiTable(1);
  option.WorkWaveLength[0] = 200.04;
  option.Parameter[0] = 1.0000000000001;
  OpenTable(option);
  InOptions([](QWidget& dialog) {
    EXPECT_EQ(Shown(dialog, "WLText1"), "200.0");
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Window->GetWorkWaveLength(0), 200.04);
  EXPECT_EQ(Window->GetParameter(0), 1.0000000000001);
}

TEST_F(MultiConfig, AWindowThatGoesWhileItsOptionsAreOpen) {
  Open();
  InOptions([this](QWidget& dialog) {
    Choose(dialog, 2);
    delete Window.data();
    Click(dialog, "OKCmd");
  });
  EXPECT_TRUE(Window.isNull());
}

}  // namespace
}  // namespace spectrane::testing_windows
