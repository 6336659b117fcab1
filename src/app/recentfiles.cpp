#include "app/recentfiles.h"

#include <QDir>
#include <QFileInfo>
#include <QMenu>

#include <utility>

#include "app/ground/layoutstore.h"

namespace spectrane {
namespace {

constexpr qsizetype kRecentCount = 9;
const QString kRecentName = QStringLiteral("Recent");
/// Marks the rows that are made anew each time.
constexpr const char* kRecentMark = "recent";

QAction* RecentRow(const QString& path, int number, QMenu& menu) {
  const QFileInfo file(path);
  auto* const action = new QAction(&menu);
  action->setProperty(kRecentMark, true);
  action->setObjectName(QStringLiteral("Recent%1").arg(number));
  action->setText(
      QStringLiteral("&%1  %2").arg(number).arg(file.fileName().replace(u'&', QStringLiteral("&&"))));
  action->setToolTip(path);
  action->setEnabled(file.isFile());
  return action;
}

}  // namespace

QStringList RecentFiles::Paths() const {
  return layout_.List(kRecentName);
}

void RecentFiles::Note(const QString& path) {
  QStringList files = Paths();
  const QString absolute = QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath());
  files.removeAll(absolute);
  files.prepend(absolute);
  layout_.Store(kRecentName, files.mid(0, kRecentCount));
}

void RecentFiles::KeepIn(QMenu& menu, QObject& owner, std::function<void(const QString& path)> open) {
  // Made when the menu opens: files come and go without this program.
  QAction* const place = menu.addSeparator();
  QObject::connect(&menu, &QMenu::aboutToShow, &owner, [this, &menu, &owner, place, open = std::move(open)] {
    for (QAction* old : menu.actions()) {
      if (old->property(kRecentMark).toBool()) delete old;
    }
    const QList<QAction*> actions = menu.actions();
    QAction* const before = actions.value(actions.indexOf(place) + 1);
    int number = 0;
    for (const QString& path : Paths()) {
      QAction* const action = RecentRow(path, ++number, menu);
      QObject::connect(action, &QAction::triggered, &owner, [open, path] { open(path); });
      menu.insertAction(before, action);
    }
    menu.setToolTipsVisible(true);
  });
}

}  // namespace spectrane
