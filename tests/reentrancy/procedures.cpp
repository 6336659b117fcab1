#include "reentrancy/procedures.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QScopedValueRollback>

#include "app/commandtable.h"
#include "app/documentkinds.h"
#include "app/ground/words.h"
#include "app/workspace.h"
#include "modes/windows/frmqua.h"
#include "tools/windows/tooldialog.h"

namespace spectrane::testing_reentrancy {
namespace {

constexpr const char* kQuantitationKeys = "Quantitative Measurement";

/// Presses a button of a tool's dialog (or the key that accepts it) when it is open, and closes it
/// afterwards.
void UseTool(YieldYard& yard, int command, const char* button) {
  bool pressed = false;
  QTimer hand;
  QObject::connect(&hand, &QTimer::timeout, &hand, [&] {
    auto* const dialog = qobject_cast<ToolDialog*>(QApplication::activeModalWidget());
    if (!dialog) return;
    if (pressed) {
      dialog->reject();
    } else if (pressed = true; *button == '\0') {
      QMetaObject::invokeMethod(dialog, "accept");
    } else {
      dialog->findChild<QAbstractButton*>(QLatin1String(button))->click();
    }
  });
  hand.start(0);
  const QScopedValueRollback<bool> expected(yard.ToolIsExpected, true);
  yard.Main().RunCommand(command);
}

Procedure Tool(const char* name, int command, const char* button) {
  return {name,
          [](YieldYard& yard) {
            yard.SetSampler(false);
            yard.Connect();
          },
          [command, button](YieldYard& yard) { UseTool(yard, command, button); }, false};
}

/// Takes the blank of a new window, and begins what `command` does in it.
Procedure Measurement(const char* name, int newFileType, bool sampler, int command) {
  return {name,
          [newFileType, sampler](YieldYard& yard) {
            yard.SetSampler(sampler);
            yard.Connect();
            yard.Open(newFileType);
            yard.Choose(kSetBlank);
          },
          [command](YieldYard& yard) { yard.Choose(command); }, newFileType == kKineticsFile};
}

void Alone(YieldYard& yard) {
  yard.SetSampler(false);
  yard.Connect();
  yard.CloseWindows();
}

/// A quantitation by standards, with its blank.
Procedure Standard(const char* name, bool sampler) {
  return {name,
          [sampler](YieldYard& yard) {
            yard.Settings.PutSetting(kQuantitationKeys, "Curve Item", "1");
            yard.SetSampler(sampler);
            yard.Connect();
            yard.Open(kQuantitationFile, "standards");
            yard.Settings.PutSetting(kQuantitationKeys, "Curve Item", "2");
            yard.Choose(kSetBlank);
          },
          [sampler](YieldYard& yard) {
            auto* const window = qobject_cast<FrmQua*>(yard.Main().ActiveForm());
            if (sampler) yard.AcceptDialog("FrmSelectSampler");
            window->MeasureStandard(0);
          },
          true};
}

std::vector<Procedure> MakeProcedures() {
  const auto away = [](YieldYard& yard) { yard.Release(); };
  std::vector<Procedure> all = {
      {"connect by command", away, [](YieldYard& yard) { yard.Choose(kConnect); }},
      {"connect by the timer", away,
       [](YieldYard& yard) {
         yard.ConnectTimer().start(YieldYard::kNeverMs);
         yard.Fire(yard.ConnectTimer());
       }},
      {"connect without an instrument",
       [](YieldYard& yard) {
         yard.Release();
         yard.Ports.Put(1, yard.Nobody);
       },
       [](YieldYard& yard) {
         yard.Choose(kConnect);
         yard.Ports.Put(1, yard.Instrument);
       }},
      {"release", [](YieldYard& yard) { yard.Connect(); }, [](YieldYard& yard) { yard.Choose(kRelease); }},
      // What is chosen inside it comes behind it: there is nothing that could be started, and its bar is
      // there.
      {"live reading",
       [](YieldYard& yard) {
         Alone(yard);
         if (!yard.Main().ActionOf(kDataViewBar)->isChecked()) yard.Choose(kDataViewBar);
       },
       [](YieldYard& yard) {
         yard.Fire(yard.Main().SampleTimer());
         QCoreApplication::processEvents();
       }},
      {"blank of the main window", Alone, [](YieldYard& yard) { yard.Choose(kSetBlank); }},
      {"tungsten lamp", Alone, [](YieldYard& yard) { yard.Choose(kTungstenLamp); }},
      {"deuterium lamp", Alone, [](YieldYard& yard) { yard.Choose(kDeuteriumLamp); }},
      Measurement("photometry blank", kPhotometryFile, false, kSetBlank),
      Measurement("photometry", kPhotometryFile, false, kStartTest),
      Measurement("photometry of a sampler", kPhotometryFile, true, kStartTest),
      Measurement("quantitation blank", kQuantitationFile, false, kSetBlank),
      Measurement("quantitation", kQuantitationFile, false, kStartTest),
      Measurement("quantitation of a sampler", kQuantitationFile, true, kStartTest),
      Standard("standard", false),
      Standard("standard of a sampler", true),
      Measurement("kinetics blank", kKineticsFile, false, kSetBlank),
      Measurement("kinetics", kKineticsFile, false, kStartTest),
      Tool("lamp switch", kLampSwitchWavelength, ""),
      Tool("wavelength", kSetWavelength, ""),
      Tool("dark current", kDarkCurrent, "CmdTest"),
      Tool("reset wavelength", kResetWavelength, "CmdStart"),
      Tool("slit", kSetupSlit, "CommandSetup"),
  };
  return all;
}

constexpr int kStopQuestion = 1211;
constexpr int kSaveQuestion = 1210;
constexpr int kQuitQuestion = 1103;

void CloseActive(YieldYard& yard) {
  if (DocumentWindow* window = yard.Main().ActiveForm()) window->parentWidget()->close();
}

/// A way to close, with every answer to what it asks.
void AddCloses(std::vector<Happening>& all, const std::string& name,
               const std::function<void(YieldYard&)>& close) {
  using Effect = Happening::Effect;
  const QString stop = Words(kStopQuestion);
  const QString save = Words(kSaveQuestion);
  const QString quit = Words(kQuitQuestion);
  constexpr Answer kYes = Answer::Yes;
  all.push_back({name + ", not stopped", Effect::None, false, close, {}, true});
  all.push_back({name + ", not saved",
                 Effect::Ends,
                 false,
                 close,
                 {{stop, kYes}, {quit, kYes}, {save, Answer::No}},
                 true});
  all.push_back(
      {name + ", saved", Effect::Ends, false, close, {{stop, kYes}, {quit, kYes}, {save, kYes}}, true});
  all.push_back({name + ", cancelled",
                 Effect::Ends,
                 false,
                 close,
                 {{stop, kYes}, {quit, kYes}, {save, Answer::Cancel}},
                 true});
}

void AddCommands(std::vector<Happening>& all) {
  for (const CommandRow& row : CommandRows()) {
    if (row.Number == kClose || row.Number == kCloseAll || row.Number == kExit) continue;
    const std::string name = "command " + std::to_string(row.Number);
    const auto choose = [command = row.Number](YieldYard& yard) {
      QAction* const action = yard.Main().ActionOf(command);
      // One that is disabled is refused by the routing as well.
      action->isEnabled() ? action->trigger() : yard.Main().RunCommand(command);
    };
    all.push_back({name, Happening::Effect::None, false, choose, {}, false});
    if (row.Number == kStopTest) {
      all.push_back({name + ", sure",
                     Happening::Effect::Ends,
                     false,
                     choose,
                     {{Words(kStopQuestion), Answer::Yes}},
                     false});
    }
  }
}

/// What neither asks nor starts anything.
void AddLooks(std::vector<Happening>& all) {
  const auto add = [&all](const char* name, std::function<void(YieldYard&)> look) {
    all.push_back({name, Happening::Effect::None, true, std::move(look), {}, false});
  };
  add("precision", [](YieldYard& yard) {
    DisplayFormats& formats = yard.Main().Link().Formats;
    formats.AbsFormat = formats.AbsFormat == "0.0" ? "0.00000" : "0.0";
    yard.Main().FormatsChanged();
  });
  add("bar look", [](YieldYard& yard) { yard.Main().SetMenuStyle(yard.Main().Window().MenuStyle ^ 1); });
  add("font", [](YieldYard&) {
    QFont font = QApplication::font();
    font.setPointSize(font.pointSize() == 9 ? 12 : 9);
    QApplication::setFont(font);
  });
  add("size", [](YieldYard& yard) {
    yard.Main().resize(yard.Main().width() == 700 ? QSize(900, 650) : QSize(700, 500));
  });
  add("minimised and back", [](YieldYard& yard) {
    yard.Main().showMinimized();
    yard.Main().showNormal();
  });
  add("data table closed", [](YieldYard& yard) {
    if (auto* dock = yard.Main().findChild<QDockWidget*>()) dock->close();
  });
  add("other window in front",
      [](YieldYard& yard) { yard.Main().findChild<Workspace*>()->activatePreviousSubWindow(); });
}

void AddOutside(std::vector<Happening>& all) {
  using Effect = Happening::Effect;
  all.push_back({"unplugged", Effect::Ends, true, [](YieldYard& yard) { yard.PullCable(); }, {}, false});
  all.push_back({"SampleTimer",
                 Effect::None,
                 true,
                 [](YieldYard& yard) { yard.Fire(yard.Main().SampleTimer()); },
                 {},
                 false});
  // Later than it would ever come.
  all.push_back({"SampleTimer, late",
                 Effect::None,
                 true,
                 [](YieldYard& yard) { yard.Main().Link().Live.SampleTimerTick(); },
                 {},
                 false});
  all.push_back({"TimerConnect",
                 Effect::None,
                 true,
                 [](YieldYard& yard) {
                   yard.ConnectTimer().start(YieldYard::kNeverMs);
                   yard.Fire(yard.ConnectTimer());
                   yard.ConnectTimer().stop();
                 },
                 {},
                 false});
  all.push_back({"hand-over", Effect::None, true, [](YieldYard& yard) { yard.HandOver(); }, {}, false});
}

std::vector<Happening> MakeHappenings() {
  std::vector<Happening> all;
  AddCommands(all);
  AddCloses(all, "close", &CloseActive);
  AddCloses(all, "Close All", [](YieldYard& yard) { yard.Main().RunCommand(kCloseAll); });
  AddCloses(all, "Exit", [](YieldYard& yard) { yard.Main().close(); });
  AddOutside(all);
  AddLooks(all);
  return all;
}

}  // namespace

const std::vector<Happening>& Happenings() {
  static const std::vector<Happening> all = MakeHappenings();
  return all;
}

const std::vector<Procedure>& Procedures() {
  static const std::vector<Procedure> all = MakeProcedures();
  return all;
}

}  // namespace spectrane::testing_reentrancy
