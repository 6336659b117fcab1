#include "app/handbook.h"

#include <QAbstractButton>
#include <QDesktopServices>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QRegularExpression>
#include <QTabBar>
#include <QTabWidget>
#include <QTextBrowser>
#include <QUrl>
#include <QXmlStreamReader>

#include <map>
#include <set>

#include "app/commandtable.h"
#include "app/framefixture.h"
#include "app/ground/dialogparts.h"
#include "app/ground/words.h"
#include "app/messageboxes.h"

namespace spectrane::testing_windows {
namespace {

const QString kHandbookSources = QStringLiteral(SPECTRANE_SOURCE "/docs/handbook");

/// A page as its parts: everything that the checks below ask about.
struct HandbookPage {
  QString Fault;
  QStringList Links;
  QStringList Pictures;
  QStringList WithoutWords;  ///< pictures that say nothing to who cannot see them
  QStringList Anchors;
  QStringList Titles;    ///< h1
  QStringList Headings;  ///< of the parts
  QStringList Bold;
  QStringList Keys;
  /// Words of the messages by their text number.
  std::map<int, QString> Messages;
  QString Text;
};

class PageReader {
 public:
  explicit PageReader(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    QXmlStreamReader reader(&file);
    while (!reader.atEnd()) {
      reader.readNext();
      if (reader.isStartElement()) Begin(reader);
      if (reader.isCharacters()) Read(reader.text().toString());
      if (reader.isEndElement()) End();
    }
    if (reader.hasError())
      page_.Fault = QStringLiteral("line %1: %2").arg(reader.lineNumber()).arg(reader.errorString());
  }
  HandbookPage Page() && { return std::move(page_); }

 private:
  struct Element {
    QString Name;
    QString Id;
    QString Text;
  };

  void Begin(const QXmlStreamReader& reader) {
    static const QStringList kBlocks =
        QStringLiteral("p ul ol li dl dt dd div table figure pre h1 h2 h3 nav").split(u' ');
    const QXmlStreamAttributes attributes = reader.attributes();
    // A browser would end the paragraph there.
    if (!open_.empty() && open_.back().Name == QStringLiteral("p") &&
        kBlocks.contains(reader.name().toString()))
      page_.Fault = QStringLiteral("line %1: <%2> in <p>").arg(reader.lineNumber()).arg(reader.name());
    open_.push_back({reader.name().toString(), attributes.value(QLatin1String("id")).toString(), {}});
    if (!open_.back().Id.isEmpty()) page_.Anchors.append(open_.back().Id);
    if (attributes.hasAttribute(QLatin1String("href")))
      page_.Links.append(attributes.value(QLatin1String("href")).toString());
    if (open_.back().Name != QStringLiteral("img")) return;
    page_.Pictures.append(attributes.value(QLatin1String("src")).toString());
    if (attributes.value(QLatin1String("alt")).size() < 10) page_.WithoutWords.append(page_.Pictures.last());
  }
  void Read(const QString& text) {
    page_.Text += text;
    for (Element& element : open_) element.Text += text;
  }
  void End() {
    const Element element = open_.back();
    open_.pop_back();
    const QString words = element.Text.simplified();
    if (element.Name == QStringLiteral("h1")) page_.Titles.append(words);
    if (element.Name == QStringLiteral("h2") || element.Name == QStringLiteral("h3"))
      page_.Headings.append(words);
    if (element.Name == QStringLiteral("b")) page_.Bold.append(words);
    if (element.Name == QStringLiteral("kbd")) page_.Keys.append(words);
    if (element.Id.startsWith(QStringLiteral("text-"))) page_.Messages[element.Id.mid(5).toInt()] = words;
  }

  HandbookPage page_;
  std::vector<Element> open_;
};

const std::map<QString, HandbookPage>& Pages() {
  static const std::map<QString, HandbookPage> pages = [] {
    std::map<QString, HandbookPage> all;
    for (const QString& name : QDir(kHandbookSources).entryList({QStringLiteral("*.html")}, QDir::Files))
      all[name] = PageReader(kHandbookSources + u'/' + name).Page();
    return all;
  }();
  return pages;
}

/// "page.html#anchor" leads somewhere; "" is the page `from`.
bool Leads(const QString& link, const QString& from) {
  const QString name = link.section(u'#', 0, 0);
  const QString anchor = link.section(u'#', 1);
  const auto page = Pages().find(name.isEmpty() ? from : name);
  if (page == Pages().end()) return anchor.isEmpty() && QFile::exists(kHandbookSources + u'/' + name);
  return anchor.isEmpty() || page->second.Anchors.contains(anchor);
}

/// All sources of the program in one text, with what belongs together in one line.
const QString& ProgramText() {
  static const QString text = [] {
    QString all;
    QDirIterator files(QStringLiteral(SPECTRANE_SOURCE "/src"),
                       {QStringLiteral("*.cpp"), QStringLiteral("*.h"), QStringLiteral("*.tsv")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
      QFile file(files.next());
      EXPECT_TRUE(file.open(QIODevice::ReadOnly));
      all += QString::fromUtf8(file.readAll());
    }
    return all;
  }();
  return text;
}

TEST(Handbook, EveryPageIsWellFormedHasOneTitleAndPicturesWithWords) {
  ASSERT_GE(Pages().size(), 20u);
  for (const auto& [name, page] : Pages()) {
    EXPECT_EQ(page.Fault.toStdString(), "") << name.toStdString();
    EXPECT_EQ(page.Titles.size(), 1) << name.toStdString();
    EXPECT_EQ(page.WithoutWords.join(u' ').toStdString(), "") << name.toStdString();
    QStringList anchors = page.Anchors;
    EXPECT_EQ(anchors.removeDuplicates(), 0) << name.toStdString();
  }
}

TEST(Handbook, EveryLinkLeadsSomewhereAndEveryPictureIsThereAndUsed) {
  QStringList used;
  qint64 bytes = 0;
  for (const auto& [name, page] : Pages()) {
    for (const QString& link : page.Links)
      EXPECT_TRUE(Leads(link, name)) << name.toStdString() << ": " << link.toStdString();
    for (const QString& picture : page.Pictures) {
      EXPECT_TRUE(QFile::exists(kHandbookSources + u'/' + picture))
          << name.toStdString() << ": " << picture.toStdString();
      used.append(picture);
    }
  }
  for (const QFileInfo& picture :
       QDir(kHandbookSources + QStringLiteral("/pictures")).entryInfoList(QDir::Files)) {
    EXPECT_TRUE(used.contains(QStringLiteral("pictures/") + picture.fileName()))
        << picture.fileName().toStdString();
    bytes += picture.size();
  }
  EXPECT_LT(bytes, 4'000'000);
}

TEST(Handbook, EveryPageIsReachedFromTheFirst) {
  QStringList reached = {QString::fromLatin1(kHandbookFirstPage)};
  for (qsizetype i = 0; i < reached.size(); ++i) {
    for (const QString& link : Pages().at(reached[i]).Links) {
      const QString page = link.section(u'#', 0, 0);
      if (Pages().contains(page) && !reached.contains(page)) reached.append(page);
    }
  }
  EXPECT_EQ(reached.size(), static_cast<qsizetype>(Pages().size()));
}

TEST(Handbook, EveryWindowAndDialogHasItsPlace) {
  QStringList known;
  for (const HandbookRow& row : HandbookRows()) {
    known.append(QLatin1String(row.Window));
    EXPECT_TRUE(Leads(QLatin1String(row.Page), {})) << row.Page;
  }
  // Not windows of their own: the start picture, the box that asks to wait, the tables of a window.
  known.append({QStringLiteral("FrmLogo"), QStringLiteral("FrmWait"), QStringLiteral("FrmDataTabel")});
  static const QRegularExpression kClass(QStringLiteral("\nclass (Frm\\w+) : public"));
  int classes = 0;
  for (auto match = kClass.globalMatch(ProgramText()); match.hasNext(); ++classes) {
    const QString name = match.next().captured(1);
    EXPECT_TRUE(known.contains(name)) << name.toStdString() << " has no place in the handbook";
  }
  EXPECT_GE(classes, 30);
}

TEST(Handbook, EveryCommandIsMentionedAndEveryKeyIsTold) {
  QStringList named;
  for (const auto& [name, page] : Pages()) named += page.Bold + page.Headings;
  const QStringList keys = Pages().at(QStringLiteral("keyboard.html")).Keys;
  for (const CommandRow& row : CommandRows()) {
    const QString caption = row.TextId != 0 ? PlainWords(row.TextId) : QString::fromLatin1(row.Own);
    EXPECT_TRUE(named.contains(caption.simplified())) << caption.toStdString();
    for (const QString& key : QString::fromLatin1(row.Keys).split(u';', Qt::SkipEmptyParts))
      EXPECT_TRUE(keys.contains(key)) << caption.toStdString() << ": " << key.toStdString();
  }
}

TEST(Handbook, MessagesStandAsTheProgramSaysThem) {
  const std::map<int, QString>& messages = Pages().at(QStringLiteral("messages.html")).Messages;
  EXPECT_GE(messages.size(), 40u);
  for (const auto& [text, words] : messages)
    EXPECT_EQ(words.toStdString(), Words(text).simplified().toStdString()) << text;
}

/// The numbers that `text` gives names to.
std::map<QString, int> NumbersIn(const QString& text) {
  static const QRegularExpression kNumber(QStringLiteral("constexpr int (k\\w+) = (\\d+);"));
  std::map<QString, int> numbers;
  for (auto match = kNumber.globalMatch(text); match.hasNext();) {
    const QRegularExpressionMatch found = match.next();
    numbers[found.captured(1)] = found.captured(2).toInt();
  }
  return numbers;
}

TEST(Handbook, EveryNumberThatABoxIsGivenIsExplained) {
  const std::map<int, QString>& messages = Pages().at(QStringLiteral("messages.html")).Messages;
  const auto read = [](const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
  };
  const QString source = QStringLiteral(SPECTRANE_SOURCE "/src/");
  const std::map<QString, int> shared = NumbersIn(read(source + QStringLiteral("base/textnumbers.h")));
  static const QRegularExpression kBox(QStringLiteral(
      "(?:\\bShow(?:Error)?\\(|(?:\\bShowWords|\\bAskYesNo(?:Cancel)?)\\([^;]*?, )(k\\w+)[,)]"));
  std::set<int> shown;
  QDirIterator files(source, {QStringLiteral("*.cpp")}, QDir::Files, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    const QString text = read(files.next());
    std::map<QString, int> numbers = NumbersIn(text);
    numbers.insert(shared.begin(), shared.end());
    for (auto match = kBox.globalMatch(text); match.hasNext();) {
      const auto number = numbers.find(match.next().captured(1));
      if (number != numbers.end()) shown.insert(number->second);
    }
  }
  EXPECT_GE(shown.size(), 35u);
  for (const int text : shown)
    EXPECT_TRUE(messages.contains(text)) << text << ": " << Words(text).toStdString();
}

/// Bold words are the program's own: a text of its table, or a piece of one of its sources.
TEST(Handbook, BoldWordsAreThoseOfTheProgram) {
  QStringList texts;
  for (int text = 100; text < 2000; ++text) {
    if (const QString words = Words(text); !words.isEmpty())
      texts << words.simplified() << PlainCaption(words).simplified();
  }
  // Of the toolkit.
  texts << QStringLiteral("Yes") << QStringLiteral("No") << QStringLiteral("Details");
  for (const auto& [name, page] : Pages()) {
    for (const QString& words : page.Bold) {
      if (texts.contains(words)) continue;
      // Access keys stand in the middle of words.
      static const QString program = QString(ProgramText()).remove(u'&');
      EXPECT_TRUE(program.contains(QString(words).remove(u'&')))
          << name.toStdString() << ": " << words.toStdString();
    }
  }
}

/// Stands where the desktop would: a browser that reads nothing.
class HelpShown : public QTextBrowser {
 public:
  HelpShown() {
    connect(this, &QTextBrowser::sourceChanged, this, [this](const QUrl& url) { Asked.append(url); });
    QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "setSource");
  }
  ~HelpShown() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }
  QVariant loadResource(int, const QUrl&) override { return QString(u'.'); }

  QList<QUrl> Asked;
};

class HandbookWindow : public FrameFixture {
 protected:
  /// File name and anchor of what was shown last.
  std::string Last() const {
    return Shown.Asked.isEmpty() ? ""
                                 : Shown.Asked.last().fileName().toStdString() + '#' +
                                       Shown.Asked.last().fragment().toStdString();
  }
  HelpShown Shown;
};

TEST(HandbookPlaces, AreThoseOfAnInstalledProgramAndOfTheSources) {
  const QStringList folders = HandbookFolders(QStringLiteral("/usr/bin"));
  EXPECT_TRUE(folders.contains(QStringLiteral("/usr/share/spectrane/handbook")));
  EXPECT_TRUE(folders.contains(QStringLiteral("/usr/bin/handbook")));
  EXPECT_TRUE(HandbookFolders(QStringLiteral("/home/me/spectrane/build/dev/bin"))
                  .contains(QStringLiteral("/home/me/spectrane/docs/handbook")));
}

TEST(HandbookPlaces, AFolderWithoutThePageIsPassedOverAndNoneAtAllIsTold) {
  HelpShown shown;
  const TemporaryFolder folder;
  const QString empty = QString::fromStdString(folder.Path());
  EXPECT_EQ(
      ShowHandbook(QStringLiteral("photometry.html#options"), {empty, kHandbookSources}, empty).toStdString(),
      "");
  ASSERT_EQ(shown.Asked.size(), 1);
  EXPECT_EQ(shown.Asked[0].toLocalFile(), kHandbookSources + QStringLiteral("/photometry.html"));
  EXPECT_EQ(shown.Asked[0].fragment(), QStringLiteral("options"));
  const QString refusal = ShowHandbook(QStringLiteral("photometry.html"), {empty}, empty);
  EXPECT_TRUE(refusal.startsWith(QStringLiteral("The handbook is not installed"))) << refusal.toStdString();
  EXPECT_TRUE(refusal.contains(empty));
  EXPECT_EQ(shown.Asked.size(), 1);
}

TEST_F(HandbookWindow, HelpBookOpensTheFirstPageAndF1ThatOfTheWindowInFront) {
  Start();
  ASSERT_TRUE(IsEnabled(kHelpBook));
  Choose(kHelpBook);
  EXPECT_EQ(Last(), "index.html#");
  Choose(kHelpForWindow);
  EXPECT_EQ(Last(), "main-window.html#");
  NewPhotometry();
  Main->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(Main.get()));
  QTest::keyClick(Main.get(), Qt::Key_F1);
  EXPECT_EQ(Last(), "photometry.html#");
  EXPECT_EQ(Remark().find("handbook"), std::string::npos) << Remark();
}

TEST_F(HandbookWindow, F1InADialogOpensItsPlace) {
  Start();
  InDialog("FrmBasicConfig", [&](QWidget& dialog) {
    QTest::keyClick(dialog.focusWidget(), Qt::Key_F1);
    EXPECT_EQ(Last(), "photometry.html#options");
    // Help leaves the dialog as it is.
    EXPECT_TRUE(dialog.isVisible());
    QTest::keyClick(dialog.focusWidget(), Qt::Key_F1, Qt::ShiftModifier);
    dialog.close();
  });
  Choose(kNewBasic);
  EXPECT_EQ(Shown.Asked.size(), 1);
  InDialog("FrmOption", [&](QWidget& dialog) {
    QTest::keyClick(dialog.focusWidget(), Qt::Key_F1);
    EXPECT_EQ(Last(), "program-options.html#information");
    auto* const pages = dialog.findChild<QTabWidget*>(QStringLiteral("TabStripOption"));
    const QStringList places = QStringLiteral("information precision port style").split(u' ');
    for (int i = 0; i < pages->count(); ++i)
      EXPECT_EQ(HandbookPageOf(pages->widget(i)), QStringLiteral("program-options.html#") + places.value(i));
    QTest::keyClick(pages->tabBar(), Qt::Key_F1);
    EXPECT_EQ(Last(), "program-options.html#");
    dialog.close();
  });
  Choose(kProgramOption);
}

TEST_F(HandbookWindow, F1InABoxOpensItsMessage) {
  Start();
  MessageBoxes boxes(*Main, QStringLiteral("Title"));
  InDialog(kMessageBoxName, [&](QWidget& box) {
    QTest::keyClick(&box, Qt::Key_F1);
    box.close();
  });
  boxes.Show(1097, {});
  EXPECT_EQ(Last(), "messages.html#text-1097");
  InDialog(kMessageBoxName, [&](QWidget& box) {
    QTest::keyClick(&box, Qt::Key_F1);
    box.close();
  });
  boxes.ShowWords(QStringLiteral("Words of no table"), {}, 0);
  EXPECT_EQ(Last(), "messages.html#");
}

TEST_F(HandbookWindow, F1InAQuestionOpensItsMessage) {
  Start();
  MessageBoxes boxes(*Main, QStringLiteral("Title"));
  const auto helpOf = [this](int textId, const std::function<void(const QString&, int)>& ask) {
    InDialog(kMessageBoxName, [&](QWidget& box) {
      QTest::keyClick(&box, Qt::Key_F1);
      box.close();
    });
    ask(Words(textId), textId);
    return Last();
  };
  EXPECT_EQ(helpOf(1103, [&](const QString& words, int id) { boxes.AskYesNo(words, id); }),
            "messages.html#text-1103");
  EXPECT_EQ(helpOf(1210, [&](const QString& words, int id) { boxes.AskYesNoCancel(words, id); }),
            "messages.html#text-1210");
  EXPECT_EQ(helpOf(1214, [&](const QString& words, int id) { boxes.ShowWords(words, {}, id); }),
            "messages.html#text-1214");
}

/// What a person reads in front of the fields of a dialog and on its buttons and boxes.
QStringList CaptionsOf(const QWidget& dialog) {
  QStringList all;
  for (const QAbstractButton* button : dialog.findChildren<QAbstractButton*>()) all << button->text();
  for (const QGroupBox* group : dialog.findChildren<QGroupBox*>()) all << group->title();
  for (const QLabel* label : dialog.findChildren<QLabel*>()) {
    if (label->buddy()) all << label->text();
  }
  QStringList captions;
  // What counts rows, and the colon behind a caption, say nothing of their own.
  static const QRegularExpression kCount(QStringLiteral("^[A-Z]?\\d+$|( \\d+)?:?$"));
  for (const QString& caption : all) {
    // Two of them are an "and", not an access key.
    QString plain = PlainCaption(QString(caption).replace(QStringLiteral("&&"), QChar(1)));
    plain = plain.replace(QChar(1), u'&').simplified().remove(kCount);
    if (!plain.isEmpty()) captions << plain;
  }
  return captions;
}

struct DialogRow {
  const char* File;  ///< of the examples; null: none has to be open
  int Command;
  const char* Dialog;
  const char* Page;
};

constexpr DialogRow kDialogRows[] = {
    {"photometry.bas", kTestOption, "FrmBasicConfig", "photometry.html"},
    {"dye.qua", kTestOption, "FrmQuaConfig", "quantitation.html"},
    {"enzyme.tis", kTestOption, "FrmTSConfig", "kinetics.html"},
    {"multi.mul", kTestOption, "FrmMultiConfig", "multi-wavelength.html"},
    {"nucleic.dna", kTestOption, "FrmDNAConfig", "dna-protein.html"},
    {"holmium.wls", kTestOption, "FrmWLSConfig", "wavelength-scan.html"},
    {"holmium.wls", kPeakValueSetup, "FrmPeakHeight", "wavelength-scan.html"},
    {"holmium.wls", kMaxMinAverage, "FrmMaxMinAverage", "wavelength-scan.html"},
    {"holmium.wls", kSpectrumSmooth, "FrmSmoothConfig", "processing.html"},
    {nullptr, kSpectrumDivision, "FrmCaculateConfig", "processing.html"},
    {nullptr, kSpectrumCompare, "FrmWLSCompareConfig", "processing.html"},
    {nullptr, kSystemBaseline, "FrmBaseLine", "instrument.html"},
    {nullptr, kSetWavelength, "FrmSetupWL", "instrument.html"},
    {nullptr, kLampSwitchWavelength, "FrmLampSwitch", "instrument.html"},
    {nullptr, kDarkCurrent, "FrmDarkEnergy", "instrument.html"},
    {nullptr, kResetWavelength, "FrmResetWaveLength", "instrument.html"},
    {nullptr, kSetupSlit, "FrmSlip", "instrument.html"},
    {nullptr, kNewFileGuide, "FrmNew", "main-window.html"},
    {nullptr, kProgramOption, "FrmOption", "program-options.html"},
};

TEST_F(HandbookWindow, EveryFieldOfADialogIsNamedOnItsPage) {
  Start();
  ConnectNow();
  for (const DialogRow& row : kDialogRows) {
    if (row.File) {
      ASSERT_TRUE(
          Main->OpenDataFile(QStringLiteral(SPECTRANE_SOURCE "/examples/") + QLatin1String(row.File)));
    }
    const QString page = Pages().at(QLatin1String(row.Page)).Text.simplified();
    // On every page of that kind.
    const QStringList usual = {PlainWords(kOKText), PlainWords(kCancelText)};
    int seen = 0;
    WhenDialog(row.Dialog, [&](QWidget& dialog) {
      const QStringList captions = CaptionsOf(dialog);
      ++seen;
      EXPECT_FALSE(captions.isEmpty());
      for (const QString& caption : captions) {
        EXPECT_TRUE(usual.contains(caption) || page.contains(caption))
            << row.Dialog << ": " << caption.toStdString();
      }
    });
    Choose(row.Command);
    EXPECT_EQ(seen, 1) << row.Dialog;
    Main->mmuFileCloseAll();
    QCoreApplication::processEvents();
  }
}

}  // namespace
}  // namespace spectrane::testing_windows
