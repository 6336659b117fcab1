#include "app/ground/layoutstore.h"

#include <QFileInfo>
#include <QHeaderView>

namespace spectrane {
namespace {

const QString kLayoutGroup = QStringLiteral("layout/");
const QString kListGroup = QStringLiteral("lists/");

/// Many times what the program writes; all of a file is held in memory.
constexpr qint64 kMostBytes = 1 << 20;

bool IsNoLayout(const QString& path) {
  const QFileInfo about(path);
  return about.exists() && (about.isFile() ? about.size() > kMostBytes : !about.isDir());
}

/// The opening of a pipe would not end, neither in place of the file nor of its lock. Below something that is
/// no folder nothing can be opened, and all values hold for the run.
QString Openable(const QString& path) {
  const QString lock = path + QStringLiteral(".lock");
  for (const QString& each : {path, lock}) {
    if (IsNoLayout(each)) return each + QStringLiteral("/none");
  }
  return path;
}

}  // namespace

LayoutStore::LayoutStore(const QString& folder)
    : file_(Openable(folder + QStringLiteral("/layout.ini")), QSettings::IniFormat) {}

QByteArray LayoutStore::Bytes(const QString& name) const {
  return file_.value(kLayoutGroup + name).toByteArray();
}

void LayoutStore::Store(const QString& name, const QByteArray& bytes) {
  if (Bytes(name) != bytes) file_.setValue(kLayoutGroup + name, bytes);
}

QStringList LayoutStore::List(const QString& name) const {
  return file_.value(kListGroup + name).toStringList();
}

void LayoutStore::Store(const QString& name, const QStringList& list) {
  if (List(name) != list) file_.setValue(kListGroup + name, list);
}

void LayoutStore::Reset() {
  file_.remove(QStringLiteral("layout"));
  for (KeptLayout* const kept : onShow_) kept->Forget();
}

void LayoutStore::RestoreColumns(const QString& name, QHeaderView& header) const {
  const QByteArray state = Bytes(name);
  if (!state.isEmpty()) header.restoreState(state);
}

void LayoutStore::StoreColumns(const QString& name, const QHeaderView& header) {
  Store(name, header.saveState());
}

}  // namespace spectrane
