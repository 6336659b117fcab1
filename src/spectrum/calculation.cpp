#include "spectrum/calculation.h"

#include <algorithm>
#include <optional>

#include "base/numbers.h"
#include "base/numericfault.h"
#include "link/function.h"

namespace spectrane {
namespace {

struct PointValues {
  double Trans;
  double Abs;
};

/// The record that is looked up, with comparisons that are false outside of it.
class LookUp {
 public:
  explicit LookUp(const Spectrum& record) : record_(record), n_(static_cast<std::int64_t>(record.Size())) {
    try {
      last_ = Steps(record.WL.back());
      length_ = Steps(record.WL.front()) - last_ + 1;
      countable_ = true;
    } catch (const NumericFault&) {
      // Ends that no instrument has: nothing is found.
    }
  }

  bool Covers(double x) const { return x <= record_.WL.front() && x >= record_.WL.back(); }

  /// Nothing: the partner lies outside the record.
  std::optional<PointValues> At(double x) const try {
    if (!countable_) return {};
    const std::int64_t i = Estimate(x);
    for (const std::int64_t same : {i, i - 1, i + 1}) {
      if (Inside(same) && WL(same) == x) return Point(same);
    }
    if (Inside(i) && x < WL(i) && Inside(i + 1) && x >= WL(i + 1)) return Between(i, x);
    if (Inside(i) && x > WL(i) && Inside(i - 1) && x <= WL(i - 1)) return Between(i - 1, x);
    if (Inside(i + 1)) return Point(i + 1);
    return {};
  } catch (const NumericFault&) {
    return {};  // wavelengths that no instrument has
  }

 private:
  /// Counted in steps of 0.1 nm. Throws NumericFault for a wavelength that is too large for it.
  static double Steps(double wavelength) { return static_cast<double>(ToLong(wavelength * 10)); }
  /// The place of `x` on a uniform grid. Throws as Steps().
  std::int64_t Estimate(double x) const {
    const auto n = static_cast<double>(n_);
    return ToLong(n - n * (Steps(x) - last_) / length_);
  }
  bool Inside(std::int64_t i) const { return i >= 0 && i < n_; }
  double WL(std::int64_t i) const { return record_.WL[static_cast<std::size_t>(i)]; }
  PointValues Point(std::int64_t i) const {
    const auto at = static_cast<std::size_t>(i);
    return {record_.Trans[at], record_.Abs[at]};
  }
  /// On the line between the points `i` and `i` + 1.
  PointValues Between(std::int64_t i, double x) const {
    const PointValues high = Point(i);
    const PointValues low = Point(i + 1);
    const double step = WL(i) - WL(i + 1);
    const double part = x - WL(i + 1);
    return {low.Trans + (high.Trans - low.Trans) * part / step, low.Abs + (high.Abs - low.Abs) * part / step};
  }

  const Spectrum& record_;
  std::int64_t n_;
  // Of the record, in steps: where it ends, and how long it is.
  double last_ = 0;
  double length_ = 1;
  bool countable_ = false;
};

double Combined(double left, double right, SpectrumOperation operation) {
  switch (operation) {
    case SpectrumOperation::Add:
      return left + right;
    case SpectrumOperation::Subtract:
      return left - right;
    case SpectrumOperation::Multiply:
      return left * right;
    case SpectrumOperation::Divide:
      return right == 0.0 ? 0.0 : left / right;
  }
  return 0;
}

}  // namespace

Spectrum FromHighestWavelength(Spectrum spectrum) {
  if (!spectrum.Empty() && spectrum.WL.front() < spectrum.WL.back()) {
    for (std::vector<double>* const column : {&spectrum.WL, &spectrum.Trans, &spectrum.Abs}) {
      std::reverse(column->begin(), column->end());
    }
  }
  return spectrum;
}

ProcessedSpectrum CombineSpectra(const Spectrum& base, const Spectrum& other, SpectrumOperation operation,
                                 bool onTrans) {
  if (base.Empty() || other.Empty()) return {{}, NoResult::NoSource};
  const LookUp partners(other);
  ProcessedSpectrum combined;
  combined.Result.Reserve(base.Size());
  bool overlap = false;
  for (std::size_t i = 0; i < base.Size(); ++i) {
    const double x = base.WL[i];
    if (!partners.Covers(x)) continue;
    overlap = true;
    const std::optional<PointValues> partner = partners.At(x);
    if (!partner) {
      ++combined.Skipped;
      continue;
    }
    const double value = onTrans ? Combined(base.Trans[i], partner->Trans, operation)
                                 : Combined(base.Abs[i], partner->Abs, operation);
    const double trans = onTrans ? value : TransFromAbs(value);
    const double abs = onTrans ? AbsFromTrans(value) : value;
    combined.Result.Add(x, trans, abs);
  }
  if (!overlap) {
    combined.Reason = NoResult::NoOverlap;
  } else if (combined.Result.Empty()) {
    combined.Reason = NoResult::NoPartner;
  }
  return combined;
}

}  // namespace spectrane
