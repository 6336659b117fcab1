#include "app/ground/questions.h"

#include <QStringList>

namespace spectrane {

QString DialogFilter(const QString& tableFilter) {
  const QStringList parts = tableFilter.split(u'|');
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    QString caption = parts[i];
    if (const qsizetype bracket = caption.indexOf(u'('); bracket >= 0) caption.truncate(bracket);
    filters.append(caption.trimmed() + QStringLiteral(" (") + QString(parts[i + 1]).replace(u';', u' ') +
                   u')');
  }
  return filters.join(QStringLiteral(";;"));
}

}  // namespace spectrane
