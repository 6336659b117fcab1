#pragma once

#include <QFile>
#include <QString>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/exchangelog.h"

namespace spectrane::campaign {

/// A request as the instrument logged it.
using LoggedRequest = ExchangeRecord;

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

/// What an answer to a request says, reckoned from the rules of the wire alone: the whole numbers of its data
/// lines, as many as were asked for; nothing when it cannot be used.
std::optional<std::vector<std::int32_t>> NumbersOf(const std::string& request, std::string_view answer,
                                                   std::size_t count);
/// The reading out of a sound answer to `ge N`; nothing for any other.
std::optional<std::int32_t> EnergyOf(const std::string& request, std::string_view answer);
inline std::optional<std::int32_t> EnergyOf(const LoggedRequest& request) {
  return EnergyOf(request.Request, request.Answer);
}

}  // namespace spectrane::campaign
