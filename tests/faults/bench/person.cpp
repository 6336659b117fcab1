#include "faults/bench/person.h"

#include "app/ground/words.h"

namespace spectrane::campaign {

void Person::Show(int textId, const std::string& details) {
  ShowWords(Words(textId), QString::fromStdString(details), textId);
}

void Person::ShowWords(const QString& words, const QString&, int) {
  Told << words;
  if (Meanwhile) Meanwhile();
}

Answer Person::AskYesNo(const QString& words, int) {
  Asked << words;
  if (Meanwhile) Meanwhile();
  return Answer::Yes;
}

Answer Person::AskYesNoCancel(const QString& words, int) {
  Asked << words;
  if (Meanwhile) Meanwhile();
  return Saves;
}

}  // namespace spectrane::campaign
