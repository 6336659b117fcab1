#pragma once

#include <QByteArray>
#include <QSettings>
#include <QStringList>

class QHeaderView;

namespace spectrane {

/// Sizes, places and the recent files: layout.ini beside config.ini. Values that cannot be stored hold for
/// the run of the program; nothing of it is worth a message.
class LayoutStore {
 public:
  /// `folder` is the application folder.
  explicit LayoutStore(const QString& folder);

  QByteArray Bytes(const QString& name) const;
  void Store(const QString& name, const QByteArray& bytes);
  QStringList List(const QString& name) const;
  void Store(const QString& name, const QStringList& list);
  /// Forgets every remembered size and place; the recent files stay.
  void Reset();

  /// Column widths of a grid, under the grid's own name.
  void RestoreColumns(const QString& name, QHeaderView& header) const;
  void StoreColumns(const QString& name, const QHeaderView& header);

 private:
  QSettings file_;
};

}  // namespace spectrane
