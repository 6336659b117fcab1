#include "modes/windows/frmselectsampler.h"

#include <QComboBox>
#include <QPushButton>

#include "app/dialogfixture.h"
#include "app/ground/words.h"
#include "base/language.h"

namespace spectrane::testing_windows {
namespace {

class SelectSampler : public DialogFixture {
 protected:
  void SetUp() override {
    FitSampler({1, 2, 3, 4, 5, 6, 7, 8});
    ConnectNow();
    Instrument.OnExchange = [this](const ExchangeRecord& record) { Commands.push_back(record.Request); };
  }
  /// What becomes of the next command that begins with `verb`.
  void Fail(const char* verb, const char* fault, std::vector<std::string> parameters = {}) {
    ASSERT_EQ(Instrument.Faults().Add(verb, "1", fault, parameters), std::nullopt);
  }
  /// Asks for a position, does something in the dialog, and gives whether a position was taken.
  bool Ask(std::function<void(QWidget& dialog, QComboBox& list)> act) {
    // The exchange before the dialog yields, so the dialog is waited for.
    QTimer poll;
    bool opened = false;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
      QWidget* const dialog = QApplication::activeModalWidget();
      if (opened || dialog == nullptr) return;
      opened = true;
      poll.stop();
      EXPECT_EQ(dialog->objectName(), QStringLiteral("FrmSelectSampler"));
      EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
      act(*dialog, *Find<QComboBox>(*dialog, "ComboSelectSampler"));
      EXPECT_FALSE(dialog->isVisible()) << "the dialog stayed open";
      // Whatever a test left behind must not keep the dialog.
      Loop.OnYield = {};
      if (dialog->isVisible()) dialog->close();
    });
    poll.start(0);
    const int result = FrmSelectSampler(Main).exec();
    EXPECT_TRUE(opened);
    return result == QDialog::Accepted;
  }
  /// Chooses an entry of the list by keys.
  static void Choose(QComboBox& list, int row) {
    QTest::keyClick(&list, Qt::Key_Home);
    for (int i = 0; i < row; ++i) QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_EQ(list.currentIndex(), row);
  }
  static QString State(const QWidget& dialog) { return Find<QLabel>(dialog, "LabelState")->text(); }

  std::vector<std::string> Commands;
};

TEST_F(SelectSampler, PositionsAndControlsHaveTheirWords) {
  Ask([](QWidget& dialog, QComboBox& list) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Setup Automatic Sampler"));
    ASSERT_EQ(list.count(), 8);
    for (int i = 0; i < 8; ++i) {
      EXPECT_EQ(list.itemText(i), QStringLiteral("%1# Sampler Position").arg(i + 1));
    }
    EXPECT_TRUE(list.hasFocus());
    EXPECT_TRUE(Find<QPushButton>(dialog, "OKCmd")->isDefault());
    EXPECT_EQ(State(dialog), QString());
    ExpectNamesEverywhere(dialog);
    EXPECT_EQ(AccessKeys(dialog).size(), 3);
    Press(dialog, Qt::Key_Escape);
  });
  EXPECT_EQ(Commands, std::vector<std::string>({"getsampler"}));
}

TEST_F(SelectSampler, TheListBeginsWithWhatTheInstrumentAnswers) {
  const std::pair<const char*, int> answers[] = {{"1", 0}, {"5", 4},  {"8", 7},         {"0", 0},
                                                 {"9", 0}, {"-3", 0}, {"2147483647", 0}};
  for (const auto& [answer, row] : answers) {
    Fail("getsampler", "bad-number", {answer});
    Ask([&, row = row](QWidget& dialog, QComboBox& list) {
      EXPECT_EQ(list.currentIndex(), row) << answer;
      EXPECT_EQ(State(dialog), QString()) << answer;
      Click(dialog, "CancelCmd");
    });
  }
  EXPECT_EQ(Display.Remark, "");
}

TEST_F(SelectSampler, APositionThatCannotBeAskedForIsSaidAndTheDialogWorks) {
  Fail("getsampler", "no-reply");
  EXPECT_TRUE(Ask([this](QWidget& dialog, QComboBox& list) {
    EXPECT_EQ(list.currentIndex(), 0);
    EXPECT_EQ(State(dialog), Words(1096));
    EXPECT_EQ(Display.Remark, Text(1096));
    EXPECT_TRUE(list.isEnabled());
    Choose(list, 2);
    Click(dialog, "OKCmd");
  }));
  EXPECT_EQ(Instrument.Model().Cell(), 3);
  EXPECT_EQ(Display.Remark, "") << "what was said no longer holds";
}

TEST_F(SelectSampler, OKMovesTheSampler) {
  for (int row = 7; row >= 0; --row) {
    EXPECT_TRUE(Ask([&](QWidget& dialog, QComboBox& list) {
      Choose(list, row);
      if (row % 2 == 0) {
        Click(dialog, "OKCmd");
      } else {
        Press(dialog, Qt::Key_Return);
      }
    }));
    EXPECT_EQ(Instrument.Model().Cell(), row + 1);
    EXPECT_EQ(Commands.back(), "setsampler " + std::to_string(row + 1));
  }
  EXPECT_EQ(Display.Remark, "");
}

TEST_F(SelectSampler, CancelEscAndTheCloseBoxMoveNothing) {
  const std::function<void(QWidget&)> ways[] = {[](QWidget& dialog) { Click(dialog, "CancelCmd"); },
                                                [](QWidget& dialog) { Press(dialog, Qt::Key_Escape); },
                                                [](QWidget& dialog) { dialog.close(); }};
  for (const auto& leave : ways) {
    EXPECT_FALSE(Ask([&](QWidget& dialog, QComboBox& list) {
      Choose(list, 5);
      leave(dialog);
    }));
  }
  EXPECT_EQ(Instrument.Model().Cell(), 1);
  EXPECT_EQ(Commands, std::vector<std::string>(3, "getsampler"));
}

TEST_F(SelectSampler, ARefusedMoveStaysOpenAtTheFirstEntry) {
  for (const char* fault : {"no-reply", "wrong-echo", "cut", "hang-up"}) {
    Fail("setsampler", fault);
    EXPECT_FALSE(Ask([&](QWidget& dialog, QComboBox& list) {
      Choose(list, 6);
      Click(dialog, "OKCmd");
      EXPECT_TRUE(dialog.isVisible()) << fault;
      EXPECT_EQ(list.currentIndex(), 0) << fault;
      EXPECT_TRUE(list.isEnabled() && list.hasFocus()) << fault;
      EXPECT_TRUE(Find<QPushButton>(dialog, "OKCmd")->isEnabled()) << fault;
      EXPECT_EQ(Display.Remark, Text(1912)) << fault;
      EXPECT_EQ(State(dialog), Words(1912)) << fault;
      Click(dialog, "CancelCmd");
    }));
  }
}

TEST_F(SelectSampler, ASecondTryAfterARefusalMoves) {
  Fail("setsampler", "no-reply");
  EXPECT_TRUE(Ask([this](QWidget& dialog, QComboBox& list) {
    Choose(list, 6);
    Click(dialog, "OKCmd");
    EXPECT_EQ(Display.Remark, Text(1912));
    Choose(list, 3);
    Click(dialog, "OKCmd");
  }));
  EXPECT_EQ(Instrument.Model().Cell(), 4);
  EXPECT_EQ(Display.Remark, "");
}

TEST_F(SelectSampler, NothingClosesItWhileTheSamplerMoves) {
  // Each yield of the move gets every way to close the dialog or to begin a second move.
  int yields = 0;
  EXPECT_TRUE(Ask([&](QWidget& dialog, QComboBox& list) {
    Choose(list, 4);
    Loop.OnYield = [&] {
      ++yields;
      EXPECT_FALSE(list.isEnabled());
      EXPECT_FALSE(Find<QPushButton>(dialog, "OKCmd")->isEnabled());
      EXPECT_FALSE(Find<QPushButton>(dialog, "CancelCmd")->isEnabled());
      EXPECT_EQ(State(dialog), QStringLiteral("Moving to 5# Sampler Position"));
      QTest::keyClick(&dialog, Qt::Key_Escape);
      QTest::keyClick(&dialog, Qt::Key_Return);
      Click(dialog, "CancelCmd");
      Click(dialog, "OKCmd");
      dialog.close();
      static_cast<QDialog&>(dialog).accept();
      EXPECT_TRUE(dialog.isVisible());
    };
    Click(dialog, "OKCmd");
    Loop.OnYield = {};
  }));
  EXPECT_GE(yields, 2);
  EXPECT_EQ(Commands, std::vector<std::string>({"getsampler", "setsampler 5"}));
}

TEST_F(SelectSampler, ALineThatIsGoneEndsInWordsNotInSilence) {
  PullCable();
  EXPECT_FALSE(Ask([this](QWidget& dialog, QComboBox& list) {
    EXPECT_EQ(Display.Remark, Text(1096));
    Choose(list, 1);
    Click(dialog, "OKCmd");
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(Display.Remark, Text(1912));
    Press(dialog, Qt::Key_Escape);
  }));
}

}  // namespace
}  // namespace spectrane::testing_windows
