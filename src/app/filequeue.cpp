#include "app/filequeue.h"

#include <QApplication>
#include <QFileInfo>
#include <QScopedValueRollback>
#include <QWidget>

#include <utility>

#include "app/messageboxes.h"

namespace spectrane {
namespace {

/// So many of those that could not wait are told by name.
constexpr qsizetype kRefusedNames = 3;
constexpr int kBoxPollMs = 200;

}  // namespace

FileQueue::FileQueue(std::function<bool()> mayOpen, std::function<void(const QString& path)> open,
                     std::function<void(qsizetype count, const QStringList& names)> refused)
    : mayOpen_(std::move(mayOpen)), open_(std::move(open)), refused_(std::move(refused)) {
  look_.setSingleShot(true);
  connect(&look_, &QTimer::timeout, this, [this] { OpenWaiting(); });
}

void FileQueue::Add(const QString& path) {
  if (waiting_.size() >= kMost) {
    Refuse(path);
    return;
  }
  waiting_.append(path);
  LookAgain();
}

void FileQueue::Refuse(const QString& path) {
  ++refusedCount_;
  if (refusedNames_.size() < kRefusedNames) refusedNames_.append(QFileInfo(path).fileName());
  refused_(refusedCount_, refusedNames_);
}

void FileQueue::LookAgain() {
  if (!waiting_.isEmpty()) look_.start(0);
}

void FileQueue::OpenWaiting() {
  if (opening_) return;
  const QWidget* modal = QApplication::activeModalWidget();
  if (modal && modal->objectName() == QLatin1String(kMessageBoxName)) {
    look_.start(kBoxPollMs);
    return;
  }
  // A run or a reading in progress, a question and an open box are not disturbed; their ends, or the clock,
  // call again.
  const QScopedValueRollback<bool> opening(opening_, true);
  while (!waiting_.isEmpty() && mayOpen_()) open_(waiting_.takeFirst());
  // Once more at the end: what went on meanwhile has had its own remarks.
  if (waiting_.isEmpty() && refusedCount_ > 0) {
    refused_(std::exchange(refusedCount_, 0), std::exchange(refusedNames_, {}));
  }
}

}  // namespace spectrane
