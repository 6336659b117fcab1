#include "app/ground/layoutstore.h"

#include <QHeaderView>

namespace spectrane {
namespace {

const QString kLayoutGroup = QStringLiteral("layout/");
const QString kListGroup = QStringLiteral("lists/");

}  // namespace

LayoutStore::LayoutStore(const QString& folder)
    : file_(folder + QStringLiteral("/layout.ini"), QSettings::IniFormat) {}

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
}

void LayoutStore::RestoreColumns(const QString& name, QHeaderView& header) const {
  const QByteArray state = Bytes(name);
  if (!state.isEmpty()) header.restoreState(state);
}

void LayoutStore::StoreColumns(const QString& name, const QHeaderView& header) {
  Store(name, header.saveState());
}

}  // namespace spectrane
