#pragma once

#include <optional>

#include "tools/windows/tooldialog.h"

class QLineEdit;
class QVBoxLayout;

namespace spectrane {

class DialogParts;

/// A dialog with one wavelength, which is read from the instrument and set on it. The live reading stands
/// meanwhile.
class WavelengthDialog : public ToolDialog {
  Q_OBJECT

 public:
  /// OK: sets what is in the field and shows what the instrument has then. The dialog stays. Yields.
  void accept() override;

 protected:
  /// What tells one such dialog from another.
  struct Kind {
    /// Text numbers of the words for a text that is no number, and for one out of range.
    int NoNumberTextId;
    int OutOfRangeTextId;
    /// [nm], both included.
    double Lowest;
    double Highest;
    /// What reading and setting can take together, at the longest.
    int LongestSeconds;
    std::optional<double> (*Read)(InstrumentLink& link);
    std::optional<double> (*Set)(InstrumentLink& link, double wavelength);
    /// What is told when the instrument took another wavelength, %1.
    const char* TookAnother;
  };
  WavelengthDialog(MainWindow& frame, const Kind& kind);

  /// Puts label, field, range and state line into `all`.
  void BuildField(DialogParts& parts, QVBoxLayout& all, const QString& label);
  void Load() override;
  /// The controls as a command finds them when it begins.
  void Begin();

 private:
  QString TookAnother(const QString& wavelength) const;
  void Refuse(int textId);
  void Set(double wavelength);
  void Show(double wavelength);

  Kind kind_;
  QLineEdit* field_;
};

}  // namespace spectrane
