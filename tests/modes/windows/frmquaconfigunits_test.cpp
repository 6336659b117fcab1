#include "modes/windows/quaconfigfixture.h"

namespace spectrane::testing_windows {
namespace {

TEST_F(QuaConfig, TheUnitsInTheirOrderAndOnesOwnAtTheEnd) {
  const auto units = [](QWidget& dialog) {
    QStringList texts;
    const auto* const list = Find<QComboBox>(dialog, "ComboConcUnit");
    for (int i = 0; i < list->count(); ++i) texts.append(list->itemText(i));
    return texts.join(u' ');
  };
  const QString offered = QStringLiteral("\u00B5g/ml mg/ml mg/L g/L mM/L M/L ppm ppb % IU");
  const std::pair<const char*, QString> owns[] = {{"", offered},
                                                  {"drops", offered + QStringLiteral(" drops")},
                                                  {"ppm", offered},
                                                  {"\u03BCg/ml", offered}};
  for (const auto& [own, expected] : owns) {
    Given.CustomConcUnit = own;
    Open([&, &expected = expected](QWidget& dialog) {
      EXPECT_EQ(units(dialog), expected);
      Press(dialog, Qt::Key_Escape);
    });
  }
}

TEST_F(QuaConfig, EveryUnitOfTheListCanBeChosen) {
  for (int i = 0; i < static_cast<int>(kConcUnits.size()); ++i) {
    Confirm([&](QWidget& dialog) { Choose(dialog, "ComboConcUnit", i); });
    EXPECT_EQ(Result.ConcUnit, kConcUnits[static_cast<std::size_t>(i)]);
    EXPECT_EQ(Result.CustomConcUnit, "");
  }
}

TEST_F(QuaConfig, ATypedUnitIsRememberedAndOfferedAgain) {
  Confirm([](QWidget& dialog) { Type(dialog, "ConcUnitText", "  drops per  bucket "); });
  EXPECT_EQ(Result.ConcUnit, "drops per bucket");
  EXPECT_EQ(StoredHere("Conc Unit"), "drops per bucket");
  EXPECT_EQ(StoredHere("Custom Conc Unit"), "drops per bucket");

  // Another unit in between does not forget it.
  Confirm([](QWidget& dialog) { Choose(dialog, "ComboConcUnit", 3); });
  EXPECT_EQ(StoredHere("Conc Unit"), "g/L");
  EXPECT_EQ(StoredHere("Custom Conc Unit"), "drops per bucket");

  Confirm([](QWidget& dialog) { Choose(dialog, "ComboConcUnit", 10); });
  EXPECT_EQ(Result.ConcUnit, "drops per bucket");

  Confirm([](QWidget& dialog) { Type(dialog, "ConcUnitText", "spoons"); });
  EXPECT_EQ(StoredHere("Custom Conc Unit"), "spoons");
}

TEST_F(QuaConfig, TheGreekLetterAndTheMicroSignAreOneUnit) {
  for (const char* typed : {"\u03BCg/ml", "\u00B5g/ml"}) {
    Confirm([&](QWidget& dialog) { Type(dialog, "ConcUnitText", typed); });
    EXPECT_EQ(Result.ConcUnit, "\u00B5g/ml");
    EXPECT_EQ(Result.CustomConcUnit, "") << "it is one of the list";
    EXPECT_EQ(StoredHere("Conc Unit"), "\u00B5g/ml");
  }
  Confirm([](QWidget& dialog) { Type(dialog, "ConcUnitText", "\u03BCl/m\u00B3"); });
  EXPECT_EQ(StoredHere("Custom Conc Unit"), "\u00B5l/m\u00B3");

  Given.ConcUnit = "\u03BCg/ml";
  Open([](QWidget& dialog) {
    EXPECT_EQ(Row(dialog, "ComboConcUnit"), 0);
    EXPECT_EQ(TextOf(dialog, "ConcUnitText"), "\u00B5g/ml");
    Press(dialog, Qt::Key_Escape);
  });
}

TEST_F(QuaConfig, TheCaseOfAUnitIsThePersons) {
  // A list that completes what is typed would make "g/L" of "g/l", and a milligram of a single m.
  for (const char* typed : {"g/l", "m", "MG/ML", "iu"}) {
    EXPECT_TRUE(Open([&](QWidget& dialog) {
      Type(dialog, "ConcUnitText", typed);
      EXPECT_EQ(TextOf(dialog, "ConcUnitText"), typed);
      Press(dialog, Qt::Key_Return);
    })) << typed;
    EXPECT_EQ(Result.ConcUnit, typed);
    EXPECT_EQ(Result.CustomConcUnit, typed);
  }
}

TEST_F(QuaConfig, TheUnitOfADocumentDoesNotTakeThePlaceOfOnesOwn) {
  ASSERT_TRUE(Settings.PutSetting(kQuantitationSection, "Custom Conc Unit", "drops"));
  Given.ConcUnit = "spoons";
  Confirm([](QWidget& dialog) {
    EXPECT_EQ(TextOf(dialog, "ConcUnitText"), "spoons");
    EXPECT_EQ(Find<QComboBox>(dialog, "ComboConcUnit")->itemText(10), QStringLiteral("drops"));
  });
  EXPECT_EQ(Result.ConcUnit, "spoons");
  EXPECT_EQ(StoredHere("Custom Conc Unit"), "drops");
}

TEST_F(QuaConfig, AnEmptyUnitIsRefused) {
  for (const char* empty : {"", "   "}) {
    Boxes.ExpectWords(QStringLiteral("Conc.Unit: choose a unit from the list or type your own."));
    EXPECT_TRUE(Open([&](QWidget& dialog) {
      Type(dialog, "ConcUnitText", empty);
      Press(dialog, Qt::Key_Return);
      EXPECT_TRUE(dialog.isVisible());
      auto* const field = Find<QLineEdit>(dialog, "ConcUnitText");
      EXPECT_EQ(field->text(), QLatin1String(empty));
      EXPECT_EQ(field->selectedText(), field->text());
      QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("IU"));
      Press(dialog, Qt::Key_Return);
    }));
    EXPECT_EQ(Result.ConcUnit, "IU");
  }
}

TEST_F(QuaConfig, ALongUnitIsCutToWhatAFileHolds) {
  Confirm([](QWidget& dialog) {
    auto* const field = Find<QLineEdit>(dialog, "ConcUnitText");
    field->selectAll();
    field->insert(QString(300, u'x') + QStringLiteral("\n\t"));
  });
  EXPECT_EQ(Result.ConcUnit, std::string(255, 'x'));
}

}  // namespace
}  // namespace spectrane::testing_windows
