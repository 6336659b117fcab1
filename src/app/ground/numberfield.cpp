#include "app/ground/numberfield.h"

#include <algorithm>

#include "base/numbers.h"
#include "base/numericfault.h"

namespace spectrane {

NumberField::NumberField(int characters, QWidget* parent) : QLineEdit(parent) {
  setAlignment(Qt::AlignRight);
  ensurePolished();
  setMinimumWidth(fontMetrics().averageCharWidth() * characters);
}

void NumberField::SetNumber(double number, const std::string& pattern) {
  Show(number, Format(number, pattern));
}

void NumberField::SetRounded(double number, const std::string& pattern) {
  const std::string text = Format(number, pattern);
  Show(ParseNumber(text).value_or(number), text);
}

void NumberField::SetNumber(double number) {
  Show(number, ShortestText(number));
}

void NumberField::Show(double number, const std::string& text) {
  number_ = number;
  shown_ = QString::fromStdString(text);
  setText(shown_);
}

std::optional<double> NumberField::Number() const {
  if (text() == shown_) return number_;
  return ParseNumber(text().toStdString());
}

void NumberField::HoldInside(double lowest, double highest, const std::string& pattern) {
  std::optional<double> number = Number();
  if (!number) return;
  const double held = std::clamp(*number, lowest, highest);
  if (text() != shown_) number = ParseNumber(Format(held, pattern));
  // What is rounded may lie outside again.
  Show(std::clamp(number.value_or(held), lowest, highest), Format(held, pattern));
}

std::optional<double> NumberField::LeadingNumber() const {
  if (text() == shown_) return number_;
  try {
    return Val(text().toStdString());
  } catch (const NumericFault&) {
    return {};
  }
}

void NumberField::PointOut() {
  setFocus();
  selectAll();
}

}  // namespace spectrane
