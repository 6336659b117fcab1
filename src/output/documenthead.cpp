#include "output/documenthead.h"

#include <algorithm>

#include "base/language.h"
#include "base/numbers.h"
#include "base/utf8path.h"
#include "base/version.h"

namespace spectrane {
namespace {

QString FromUtf8(const std::string& text) {
  return QString::fromStdString(text);
}

}  // namespace

std::string DocumentHead::Name() const {
  return Path.empty() ? Caption : Utf8FromPath(PathFromUtf8(Path).filename());
}

std::string DocumentHead::TimeWords() const {
  return "  Time:" + Moment.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")).toStdString();
}

std::vector<ReportFact> HeadFacts(const DocumentHead& head) {
  constexpr int kFileName = 937;
  constexpr int kTestTime = 938;
  constexpr int kSoftwareVersion = 939;
  constexpr int kOperator = 1053;
  constexpr int kCompany = 1054;
  const auto fact = [](int label, const std::string& value) {
    return ReportFact{FromUtf8(Text(label)), FromUtf8(value)};
  };
  std::vector<ReportFact> facts = {
      fact(kFileName, head.Path.empty() ? head.Caption : head.Path),
      fact(kTestTime, head.Moment.toString(QStringLiteral("yyyy/M/dd/ HH:mm")).toStdString()),
      fact(kSoftwareVersion, "V" + VersionText()),
      fact(kOperator, head.Operator),
      fact(kCompany, head.Company),
  };
  if (head.Simulated)
    facts.push_back({QStringLiteral("Instrument:"), QStringLiteral("Simulated instrument")});
  return facts;
}

Report ReportOf(const DocumentHead& head, int titleText) {
  return ReportOf(head, Text(titleText));
}

Report ReportOf(const DocumentHead& head, const std::string& title) {
  Report report;
  report.Title = FromUtf8(title);
  report.DocumentName = FromUtf8(head.Caption.empty() ? head.Name() : head.Caption);
  report.Facts = HeadFacts(head);
  report.Font = QFont(FromUtf8(FontFor(GetLanguageIndex()).Name));
  return report;
}

std::string AbsAt(double wavelength) {
  return "Abs(" + Format(wavelength, "0.0") + "nm)";
}

std::string WavelengthList(std::vector<double> wavelengths) {
  std::ranges::sort(wavelengths);
  std::vector<std::string> texts;
  for (const double wavelength : wavelengths) {
    std::string text = Format(wavelength, "0.0nm");
    if (std::ranges::find(texts, text) == texts.end()) texts.push_back(std::move(text));
  }
  std::string list;
  for (const std::string& text : texts) list += (list.empty() ? "" : ", ") + text;
  return list;
}

}  // namespace spectrane
