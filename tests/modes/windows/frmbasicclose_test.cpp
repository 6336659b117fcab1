#include "modes/windows/frmbasicfixture.h"
#include "windowsupport/closing.h"

namespace spectrane::testing_windows {
namespace {

/// A sampler run of three positions, in which the person closes the window.
class CloseInARun : public BasicWindow {
 protected:
  void OpenForARun() {
    FitSampler({1, 2, 3});
    OpenWithBlank();
    Window->setAttribute(Qt::WA_DeleteOnClose);
    Loop.Yields = 0;
  }
  void RunUntilGone() {
    Window->mmuStartTest();
    LetItClose(Window.data());
  }
};

TEST_F(CloseInARun, YesEndsTheRunAndOffersToSaveItsRows) {
  OpenForARun();
  bool asked = false;
  Loop.OnYield = [&] {
    if (asked || Rows() < 2) return;
    asked = true;
    Boxes.ExpectYesNo(Words(1211), Answer::Yes);
    EXPECT_FALSE(Window->close());
    Boxes.ExpectYesNoCancel(Words(1210), Answer::Yes);
    Boxes.ExpectSaveName(Words(1193), PathOf("rows.bas"));
  };
  RunUntilGone();
  EXPECT_TRUE(Window.isNull());
  PhotometryDocument saved;
  ASSERT_TRUE(saved.OpenFile(Folder.Path("rows.bas")));
  EXPECT_EQ(saved.RecordCount(), 2);
  EXPECT_EQ(Main.RunDepth, 0);
  EXPECT_FALSE(Link.State.RunUnderWay);
  EXPECT_TRUE(Display.TimerOn);
}

TEST_F(CloseInARun, NoLetsTheRunGoOn) {
  OpenForARun();
  bool asked = false;
  Loop.OnYield = [&] {
    if (std::exchange(asked, true)) return;
    Boxes.ExpectYesNo(Words(1211), Answer::No);
    EXPECT_FALSE(Window->close());
  };
  RunUntilGone();
  ASSERT_FALSE(Window.isNull());
  EXPECT_EQ(Rows(), 3);
}

TEST_F(CloseInARun, ASecondCloseWhileTheQuestionIsOpenAsksNothing) {
  OpenForARun();
  bool asked = false;
  Loop.OnYield = [&] {
    if (std::exchange(asked, true)) return;
    Boxes.ExpectYesNo(Words(1211), Answer::No, [this] { EXPECT_FALSE(Window->QueryClose(true)); });
    EXPECT_FALSE(Window->close());
  };
  RunUntilGone();
  EXPECT_EQ(Rows(), 3);
}

TEST_F(CloseInARun, CancelAtTheSaveQuestionKeepsTheWindow) {
  OpenForARun();
  bool asked = false;
  Loop.OnYield = [&] {
    if (asked || Rows() < 1) return;
    asked = true;
    Boxes.ExpectYesNo(Words(1211), Answer::Yes);
    EXPECT_FALSE(Window->close());
    Boxes.ExpectYesNoCancel(Words(1210), Answer::Cancel);
  };
  RunUntilGone();
  ASSERT_FALSE(Window.isNull());
  EXPECT_EQ(Rows(), 1);
  EXPECT_TRUE(Boxes.AllAsked());
  Loop.OnYield = {};
  Measure(1);
  EXPECT_EQ(Rows(), 4) << "the next run is whole";
}

TEST_F(CloseInARun, AtEveryYieldTheWindowOutlivesItsRun) {
  OpenForARun();
  Window->mmuStartTest();
  const int yields = Loop.Yields;
  ASSERT_GT(yields, 10);
  Boxes.ExpectYesNoCancel(Words(1210), Answer::No);
  Window->close();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  for (int closeAt = 1; closeAt <= yields; ++closeAt) {
    Open();
    Window->setAttribute(Qt::WA_DeleteOnClose);
    Loop.OnYield = {};
    Window->mmuOperationRezero();
    Loop.Yields = 0;
    int rowsThen = -1;
    Loop.OnYield = [&] {
      if (Loop.Yields != closeAt) return;
      Boxes.ExpectYesNo(Words(1211), Answer::Yes);
      Window->close();
      rowsThen = Rows();
    };
    Window->mmuStartTest();
    ASSERT_FALSE(Window.isNull()) << "closed at yield " << closeAt;
    EXPECT_GE(Rows(), rowsThen) << "closed at yield " << closeAt;
    EXPECT_LE(Rows(), rowsThen + 1) << "the reading under way is the last one; closed at yield " << closeAt;
    if (Rows() > 0) Boxes.ExpectYesNoCancel(Words(1210), Answer::No);
    LetItClose(Window.data());
    EXPECT_TRUE(Window.isNull()) << "closed at yield " << closeAt;
    EXPECT_TRUE(Boxes.AllAsked()) << "closed at yield " << closeAt;
  }
}

TEST_F(CloseInARun, AtEveryYieldOfABlank) {
  OpenForARun();
  Window->SetWaveLength(600.0);
  Window->mmuOperationRezero();
  const int yields = Loop.Yields;
  Window->close();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  for (int closeAt = 1; closeAt <= yields; ++closeAt) {
    Open();
    Window->setAttribute(Qt::WA_DeleteOnClose);
    Window->SetWaveLength(closeAt % 2 == 0 ? 600.0 : 500.0);
    Loop.Yields = 0;
    Loop.OnYield = [&] {
      if (Loop.Yields != closeAt) return;
      Boxes.ExpectYesNo(Words(1211), Answer::Yes);
      Window->close();
    };
    Window->mmuOperationRezero();
    ASSERT_FALSE(Window.isNull()) << "closed at yield " << closeAt;
    LetItClose(Window.data());
    EXPECT_TRUE(Window.isNull()) << "closed at yield " << closeAt;
    EXPECT_FALSE(Link.State.RunUnderWay);
    EXPECT_TRUE(Display.TimerOn);
  }
}

}  // namespace
}  // namespace spectrane::testing_windows
