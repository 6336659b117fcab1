#include "views/everyview.h"

#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/ground/readablehints.h"
#include "onlooker/onlooker.h"

namespace spectrane::testing_windows {
namespace {

struct Palettes {
  const char* Name;
  QPalette Colours;
};

QPalette DarkPalette() {
  QPalette dark(QColor(0x2b, 0x2f, 0x36));
  dark.setColor(QPalette::Base, QColor(0x1f, 0x22, 0x27));
  dark.setColor(QPalette::AlternateBase, QColor(0x25, 0x29, 0x2f));
  return dark;
}

/// Puts the palette of the test program back.
class WithPalette {
 public:
  explicit WithPalette(const QPalette& palette) { QApplication::setPalette(palette); }
  ~WithPalette() { QApplication::setPalette(before_); }
  WithPalette(const WithPalette&) = delete;
  WithPalette& operator=(const WithPalette&) = delete;

 private:
  QPalette before_ = QApplication::palette();
};

TEST_F(EveryView, HasNothingToFindFaultWith) {
  const QStringList seen = Tour([](QWidget& window, const QString& view) {
    for (const QString& fault : FaultsOf(window))
      ADD_FAILURE() << view.toStdString() << ": " << fault.toStdString();
  });
  EXPECT_GE(seen.size(), 45);
}

TEST_F(EveryView, CanBeReadInADarkPalette) {
  const WithPalette dark(DarkPalette());
  Tour([](QWidget& window, const QString& view) {
    for (const QString& fault : ContrastFaults(window))
      ADD_FAILURE() << view.toStdString() << ": " << fault.toStdString();
  });
}

/// Pictures for a person to judge, in the folder that SPECTRANE_PICTURES names; run by
/// --gtest_also_run_disabled_tests.
TEST_F(EveryView, DISABLED_Pictures) {
  for (const Palettes& each : {Palettes{"light", QApplication::palette()}, Palettes{"dark", DarkPalette()}}) {
    const WithPalette palette(each.Colours);
    const QString folder = qEnvironmentVariable("SPECTRANE_PICTURES") + u'/' + QLatin1String(each.Name);
    ASSERT_TRUE(QDir().mkpath(folder));
    Main.reset();
    Tour([&folder](QWidget& window, const QString& view) {
      EXPECT_TRUE(window.grab().save(folder + u'/' + view + QStringLiteral(".png")));
    });
  }
}

// Ranges and remarks stand in the colour of hints, which palettes make half as strong as a text.
TEST(ReadableHints, FollowThePaletteOfTheDesktop) {
  QLabel hint(QStringLiteral("190.0 - 1100.0 nm"));
  hint.setForegroundRole(QPalette::PlaceholderText);
  const QPalette usual = QApplication::palette();
  for (const QPalette& palette :
       {usual, DarkPalette(), QPalette(QColor(Qt::white)), QPalette(QColor(Qt::black))}) {
    const WithPalette shown(palette);
    EXPECT_EQ(ContrastFaults(hint), QStringList()) << palette.color(QPalette::Window).name().toStdString();
    EXPECT_LT(QApplication::palette().color(QPalette::PlaceholderText).alpha(), 255) << "no hint any more";
  }
  QPalette strong = usual;
  strong.setColor(QPalette::PlaceholderText, Qt::darkBlue);
  EXPECT_EQ(WithReadableHints(strong), strong);
}

// ---- The onlooker itself ----

/// A small form without a fault, into which each case brings one.
struct Form {
  Form() {
    Dialog.setObjectName(QStringLiteral("Form"));
    auto* const column = new QVBoxLayout(&Dialog);
    Label.setBuddy(&Field);
    Field.setObjectName(QStringLiteral("Field"));
    OK.setObjectName(QStringLiteral("OKCmd"));
    for (QWidget* widget :
         {static_cast<QWidget*>(&Label), static_cast<QWidget*>(&Field), static_cast<QWidget*>(&OK)})
      column->addWidget(widget);
    Dialog.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&Dialog));
  }
  QWidget Dialog;
  QLabel Label{QStringLiteral("&Wavelength"), &Dialog};
  QLineEdit Field{QStringLiteral("546.0"), &Dialog};
  QPushButton OK{QStringLiteral("&OK"), &Dialog};
};

struct OnlookerCase {
  const char* Name;
  void (*Spoil)(Form& form);
  const char* Fault;
};

TEST(Onlooker, SeesEachFaultAndNoneInASoundForm) {
  EXPECT_EQ(FaultsOf(Form().Dialog), QStringList());
  const OnlookerCase cases[] = {
      {"no name", [](Form& form) { form.OK.setObjectName({}); }, "has no object name"},
      {"a name twice", [](Form& form) { form.OK.setObjectName(QStringLiteral("Field")); },
       "has no object name"},
      {"nothing to read out", [](Form& form) { form.Label.setBuddy(nullptr); },
       "no name for a screen reader"},
      {"a key without a field", [](Form& form) { form.Label.setBuddy(nullptr); }, "and no field"},
      {"a key twice", [](Form& form) { form.OK.setText(QStringLiteral("&Write")); }, "is another's"},
      {"a Tab that goes back",
       [](Form& form) {
         delete form.Dialog.layout();
         form.Field.move(form.OK.pos() + QPoint(0, 3 * form.OK.height()));
       },
       "Tab goes back"},
      {"a label too small", [](Form& form) { form.Label.setFixedWidth(20); }, "cuts \"&Wavelength\""},
      {"a button too small", [](Form& form) { form.OK.setFixedWidth(12); }, "cuts \"&OK\""},
      {"a field too small", [](Form& form) { form.Field.setFixedWidth(16); }, "cuts \"546.0\""},
      {"two in one place", [](Form& form) { form.OK.move(form.Field.pos()); }, "lies over"},
      {"pale words",
       [](Form& form) {
         QPalette pale = form.Label.palette();
         pale.setColor(QPalette::WindowText, pale.color(QPalette::Window).darker(140));
         form.Label.setPalette(pale);
       },
       "has a contrast of"},
  };
  for (const OnlookerCase& each : cases) {
    Form form;
    each.Spoil(form);
    const bool moved = qstrcmp(each.Name, "two in one place") == 0;
    if (!moved) QCoreApplication::processEvents();
    EXPECT_TRUE(FaultsOf(form.Dialog).join(u'\n').contains(QLatin1String(each.Fault)))
        << each.Name << ":\n"
        << FaultsOf(form.Dialog).join(u'\n').toStdString();
  }
}

}  // namespace
}  // namespace spectrane::testing_windows
