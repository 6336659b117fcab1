#pragma once

#include <QSocketNotifier>

#include <memory>

#include "simulator/transport.h"

namespace spectrane {

/// A pseudo-terminal: the instrument holds its master, programs open the slave like a serial port. Only on
/// systems that have them; elsewhere `Open` gives false.
class PtyTransport : public Transport {
  Q_OBJECT

 public:
  /// `link`: path of a symbolic link that always leads to the slave; empty for none.
  explicit PtyTransport(QString link, QObject* parent = nullptr);
  ~PtyTransport() override;

  bool Open(QString& reason) override;
  void HangUp() override;
  bool IsOpen() const override { return master_ >= 0; }
  QString Name() const override { return link_.isEmpty() ? slaveName_ : link_; }
  void Send(const QByteArray& bytes) override;

 private:
  bool OpenPair(QString& reason);
  bool PlaceLink(QString& reason);
  void RemoveLink();
  void ReadAll();
  void WriteWaiting();

  QString link_;
  QString slaveName_;
  int master_ = -1;
  int slave_ = -1;  ///< kept open, so that a program that closes its port does not hang up the master
  std::unique_ptr<QSocketNotifier> readable_;
  std::unique_ptr<QSocketNotifier> writable_;
  QByteArray waiting_;
};

}  // namespace spectrane
