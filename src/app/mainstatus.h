#pragma once

#include <QStatusBar>

#include <array>

#include "link/displays.h"

class QLabel;

namespace spectrane {

/// The status bar: a passing remark, the five panes, and the mark of a simulated instrument.
class MainStatus : public QStatusBar {
  Q_OBJECT

 public:
  explicit MainStatus(QWidget* parent);

  void SetPane(StatusPane pane, const QString& text);
  QString PaneText(StatusPane pane) const;
  /// Pane 4: a wavelength in the given format, with its unit. Pane 5: how far a run is [%].
  void StatusBarWaveLength(double wavelength, const std::string& format);
  void StatusBarPercent(int percent);
  /// `urgent`: a remark on something that went wrong, not a hint.
  void SetRemark(const QString& text, bool urgent);
  QString Remark() const;
  void ShowSimulated(bool simulated);
  bool IsSimulatedShown() const;

 private:
  QLabel* Label(StatusPane pane) const { return panes_[static_cast<std::size_t>(pane) - 1]; }

  QLabel* remark_;
  QLabel* simulated_;
  std::array<QLabel*, 5> panes_ = {};
};

}  // namespace spectrane
