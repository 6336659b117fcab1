#pragma once

#include <QApplication>

#include <exception>
#include <functional>

namespace spectrane {

/// An application whose windows survive a fault in what an event starts: it ends at the border to the toolkit
/// and never runs through a message loop, whose callers would be left in the middle of their work.
class GuardedApplication : public QApplication {
 public:
  using QApplication::QApplication;

  bool notify(QObject* receiver, QEvent* event) override;

  /// Tells the person. Without it a fault goes on its way.
  std::function<void(const std::exception&)> OnFault;
};

}  // namespace spectrane
