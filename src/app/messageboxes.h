#pragma once

#include "app/ground/questions.h"

class QWidget;

namespace spectrane {

/// Object name of every box.
inline constexpr const char* kMessageBoxName = "MessageBox";
/// Property of a box with a text of the table: its number.
inline constexpr const char* kBoxTextProperty = "TextId";

/// Boxes and file dialogs on the screen: information boxes with the main window's caption as their title.
class MessageBoxes : public Questions {
 public:
  /// `title` is the caption of every box.
  MessageBoxes(QWidget& frame, const QString& title) : frame_(frame), title_(title) {}

  void ShowError(int textId) override;
  void Show(int textId, const std::string& details) override;
  using Questions::ShowWords;
  void ShowWords(const QString& words, const QString& details, int textId) override;
  Answer AskYesNo(const QString& words, int textId) override;
  Answer AskYesNoCancel(const QString& words, int textId) override;
  QString OpenFileName(const QString& filter, const QString& path) override;
  QString SaveFileName(const QString& filter, const QString& path) override;
  QColor AskColour(const QColor& now, const QString& title) override;

 private:
  QWidget* Parent() const;

  QWidget& frame_;
  QString title_;
};

}  // namespace spectrane
