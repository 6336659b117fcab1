#pragma once

#include <QApplication>

#include <exception>
#include <functional>

namespace spectrane {

/// The application of every window: a C++ exception that leaves a slot or an event ends where the event was
/// handed over, never in the message loop, whose frames are not made for it. Hints can be read in every
/// palette.
class GuardedApplication : public QApplication {
 public:
  GuardedApplication(int& argc, char** argv);

  bool notify(QObject* receiver, QEvent* event) override;

  /// Told of each exception that ended an event. Must not throw.
  std::function<void(const std::exception& fault)> OnFault;

 protected:
  bool event(QEvent* event) override;
};

}  // namespace spectrane
