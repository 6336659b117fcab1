#include "app/desktop/desktopfiles.h"

#include <algorithm>
#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <string_view>

#include "base/applicationfolder.h"
#include "base/brand.h"
#include "files/fileheader.h"

namespace spectrane {
namespace {

/// Above that of other programs which claim one of the endings.
constexpr int kMagicPriority = 90;

std::string XmlText(std::string_view text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      default:
        result += c;
    }
  }
  return result;
}

/// A value of type string in a desktop entry.
std::string EntryString(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (c == '\\') result += '\\';
    result += c;
  }
  return result;
}

/// One quoted argument of a command line in a desktop entry, before the escapes of EntryString().
std::string QuotedArgument(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '`' || c == '$' || c == '\\') result += '\\';
    // A single one would begin a field code.
    if (c == '%') result += '%';
    result += c;
  }
  return result + '"';
}

std::string Number(std::size_t number) {
  return std::to_string(number);
}

std::string Match(const char* type, const std::string& offset, const std::string& value) {
  return std::string("<match type=\"") + type + "\" offset=\"" + offset + "\" value=\"" + value + "\"";
}

const LayoutField& HeaderField(std::string_view name) {
  const Layout layout = FileHeaderBlock().Fields;
  return *std::find_if(layout.begin(), layout.end(), [&](const LayoutField& f) { return name == f.Name; });
}

/// How a file with that number is known by its first bytes. Blanks may stand before the author's name.
std::string MagicMatches(std::int32_t fileType) {
  const LayoutField& author = HeaderField("Author");
  const std::size_t lastStart = author.Offset + author.Width - std::string_view(kFileAuthor).size();
  const std::string authorPlace = Number(author.Offset) + ":" + Number(lastStart);
  return "      " +
         Match("little32", Number(HeaderField("FileType").Offset), Number(static_cast<unsigned>(fileType))) +
         ">\n        " + Match("string", authorPlace, kFileAuthor) + ">\n          " +
         Match("little32", Number(HeaderField("Magic").Offset), Number(kFileMagic)) +
         "/>\n        </match>\n      </match>\n";
}

std::string MimeTypeElement(const FileAssociation& association) {
  std::string text = std::string("  <mime-type type=\"") + association.MimeType + "\">\n    <comment>" +
                     XmlText(DescriptionOf(association)) +
                     "</comment>\n    <generic-icon name=\"x-office-document\"/>\n    <magic priority=\"" +
                     std::to_string(kMagicPriority) + "\">\n";
  for (const std::int32_t fileType : association.FileTypes) {
    if (fileType != 0) text += MagicMatches(fileType);
  }
  return text + "    </magic>\n    <glob pattern=\"*" + association.Extension + "\"/>\n  </mime-type>\n";
}

}  // namespace

std::string DesktopEntry(const std::string& programPath, const std::string& windowClass) {
  const auto control = [](char c) { return (c >= 0 && c < ' ') || c == '\x7f'; };
  if (programPath.empty() || std::any_of(programPath.begin(), programPath.end(), control)) return {};
  std::string text =
      "[Desktop Entry]\n"
      "Type=Application\n"
      "Version=1.4\n";
  text += std::string("Name=") + EntryString(BuildBrand().Title) + "\n";
  text +=
      "GenericName=Spectrophotometer Software\n"
      "Comment=Measure and evaluate with a UV-visible spectrophotometer\n";
  // The entry outlives the program's removal; with TryExec it is then not shown.
  text += "TryExec=" + EntryString(programPath) + "\n";
  text += "Exec=" + EntryString(QuotedArgument(programPath)) + " %f\n";
  text += std::string("Icon=") + kDesktopId + "\n";
  text += "Terminal=false\nMimeType=";
  for (const FileAssociation& association : FileAssociations()) {
    text += std::string(association.MimeType) + ";";
  }
  text +=
      "\nCategories=Science;Chemistry;Qt;\n"
      "Keywords=spectrophotometer;photometry;spectrum;absorbance;kinetics;quantitation;\n";
  return text + "StartupWMClass=" + EntryString(windowClass) + "\n";
}

std::string MimePackage() {
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">\n";
  for (const FileAssociation& association : FileAssociations()) text += MimeTypeElement(association);
  return text + "</mime-info>\n";
}

std::string ThemePath(const DesktopIcon& icon) {
  std::string place = "apps/" + std::string(kDesktopId);
  if (!icon.Extension.empty()) {
    const auto kinds = FileAssociations();
    const auto kind = std::find_if(kinds.begin(), kinds.end(), [&](const FileAssociation& row) {
      return icon.Extension == row.Extension;
    });
    if (kind == kinds.end()) return {};
    std::string name = kind->MimeType;
    std::replace(name.begin(), name.end(), '/', '-');
    place = "mimetypes/" + name;
  }
  if (icon.Size == 0) return "scalable/" + place + ".svg";
  const std::string size = std::to_string(icon.Size);
  return size + "x" + size + "/" + place + ".png";
}

std::vector<RegistryValue> RegistryValues(const QString& programPath) {
  const QString folder = QDir::toNativeSeparators(QFileInfo(programPath).absolutePath());
  const QString command =
      QStringLiteral("\"%1\" \"%2\"").arg(QDir::toNativeSeparators(programPath), QStringLiteral("%1"));
  std::vector<RegistryValue> values;
  for (const FileAssociation& association : FileAssociations()) {
    const QString type = QString::fromUtf8(association.TypeName);
    values.push_back({QString::fromUtf8(association.Extension), type});
    values.push_back({type, QString::fromStdString(DescriptionOf(association))});
    values.push_back({type + QStringLiteral("/DefaultIcon"),
                      QStringLiteral("%1\\icon.dll,%2").arg(folder, QString::number(association.IconIndex))});
    values.push_back({type + QStringLiteral("/shell/open/command"), command});
  }
  return values;
}

bool WriteRegistryValues(QSettings& classes, const std::vector<RegistryValue>& values) {
  bool differed = false;
  for (const RegistryValue& value : values) {
    const QString name = value.Key + QStringLiteral("/Default");
    if (classes.value(name).toString() == value.Value) continue;
    classes.setValue(name, value.Value);
    differed = true;
  }
  return differed;
}

}  // namespace spectrane
