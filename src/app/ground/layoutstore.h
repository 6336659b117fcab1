#pragma once

#include <QByteArray>
#include <QSettings>
#include <QStringList>

#include <vector>

class QHeaderView;

namespace spectrane {

/// Something on show whose sizes are remembered.
class KeptLayout {
 public:
  virtual ~KeptLayout() = default;
  /// Back to the sizes that the program gives it; there are no others to remember now.
  virtual void Forget() = 0;
};

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
  /// Forgets every remembered size and place, also of what is on show; the recent files stay.
  void Reset();

  /// From now on until Leave() `kept` hears of a reset.
  void Join(KeptLayout& kept) { onShow_.push_back(&kept); }
  void Leave(KeptLayout& kept) { std::erase(onShow_, &kept); }

  /// Column widths of a grid, under the grid's own name.
  void RestoreColumns(const QString& name, QHeaderView& header) const;
  void StoreColumns(const QString& name, const QHeaderView& header);

 private:
  QSettings file_;
  std::vector<KeptLayout*> onShow_;
};

}  // namespace spectrane
