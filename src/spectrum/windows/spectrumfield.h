#pragma once

#include <QLineEdit>
#include <QStringList>

namespace spectrane {

class MainWindow;

/// The name of a file, typed, chosen or dropped.
class SpectrumField : public QLineEdit {
  Q_OBJECT

 public:
  explicit SpectrumField(QWidget* parent);

  void SetFile(const QString& path);
  /// What stands there. Blanks around it are left out, unless a file's name has them.
  QString File() const;
  /// Asks for a file, beginning at the place of the last spectrum. Yields.
  void Choose(MainWindow& frame, const QString& filter);

 signals:
  /// Files that were dropped on the field; nothing is taken over by itself.
  void Dropped(const QStringList& paths);

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
};

}  // namespace spectrane
