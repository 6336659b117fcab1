#pragma once

#include <QFile>
#include <QString>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace spectrane::campaign {

/// A request as the instrument logged it.
struct LoggedRequest {
  std::int64_t Number = 0;
  std::int64_t Ms = 0;
  /// Kind and parameters; empty for an answer that nothing spoiled.
  std::string Fault;
  std::string Request;
  /// Every byte put onto the wire for it.
  std::string Answer;
};

/// Nothing for a remark and for what is no line of the log.
std::optional<LoggedRequest> ReadLogLine(const std::string& line);

/// Follows a log while it grows.
class RequestLog {
 public:
  explicit RequestLog(const QString& path) : file_(path) {}
  /// What came since the last call, whole lines only.
  std::vector<LoggedRequest> News();
  std::int64_t Seen() const { return seen_; }

 private:
  QFile file_;
  QByteArray rest_;
  std::int64_t seen_ = 0;
};

/// What an instrument of this kind says with these bytes, reckoned from the wire's rules alone: the data
/// lines behind the echo, as many as were asked for; nothing when the answer cannot be used.
std::optional<std::vector<std::int32_t>> NumbersOf(const LoggedRequest& request, std::size_t count);
/// The reading out of a sound answer to `ge N`; nothing for any other.
std::optional<std::int32_t> EnergyOf(const LoggedRequest& request);

}  // namespace spectrane::campaign
