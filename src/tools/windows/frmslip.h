#pragma once

#include <array>

#include "tools/windows/tooldialog.h"

class QRadioButton;

namespace spectrane {

/// Sets the slit. The live reading stands meanwhile.
class FrmSlip : public ToolDialog {
  Q_OBJECT

 public:
  explicit FrmSlip(MainWindow& frame);

 protected:
  void Load() override;

 private:
  /// Code of the option that is chosen; 0: none.
  std::int32_t ChosenCode() const;
  void Setup();

  /// Option i has slit code i + 1.
  std::array<QRadioButton*, 5> options_ = {};
};

}  // namespace spectrane
