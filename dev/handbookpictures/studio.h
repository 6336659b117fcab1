#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <string>

#include "app/frmmain.h"
#include "base/clock.h"
#include "base/setting.h"
#include "link/memoryport.h"
#include "simulator/simulatedline.h"

namespace spectrane {

/// The program on a simulated instrument and on simulated time, in front of a camera. What fails ends the
/// tour with std::runtime_error.
class Studio {
 public:
  /// Pictures go into `folder`. The files that are shown stand in `files`, the settings below it; its path
  /// can be read on some of the pictures.
  Studio(QString folder, QString files);
  ~Studio();

  /// The main window with all that is in it.
  void TakeMain(const char* name);
  void Take(QWidget& widget, const char* name);
  /// Chooses a command and takes the dialog of that object name that it opens. `prepare` may change what
  /// stands in it before.
  void TakeDialogOf(int command, const char* dialog, const char* name,
                    const std::function<void(QWidget&)>& prepare = {});
  /// Does `open`, and in the modal dialog of that object name `act`; the dialog is closed then.
  void InDialog(const std::function<void()>& open, const char* dialog,
                const std::function<void(QWidget&)>& act);

  void Choose(int command);
  /// A command that opens a dialog, which is confirmed as it is.
  void ChooseAndConfirm(int command, const char* dialog);
  void Open(const char* file);
  void CloseAll();
  void Resize(int width, int height);
  QString PathOf(const char* file) const { return files_ + u'/' + QLatin1String(file); }
  /// The instrument has settled, and what waits in the message loop is done.
  void Settle();

  FrmMain& Main() { return *main_; }
  ManualClock& Time() { return time_; }
  SimulatedLine& Instrument() { return instrument_; }
  void PutInBeam(const char* sample);
  void FitSampler(bool fitted);

 private:
  /// The application's message loop; waits pass at once.
  class Loop : public MessageLoop {
   public:
    explicit Loop(ManualClock& clock) : clock_(clock) {}
    void RunOnce() override;
    void RunUntil(const Clock& clock, std::int64_t deadlineMs) override;

   private:
    ManualClock& clock_;
  };
  /// One port, with the instrument behind it.
  class OnePort : public PortList {
   public:
    OnePort(ManualClock& clock, LinePeer& peer) : clock_(clock), peer_(peer) {}
    std::string Path(int number) const override { return number == 1 ? "COM1" : std::string(); }
    std::unique_ptr<Port> MakePort(int) override { return std::make_unique<MemoryPort>(clock_, peer_); }

   private:
    ManualClock& clock_;
    LinePeer& peer_;
  };

  static InstrumentOptions QuietInstrument();

  QString folder_;
  QString files_;
  std::string home_;
  ManualClock time_;
  Loop loop_{time_};
  NoExclusion turn_;
  SimulatedLine instrument_{QuietInstrument()};
  OnePort ports_{time_, instrument_};
  Setting settings_{home_};
  std::unique_ptr<FrmMain> main_;
};

}  // namespace spectrane
