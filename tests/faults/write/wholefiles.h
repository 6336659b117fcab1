#pragma once

#include <QByteArray>
#include <QRegularExpression>
#include <QString>

#include <sstream>
#include <string>

namespace spectrane::testing_faults {

/// The times of the moment differ from export to export.
inline QByteArray WithoutTimes(const std::string& bytes) {
  static const QRegularExpression times(QStringLiteral("\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d"));
  return QString::fromLatin1(QByteArray::fromStdString(bytes))
      .replace(times, QStringLiteral("now"))
      .toLatin1();
}

/// From its first line to its last, with every object where the table at its end says.
inline bool IsWholePdf(const std::string& bytes) {
  const std::size_t last = bytes.rfind("startxref\n");
  if (!bytes.starts_with("%PDF-") || !bytes.ends_with("%%EOF\n") || last == std::string::npos) return false;
  const auto table = static_cast<std::size_t>(std::stoul(bytes.substr(last + 10, 20)));
  if (bytes.compare(table, 5, "xref\n") != 0) return false;
  std::istringstream lines(bytes.substr(table + 5));
  std::size_t first = 0;
  std::size_t count = 0;
  lines >> first >> count;
  for (std::size_t i = 0; i < count; ++i) {
    std::size_t offset = 0;
    int generation = 0;
    char use = 0;
    lines >> offset >> generation >> use;
    const std::string head = std::to_string(i) + " 0 obj";
    if (use == 'n' && bytes.compare(offset, head.size(), head) != 0) return false;
  }
  return count > 5;
}

}  // namespace spectrane::testing_faults
