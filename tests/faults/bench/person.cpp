#include "faults/bench/person.h"

#include "app/ground/words.h"

namespace spectrane::campaign {

void Person::Show(int textId, const std::string& details) {
  ShowWords(Words(textId), QString::fromStdString(details));
}

void Person::ShowWords(const QString& words, const QString&) {
  Told << words;
  if (Meanwhile) Meanwhile();
}

Answer Person::AskYesNo(const QString& words) {
  Asked << words;
  if (Meanwhile) Meanwhile();
  return Answer::Yes;
}

Answer Person::AskYesNoCancel(const QString& words) {
  Asked << words;
  if (Meanwhile) Meanwhile();
  return Saves;
}

}  // namespace spectrane::campaign
