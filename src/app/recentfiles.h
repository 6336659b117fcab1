#pragma once

#include <QStringList>

#include <functional>

class QMenu;
class QObject;

namespace spectrane {

class LayoutStore;

/// The data files that were opened or saved last, the latest first, from one start to the next.
class RecentFiles {
 public:
  explicit RecentFiles(LayoutStore& layout) : layout_(layout) {}

  QStringList Paths() const;
  void Note(const QString& path);
  /// Keeps the rows of the recent files at the end of `menu` as it stands now; one that is chosen goes to
  /// `open`. This object must outlive `owner`, who owns the connection.
  void KeepIn(QMenu& menu, QObject& owner, std::function<void(const QString& path)> open);

 private:
  LayoutStore& layout_;
};

}  // namespace spectrane
