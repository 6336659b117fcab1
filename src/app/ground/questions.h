#pragma once

#include <QColor>
#include <QString>

#include "link/displays.h"

namespace spectrane {

enum class Answer { Yes, No, Cancel };

/// Everything that stops to wait for a word from the person: boxes and file dialogs. Tests put a queue of
/// answers here. Every procedure yields. The numbered texts come by Messages::Show.
class Questions : public Messages {
 public:
  /// An information box with words that are put together, such as a path and a text; `details` may be empty
  /// and stands behind the message. `textId`, here and below, is the text of the table that help is to be
  /// found under; 0 for none.
  virtual void ShowWords(const QString& words, const QString& details, int textId) = 0;
  void ShowWords(const QString& words) { ShowWords(words, {}, 0); }
  /// Yes and No; closing the box is No.
  virtual Answer AskYesNo(const QString& words, int textId) = 0;
  /// Yes, No and Cancel; closing the box is Cancel.
  virtual Answer AskYesNoCancel(const QString& words, int textId) = 0;
  Answer AskYesNoCancel(const QString& words) { return AskYesNoCancel(words, 0); }
  /// The path of a file to open or to save to; empty when the person chose none. `filter` is a text of the
  /// table: captions and patterns in turn, between bars. `path` is the folder or file to begin with.
  virtual QString OpenFileName(const QString& filter, const QString& path) = 0;
  virtual QString SaveFileName(const QString& filter, const QString& path) = 0;
  /// A colour, beginning with `now`; an invalid one when the person chose none.
  virtual QColor AskColour(const QColor& now, const QString& title) = 0;
};

/// A filter text of the table as the toolkit wants it: "Caption (*.a *.b)" for each pair.
QString DialogFilter(const QString& tableFilter);

}  // namespace spectrane
