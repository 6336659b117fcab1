#pragma once

#include <vector>

#include "app/ground/words.h"
#include "windowsupport/scriptedquestions.h"

namespace spectrane::testing_faults {

/// A person who answers Yes, and names one file for everything; keeps the words of the boxes.
class Willing : public testing_windows::ScriptedQuestions {
 public:
  QString Named;
  Answer ToTest = Answer::No;
  /// To every other question.
  Answer Usual = Answer::Yes;
  int Asked = 0;
  std::vector<QString> Told;

  void Show(int textId, const std::string&) override { Told.push_back(Words(textId)); }
  void ShowWords(const QString& words, const QString&, int) override { Told.push_back(words); }
  Answer AskYesNo(const QString& words, int) override {
    constexpr int kSaveTestQuestion = 926;
    if (words == Words(kSaveTestQuestion)) return ToTest;
    ++Asked;
    return Usual;
  }
  Answer AskYesNoCancel(const QString&, int) override { return Answer::Yes; }
  QString SaveFileName(const QString&, const QString&) override { return Named; }
  QString OpenFileName(const QString&, const QString&) override { return Named; }
};

}  // namespace spectrane::testing_faults
