#include "app/ground/filequestions.h"

#include <QFileInfo>

#include "app/ground/mainwindow.h"
#include "app/ground/words.h"
#include "base/utf8path.h"

namespace spectrane {
namespace {

constexpr int kMayOverwrite = 1212;
constexpr int kNotWritten = 1213;
constexpr int kShownElsewhere = 1218;

}  // namespace

QString WithEnding(const QString& path, const char* ending) {
  const QString wanted = QString::fromLatin1(ending);
  return path.endsWith(wanted, Qt::CaseInsensitive) ? path : path + wanted;
}

bool MayWriteTo(MainWindow& frame, const QString& path, const DocumentWindow* besides) {
  if (SameFile(path.toStdString(), frame.Settings().Path())) {
    frame.Boxes().ShowWords(Words(kNotWritten), path, kNotWritten);
    return false;
  }
  if (frame.ShowsFile(path, besides)) {
    // Two windows would write one file in turns.
    frame.Boxes().ShowWords(u'<' + path + u'>' + Words(kShownElsewhere), {}, kShownElsewhere);
    return false;
  }
  return !QFileInfo::exists(path) ||
         frame.Boxes().AskYesNo(path + u' ' + Words(kMayOverwrite), kMayOverwrite) == Answer::Yes;
}

}  // namespace spectrane
