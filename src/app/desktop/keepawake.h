#pragma once

#include <memory>
#include <QObject>

namespace spectrane {

/// Keeps the display lit and the machine from falling asleep by itself while this object lives. A machine
/// that offers no such thing is left as it is, silently.
class KeepAwake : public QObject {
  Q_OBJECT

 public:
  explicit KeepAwake(QObject* parent = nullptr);
  ~KeepAwake() override;

  /// Asks once; further calls do nothing. The answers are not waited for. To be called once the first window
  /// stands on the screen.
  void Start();

 private:
  class Requests;
  std::unique_ptr<Requests> requests_;
};

}  // namespace spectrane
