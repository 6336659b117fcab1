#pragma once

#include <QLineEdit>

#include <optional>
#include <string>

namespace spectrane {

/// A field for one number. What its pattern does not show is not lost as long as nobody types.
class NumberField : public QLineEdit {
 public:
  /// `characters` is its width.
  NumberField(int characters, QWidget* parent);

  void SetNumber(double number, const std::string& pattern);
  /// The number is what the pattern shows of it, and nothing besides.
  void SetRounded(double number, const std::string& pattern);
  /// As the shortest text that reads back the same.
  void SetNumber(double number);
  /// Nothing when the text is no number.
  std::optional<double> Number() const;
  /// Brings the number into these limits and rewrites the text by the pattern. What was typed is from now on
  /// the number that the text shows; one that nobody typed keeps its digits. A text that is no number stays.
  void HoldInside(double lowest, double highest, const std::string& pattern);
  /// The number at the head of the text, whatever follows; 0 where there is none. Nothing for one beyond all
  /// doubles.
  std::optional<double> LeadingNumber() const;
  /// Puts the person in front of it, to type anew.
  void PointOut();

 private:
  void Show(double number, const std::string& text);

  double number_ = 0;
  QString shown_;
};

}  // namespace spectrane
