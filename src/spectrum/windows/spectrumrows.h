#pragma once

#include <QObject>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

class QDialog;
class QGroupBox;

namespace spectrane {

class ColourButton;
class DialogParts;
class MainWindow;
class SpectrumField;

/// What rows of files look like.
struct SpectrumRowsPlan {
  std::size_t Count;
  /// A file can be typed, chosen and dropped; otherwise its name only stands there.
  bool Open;
  /// Object names; of several rows each carries the row's number, labels from 1 when they are numbers.
  const char* LabelName;
  const char* ColourName;
  /// In front of a field; empty for the number of its row.
  QString Caption;
  /// Of the file dialog.
  QString Filter;
};

/// Rows of an option dialog, each with the name of a file and the colour of its curve. Several files that are
/// dropped fill the rows from that one on. Belongs to the dialog.
class SpectrumRows : public QObject {
 public:
  SpectrumRows(MainWindow& frame, QDialog& dialog, SpectrumRowsPlan plan);

  QGroupBox* Build(DialogParts& parts, std::span<const std::string> names,
                   std::span<const std::int32_t> colours);
  /// What stands there now; names only where they can be opened.
  void Take(std::span<std::string> names, std::span<std::int32_t> colours) const;

 private:
  void Fill(std::size_t first, const QStringList& paths);
  void AddOpen(DialogParts& parts, QGroupBox* group, std::size_t row);
  QByteArray NameOf(const char* name, std::size_t number) const;

  MainWindow& frame_;
  QDialog& dialog_;
  SpectrumRowsPlan plan_;
  std::vector<SpectrumField*> fields_;
  std::vector<ColourButton*> colours_;
};

}  // namespace spectrane
