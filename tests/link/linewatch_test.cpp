#include "link/linewatch.h"

#include <gtest/gtest.h>

namespace spectrane::testing_link {
namespace {

struct HeardText {
  const char* Name;
  std::string Text;
  bool Restart;
};

TEST(LineWatch, P11_ABannerIsToldFromNoiseAndFromAnswers) {
  const HeardText rows[] = {
      {"the banner", "\r\nSimulated instrument\r\nready.\r\n>", true},
      {"one line", "\r\nSPECTROMETER V1.2\r\n>", true},
      {"without a line end before it", "Spectrophotometer 1.0\r\nready\r\n>", true},
      {"CR alone", "\r\rSpectrophotometer\r\rready\r>", true},
      {"behind noise", "\xFE\x80\r\nSimulated instrument\r\nready.\r\n>", true},
      {"a name of other letters", "\r\nspectrom\xE8tre\r\nready.\r\n>", true},
      {"behind half an answer", "ge 20\r\n499\r\nSimulated instrument\r\nready.\r\n>", true},
      {"behind half an echo", "ge\r\nSimulated instrument\r\nready.\r\n>", true},
      {"the whole answer", "ge 20\r\n49963\r\n49970\r\n>", false},
      {"again", "ge 20\r\n49963\r\n>ge 20\r\n49963\r\n>", false},
      {"the rest of one", "63\r\n49970\r\n>", false},
      {"a word in place of a number", "ge 20\r\n49963\r\nabc\r\n>", false},
      {"words in place of numbers", "ge 20\r\nNaN\r\nNaN\r\n>", false},
      {"damaged echo", "?e 20\r\n49963\r\n>", false},
      {"damaged echo of an order", "?djustwl\r\n>", false},
      {"lost echo of an order", "\r\n>", false},
      {"an echo with a prompt inside", "adj>ustwl\r\n>", false},
      {"the answer before", "getwl\r\n546.0\r\n>", false},
      {"the order before", "adjustwl\r\n>", false},
      {"a refusal", "adjustwl\r\nInvalid Command.\r\n>", false},
      {"a refusal with one line more", "adjustwl\r\nInvalid Command.\r\nInvalid Command.\r\n>", false},
      {"noise", std::string("\0\x80\xFF", 3), false},
      {"noise and a prompt", "xyz>", false},
      {"words without a prompt", "\r\nSimulated instrument\r\nready.\r\n", false},
  };
  for (const HeardText& row : rows) {
    for (std::size_t split = 0; split <= row.Text.size(); ++split) {
      LineWatch watch;
      for (const char* request : {"getwl", "adjustwl", "ge 20"}) watch.Sent(request);
      watch.Heard(std::string_view(row.Text).substr(0, split));
      watch.Heard(std::string_view(row.Text).substr(split));
      EXPECT_EQ(watch.Restarts(), row.Restart ? 1 : 0) << row.Name << ", in two at " << split;
    }
  }
}

TEST(LineWatch, AnEchoSettlesWhatWasSentBefore) {
  LineWatch watch;
  for (const char* request : {"ge 20", "ge 20", "ge 10", "ge 20"}) watch.Sent(request);
  watch.Heard("ge 20\r\n1\r\n");
  EXPECT_EQ(watch.Awaited(), 4u) << "not at its end";
  EXPECT_FALSE(watch.LastMayBeAnswered());
  watch.Heard(">");
  EXPECT_EQ(watch.Awaited(), 3u) << "that to the first, as far as anybody knows";
  EXPECT_TRUE(watch.LastMayBeAnswered());
  watch.Heard("ge 1");
  watch.Heard("0\r\n3\r\n");
  EXPECT_FALSE(watch.LastMayBeAnswered()) << "another one has begun";
  watch.Heard(">");
  EXPECT_EQ(watch.Awaited(), 1u) << "the second was lost";
  EXPECT_FALSE(watch.LastMayBeAnswered());
  watch.Heard("ge 20\r\n4\r\n>");
  EXPECT_EQ(watch.Awaited(), 0u);
  EXPECT_TRUE(watch.LastMayBeAnswered());
}

TEST(LineWatch, HalfAnAnswerIsNotTakenForAnotherOne) {
  LineWatch watch;
  watch.Sent("ge 20");
  watch.Heard("ge 20\r\n499");
  watch.Sent("ge 20");
  watch.Heard("63\r\n>");
  EXPECT_EQ(watch.Awaited(), 1u) << "the first alone has its answer";
  watch.Heard("ge 20\r\n49963\r\n>");
  EXPECT_EQ(watch.Awaited(), 0u);
}

TEST(LineWatch, AnEchoInTwoPiecesIsFoundBehindTheRestOfAnAnswer) {
  const std::string text = "49963\r\n49970\r\nge 20\r\n49963\r\n>";
  for (std::size_t split = 0; split <= text.size(); ++split) {
    LineWatch watch;
    watch.Sent("ge 20");
    watch.Heard(std::string_view(text).substr(0, split));
    watch.Heard(std::string_view(text).substr(split));
    EXPECT_EQ(watch.Awaited(), 0u) << "in two at " << split;
  }
}

// Its prompt was lost.
TEST(LineWatch, AnAnswerThatNeverEndsLeavesTheNextOneItsEcho) {
  LineWatch watch;
  for (const char* request : {"ge 20", "ge 20"}) watch.Sent(request);
  watch.Heard("ge 20\r\n499\r\nge 20\r\n49963\r\n>");
  EXPECT_EQ(watch.Awaited(), 0u);
}

TEST(LineWatch, ARestartEndsTheAnswerThatHadBegun) {
  LineWatch watch;
  for (const char* request : {"ge 20", "ge 20", "ge 10"}) watch.Sent(request);
  watch.Heard("ge 20\r\n499\r\nName\r\nready.\r\n>");
  EXPECT_EQ(watch.Restarts(), 1);
  EXPECT_EQ(watch.Awaited(), 2u) << "damage may look like a restart, and the others be answered yet";
  watch.Heard("ge 10\r\n1\r\n>");
  EXPECT_EQ(watch.Awaited(), 0u);
  watch.Reset();
  EXPECT_EQ(watch.Restarts(), 1) << "a line opened anew is no reason to forget it";
}

TEST(LineWatch, P11_AnAnswerInWordsIsNoBannerHoweverLateItComes) {
  for (const char* answer : {"check\r\nInvalid Command.\r\n>", "d Command.\r\n>"}) {
    LineWatch watch;
    watch.Sent("check");
    for (const char* request : {"ge 1", "ge 2", "ge 3", "ge 4", "ge 5", "ge 6", "ge 7", "ge 8", "ge 9"})
      watch.Sent(request);
    watch.Heard(answer);
    EXPECT_EQ(watch.Restarts(), 0) << answer;
    EXPECT_GE(watch.Awaited(), 9u) << answer;
  }
}

TEST(LineWatch, P05_AnAnswerInWordsMayHaveMoreLines) {
  struct Answer {
    std::vector<const char*> Requests;
    const char* Text;
    int Restarts;
  };
  const Answer answers[] = {
      {{"getwl", "company"}, "company\r\nQvr Works\r\nModel 8000\r\n>", 0},
      {{"check"}, "check\r\nInvalid Command.\r\nType help.\r\n>", 0},
      {{"company"}, "\r\nQvr Works\r\nready.\r\n>", 1},
      {{"company"}, "company\r\nQv\r\n>\r\nQvr Works\r\nready.\r\n>", 1},
      {{"company", "ge 1"}, "company\r\nQv\r\nQvr Works\r\nready.\r\n>", 1},
      {{"adjustwl"}, "adjustwl\r\nQvr Works\r\nready.\r\n>", 1},
  };
  for (const Answer& answer : answers) {
    LineWatch watch;
    for (const char* request : answer.Requests) watch.Sent(request);
    watch.Heard(answer.Text);
    EXPECT_EQ(watch.Restarts(), answer.Restarts) << answer.Text;
  }
}

TEST(LineWatch, IsBoundedWhateverComesOrIsSent) {
  LineWatch watch;
  for (int i = 0; i < 5000; ++i) watch.Sent("ge 10");
  EXPECT_LE(watch.Awaited(), 1024u);
  for (int i = 0; i < 5000; ++i) watch.Heard(std::string(1024, 'x'));
  watch.Heard("\r\nName\r\nready.\r\n>");
  EXPECT_EQ(watch.Restarts(), 1);
}

}  // namespace
}  // namespace spectrane::testing_link
