#pragma once

#include <QDialog>

#include <functional>
#include <utility>

#include "base/displayformats.h"
#include "spectrum/statistics.h"

class QLabel;

namespace spectrane {

class NumberField;
class SpectrumDocument;

/// Maximum, minimum and mean of a range of a spectrum.
class FrmMaxMinAverage : public QDialog {
  Q_OBJECT

 public:
  /// Ends of the range [nm].
  using Range = std::pair<double, double>;

  /// Spectrum and formats must outlive the dialog. Each range that is asked for goes to `keepRange`.
  FrmMaxMinAverage(const SpectrumDocument& spectrum, const DisplayFormats& formats, Range range,
                   std::function<void(const Range&)> keepRange, QWidget* parent);

 private:
  void Caculate();
  void ShowResults();
  QString LineOf(const SpectrumValues& values, bool withWavelength) const;

  const SpectrumDocument& spectrum_;
  const DisplayFormats& formats_;
  Range range_;
  std::function<void(const Range&)> keepRange_;
  NumberField* start_;
  NumberField* end_;
  QLabel* max_;
  QLabel* min_;
  QLabel* average_;
};

}  // namespace spectrane
