#include "simulator/face/compartmentwindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QTabWidget>
#include <QTest>
#include <QWheelEvent>

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>

#include "simulator/face/beampicture.h"
#include "simulator/face/pages.h"
#include "simulator/face/samplechoice.h"
#include "simulator/facewords.h"

namespace spectrane {
namespace {

/// The window on an instrument without a wire; its cable is a flag.
class FaceTest : public testing::Test {
 protected:
  FaceTest()
      : console_(line_, clock_,
                 {[this] { SetPlugged(false); },
                  [this] { return Plug(); },
                  [this] { return plugged_; },
                  [this](const Deliveries& pieces) { Played += BytesOf(pieces); },
                  {}}),
        view_(line_, clock_, console_, [this] { return plugged_; }) {
    line_.OnExchange = [this](const ExchangeRecord& record) { view_.NoteRequest(record); };
    view_.NoteJoined("/tmp/line");
    Window = std::make_unique<CompartmentWindow>(view_);
    Window->show();
  }

  /// The control of that name, which must be there.
  template <class Widget>
  Widget& Get(const char* name) {
    auto* widget = Window->findChild<Widget*>(QString::fromLatin1(name));
    if (widget == nullptr) throw std::runtime_error(std::string("no control ") + name);
    return *widget;
  }
  std::string TextOf(const char* label) { return Get<QLabel>(label).text().toStdString(); }
  void Click(const char* button) {
    auto& control = Get<QAbstractButton>(button);
    BringToFront(control);
    QTest::mouseClick(&control, Qt::LeftButton, {}, {8, control.height() / 2});
  }
  /// Brings the tab with this control to the front.
  void BringToFront(QWidget& control) {
    auto& tabs = Get<QTabWidget>("tabs");
    for (int i = 0; i < tabs.count(); ++i) {
      if (tabs.widget(i)->isAncestorOf(&control)) tabs.setCurrentIndex(i);
    }
  }
  /// Chooses as a person does with the keyboard, one key after another.
  void ChooseByKeys(const char* name, const QString& entry) {
    auto& combo = Get<QComboBox>(name);
    BringToFront(combo);
    combo.setFocus();
    for (int i = 0; i < combo.count() && combo.currentText() != entry; ++i)
      QTest::keyClick(&combo, Qt::Key_Down);
    ASSERT_EQ(combo.currentText(), entry);
  }
  std::string Ask(const std::string& request) {
    const std::string answer = BytesOf(line_.Receive(request + "\r", clock_.NowMs()));
    clock_.Set(std::max(clock_.NowMs(), line_.BusyUntilMs()));
    Window->Refresh();
    return answer;
  }
  void SetPlugged(bool plugged) {
    plugged_ = plugged;
    plugged ? view_.NoteJoined("/tmp/line") : view_.NoteBroken();
  }
  std::optional<std::string> Plug() {
    if (!PlugFault.empty()) return PlugFault;
    SetPlugged(true);
    return std::nullopt;
  }
  CompartmentState See() const { return view_.State(); }

  std::string Played;
  std::string PlugFault;
  ManualClock clock_{1000};
  SimulatedLine line_{{.Noise = 0.0}};
  std::unique_ptr<CompartmentWindow> Window;

 private:
  bool plugged_ = true;
  Console console_;

 protected:
  Compartment view_;
};

TEST_F(FaceTest, IsTheSampleCompartmentAndSmall) {
  EXPECT_EQ(Window->windowTitle(), QStringLiteral("sample compartment"));
  EXPECT_LE(Window->minimumSizeHint().width(), 420);
  EXPECT_LE(Window->minimumSizeHint().height(), 520);
}

TEST_F(FaceTest, BeginsAtTheLowerRightAndLeavesTheMiddleToDialogs) {
  const QRect screen = Window->screen()->availableGeometry();
  EXPECT_TRUE(screen.contains(Window->frameGeometry()));
  constexpr int kAir = 60;
  EXPECT_GE(Window->frameGeometry().right(), screen.right() - kAir);
  EXPECT_GE(Window->frameGeometry().bottom(), screen.bottom() - kAir);
}

TEST_F(FaceTest, ASampleChosenStandsInTheBeam) {
  ChooseByKeys("beam", QStringLiteral("Red dye 4 mg/L"));
  EXPECT_EQ(See().Beam->Name, "dye-3");
  EXPECT_EQ(TextOf("absorbance"), "0.400 Abs");
  EXPECT_THAT(Get<BeamPicture>("beamPicture").accessibleDescription().toStdString(),
              testing::HasSubstr("Red dye 4 mg/L, 0.400 Abs"));
}

TEST_F(FaceTest, ASampleChosenAgainIsFilledInAfresh) {
  ChooseByKeys("beam", QStringLiteral("Reaction, falling"));
  Ask("swl 340");
  const double fresh = See().BeamAbsorbance;
  clock_.Advance(600'000);
  Window->Refresh();
  EXPECT_LT(See().BeamAbsorbance, fresh / 2);
  auto& beam = Get<SampleChoice>("beam");
  emit beam.activated(beam.currentIndex());
  EXPECT_GE(See().BeamAbsorbance, fresh);
}

TEST_F(FaceTest, CellsAreFilledAndTheOneInTheBeamIsMarked) {
  Click("samplerFitted");
  EXPECT_TRUE(See().SamplerFitted);
  ChooseByKeys("cell6", QStringLiteral("Holmium solution"));
  EXPECT_EQ(See().Cells[5]->Name, "holmium");
  Ask("setsampler 6");
  EXPECT_EQ(TextOf("cellLabel6"), "\u25B6&6");
  EXPECT_EQ(TextOf("cellLabel1"), "&1");
  EXPECT_EQ(Get<QComboBox>("cell6").accessibleName(), QStringLiteral("Cell 6, in the beam"));
  EXPECT_EQ(Get<QComboBox>("beam").currentText(), QStringLiteral("Holmium solution"));
  EXPECT_THAT(TextOf("samplerWords"), testing::HasSubstr("Cell 6 stands in the beam"));
  Click("samplerFitted");
  EXPECT_FALSE(See().SamplerFitted);
  EXPECT_EQ(TextOf("cellLabel6"), "&6");
}

TEST_F(FaceTest, ThePictureGrowsForTheCells) {
  const int before = Get<BeamPicture>("beamPicture").minimumSizeHint().height();
  Click("samplerFitted");
  EXPECT_GT(Get<BeamPicture>("beamPicture").minimumSizeHint().height(), before);
}

TEST_F(FaceTest, ShowsWhatTheProgramSets) {
  Ask("swl 260");
  Ask("setslip 4");
  Ask("sa 3");
  EXPECT_EQ(TextOf("wavelength"), "260.0 nm, deuterium lamp");
  EXPECT_EQ(TextOf("slit"), SlitWords(See()));
  EXPECT_EQ(TextOf("gain"), "gain 3 of 8, trim 1.000");
  EXPECT_THAT(TextOf("lastRequest"), testing::HasSubstr("Request 3: sa 3"));
  Ask("connect");
  EXPECT_EQ(TextOf("program"), "A program is connected.");
  Ask("d2off");
  EXPECT_EQ(TextOf("deuterium"), "off");
}

struct SwitchCase {
  const char* Name;
  std::function<bool(const CompartmentState&)> IsOn;
};

TEST_F(FaceTest, EachSwitchGoesOnAndOffAndFollowsThePrompt) {
  const std::vector<SwitchCase> cases{
      {"samplerFitted", [](const CompartmentState& s) { return s.SamplerFitted; }},
      {"tungstenDead", [](const CompartmentState& s) { return s.Tungsten == LampShow::Dead; }},
      {"deuteriumDead", [](const CompartmentState& s) { return s.Deuterium == LampShow::Dead; }},
      {"noise", [](const CompartmentState& s) { return s.Noisy; }},
      {"jammed", [](const CompartmentState& s) { return s.Jammed; }},
      {"busy", [](const CompartmentState& s) { return s.Busy; }},
  };
  for (const SwitchCase& each : cases) {
    EXPECT_FALSE(each.IsOn(See())) << each.Name;
    Click(each.Name);
    EXPECT_TRUE(each.IsOn(See())) << each.Name;
    EXPECT_TRUE(Get<QAbstractButton>(each.Name).isChecked()) << each.Name;
    Click(each.Name);
    EXPECT_FALSE(each.IsOn(See())) << each.Name;
    EXPECT_FALSE(Get<QAbstractButton>(each.Name).isChecked()) << each.Name;
  }
}

TEST_F(FaceTest, TheChosenFaultSpoilsTheChosenAnswer) {
  ChooseByKeys("faultKind", QStringLiteral("prompt missing"));
  ChooseByKeys("faultRequest", QStringLiteral("the next getwl"));
  Click("spoil");
  EXPECT_EQ(TextOf("faultsPending"), "1 fault waits.");
  EXPECT_THAT(Ask("getd2"), testing::EndsWith(">"));
  EXPECT_THAT(Ask("getwl"), testing::Not(testing::EndsWith(">")));
  EXPECT_EQ(TextOf("faultsPending"), "No fault waits.");
  EXPECT_THAT(TextOf("lastRequest"), testing::HasSubstr("spoilt: no-prompt"));
}

TEST_F(FaceTest, FaultsThatWaitAreForgotten) {
  Click("spoil");
  Click("spoil");
  EXPECT_EQ(TextOf("faultsPending"), "2 faults wait.");
  Click("clearFaults");
  EXPECT_EQ(TextOf("faultsPending"), "No fault waits.");
  EXPECT_EQ(See().PendingFaults, 0U);
}

TEST_F(FaceTest, EachKindOfFaultIsTaken) {
  auto& kind = Get<QComboBox>("faultKind");
  for (int i = 0; i < kind.count(); ++i) {
    kind.setCurrentIndex(i);
    Click("spoil");
    EXPECT_EQ(See().PendingFaults, static_cast<std::size_t>(i + 1)) << kind.currentText().toStdString();
  }
  EXPECT_TRUE(Get<QLabel>("note").isHidden());
}

TEST_F(FaceTest, TheCableGoesOutAndIn) {
  Click("cable");
  EXPECT_FALSE(See().Plugged);
  EXPECT_EQ(TextOf("program"), "The cable is unplugged.");
  EXPECT_EQ(Get<QAbstractButton>("cable").text(), QStringLiteral("Pl&ug in"));
  EXPECT_EQ(Get<QLineEdit>("path").text(), QStringLiteral("/tmp/line"));
  Click("cable");
  EXPECT_TRUE(See().Plugged);
  EXPECT_EQ(Get<QAbstractButton>("cable").text(), QStringLiteral("&Unplug"));
}

TEST_F(FaceTest, WhatCouldNotBeDoneIsSaidUntilTheNextDeed) {
  Click("cable");
  PlugFault = "/tmp/line: exists and is no symbolic link";
  Click("cable");
  EXPECT_TRUE(Get<QLabel>("note").isVisible());
  EXPECT_EQ(TextOf("note"), "Not done: /tmp/line: exists and is no symbolic link");
  PlugFault.clear();
  Click("cable");
  EXPECT_TRUE(See().Plugged);
  EXPECT_FALSE(Get<QLabel>("note").isVisible());
}

TEST_F(FaceTest, ASwitchThatCouldNotBeSetFallsBack) {
  auto& noise = Get<QAbstractButton>("noise");
  const bool before = noise.isChecked();
  noise.setChecked(!before);
  emit Get<InstrumentPage>("").Wanted(QStringLiteral("noise perhaps"));
  EXPECT_EQ(noise.isChecked(), before);
  EXPECT_THAT(TextOf("note"), testing::HasSubstr("perhaps"));
}

TEST_F(FaceTest, RestartSendsTheBannerAndForgetsTheWavelength) {
  Ask("swl 300");
  Click("restart");
  EXPECT_EQ(TextOf("wavelength"), "546.0 nm, tungsten lamp");
  EXPECT_THAT(Played, testing::HasSubstr("ready."));
}

TEST_F(FaceTest, CopiesThePortsName) {
  QApplication::clipboard()->clear();
  Click("copyPath");
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("/tmp/line"));
}

TEST_F(FaceTest, AnOpenListIsLeftAlone) {
  auto& beam = Get<SampleChoice>("beam");
  beam.showPopup();
  view_.Perform("beam holmium");
  Window->Refresh();
  EXPECT_EQ(beam.currentText(), QStringLiteral("Solvent (blank)"));
  beam.hidePopup();
  clock_.Advance(1000);
  Ask("getwl");
  EXPECT_EQ(beam.currentText(), QStringLiteral("Holmium solution"));
}

TEST_F(FaceTest, AWheelThatPassesByChangesNothing) {
  auto& beam = Get<SampleChoice>("beam");
  Get<QTabWidget>("tabs").setFocus();
  QWheelEvent turn({5, 5}, beam.mapToGlobal(QPoint(5, 5)), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                   Qt::NoScrollPhase, false);
  QApplication::sendEvent(&beam, &turn);
  EXPECT_EQ(See().Beam->Name, "blank");
}

TEST_F(FaceTest, FollowsThePromptByItself) {
  view_.Perform("beam dye-1");
  EXPECT_TRUE(QTest::qWaitFor([&] { return TextOf("absorbance") == "0.100 Abs"; }, 2000));
  // A change that nobody tells of.
  line_.Model().Jammed = true;
  EXPECT_TRUE(QTest::qWaitFor([&] { return Get<QAbstractButton>("jammed").isChecked(); }, 3000));
}

TEST_F(FaceTest, DoesNotLookWhileItIsHidden) {
  Window->hide();
  view_.Perform("jam on");
  EXPECT_FALSE(QTest::qWaitFor([&] { return Get<QAbstractButton>("jammed").isChecked(); }, 700));
  Window->show();
  EXPECT_TRUE(Get<QAbstractButton>("jammed").isChecked());
}

TEST_F(FaceTest, TakesNoNoticeAfterItsEnd) {
  Window.reset();
  EXPECT_FALSE(view_.OnChange);
  EXPECT_EQ(view_.Perform("jam on"), "");
}

bool IsControl(const QWidget& widget) {
  return widget.focusPolicy() != Qt::NoFocus &&
         widget.objectName() != QStringLiteral("qt_tabwidget_tabbar") &&
         !widget.inherits("QAbstractItemView") && !widget.inherits("QTabBar");
}

TEST_F(FaceTest, EachControlHasAnObjectNameAndAnAccessibleName) {
  std::set<QString> names;
  int controls = 0;
  for (const QWidget* widget : Window->findChildren<QWidget*>()) {
    if (!IsControl(*widget) || widget->window() != Window.get()) continue;
    ++controls;
    const std::string what = widget->metaObject()->className();
    EXPECT_FALSE(widget->objectName().isEmpty()) << what;
    EXPECT_TRUE(names.insert(widget->objectName()).second) << widget->objectName().toStdString();
    EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->objectName().toStdString();
  }
  EXPECT_GE(controls, 20);
}

TEST_F(FaceTest, TheTabKeyReachesEveryControl) {
  auto& tabs = Get<QTabWidget>("tabs");
  for (int page = 0; page < tabs.count(); ++page) {
    tabs.setCurrentIndex(page);
    std::set<const QWidget*> reached;
    Window->activateWindow();
    Get<QComboBox>("beam").setFocus();
    for (int i = 0; i < 60; ++i) {
      reached.insert(Window->focusWidget());
      QTest::keyClick(Window->focusWidget(), Qt::Key_Tab);
    }
    for (const QWidget* widget : Window->findChildren<QWidget*>()) {
      if (!IsControl(*widget) || !widget->isVisible() || widget->window() != Window.get()) continue;
      if ((widget->focusPolicy() & Qt::TabFocus) == 0 || !widget->isEnabled()) continue;
      if (widget->focusProxy() != nullptr) widget = widget->focusProxy();
      EXPECT_TRUE(reached.contains(widget)) << widget->objectName().toStdString();
    }
  }
}

TEST_F(FaceTest, AccessKeysAreUnique) {
  Click("samplerFitted");
  std::map<QChar, int> keys;
  const auto count = [&](const QString& text) {
    const qsizetype at = text.indexOf(u'&');
    if (at >= 0) ++keys[text[at + 1].toLower()];
  };
  for (const auto* button : Window->findChildren<QAbstractButton*>()) count(button->text());
  for (const auto* label : Window->findChildren<QLabel*>()) count(label->text());
  const auto& tabs = Get<QTabWidget>("tabs");
  for (int i = 0; i < tabs.count(); ++i) count(tabs.tabText(i));
  EXPECT_GE(keys.size(), 20U);
  for (const auto& [key, times] : keys) EXPECT_EQ(times, 1) << QString(key).toStdString();
}

TEST_F(FaceTest, NoWordIsCutOffAtTheSmallestSize) {
  Click("samplerFitted");
  Ask("setsampler 3");
  Window->resize(Window->minimumSizeHint());
  auto& tabs = Get<QTabWidget>("tabs");
  for (int page = 0; page < tabs.count(); ++page) {
    tabs.setCurrentIndex(page);
    QApplication::processEvents();
    for (const QWidget* widget : Window->findChildren<QWidget*>()) {
      const bool words = widget->inherits("QLabel") || widget->inherits("QAbstractButton");
      if (!words || !widget->isVisible() || widget->objectName() == QStringLiteral("lastRequest")) continue;
      EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << widget->objectName().toStdString();
      EXPECT_GE(widget->height(), widget->minimumSizeHint().height()) << widget->objectName().toStdString();
    }
  }
}

/// Colours of the beam between cuvette and detector, drawn without a lamp and with one.
TEST_F(FaceTest, TheBeamIsDrawnInItsColourAndGoesOut) {
  auto& picture = Get<BeamPicture>("beamPicture");
  const auto green = [&] {
    const QImage image = picture.grab().toImage();
    int pixels = 0;
    for (int x = image.width() * 7 / 10; x < image.width() * 8 / 10; ++x) {
      for (int y = 0; y < image.height(); ++y) {
        const QColor colour = image.pixelColor(x, y);
        if (colour.green() > colour.red() + 60 && colour.green() > colour.blue() + 60) ++pixels;
      }
    }
    return pixels;
  };
  EXPECT_GT(green(), 50);
  view_.Perform("beam closed");
  Window->Refresh();
  EXPECT_EQ(green(), 0);
  view_.Perform("beam blank");
  view_.Perform("lamp tungsten dead");
  Window->Refresh();
  EXPECT_EQ(green(), 0);
}

TEST_F(FaceTest, CtrlQClosesIt) {
  Window->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(Window.get()));
  QTest::keyClick(Window.get(), Qt::Key_Q, Qt::ControlModifier);
  EXPECT_FALSE(Window->isVisible());
}

}  // namespace
}  // namespace spectrane
