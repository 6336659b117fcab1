#pragma once

#include <QStringList>

#include <functional>

#include "app/ground/questions.h"

namespace spectrane::campaign {

/// The operator at the boxes: reads what is told, says yes, and names the file that is to be named.
class Person : public Questions {
 public:
  using Questions::ShowWords;

  void Show(int textId, const std::string& details) override;
  void ShowError(int textId) override { Show(textId, {}); }
  void ShowWords(const QString& words, const QString& details, int) override;
  Answer AskYesNo(const QString& words, int) override;
  Answer AskYesNoCancel(const QString& words, int) override;
  QString OpenFileName(const QString&, const QString&) override { return File; }
  QString SaveFileName(const QString&, const QString&) override { return File; }
  QColor AskColour(const QColor&, const QString&) override { return {}; }

  /// What the next file dialog gets.
  QString File;
  /// Whether finished tests are saved, and unsaved work at a close.
  Answer Saves = Answer::Yes;
  /// Words of the boxes so far that only tell something, and of the questions.
  QStringList Told;
  QStringList Asked;
  /// In the middle of a box.
  std::function<void()> Meanwhile;
};

}  // namespace spectrane::campaign
