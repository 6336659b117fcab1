// A program whose X server dies under it. Not under sanitizers: the platform's keyboard library reads beyond
// a block of its own before the program begins.

#include <QStandardPaths>

#include "crash/operatedprogram.h"

namespace spectrane::testing_faults {
namespace {

class LostDisplay : public testing_processes::OperatedProgram {
 protected:
  void TearDown() override {
    KillDisplay();
    OperatedProgram::TearDown();
  }
  /// The name of a display of its own; empty when there is none to be had.
  QString StartDisplay() {
    if (QStandardPaths::findExecutable(QStringLiteral("Xvfb")).isEmpty()) return {};
    display_.start(
        QStringLiteral("Xvfb"),
        {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"), QStringLiteral("0"),
         QStringLiteral("1280x800x24"), QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    while (!display_.canReadLine()) {
      if (!display_.waitForReadyRead(testing_processes::kPatienceMs)) return {};
    }
    return u':' + QString::fromLatin1(display_.readLine()).trimmed();
  }
  void KillDisplay() {
    if (display_.state() == QProcess::NotRunning) return;
    display_.kill();
    display_.waitForFinished(5000);
  }

 private:
  QProcess display_;
};

TEST_F(LostDisplay, N04_RowsAndSettingsAreThereAtTheNextStart) {
  const QString display = StartDisplay();
  if (display.isEmpty()) GTEST_SKIP() << "no X server to be had";
  StartSimulator({"--speed", "20"});
  StartProgram({{"QT_QPA_PLATFORM", QStringLiteral("xcb")}, {"DISPLAY", display}});
  NewReadings();
  Measure();
  Measure();
  const std::string settings = Content("home/config.ini");
  ASSERT_FALSE(settings.empty());
  // In the middle of a reading.
  Do(testing_processes::kStart);
  const int shown = Records();
  KillDisplay();
  ASSERT_TRUE(program_.waitForFinished(10000)) << "it lives on without a display";
  EXPECT_EQ(program_.exitStatus(), QProcess::NormalExit) << "it crashed";
  EXPECT_EQ(Content("home/config.ini"), settings);
  EXPECT_EQ(JournalCount(), 1);
  const int named = StartWithQuestion(QStringLiteral("Photometry 1"));
  EXPECT_GE(named, shown);
  EXPECT_GE(named, 2);
  AnswerBox("Yes");
  EXPECT_EQ(Records(), named);
  // The port is free.
  ConnectInstrument();
  Do(testing_processes::kBlank);
  Measure();
}

}  // namespace
}  // namespace spectrane::testing_faults
