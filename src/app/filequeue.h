#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>

namespace spectrane {

/// Files that are to be opened without somebody standing at the Open dialog: drops, other copies of the
/// program, the recent files. They wait for the end of a run, a reading, a question.
class FileQueue : public QObject {
 public:
  /// So many can wait.
  static constexpr qsizetype kMost = 32;

  /// `mayOpen` tells whether one may be opened now; `open` does it, and yields. `refused` tells of those for
  /// which there was no room: how many, and the first names of them.
  FileQueue(std::function<bool()> mayOpen, std::function<void(const QString& path)> open,
            std::function<void(qsizetype count, const QStringList& names)> refused);

  /// A path beyond those that have room is refused, which is told at once and when all others are open.
  void Add(const QString& path);
  /// What kept them waiting may be over: looks again from the message loop.
  void LookAgain();

 private:
  void OpenWaiting();
  void Refuse(const QString& path);

  std::function<bool()> mayOpen_;
  std::function<void(const QString& path)> open_;
  std::function<void(qsizetype count, const QStringList& names)> refused_;
  /// The next look at what waits.
  QTimer look_;
  QStringList waiting_;
  qsizetype refusedCount_ = 0;
  QStringList refusedNames_;
  bool opening_ = false;
};

}  // namespace spectrane
