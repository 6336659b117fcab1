#pragma once

#include <gtest/gtest.h>

#include <QFile>

#include <deque>
#include <functional>
#include <string>
#include <utility>

#include "app/ground/questions.h"
#include "app/ground/words.h"

namespace spectrane::testing_windows {

/// The page of the handbook where F1 in a box looks for its text.
inline const QString& HandbookOfMessages() {
  static const QString page = [] {
    QFile file(QStringLiteral(SPECTRANE_SOURCE "/docs/handbook/messages.html"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QString::fromUtf8(file.readAll());
  }();
  return page;
}

/// A person who answers what the test expects to be asked, in that order. A question that was not expected
/// and an answer that was not needed fail the test; so does a box whose text the handbook does not explain.
class ScriptedQuestions : public Questions {
 public:
  using Questions::ShowWords;
  using Meanwhile = std::function<void()>;

  ~ScriptedQuestions() override {
    for (const Step& step : steps_) ADD_FAILURE() << "never asked: " << step.Text.toStdString();
  }

  /// Boxes; `meanwhile` runs while the box is open.
  void ExpectMessage(int textId, Meanwhile meanwhile = {}) {
    Add({QStringLiteral("message %1").arg(textId), Answer::No, {}, std::move(meanwhile)});
  }
  void ExpectWords(const QString& words, Meanwhile meanwhile = {}) {
    Add({QStringLiteral("words: ") + words, Answer::No, {}, std::move(meanwhile)});
  }
  void ExpectYesNo(const QString& words, Answer answer, Meanwhile meanwhile = {}) {
    Add({QStringLiteral("yes or no: ") + words, answer, {}, std::move(meanwhile)});
  }
  void ExpectYesNoCancel(const QString& words, Answer answer, Meanwhile meanwhile = {}) {
    Add({QStringLiteral("yes, no or cancel: ") + words, answer, {}, std::move(meanwhile)});
  }
  /// File dialogs with that filter; an empty `path` is a person who chooses none.
  void ExpectSaveName(const QString& filter, const QString& path, Meanwhile meanwhile = {}) {
    Add({QStringLiteral("save as: ") + filter, Answer::No, path, std::move(meanwhile)});
  }
  void ExpectOpenName(const QString& filter, const QString& path, Meanwhile meanwhile = {}) {
    Add({QStringLiteral("open: ") + filter, Answer::No, path, std::move(meanwhile)});
  }
  /// The colour dialog of that title; an invalid `colour` is a person who chooses none.
  void ExpectColour(const QString& title, const QColor& colour) {
    Add({QStringLiteral("colour: ") + title, Answer::No, colour.isValid() ? colour.name() : QString(), {}});
  }
  bool AllAsked() const { return steps_.empty(); }

  /// The text behind the last box, and where the last file dialog began.
  QString Details;
  QString BeganWith;

  void Show(int textId, const std::string& details) override {
    Details = QString::fromStdString(details);
    ExpectHelp(textId, Words(textId));
    Take(QStringLiteral("message %1").arg(textId));
  }
  void ShowWords(const QString& words, const QString& details, int textId) override {
    Details = details;
    ExpectHelp(textId, words);
    Take(QStringLiteral("words: ") + words);
  }
  Answer AskYesNo(const QString& words, int textId) override {
    ExpectHelp(textId, words);
    return Take(QStringLiteral("yes or no: ") + words, Answer::No).Reply;
  }
  Answer AskYesNoCancel(const QString& words, int textId) override {
    ExpectHelp(textId, words);
    return Take(QStringLiteral("yes, no or cancel: ") + words, Answer::Cancel).Reply;
  }
  QString OpenFileName(const QString& filter, const QString& path) override {
    BeganWith = path;
    return Take(QStringLiteral("open: ") + filter).Path;
  }
  QString SaveFileName(const QString& filter, const QString& path) override {
    BeganWith = path;
    return Take(QStringLiteral("save as: ") + filter).Path;
  }
  QColor AskColour(const QColor& now, const QString& title) override {
    BeganWith = now.name();
    return QColor(Take(QStringLiteral("colour: ") + title).Path);
  }

 private:
  struct Step {
    QString Text;
    Answer Reply;
    QString Path;
    Meanwhile During;
  };

  /// Words that are put together have the text in them that help is asked for.
  static void ExpectHelp(int textId, const QString& words) {
    if (textId == 0) return;
    EXPECT_TRUE(words.contains(Words(textId))) << textId << " in " << words.toStdString();
    EXPECT_TRUE(HandbookOfMessages().contains(QStringLiteral("id=\"text-%1\"").arg(textId)))
        << "F1 finds nothing about " << textId << ": " << Words(textId).toStdString();
  }

  void Add(Step step) { steps_.push_back(std::move(step)); }
  Step Take(const QString& asked, Answer safe = Answer::No) {
    if (steps_.empty() || steps_.front().Text != asked) {
      ADD_FAILURE() << "not expected: " << asked.toStdString()
                    << (steps_.empty() ? std::string() : "\nexpected: " + steps_.front().Text.toStdString());
      return {asked, safe, {}, {}};
    }
    Step step = std::move(steps_.front());
    steps_.pop_front();
    if (step.During) step.During();
    return step;
  }

  std::deque<Step> steps_;
};

}  // namespace spectrane::testing_windows
