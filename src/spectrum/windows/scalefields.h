#pragma once

#include <QObject>

#include <array>

#include "spectrum/scanscale.h"

class QButtonGroup;
class QDialog;
class QGroupBox;
class QLabel;

namespace spectrane {

class DialogParts;
class MainWindow;
class NumberField;

/// What the ends of a value scale are held inside, and its unit.
struct ScaleLimits {
  double Lowest;
  double Highest;
  const char* Unit;
};
const ScaleLimits& LimitsOf(ScanMode mode);
/// Puts the ends of one mode's scale into an option block.
void StoreRange(WLSOption& option, ScanMode mode, const ScanRange& range);

/// The fields of a processed spectrum's option dialog for display mode, ends of the scale and range of
/// wavelengths. A field that is left is brought into its limits without a word; ends that were typed the
/// wrong way round change places. Belongs to the dialog.
class ScaleFields : public QObject {
 public:
  ScaleFields(MainWindow& frame, QDialog& dialog, const WLSOption& option);

  /// One after the other, in reading order.
  QGroupBox* BuildMode(DialogParts& parts);
  QGroupBox* BuildScale(DialogParts& parts);
  QGroupBox* BuildRange(DialogParts& parts);
  /// Puts the person in front of them.
  void SetFocus();
  /// Says what cannot be taken.
  QLabel* Remark() const { return remark_; }

  /// Takes what was typed; false when it cannot be taken, with the person in front of the field.
  bool Take(WLSOption& option);

 private:
  void ShowEnds();
  void SwitchMode(int mode);
  void HoldEnds();
  void HoldWavelength(NumberField& field);
  bool Refuse(NumberField& field, const QString& remark);

  MainWindow& frame_;
  WLSOption option_;
  ScanMode mode_;
  QButtonGroup* modes_;
  QLabel* remark_;
  NumberField* top_ = nullptr;
  NumberField* bottom_ = nullptr;
  QLabel* topUnit_ = nullptr;
  QLabel* bottomUnit_ = nullptr;
  NumberField* start_ = nullptr;
  NumberField* end_ = nullptr;
};

}  // namespace spectrane
