#pragma once

#include <QTimer>
#include <QWidget>

#include <optional>
#include <vector>

#include "simulator/compartment.h"

class QLabel;

namespace spectrane {

class BeamPicture;
class Page;
class SampleChoice;

/// The instrument's own window, the operator's hands: what stands in the beam, the sampler, lamps, faults and
/// the cable. Looks at the instrument twice a second while it can be seen, and soon after each change.
class CompartmentWindow : public QWidget {
  Q_OBJECT

 public:
  /// The compartment must outlive the window, which takes its notices of change.
  explicit CompartmentWindow(Compartment& compartment, QWidget* parent = nullptr);
  ~CompartmentWindow() override;

  /// Looks now.
  void Refresh();

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Build();
  void PlaceAside();
  void AddPage(Page* page);
  void Perform(const QString& command);
  void LookWhileSeen();

  Compartment& compartment_;
  std::optional<CompartmentState> shown_;
  BeamPicture* picture_;
  SampleChoice* beam_;
  QLabel* note_;
  std::vector<Page*> pages_;
  QTimer regular_;
  QTimer soon_;
};

}  // namespace spectrane
