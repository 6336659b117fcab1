#include "app/frmoption.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTabWidget>

#include "app/dialogfixture.h"

namespace spectrane::testing_windows {
namespace {

class Options : public DialogFixture {
 protected:
  /// Opens the options, does something in them, and gives whether they were confirmed.
  bool Open(std::function<void(QWidget& dialog)> act) {
    bool opened = false;
    InDialog("FrmOption", [&opened, act = std::move(act)](QWidget& dialog) {
      opened = true;
      act(dialog);
    });
    const int result = FrmOption(Main).exec();
    EXPECT_TRUE(opened);
    return result == QDialog::Accepted;
  }
  static void Page(const QWidget& dialog, int page) {
    auto* const bar = Find<QTabWidget>(dialog, "TabStripOption")->tabBar();
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(page).center());
    EXPECT_EQ(bar->currentIndex(), page);
  }
  static void Type(const QWidget& dialog, const char* name, const QString& text) {
    auto* const field = Find<QLineEdit>(dialog, name);
    field->setFocus();
    field->selectAll();
    if (text.isEmpty()) QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, text);
  }
  static int Row(const QWidget& dialog, const char* name) {
    return Find<QComboBox>(dialog, name)->currentIndex();
  }
  /// Chooses a row by keys.
  static void Choose(const QWidget& dialog, const char* name, int row) {
    auto* const list = Find<QComboBox>(dialog, name);
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Home);
    for (int i = 0; i < row; ++i) QTest::keyClick(list, Qt::Key_Down);
    EXPECT_EQ(list->currentIndex(), row);
  }
  static QStringList Rows(const QWidget& dialog, const char* name) {
    const auto* const list = Find<QComboBox>(dialog, name);
    QStringList rows;
    for (int i = 0; i < list->count(); ++i) rows.append(list->itemText(i));
    return rows;
  }
};

enum Pages { kInformation, kPrecision, kPort, kStyle };

TEST_F(Options, PagesAndControlsHaveTheirWords) {
  Start();
  Open([](QWidget& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Option"));
    const auto* const pages = Find<QTabWidget>(dialog, "TabStripOption");
    QStringList captions;
    QStringList keyed;
    for (int i = 0; i < pages->count(); ++i) {
      keyed.append(pages->tabText(i));
      captions.append(pages->tabText(i).remove(u'&'));
    }
    EXPECT_EQ(captions, QStringList({QStringLiteral("Information"), QStringLiteral("Display Precision"),
                                     QStringLiteral("communication port"), QStringLiteral("Style")}));
    const std::pair<const char*, const char*> labels[] = {{"LabelOpearater", "Operator:"},
                                                          {"LabelDeparterment", "Company:"},
                                                          {"LabelPort", "communication port"},
                                                          {"LabelStyle", "Style"}};
    for (const auto& [name, text] : labels) {
      EXPECT_EQ(Find<QLabel>(dialog, name)->text().remove(u'&').toStdString(), text);
    }
    const std::pair<const char*, const char*> buttons[] = {
        {"OptionStandard", "Standard Precision(100.0%T/0.000Abs)"},
        {"OptionHighPrecise", "High Precision(100.00%T/0.0000Abs)"},
        {"CheckAuto", "Auto search communication port."},
        {"OKCmd", "OK"},
        {"CancelCmd", "Cancel"}};
    for (const auto& [name, text] : buttons) {
      EXPECT_EQ(Find<QAbstractButton>(dialog, name)->text().remove(u'&').toStdString(), text);
    }
    EXPECT_EQ(Rows(dialog, "ComboPortList").join(u' '),
              QStringLiteral("COM1 COM2 COM3 COM4 COM5 COM6 COM7 COM8"));
    EXPECT_EQ(Rows(dialog, "ComboFomStyle").join(u','),
              QStringLiteral("Office 2000,Office XP,Office 2003,Windows XP,Whidbev,Office 2007,Ribbon"));
    ExpectNamesEverywhere(dialog);
    EXPECT_EQ(AccessKeys(dialog, keyed).size(), 13);
    dialog.close();
  });
}

TEST_F(Options, DefaultsOfAFirstStart) {
  Start();
  Open([](QWidget& dialog) {
    EXPECT_EQ(FocusName(), QStringLiteral("TestOpearater"));
    EXPECT_EQ(Find<QLineEdit>(dialog, "TestOpearater")->text(), QString());
    EXPECT_TRUE(Find<QRadioButton>(dialog, "OptionStandard")->isChecked());
    EXPECT_TRUE(Find<QCheckBox>(dialog, "CheckAuto")->isChecked());
    EXPECT_FALSE(Find<QComboBox>(dialog, "ComboPortList")->isEnabled());
    EXPECT_FALSE(Find<QLabel>(dialog, "LabelPort")->isEnabled());
    EXPECT_EQ(Row(dialog, "ComboPortList"), 0);
    EXPECT_EQ(Row(dialog, "ComboFomStyle"), 2);
    dialog.close();
  });
}

TEST_F(Options, StoredValuesComeUp) {
  WriteBytes(Folder.Path("config.ini"),
             "[Option]\nPrecise=1\nAuto Search=1\nPort ID=7\nOpearator=Ada  \nDepartment=Lab\n"
             "[Main Window]\nMenu Style=5\n");
  Start();
  Open([](QWidget& dialog) {
    EXPECT_EQ(Find<QLineEdit>(dialog, "TestOpearater")->text(), QStringLiteral("Ada"));
    EXPECT_EQ(Find<QLineEdit>(dialog, "TextDeparterment")->text(), QStringLiteral("Lab"));
    EXPECT_TRUE(Find<QRadioButton>(dialog, "OptionHighPrecise")->isChecked());
    EXPECT_FALSE(Find<QCheckBox>(dialog, "CheckAuto")->isChecked());
    EXPECT_TRUE(Find<QComboBox>(dialog, "ComboPortList")->isEnabled());
    EXPECT_TRUE(Find<QLabel>(dialog, "LabelPort")->isEnabled());
    EXPECT_EQ(Row(dialog, "ComboPortList"), 6);
    EXPECT_EQ(Row(dialog, "ComboFomStyle"), 5);
    dialog.close();
  });
}

TEST_F(Options, OKTakesAndStoresEverything) {
  Start();
  EXPECT_TRUE(Open([](QWidget& dialog) {
    Type(dialog, "TestOpearater", QStringLiteral("  J. Example "));
    Type(dialog, "TextDeparterment", QStringLiteral("Q & A"));
    Page(dialog, kPrecision);
    Click(dialog, "OptionHighPrecise");
    Page(dialog, kPort);
    Click(dialog, "CheckAuto");
    EXPECT_TRUE(Find<QComboBox>(dialog, "ComboPortList")->isEnabled());
    EXPECT_TRUE(Find<QLabel>(dialog, "LabelPort")->isEnabled());
    Choose(dialog, "ComboPortList", 4);
    Page(dialog, kStyle);
    Choose(dialog, "ComboFomStyle", 6);
    Click(dialog, "OKCmd");
  }));
  EXPECT_EQ(Stored("Option", "Auto Search"), "1");
  EXPECT_EQ(Stored("Option", "Precise"), "1");
  EXPECT_EQ(Stored("Option", "Opearator"), "J. Example");
  EXPECT_EQ(Stored("Option", "Department"), "Q & A");
  EXPECT_EQ(Stored("Option", "Port ID"), "5");
  EXPECT_EQ(Stored("Main Window", "Menu Style"), "6");

  EXPECT_EQ(Main.Window().Operator, "J. Example");
  EXPECT_EQ(Main.Window().Department, "Q & A");
  EXPECT_EQ(Main.Window().PortID, 5);
  EXPECT_EQ(Main.Window().PortSearchMode, 1);
  EXPECT_EQ(Link.State.PortSearchMode, 1);
  EXPECT_EQ(Main.Window().PrecisionMode, 1);
  EXPECT_EQ(Link.Formats.PrecisionMode, 1);
  EXPECT_EQ(Link.Formats.AbsFormat, "0.0000");
  EXPECT_EQ(Link.Formats.TransFormat, "0.00");
  EXPECT_EQ(Link.Formats.CoefficientFormat, "0.0000");
  EXPECT_EQ(Main.FormatChanges, 1);
  EXPECT_EQ(Main.Window().MenuStyle, 6);
  EXPECT_EQ(Main.MenuStyle, 6);
  EXPECT_EQ(Display.Remark, "");
}

TEST_F(Options, BackToTheUsual) {
  WriteBytes(Folder.Path("config.ini"),
             "[Option]\nPrecise=1\nAuto Search=1\nPort ID=7\nOpearator=Ada\nDepartment=Lab\n");
  Start();
  EXPECT_TRUE(Open([](QWidget& dialog) {
    Type(dialog, "TestOpearater", QString());
    Page(dialog, kPrecision);
    Click(dialog, "OptionStandard");
    Page(dialog, kPort);
    Click(dialog, "CheckAuto");
    EXPECT_FALSE(Find<QComboBox>(dialog, "ComboPortList")->isEnabled());
    EXPECT_FALSE(Find<QLabel>(dialog, "LabelPort")->isEnabled());
    Press(dialog, Qt::Key_Return);
  }));
  EXPECT_EQ(Stored("Option", "Auto Search"), "0");
  EXPECT_EQ(Link.State.PortSearchMode, 0);
  EXPECT_EQ(Stored("Option", "Port ID"), "7") << "a search in between does not forget the port";
  EXPECT_EQ(Stored("Option", "Precise"), "0");
  EXPECT_EQ(Link.Formats.AbsFormat, "0.000");
  EXPECT_EQ(Link.Formats.TransFormat, "0.0");
  EXPECT_EQ(Stored("Option", "Opearator"), "");
  EXPECT_EQ(Stored("Option", "Department"), "Lab");
}

TEST_F(Options, OKWithoutAChangeShortensCoefficientsAndNothingElse) {
  Start();
  EXPECT_EQ(Link.Formats.CoefficientFormat, "0.000000");
  EXPECT_TRUE(Open([](QWidget& dialog) { Press(dialog, Qt::Key_Return); }));
  EXPECT_EQ(Link.Formats.CoefficientFormat, "0.000");
  EXPECT_EQ(Main.FormatChanges, 1);
  EXPECT_EQ(Main.MenuStyle, -1) << "the bars are drawn anew for another style only";
  EXPECT_EQ(Stored("Option", "Port ID"), "1");
  EXPECT_EQ(Stored("Main Window", "Menu Style"), "2");
}

TEST_F(Options, TheStyleComesAfterPrecisionAndBeforeTheNames) {
  Start();
  bool restyled = false;
  Main.OnMenuStyle = [&] {
    restyled = true;
    EXPECT_EQ(Stored("Option", "Auto Search"), "1");
    EXPECT_EQ(Stored("Option", "Precise"), "1");
    EXPECT_EQ(Main.FormatChanges, 1);
    EXPECT_EQ(Stored("Option", "Opearator"), "");
    EXPECT_EQ(Stored("Option", "Department"), "");
    EXPECT_EQ(Stored("Option", "Port ID"), "");
    EXPECT_EQ(Stored("Main Window", "Menu Style"), "2");
    EXPECT_NE(QApplication::activeModalWidget(), nullptr);
  };
  Open([](QWidget& dialog) {
    Type(dialog, "TestOpearater", QStringLiteral("Ada"));
    Type(dialog, "TextDeparterment", QStringLiteral("Lab"));
    Find<QRadioButton>(dialog, "OptionHighPrecise")->setChecked(true);
    Find<QCheckBox>(dialog, "CheckAuto")->setChecked(false);
    Find<QComboBox>(dialog, "ComboFomStyle")->setCurrentIndex(0);
    Click(dialog, "OKCmd");
  });
  EXPECT_TRUE(restyled);
  EXPECT_EQ(Stored("Main Window", "Menu Style"), "0");
}

TEST_F(Options, CancelEscAndTheCloseBoxChangeNothing) {
  WriteBytes(Folder.Path("config.ini"), "[Option]\nOpearator=Ada\nPort ID=3\n");
  Start();
  const std::string before = ReadBytes(Folder.Path("config.ini"));
  const std::function<void(QWidget&)> ways[] = {[](QWidget& dialog) { Click(dialog, "CancelCmd"); },
                                                [](QWidget& dialog) { Press(dialog, Qt::Key_Escape); },
                                                [](QWidget& dialog) { dialog.close(); }};
  for (const auto& way : ways) {
    EXPECT_FALSE(Open([&way](QWidget& dialog) {
      Type(dialog, "TestOpearater", QStringLiteral("Somebody"));
      Find<QRadioButton>(dialog, "OptionHighPrecise")->click();
      Find<QCheckBox>(dialog, "CheckAuto")->click();
      Find<QComboBox>(dialog, "ComboFomStyle")->setCurrentIndex(0);
      way(dialog);
    }));
  }
  EXPECT_EQ(ReadBytes(Folder.Path("config.ini")), before);
  EXPECT_EQ(Main.Window().Operator, "Ada");
  EXPECT_EQ(Link.State.PortSearchMode, 0);
  EXPECT_EQ(Link.Formats.AbsFormat, "0.000");
  EXPECT_EQ(Main.FormatChanges, 0);
  EXPECT_EQ(Main.MenuStyle, -1);
}

TEST_F(Options, NonsenseInAKeyLeavesTheDefault) {
  struct Nonsense {
    const char* Section;
    const char* Key;
    std::vector<const char*> Values;
  };
  const Nonsense rows[] = {
      {"Option", "Precise", {"2", "-1", "x", "1e99", "True"}},
      {"Option", "Auto Search", {"2", "-1", "yes", "99999999999"}},
      {"Option", "Port ID", {"0", "9", "-3", "COM3", "3.9e40"}},
      {"Main Window", "Menu Style", {"7", "-1", "Ribbon", "1e10"}},
  };
  for (const Nonsense& row : rows) {
    for (const char* value : row.Values) {
      WriteBytes(Folder.Path("config.ini"),
                 std::string("[") + row.Section + "]\n" + row.Key + "=" + value + "\n");
      Main.Window() = {};
      Start();
      Open([&](QWidget& dialog) {
        EXPECT_TRUE(Find<QRadioButton>(dialog, "OptionStandard")->isChecked()) << row.Key << value;
        EXPECT_TRUE(Find<QCheckBox>(dialog, "CheckAuto")->isChecked()) << row.Key << value;
        EXPECT_EQ(Row(dialog, "ComboPortList"), 0) << row.Key << value;
        EXPECT_EQ(Row(dialog, "ComboFomStyle"), 2) << row.Key << value;
        Click(dialog, "OKCmd");
      });
      EXPECT_EQ(Link.Formats.AbsFormat, "0.000") << row.Key << value;
      EXPECT_EQ(Link.State.PortSearchMode, 0) << row.Key << value;
    }
  }
}

TEST_F(Options, ThePortOfTheLastConnectIsOffered) {
  Start();
  Settings.PutSetting("Option", "Port ID", "6");
  Open([](QWidget& dialog) {
    EXPECT_EQ(Row(dialog, "ComboPortList"), 5);
    dialog.close();
  });
}

TEST_F(Options, AChosenPortComesBeforeTheOneThatASearchHasFound) {
  Start();
  Main.Link().State.PortNumber = 3;
  Main.Window().PortSearchMode = 1;
  Settings.PutSetting("Option", "Port ID", "5");
  Open([](QWidget& dialog) {
    EXPECT_EQ(Row(dialog, "ComboPortList"), 4);
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Settings.GetSetting("Option", "Port ID"), "5");
  Main.Window().PortSearchMode = 0;
  Open([](QWidget& dialog) {
    EXPECT_EQ(Row(dialog, "ComboPortList"), 2) << "of a search";
    dialog.close();
  });
}

TEST_F(Options, NamesAreOneLineOfAtMost255Characters) {
  Start();
  Open([](QWidget& dialog) {
    auto* const field = Find<QLineEdit>(dialog, "TestOpearater");
    field->setText({});
    field->insert(QString(300, u'x'));
    EXPECT_EQ(field->text().size(), 255);
    field->setText({});
    field->insert(QStringLiteral("first\ns\u00e9cond\r\tthird\u2028fourth\n"));
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Main.Window().Operator, "first s\u00e9cond  third fourth");
  EXPECT_EQ(Stored("Option", "Opearator"), Main.Window().Operator);
}

TEST_F(Options, TabGoesInReadingOrder) {
  Start();
  Open([](QWidget& dialog) {
    QStringList order{FocusName()};
    for (int i = 0; i < 4; ++i) {
      Press(dialog, Qt::Key_Tab);
      order.append(FocusName());
    }
    EXPECT_EQ(order.join(u' '),
              QStringLiteral("TestOpearater TextDeparterment OKCmd CancelCmd TabStripOptionBar"));
    Page(dialog, kPort);
    Find<QCheckBox>(dialog, "CheckAuto")->setChecked(false);
    Find<QCheckBox>(dialog, "CheckAuto")->setFocus();
    Press(dialog, Qt::Key_Tab);
    EXPECT_EQ(FocusName(), QStringLiteral("ComboPortList"));
    Press(dialog, Qt::Key_Tab);
    EXPECT_EQ(FocusName(), QStringLiteral("OKCmd"));
    dialog.close();
  });
}

TEST_F(Options, TheDialogKeepsItsSizeOnEachPage) {
  Start();
  Open([](QWidget& dialog) {
    const QSize size = dialog.size();
    for (const int page : {kPrecision, kPort, kStyle, kInformation}) {
      Page(dialog, page);
      QCoreApplication::processEvents();
      EXPECT_EQ(dialog.size(), size) << page;
    }
    dialog.close();
  });
}

TEST_F(Options, WhatCannotBeStoredHoldsForTheRun) {
  BlockSettings();
  Start();
  EXPECT_TRUE(Open([](QWidget& dialog) {
    Type(dialog, "TestOpearater", QStringLiteral("Ada"));
    Find<QRadioButton>(dialog, "OptionHighPrecise")->click();
    Click(dialog, "OKCmd");
  }));
  EXPECT_NE(Display.Remark, "");
  EXPECT_EQ(Display.Remark, Settings.Problem());
  EXPECT_EQ(Main.Window().Operator, "Ada");
  EXPECT_EQ(Link.Formats.AbsFormat, "0.0000");
  Open([](QWidget& dialog) {
    EXPECT_EQ(Find<QLineEdit>(dialog, "TestOpearater")->text(), QStringLiteral("Ada"));
    EXPECT_TRUE(Find<QRadioButton>(dialog, "OptionHighPrecise")->isChecked());
    dialog.close();
  });
}

}  // namespace
}  // namespace spectrane::testing_windows
