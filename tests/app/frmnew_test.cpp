#include "app/frmnew.h"

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

#include "app/dialogfixture.h"

namespace spectrane::testing_windows {
namespace {

struct Kind {
  const char* Name;
  int FileType;
  const char* Caption;
  const char* Description;
};

const Kind kKinds[] = {
    {"BasicOption", 6, "Photometry",
     "New Photometry file.Measure  Absorbance(Abs)/Transmittance(%T) in the custom wavelength."},
    {"QuaOption", 1, "Quantitation",
     "New Quantitation file.Create fitting curve with standard sample or coefficients."},
    {"TimeScanOption", 2, "Kinetics",
     "New Kinetics file.Measure Absorbance(Abs)/Transmittance(%T) in special time interval."},
    {"WaveLengthOption", 3, "Wavelength Scan",
     "New Wavelength scan file.Measure Absorbance(Abs)/Transmittance(%T) in special wavelength range and "
     "wavelength intervval."},
    {"MultiOption", 4, "Multi Wavelength",
     "New Multi Wavelength file.Measure Absorbance(Abs)/Transmittance(%T) in sevaral wavelength."},
    {"DNAOption", 5, "DNA_Protein", "New DNA/Protein file.Measure the DNA/Protein conc. in 3 methods."},
};

class NewFileGuide : public DialogFixture {
 protected:
  void Guide(std::function<void(QWidget& dialog)> act) {
    bool opened = false;
    InDialog("FrmNew", [&opened, act = std::move(act)](QWidget& dialog) {
      opened = true;
      act(dialog);
    });
    FrmNew::Run(Main);
    EXPECT_TRUE(opened);
  }
  static QString Description(const QWidget& dialog) {
    return Find<QLabel>(dialog, "LabelDescription")->text();
  }
  static bool IsChosen(const QWidget& dialog, const char* name) {
    return Find<QRadioButton>(dialog, name)->isChecked();
  }
};

class EachKind : public NewFileGuide, public testing::WithParamInterface<Kind> {};

TEST_P(EachKind, AClickDescribesAndStoresAndNewCreates) {
  const Kind& kind = GetParam();
  // Begin with another one.
  Settings.PutSetting("New File", "File Type", kind.FileType == 3 ? "4" : "3");
  Guide([&](QWidget& dialog) {
    EXPECT_FALSE(IsChosen(dialog, kind.Name));
    auto* const option = Find<QRadioButton>(dialog, kind.Name);
    EXPECT_EQ(option->text().remove(u'&'), QString::fromUtf8(kind.Caption));
    EXPECT_EQ(option->accessibleDescription(), QString::fromUtf8(kind.Description));
    EXPECT_FALSE(option->icon().isNull());
    Click(dialog, kind.Name);
    EXPECT_TRUE(IsChosen(dialog, kind.Name));
    EXPECT_EQ(Description(dialog), QString::fromUtf8(kind.Description));
    EXPECT_EQ(Stored("New File", "File Type"), std::to_string(kind.FileType));
    EXPECT_EQ(Main.Window().NewFileType, kind.FileType);
    EXPECT_TRUE(Main.Created.empty());
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Main.Created, std::vector<int>{kind.FileType});
}

TEST_P(EachKind, TheStoredOneIsChosenWhenTheGuideComesUp) {
  const Kind& kind = GetParam();
  Settings.PutSetting("New File", "File Type", std::to_string(kind.FileType));
  Guide([&](QWidget& dialog) {
    EXPECT_TRUE(IsChosen(dialog, kind.Name));
    EXPECT_EQ(Description(dialog), QString::fromUtf8(kind.Description));
    EXPECT_EQ(FocusName(), QString::fromUtf8(kind.Name));
    Click(dialog, "CancelCmd");
  });
  EXPECT_TRUE(Main.Created.empty());
}

TEST_P(EachKind, ADoubleClickCreates) {
  const Kind& kind = GetParam();
  Guide([&](QWidget& dialog) {
    auto* const option = Find<QRadioButton>(dialog, kind.Name);
    QTest::mouseClick(option, Qt::LeftButton);
    QTest::mouseDClick(option, Qt::LeftButton);
  });
  EXPECT_EQ(Main.Created, std::vector<int>{kind.FileType});
}

INSTANTIATE_TEST_SUITE_P(NewFileGuide, EachKind, testing::ValuesIn(kKinds), NameOfRow<Kind>);

TEST_F(NewFileGuide, SaysWhatItIs) {
  Guide([](QWidget& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("New File"));
    EXPECT_EQ(Find<QPushButton>(dialog, "OKCmd")->text().remove(u'&'), QStringLiteral("New File"));
    EXPECT_EQ(Find<QPushButton>(dialog, "CancelCmd")->text().remove(u'&'), QStringLiteral("Close"));
    EXPECT_TRUE(Find<QPushButton>(dialog, "OKCmd")->isDefault());
    ExpectNamesEverywhere(dialog);
    EXPECT_EQ(AccessKeys(dialog).size(), 8);
    dialog.close();
  });
}

TEST_F(NewFileGuide, WithNothingStoredTheFirstOptionIsChosenAndNothingWritten) {
  Guide([](QWidget& dialog) {
    EXPECT_TRUE(IsChosen(dialog, "BasicOption"));
    Press(dialog, Qt::Key_Escape);
  });
  EXPECT_EQ(Stored("New File", "File Type"), "");
  EXPECT_TRUE(Main.Created.empty());
}

TEST_F(NewFileGuide, NonsenseInTheFileIsNoChoice) {
  for (const char* nonsense : {"0", "7", "-1", "six", "1e99", "99999999999", "True", "3x"}) {
    WriteBytes(Folder.Path("config.ini"), std::string("[New File]\nFile Type=") + nonsense + "\n");
    Guide([&](QWidget& dialog) {
      EXPECT_TRUE(IsChosen(dialog, "BasicOption")) << nonsense;
      Press(dialog, Qt::Key_Escape);
    });
    EXPECT_EQ(Stored("New File", "File Type"), nonsense);
  }
}

TEST_F(NewFileGuide, ArrowKeysMoveTheChoiceAndEnterCreates) {
  Guide([this](QWidget& dialog) {
    Press(dialog, Qt::Key_Down);
    EXPECT_TRUE(IsChosen(dialog, "QuaOption"));
    EXPECT_EQ(Stored("New File", "File Type"), "1");
    Press(dialog, Qt::Key_Down);
    Press(dialog, Qt::Key_Down);
    Press(dialog, Qt::Key_Up);
    EXPECT_TRUE(IsChosen(dialog, "TimeScanOption"));
    EXPECT_EQ(Stored("New File", "File Type"), "2");
    Press(dialog, Qt::Key_Return);
  });
  EXPECT_EQ(Main.Created, std::vector<int>{2});
}

TEST_F(NewFileGuide, TabGoesFromTheOptionsToTheButtonsInReadingOrder) {
  Guide([](QWidget& dialog) {
    Press(dialog, Qt::Key_Tab);
    EXPECT_EQ(FocusName(), QStringLiteral("OKCmd"));
    Press(dialog, Qt::Key_Tab);
    EXPECT_EQ(FocusName(), QStringLiteral("CancelCmd"));
    Press(dialog, Qt::Key_Return);
  });
  EXPECT_TRUE(Main.Created.empty()) << "Enter on Close closes";
}

TEST_F(NewFileGuide, TheDocumentIsMadeWhenTheGuideIsGone) {
  bool made = false;
  Main.OnNewFile = [&made] {
    made = true;
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  };
  Guide([](QWidget& dialog) { Click(dialog, "OKCmd"); });
  EXPECT_TRUE(made);
}

TEST_F(NewFileGuide, NothingMovesWhenAnotherOptionIsChosen) {
  Guide([](QWidget& dialog) {
    const QSize size = dialog.size();
    const QRect place = Find<QLabel>(dialog, "LabelDescription")->geometry();
    for (const Kind& kind : kKinds) {
      Click(dialog, kind.Name);
      QCoreApplication::processEvents();
      EXPECT_EQ(dialog.size(), size) << kind.Name;
      const auto* const label = Find<QLabel>(dialog, "LabelDescription");
      EXPECT_EQ(label->geometry(), place) << kind.Name;
      EXPECT_LE(label->heightForWidth(label->width()), label->height()) << "clipped: " << kind.Name;
    }
    dialog.close();
  });
}

TEST_F(NewFileGuide, AChoiceThatCannotBeStoredHoldsForTheRun) {
  BlockSettings();
  Guide([this](QWidget& dialog) {
    Click(dialog, "DNAOption");
    EXPECT_EQ(Display.Remark, Settings.Problem());
    EXPECT_NE(Display.Remark, "");
    Click(dialog, "CancelCmd");
  });
  Guide([](QWidget& dialog) {
    EXPECT_TRUE(IsChosen(dialog, "DNAOption"));
    dialog.close();
  });
}

}  // namespace
}  // namespace spectrane::testing_windows
