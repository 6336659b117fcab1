#include <QLabel>
#include <QPushButton>

#include <algorithm>

#include "modes/windows/frmbasicconfig.h"
#include "modes/windows/frmbasicfixture.h"

namespace spectrane::testing_windows {
namespace {

class BasicConfig : public BasicWindow {
 protected:
  /// Opens the options, does something with the field, and presses a key or a button.
  void Options(std::function<void(QWidget& dialog, QLineEdit& field)> act) {
    bool opened = false;
    InDialog("FrmBasicConfig", [&opened, act = std::move(act)](QWidget& dialog) {
      opened = true;
      act(dialog, *Find<QLineEdit>(dialog, "WavelengthText"));
    });
    Window->ShowConfigWindow();
    EXPECT_TRUE(opened);
  }
  static void Type(QLineEdit& field, const char* text) {
    field.selectAll();
    QTest::keyClicks(&field, QString::fromUtf8(text));
  }
  static void Click(QWidget& dialog, const char* button) {
    QTest::mouseClick(Find<QPushButton>(dialog, button), Qt::LeftButton);
  }
};

TEST_F(BasicConfig, ShowsTheWavelengthOfTheWindow) {
  Open();
  Window->SetWaveLength(500.25);
  Options([](QWidget& dialog, QLineEdit& field) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Photometry Option"));
    EXPECT_EQ(field.text(), QStringLiteral("500.3"));
    EXPECT_EQ(Find<QPushButton>(dialog, "OKCmd")->text().remove(u'&'), QStringLiteral("OK"));
    EXPECT_TRUE(Find<QPushButton>(dialog, "OKCmd")->isDefault());
    EXPECT_TRUE(field.hasFocus());
    EXPECT_EQ(field.selectedText(), field.text());
    ExpectNamesEverywhere(dialog);
    QTest::keyClick(&field, Qt::Key_Return);
  });
  EXPECT_EQ(Window->WaveLength(), 500.25) << "an OK without a change changes nothing";
}

TEST_F(BasicConfig, OKTakesAndStoresTheWavelength) {
  Open();
  Options([](QWidget& dialog, QLineEdit& field) {
    Type(field, " 600.5 ");
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Window->WaveLength(), 600.5);
  EXPECT_EQ(Settings.GetSetting("Basic Test", "Wavelength"), "600.5");
}

TEST_F(BasicConfig, CancelAndEscChangeNothing) {
  Open();
  Options([](QWidget& dialog, QLineEdit& field) {
    Type(field, "600");
    Click(dialog, "CancelCmd");
  });
  Options([](QWidget&, QLineEdit& field) {
    Type(field, "600");
    QTest::keyClick(&field, Qt::Key_Escape);
  });
  EXPECT_EQ(Window->WaveLength(), 546.0);
  EXPECT_EQ(Settings.GetSetting("Basic Test", "Wavelength"), "546");
}

TEST_F(BasicConfig, WrongInputIsToldAndStaysInTheField) {
  ConnectNow();
  Link.State.WavelengthMin = 200.0;
  Link.State.WavelengthMax = 1000.0;
  Open();
  for (const char* wrong : {"", "abc", "546,5", "5 46", "199.9", "1000.1", "-546", "1e9", "nan", "0x222"}) {
    Boxes.ExpectMessage(1006);
    Options([&](QWidget& dialog, QLineEdit& field) {
      field.setText(QString());
      Type(field, wrong);
      Click(dialog, "OKCmd");
      EXPECT_TRUE(dialog.isVisible()) << wrong;
      EXPECT_EQ(field.text(), QLatin1String(wrong));
      EXPECT_EQ(field.selectedText(), field.text()) << wrong;
      EXPECT_TRUE(field.hasFocus()) << wrong;
      Click(dialog, "CancelCmd");
    });
    EXPECT_TRUE(Boxes.AllAsked()) << wrong;
    EXPECT_EQ(Window->WaveLength(), 546.0) << wrong;
  }
  EXPECT_EQ(Settings.GetSetting("Basic Test", "Wavelength"), "546");
}

TEST_F(BasicConfig, BothEndsOfTheRangeAreTaken) {
  Open();
  for (const char* end : {"190", "1100.0"}) {
    Options([&](QWidget& dialog, QLineEdit& field) {
      Type(field, end);
      Click(dialog, "OKCmd");
    });
    EXPECT_EQ(Window->WaveLength(), QByteArray(end).toDouble());
  }
}

TEST_F(BasicConfig, TheLabelLeadsToTheField) {
  Open();
  Options([](QWidget& dialog, QLineEdit& field) {
    const auto labels = dialog.findChildren<QLabel*>();
    const auto named = std::ranges::find_if(labels, [&](QLabel* label) { return label->buddy() == &field; });
    ASSERT_NE(named, labels.end());
    EXPECT_TRUE((*named)->text().contains(u'&'));
    Click(dialog, "CancelCmd");
  });
}

TEST_F(BasicConfig, AWindowThatGoesWhileItsOptionsAreOpen) {
  Open();
  Options([this](QWidget& dialog, QLineEdit& field) {
    Type(field, "600");
    delete Window.data();
    Click(dialog, "OKCmd");
  });
  EXPECT_TRUE(Window.isNull());
}

}  // namespace
}  // namespace spectrane::testing_windows
