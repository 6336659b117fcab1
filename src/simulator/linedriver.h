#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <deque>
#include <functional>
#include <optional>
#include <string>

#include "base/clock.h"
#include "simulator/simulatedline.h"
#include "simulator/transport.h"

namespace spectrane {

/// Plays the instrument's answers onto a transport in real time. Uses no processor time while nothing is
/// under way.
class LineDriver : public QObject {
  Q_OBJECT

 public:
  /// `paced`: bytes leave at the pace of 115200 baud. `reopenSeconds`: how long a broken line stays broken;
  /// below 0 it stays so until `Plug`. All three references must outlive this object.
  LineDriver(SimulatedLine& line, const Clock& clock, Transport& transport, bool paced, double reopenSeconds);

  /// Joins the line; the result says why that failed.
  std::optional<std::string> Plug();
  /// Breaks the line; what was still to be sent is lost, and a running command ends.
  void Unplug();
  bool Plugged() const { return transport_.IsOpen(); }
  /// Drops what is under way and sends these pieces instead.
  void Play(const Deliveries& pieces);

 signals:
  void LineJoined(const QString& name);
  void LineBroken();

 private:
  struct Due {
    qint64 AtUs;
    QByteArray Bytes;
    bool HangUp;
  };

  void Take(const QByteArray& bytes);
  void Feed();
  void Enqueue(const Deliveries& pieces);
  void Step();
  void ForgetAll();
  /// The line broke without the operator's doing.
  void Broken();
  qint64 NowUs() const { return elapsed_.nsecsElapsed() / 1000; }

  SimulatedLine& line_;
  const Clock& clock_;
  Transport& transport_;
  bool paced_;
  double reopenSeconds_;
  QElapsedTimer elapsed_;
  QTimer timer_;
  QTimer reopen_;
  QByteArray input_;
  std::deque<Due> due_;
};

}  // namespace spectrane
