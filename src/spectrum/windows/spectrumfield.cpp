#include "spectrum/windows/spectrumfield.h"

#include <QDir>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QPointer>
#include <QUrl>

#include "app/ground/mainwindow.h"
#include "spectrum/scansettings.h"

namespace spectrane {
namespace {

constexpr const char* kPathKey = "File Path";
constexpr int kNameCharacters = 34;

QStringList FilesOf(const QMimeData& data) {
  QStringList paths;
  for (const QUrl& url : data.urls()) {
    if (url.isLocalFile()) paths.append(QDir::toNativeSeparators(url.toLocalFile()));
  }
  return paths;
}

}  // namespace

SpectrumField::SpectrumField(QWidget* parent) : QLineEdit(parent) {
  setMinimumWidth(fontMetrics().averageCharWidth() * kNameCharacters);
  setAcceptDrops(true);
}

void SpectrumField::SetFile(const QString& path) {
  setText(path);
  setToolTip(path);
}

QString SpectrumField::File() const {
  return QFileInfo::exists(text()) ? text() : text().trimmed();
}

void SpectrumField::Choose(MainWindow& frame, const QString& filter) {
  QString begin = QString::fromStdString(frame.Settings().GetSetting(kScanSection, kPathKey));
  if (begin.isEmpty()) {
    const QFileInfo settings(QString::fromStdString(frame.Settings().Path()));
    begin = settings.absoluteDir().filePath(QStringLiteral("WaveLength.wls"));
  }
  const QPointer<SpectrumField> self(this);
  const QString path = frame.Boxes().OpenFileName(filter, begin);
  if (path.isEmpty() || !self) return;
  SetFile(path);
  frame.Settings().PutSetting(kScanSection, kPathKey, path.toStdString());
}

void SpectrumField::dragEnterEvent(QDragEnterEvent* event) {
  if (!isReadOnly() && !FilesOf(*event->mimeData()).isEmpty()) {
    event->acceptProposedAction();
  } else {
    QLineEdit::dragEnterEvent(event);
  }
}

void SpectrumField::dragMoveEvent(QDragMoveEvent* event) {
  if (!isReadOnly() && !FilesOf(*event->mimeData()).isEmpty()) {
    event->acceptProposedAction();
  } else {
    QLineEdit::dragMoveEvent(event);
  }
}

void SpectrumField::dropEvent(QDropEvent* event) {
  const QStringList paths = isReadOnly() ? QStringList() : FilesOf(*event->mimeData());
  if (paths.isEmpty()) {
    QLineEdit::dropEvent(event);
    return;
  }
  event->acceptProposedAction();
  emit Dropped(paths);
}

}  // namespace spectrane
