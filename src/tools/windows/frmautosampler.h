#pragma once

#include <array>

#include "tools/windows/tooldialog.h"

class QCheckBox;
class QLayout;
class QRadioButton;

namespace spectrane {

/// Which positions of the automatic sampler are in use, and which holds the blank. The instrument is not
/// asked.
class FrmAutoSampler : public ToolDialog {
  Q_OBJECT

 public:
  explicit FrmAutoSampler(MainWindow& frame);

 protected:
  void Load() override;

 private:
  void Setup();

  /// Entry i belongs to position i + 1.
  std::array<QCheckBox*, kSamplerPositionCount> used_ = {};
  std::array<QRadioButton*, kSamplerPositionCount> zero_ = {};
};

}  // namespace spectrane
